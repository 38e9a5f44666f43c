// Writing: replaced and shared tags, the layout, added copyright and description, the Profile
// ID rule, and saves that fail without touching an existing file.
#include "profile/profile.h"
#include "profile/profile_id.h"
#include "support/test_support.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/text_type.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

namespace {

std::unique_ptr<iccProfileRW> loaded(const Bytes& bytes) {
    auto profile = std::make_unique<iccProfileRW>();
    EXPECT_EQ(profile->loadFromMemory(bytes), icOk);
    return profile;
}

std::string textOf(iccProfileRW& profile, icSignature sig) {
    iccTextType text;
    EXPECT_EQ(text.loadBySignature(sig, profile), icOk);
    return std::string(text.text());
}

TEST(ProfileWrite, SharedBlocksStaySharedAndAreWrittenOnce) {
    const std::uint32_t first = 128 + 4 + 12 * 3;
    iccProfileRW profile;
    ASSERT_EQ(profile.loadFromMemory(ProfileBuilder()
                                         .tag(icSig("desc"), textTag("description"))
                                         .tag(icSig("cprt"), textTag("c"))
                                         .entry(icSig("dmdd"), first, 24)
                                         .build()),
              icOk);
    ASSERT_EQ(profile.setTagData(icSig("dmdd"), textTag("replaced through the link")), icOk);
    EXPECT_EQ(textOf(profile, icSig("desc")), "replaced through the link");

    std::vector<std::uint8_t> block;
    ASSERT_EQ(saveProfileToMemory(profile, block), icOk);
    auto rereadOwner = loaded(block);
    iccProfileRW& reread = *rereadOwner;
    EXPECT_EQ(reread.getEntry(2)->offset, reread.getEntry(0)->offset);
    EXPECT_EQ(reread.getEntry(2)->size, reread.getEntry(0)->size);
    EXPECT_EQ(reread.getEntry(0)->offset, 128u + 4 + 36);
    // cprt follows the (padded) shared block directly; the block is not written twice.
    EXPECT_EQ(reread.getEntry(1)->offset,
              reread.getEntry(0)->offset + roundUp4(reread.getEntry(0)->size));
    EXPECT_EQ(block.size(), roundUp4(reread.getEntry(1)->offset + reread.getEntry(1)->size));
    EXPECT_EQ(block.size(), reread.header().size);

    EXPECT_EQ(profile.linkTag(icSig("desc"), icSig("desc")), icErrInvalidArg);
    EXPECT_EQ(profile.linkTag(icSig("bkpt"), icSig("wtpt")), icErrInvalidArg);
    ASSERT_EQ(profile.linkTag(icSig("bkpt"), icSig("cprt")), icOk);
    EXPECT_EQ(profile.getTagData(3).data(), profile.getTagData(1).data());
}

TEST(ProfileWrite, ATagAfterAnEmptyOneKeepsItsBytes) {
    auto profile = loaded(ProfileBuilder()
                              .tag(icSig("desc"), textTag("d"))
                              .tag(icSig("zero"), {})
                              .tag(icSig("cprt"), textTag("kept"))
                              .build());
    std::vector<std::uint8_t> block;
    ASSERT_EQ(saveProfileToMemory(*profile, block), icOk);
    auto reread = loaded(block);
    EXPECT_EQ(reread->getEntry(1)->offset, reread->getEntry(2)->offset);
    EXPECT_EQ(textOf(*reread, icSig("cprt")), "kept");
}

TEST(ProfileWrite, AddsCopyrightFromTheHeaderYearAndRefusesAMissingDescription) {
    ProfileBuilder builder;
    builder.header.date.year = 2009;
    auto v2p = loaded(builder.tag(icSig("desc"), textTag("d")).build());
    iccProfileRW& v2 = *v2p;
    std::vector<std::uint8_t> block;
    ASSERT_EQ(saveProfileToMemory(v2, block), icOk);
    EXPECT_EQ(textOf(v2, icSig("cprt")), "Copyright (c) 2009 Tintwerk.");
    EXPECT_NE(v2.header().date.year, 2009); // stamped after the notice was written

    ProfileBuilder v4builder;
    v4builder.header.version = 0x04200000;
    v4builder.header.date.year = 2011;
    auto v4p = loaded(v4builder.tag(icSig("desc"), textTag("d")).build());
    iccProfileRW& v4 = *v4p;
    ASSERT_EQ(saveProfileToMemory(v4, block), icOk);
    iccMultiLocalizedUnicodeType mluc;
    ASSERT_EQ(mluc.loadBySignature(icSig("cprt"), v4), icOk);
    ASSERT_EQ(mluc.recordCount, 1u);
    EXPECT_EQ(mluc.strings[0].size(), 2u * 28 + 2);
    EXPECT_EQ(mluc.strings[0][1], 'C');
    EXPECT_EQ(mluc.strings[0][0], 0);

    auto noDesc = loaded(ProfileBuilder().tag(icSig("cprt"), textTag("c")).build());
    EXPECT_EQ(saveProfileToMemory(*noDesc, block), icErrGeneral);
    iccProfileRW empty;
    EXPECT_EQ(saveProfileToMemory(empty, block), icErrGeneral); // empty directory
}

TEST(ProfileWrite, ProfileIdCoversTheDescribedBytes) {
    ProfileBuilder builder;
    builder.header.version = 0x04000000;
    builder.header.profileID.fill(0x5A);
    Bytes base = builder.tag(icSig("desc"), textTag("d")).build();

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

    Bytes intent = base;
    intent[67] = 3;
    intent[57] = 0xFF; // attributes
    EXPECT_EQ(idOf(intent), id);
    Bytes flags = base;
    flags[47] = 1;
    EXPECT_NE(idOf(flags), id);

    Bytes v2 = base;
    v2[8] = 2;
    EXPECT_EQ(idOf(v2), Bytes(16, 0x5A)); // older profiles keep what they hold

    const auto path = scratchDir() / "id.icc";
    writeBytes(path, base);
    ASSERT_EQ(computeProfileIdForFile(path.string()), icOk);
    const Bytes rewritten = readBytes(path);
    EXPECT_EQ(Bytes(rewritten.begin() + 84, rewritten.begin() + 100), id);
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
    EXPECT_EQ(readBytes(path).size(), reread.header().size);
    for (const auto& entry : std::filesystem::directory_iterator(scratchDir()))
        EXPECT_EQ(entry.path().string().find(".saving"), std::string::npos) << entry.path();
}

TEST(ProfileWrite, FailedSavesLeaveTheTargetAlone) {
    auto owner = loaded(ProfileBuilder().tag(icSig("desc"), textTag("d")).build());
    iccProfileRW& profile = *owner;
    EXPECT_EQ(saveProfileToFile(profile, (scratchDir() / "no-such-folder" / "x.icc").string()),
              icErrFile);
    EXPECT_EQ(saveProfileToFile(profile, scratchDir().string()), icErrFile); // a folder

    // Every temporary name taken: the write cannot start, and the old file must survive.
    const auto target = scratchDir() / "keep.icc";
    writeBytes(target, Bytes{1, 2, 3, 4});
    for (int i = 0; i < 100; ++i)
        writeBytes(scratchDir() / ("keep.icc.saving" + std::to_string(i)), Bytes{9});
    EXPECT_EQ(saveProfileToFile(profile, target.string()), icErrFile);
    EXPECT_EQ(readBytes(target), (Bytes{1, 2, 3, 4}));
}

} // namespace
