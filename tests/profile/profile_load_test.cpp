// Loading: hostile and malformed profiles are refused with the right status and never read
// outside the data; shared blocks, clamped sizes and lazy reads behave as the window expects.
#include "profile/profile.h"
#include "profile/profile_id.h"
#include "support/test_support.h"

#include <gtest/gtest.h>

namespace {

Bytes simpleProfile() {
    return ProfileBuilder()
        .tag(icSig("desc"), textTag("abc"))
        .tag(icSig("cprt"), textTag("c"))
        .build();
}

icStatus loadRW(const Bytes& bytes) {
    iccProfileRW profile;
    return profile.loadFromMemory(bytes);
}

TEST(ProfileLoad, RejectsMalformedData) {
    const Bytes good = simpleProfile();
    ASSERT_EQ(loadRW(good), icOk);

    Bytes wrongMagic = good;
    wrongMagic[36] = 'x';
    EXPECT_EQ(loadRW(wrongMagic), icErrBadProfile);

    EXPECT_EQ(loadRW(Bytes(good.begin(), good.begin() + 131)), icErrBadProfile);
    EXPECT_EQ(loadRW({}), icErrBadProfile);

    for (std::uint32_t count : {51u, 0xFFFFFFFFu, 0x80000000u}) {
        Bytes bad = good;
        storeBE32(bad.data() + 128, count);
        EXPECT_EQ(loadRW(bad), icErrBadProfile) << count;
    }
    // A directory that claims more entries than the data holds.
    Bytes shortDirectory = good;
    storeBE32(shortDirectory.data() + 128, 40);
    EXPECT_EQ(loadRW(shortDirectory), icErrBadProfile);

    // A tag past the end of the data, and one whose size wraps around 32 bits.
    const Bytes pastEnd = ProfileBuilder().entry(icSig("desc"), 140, 0xFFFFFFF0).build();
    EXPECT_EQ(loadRW(pastEnd), icErrBadProfile);
    const Bytes beyond = ProfileBuilder().entry(icSig("desc"), 0xFFFFFFF0, 64).build();
    EXPECT_EQ(loadRW(beyond), icErrBadProfile);

    // The same through a file: missing file is -100, a directory is unreadable.
    EXPECT_EQ(iccProfileRW().loadFromFile((scratchDir() / "missing.icc").string()), icErrFile);
}

TEST(ProfileLoad, HeaderSizeIsClampedToTheData) {
    ProfileBuilder builder;
    builder.tag(icSig("desc"), textTag("abc"));
    builder.header.size = 1 << 20;
    const Bytes bytes = builder.build(/*keepSize=*/true);
    iccProfileRW profile;
    ASSERT_EQ(profile.loadFromMemory(bytes), icOk);
    EXPECT_EQ(profile.header().size, bytes.size());

    builder.header.size = 140; // smaller than the data: kept as it stands
    iccProfileRW smaller;
    ASSERT_EQ(smaller.loadFromMemory(builder.build(true)), icOk);
    EXPECT_EQ(smaller.header().size, 140u);
}

TEST(ProfileLoad, EntriesAtOneOffsetShareOneBlock) {
    const Bytes text = textTag("shared text");
    const std::uint32_t first = 128 + 4 + 12 * 2;
    const Bytes bytes = ProfileBuilder()
                            .tag(icSig("desc"), text)
                            .entry(icSig("dmdd"), first, 12) // same offset, smaller size
                            .build();
    iccProfileRW profile;
    ASSERT_EQ(profile.loadFromMemory(bytes), icOk);
    EXPECT_EQ(profile.link(1), 0);
    const auto a = profile.getTagData(0);
    const auto b = profile.getTagData(1);
    EXPECT_EQ(a.data(), b.data());
    EXPECT_EQ(b.size(), 12u);
    EXPECT_EQ(profile.getTagTypeSignature(1), icSig("text"));

    // A later entry claiming more than the shared block holds sees only the block.
    const Bytes larger =
        ProfileBuilder().tag(icSig("desc"), text).entry(icSig("dmdd"), first, 400).build();
    iccProfileRW big;
    ASSERT_EQ(big.loadFromMemory(larger), icOk);
    EXPECT_EQ(big.getTagData(1).size(), text.size());
}

TEST(ProfileLoad, ReadOnlyProfileReadsTagsOnFirstUse) {
    const auto path = scratchDir() / "lazy.icc";
    writeBytes(path, simpleProfile());
    iccProfile profile;
    ASSERT_EQ(profile.loadFromFile(path.string()), icOk);
    EXPECT_TRUE(profile.isReadOnly());
    const auto first = profile.getTagData(1);
    ASSERT_NE(first.data(), nullptr);
    EXPECT_EQ(profile.getTagData(1).data(), first.data());
    EXPECT_EQ(profile.getTagDataBySignature(icSig("cprt")).data(), first.data());
    EXPECT_EQ(profile.getTagDataBySignature(icSig("wtpt")).data(), nullptr);
    EXPECT_EQ(profile.getTagData(2).data(), nullptr);
    EXPECT_EQ(profile.getTagTypeSignature(7), 0xFFFFFFFFu);
    EXPECT_EQ(profile.getEntry(2)->sig, 0u); // one past the end is admitted
    EXPECT_EQ(profile.getEntry(3), nullptr);
}

TEST(ProfileLoad, StandaloneHeaderReader) {
    const auto path = scratchDir() / "header.icc";
    writeBytes(path, simpleProfile());
    icHeader header;
    EXPECT_EQ(readHeaderFromFile(path.string(), header), icOk);
    EXPECT_EQ(header.deviceClass, icSig("mntr"));
    Bytes bad = simpleProfile();
    bad[37] = 'X';
    writeBytes(path, bad);
    EXPECT_EQ(readHeaderFromFile(path.string(), header), icErrBadProfile);
    writeBytes(path, Bytes(20, 0));
    EXPECT_EQ(readHeaderFromFile(path.string(), header), icErrFile);
}

} // namespace
