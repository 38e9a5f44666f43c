// What the library asks of a user interface: message boxes and the large-text window. The
// desktop program shows real dialogs, the command line prints blocks, tests record.
#pragma once

#include "profile/status.h"

#include <string>
#include <string_view>

enum class icBoxKind {
    info,    // plain message box
    warning, // warning icon
    stop,    // stop icon; the error reporter
};

inline constexpr std::string_view kCaption = "Veltrino";

class Presenter {
public:
    virtual ~Presenter() = default;
    virtual void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) = 0;
};

// The error reporter: a stop box with the message and " Errcode: N." (or a plain line feed
// when the code is 0). Returns the code, so a caller can report and return in one step.
inline icStatus reportError(Presenter& presenter, icStatus code, std::string_view caption,
                            std::string_view message) {
    presenter.messageBox(icBoxKind::stop, caption, errorReportText(code, message));
    return code;
}
