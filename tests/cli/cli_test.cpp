// veltrino-cli end to end: its output for every installed profile against Little CMS's reading
// of the same header, the boxes and exit statuses of failures, and saving.
#include "support/test_support.h"

#include <gtest/gtest.h>
#include <lcms2.h>

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

std::string sigChars(std::uint32_t sig) {
    std::string s;
    for (int shift = 24; shift >= 0; shift -= 8)
        if (const char c = static_cast<char>(sig >> shift); c != 0)
            s += c;
        else
            break;
    return s;
}

std::string printf1(const char* fmt, unsigned v) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, fmt, v);
    return buffer;
}

class CliOnRealProfile : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(CliOnRealProfile, InfoAgreesWithLittleCms) {
    const std::string path = GetParam().string();
    const CliResult result = runCli({"info", path});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    const auto out = lines(result.out);

    cmsHPROFILE lcms = cmsOpenProfileFromFile(path.c_str(), "r");
    ASSERT_NE(lcms, nullptr);
    const int tags = cmsGetTagCount(lcms);
    ASSERT_EQ(out.size(), 17u + 2 + static_cast<std::size_t>(tags));

    std::tm date{};
    cmsGetHeaderCreationDateTime(lcms, &date);
    char dateText[64];
    std::snprintf(dateText, sizeof dateText, "Date: %d/%d/%d, %d:%d:%d", date.tm_year + 1900,
                  date.tm_mon + 1, date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec);
    const cmsUInt32Number flags = cmsGetHeaderFlags(lcms);
    cmsUInt64Number attributes = 0;
    cmsGetHeaderAttributes(lcms, &attributes);
    const char* intents[] = {"Perceptual", "Relative Colorimetric", "Saturation",
                             "Absolute Colorimetric"};
    const cmsUInt32Number intent = cmsGetHeaderRenderingIntent(lcms);
    cmsUInt8Number id[16];
    cmsGetHeaderProfileID(lcms, id);
    char idText[40];
    std::snprintf(idText, sizeof idText,
                  "%02x%02x%02x%02x-%02x%02x%02x%02x-%02x%02x%02x%02x-%02x%02x%02x%02x", id[0],
                  id[1], id[2], id[3], id[4], id[5], id[6], id[7], id[8], id[9], id[10], id[11],
                  id[12], id[13], id[14], id[15]);

    // Little CMS drops the version's two low bytes; the window shows them.
    ASSERT_EQ(out[2].rfind("Version: 0x", 0), 0u);
    EXPECT_EQ(std::stoul(out[2].substr(11), nullptr, 16) & 0xFFFF0000u,
              cmsGetEncodedICCversion(lcms));
    EXPECT_EQ(out[4], "Color Space: " + sigChars(cmsGetColorSpace(lcms)));
    EXPECT_EQ(out[5], "PCS: " + sigChars(cmsGetPCS(lcms)));
    EXPECT_EQ(out[6], dateText);
    EXPECT_EQ(out[9], std::string("Flags: ") + ((flags & 1) ? "embedded, " : "not embedded, ") +
                          ((flags & 2) ? "not independently" : "independently"));
    EXPECT_EQ(out[10], "Manufacture: " + sigChars(cmsGetHeaderManufacturer(lcms)));
    EXPECT_EQ(out[11].rfind(printf1("Model: 0x%x", cmsGetHeaderModel(lcms)), 0), 0u) << out[11];
    // Little CMS reads both attribute words as one 64-bit number; the panel shows the first.
    const auto first = static_cast<std::uint32_t>(attributes >> 32);
    EXPECT_EQ(out[12], std::string("Attribute: ") +
                           ((first & 1) ? "transparency, " : "reflective, ") +
                           ((first & 2) ? "matte, " : "glossy, ") +
                           ((first & 4) ? "negative " : "positive, ") +
                           ((first & 8) ? "black & white" : "color"));
    EXPECT_EQ(out[13], std::string("Intent: ") + (intent < 4 ? intents[intent] : "Unknown"));
    EXPECT_EQ(out[16], std::string("Profile ID: ") + idText);
    EXPECT_EQ(out[17], "");
    EXPECT_EQ(out[18], "Tag Table (" + std::to_string(tags) + " tags):");
    for (int i = 0; i < tags; ++i) {
        const std::string sig = sigChars(cmsGetTagSignature(lcms, static_cast<cmsUInt32Number>(i)));
        EXPECT_EQ(out[19 + i].rfind(std::to_string(i) + "\t" + sig + "\t", 0), 0u) << out[19 + i];
    }
    cmsCloseProfile(lcms);
}

INSTANTIATE_TEST_SUITE_P(Installed, CliOnRealProfile, testing::ValuesIn(installedProfiles()),
                         [](const auto& info) { return "profile" + std::to_string(info.index); });

TEST(Cli, FailuresAndUsage) {
    const Bytes good = ProfileBuilder().tag(icSig("desc"), textTag("d")).build();
    Bytes wrongMagic = good, count51 = good, countHuge = good;
    wrongMagic[36] = 'X';
    storeBE32(count51.data() + 128, 51);
    storeBE32(countHuge.data() + 128, 0xFFFFFFFF);
    const std::vector<std::pair<std::string, Bytes>> malformed = {
        {"garbage", Bytes(200, 7)},
        {"short", Bytes(good.begin(), good.begin() + 100)},
        {"magic", wrongMagic},
        {"count51", count51},
        {"countHuge", countHuge},
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

TEST(Cli, InfoShowsWarningsOnStandardErrorAndHexCells) {
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
}

TEST(Cli, SaveWritesALaidOutProfileOrSaysWhyNot) {
    const auto source = scratchDir() / "source.icc";
    writeBytes(source, ProfileBuilder().tag(icSig("desc"), textTag("d")).build());
    const auto target = scratchDir() / "target.icc";
    CliResult r = runCli({"save", source.string(), target.string()});
    EXPECT_EQ(r.exitCode, 0) << r.out << r.err;
    r = runCli({"info", target.string()});
    EXPECT_NE(r.out.find("1\tcprt\t"), std::string::npos) << r.out;

    r = runCli({"save", source.string(), (scratchDir() / "missing" / "x.icc").string()});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_EQ(r.out, "--- stop | Veltrino\nError in writing a new profile. Errcode: -100.\n");
}

} // namespace
