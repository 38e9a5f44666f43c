// What every veltrino-cli command shares: the exit statuses, the one profile a command opens
// (as "&Browse..." opens it, its boxes on standard error) and the TAG argument.
#pragma once

#include "cli/cli_presenter.h"
#include "document/document.h"

#include <optional>
#include <string>

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

class CliSession {
public:
    CliSession() : presenter_(stdout), document_(presenter_, readEmbeddedProfile) {}

    // Opens the profile, or the one embedded in an image; false after its boxes were printed to
    // standard error.
    bool open(const std::string& path);
    // Checks TAG, opens the profile and finds the tag: digits only name a directory index,
    // anything else a signature of up to four characters padded with blanks. Returns the exit
    // status when any step fails (2 for a TAG that can be neither), after saying why.
    std::optional<int> openAt(const std::string& path, const std::string& tagText, int& index);

    CliPresenter& presenter() { return presenter_; }
    iccDocument& document() { return document_; }
    iccProfileRW& profile() { return document_.profile(); }

private:
    CliPresenter presenter_;
    iccDocument document_;
};

// Writes the text and a line feed to standard output.
void printLine(std::string_view text);
