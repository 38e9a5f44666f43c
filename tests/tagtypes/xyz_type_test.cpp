// 'XYZ ', 'sf32' and 'chad': real tags against Little CMS, odd sizes, adaptation and setters.
#include "numeric/matrix.h"
#include "support/lcms_testing.h"
#include "tagtypes/profile_save.h"
#include "tagtypes/s15fixed16_array_type.h"
#include "tagtypes/xyz_type.h"

namespace {

TEST(XyzTypes, RealTagsDecodeAsLittleCmsReadsThem) {
    int xyzTags = 0, chadTags = 0;
    forEachRealTag(
        [&](iccProfileRW& profile, int i, icSignature sig, icSignature type, cmsHPROFILE lcms) {
            const void* expected = cmsReadTag(lcms, static_cast<cmsTagSignature>(sig));
            if (type == iccXYZType::kSignature) {
                iccXYZType xyz;
                ASSERT_EQ(xyz.loadByIndex(i, profile), icOk);
                const auto* lcmsXyz = static_cast<const cmsCIEXYZ*>(expected);
                ASSERT_NE(lcmsXyz, nullptr);
                EXPECT_TRUE(xyz.X == lcmsXyz->X && xyz.Y == lcmsXyz->Y && xyz.Z == lcmsXyz->Z);
                ++xyzTags;
            } else if (type == iccS15Fixed16ArrayType::kSignature) {
                iccS15Fixed16ArrayType array;
                iccChromaticAdaptationType chad;
                ASSERT_EQ(array.loadByIndex(i, profile), icOk);
                EXPECT_EQ(array.valueCount(), (profile.getEntry(i)->size - 8) / 4);
                if (sig != icSig("chad"))
                    return;
                ASSERT_EQ(chad.loadByIndex(i, profile), icOk);
                ASSERT_NE(expected, nullptr);
                for (int k = 0; k < 9; ++k) {
                    EXPECT_EQ(chad.matrix[k], static_cast<const double*>(expected)[k]) << k;
                    EXPECT_EQ(array.value(k), chad.matrix[k]) << k;
                }
                ++chadTags;
            }
        });
    EXPECT_GT(xyzTags, 200);
    EXPECT_GT(chadTags, 20);
}

TEST(XyzTypes, OddSizesAreBoundedByTheRawBytes) {
    Bytes thirteen = wordTag(icSig("sf32"), {0x10000});
    thirteen.push_back(0x7F);
    iccS15Fixed16ArrayType array;
    ASSERT_EQ(array.setData(thirteen), icOk);
    EXPECT_EQ(array.values, std::vector<std::int32_t>{0x10000});

    iccXYZType xyz;
    ASSERT_EQ(xyz.setData(wordTag(icSig("XYZ "), {0x8000, 0x10000, 0xFFFF0000, 1, 2, 3})), icOk);
    EXPECT_TRUE(xyz.X == 0.5 && xyz.Y == 1.0 && xyz.Z == -1.0);

    // 'chad' is read by position, whatever its type signature says.
    iccChromaticAdaptationType chad;
    ASSERT_EQ(chad.setData(wordTag(icSig("abcd"), {1, 2, 3, 4, 5, 6, 7, 8, 0x20000})), icOk);
    EXPECT_EQ(chad.matrix[8], 2.0);

    // Tags too short for their values fail after decoding when loaded from a profile.
    const auto profile =
        loaded(ProfileBuilder()
                   .tag(icSig("chad"), wordTag(icSig("sf32"), {1, 2, 3, 4, 5, 6, 7, 8}))
                   .tag(icSig("wtpt"), wordTag(icSig("XYZ "), {1, 2}))
                   .build());
    EXPECT_EQ(chad.loadByIndex(0, *profile), icErrBadProfile);
    EXPECT_EQ(xyz.loadByIndex(1, *profile), icErrBadProfile);
}

TEST(ProfileSetters, ReadBackInLittleCmsAndApartFromLoadedTags) {
    const icVector3 d65 = {95.047, 100.0, 108.883};
    icMatrix3 adaptation{};
    ASSERT_EQ(bradfordAdaptation(d65, kD50White100, adaptation), icOk);
    const icVector3 mapped = apply3x3(adaptation, d65);
    for (int i = 0; i < 3; ++i)
        EXPECT_NEAR(mapped[i], kD50White100[i], 1e-9);
    EXPECT_EQ(invert3x3({0.9e-5, 0, 0, 0, 1, 0, 0, 0, 1}, adaptation), icErrSingular);
    EXPECT_EQ(invert3x3({1.1e-5, 0, 0, 0, 1, 0, 0, 0, 1}, adaptation), icOk);
    EXPECT_EQ(bradfordAdaptation({0, 0, 0}, kD50White100, adaptation), icErrSingular);

    // D65 to D50, worked out separately; the 0.895 cone entry and rounding toward zero of
    // negative values each show in the last digit of one value.
    iccChromaticAdaptationType chad;
    ASSERT_EQ(chad.setFromSourceWhite(d65[0], d65[1], d65[2]), icOk);
    const std::int32_t expected[9] = {68671, 1501, -3288, 1937, 64913, -1118, -605, 987, 49273};
    ASSERT_EQ(chad.rawSize(), 44u);
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(static_cast<std::int32_t>(loadBE32(chad.raw().data() + 8 + 4 * i)), expected[i]);

    iccProfileRW profile;
    profile.header().deviceClass = icSig("mntr");
    profile.header().colorSpace = icSig("RGB ");
    ASSERT_EQ(setDescription(profile, "setters"), icOk);
    ASSERT_EQ(setMediaWhitePoint(profile, 0.9505, 1.0, 1.089), icOk);
    ASSERT_EQ(setChromaticAdaptation(profile, chad.matrix), icOk);
    Bytes saved;
    ASSERT_EQ(saveProfileToMemory(profile, saved), icOk);
    const LcmsProfile lcms = lcmsOpen(saved);
    ASSERT_NE(lcms, nullptr);
    const auto* white =
        static_cast<const cmsCIEXYZ*>(cmsReadTag(lcms.get(), cmsSigMediaWhitePointTag));
    const auto* read =
        static_cast<const double*>(cmsReadTag(lcms.get(), cmsSigChromaticAdaptationTag));
    ASSERT_TRUE(white && read);
    EXPECT_NEAR(white->Z, 1.089, 1.0 / 65536);
    // Encoded again from the doubles, negative values move one unit toward zero.
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(read[i], (expected[i] + (expected[i] < 0)) / 65536.0) << i;

    // A tag loaded from a profile and the profile do not write into each other.
    iccProfileRW own;
    ASSERT_EQ(setMediaWhitePoint(own, 0.5, 0.5, 0.5), icOk);
    iccXYZType xyz;
    ASSERT_EQ(xyz.loadBySignature(icSig("wtpt"), own), icOk);
    // Replacing the tag in the profile leaves the loaded bytes as they were.
    ASSERT_EQ(setMediaWhitePoint(own, 0.25, 0.25, 0.25), icOk);
    EXPECT_EQ(loadBE32(xyz.raw().data() + 8), 0x8000u);
    // Writing the loaded tag leaves the profile's bytes as they were.
    ASSERT_EQ(xyz.loadBySignature(icSig("wtpt"), own), icOk);
    ASSERT_EQ(xyz.setXYZ(1.0, 1.0, 1.0), icOk);
    EXPECT_EQ(loadBE32(xyz.raw().data() + 8), 0x10000u);
    EXPECT_EQ(loadBE32(own.getTagDataBySignature(icSig("wtpt")).data() + 8), 0x4000u);
}

} // namespace
