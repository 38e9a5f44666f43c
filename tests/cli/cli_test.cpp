// veltrino-cli end to end: info against Little CMS, dump and show blocks, failures and statuses.
#include "catalogue/catalogue_testing.h"
#include "support/lcms_testing.h"

#include <cstdio>
#include <regex>
#include <set>
#include <sstream>

namespace {

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

template <class... Values> std::string printed(const char* format, Values... values) {
    char buffer[128];
    std::snprintf(buffer, sizeof buffer, format, values...);
    return buffer;
}

class CliOnRealProfile : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(CliOnRealProfile, InfoAgreesWithLittleCms) {
    const std::filesystem::path path = GetParam();
    const CliResult result = runCli({"info", path.string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto out = lines(result.out);
    const LcmsProfile owner = lcmsOpen(path);
    cmsHPROFILE lcms = owner.get();
    ASSERT_NE(lcms, nullptr);
    const int tags = cmsGetTagCount(lcms);
    ASSERT_EQ(out.size(), 17u + 2 + static_cast<std::size_t>(tags));

    std::tm d{};
    cmsGetHeaderCreationDateTime(lcms, &d);
    const cmsUInt32Number flags = cmsGetHeaderFlags(lcms);
    cmsUInt64Number attributes = 0;
    cmsGetHeaderAttributes(lcms, &attributes);
    const char* intents[] = {"Perceptual", "Relative Colorimetric", "Saturation",
                             "Absolute Colorimetric"};
    const cmsUInt32Number intent = cmsGetHeaderRenderingIntent(lcms);
    std::uint8_t id[16];
    cmsGetHeaderProfileID(lcms, id);
    std::string idText;
    for (int i = 0; i < 16; ++i)
        idText += printed(i % 4 == 0 && i > 0 ? "-%02x" : "%02x", id[i]);

    // Little CMS drops the version's two low bytes; the window shows them.
    ASSERT_TRUE(out[2].starts_with("Version: 0x"));
    EXPECT_EQ(std::stoul(out[2].substr(11), nullptr, 16) & 0xFFFF0000u,
              cmsGetEncodedICCversion(lcms));
    EXPECT_EQ(out[4], "Color Space: " + sigToText(cmsGetColorSpace(lcms)));
    EXPECT_EQ(out[5], "PCS: " + sigToText(cmsGetPCS(lcms)));
    EXPECT_EQ(out[6], printed("Date: %d/%d/%d, %d:%d:%d", d.tm_year + 1900, d.tm_mon + 1, d.tm_mday,
                              d.tm_hour, d.tm_min, d.tm_sec));
    EXPECT_EQ(out[9], std::string("Flags: ") + ((flags & 1) ? "embedded, " : "not embedded, ") +
                          ((flags & 2) ? "not independently" : "independently"));
    EXPECT_EQ(out[10], "Manufacture: " + sigToText(cmsGetHeaderManufacturer(lcms)));
    EXPECT_TRUE(out[11].starts_with(printed("Model: 0x%x", cmsGetHeaderModel(lcms)))) << out[11];
    // Little CMS reads both attribute words as one 64-bit number; the panel shows the first.
    const auto first = static_cast<std::uint32_t>(attributes >> 32);
    EXPECT_EQ(out[12], std::string("Attribute: ") +
                           ((first & 1) ? "transparency, " : "reflective, ") +
                           ((first & 2) ? "matte, " : "glossy, ") +
                           ((first & 4) ? "negative " : "positive, ") +
                           ((first & 8) ? "black & white" : "color"));
    EXPECT_EQ(out[13], std::string("Intent: ") + (intent < 4 ? intents[intent] : "Unknown"));
    EXPECT_EQ(out[16], "Profile ID: " + idText);
    EXPECT_EQ(out[17], "");
    EXPECT_EQ(out[18], "Tag Table (" + std::to_string(tags) + " tags):");
    for (int i = 0; i < tags; ++i) {
        const icSignature sig = cmsGetTagSignature(lcms, static_cast<cmsUInt32Number>(i));
        EXPECT_TRUE(out[19 + i].starts_with(std::to_string(i) + "\t" + sigToText(sig) + "\t"))
            << out[19 + i];
    }
}

INSTANTIATE_TEST_SUITE_P(Installed, CliOnRealProfile, testing::ValuesIn(installedProfiles()),
                         [](const auto& info) { return "profile" + std::to_string(info.index); });

TEST(Cli, FailuresAndUsage) {
    const Bytes good = ProfileBuilder().tag(icSig("desc"), textTag("d")).build();
    Bytes wrongMagic = good;
    wrongMagic[36] = 'X';
    // One of each way a load fails (the profile tests have every status): the same box.
    const std::vector<std::pair<std::string, Bytes>> malformed = {
        {"short", Bytes(good.begin(), good.begin() + 100)},
        {"magic", wrongMagic},
        {"pastEnd", ProfileBuilder().entry(icSig("desc"), 140, 4000).build()},
    };
    for (const auto& [name, bytes] : malformed) {
        const auto broken = scratchDir() / (name + ".icc");
        writeBytes(broken, bytes);
        const CliResult r = runCli({"info", broken.string()});
        EXPECT_EQ(r.exitCode, 1) << name;
        EXPECT_EQ(r.out, "") << name;
        EXPECT_EQ(r.err,
                  "--- info | Veltrino\nError in reading ICC profile: " + broken.string() + ".\n")
            << name;
    }
    EXPECT_EQ(runCli({"info", (scratchDir() / "absent.icc").string()}).exitCode, 1);

    EXPECT_EQ(runCli({}).exitCode, 2);
    EXPECT_EQ(runCli({"info"}).exitCode, 2);
    EXPECT_EQ(runCli({"frobnicate", "x"}).exitCode, 2);
}

// Every command that --help lists has a subsection of its own in the manual page, and every row
// of the help texts (commands, options, arguments) is said there too.
TEST(Cli, ManualPageSaysWhatHelpSays) {
    const std::string manual = readText(VELTRINO_CLI_MANUAL);
    std::set<std::string> sections, commands;
    for (const std::string& line : lines(manual))
        if (line.starts_with(".SS "))
            sections.insert(line.substr(4));
    const std::regex row(R"(^  (\S+).*?\s{2,}(\S.*)$)");
    std::vector<std::vector<std::string>> calls{{"--help"}};
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const CliResult r = runCli(calls[i]);
        ASSERT_EQ(r.exitCode, 0) << calls[i][0];
        bool listsCommands = false;
        for (const std::string& line : lines(r.out)) {
            std::smatch m;
            if (std::regex_match(line, m, row)) {
                EXPECT_NE(manual.find(m[2].str()), std::string::npos)
                    << "not in the manual: " << m[2];
                if (listsCommands && commands.insert(m[1]).second)
                    calls.push_back({m[1], "--help"});
            } else if (line.ends_with(':')) {
                listsCommands = line == "Subcommands:";
            }
        }
    }
    EXPECT_EQ(sections, commands);
}

TEST(Cli, InfoShowsWarningsOnStandardErrorAndTheCells) {
    ProfileBuilder builder;
    builder.header.illuminant.X = 0;
    const auto path = scratchDir() / "warned.icc";
    writeBytes(path,
               builder.tag(icSig("desc"), textTag("d")).entry(icSig("wtpt"), 130, 20).build());
    const CliResult r = runCli({"info", "--hex", path.string()});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(r.err, "--- warning | Veltrino\nWarning: improper format in ICC Header.\n"
                     "--- warning | Veltrino\nInvalid ICC profile: Error in tag offset(s).\n");
    const auto out = lines(r.out);
    ASSERT_EQ(out.size(), 21u);
    EXPECT_EQ(out[14], "Illuminant: X=0.00000, Y=1.00000, Z=0.82491");
    EXPECT_EQ(out[19], "0\tdesc\t9C\tA");
    EXPECT_EQ(out[20], "1\twtpt\t82\t14");
    EXPECT_TRUE(runCli({"info", path.string()}).out.ends_with("\n1\twtpt\t130\t20\n"));
}

TEST(CliDump, EveryTagOfEveryInstalledProfileGetsBlocks) {
    for (const auto& path : installedProfiles()) {
        const CliResult result = runCli({"dump", path.string()});
        const auto out = lines(result.out);
        int tags = 0;
        bool failed = false;
        for (std::size_t i = 0; i < out.size(); ++i) {
            if (out[i].starts_with("=== #")) {
                ++tags;
                ASSERT_LT(i + 1, out.size()) << path;
                EXPECT_TRUE(out[i + 1].starts_with("--- ")) << path << ": " << out[i];
            }
            failed = failed || out[i] == "--- stop | Veltrino";
        }
        const std::string table = "Tag Table (" + std::to_string(tags) + " tags):";
        EXPECT_EQ(std::count(out.begin(), out.end(), table), 1) << path;
        EXPECT_EQ(result.exitCode, failed ? 1 : 0) << path;
    }
}

// One tag of each type the installed profiles lack, in a version-2 profile.
ProfileBuilder zooOfTags() {
    ProfileBuilder builder;
    builder.header.pcs = icSig("Lab ");
    Bytes ncl2 = wordTag(icSig("ncl2"), {0, 1, 9});
    ncl2.resize(ncl2.size() + 64 + 2 * (9 + 19), 0);
    builder.tag(icSig("meas"), wordTag(icSig("meas"), {2, 0, 0, 0, 1, 0, 1}))
        .tag(icSig("tech"), wordTag(icSig("sig "), {icSig("dcam")}))
        .tag(icSig("scrn"), wordTag(icSig("scrn"), {0, 1000, 0, 0, 3}))
        .tag(icSig("devs"), wordTag(icSig("devs"), {3, icSig("SGI "), 12, 0}))
        .tag(icSig("resp"), tagBytes(icSig("rcs2"), {0, 1, 0, 1, 0, 0, 0, 0}))
        .tag(icSig("calt"), wordTag(icSig("dtim"), {0x07D0000C, 0x001F0017, 0x003B003B}))
        .tag(icSig("ps2i"), tagBytes(icSig("data"), {0, 0, 0, 0}))
        .tag(icSig("ncl2"), ncl2)
        .tag(icSig("crdi"), wordTag(icSig("crdi"), {}))
        .tag(icSig("B2A0"), mabTag())
        // Last: an empty block shares its offset with whatever follows it.
        .tag(icSig("bfd "), {});
    return builder;
}

TEST(CliDump, TagsBuiltHere) {
    const std::string path = writeBytes(scratchDir() / "zoo.icc", zooOfTags().build());
    const CliResult result = runCli({"dump", path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::string out = result.out;
    // The blocks around the reports: an empty text, a viewer and its box, a viewer without fields.
    for (const char* blocks :
         {"=== #5 calt\n--- info | CalibrationDateTime Tag\nDate = 12/31/2000 \n",
          "=== #6 ps2i\n--- info | PS2 Rendering Intent Tag\n\n=== #7 ncl2\n--- viewer namedcolor",
          "Suffix of each color name: \n--- info | Veltrino\nDevice planes is greater than 8. "
          "Current version of Veltrino not supported.\n=== #8 crdi\n--- info | CrdInfo Tag\n"
          "PostScript CRD Info.\n"})
        EXPECT_NE(out.find(blocks), std::string::npos) << blocks;
    EXPECT_EQ(out.substr(out.find("=== #9 B2A0")),
              "=== #9 B2A0\n--- viewer mlut | BToA0 Tag\nlutAToBType: (A curve)->"
              "(multidimensional LUT)->(M curve)->(matrix)->(B curve)\nInput Channels: 1\n"
              "Output Channels: 1\nB Curves: 32 / 0X20\nMatrix: N/A\nM Curves: N/A\n"
              "Mulitdimensional LUT: 44 / 0X2C\nA Curves: 80 / 0X50\ne1 N/A\ne2 N/A\ne3 N/A\n"
              "e4 N/A\ne5 N/A\ne6 N/A\ne7 N/A\ne8 N/A\ne9 N/A\ne10 N/A\ne11 N/A\ne12 N/A\n"
              "=== #10 bfd \n--- viewer hexdump | Private or Unsupported Tag\n");
}

TEST(CliShow, ViewerBlocksTagArgumentsAndExitStatuses) {
    const std::string argyll = "/usr/share/color/argyll/ref/sRGB.icm";
    const CliResult xyz = runCli({"show", argyll, "wtpt"});
    EXPECT_EQ(xyz.exitCode, 0);
    EXPECT_EQ(xyz.out, "--- viewer xyz | MediaWhitePoint Tag\nX: 0.95045\nY: 1.00000\nZ: "
                       "1.08905\nx: 0.312700\ny: 0.329001\n");
    EXPECT_EQ(runCli({"show", argyll, "14"}).out, "--- viewer curve | RedTRC Tag\n1024 points\n");

    ProfileBuilder builder;
    builder.tag(icSig("bfd "), tagBytes(icSig("ucrb")))
        .tag(icSig("meas"), tagBytes(icSig("meas"), Bytes(27))) // one byte short
        .tag(icSig("desc"), descTag("First"))
        .tag(icSig("desc"), descTag("Second"));
    const std::string path = writeBytes(scratchDir() / "arguments.icc", builder.build());

    const CliResult padded = runCli({"show", path, "bfd"});
    EXPECT_EQ(padded.exitCode, 0);
    EXPECT_EQ(padded.out, "--- viewer hexdump | Private or Unsupported Tag\n00000000    75 63 72 "
                          "62 00 00 00 00 - 00 00 00 00 00 00 00 00    ucrb....\n");
    EXPECT_EQ(runCli({"show", path, "desc"}).out, "--- info | Profile Description Tag\nFirst\n");
    EXPECT_EQ(runCli({"show", path, "003"}).out, "--- info | Profile Description Tag\nSecond\n");

    const CliResult failed = runCli({"show", path, "meas"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.out, "--- stop | Veltrino\nTag bytes too small.\n--- stop | Veltrino\n"
                          "Failed in displaying tag. Errcode: -1001.\n");
    for (const std::string tag : {"4", "99999999999999999999", "wtpt", "DESC"}) {
        const CliResult missing = runCli({"show", path, tag});
        EXPECT_EQ(missing.exitCode, 1) << tag;
        EXPECT_TRUE(missing.out.empty()) << tag;
        EXPECT_FALSE(missing.err.empty()) << tag;
    }
    EXPECT_EQ(runCli({"show", path, "toolong"}).exitCode, 2);
    EXPECT_EQ(runCli({"dump", path}).exitCode, 1);
    EXPECT_EQ(runCli({"show", (scratchDir() / "missing.icc").string(), "0"}).exitCode, 1);
}

} // namespace
