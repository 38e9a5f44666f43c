// Header primitives; loading malformed and shared-block profiles; writing: layout, ID, saves.
#include "profile/profile_id.h"
#include "profile/status.h"
#include "support/test_support.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/text_type.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(Primitives, FixedPointEncodingRoundsHalfUpThenTruncates) {
    struct Row {
        double value;
        std::uint32_t encoded;
    };
    for (const Row& row : {Row{0.9642, 0x0000F6D6}, Row{1.0, 0x00010000}, Row{0.8249, 0x0000D32D},
                           Row{-1.0, 0xFFFF0001}, Row{-0.5 / 65536, 0}, // toward zero
                           Row{-1.5 / 65536, 0xFFFFFFFF}, Row{32767.99999, 0x7FFFFFFF}}) {
        EXPECT_EQ(static_cast<std::uint32_t>(doubleToS15Fixed16(row.value)), row.encoded)
            << row.value;
    }
    EXPECT_EQ(doubleToU8Fixed8(1.5), 0x0180);
    EXPECT_EQ(doubleToU16Fixed16(2.2), 0x00023333u);
    EXPECT_EQ(doubleToS15Fixed16(1e300), -1); // saturates instead of being undefined
    EXPECT_DOUBLE_EQ(s15Fixed16ToDouble(-65536), -1.0);
}

TEST(Primitives, SignaturesAndText) {
    EXPECT_EQ(sigToText(icSig("mntr")), "mntr");
    EXPECT_EQ(sigToText(0x61006263), "a"); // a zero byte ends the text
    EXPECT_EQ(textToSig("ab"), 0x61620000u);
    EXPECT_EQ(textToSig(""), 0u);
    EXPECT_EQ(textToSig("APPLE"), icSig("APPL"));
}

TEST(Header, RoundTripsThroughBytes) {
    icHeader h = defaultHeader();
    h.attributes = {0x12345678, 0x9ABCDEF0};
    h.profileID[0] = 0xAB;
    h.reserved[27] = 7;
    const auto bytes = headerToBytes(h);
    EXPECT_EQ(loadBE32(bytes.data() + 36), icSig("acsp"));
    EXPECT_EQ(loadBE32(bytes.data() + 68), 0x0000F6D6u);
    EXPECT_EQ(bytes[84], 0xAB);
    EXPECT_EQ(headerFromBytes(bytes), h);
}

TEST(Header, Validation) {
    icHeader h = defaultHeader();
    EXPECT_EQ(validateHeader(h), icOk);
    EXPECT_EQ(validateHeader(h, 128), icOk);
    EXPECT_EQ(validateHeader(h, 132), icWarnHeader);
    h.illuminant = {doubleToS15Fixed16(0.9505), doubleToS15Fixed16(1.0), doubleToS15Fixed16(1.089)};
    EXPECT_EQ(validateHeader(h), icWarnHeader); // D65
    h.illuminant = defaultHeader().illuminant;
    h.illuminant.Y = 65536 + 327; // 0.00499: inside the tolerance
    EXPECT_EQ(validateHeader(h), icOk);
    h.illuminant.Y = 65536 + 328; // 0.00500 and a little: outside
    EXPECT_EQ(validateHeader(h), icWarnHeader);
    h.magic = icSig("ascp");
    EXPECT_EQ(validateHeader(h), icErrBadProfile);
}

TEST(Status, ReporterText) {
    EXPECT_EQ(errorReportText(icOk, "Done."), "Done.\n");
    const std::string longMessage(400, 'x');
    EXPECT_EQ(errorReportText(icErrFile, longMessage), std::string(254, 'x') + " Errcode: -100.\n");
}

std::string textOf(iccProfileRW& profile, icSignature sig) {
    iccTextType text;
    EXPECT_EQ(text.loadBySignature(sig, profile), icOk);
    return std::string(text.text());
}

Bytes saved(iccProfileRW& profile) {
    Bytes block;
    EXPECT_EQ(saveProfileToMemory(profile, block), icOk);
    return block;
}

