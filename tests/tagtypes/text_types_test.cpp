// 'text', 'desc' and 'mluc': decoding of real and hostile tags, and the texts the writer builds.
#include "profile/profile.h"
#include "support/test_support.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"

#include <gtest/gtest.h>

namespace {

Bytes descTag(const std::string& ascii, std::uint8_t scriptCount) {
    Bytes payload;
    iccWriter w(payload);
    w.u32(static_cast<std::uint32_t>(ascii.size() + 1));
    w.bytes({reinterpret_cast<const std::uint8_t*>(ascii.c_str()), ascii.size() + 1});
    w.u32(0); // Unicode language
    w.u32(2); // Unicode count
    w.u16(0x0041);
    w.u16(0);
    w.u16(0); // ScriptCode code
    w.u8(scriptCount);
    w.zeros(67);
    return tagBytes(icSig("desc"), payload);
}

Bytes mlucTag(std::uint32_t recordSize, std::uint32_t length, std::uint32_t offset) {
    Bytes payload;
    iccWriter w(payload);
    w.u32(1);
    w.u32(recordSize);
    w.u16(0x656E);
    w.u16(0x5553);
    w.u32(length);
    w.u32(offset);
    w.bytes(Bytes{0, 'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'});
    return tagBytes(icSig("mluc"), payload);
}

// Loads the tag through a profile, as the viewers do.
template <class T> icStatus loadTag(T& tag, const Bytes& bytes) {
    iccProfileRW profile;
    EXPECT_EQ(profile.loadFromMemory(ProfileBuilder().tag(icSig("tst1"), bytes).build()), icOk);
    return tag.loadByIndex(0, profile);
}

TEST(TextType, ReadsUpToItsNulAndNeverPastTheTag) {
    iccTextType text;
    ASSERT_EQ(loadTag(text, textTag("Copyright")), icOk);
    EXPECT_EQ(text.text(), "Copyright");

    Bytes noNul = tagBytes(icSig("text"), {'a', 'b', 'c', 'd'});
    EXPECT_EQ(loadTag(text, noNul), icErrBadProfile);
    EXPECT_EQ(text.text(), "abcd");
    EXPECT_EQ(loadTag(text, descTag("x", 2)), icErrBadProfile); // another type

    EXPECT_EQ(text.setDataChecked(icSig("text"), Bytes(8, 0)), icErrInvalidArg);
    EXPECT_EQ(text.setDataChecked(icSig("text"), descTag("a", 1)), icErrWrongType);
    EXPECT_EQ(text.setDataChecked(icSig("text"), textTag("")), icOk);
}

TEST(TextDescriptionType, ScriptCodeCountAndTruncation) {
    iccTextDescriptionType desc;
    ASSERT_EQ(loadTag(desc, descTag("sRGB", 5)), icOk);
    EXPECT_EQ(desc.asciiText(), "sRGB");
    EXPECT_EQ(desc.unicodeCount, 2u);
    EXPECT_EQ(desc.rawSize(), 5u + 4 + 90);
    EXPECT_EQ(loadTag(desc, descTag("sRGB", 68)), icErrNoMemory);
    EXPECT_EQ(loadTag(desc, descTag("sRGB", 200)), icOk); // a signed byte: negative passes

    // A short ScriptCode field reads as zeros; a short Unicode part is refused.
    Bytes shortScript = descTag("sRGB", 5);
    shortScript.resize(shortScript.size() - 60);
    ASSERT_EQ(loadTag(desc, shortScript), icOk);
    EXPECT_EQ(desc.scriptCount, 5);
    EXPECT_EQ(desc.rawSize(), 5u + 4 + 90);
    Bytes truncated = descTag("sRGB", 5);
    truncated.resize(12 + 5 + 8 + 2);
    EXPECT_EQ(loadTag(desc, truncated), icErrTruncated);
    Bytes hugeCount = descTag("sRGB", 5);
    storeBE32(hugeCount.data() + 8, 0xFFFFFFF0);
    EXPECT_EQ(loadTag(desc, hugeCount), icErrTruncated);
}

TEST(TextDescriptionType, BuiltFromAsciiDecodesToTheSameFields) {
    iccTextDescriptionType built;
    const std::string text = "Caf\xE9 " + std::string(70, 'x');
    ASSERT_EQ(built.setFromAscii(text), icOk);
    EXPECT_EQ(built.rawSize(), text.size() + 1 + 90 + 2 * (text.size() + 2));
    EXPECT_EQ(built.unicode[0], 0xFEFF);
    EXPECT_EQ(built.unicode[4], 0xFFE9); // widened as a signed byte
    EXPECT_EQ(built.scriptCount, 67);
    EXPECT_EQ(built.scriptText[65], 'x');
    EXPECT_EQ(built.scriptText[66], 0);

    iccTextDescriptionType decoded;
    ASSERT_EQ(decoded.setData(built.getData()), icOk);
    EXPECT_EQ(decoded.asciiText(), text);
    EXPECT_EQ(decoded.unicode, built.unicode);
    EXPECT_EQ(decoded.scriptText, built.scriptText);

    iccTextDescriptionType empty;
    EXPECT_EQ(empty.getData().data(), nullptr); // nothing to rebuild from
}

TEST(MultiLocalizedUnicodeType, RecordsAndHostileLayouts) {
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(loadTag(mluc, mlucTag(12, 10, 28)), icOk);
    ASSERT_EQ(mluc.recordCount, 1u);
    EXPECT_EQ(mluc.records[0].language, 0x656E);
    EXPECT_EQ(mluc.strings[0], (Bytes{0, 'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'}));
    const auto data = mluc.getData();
    const Bytes rebuilt(data.begin(), data.end());
    EXPECT_EQ(rebuilt, mlucTag(12, 10, 28));

    EXPECT_EQ(loadTag(mluc, mlucTag(16, 10, 28)), icErrBadProfile);
    EXPECT_EQ(loadTag(mluc, mlucTag(12, 10, 30)), icErrTruncated);
    EXPECT_EQ(loadTag(mluc, mlucTag(12, 0xFFFFFFFF, 28)), icErrTruncated);
    Bytes manyRecords = mlucTag(12, 10, 28);
    storeBE32(manyRecords.data() + 8, 0x10000000);
    EXPECT_EQ(loadTag(mluc, manyRecords), icErrTruncated);
}

TEST(MultiLocalizedUnicodeType, BuiltFromAscii) {
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(mluc.setFromAscii("Hello"), icOk);
    Bytes expected = mlucTag(12, 12, 28);
    expected.insert(expected.end(), {0, 0});
    EXPECT_EQ(Bytes(mluc.raw().begin(), mluc.raw().end()), expected);
}

} // namespace
