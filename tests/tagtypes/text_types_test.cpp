// 'text', 'desc', 'mluc' and 'pseq': real and hostile tags, Little CMS's sequences, built texts.
#include "support/lcms_testing.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/profile_sequence_desc_type.h"
#include "tagtypes/text_description_type.h"
#include "tagtypes/text_type.h"

namespace {

Bytes descTag(const std::string& ascii, std::uint8_t scriptCount) {
    Bytes payload;
    iccWriter w(payload);
    w.u32(static_cast<std::uint32_t>(ascii.size() + 1));
    w.bytes({reinterpret_cast<const std::uint8_t*>(ascii.c_str()), ascii.size() + 1});
    for (std::uint32_t v : {0u, 2u, 0x00410000u}) // Unicode language, count and characters
        w.u32(v);
    w.u16(0); // ScriptCode code
    w.u8(scriptCount);
    w.zeros(67);
    return tagBytes(icSig("desc"), payload);
}

Bytes mlucTag(std::uint32_t recordSize, std::uint32_t length, std::uint32_t offset) {
    Bytes bytes = wordTag(icSig("mluc"), {1, recordSize, 0x656E5553, length, offset});
    bytes.insert(bytes.end(), {0, 'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'});
    return bytes;
}

// Loads the tag through a profile, as the viewers do.
template <class T> icStatus loadTag(T& tag, const Bytes& bytes) {
    return tag.loadByIndex(0, *loaded(ProfileBuilder().tag(icSig("tst1"), bytes).build()));
}

TEST(TextType, ReadsUpToItsNulAndNeverPastTheTag) {
    iccTextType text;
    ASSERT_EQ(loadTag(text, textTag("Copyright")), icOk);
    EXPECT_EQ(text.text(), "Copyright");
    EXPECT_EQ(loadTag(text, tagBytes(icSig("text"), {'a', 'b', 'c', 'd'})), icErrBadProfile);
    EXPECT_EQ(text.text(), "abcd");
    EXPECT_EQ(loadTag(text, descTag("x", 2)), icErrBadProfile); // another type
}

TEST(TextDescriptionType, ScriptCodeTruncationAndBuiltFromAscii) {
    iccTextDescriptionType desc;
    ASSERT_EQ(loadTag(desc, descTag("sRGB", 5)), icOk);
    EXPECT_EQ(desc.asciiText(), "sRGB");
    EXPECT_EQ(desc.unicodeCount, 2u);
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

    // Built from ASCII, it decodes to the same fields.
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
    EXPECT_EQ(iccTextDescriptionType().getData().data(), nullptr); // nothing to rebuild from
}

TEST(MultiLocalizedUnicodeType, RecordsHostileLayoutsAndBuiltFromAscii) {
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(loadTag(mluc, mlucTag(12, 10, 28)), icOk);
    ASSERT_EQ(mluc.recordCount, 1u);
    EXPECT_EQ(mluc.records[0].language, 0x656E);
    EXPECT_EQ(mluc.strings[0], (Bytes{0, 'H', 0, 'e', 0, 'l', 0, 'l', 0, 'o'}));
    EXPECT_TRUE(std::ranges::equal(mluc.getData(), mlucTag(12, 10, 28)));

    EXPECT_EQ(loadTag(mluc, mlucTag(16, 10, 28)), icErrBadProfile);
    EXPECT_EQ(loadTag(mluc, mlucTag(12, 10, 30)), icErrTruncated);
    EXPECT_EQ(loadTag(mluc, mlucTag(12, 0xFFFFFFFF, 28)), icErrTruncated);
    Bytes manyRecords = mlucTag(12, 10, 28);
    storeBE32(manyRecords.data() + 8, 0x10000000);
    EXPECT_EQ(loadTag(mluc, manyRecords), icErrTruncated);

    ASSERT_EQ(mluc.setFromAscii("Hello"), icOk);
    Bytes expected = mlucTag(12, 12, 28);
    expected.insert(expected.end(), {0, 0});
    EXPECT_TRUE(std::ranges::equal(mluc.raw(), expected));
}

// A two-record 'pseq' as Little CMS writes it: 'desc' texts for version 2, 'mluc' for 4. The
// texts have nine characters because Little CMS pads each 'desc' to four bytes, which the
// sizes of these texts need not.
Bytes lcmsSequenceTag(double version) {
    cmsHPROFILE h = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(h, version);
    cmsSEQ* seq = cmsAllocProfileSequenceDescription(nullptr, 2);
    for (cmsUInt32Number i = 0; i < 2; ++i) {
        seq->seq[i].deviceMfg = icSig("ACME") + i;
        seq->seq[i].deviceModel = icSig("MOD0") + i;
        seq->seq[i].attributes = 0x0000000300000001ULL;
        seq->seq[i].technology = i ? cmsSigInkJetPrinter : cmsSigCRTDisplay;
        seq->seq[i].Manufacturer = cmsMLUalloc(nullptr, 1);
        seq->seq[i].Model = cmsMLUalloc(nullptr, 1);
        cmsMLUsetASCII(seq->seq[i].Manufacturer, "en", "US", i ? "Maker two" : "Maker one");
        cmsMLUsetASCII(seq->seq[i].Model, "en", "US", i ? "Model two" : "Model one");
    }
    EXPECT_TRUE(cmsWriteTag(h, cmsSigProfileSequenceDescTag, seq));
    cmsFreeProfileSequenceDescription(seq);
    const auto profile = loaded(lcmsSave(h));
    const auto tag = profile->getTagDataBySignature(icSig("pseq"));
    return Bytes(tag.begin(), tag.end());
}

// A 'desc' text's ASCII part, or the low bytes of an 'mluc' text's first string.
std::string text(const iccTextHolder& holder) {
    if (const auto* desc = holder.desc())
        return std::string(desc->asciiText());
    std::string ascii;
    const auto& units = holder.mluc()->strings.at(0);
    for (std::size_t i = 1; i < units.size(); i += 2)
        ascii += units[i] ? std::string(1, static_cast<char>(units[i])) : "";
    return ascii;
}

TEST(ProfileSequence, ReadsBothTextFormsAsLittleCmsWritesThem) {
    for (const double version : {2.1, 4.3}) {
        SCOPED_TRACE(version);
        const Bytes bytes = lcmsSequenceTag(version);
        iccProfileSequenceDescType pseq;
        ASSERT_EQ(pseq.setData(bytes), icOk);
        ASSERT_EQ(pseq.recordCount(), 2u);
        EXPECT_EQ(pseq.encodedSize(), bytes.size());
        for (std::uint32_t i = 0; i < 2; ++i) {
            const icProfileDescription& record = pseq.records[i];
            EXPECT_EQ(record.textVersion, version < 4 ? 0x2000000u : 0x4000000u);
            EXPECT_TRUE(record.manufacturer == icSig("ACME") + i &&
                        record.model == icSig("MOD0") + i &&
                        record.technology == (i ? icSig("ijet") : icSig("CRT ")));
            EXPECT_EQ(record.attributes, (std::array<std::uint32_t, 2>{3, 1}));
            EXPECT_EQ(record.recordSize,
                      20 + record.manufacturerText.rawSize() + record.modelText.rawSize());
            ASSERT_EQ(record.modelText.type(), version < 4 ? icSig("desc") : icSig("mluc"));
            EXPECT_EQ(text(record.manufacturerText), i ? "Maker two" : "Maker one");
            EXPECT_EQ(text(record.modelText), i ? "Model two" : "Model one");
        }
    }
}

TEST(ProfileSequence, HostileCountsAndTextsFail) {
    const Bytes good = lcmsSequenceTag(2.1);
    iccProfileSequenceDescType pseq;
    ASSERT_EQ(pseq.setData(good), icOk);
    const std::size_t modelAt = 12 + 20 + pseq.records[0].manufacturerText.rawSize();
    const auto patched = [&](std::size_t at, std::uint32_t word) {
        Bytes bytes = good;
        storeBE32(&bytes[at], word);
        return bytes;
    };
    // One record whose maker text is a 'desc' and whose model text a well-formed 'mluc'.
    iccTextDescriptionType desc;
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(desc.setFromAscii("maker"), icOk);
    ASSERT_EQ(mluc.setFromAscii("model"), icOk);
    Bytes mixed = tagBytes(icSig("pseq"), {0, 0, 0, 1});
    mixed.resize(mixed.size() + 20);
    mixed.insert(mixed.end(), desc.raw().begin(), desc.raw().end());
    mixed.insert(mixed.end(), mluc.raw().begin(), mluc.raw().end());

    const struct {
        const char* name;
        Bytes bytes;
        icStatus expected;
    } cases[] = {
        {"no records", tagBytes(icSig("pseq"), {0, 0, 0, 0}), icOk},
        {"wrong signature", patched(0, icSig("pseX")), icErrBadProfile},
        {"huge count", patched(8, 0xFFFFFFFF), icErrTruncated},
        {"one record more than there is", patched(8, 3), icErrTruncated},
        {"texts run past the end", Bytes(good.begin(), good.end() - 10), icErrTruncated},
        {"ASCII count of 2 GB", patched(12 + 20 + 8, 0x7FFFFFF0), icErrTruncated},
        {"unknown text type", patched(modelAt, icSig("text")), icErrBadProfile},
        {"'mluc' header on 'desc' bytes", patched(modelAt, icSig("mluc")), icErrBadProfile},
        {"'desc' maker with 'mluc' model", mixed, icErrWrongType},
    };
    for (const auto& c : cases)
        EXPECT_EQ(pseq.setData(c.bytes), c.expected) << c.name;
    ASSERT_EQ(pseq.setData(cases[0].bytes), icOk);
    EXPECT_EQ(pseq.recordCount(), 0u);
    EXPECT_EQ(pseq.encodedSize(), 12u);
}

} // namespace
