#include "cli/check_command.h"

#include "check/check_report.h"
#include "cli/cli_session.h"

#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace fs = std::filesystem;

namespace {

// 32 hexadecimal digits, dashes anywhere between them.
std::optional<icDigest> parseProfileId(const std::string& text) {
    icDigest id{};
    std::size_t digits = 0;
    for (char c : text) {
        if (c == '-')
            continue;
        const int value = std::isdigit(static_cast<unsigned char>(c)) ? c - '0'
                          : std::isxdigit(static_cast<unsigned char>(c))
                              ? std::tolower(static_cast<unsigned char>(c)) - 'a' + 10
                              : -1;
        if (value < 0 || digits >= 32)
            return std::nullopt;
        id[digits / 2] = static_cast<std::uint8_t>(id[digits / 2] << 4 | value);
        ++digits;
    }
    return digits == 32 ? std::optional(id) : std::nullopt;
}

bool isProfileName(const fs::path& path) {
    std::string ext = path.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ext == ".icc" || ext == ".icm";
}

// The files to check: each PATH that is not a folder as given, and the profiles in each folder
// and its subfolders, sorted.
std::vector<std::string> collectFiles(const std::vector<std::string>& paths) {
    std::vector<std::string> files;
    for (const std::string& path : paths) {
        std::error_code ec;
        if (!fs::is_directory(path, ec)) {
            files.push_back(path);
            continue;
        }
        std::vector<std::string> found;
        for (auto it = fs::recursive_directory_iterator(path, ec);
             !ec && it != fs::recursive_directory_iterator(); it.increment(ec))
            if (it->is_regular_file(ec) && isProfileName(it->path()))
                found.push_back(it->path().string());
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

// "checking 12/300" on one line of a terminal, rewritten for each file and cleared at the end.
class Progress {
public:
    explicit Progress(std::size_t total) : total_(total), shown_(total > 1 && isatty(2)) {}
    ~Progress() {
        if (shown_)
            std::fputs("\r\x1b[K", stderr);
    }
    void step(std::size_t done) const {
        if (shown_)
            std::fprintf(stderr, "\rchecking %zu/%zu", done, total_);
    }

private:
    std::size_t total_;
    bool shown_;
};

} // namespace

int runCheckCommand(const CheckCommandOptions& options) {
    icCheckOptions checkOptions;
    for (const std::string& text : options.previousIds) {
        const auto id = parseProfileId(text);
        if (!id) {
            std::fprintf(stderr, "veltrino-cli: --previous-id needs 32 hexadecimal digits: %s\n",
                         text.c_str());
            return kExitUsage;
        }
        checkOptions.previousIds.push_back(*id);
    }

    const std::vector<std::string> files = collectFiles(options.paths);
    std::vector<icCheckedFile> checked;
    std::size_t verdicts[3] = {};
    {
        const Progress progress(files.size());
        for (std::size_t i = 0; i < files.size(); ++i) {
            progress.step(i + 1);
            icCheckReport report = checkProfileFile(files[i], checkOptions);
            ++verdicts[static_cast<int>(report.verdict())];
            if (options.json) {
                checked.emplace_back(files[i], std::move(report));
            } else {
                const std::string text = reportText(files[i], report);
                std::fwrite(text.data(), 1, text.size(), stdout);
            }
        }
    }
    if (options.json) {
        const std::string json = reportsJson(checked);
        std::fwrite(json.data(), 1, json.size(), stdout);
        if (json.empty())
            return kExitFailed;
    } else {
        printLine(std::to_string(files.size()) + (files.size() == 1 ? " file: " : " files: ") +
                  std::to_string(verdicts[0]) + " valid, " + std::to_string(verdicts[1]) +
                  " with warnings, " + std::to_string(verdicts[2]) + " with errors");
    }
    const bool failed = verdicts[static_cast<int>(icVerdict::errors)] > 0 ||
                        (options.strict && verdicts[static_cast<int>(icVerdict::warnings)] > 0);
    return failed ? kExitFailed : kExitOk;
}
