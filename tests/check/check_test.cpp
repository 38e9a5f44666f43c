// The profile check: a built profile per finding, both ID rules, the installed profiles, the CLI.
#include "catalogue/catalogue_testing.h"
#include "check/check_report.h"
#include "tagtypes/tag_factory.h"

#include <lcms2.h>
#include <nlohmann/json.hpp>

#include <map>
#include <set>

namespace {

template <class... Values> Bytes curve(Values... entries) {
    return curvTag({static_cast<std::uint16_t>(entries)...});
}

// A sound matrix/TRC display profile: 0 desc, 1 cprt, 2 wtpt, 3-5 colorants, 6-8 curves.
Bytes base(bool version4 = false) {
    ProfileBuilder b;
    b.header.version = version4 ? 0x04300000 : 0x02400000;
    b.tag(icSig("desc"), version4 ? mlucTag("base") : descTag("base"))
        .tag(icSig("cprt"), version4 ? mlucTag("none") : textTag("none"))
        .tag(icSig("wtpt"), xyzTag(0.9642, 1.0, 0.8249))
        .tag(icSig("rXYZ"), xyzTag(0.4361, 0.2225, 0.0139))
        .tag(icSig("gXYZ"), xyzTag(0.3851, 0.7169, 0.0971))
        .tag(icSig("bXYZ"), xyzTag(0.1431, 0.0606, 0.7141));
    for (const char* sig : {"rTRC", "gTRC", "bTRC"})
        b.tag(textToSig(sig), curve(0, 20000, 65535));
    return b.build();
}

std::uint32_t get32(const Bytes& b, std::size_t at) {
    return loadBE32(b.data() + at);
}
void put32(Bytes& b, std::size_t at, std::uint32_t v) {
    storeBE32(b.data() + at, v);
}
std::size_t entry(int index) {
    return 132 + 12 * static_cast<std::size_t>(index);
}
// Moves tag `index` to new bytes at the end of the file, `skew` bytes past a 4-byte boundary.
void replaceTag(Bytes& b, int index, const Bytes& data, std::uint32_t skew = 0) {
    b.resize(roundUp4(b.size()) + skew);
    put32(b, entry(index) + 4, static_cast<std::uint32_t>(b.size()));
    put32(b, entry(index) + 8, static_cast<std::uint32_t>(data.size()));
    b.insert(b.end(), data.begin(), data.end());
    put32(b, 0, static_cast<std::uint32_t>(b.size()));
}
void setId(Bytes& b, const icDigest& id) {
    std::copy(id.begin(), id.end(), b.begin() + 84);
}

// Expected offsets: below 64 on a finding about a tag they count from the tag's data.
constexpr std::uint32_t kAtTag = UINT32_MAX;        // the offset of the finding's tag data
constexpr std::uint32_t kAnywhere = UINT32_MAX - 1; // not compared
constexpr icDigest kEarlier = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

struct Case {
    std::function<void(Bytes&)> change;
    icSeverity severity;
    const char* code;
    const char* tag; // "-" for none
    std::optional<std::uint32_t> offset;
    bool version4 = false;
    bool earlierId = false; // checked knowing kEarlier as an earlier ID
};

using enum icSeverity;
const Case kCases[] = {
    // The header, field by field.
    {[](Bytes& b) { put32(b, 0, 4000); }, error, "size", "-", 0},
    {[](Bytes& b) { b[8] = 3; }, error, "version", "-", 8},
    {[](Bytes& b) { put32(b, 12, icSig("disp")); }, error, "device-class", "-", 12},
    {[](Bytes& b) { b[27] = 13; }, warning, "date", "-", 24},
    {[](Bytes& b) { put32(b, 36, icSig("ascp")); }, error, "magic", "-", 36},
    {[](Bytes& b) { b[46] = 1; }, warning, "flags", "-", 44},
    {[](Bytes& b) { b[67] = 4; }, warning, "intent", "-", 64},
    {[](Bytes& b) { put32(b, 68, 0xF351); }, error, "illuminant", "-", 68}, // D65
    {[](Bytes& b) { b[120] = 1; }, warning, "reserved", "-", 120},
    // Profile IDs: the ICC's rule, Veltrino's with and without an earlier ID, neither.
    {[](Bytes& b) { (void)computeProfileIdInMemory(b); }, info, "id-icc", "-", 84, true},
    {[](Bytes& b) { b[47] = 1, (void)computeProfileIdInMemory(b); }, warning, "id-veltrino", "-",
     84, true},
    {[](Bytes& b) { setId(b, kEarlier), (void)computeProfileIdInMemory(b); }, warning,
     "id-veltrino", "-", 84, true, true},
    {[](Bytes& b) { setId(b, kEarlier), (void)computeProfileIdInMemory(b); }, error, "id-mismatch",
     "-", 84, true},
    {[](Bytes& b) { b[90] = 1; }, warning, "id-version2", "-", 84},
    // The byte map.
    {[](Bytes& b) { replaceTag(b, 8, curve(0, 9), 2); }, error, "misaligned", "bTRC", kAtTag},
    {[](Bytes& b) { put32(b, entry(8) + 8, 400); }, error, "past-end", "bTRC", kAtTag},
    {[](Bytes& b) { put32(b, entry(7) + 4, get32(b, entry(6) + 4) + 4); }, error, "overlap", "gTRC",
     kAtTag},
    {[](Bytes& b) { put32(b, entry(7) + 4, get32(b, entry(6) + 4)); }, info, "shared", "gTRC",
     kAtTag},
    {[](Bytes& b) { put32(b, entry(7), icSig("rTRC")); }, error, "duplicate", "rTRC", kAtTag},
    {[](Bytes& b) { put32(b, entry(2) + 4, 136); }, error, "in-directory", "wtpt", 136},
    {[](Bytes& b) { put32(b, 128, 90); }, error, "tag-count", "-", 128},
    {[](Bytes& b) { b.resize(b.size() + 8), put32(b, 0, uint32_t(b.size())); }, info, "trailing",
     "-", kAnywhere},
    // What the tags hold.
    {[](Bytes& b) { put32(b, entry(3), icSig("zXYZ")); }, error, "missing-tag", "rXYZ",
     std::nullopt},
    {[](Bytes& b) { replaceTag(b, 2, curve()); }, error, "tag-type", "wtpt", kAtTag},
    {[](Bytes& b) { put32(b, get32(b, entry(6) + 4) + 8, 200); }, error, "decode", "rTRC", kAtTag},
    {[](Bytes& b) { replaceTag(b, 6, curve(0, 40000, 30000, 65535)); }, warning, "non-monotonic",
     "rTRC", 16},
    {[](Bytes& b) { replaceTag(b, 3, xyzTag(0.6, 0.3, 0.02)); }, warning, "colorant-sum", "rXYZ",
     kAtTag},
    {[](Bytes& b) { b[get32(b, entry(0) + 4) + 16] = 'E'; }, warning, "mluc-code", "desc", 16,
     true},
    {[](Bytes& b) { b[get32(b, entry(0) + 4) + 14] = 0; }, warning, "desc-count", "desc", 8},
};

void PrintTo(const Case& c, std::ostream* out) {
    *out << c.code;
}

class CheckCase : public testing::TestWithParam<Case> {};

TEST_P(CheckCase, ReportsTheFindingWhereItIs) {
    const Case& c = GetParam();
    Bytes bytes = base(c.version4);
    c.change(bytes);
    const icCheckReport report =
        checkProfile(bytes, c.earlierId ? icCheckOptions{{kEarlier}} : icCheckOptions{});
    std::string all;
    for (const icFinding& f : report.findings)
        all += findingLine(f) + "\n";
    const auto found = std::find_if(report.findings.begin(), report.findings.end(), [&](auto& f) {
        return f.code == c.code && findingTag(f) == c.tag;
    });
    ASSERT_NE(found, report.findings.end()) << all;
    EXPECT_EQ(found->severity, c.severity) << all;
    const bool relative = c.offset && *c.offset < 64 && found->tagIndex >= 0;
    const auto tagOffset = found->tagIndex >= 0 ? get32(bytes, entry(found->tagIndex) + 4) : 0;
    if (c.offset != kAnywhere) {
        EXPECT_EQ(found->offset, c.offset == kAtTag ? tagOffset
                                 : relative         ? std::optional(tagOffset + *c.offset)
                                                    : c.offset)
            << all;
    }
    EXPECT_EQ(report.verdict() == icVerdict::errors, c.severity == icSeverity::error) << all;
}

INSTANTIATE_TEST_SUITE_P(Profiles, CheckCase, testing::ValuesIn(kCases), [](const auto& info) {
    std::string name = info.param.code + std::to_string(info.index);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

TEST(Check, SoundProfilesHaveNothingToSay) {
    for (bool version4 : {false, true}) {
        const icCheckReport report = checkProfile(base(version4));
        EXPECT_EQ(report.verdict(), icVerdict::valid) << reportText("base", report);
        EXPECT_EQ(report.findings.size(), version4 ? 1u : 0u) << reportText("base", report);
    }
    EXPECT_EQ(checkProfile(Bytes(100, 0)).findings.at(0).code, "too-short");
    EXPECT_EQ(checkProfileFile("/nonexistent.icc").findings.at(0).code, "unreadable");
}

// Sound for both readers: Veltrino loads it and decodes every tag of a type it knows, and
// Little CMS opens it and reads each of those tags.
bool bothAccept(const std::string& path) {
    iccProfileRW ours;
    cmsHPROFILE lcms = cmsOpenProfileFromFile(path.c_str(), "r");
    bool sound = lcms && ours.loadFromFile(path) == icOk;
    for (int i = 0; sound && i < ours.tagCount(); ++i) {
        std::unique_ptr<iccTagType> tag;
        const icStatus s = loadTagType(ours, i, tag);
        sound = (s == icOk && cmsReadTag(lcms, cmsTagSignature(ours.getEntry(i)->sig))) ||
                (!tag && s == icErrGeneral); // a type Veltrino does not decode
    }
    if (lcms)
        cmsCloseProfile(lcms);
    return sound;
}

TEST(Check, InstalledProfilesHaveErrorsExactlyWhereAReaderFails) {
    // Both readers take these, but the ICC requires every tag on a 4-byte boundary and their
    // 'cprt' and 'wtpt' are not: strict readers refuse them.
    const std::map<std::string, std::string> accepted = {{"LCMSLABI.ICM", "misaligned"},
                                                         {"LCMSXYZI.ICM", "misaligned"}};
    for (const auto& path : installedProfiles()) {
        const icCheckReport report = checkProfileFile(path.string());
        std::set<std::string> errors;
        for (const icFinding& f : report.findings)
            if (f.severity == icSeverity::error)
                errors.insert(f.code);
        if (const auto it = accepted.find(path.filename().string()); it != accepted.end())
            EXPECT_EQ(errors, std::set<std::string>{it->second}) << path;
        else
            EXPECT_EQ(errors.empty(), bothAccept(path.string()))
                << reportText(path.string(), report);
    }
}

TEST(CheckCli, JsonOverEveryInstalledProfile) {
    const CliResult result = runCli({"check", "--json", "/usr/share/color"});
    EXPECT_EQ(result.exitCode, 1) << result.err; // colord's named-colour profiles have errors
    const auto json = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_TRUE(json.is_array()) << result.out.substr(0, 400);
    EXPECT_EQ(json.size(), installedProfiles().size());
    for (const auto& file : json)
        for (const char* key : {"file", "verdict", "findings"})
            EXPECT_TRUE(file.contains(key)) << file.dump();
}

TEST(CheckCli, SavedProfileMatchesVeltrinosRuleWithItsEarlierId) {
    const std::string saved = (scratchDir() / "check-saved.icc").string();
    ASSERT_EQ(runCli({"save", kSrgb, saved}).exitCode, 0);
    const Bytes bytes = readBytes(kSrgb);
    const std::string earlier = formatProfileId(std::span<const std::uint8_t, 16>(&bytes[84], 16));

    const CliResult plain = runCli({"check", saved});
    EXPECT_EQ(plain.exitCode, 1);
    EXPECT_NE(plain.out.find("error 84 - id-mismatch: "), std::string::npos) << plain.out;
    EXPECT_NE(plain.out.find("\n1 file: 0 valid, 0 with warnings, 1 with errors\n"),
              std::string::npos)
        << plain.out;
    const CliResult confirmed = runCli({"check", "--previous-id", earlier, saved});
    EXPECT_EQ(confirmed.exitCode, 0);
    EXPECT_NE(confirmed.out.find("warning 84 - id-veltrino: The Profile ID does not match the "
                                 "ICC rule"),
              std::string::npos)
        << confirmed.out;
    EXPECT_EQ(runCli({"check", "--strict", "--previous-id", earlier, saved}).exitCode, 1);
    EXPECT_EQ(runCli({"check", "--previous-id", "12ab", saved}).exitCode, 2);
}

} // namespace
