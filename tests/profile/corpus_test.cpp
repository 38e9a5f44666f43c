// Every installed real profile: load, header texts, save round trip, and the same tags as
// Little CMS sees them.
#include "document/document.h"
#include "profile/profile.h"
#include "profile/profile_id.h"
#include "support/test_support.h"
#include "tagtypes/profile_save.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <cstring>

namespace {

class NullPresenter : public Presenter {
public:
    void messageBox(icBoxKind, std::string_view, std::string_view text) override {
        messages.emplace_back(text);
    }
    std::vector<std::string> messages;
};

class RealProfile : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(RealProfile, LoadsAndSavesWithEveryTagIntact) {
    const auto path = GetParam();
    iccProfileRW original;
    ASSERT_EQ(original.loadFromFile(path.string()), icOk);

    iccProfileRW copy;
    ASSERT_EQ(copy.loadFromFile(path.string()), icOk);
    const bool hadCopyright = copy.findTag(icSig("cprt")) >= 0;
    const auto saved = scratchDir() / ("saved-" + path.filename().string());
    ASSERT_EQ(saveProfileToFile(copy, saved.string()), icOk);

    const Bytes bytes = readBytes(saved);
    iccProfileRW reloaded;
    ASSERT_EQ(reloaded.loadFromFile(saved.string()), icOk);
    EXPECT_EQ(bytes.size() % 4, 0u);
    EXPECT_EQ(bytes.size(), reloaded.header().size);
    EXPECT_GE(reloaded.findTag(icSig("desc")), 0);
    EXPECT_GE(reloaded.findTag(icSig("cprt")), 0);
    EXPECT_EQ(reloaded.tagCount(), original.tagCount() + (hadCopyright ? 0 : 1) +
                                       (original.findTag(icSig("desc")) >= 0 ? 0 : 1));

    for (int i = 0; i < original.tagCount(); ++i) {
        const auto before = original.getTagData(i);
        const auto after = reloaded.getTagData(i);
        ASSERT_EQ(reloaded.getEntry(i)->sig, original.getEntry(i)->sig);
        if (original.link(i) == i) {
            ASSERT_TRUE(std::equal(before.begin(), before.end(), after.begin(), after.end()))
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

    // Little CMS reads every tag of the saved file that it read from the original, with the
    // same raw bytes.
    cmsHPROFILE before = cmsOpenProfileFromFile(path.c_str(), "r");
    cmsHPROFILE after = cmsOpenProfileFromFile(saved.c_str(), "r");
    ASSERT_NE(after, nullptr);
    if (before) {
        for (cmsInt32Number i = 0; i < cmsGetTagCount(before); ++i) {
            const cmsTagSignature sig = cmsGetTagSignature(before, static_cast<cmsUInt32Number>(i));
            const cmsUInt32Number n = cmsReadRawTag(before, sig, nullptr, 0);
            if (n == 0)
                continue;
            Bytes a(n), b(n);
            cmsReadRawTag(before, sig, a.data(), n);
            ASSERT_EQ(cmsReadRawTag(after, sig, b.data(), n), n) << sigToText(sig);
            EXPECT_EQ(a, b) << sigToText(sig);
        }
        cmsCloseProfile(before);
    }
    cmsCloseProfile(after);
}

INSTANTIATE_TEST_SUITE_P(Installed, RealProfile, testing::ValuesIn(installedProfiles()),
                         [](const auto& info) {
                             std::string name = info.param.filename().string();
                             for (char& c : name)
                                 if (!std::isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             return name + "_" + std::to_string(info.index);
                         });

} // namespace
