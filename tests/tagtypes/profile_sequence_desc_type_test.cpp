// 'pseq': sequences written by Little CMS in both text forms, and hostile counts and texts.
#include "profile/profile.h"
#include "support/test_support.h"
#include "tagtypes/profile_sequence_desc_type.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cstring>

namespace {

constexpr std::uint64_t kAttributes = 0x0000000300000001ULL;

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
        seq->seq[i].attributes = kAttributes;
        seq->seq[i].technology = i ? cmsSigInkJetPrinter : cmsSigCRTDisplay;
        seq->seq[i].Manufacturer = cmsMLUalloc(nullptr, 1);
        seq->seq[i].Model = cmsMLUalloc(nullptr, 1);
        cmsMLUsetASCII(seq->seq[i].Manufacturer, "en", "US", i ? "Maker two" : "Maker one");
        cmsMLUsetASCII(seq->seq[i].Model, "en", "US", i ? "Model two" : "Model one");
    }
    EXPECT_TRUE(cmsWriteTag(h, cmsSigProfileSequenceDescTag, seq));
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(h, nullptr, &size);
    Bytes profile(size);
    cmsSaveProfileToMem(h, profile.data(), &size);
    cmsFreeProfileSequenceDescription(seq);
    cmsCloseProfile(h);

    iccProfileRW loaded;
    EXPECT_EQ(loaded.loadFromMemory(profile), icOk);
    const auto tag = loaded.getTagDataBySignature(icSig("pseq"));
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
            const icSignature textType = version < 4 ? icSig("desc") : icSig("mluc");
            EXPECT_EQ(record.textVersion, version < 4 ? 0x2000000u : 0x4000000u);
            EXPECT_TRUE(record.manufacturer == icSig("ACME") + i &&
                        record.model == icSig("MOD0") + i &&
                        record.technology == (i ? icSig("ijet") : icSig("CRT ")));
            EXPECT_EQ(record.attributes, (std::array<std::uint32_t, 2>{3, 1}));
            EXPECT_EQ(record.recordSize,
                      20 + record.manufacturerText.rawSize() + record.modelText.rawSize());
            ASSERT_EQ(record.modelText.type(), textType);
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(pseq.setData(c.bytes), c.expected);
    }
    ASSERT_EQ(pseq.setData(cases[0].bytes), icOk);
    EXPECT_EQ(pseq.recordCount(), 0u);
    EXPECT_EQ(pseq.encodedSize(), 12u);
}

} // namespace
