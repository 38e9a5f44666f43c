// veltrino-cli: the library of the desktop program, without a display.
#include "app/document.h"
#include "cli/cli_presenter.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

#ifndef VELTRINO_VERSION
#define VELTRINO_VERSION "0.0.0"
#endif

namespace {

constexpr int kExitOk = 0;
constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

void printLine(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

// Opens a profile as "&Browse..." does; the boxes it raises go to standard error.
bool openProfile(iccDocument& document, CliPresenter& presenter, const std::string& path) {
    presenter.setOutput(stderr);
    const bool ok = document.open(path);
    presenter.setOutput(stdout);
    return ok;
}

int runInfo(const std::string& path, bool hexadecimal) {
    CliPresenter presenter(stdout);
    iccDocument document(presenter);
    if (!openProfile(document, presenter, path))
        return kExitFailed;
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
    return kExitOk;
}

int runSave(const std::string& path, const std::string& output) {
    CliPresenter presenter(stdout);
    iccDocument document(presenter);
    if (!openProfile(document, presenter, path))
        return kExitFailed;
    return document.saveAs(output) == icOk ? kExitOk : kExitFailed;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"veltrino-cli: inspect and rewrite ICC colour profiles", "veltrino-cli"};
    app.set_version_flag("--version", "veltrino-cli " VELTRINO_VERSION);
    app.require_subcommand(1);

    std::string profilePath, outputPath;
    bool hexadecimal = false;

    CLI::App* info = app.add_subcommand("info", "Print the header fields and the tag table");
    info->add_flag("--hex", hexadecimal, "Write offsets and sizes in hexadecimal");
    info->add_option("PROFILE", profilePath, "ICC profile (.icc, .icm)")->required();

    CLI::App* save = app.add_subcommand("save", "Lay the profile out again and write it");
    save->add_option("PROFILE", profilePath, "ICC profile to read")->required();
    save->add_option("OUTPUT", outputPath, "Path of the profile to write")->required();

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
    return runSave(profilePath, outputPath);
}
