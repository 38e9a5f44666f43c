// lut8 and lut16: real tables against Little CMS, rebuilds, hostile sizes, node lookup.
#include "support/lcms_testing.h"
#include "tagtypes/lut16_type.h"

#include <lcms2_plugin.h>

#include <algorithm>
#include <tuple>

namespace {

constexpr std::array<std::int32_t, 9> kIdentity = {65536, 0, 0, 0, 65536, 0, 0, 0, 65536};

// Whether our values, widened by `scale` (Little CMS holds 8-bit tables x 257), are theirs.
template <typename Value>
bool sameValues(const Value* ours, std::size_t count, const cmsUInt16Number* theirs,
                std::uint32_t scale) {
    for (std::size_t i = 0; i < count; ++i)
        if (ours[i] * scale != theirs[i])
            return false;
    return true;
}

template <typename Value>
void expectCurves(cmsStage* stage, const std::vector<Value>& tables, std::uint32_t entries) {
    ASSERT_EQ(cmsStageType(stage), cmsSigCurveSetElemType);
    const auto* curves = static_cast<const _cmsStageToneCurvesData*>(cmsStageData(stage));
    ASSERT_EQ(std::size_t(curves->nCurves) * entries, tables.size());
    for (std::uint32_t c = 0; c < curves->nCurves; ++c) {
        ASSERT_EQ(cmsGetToneCurveEstimatedTableEntries(curves->TheCurves[c]), entries);
        EXPECT_TRUE(sameValues(tables.data() + c * entries, entries,
                               cmsGetToneCurveEstimatedTable(curves->TheCurves[c]),
                               sizeof(Value) == 1 ? 257 : 1))
            << "channel " << c;
    }
}

// Little CMS reads the tag as a matrix stage (only for three inputs and a matrix other than
// identity), the input curves, the CLUT and the output curves.
template <typename Lut> void expectSameAsLcms(const Lut& lut, const cmsPipeline* pipeline) {
    cmsStage* stage = cmsPipelineGetPtrToFirstStage(pipeline);
    if (cmsStageType(stage) == cmsSigMatrixElemType) {
        const auto* m = static_cast<const _cmsStageMatrixData*>(cmsStageData(stage));
        for (std::size_t i = 0; i < 9; ++i)
            EXPECT_EQ(lut.matrixValue(i), m->Double[i]) << i;
        stage = cmsStageNext(stage);
    } else {
        EXPECT_TRUE(lut.inputChannels() != 3 || lut.matrix == kIdentity);
    }
    expectCurves(stage, lut.inputTables, lut.inputEntries());
    stage = cmsStageNext(stage);
    ASSERT_EQ(cmsStageType(stage), cmsSigCLutElemType);
    const auto* clut = static_cast<const _cmsStageCLutData*>(cmsStageData(stage));
    EXPECT_EQ(clut->Params->nSamples[0], lut.gridPoints());
    EXPECT_EQ(clut->Params->nInputs, lut.inputChannels());
    EXPECT_EQ(clut->Params->nOutputs, lut.outputChannels());
    ASSERT_EQ(clut->nEntries, lut.clutValueCount());
    EXPECT_TRUE(sameValues(lut.clut.data(), lut.clut.size(), clut->Tab.T,
                           sizeof(typename Lut::value_type) == 1 ? 257 : 1));
    expectCurves(cmsStageNext(stage), lut.outputTables, lut.outputEntries());
}

template <typename Lut> auto fields(const Lut& l) {
    return std::tuple(l.inputChannels(), l.outputChannels(), l.inputEntries(), l.outputEntries(),
                      l.gridPoints(), l.matrix, l.inputTables, l.clut, l.outputTables);
}

// Decodes as Little CMS reads it; rebuilt in place (bytes after the tables included) and decoded
// again, it gives the same bytes and fields.
template <typename Lut>
void checkRealTag(iccProfileRW& profile, int index, const cmsPipeline* pipeline) {
    ASSERT_NE(pipeline, nullptr);
    Lut lut;
    ASSERT_EQ(lut.loadByIndex(index, profile), icOk);
    expectSameAsLcms(lut, pipeline);
    const Bytes original(lut.raw().begin(), lut.raw().end());
    const auto rebuilt = lut.getData();
    EXPECT_TRUE(std::ranges::equal(rebuilt, original));
    Lut again;
    ASSERT_EQ(again.setData(rebuilt), icOk);
    EXPECT_TRUE(fields(again) == fields(lut));
}

TEST(LutTypes, RealTagsMatchLittleCmsAndRebuildByteForByte) {
    int checked = 0;
    forEachRealTag([&](iccProfileRW& profile, int i, icSignature sig, icSignature type,
                       cmsHPROFILE lcms) {
        const auto* pipeline =
            static_cast<const cmsPipeline*>(cmsReadTag(lcms, static_cast<cmsTagSignature>(sig)));
        if (type == iccLut8Type::kSignature)
            checkRealTag<iccLut8Type>(profile, i, pipeline);
        else if (type == iccLut16Type::kSignature)
            checkRealTag<iccLut16Type>(profile, i, pipeline);
        else
            return;
        ++checked;
    });
    EXPECT_GE(checked, 30);
}

// A lut tag with the given dimensions, an identity matrix and `tableBytes` zero bytes.
Bytes lutTag(icSignature type, std::uint8_t inputs, std::uint8_t outputs, std::uint8_t grid,
             std::uint16_t entries, std::size_t tableBytes) {
    Bytes payload{inputs, outputs, grid, 0};
    iccWriter w(payload);
    for (std::int32_t v : kIdentity)
        w.u32(static_cast<std::uint32_t>(v));
    if (type == iccLut16Type::kSignature) {
        w.u16(entries);
        w.u16(entries);
    }
    w.zeros(tableBytes);
    return tagBytes(type, payload);
}

TEST(LutTypes, HostileSizesFailBeforeAllocating) {
    const icSignature mft1 = iccLut8Type::kSignature, mft2 = iccLut16Type::kSignature;
    const icStatus truncated = icErrTruncated, bad = icErrBadProfile;
    Bytes headerOnly = lutTag(mft2, 3, 3, 2, 2, 0);
    headerOnly.resize(40);
    const struct {
        const char* name;
        bool asLut8;
        Bytes bytes;
        icStatus fromProfile, fromBytes;
    } cases[] = {
        {"grid^inputs overflows", false, lutTag(mft2, 15, 3, 255, 2, 1000), truncated, truncated},
        {"input tables cut", false, lutTag(mft2, 3, 3, 2, 256, 100), truncated, truncated},
        // 2 x 6 + 44 + 2 x 8 = 72 bytes pass the lenient checks; the CLUT needs 48 bytes more.
        {"CLUT cut", false, lutTag(mft2, 3, 3, 2, 2, 28), bad, bad},
        {"shorter than the matrix", false, headerOnly, truncated, bad},
        {"lut8 output tables cut", true, lutTag(mft1, 3, 3, 2, 0, 768 + 24 + 10), bad, bad},
        {"lut8 bytes as lut16", false, lutTag(mft1, 1, 1, 2, 0, 514), bad, bad},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto profile = loaded(ProfileBuilder().tag(icSig("A2B0"), c.bytes).build());
        iccLut8Type lut8;
        iccLut16Type lut16;
        iccTagType& lut = c.asLut8 ? static_cast<iccTagType&>(lut8) : lut16;
        EXPECT_EQ(lut.loadByIndex(0, *profile), c.fromProfile);
        EXPECT_EQ(lut.setData(c.bytes), c.fromBytes);
    }
}

TEST(LutTypes, SizesAndNodesTheExchangeFoldersAndViewersUse) {
    iccLut16Type lut16;
    ASSERT_EQ(lut16.initialize(2, 2, 3, 2, 5), icOk);
    EXPECT_EQ(lut16.setClut(std::vector<std::uint16_t>(10)), icErrInvalidArg);
    const std::uint32_t node[] = {3, 4}, outside[] = {5, 0};
    EXPECT_EQ(lut16.clutNodeOffset(node), (3 * 5 + 4) * 3u);
    EXPECT_FALSE(lut16.clutNodeOffset(outside));
    // Sizes beyond 32 bits or beyond what the encoding holds are refused.
    EXPECT_EQ(lut16.initialize(8, 2, 3, 2, 255), icErrInvalidArg);
    EXPECT_EQ(lut16.initialize(3, 2, 3, 2, 256), icErrInvalidArg);
    EXPECT_EQ(lut16.initialize(3, 65536, 3, 2, 2), icErrInvalidArg);
}

} // namespace
