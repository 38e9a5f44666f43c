// 'mAB ' and 'mBA ': structure and hostile sizes, Little CMS's tables, rebuilds, loads.
#include "support/lcms_testing.h"
#include "tagtypes/lut_atob_type.h"

#include <lcms2_plugin.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

Bytes operator+(Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes mlut(const char (&sig)[5], std::uint8_t inputs, std::uint8_t outputs,
           std::array<std::uint32_t, 5> offsets, const Bytes& body) {
    Bytes header{inputs, outputs, 0, 0};
    iccWriter w(header);
    for (std::uint32_t offset : offsets)
        w.u32(offset);
    return tagBytes(icSig(sig), header) + body;
}

// n gamma-1.0 curves of 16 bytes each (14 and padding).
Bytes gammas(int n) {
    Bytes bytes;
    for (int i = 0; i < n; ++i)
        bytes = bytes + tagBytes(icSig("curv"), {0, 0, 0, 1, 1, 0, 0, 0});
    return bytes;
}

Bytes clutBytes(std::vector<std::uint8_t> grid, std::uint8_t precision, std::size_t valueBytes) {
    grid.resize(16);
    grid.push_back(precision);
    grid.resize(20 + valueBytes);
    return grid;
}

TEST(MlutType, StructureAndHostileSizes) {
    struct Row {
        const char* name;
        Bytes bytes;
        icStatus status;
    } rows[] = {
        {"B curves only", mlut("mAB ", 1, 3, {32, 0, 0, 0, 0}, gammas(3)), icOk},
        {"matrix without M curves", mlut("mBA ", 3, 1, {32, 80, 0, 0, 0}, gammas(3) + Bytes(48)),
         icErrBadProfile},
        {"offset 34", mlut("mAB ", 1, 1, {34, 0, 0, 0, 0}, gammas(2)), icErrBadProfile},
        {"no B curves", mlut("mAB ", 1, 1, {0, 0, 0, 0, 0}, {}), icErrBadProfile},
        {"CLUT without A curves",
         mlut("mAB ", 1, 1, {32, 0, 0, 48, 0}, gammas(1) + clutBytes({2}, 1, 2)), icErrBadProfile},
        {"17 CLUT inputs",
         mlut("mAB ", 17, 1, {32, 0, 0, 48, 68}, gammas(1) + clutBytes({}, 1, 0) + gammas(17)),
         icErrInvalidArg},
        {"CLUT claiming 255^3 x 3 values",
         mlut("mAB ", 3, 3, {32, 0, 0, 80, 100},
              gammas(3) + clutBytes({255, 255, 255}, 2, 0) + gammas(3)),
         icErrTruncated},
        {"curve of an unknown type", mlut("mAB ", 1, 1, {32, 0, 0, 0, 0}, Bytes(16, 'x')),
         icErrGeneral},
        {"curve set cut short", mlut("mAB ", 1, 3, {32, 0, 0, 0, 0}, gammas(2)), icErrTruncated},
        {"header cut short", Bytes(tagBytes(icSig("mAB "), Bytes(20))), icErrTruncated},
        {"another tag type", tagBytes(icSig("mft2"), Bytes(40)), icErrBadProfile},
    };
    for (const Row& row : rows) {
        iccMlutType tag;
        EXPECT_EQ(tag.setData(row.bytes), row.status) << row.name;
    }

    EXPECT_EQ(iccClut().init(16, 255, 2, Bytes(16, 255)), icErrInvalidArg); // beyond 4 GiB

    // Nothing is written that decoding would refuse.
    iccMlutType layout;
    EXPECT_EQ(layout.createLayout(icSig("mft2"), 1, 1, {true}), icErrInvalidArg);
    ASSERT_EQ(layout.createLayout(iccMlutType::kAToB, 1, 1, {true, true}), icOk);
    EXPECT_EQ(layout.rebuild(), icErrBadProfile);
    ASSERT_EQ(layout.createLayout(iccMlutType::kAToB, 1, 1, {true}), icOk);
    EXPECT_EQ(layout.rebuild(), icErrGeneral); // its B curve was never set
}

void expectSameCurves(const std::vector<iccCurveElement>& ours, const void* stageData) {
    const auto* theirs = static_cast<const _cmsStageToneCurvesData*>(stageData);
    ASSERT_EQ(theirs->nCurves, ours.size());
    for (std::size_t i = 0; i < ours.size(); ++i) {
        const cmsToneCurve* t = theirs->TheCurves[i];
        if (const auto* para = ours[i].parametric()) {
            EXPECT_EQ(cmsGetToneCurveParametricType(t), para->functionType + 1);
            for (int k = 0; k < para->parameterCount; ++k)
                EXPECT_NEAR(cmsGetToneCurveParams(t)[k], para->parameters[k], 1 / 65536.0);
        } else if (const auto* curv = ours[i].curve(); curv->count() >= 2) {
            EXPECT_EQ(cmsGetToneCurveEstimatedTableEntries(t), curv->count());
        } else {
            EXPECT_EQ(cmsGetToneCurveParams(t)[0], curv->gamma());
        }
    }
}

// Element presence and order, curve types and parameters, matrix, CLUT grid and values.
void expectSameAsLcms(const iccMlutType& ours, const cmsPipeline* theirs) {
    ASSERT_NE(theirs, nullptr);
    EXPECT_EQ(cmsPipelineInputChannels(theirs), ours.inputChannels);
    EXPECT_EQ(cmsPipelineOutputChannels(theirs), ours.outputChannels);
    const cmsStage* stage = cmsPipelineGetPtrToFirstStage(theirs);
    // Little CMS holds the elements as stages in processing order.
    for (char element : std::string_view(ours.isBToA() ? "BXMLA" : "ALMXB")) {
        const auto* curves = element == 'A'   ? &ours.aCurves
                             : element == 'B' ? &ours.bCurves
                             : element == 'M' ? &ours.mCurves
                                              : nullptr;
        if (curves ? !*curves : element == 'X' ? !ours.matrix : !ours.clut)
            continue;
        ASSERT_NE(stage, nullptr) << element;
        const auto type = cmsStageType(stage);
        const void* data = cmsStageData(stage);
        stage = cmsStageNext(stage);
        if (curves) {
            ASSERT_EQ(type, cmsSigCurveSetElemType) << element;
            expectSameCurves(**curves, data);
        } else if (element == 'X') {
            ASSERT_EQ(type, cmsSigMatrixElemType);
            const auto* m = static_cast<const _cmsStageMatrixData*>(data);
            for (int k = 0; k < 12; ++k)
                EXPECT_EQ(k < 9 ? m->Double[k] : m->Offset[k - 9],
                          s15Fixed16ToDouble((*ours.matrix)[k]));
        } else {
            ASSERT_EQ(type, cmsSigCLutElemType);
            const auto* clut = static_cast<const _cmsStageCLutData*>(data);
            for (std::uint32_t i = 0; i < ours.clut->inputChannels(); ++i)
                EXPECT_EQ(clut->Params->nSamples[i], ours.clut->gridPoints(i));
            ASSERT_EQ(clut->nEntries, ours.clut->valueCount());
            const std::uint32_t scale = ours.clut->precision() == 1 ? 257 : 1;
            for (std::uint32_t k = 0; k < clut->nEntries; ++k)
                ASSERT_EQ(clut->Tab.T[k], ours.clut->value(k) * scale) << "value " << k;
        }
    }
    EXPECT_EQ(stage, nullptr);
}

void expectSameAsLcms(const iccMlutType& ours, const Bytes& profile, icSignature tagSig) {
    const LcmsProfile lcms = lcmsOpen(profile);
    expectSameAsLcms(ours, static_cast<const cmsPipeline*>(
                               cmsReadTag(lcms.get(), static_cast<cmsTagSignature>(tagSig))));
}

// Rebuild, decode the new bytes and rebuild again: the same bytes mean the same fields, since
// every field but the recomputed offsets is written. Little CMS reads the new bytes alike.
void checkRoundTrip(iccMlutType& decoded, icSignature tagSig) {
    const auto first = decoded.getData();
    const Bytes rebuilt(first.begin(), first.end());
    ASSERT_FALSE(rebuilt.empty());
    iccMlutType again;
    ASSERT_EQ(again.setData(rebuilt), icOk);
    EXPECT_TRUE(std::ranges::equal(again.getData(), rebuilt));
    expectSameAsLcms(again, ProfileBuilder().tag(tagSig, rebuilt).build(), tagSig);
}

TEST(MlutType, TablesWrittenByLittleCmsDecodeAndRebuild) {
    constexpr cmsTagSignature a = cmsSigAToB0Tag, b = cmsSigBToA0Tag;
    const LcmsPipeline pipelines[] = {
        {a, 3, "c"}, {a, 3, "cxc"}, {a, 4, "c3c"}, {a, 4, "c3cxc"}, {a, 3, "c3cxc", true},
        {b, 3, "c"}, {b, 3, "cxc"}, {b, 3, "c4c"}, {b, 3, "cxc4c"}, {b, 3, "cxc2c", true}};
    for (const LcmsPipeline& c : pipelines) {
        SCOPED_TRACE(std::string(c.tag == a ? "mAB " : "mBA ") + c.stages);
        const Bytes bytes = lcmsProfile({c});
        iccLutAToBType aToB;
        iccLutBToAType bToA;
        iccMlutType& tag = c.tag == a ? static_cast<iccMlutType&>(aToB) : bToA;
        ASSERT_EQ(tag.loadBySignature(c.tag, *loaded(bytes)), icOk);
        EXPECT_EQ(tag.clut ? tag.clut->precision() : 2 - c.eightBit, 2 - c.eightBit);
        expectSameAsLcms(tag, bytes, c.tag);
        checkRoundTrip(tag, c.tag);
    }
}

// Every lookup table of the installed profiles decodes exactly when Little CMS reads it (colord's
// two 'mBA ' tags have M curves overlapping the matrix; both sides refuse them).
TEST(MlutType, RealProfilesAgreeWithLittleCms) {
    forEachRealTag([](iccProfileRW& profile, int i, icSignature sig, icSignature type,
                      cmsHPROFILE lcms) {
        if (type != iccMlutType::kAToB && type != iccMlutType::kBToA)
            return;
        iccMlutType tag;
        const icStatus status = tag.loadByIndex(i, profile);
        const auto* theirs =
            static_cast<const cmsPipeline*>(cmsReadTag(lcms, static_cast<cmsTagSignature>(sig)));
        ASSERT_EQ(status == icOk, theirs != nullptr) << status;
        if (theirs) {
            expectSameAsLcms(tag, theirs);
            checkRoundTrip(tag, sig);
        }
    });
}

TEST(MlutType, LoadBySignatureKeepsToItsOwnType) {
    // No input channels: the A curve set is empty and its offset may lie past the tag. A load
    // from the directory refuses it by size; the second attempt of a load by signature takes it.
    const Bytes beyond = mlut("mAB ", 0, 1, {32, 0, 0, 44, 200},
                              tagBytes(icSig("curv"), Bytes(4)) + clutBytes({}, 2, 4));
    const auto owner = loaded(ProfileBuilder()
                                  .tag(icSig("A2B0"), mlut("mAB ", 1, 1, {32}, gammas(1)))
                                  .tag(icSig("B2A0"), mlut("mBA ", 1, 1, {32}, gammas(1)))
                                  .tag(icSig("A2B1"), beyond)
                                  .build());
    iccProfileRW& profile = *owner;
    iccLutAToBType aToB;
    iccLutBToAType bToA;
    EXPECT_EQ(aToB.loadBySignature(icSig("A2B0"), profile), icOk);
    EXPECT_EQ(aToB.loadBySignature(icSig("B2A0"), profile), icErrBadProfile);
    EXPECT_EQ(bToA.loadBySignature(icSig("B2A0"), profile), icOk);
    EXPECT_EQ(bToA.loadBySignature(icSig("A2B2"), profile), icErrBadProfile);
    EXPECT_EQ(aToB.loadByIndex(2, profile), icErrBadProfile);
    EXPECT_EQ(aToB.loadBySignature(icSig("A2B1"), profile), icOk);
    EXPECT_EQ(aToB.offsetA, 200u);
    EXPECT_EQ(bToA.loadBySignature(icSig("A2B1"), profile), icOk);
}

} // namespace
