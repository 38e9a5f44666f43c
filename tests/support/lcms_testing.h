// Little CMS beside the tests: its reading of the installed profiles, and profiles it writes.
#pragma once

#include "profile/profile.h"
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <lcms2.h>

#include <memory>
#include <numeric>

using LcmsProfile = std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)>;

inline LcmsProfile lcmsOpen(const std::filesystem::path& path) {
    return {cmsOpenProfileFromFile(path.c_str(), "r"), &cmsCloseProfile};
}
inline LcmsProfile lcmsOpen(const Bytes& bytes) {
    return {cmsOpenProfileFromMem(bytes.data(), static_cast<cmsUInt32Number>(bytes.size())),
            &cmsCloseProfile};
}

// Calls check(profile, index, tagSignature, typeSignature, lcms) for each installed profile's tags.
template <class Check> void forEachRealTag(Check check) {
    for (const auto& path : installedProfiles()) {
        iccProfileRW profile;
        ASSERT_EQ(profile.loadFromFile(path.string()), icOk) << path;
        const LcmsProfile lcms = lcmsOpen(path);
        ASSERT_NE(lcms, nullptr) << path;
        for (int i = 0; i < profile.tagCount(); ++i) {
            const icSignature sig = profile.getEntry(i)->sig;
            SCOPED_TRACE(path.string() + " " + sigToText(sig));
            check(profile, i, sig, profile.getTagTypeSignature(i), lcms.get());
        }
    }
}

// Every tag Little CMS reads in `original` it reads in `saved`; with `sameBytes`, with the same
// raw bytes too.
inline void expectLcmsReadsAsBefore(const std::filesystem::path& original,
                                    const std::filesystem::path& saved, bool sameBytes) {
    const LcmsProfile before = lcmsOpen(original), after = lcmsOpen(saved);
    ASSERT_NE(after, nullptr) << saved;
    for (cmsInt32Number i = 0; before && i < cmsGetTagCount(before.get()); ++i) {
        const cmsTagSignature sig = cmsGetTagSignature(before.get(), cmsUInt32Number(i));
        SCOPED_TRACE(saved.string() + " " + sigToText(sig));
        EXPECT_TRUE(!cmsReadTag(before.get(), sig) || cmsReadTag(after.get(), sig));
        const cmsUInt32Number n = cmsReadRawTag(before.get(), sig, nullptr, 0);
        if (sameBytes && n > 0) {
            Bytes a(n), b(n);
            cmsReadRawTag(before.get(), sig, a.data(), n);
            ASSERT_EQ(cmsReadRawTag(after.get(), sig, b.data(), n), n);
            EXPECT_EQ(a, b);
        }
    }
}

// Saves a profile Little CMS built, and closes it.
inline Bytes lcmsSave(cmsHPROFILE h) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(h, nullptr, &size);
    Bytes bytes(size);
    cmsSaveProfileToMem(h, bytes.data(), &size);
    cmsCloseProfile(h);
    return bytes;
}

// A version-4 output profile with one pipeline per tag, written by Little CMS. Stages in
// processing order: 'c' curves on the current channels (parametric types 1 to 5, with two
// negative parameters if asked, and a sampled table, in turn), 'x' the matrix with offsets, a
// digit a CLUT to that many outputs over grids of 9, 5, 3, 2 points; with `eightBit` the CLUT is
// written in 8 bits.
struct LcmsPipeline {
    cmsTagSignature tag;
    std::uint32_t inputs;
    const char* stages;
    bool eightBit = false;
};

inline Bytes lcmsProfile(std::initializer_list<LcmsPipeline> pipelines, bool negative = false) {
    const double sign = negative ? -1 : 1;
    const double params[] = {2.4, 0.9, 0.1 * sign, 0.08, 0.05, 0.01 * sign, 0.02};
    static const cmsUInt16Number table[] = {0, 100, 900, 5000, 20000, 65535};
    static const double m[] = {0.5, 0.25, 0.125, -0.25, 1, 0, 0.75, 0, 1.5},
                        offsets[] = {0.01, 0.02, -0.03};
    static const std::uint32_t grid[] = {9, 5, 3, 2};
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 4.3);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetPCS(profile, cmsSigLabData);
    for (const LcmsPipeline& p : pipelines) {
        cmsPipeline* lut = cmsPipelineAlloc(nullptr, p.inputs, p.inputs);
        std::uint32_t channels = p.inputs;
        int kind = 0;
        for (const char* s = p.stages; *s; ++s) {
            cmsStage* stage = nullptr;
            if (*s == 'c') {
                std::vector<cmsToneCurve*> curves;
                for (std::uint32_t i = 0; i < channels; ++i, ++kind)
                    curves.push_back(
                        kind % 6 < 5 ? cmsBuildParametricToneCurve(nullptr, kind % 6 + 1, params)
                                     : cmsBuildTabulatedToneCurve16(nullptr, 6, table));
                stage = cmsStageAllocToneCurves(nullptr, channels, curves.data());
                for (cmsToneCurve* curve : curves)
                    cmsFreeToneCurve(curve);
            } else if (*s == 'x') {
                stage = cmsStageAllocMatrix(nullptr, 3, 3, m, offsets);
            } else {
                const std::uint32_t outputs = *s - '0';
                std::vector<cmsUInt16Number> values(
                    outputs * std::accumulate(grid, grid + channels, 1u, std::multiplies<>()));
                for (std::size_t i = 0; i < values.size(); ++i)
                    values[i] = static_cast<cmsUInt16Number>(i * 7919);
                stage =
                    cmsStageAllocCLut16bitGranular(nullptr, grid, channels, outputs, values.data());
                channels = outputs;
            }
            cmsPipelineInsertStage(lut, cmsAT_END, stage);
        }
        cmsPipelineSetSaveAs8bitsFlag(lut, p.eightBit);
        EXPECT_TRUE(cmsWriteTag(profile, p.tag, lut));
        cmsPipelineFree(lut);
    }
    return lcmsSave(profile);
}
