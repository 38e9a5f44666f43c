// Comparing profiles: installed ones and their saves, each tag kind, CLUT imports, the command.
#include "catalogue/catalogue_testing.h"
#include "diff/profile_diff.h"
#include "support/lcms_testing.h"
#include "tagtypes/profile_save.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace fs = std::filesystem;

namespace {

icProfileDiff diffOf(iccProfile& a, iccProfile& b, double tolerance = 0) {
    icProfileDiff diff;
    EXPECT_EQ(diffProfiles(a, b, {tolerance}, diff), icOk);
    return diff;
}

std::vector<std::string> lines(const icDiffSection& section) {
    std::vector<std::string> out;
    for (const icDiffEntry& e : section.entries)
        out.push_back(diffEntryText(e));
    return out;
}

const icDiffSection* find(const icProfileDiff& diff, const std::string& title) {
    for (const icDiffSection& s : diff.sections)
        if (s.title.starts_with(title))
            return &s;
    return nullptr;
}

Bytes lut16(double matrixE1, std::uint16_t lastInputEntry) {
    iccLut16Type lut;
    EXPECT_EQ(lut.initialize(1, 2, 1, 2, 2), icOk);
    const double matrix[9] = {matrixE1, 0, 0, 0, 1, 0, 0, 0, 1};
    lut.setMatrix(matrix);
    lut.inputTables[1] = lastInputEntry;
    EXPECT_EQ(lut.rebuild(), icOk);
    return Bytes(lut.raw().begin(), lut.raw().end());
}

TEST(ProfileDiff, EveryInstalledProfileAgainstItselfAndItsSave) {
    const std::set<std::string> headerChanges = {"Size", "Date", "Profile ID"};
    for (const fs::path& path : installedProfiles()) {
        SCOPED_TRACE(path.string());
        iccProfileRW a, same, toSave, saved;
        ASSERT_EQ(a.loadFromFile(path), icOk);
        ASSERT_EQ(same.loadFromFile(path), icOk);
        EXPECT_TRUE(diffOf(a, same).equivalent()) << diffReportText(diffOf(a, same));

        const std::string copy = (scratchDir() / "diff-saved.icc").string();
        ASSERT_EQ(toSave.loadFromFile(path), icOk);
        ASSERT_EQ(saveProfileToFile(toSave, copy), icOk);
        ASSERT_EQ(saved.loadFromFile(copy), icOk);
        for (const icDiffSection& s : diffOf(a, saved).sections) {
            ASSERT_NE(s.kind, icDiffSectionKind::tag) << s.title;
            for (const icDiffEntry& e : s.entries)
                EXPECT_TRUE(s.kind == icDiffSectionKind::header
                                ? headerChanges.contains(e.what)
                                : e.what == "moved" || (e.what == "only in B" &&
                                                        (e.tag == "desc" || e.tag == "cprt")))
                    << diffEntryText(e);
        }
    }
}

TEST(ProfileDiff, TagsOfEachKind) {
    const Bytes xyz = wordTag(icSig("XYZ "), {63190, 65536, 54061});
    const Bytes xyzStep = wordTag(icSig("XYZ "), {63191, 65536, 54061});
    Bytes xyzReserved = xyz;
    xyzReserved[4] = 1;
    // Two 'wtpt' tags and the lines of their section, none when within the tolerance.
    const struct {
        Bytes a, b;
        double tolerance;
        std::string expected;
    } cases[] = {
        {xyz, xyzStep, 0, "X: 0.964203 -> 0.964218 (delta +0.000015)"},
        {xyz, xyzStep, 0.0001, ""},
        {xyz, xyzReserved, 0, "bytes: 1 of 20 differ, first at offset 4"},
        {curvTag({0, 65535}), curvTag({0, 30000, 65535}), 0,
         "curve: 2 points -> 3 points\ncurve values: 32767.5 -> 30000 (max difference 2767.5 at "
         "point 1 of 3, mean 922.5)"},
        {curvTag({}), wordTag(icSig("para"), {0, 65536}), 0,
         "type: 'curv' -> 'para'\ncurve: identity -> parametric type 0: 1 (same values on 4096 "
         "points)"},
        {textTag("abc"), textTag("ab\"\n"), 0, "text: \"abc\" -> \"ab\\\"\\n\""},
        {lut16(1, 65535), lut16(1.5, 60000), 0,
         "matrix e1: 1.000000 -> 1.500000 (delta +0.500000)\ninput table 0: 65535 -> 60000 (max "
         "difference 5535 at entry 1, 1 of 2 entries differ)"},
        {tagBytes(icSig("zzzz"), {1, 2, 3, 4, 5, 6}),
         tagBytes(icSig("zzzz"), {1, 9, 3, 4, 5, 6, 7}), 0,
         "size: 14 bytes -> 15 bytes\nbytes: 2 of 15 differ, first at offset 9"},
    };
    for (const auto& c : cases) {
        const auto a = loaded(ProfileBuilder().tag(icSig("wtpt"), c.a).build());
        const auto b = loaded(ProfileBuilder().tag(icSig("wtpt"), c.b).build());
        const icProfileDiff diff = diffOf(*a, *b, c.tolerance);
        const icDiffSection* tag = find(diff, "Tag wtpt");
        EXPECT_EQ(tag ? joinLines(lines(*tag)) : "", c.expected);
        EXPECT_EQ(diff.tagsWithinTolerance, c.expected.empty() ? 1u : 0u) << c.expected;
    }
}

TEST(ProfileDiff, HeaderAndDirectory) {
    const Bytes xyz = wordTag(icSig("XYZ "), {1, 2, 3});
    ProfileBuilder a, b;
    a.tag(icSig("desc"), textTag("x")).tag(icSig("wtpt"), xyz).entry(icSig("bkpt"), 180, 20);
    b.header.renderingIntent = 2;
    b.header.flags = 0x10000;
    b.tag(icSig("desc"), textTag("x")).tag(icSig("wtpt"), xyz).tag(icSig("bkpt"), xyz);
    b.tag(icSig("priv"), tagBytes(icSig("zzzz")));
    const icProfileDiff diff = diffOf(*loaded(a.build()), *loaded(b.build()));
    ASSERT_EQ(diff.sections.size(), 2u) << diffReportText(diff);
    EXPECT_EQ(lines(diff.sections[0]),
              (std::vector<std::string>{"Size: 200 bytes -> 240 bytes",
                                        "Flags: not embedded, independently (00000000) -> not "
                                        "embedded, independently (00010000)",
                                        "Intent: Perceptual -> Saturation"}));
    EXPECT_EQ(lines(diff.sections[1]),
              (std::vector<std::string>{"only in B: priv 'zzzz', 8 bytes",
                                        "moved: desc offset 168 -> offset 180",
                                        "shared differently: wtpt with bkpt -> not shared",
                                        "shared differently: bkpt with wtpt -> not shared"}));
    EXPECT_EQ(diffSummaryText(diff),
              "Summary: the profiles differ in 3 header fields and 4 directory changes");
}

TEST(ProfileDiff, VersionTwoAgainstVersionFour) {
    iccProfileRW v2, v4;
    if (v2.loadFromFile(kSrgbV2) != icOk || v4.loadFromFile(kSrgb) != icOk)
        GTEST_SKIP() << "the two sRGB profiles are not installed";
    const icProfileDiff diff = diffOf(v2, v4);
    const std::vector<std::string> header = lines(*find(diff, "Header"));
    EXPECT_NE(std::find(header.begin(), header.end(), "Version: 0x2300000 -> 0x4400000"),
              header.end());
    const icDiffSection* desc = find(diff, "Tag desc (Profile Description Tag, 'desc' -> 'mluc')");
    ASSERT_NE(desc, nullptr);
    EXPECT_EQ(lines(*desc),
              (std::vector<std::string>{"type: 'desc' -> 'mluc'", "ASCII: \"sRGB\" -> (none)",
                                        "en/US: (none) -> \"sRGB\""}));
    // The version 2 tables and the version 4 parametric curves agree within one step.
    const icDiffSection* trc = find(diff, "Tag rTRC");
    ASSERT_NE(trc, nullptr);
    ASSERT_EQ(trc->entries.size(), 3u);
    EXPECT_LT(*trc->entries[2].delta, 1.0);
    const icProfileDiff tolerant = diffOf(v2, v4, 1.0);
    trc = find(tolerant, "Tag rTRC");
    ASSERT_NE(trc, nullptr);
    EXPECT_EQ(trc->entries.back().detail, "values within the tolerance");
}

// Exported, one line of clut.txt edited, imported: the diff names exactly that node.
TEST(ProfileDiff, ClutNodeChangedThroughImport) {
    struct Case {
        std::string profile;
        int node;
        std::vector<std::uint32_t> coordinates;
        std::vector<std::string> sharing; // the entries that share the table's bytes
    };
    const Case cases[] = {
        {kCmyk, 1000, {1, 3, 3, 1}, {"A2B1", "A2B2"}},
        // An 'mAB ' of Little CMS: A curves, a 9x5x3 CLUT of three outputs, B curves.
        {writeBytes(scratchDir() / "diff-mab.icc", lcmsProfile({{cmsSigAToB0Tag, 3, "c3c"}})),
         37,
         {2, 2, 1},
         {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.profile);
        if (!fs::exists(c.profile))
            continue;
        const fs::path folder = scratchDir() / "diff-clut";
        fs::remove_all(folder);
        ASSERT_EQ(runCli({"export", c.profile, "A2B0", folder.string()}).exitCode, 0);
        std::string clut = readText(folder / "clut.txt");
        const std::string tag = "\n" + std::to_string(c.node) + " ";
        const std::size_t at = clut.find(tag) + tag.size();
        ASSERT_NE(at, std::string::npos + tag.size());
        std::string old = clut.substr(at, clut.find('\n', at) - at);
        old.erase(old.find_last_not_of(' ') + 1);
        const std::string first = old.substr(0, old.find(' '));
        const std::string edited = std::to_string(std::stoul(first) ^ 1) + old.substr(first.size());
        clut.replace(at, old.size(), edited);
        writeText(folder / "clut.txt", clut);
        const std::string output = (scratchDir() / "diff-imported.icc").string();
        ASSERT_EQ(runCli({"import", c.profile, "A2B0", folder.string(), output}).exitCode, 0);

        const CliResult json = runCli({"diff", "--json", c.profile, output});
        EXPECT_EQ(json.exitCode, 1);
        const auto report = nlohmann::json::parse(json.out);
        ASSERT_EQ(report["tags"].size(), 1u) << json.out;
        EXPECT_EQ(report["tags"][0]["sharedWith"], c.sharing);
        const auto& entries = report["tags"][0]["entries"];
        ASSERT_EQ(entries.size(), 2u) << json.out;
        EXPECT_TRUE(entries[0]["detail"].get<std::string>().starts_with("1 of ")) << json.out;
        EXPECT_EQ(entries[1]["node"], c.coordinates);
        EXPECT_EQ(entries[1]["a"], old);
        EXPECT_EQ(entries[1]["b"], edited);
        EXPECT_EQ(runCli({"diff", "--tolerance", "1", c.profile, output}).out.find("CLUT"),
                  std::string::npos);
    }
}

TEST(ProfileDiff, CommandExitStatuses) {
    const CliResult same = runCli({"diff", kSrgb, kSrgb});
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_EQ(same.out, "Summary: the profiles are equivalent\n");
    const CliResult missing = runCli({"diff", kSrgb, "/no/such.icc"});
    EXPECT_EQ(missing.exitCode, 3);
    EXPECT_NE(missing.err.find("Error in reading ICC profile: /no/such.icc."), std::string::npos);
    EXPECT_EQ(runCli({"diff", kSrgb}).exitCode, 2);
    EXPECT_EQ(runCli({"diff", "--tolerance", "-1", kSrgb, kSrgb}).exitCode, 2);
}

} // namespace