TEST(ProfileLoad, RejectsMalformedData) {
    const Bytes good = ProfileBuilder().tag(icSig("desc"), textTag("abc")).build();
    loaded(good);
    Bytes wrongMagic = good;
    wrongMagic[36] = 'x';
    loaded(wrongMagic, icErrBadProfile);
    loaded(Bytes(good.begin(), good.begin() + 131), icErrBadProfile);
    loaded({}, icErrBadProfile);
    // Directories claiming more entries than allowed or than the data holds.
    for (std::uint32_t count : {51u, 0xFFFFFFFFu, 0x80000000u, 40u}) {
        Bytes bad = good;
        storeBE32(bad.data() + 128, count);
        loaded(bad, icErrBadProfile);
    }
    // A tag past the end of the data, and one whose size wraps around 32 bits.
    loaded(ProfileBuilder().entry(icSig("desc"), 140, 0xFFFFFFF0).build(), icErrBadProfile);
    loaded(ProfileBuilder().entry(icSig("desc"), 0xFFFFFFF0, 64).build(), icErrBadProfile);
    EXPECT_EQ(iccProfileRW().loadFromFile((scratchDir() / "missing.icc").string()), icErrFile);
}

TEST(ProfileLoad, HeaderSizeIsClampedToTheData) {
    ProfileBuilder builder;
    builder.tag(icSig("desc"), textTag("abc"));
    builder.header.size = 1 << 20;
    const Bytes bytes = builder.build(/*keepSize=*/true);
    EXPECT_EQ(loaded(bytes)->header().size, bytes.size());
    builder.header.size = 140; // smaller than the data: kept as it stands
    EXPECT_EQ(loaded(builder.build(true))->header().size, 140u);
}

TEST(ProfileLoad, EntriesAtOneOffsetShareOneBlockAndIndexesAreBounded) {
    const Bytes text = textTag("shared text");
    const std::uint32_t first = 128 + 4 + 12 * 2;
    auto profile = loaded(ProfileBuilder()
                              .tag(icSig("desc"), text)
                              .entry(icSig("dmdd"), first, 12) // same offset, smaller size
                              .build());
    EXPECT_EQ(profile->link(1), 0);
    EXPECT_EQ(profile->getTagData(0).data(), profile->getTagData(1).data());
    EXPECT_EQ(profile->getTagData(1).size(), 12u);
    EXPECT_EQ(profile->getTagTypeSignature(1), icSig("text"));
    EXPECT_EQ(profile->getTagDataBySignature(icSig("dmdd")).data(), profile->getTagData(0).data());
    EXPECT_EQ(profile->getTagDataBySignature(icSig("wtpt")).data(), nullptr);
    EXPECT_EQ(profile->getTagData(2).data(), nullptr);
    EXPECT_EQ(profile->getTagTypeSignature(7), 0xFFFFFFFFu);
    EXPECT_EQ(profile->getEntry(2)->sig, 0u); // one past the end is admitted
    EXPECT_EQ(profile->getEntry(3), nullptr);

    // A later entry claiming more than the shared block holds sees only the block.
    auto big =
        loaded(ProfileBuilder().tag(icSig("desc"), text).entry(icSig("dmdd"), first, 400).build());
    EXPECT_EQ(big->getTagData(1).size(), text.size());
}

TEST(ProfileWrite, SharedBlocksStaySharedAndAreWrittenOnce) {
    const std::uint32_t first = 128 + 4 + 12 * 3;
    auto profile = loaded(ProfileBuilder()
                              .tag(icSig("desc"), textTag("description"))
                              .tag(icSig("cprt"), textTag("c"))
                              .entry(icSig("dmdd"), first, 24)
                              .build());
    ASSERT_EQ(profile->setTagData(icSig("dmdd"), textTag("replaced through the link")), icOk);
    EXPECT_EQ(textOf(*profile, icSig("desc")), "replaced through the link");

    const Bytes block = saved(*profile);
    auto reread = loaded(block);
    const icTag desc = *reread->getEntry(0), cprt = *reread->getEntry(1);
    EXPECT_EQ(*reread->getEntry(2), (icTag{icSig("dmdd"), desc.offset, desc.size}));
    EXPECT_EQ(desc.offset, 128u + 4 + 36);
    // cprt follows the (padded) shared block directly; the block is not written twice.
    EXPECT_EQ(cprt.offset, desc.offset + roundUp4(desc.size));
    EXPECT_EQ(block.size(), roundUp4(cprt.offset + cprt.size));
}

TEST(ProfileWrite, ATagAfterAnEmptyOneKeepsItsBytes) {
    auto profile = loaded(ProfileBuilder()
                              .tag(icSig("desc"), textTag("d"))
                              .tag(icSig("zero"), {})
                              .tag(icSig("cprt"), textTag("kept"))
                              .build());
    auto reread = loaded(saved(*profile));
    EXPECT_EQ(reread->getEntry(1)->offset, reread->getEntry(2)->offset);
    EXPECT_EQ(textOf(*reread, icSig("cprt")), "kept");
}

