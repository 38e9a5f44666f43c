// The large profile the load, save, exchange and window benchmarks share: a CMYK output profile
// of about 22 MB whose lookup tables Little CMS encoded, laid out by our own writer.
//
// A2B0, A2B1 and A2B2 are lut16 tables of 4 inputs, 3 outputs and 33 grid points (about 7 MB
// each, so that the A2B0 exchange folder is some 30 MB of text); B2A0-B2A2 and gamt are the
// small Lab-side tables of a real printer profile. Every table differs from the others, so no two
// tags share their bytes.
#pragma once

#include "profile/profile.h"
#include "tagtypes/profile_save.h"

#include <lcms2.h>

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

inline constexpr cmsUInt32Number kCmykGrid = 33;

// Curves bent by `bend`, a CLUT of values of every width (a multiplicative hash of the index and
// `seed`), and curves again.
inline cmsPipeline* cmykPipeline(cmsUInt32Number inputs, cmsUInt32Number outputs, double bend,
                                 std::uint32_t seed) {
    cmsPipeline* lut = cmsPipelineAlloc(nullptr, inputs, outputs);
    cmsToneCurve* in = cmsBuildGamma(nullptr, 1.0 + bend);
    cmsToneCurve* out = cmsBuildGamma(nullptr, 1.0 / (1.0 + bend));
    std::vector<cmsToneCurve*> inCurves(inputs, in), outCurves(outputs, out);
    std::size_t nodes = 1;
    for (cmsUInt32Number i = 0; i < inputs; ++i)
        nodes *= kCmykGrid;
    std::vector<cmsUInt16Number> table(nodes * outputs);
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<cmsUInt16Number>(((i + seed) * 2654435761u) >> 16);
    cmsPipelineInsertStage(lut, cmsAT_END,
                           cmsStageAllocToneCurves(nullptr, inputs, inCurves.data()));
    cmsPipelineInsertStage(
        lut, cmsAT_END, cmsStageAllocCLut16bit(nullptr, kCmykGrid, inputs, outputs, table.data()));
    cmsPipelineInsertStage(lut, cmsAT_END,
                           cmsStageAllocToneCurves(nullptr, outputs, outCurves.data()));
    cmsFreeToneCurve(in);
    cmsFreeToneCurve(out);
    return lut;
}

// The tag's bytes as Little CMS writes `lut` (which it takes) into a profile of that version,
// class and colour space: a lut16 ('mft2') table for version 2, a lutAToB ('mAB ') or lutBToA
// ('mBA ') table for version 4.
inline std::vector<std::uint8_t> lcmsEncode(cmsTagSignature sig, cmsPipeline* lut, double version,
                                            cmsProfileClassSignature deviceClass,
                                            cmsColorSpaceSignature colorSpace) {
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, version);
    cmsSetDeviceClass(profile, deviceClass);
    cmsSetColorSpace(profile, colorSpace);
    cmsSetPCS(profile, cmsSigLabData);
    cmsWriteTag(profile, sig, lut);
    cmsPipelineFree(lut);
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::vector<std::uint8_t> saved(size);
    cmsSaveProfileToMem(profile, saved.data(), &size);
    cmsCloseProfile(profile);

    cmsHPROFILE reread = cmsOpenProfileFromMem(saved.data(), size);
    std::vector<std::uint8_t> bytes(reread ? cmsReadRawTag(reread, sig, nullptr, 0) : 0);
    if (reread) {
        cmsReadRawTag(reread, sig, bytes.data(), static_cast<cmsUInt32Number>(bytes.size()));
        cmsCloseProfile(reread);
    }
    return bytes;
}

// A table of the CMYK profile's shape, encoded by Little CMS.
inline std::vector<std::uint8_t> lcmsTable(cmsTagSignature sig, cmsUInt32Number inputs,
                                           cmsUInt32Number outputs, double bend, std::uint32_t seed,
                                           double version = 2.1) {
    return lcmsEncode(sig, cmykPipeline(inputs, outputs, bend, seed), version, cmsSigOutputClass,
                      cmsSigCmykData);
}

// Writes the profile with header version `version` (0x04200000 gets an MD5 Profile ID when
// saved, 0x02100000 none). False when a table could not be encoded or the file written.
inline bool writeCmykProfile(const std::string& path, std::uint32_t version = 0x04200000) {
    iccProfileRW profile;
    icHeader& header = profile.header();
    header.version = version;
    header.deviceClass = icSig("prtr");
    header.colorSpace = icSig("CMYK");
    header.pcs = icSig("Lab ");
    if (setDescription(profile, "Veltrino benchmark CMYK profile") != icOk ||
        setMediaWhitePoint(profile, 0.9642, 1.0, 0.8249) != icOk)
        return false;
    struct Table {
        cmsTagSignature sig;
        cmsUInt32Number inputs, outputs;
    };
    const Table tables[] = {
        {cmsSigAToB0Tag, 4, 3}, {cmsSigAToB1Tag, 4, 3}, {cmsSigAToB2Tag, 4, 3},
        {cmsSigBToA0Tag, 3, 4}, {cmsSigBToA1Tag, 3, 4}, {cmsSigBToA2Tag, 3, 4},
        {cmsSigGamutTag, 3, 1},
    };
    std::uint32_t seed = 0;
    for (const Table& t : tables) {
        const auto bytes = lcmsTable(t.sig, t.inputs, t.outputs, 0.05 * seed, seed);
        ++seed;
        if (bytes.empty() || profile.setTagData(static_cast<icSignature>(t.sig), bytes) != icOk)
            return false;
    }
    return saveProfileToFile(profile, path) == icOk;
}

} // namespace bench
