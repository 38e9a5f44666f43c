// A prompt service for the offscreen window tests: file dialogs answer from a script, and every
// box, hex dump and about box is recorded.
#pragma once

#include "document/prompt_service.h"
#include "viewers/dump_clut_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <QStringList>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

template <class T = QLineEdit> T* get(QWidget& w, const QString& name) {
    return w.findChild<T*>(name);
}
// Read-only and looking it: the window's background, not an edit box's.
inline bool looksReadOnly(QLineEdit* box) {
    return box->isReadOnly() &&
           box->palette().color(QPalette::Base) == box->palette().color(QPalette::Window);
}
// The text of a line edit or label.
inline QString text(QWidget& w, const QString& name) {
    if (auto* edit = get(w, name))
        return edit->text();
    if (auto* label = get<QLabel>(w, name))
        return label->text();
    return "<no " + name + ">";
}

class ScriptedPrompts : public PromptService {
public:
    void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) override {
        static const char* kinds[] = {"info", "warning", "stop"};
        boxes << QString::fromStdString(std::string(kinds[int(kind)]) + " | " +
                                        std::string(caption) + " | " + std::string(text));
    }
    void showHexDump(std::string_view caption, const std::vector<std::string>& lines) override {
        dumps.push_back({std::string(caption), lines});
    }
    void about(std::string_view caption, std::string_view) override {
        abouts.emplace_back(caption);
    }
    // Recorded as "save? | CAPTION | TEXT" (or "apply? | ..."); answered from the script, with
    // "discard" once it runs out.
    icCloseAnswer askBeforeClosing(icKeepButton keep, std::string_view caption,
                                   std::string_view text) override {
        messageBox(icBoxKind::info, caption, text);
        boxes.back().replace(0, 4, keep == icKeepButton::save ? "save?" : "apply?");
        return next(closeAnswers, icCloseAnswer::discard);
    }
    // The XYZ viewer closes with OK after `xyzEdit`, when one is set, had the values.
    icViewerResult xyzViewer(std::string_view, iccXYZType& xyz) override {
        if (!xyzEdit)
            return {};
        xyzEdit(xyz);
        return {true, true, icOk};
    }
    std::optional<std::string> askOpenPath(const FileDialogRequest& request) override {
        return answer(request);
    }
    std::optional<std::string> askSavePath(const FileDialogRequest& request) override {
        return answer(request);
    }
    // The real "Import/Export CLUT" dialog, driven without its modal loop: the next scripted
    // folder is typed into its box and OK clicked (Cancel for nullopt). The folder it proposed
    // on opening is kept.
    std::optional<std::string> askClutFolder(std::uint32_t mode) override {
        CDumpCLUT dialog(mode);
        auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("folderEdit"));
        clutFolderRequests.push_back({mode, box->text().toStdString()});
        const std::optional<std::string> folder = next(clutFolders, std::optional<std::string>());
        if (folder)
            box->setText(QString::fromStdString(*folder));
        dialog
            .findChild<QPushButton*>(folder ? QStringLiteral("okButton")
                                            : QStringLiteral("cancelButton"))
            ->click();
        if (dialog.result() != QDialog::Accepted)
            return std::nullopt;
        return dialog.folder();
    }

    // The boxes seen so far, as "KIND | CAPTION | TEXT", forgotten once taken.
    QStringList take() { return std::exchange(boxes, {}); }

    std::deque<std::optional<std::string>> answers;     // nullopt: the user cancels
    std::deque<std::optional<std::string>> clutFolders; // likewise, for the CLUT folder dialog
    std::deque<icCloseAnswer> closeAnswers;
    std::function<void(iccXYZType&)> xyzEdit;
    struct ClutFolderRequest {
        std::uint32_t mode;
        std::string proposed;
    };
    std::vector<ClutFolderRequest> clutFolderRequests;
    std::vector<FileDialogRequest> requests;
    QStringList boxes;
    std::vector<std::pair<std::string, std::vector<std::string>>> dumps;
    std::vector<std::string> abouts;

private:
    std::optional<std::string> answer(const FileDialogRequest& request) {
        requests.push_back(request);
        return next(answers, std::optional<std::string>());
    }
    template <class T> static T next(std::deque<T>& script, T otherwise) {
        if (script.empty())
            return otherwise;
        T first = std::move(script.front());
        script.pop_front();
        return first;
    }
};

// Test classes of the other files of gui_tests register here (a static
// `const bool registered = registerGuiTest<MyTest>();`); main() runs them after its own.
using GuiTestFactory = std::unique_ptr<QObject> (*)();
inline std::vector<GuiTestFactory>& guiTestClasses() {
    static std::vector<GuiTestFactory> classes;
    return classes;
}
template <class T> bool registerGuiTest() {
    guiTestClasses().push_back([]() -> std::unique_ptr<QObject> { return std::make_unique<T>(); });
    return true;
}
