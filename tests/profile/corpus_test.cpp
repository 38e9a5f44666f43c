// Every installed profile: load, save with every tag intact, the Profile ID, Little CMS after.
#include "profile/profile_id.h"
#include "support/lcms_testing.h"
#include "tagtypes/profile_save.h"

#include <cstring>

namespace {

class RealProfile : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(RealProfile, LoadsAndSavesWithEveryTagIntact) {
    const auto path = GetParam();
    iccProfileRW original, copy;
    ASSERT_EQ(original.loadFromFile(path.string()), icOk);
    ASSERT_EQ(copy.loadFromFile(path.string()), icOk);
    const auto saved = scratchDir() / ("saved-" + path.filename().string());
    ASSERT_EQ(saveProfileToFile(copy, saved.string()), icOk);

    const Bytes bytes = readBytes(saved);
    iccProfileRW reloaded;
    ASSERT_EQ(reloaded.loadFromFile(saved.string()), icOk);
    EXPECT_EQ(bytes.size() % 4, 0u);
    EXPECT_EQ(bytes.size(), reloaded.header().size);
    // A missing description or copyright is added after the other tags.
    EXPECT_GE(reloaded.findTag(icSig("desc")), 0);
    EXPECT_GE(reloaded.findTag(icSig("cprt")), 0);
    EXPECT_EQ(reloaded.tagCount(), original.tagCount() + (original.findTag(icSig("cprt")) < 0) +
                                       (original.findTag(icSig("desc")) < 0));
    for (int i = 0; i < original.tagCount(); ++i) {
        ASSERT_EQ(reloaded.getEntry(i)->sig, original.getEntry(i)->sig);
        if (original.link(i) == i) {
            ASSERT_TRUE(std::ranges::equal(original.getTagData(i), reloaded.getTagData(i)))
                << "tag " << i << " " << sigToText(original.getEntry(i)->sig);
        }
    }

    if (isVersion4(reloaded.header())) {
        Bytes hashed = bytes;
        // Attributes and intent cleared; the ID field holds the ID the profile was loaded with.
        std::memset(hashed.data() + 56, 0, 12);
        std::copy(original.header().profileID.begin(), original.header().profileID.end(),
                  hashed.begin() + 84);
        icDigest digest{};
        ASSERT_EQ(CMD5Checksum().digestOfMemory(hashed, digest), icOk);
        EXPECT_TRUE(std::equal(digest.begin(), digest.end(), bytes.begin() + 84));
    }
    expectLcmsReadsAsBefore(path, saved, true);
}

INSTANTIATE_TEST_SUITE_P(Installed, RealProfile, testing::ValuesIn(installedProfiles()),
                         [](const auto& info) { return profileTestName(info.param, info.index); });

} // namespace
