// Export and import end to end through veltrino-cli, on the installed profiles and on tables
// written by Little CMS, which must still read every saved profile.
#include "lutio_testing.h"
#include "support/lcms_testing.h"
#include "tagtypes/curve_type.h"
#include "tagtypes/lut16_type.h"
#include "tagtypes/lut_atob_type.h"
#include "tagtypes/tag_factory.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

bool isLut(icSignature type) {
    return type == icSig("mft1") || type == icSig("mft2") || type == icSig("mAB ") ||
           type == icSig("mBA ");
}
bool isCurve(icSignature type) {
    return type == icSig("curv") || type == icSig("para");
}

// What an export and an import make of a lut8/lut16 or curve encoding: reserved and padding
// bytes become zero, and a negative s15Fixed16 moves one unit toward zero per encoding from a
// double (reading its text, then each rebuild of a 'para': once in a curve tag, twice in an mlut).
constexpr std::int32_t kParaEncodingsOfCurveTag = 2;
constexpr std::int32_t kParaEncodingsInMlut = 3;

Bytes afterRoundTrip(Bytes b, icSignature type, std::int32_t paraEncodings) {
    const auto zero = [&b](std::size_t from, std::size_t to) {
        std::fill(b.begin() + from, b.begin() + to, 0);
    };
    const auto towardZero = [&b](std::size_t at, std::int32_t units) {
        const auto v = static_cast<std::int32_t>(loadBE32(&b[at]));
        if (v < 0)
            storeBE32(&b[at], static_cast<std::uint32_t>(std::min(v + units, 0)));
    };
    zero(4, 8);
    if (type == icSig("curv")) {
        b.resize(12 + 2 * std::size_t(loadBE32(&b[8])));
    } else if (type == icSig("para")) {
        const std::size_t n =
            std::max(iccParametricCurveType::parameterCountFor(loadBE16(&b[8])), 0);
        b.resize(12 + 4 * n);
        zero(10, 12);
        for (std::size_t i = 0; i < n; ++i)
            towardZero(12 + 4 * i, paraEncodings);
    } else {
        zero(11, 12);
        for (std::size_t i = 0; i < 9; ++i)
            towardZero(12 + 4 * i, 1);
    }
    return b;
}

// The decoded fields of an 'mAB '/'mBA ' that an export and import must keep, after the same
// rules (the offsets are not among them: the window's write-back lays the elements out again).
struct MlutFields {
    std::uint32_t inputs = 0, outputs = 0;
    std::vector<Bytes> curves;
    std::vector<std::int32_t> matrix;
    Bytes clut;
    friend bool operator==(const MlutFields&, const MlutFields&) = default;
};

void PrintTo(const MlutFields& f, std::ostream* os) {
    *os << f.inputs << " in, " << f.outputs << " out, curves";
    for (const Bytes& curve : f.curves)
        *os << " " << testing::PrintToString(curve);
    *os << ", matrix " << testing::PrintToString(f.matrix) << ", CLUT of " << f.clut.size();
}

MlutFields fieldsOf(iccMlutType& tag, bool rounded) {
    MlutFields f{tag.inputChannels, tag.outputChannels, {}, {}, {}};
    for (auto* set : {&tag.bCurves, &tag.mCurves, &tag.aCurves}) {
        for (std::size_t i = 0; set->has_value() && i < (*set)->size(); ++i) {
            const iccCurveElement& curve = (**set)[i];
            f.curves.push_back(
                rounded ? afterRoundTrip(bytesOf(curve), curve.signature(), kParaEncodingsInMlut)
                        : bytesOf(curve));
        }
    }
    for (std::int32_t v : tag.matrix.value_or(std::array<std::int32_t, 12>()))
        f.matrix.push_back(rounded && v < 0 ? v + 1 : v);
    if (tag.clut)
        f.clut.assign(tag.clut->encoded().begin(), tag.clut->encoded().end());
    return f;
}

// The tag at `index` of a profile file, and its 'mAB '/'mBA ' fields.
Bytes tagOf(const fs::path& profile, int index) {
    iccProfileRW p;
    EXPECT_FALSE(icFailed(p.loadFromFile(profile.string()))) << profile;
    const auto bytes = p.getTagData(index);
    return Bytes(bytes.begin(), bytes.end());
}
MlutFields mlutOf(const fs::path& profile, int index, bool rounded = false) {
    iccMlutType tag;
    EXPECT_EQ(tag.setData(tagOf(profile, index)), icOk) << profile;
    return fieldsOf(tag, rounded);
}

std::string block(const std::string& text) {
    return "--- info | Veltrino\n" + text + "\n";
}

