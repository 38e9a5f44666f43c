// veltrino-cli: the library of the desktop program, without a display.
#include "catalogue/catalogue.h"
#include "cli/check_command.h"
#include "cli/cli_session.h"
#include "cli/diff_command.h"
#include "cli/exchange_commands.h"
#include "cli/extract_command.h"
#include "document/memory_policy.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

#ifndef VELTRINO_VERSION
#define VELTRINO_VERSION "0.0.0"
#endif

namespace {

void printInfo(const iccDocument& document, bool hexadecimal) {
    for (const HeaderField& field : document.headerFields()) {
        std::string_view text = field.text;
        while (!text.empty() && text.back() == '\n')
            text.remove_suffix(1);
        printLine(std::string(field.label) + " " + std::string(text));
    }
    printLine("");
    printLine(tagTableCaption(document.profile().tagCount()));
    for (const TagRow& row : document.tagRows(hexadecimal))
        printLine(row.index + '\t' + row.signature + '\t' + row.offset + '\t' + row.size);
}

int runInfo(const std::string& path, bool hexadecimal) {
    CliSession session;
    if (!session.open(path))
        return kExitFailed;
    printInfo(session.document(), hexadecimal);
    return kExitOk;
}

int runShow(const std::string& path, const std::string& tagText) {
    CliSession session;
    int index = -1;
    if (const auto exit = session.openAt(path, tagText, index))
        return *exit;
    return icFailed(showTag(session.presenter(), session.profile(), index)) ? kExitFailed : kExitOk;
}

int runDump(const std::string& path, bool hexadecimal) {
    CliSession session;
    if (!session.open(path))
        return kExitFailed;
    printInfo(session.document(), hexadecimal);
    iccProfileRW& profile = session.profile();
    bool failed = false;
    for (int i = 0; i < profile.tagCount(); ++i) {
        printLine("=== #" + std::to_string(i) + " " + sigToText(profile.getEntry(i)->sig));
        if (icFailed(showTag(session.presenter(), profile, i)))
            failed = true;
    }
    return failed ? kExitFailed : kExitOk;
}

int runSave(const std::string& path, const std::string& output) {
    CliSession session;
    if (!session.open(path))
        return kExitFailed;
    return session.document().saveAs(output) == icOk ? kExitOk : kExitFailed;
}

} // namespace

int main(int argc, char** argv) {
    keepLargeBlocksForReuse();
    CLI::App app{"veltrino-cli: inspect and rewrite ICC colour profiles", "veltrino-cli"};
    app.set_version_flag("--version", "veltrino-cli " VELTRINO_VERSION);
    app.require_subcommand(1);

    std::string profilePath, outputPath;
    bool hexadecimal = false;

    CLI::App* info = app.add_subcommand("info", "Print the header fields and the tag table");
    info->add_flag("--hex", hexadecimal, "Write offsets and sizes in hexadecimal");
    info->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();

    std::string tagText;
    CLI::App* show =
        app.add_subcommand("show", "Show one tag as a double click in the window does");
    show->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();
    show->add_option("TAG", tagText, "Directory index, or tag signature such as desc or A2B0")
        ->required();

    CLI::App* dump = app.add_subcommand("dump", "Print info, then show every tag in order");
    dump->add_flag("--hex", hexadecimal, "Write offsets and sizes in hexadecimal");
    dump->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();

    CLI::App* save = app.add_subcommand("save", "Lay the profile out again and write it");
    save->add_option("PROFILE", profilePath, "ICC profile to read")->required();
    save->add_option("OUTPUT", outputPath, "Path of the profile to write")->required();

    std::string exchangePath;
    CLI::App* exportCommand = app.add_subcommand(
        "export", "Write a LUT tag as a folder, or a curve tag as a curve text file");
    exportCommand->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();
    exportCommand->add_option("TAG", tagText, "Directory index, or tag signature")->required();
    exportCommand->add_option("PATH", exchangePath, "Folder or curve text file")->required();

    CLI::App* importCommand = app.add_subcommand(
        "import", "Read a tag back from its folder or curve file and save the profile");
    importCommand->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();
    importCommand->add_option("TAG", tagText, "Directory index, or tag signature")->required();
    importCommand->add_option("PATH", exchangePath, "Folder or curve text file")->required();
    importCommand->add_option("OUTPUT", outputPath, "Path of the profile to write")->required();

    std::string imagePath;
    CLI::App* extract =
        app.add_subcommand("extract", "Write the ICC profile embedded in an image, byte for byte");
    extract->add_option("IMAGE", imagePath, "JPEG, PNG, TIFF or WebP image")->required();
    extract->add_option("OUTPUT", outputPath, "Path of the profile to write")->required();
    std::string otherPath;
    bool json = false;
    double tolerance = 0;
    CLI::App* diff = app.add_subcommand("diff", "Compare two profiles tag by tag");
    diff->add_flag("--json", json, "Write the comparison as one JSON document");
    diff->add_option("--tolerance", tolerance, "Ignore numeric differences up to T")
        ->check([](const std::string& text) {
            double value = -1;
            return CLI::detail::lexical_cast(text, value) && value >= 0
                       ? std::string()
                       : "T must be a number of 0 or more: " + text;
        })
        ->option_text("T");
    diff->add_option("A", profilePath, "ICC profile (.icc, .icm)")->required();
    diff->add_option("B", otherPath, "ICC profile to compare it with")->required();
    CheckCommandOptions checkOptions;
    CLI::App* check =
        app.add_subcommand("check", "Say whether profiles are sound, and where and why not");
    check->add_flag("--json", checkOptions.json, "Write one JSON document");
    check->add_flag("--strict", checkOptions.strict, "Exit 1 for warnings as well as errors");
    check
        ->add_option("--previous-id", checkOptions.previousIds,
                     "A Profile ID the profile had before Veltrino saved it")
        ->allow_extra_args(false);
    check->add_option("PATH", checkOptions.paths, "Profiles, or folders holding .icc/.icm files")
        ->required();

    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& e) {
        return app.exit(e);
    } catch (const CLI::ParseError& e) {
        std::fprintf(stderr, "%s\n%s", e.what(), app.help().c_str());
        return kExitUsage;
    }

    if (info->parsed())
        return runInfo(profilePath, hexadecimal);
    if (show->parsed())
        return runShow(profilePath, tagText);
    if (dump->parsed())
        return runDump(profilePath, hexadecimal);
    if (exportCommand->parsed())
        return runExportCommand(profilePath, tagText, exchangePath);
    if (diff->parsed())
        return runDiffCommand(profilePath, otherPath, json, tolerance);
    if (check->parsed())
        return runCheckCommand(checkOptions);
    if (importCommand->parsed())
        return runImportCommand(profilePath, tagText, exchangePath, outputPath);
    if (extract->parsed())
        return runExtractCommand(imagePath, outputPath);
    return runSave(profilePath, outputPath);
}
