// Walks every tag of every installed profile with Little CMS's reading of the same file beside
// it, for the tests that compare a tag type with Little CMS.
#pragma once

#include "profile/profile.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <memory>

// Calls check(profile, index, tagSignature, typeSignature, lcms) for each tag.
template <class Check> void forEachRealTag(Check check) {
    for (const auto& path : installedProfiles()) {
        iccProfileRW profile;
        ASSERT_EQ(profile.loadFromFile(path.string()), icOk) << path;
        const std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)> lcms(
            cmsOpenProfileFromFile(path.c_str(), "r"), &cmsCloseProfile);
        ASSERT_NE(lcms, nullptr) << path;
        for (int i = 0; i < profile.tagCount(); ++i) {
            const icSignature sig = profile.getEntry(i)->sig;
            SCOPED_TRACE(path.string() + " " + sigToText(sig));
            check(profile, i, sig, profile.getTagTypeSignature(i), lcms.get());
        }
    }
}