// export, then import into `saved`; returns the import's result.
CliResult exchange(const fs::path& profile, const std::string& tag, const fs::path& path,
                   const fs::path& saved) {
    const CliResult exported = runCli({"export", profile.string(), tag, path.string()});
    EXPECT_EQ(exported.exitCode, 0) << exported.out << exported.err;
    return runCli({"import", profile.string(), tag, path.string(), saved.string()});
}

class ExchangeRoundTrip : public testing::TestWithParam<fs::path> {};

TEST_P(ExchangeRoundTrip, EveryTableAndCurveComesBack) {
    const fs::path profile = GetParam();
    iccProfileRW original;
    ASSERT_FALSE(icFailed(original.loadFromFile(profile.string())));
    const fs::path dir = makeFolder("round-trip-" + profile.stem().string());
    for (int index = 0; index < original.tagCount(); ++index) {
        const icSignature type = original.getTagTypeSignature(index);
        if (!isLut(type) && !isCurve(type))
            continue;
        const std::string tag = std::to_string(index);
        SCOPED_TRACE(tag + " " + sigToText(original.getEntry(index)->sig));
        const fs::path path = dir / (tag + (isCurve(type) ? ".txt" : ""));
        const Bytes bytes = tagOf(profile, index);
        std::unique_ptr<iccTagType> decoded;
        const icStatus status = loadTagType(original, index, decoded);
        if (type == icSig("mBA ") || type == icSig("mAB ")) {
            // Only colord's malformed 'mBA ' tags are installed: nothing decodes to export.
            ASSERT_NE(status, icOk);
            EXPECT_EQ(runCli({"export", profile.string(), tag, path.string()}).exitCode, 1);
            continue;
        }
        const fs::path saved = dir / (tag + "-1.icc");
        const CliResult imported = exchange(profile, tag, path, saved);
        if (isLut(type) && status == icOk && decoded->encodedSize() != bytes.size()) {
            // The directory counts padding after the tables: the folder's Tag_Bytes is not the
            // size of the table its dimensions give, and the import refuses it.
            EXPECT_EQ(imported.exitCode, 1);
            EXPECT_EQ(imported.out, block("Error: Tag signatures are mismatched or the tag sizes "
                                          "are different."));
            EXPECT_FALSE(fs::exists(saved));
            continue;
        }
        ASSERT_EQ(imported.exitCode, 0) << imported.out << imported.err;
        if (isLut(type)) {
            EXPECT_EQ(imported.out.find(block("Successfully import a Lut" +
                                              std::string(type == icSig("mft1") ? "8" : "16") +
                                              " tag from folder:" + path.string())),
                      0u)
                << imported.out;
        }
        const Bytes first = tagOf(saved, index);
        EXPECT_EQ(first, afterRoundTrip(bytes, type, kParaEncodingsOfCurveTag));
        expectLcmsReadsAsBefore(profile, saved, false);

        const fs::path again = dir / (tag + "-2.icc");
        ASSERT_EQ(
            exchange(saved, tag, dir / (tag + "-2" + path.extension().string()), again).exitCode,
            0);
        EXPECT_EQ(tagOf(again, index), afterRoundTrip(first, type, kParaEncodingsOfCurveTag));
    }
}

INSTANTIATE_TEST_SUITE_P(Installed, ExchangeRoundTrip, testing::ValuesIn(installedProfiles()),
                         [](const auto& info) { return profileTestName(info.param, info.index); });

// A version-4 output profile whose AToB0 and BToA0 Little CMS writes as 'mAB ' and 'mBA ' with
// every element, in its own layout (A curves first): parametric curves with negative parameters,
// matrices with negative values, a 16-bit and an 8-bit CLUT.
fs::path littleCmsTables(const fs::path& path) {
    writeBytes(path, lcmsProfile({{cmsSigAToB0Tag, 3, "c3cxc"}, {cmsSigBToA0Tag, 3, "cxc3c", true}},
                                 true));
    return path;
}

TEST(ExchangeRoundTrip, VersionFourTablesOfLittleCms) {
    const fs::path dir = makeFolder("round-trip-v4");
    const fs::path profile = littleCmsTables(dir / "tables.icc");
    iccProfileRW p;
    ASSERT_EQ(p.loadFromFile(profile.string()), icOk);
    for (const char* tag : {"A2B0", "B2A0"}) {
        SCOPED_TRACE(tag);
        const int index = p.findTag(textToSig(tag));
        iccMlutType original;
        ASSERT_EQ(original.setData(p.getTagData(index)), icOk);
        if (tag == std::string("A2B0")) { // not the layout our own write-back gives it
            ASSERT_LT(original.offsetA, original.offsetB);
        }
        std::vector<fs::path> saved = {profile};
        for (int round = 1; round <= 2; ++round) {
            const fs::path folder = dir / (tag + std::to_string(round));
            saved.push_back(dir / (tag + std::to_string(round) + ".icc"));
            const CliResult imported = exchange(saved[round - 1], tag, folder, saved[round]);
            ASSERT_EQ(imported.exitCode, 0) << imported.out << imported.err;
            EXPECT_EQ(
                imported.out.find(block("Successfully import MLUT from folder:" + folder.string())),
                0u);
            EXPECT_EQ(mlutOf(saved[round], index), mlutOf(saved[round - 1], index, true));
            expectLcmsReadsAsBefore(profile, saved[round], false);
        }
    }
}

