// 'curv' and 'para' tags: decoding on both load paths, resampling, real curves against Little CMS.
#include "numeric/interpolation.h"
#include "support/lcms_testing.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/tag_factory.h"

#include <cmath>

namespace {

// A 'curv' declaring `count` entries of which `present` are there.
Bytes curvBytes(std::uint32_t count, std::size_t present) {
    Bytes payload;
    iccWriter w(payload);
    w.u32(count);
    for (std::size_t i = 0; i < present; ++i)
        w.u16(0x0233);
    return tagBytes(icSig("curv"), payload);
}

Bytes paraBytes(std::uint16_t type, std::size_t parameters) {
    Bytes payload;
    iccWriter w(payload);
    w.u16(type);
    w.u16(0);
    for (std::size_t i = 0; i < parameters; ++i)
        w.s15f16(0.5);
    return tagBytes(icSig("para"), payload);
}

Bytes cut(Bytes bytes, std::size_t n) {
    bytes.resize(bytes.size() - n);
    return bytes;
}

TEST(CurveType, DecodeStatusOnBothLoadPaths) {
    // Setting bytes checks the minimum size before decoding, a load from a profile checks the
    // decoded size after it; the byte-count checks count from byte 8 and are four bytes lenient.
    struct Row {
        const char* name;
        Bytes bytes;
        icStatus set, load;
    } rows[] = {
        {"identity", curvBytes(0, 0), icOk, icOk},
        {"65536 entries", curvBytes(65536, 65536), icOk, icOk},
        {"65537 entries", curvBytes(65537, 65537), icErrBadProfile, icErrBadProfile},
        {"65537 entries claimed", curvBytes(65537, 0), icErrTruncated, icErrTruncated},
        {"3 entries in 2*3+8 bytes", cut(curvBytes(3, 3), 4), icOk, icErrBadProfile},
        {"3 entries in 13 bytes", cut(curvBytes(3, 3), 5), icErrTruncated, icErrTruncated},
        {"para type 5", paraBytes(5, 0), icOk, icOk},
        {"para type 4 truncated", paraBytes(4, 2), icOk, icOk},
        {"para gamma missing", paraBytes(0, 0), icOk, icErrBadProfile},
        {"para too short for its type", cut(paraBytes(0, 0), 2), icErrBadProfile, icErrBadProfile},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::unique_ptr<iccTagType> set, load;
        ASSERT_EQ(makeTagType(loadBE32(row.bytes.data()), set), icOk);
        EXPECT_EQ(set->setData(row.bytes), row.set);
        EXPECT_EQ(
            loadTagType(*loaded(ProfileBuilder().tag(icSig("rTRC"), row.bytes).build()), 0, load),
            row.load);
    }
    iccCurveType curve;
    EXPECT_EQ(curve.setData(tagBytes(icSig("XYZ "), Bytes(12))), icErrBadProfile);
    ASSERT_EQ(curve.build(3), icOk);
    EXPECT_EQ(curve.entries(), (std::vector<std::uint16_t>{0, 32768, 65535}));
    // Too short for seven parameters: nothing is decoded, and that is no failure.
    iccParametricCurveType para;
    ASSERT_EQ(para.setData(paraBytes(4, 2)), icOk);
    EXPECT_EQ(para.parameterCount, 0);
}

iccCurveElement para(std::uint16_t type, std::vector<double> p) {
    iccCurveElement curve;
    EXPECT_EQ(curve.buildParametric(type, static_cast<std::int32_t>(p.size()), p), icOk);
    return curve;
}

iccCurveElement curv(std::vector<double> values) {
    iccCurveElement curve;
    EXPECT_EQ(curve.buildCurve(values), icOk);
    return curve;
}

TEST(CurveType, Resampling) {
    // The values resampled as doubles, 16-bit and 32-bit integers; an empty list is not compared.
    struct Row {
        iccCurveElement curve;
        std::vector<double> y;
        std::vector<std::uint16_t> y16;
        std::vector<std::int32_t> y32;
    } rows[] = {
        {para(1, {1, 1, 0}), {0, 16383.75, 32767.5, 49151.25, 65535}, {}, {}}, // identity
        // Clamped a hundredth above full scale.
        {para(1, {1, 2, 0}), {0, 65535, 65535.01}, {0, 65535, 65535}, {0, 65535, 65535}},
        {para(3, {1, 1, 0, 0.25, 0.5}), {0, 8191.875, 65535}, {}, {}}, // lower branch at x = d
        {para(2, {1, 1, -0.5, -0.25}), {}, {0, 0, 16386}, {}},         // below zero is 0
        // 16 bits clamp, 32 bits only round.
        {para(4, {1, 1, 0, 0, 1, 0, 2}), {}, {65535, 65535}, {131070, 131070}},
        {curv({0, 65535}), {0, 32767.5, 65535}, {0, 32768, 65535}, {}}, // interpolated
        {curv({7, 3, 9}), {7, 3, 9}, {}, {}},                           // N entries as they are
        {curv({2.0}), {0, 16383.75, 65535}, {}, {}},                    // gamma
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto points =
            static_cast<std::uint32_t>(std::max({row.y.size(), row.y16.size(), row.y32.size()}));
        std::vector<double> y;
        std::vector<std::uint16_t> y16;
        std::vector<std::int32_t> y32;
        ASSERT_EQ(row.curve.resample(points, y), icOk);
        ASSERT_EQ(row.curve.resample(points, y16), icOk);
        ASSERT_EQ(row.curve.resample(points, y32), icOk);
        EXPECT_TRUE(row.y.empty() || y == row.y) << testing::PrintToString(y);
        EXPECT_TRUE(row.y16.empty() || y16 == row.y16) << testing::PrintToString(y16);
        EXPECT_TRUE(row.y32.empty() || y32 == row.y32) << testing::PrintToString(y32);
    }
    std::vector<double> y;
    EXPECT_EQ(curv({}).resample(1, y), icErrInvalidArg);
    EXPECT_EQ(iccCurveElement().resample(16, y), icErrGeneral);
    iccParametricCurveType unknown;
    ASSERT_EQ(unknown.setData(paraBytes(5, 0)), icOk);
    EXPECT_EQ(unknown.resample(16, y), icErrCurve);

    // Points closer than 1e-15 give the left value instead of a division by almost zero.
    iccLinearInterpolator narrow;
    ASSERT_EQ(narrow.setup(std::vector<double>{-1, 0, 1e-16, 1}, std::vector<double>{0, 1, 2, 3}),
              icOk);
    EXPECT_EQ(narrow(5e-17), 1);
}

// Every 'curv' and 'para' tag of the installed profiles decodes like Little CMS reads it and
// resamples like it evaluates; parametric tags survive a rebuild unchanged.
TEST(CurveType, RealProfilesAgreeWithLittleCms) {
    int compared = 0;
    forEachRealTag(
        [&](iccProfileRW& profile, int, icSignature tagSig, icSignature type, cmsHPROFILE lcms) {
            if (type != icSig("curv") && type != icSig("para"))
                return;
            iccCurveElement ours;
            ASSERT_EQ(ours.loadByTagSignature(tagSig, profile), icOk);
            const iccCurveType* curv = ours.curve();
            iccParametricCurveType* para = ours.parametric();
            if (para) {
                iccParametricCurveType again;
                ASSERT_EQ(again.setData(para->getData()), icOk);
                EXPECT_EQ(again.functionType, para->functionType);
                EXPECT_EQ(again.parameters, para->parameters);
            }

            auto* theirs =
                static_cast<cmsToneCurve*>(cmsReadTag(lcms, static_cast<cmsTagSignature>(tagSig)));
            if (!theirs)
                return; // a private tag Little CMS does not read
            ++compared;
            const bool table = curv && curv->count() >= 2;
            if (table) {
                ASSERT_EQ(cmsGetToneCurveEstimatedTableEntries(theirs), curv->count());
                EXPECT_TRUE(std::equal(curv->entries().begin(), curv->entries().end(),
                                       cmsGetToneCurveEstimatedTable(theirs)));
            } else if (curv) {
                // Little CMS holds a gamma (and the identity) as its parametric type 1.
                EXPECT_EQ(cmsGetToneCurveParametricType(theirs), 1);
                EXPECT_EQ(cmsGetToneCurveParams(theirs)[0], curv->gamma());
            } else {
                EXPECT_EQ(cmsGetToneCurveParametricType(theirs), para->functionType + 1);
                for (int k = 0; k < para->parameterCount; ++k)
                    EXPECT_NEAR(cmsGetToneCurveParams(theirs)[k], para->parameters[k], 1 / 65536.0);
            }

            std::vector<double> y;
            ASSERT_EQ(ours.resample(4096, y), icOk);
            // Little CMS rounds the input of a sampled table to 16 bits before interpolating,
            // while resampling interpolates at the exact x: for tables the bound grows by the
            // curve's rise over half a 16-bit input step.
            for (int k = 0; k < 4096; ++k) {
                const double rise = std::max(k > 0 ? std::abs(y[k] - y[k - 1]) : 0.0,
                                             k < 4095 ? std::abs(y[k + 1] - y[k]) : 0.0);
                const double tolerance = 1.0 + (table ? 0.5 * rise / (65535.0 / 4095) : 0.0);
                const double expected = cmsEvalToneCurveFloat(theirs, float(k / 4095.0)) * 65535;
                ASSERT_NEAR(y[k], expected, tolerance) << "at " << k << " of 4095";
            }
        });
    EXPECT_GT(compared, 100);
}

} // namespace
