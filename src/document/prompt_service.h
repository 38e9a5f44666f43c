// Everything the main window asks of the user, behind one interface: message boxes (as a
// Presenter, so the library's boxes take the same road), the about box and the file dialogs.
// The desktop program shows real dialogs; tests script the answers and record every box.
#pragma once

#include "document/presenter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct FileDialogRequest {
    std::string caption;
    // In Qt's "Name (*.a *.b)" form, in the order shown.
    std::vector<std::string> filters;
    // Added to a chosen name that has no extension (save dialogs).
    std::string defaultSuffix;
    // Folder shown first; empty for the toolkit's choice.
    std::string directory;
    // Name proposed in the dialog's file name box; empty for none.
    std::string fileName = {};
};

// Before a window with changes closes: the button that keeps them ("Save" in the main window,
// "Apply" in a viewer, which then closes as OK does), and the user's choice.
enum class icKeepButton { save, apply };
enum class icCloseAnswer { keep, discard, stay };

class PromptService : public Presenter {
public:
    void info(std::string_view caption, std::string_view text) {
        messageBox(icBoxKind::info, caption, text);
    }
    void warning(std::string_view caption, std::string_view text) {
        messageBox(icBoxKind::warning, caption, text);
    }
    void stop(std::string_view caption, std::string_view text) {
        messageBox(icBoxKind::stop, caption, text);
    }

    virtual void about(std::string_view caption, std::string_view text) = 0;

    // The chosen path in the platform's encoding, or nothing when the dialog was cancelled. The
    // save dialog asks before replacing an existing file.
    virtual std::optional<std::string> askOpenPath(const FileDialogRequest& request) = 0;
    virtual std::optional<std::string> askSavePath(const FileDialogRequest& request) = 0;
    // The CLUT folder dialog of the lookup-table viewers: mode 2 for lut8/lut16, 4 (or more)
    // for lutAToB/lutBToA. On OK the folder as typed, which has also become the shared data
    // folder; nothing when cancelled. A service without the dialog answers as if cancelled.
    virtual std::optional<std::string> askClutFolder(std::uint32_t /*mode*/) {
        return std::nullopt;
    }
    // The question before changes would be lost: keep, discard or Cancel (stay open). A service
    // without the question discards, as closing did before there was one.
    virtual icCloseAnswer askBeforeClosing(icKeepButton /*keep*/, std::string_view /*caption*/,
                                           std::string_view /*text*/) {
        return icCloseAnswer::discard;
    }
};