// One CLUT value and one matrix element edited by hand change those and nothing else.
TEST(ExchangeRoundTrip, HandEditedFolderChangesWhatWasEdited) {
    const fs::path dir = makeFolder("hand-edit");
    const fs::path lab = "/usr/share/color/icc/LCMSLABI.ICM";
    for (const fs::path& profile : {lab, littleCmsTables(dir / "tables.icc")}) {
        SCOPED_TRACE(profile.string());
        const fs::path folder = dir / ("folder-" + profile.stem().string());
        ASSERT_EQ(runCli({"export", profile.string(), "A2B0", folder.string()}).exitCode, 0);
        std::string clut = readText(folder / "clut.txt");
        const std::size_t line = clut.find("\n100 ") + 5;
        clut.replace(line, clut.find(' ', line) - line, "12345");
        writeText(folder / "clut.txt", clut);
        std::string matrix = readText(folder / "matrix.txt");
        const std::size_t row = matrix.find("\n4 ") + 1;
        matrix.replace(row, matrix.find('\n', row) - row, "4 0.5");
        writeText(folder / "matrix.txt", matrix);
        const fs::path saved = dir / ("edited-" + profile.stem().string() + ".icc");
        ASSERT_EQ(
            runCli({"import", profile.string(), "A2B0", folder.string(), saved.string()}).exitCode,
            0);

        iccProfileRW before, after;
        ASSERT_FALSE(icFailed(before.loadFromFile(profile.string())));
        ASSERT_EQ(after.loadFromFile(saved.string()), icOk);
        const int index = before.findTag(icSig("A2B0"));
        ASSERT_EQ(after.findTag(icSig("A2B0")), index);
        if (profile == lab) {
            iccLut16Type was, now;
            ASSERT_EQ(was.loadByIndex(index, before), icOk);
            ASSERT_EQ(now.loadByIndex(index, after), icOk);
            was.clut[100 * was.outputChannels()] = 12345;
            was.matrix[4] = 32768;
            EXPECT_EQ(now.clut, was.clut);
            EXPECT_EQ(now.matrix, was.matrix);
            EXPECT_EQ(now.inputTables, was.inputTables);
            EXPECT_EQ(now.outputTables, was.outputTables);
        } else {
            MlutFields expected = mlutOf(profile, index, true);
            storeBE16(&expected.clut[20 + 2 * 100 * 3], 12345);
            expected.matrix[4] = 32768;
            EXPECT_EQ(mlutOf(saved, index), expected);
        }
    }
}

// Curve tags built here: a 'curv' of more than 4096 entries exports, but its file is refused on
// import; a 'para' with a negative parameter comes back moved toward zero.
TEST(ExchangeRoundTrip, BuiltCurveTags) {
    iccCurveType curve;
    ASSERT_EQ(curve.build(5000, std::vector<std::uint16_t>(5000, 7)), icOk);
    iccParametricCurveType para;
    ASSERT_EQ(para.build(1, 3, std::vector<double>{2.2, 1.1, -0.1}), icOk);
    const Bytes paraBytes(para.raw().begin(), para.raw().end());
    const fs::path dir = makeFolder("built-curves");
    writeBytes(dir / "curves.icc",
               ProfileBuilder()
                   .tag(icSig("desc"), textTag("curves"))
                   .tag(icSig("kTRC"), Bytes(curve.raw().begin(), curve.raw().end()))
                   .tag(icSig("rTRC"), paraBytes)
                   .build());

    const CliResult refused = exchange(dir / "curves.icc", "kTRC", dir / "k.txt", dir / "k.icc");
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.out, block("Error in saving file!"));
    EXPECT_FALSE(fs::exists(dir / "k.icc"));

    ASSERT_EQ(exchange(dir / "curves.icc", "rTRC", dir / "r.txt", dir / "r.icc").exitCode, 0);
    EXPECT_EQ(tagOf(dir / "r.icc", 2),
              afterRoundTrip(paraBytes, icSig("para"), kParaEncodingsOfCurveTag));
}

} // namespace