TEST(ProfileWrite, AddsCopyrightFromTheHeaderYearAndRefusesAMissingDescription) {
    ProfileBuilder builder;
    builder.header.date.year = 2009;
    auto v2 = loaded(builder.tag(icSig("desc"), textTag("d")).build());
    saved(*v2);
    EXPECT_EQ(textOf(*v2, icSig("cprt")), "Copyright (c) 2009 Tintwerk.");
    EXPECT_NE(v2->header().date.year, 2009); // stamped after the notice was written

    builder.header.version = 0x04200000;
    builder.header.date.year = 2011;
    auto v4 = loaded(builder.build());
    saved(*v4);
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(mluc.loadBySignature(icSig("cprt"), *v4), icOk);
    ASSERT_EQ(mluc.recordCount, 1u);
    EXPECT_EQ(mluc.strings[0].size(), 2u * 28 + 2);
    EXPECT_EQ(mluc.strings[0][1], 'C');
    EXPECT_EQ(mluc.strings[0][0], 0);

    Bytes block;
    auto noDesc = loaded(ProfileBuilder().tag(icSig("cprt"), textTag("c")).build());
    EXPECT_EQ(saveProfileToMemory(*noDesc, block), icErrGeneral);
    iccProfileRW empty;
    EXPECT_EQ(saveProfileToMemory(empty, block), icErrGeneral); // empty directory
}

TEST(ProfileWrite, ProfileIdCoversTheDescribedBytes) {
    ProfileBuilder builder;
    builder.header.version = 0x04000000;
    builder.header.profileID.fill(0x5A);
    const Bytes base = builder.tag(icSig("desc"), textTag("d")).build();
    auto idOf = [](Bytes block) {
        EXPECT_EQ(computeProfileIdInMemory(block), icOk);
        return Bytes(block.begin() + 84, block.begin() + 100);
    };
    const Bytes id = idOf(base);
    Bytes hashed = base;
    std::memset(hashed.data() + 56, 0, 12);
    icDigest digest{};
    ASSERT_EQ(CMD5Checksum().digestOfMemory(hashed, digest), icOk);
    EXPECT_EQ(id, Bytes(digest.begin(), digest.end()));

    Bytes intent = base, flags = base, v2 = base;
    intent[67] = 3;
    intent[57] = 0xFF; // attributes
    EXPECT_EQ(idOf(intent), id);
    flags[47] = 1;
    EXPECT_NE(idOf(flags), id);
    v2[8] = 2;
    EXPECT_EQ(idOf(v2), Bytes(16, 0x5A)); // older profiles keep what they hold
}

TEST(ProfileWrite, SaveToFileNamesTheDescriptionAndReplacesTheOpenFile) {
    const auto path = scratchDir() / "self.icc";
    writeBytes(path, ProfileBuilder().tag(icSig("cprt"), textTag("c")).build());
    iccProfileRW profile;
    ASSERT_EQ(profile.loadFromFile(path.string()), icOk);
    ASSERT_EQ(saveProfileToFile(profile, path.string()), icOk);

    iccProfileRW reread;
    ASSERT_EQ(reread.loadFromFile(path.string()), icOk);
    EXPECT_EQ(reread.findTag(icSig("desc")), 1);
    for (const auto& entry : std::filesystem::directory_iterator(scratchDir()))
        EXPECT_EQ(entry.path().string().find(".saving"), std::string::npos) << entry.path();
}

TEST(ProfileWrite, FailedSavesLeaveTheTargetAlone) {
    auto profile = loaded(ProfileBuilder().tag(icSig("desc"), textTag("d")).build());
    EXPECT_EQ(saveProfileToFile(*profile, (scratchDir() / "no-such-folder" / "x.icc").string()),
              icErrFile);
    EXPECT_EQ(saveProfileToFile(*profile, scratchDir().string()), icErrFile); // a folder

    // Every temporary name taken: the write cannot start, and the old file must survive.
    const auto target = scratchDir() / "keep.icc";
    writeBytes(target, Bytes{1, 2, 3, 4});
    for (int i = 0; i < 100; ++i)
        writeBytes(scratchDir() / ("keep.icc.saving" + std::to_string(i)), Bytes{9});
    EXPECT_EQ(saveProfileToFile(*profile, target.string()), icErrFile);
    EXPECT_EQ(readBytes(target), (Bytes{1, 2, 3, 4}));
}

} // namespace
