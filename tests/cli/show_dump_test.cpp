// veltrino-cli show and dump: every tag of every installed profile gets its blocks, the tag
// types the installed profiles lack are shown from profiles built here, and TAG arguments and
// exit statuses follow the command-line contract.
#include "catalogue/catalogue_testing.h"

#include <sstream>

namespace {

std::vector<std::string> outputLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::string writeProfile(const std::string& name, const ProfileBuilder& builder) {
    const auto path = scratchDir() / name;
    writeBytes(path, builder.build());
    return path.string();
}

TEST(CliDump, EveryTagOfEveryInstalledProfileGetsBlocks) {
    for (const auto& path : installedProfiles()) {
        const CliResult result = runCli({"dump", path.string()});
        const auto lines = outputLines(result.out);
        int tags = 0;
        bool failed = false;
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].rfind("=== #", 0) == 0) {
                ++tags;
                ASSERT_LT(i + 1, lines.size()) << path;
                EXPECT_EQ(lines[i + 1].rfind("--- ", 0), 0u) << path << ": " << lines[i];
            }
            failed = failed || lines[i] == "--- stop | Veltrino";
        }
        const auto tableLine = std::find_if(lines.begin(), lines.end(), [](const auto& l) {
            return l.rfind("Tag Table (", 0) == 0;
        });
        ASSERT_NE(tableLine, lines.end()) << path;
        EXPECT_EQ(*tableLine, "Tag Table (" + std::to_string(tags) + " tags):") << path;
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
    const std::string path = writeProfile("zoo.icc", zooOfTags());
    const CliResult result = runCli({"dump", path});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const std::string out = result.out;
    // The report texts are checked on their own; here the blocks around them: an empty text,
    // a viewer followed by the box it raises, and a viewer without fields.
    EXPECT_NE(out.find("=== #5 calt\n--- info | CalibrationDateTime Tag\nDate = 12/31/2000 \n"),
              std::string::npos);
    const std::string tail = out.substr(out.find("=== #6 ps2i"));
    EXPECT_EQ(tail, "=== #6 ps2i\n"
                    "--- info | PS2 Rendering Intent Tag\n"
                    "\n"
                    "=== #7 ncl2\n"
                    "--- viewer namedcolor | Named Color2 Tag\n"
                    "Vendor specific flag: 0\n"
                    "Count of named colors: 1\n"
                    "Number of device planes: 9\n"
                    "Prefix of each color name: \n"
                    "Suffix of each color name: \n"
                    "--- info | Veltrino\n"
                    "Device planes is greater than 8. Current version of Veltrino not supported.\n"
                    "=== #8 crdi\n"
                    "--- info | CrdInfo Tag\n"
                    "PostScript CRD Info.\n"
                    "=== #9 B2A0\n"
                    "--- viewer mlut | BToA0 Tag\n"
                    "lutAToBType: (A curve)->(multidimensional LUT)->(M curve)->(matrix)->(B "
                    "curve)\n"
                    "Input Channels: 1\n"
                    "Output Channels: 1\n"
                    "B Curves: 32 / 0X20\n"
                    "Matrix: N/A\n"
                    "M Curves: N/A\n"
                    "Mulitdimensional LUT: 44 / 0X2C\n"
                    "A Curves: 80 / 0X50\n"
                    "e1 N/A\ne2 N/A\ne3 N/A\ne4 N/A\ne5 N/A\ne6 N/A\ne7 N/A\ne8 N/A\ne9 N/A\n"
                    "e10 N/A\ne11 N/A\ne12 N/A\n"
                    "=== #10 bfd \n"
                    "--- viewer hexdump | Private or Unsupported Tag\n");
}

TEST(CliShow, ViewerBlocksOfARealProfile) {
    const std::string path = "/usr/share/color/argyll/ref/sRGB.icm";
    const CliResult xyz = runCli({"show", path, "wtpt"});
    EXPECT_EQ(xyz.exitCode, 0);
    EXPECT_EQ(xyz.out, "--- viewer xyz | MediaWhitePoint Tag\nX: 0.95045\nY: 1.00000\nZ: "
                       "1.08905\nx: 0.312700\ny: 0.329001\n");
    EXPECT_EQ(runCli({"show", path, "14"}).out, "--- viewer curve | RedTRC Tag\n1024 points\n");
    const CliResult lut = runCli({"show", "/usr/share/color/argyll/ref/lab2lab.icm", "A2B0"});
    EXPECT_EQ(lut.out, "--- viewer lut | AToB0 Tag\nLUT Type: 16-bit LUT\nInput Channels: "
                       "3\nInput Entries: 2\nOutput Channels: 3\nOutput Entries: 2\nCLUT Points: "
                       "2\nMatrix:\n1.000000 0.000000 0.000000\n0.000000 1.000000 "
                       "0.000000\n0.000000 0.000000 1.000000\n");
}

TEST(CliShow, TagArgumentsAndExitStatuses) {
    ProfileBuilder builder;
    builder.tag(icSig("bfd "), tagBytes(icSig("ucrb")))
        .tag(icSig("meas"), wordTag(icSig("meas"), {}))
        .tag(icSig("desc"), descTag("First"))
        .tag(icSig("desc"), descTag("Second"));
    const std::string path = writeProfile("arguments.icc", builder);

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
    EXPECT_EQ(runCli({"show", path}).exitCode, 2);
    EXPECT_EQ(runCli({"dump", path}).exitCode, 1);
    EXPECT_EQ(runCli({"show", (scratchDir() / "missing.icc").string(), "0"}).exitCode, 1);
}

} // namespace
