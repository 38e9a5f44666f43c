// What the offscreen window tests share: scripted prompts recording every box, and modal dialogs.
#pragma once

#include "app/qt_presenter.h"
#include "profile/profile.h"
#include "support/test_support.h"
#include "viewers/dump_clut_dialog.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <QTimer>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

template <class T = QLineEdit> T* get(QWidget& w, const QString& name) {
    return w.findChild<T*>(name);
}
inline void click(QWidget& w, const QString& button) {
    get<QPushButton>(w, button)->click();
}
// Read-only and looking it: the window's background, not an edit box's.
inline bool looksReadOnly(QLineEdit* box) {
    return box->isReadOnly() &&
           box->palette().color(QPalette::Base) == box->palette().color(QPalette::Window);
}
inline QString text(QWidget& w, const QString& name) {
    if (auto* edit = get(w, name))
        return edit->text();
    if (auto* label = get<QLabel>(w, name))
        return label->text();
    return "<no " + name + ">";
}
inline QStringList texts(QWidget& w, const QStringList& names) {
    QStringList out;
    for (const QString& name : names)
        out << text(w, name);
    return out;
}
inline QStringList numbered(QWidget& w, const QString& pattern, int count) {
    QStringList out;
    for (int i = 0; i < count; ++i)
        out << text(w, pattern.arg(i));
    return out;
}
inline QString q(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}
inline QStringList q(const std::vector<std::string>& lines) {
    QStringList out;
    for (const std::string& line : lines)
        out << q(line);
    return out;
}

inline std::unique_ptr<iccProfileRW> load(const std::string& path) {
    auto profile = std::make_unique<iccProfileRW>();
    return profile->loadFromFile(path) == icOk ? std::move(profile) : nullptr;
}

// Runs `open`, which brings up a modal Dialog, and `act` on that dialog once it is up; a dialog
// that `act` leaves open is cancelled, so a failed check never hangs the run. Whether it came up.
template <class Dialog, class Open, class Act> bool whileOpen(Open&& open, Act&& act) {
    bool seen = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<Dialog*>(w); dialog && dialog->isVisible()) {
                seen = true;
                act(*dialog);
                if (dialog->isVisible())
                    dialog->done(QDialog::Rejected);
                return;
            }
    });
    timer.start(0);
    open();
    return seen;
}

class ScriptedPrompts : public QtPresenter {
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
    // Recorded as "save? | CAPTION | TEXT" (or "apply? ..."); answered from the script, then
    // "discard".
    icCloseAnswer askBeforeClosing(icKeepButton keep, std::string_view caption,
                                   std::string_view text) override {
        messageBox(icBoxKind::info, caption, text);
        boxes.back().replace(0, 4, keep == icKeepButton::save ? "save?" : "apply?");
        return next(closeAnswers, icCloseAnswer::discard);
    }
    // With `xyzEdit` set, the XYZ viewer closes with OK after it had the values.
    icViewerResult xyzViewer(std::string_view caption, iccXYZType& xyz) override {
        if (!xyzEdit)
            return QtPresenter::xyzViewer(caption, xyz);
        xyzEdit(xyz);
        return {true, true, icOk};
    }
    std::optional<std::string> askOpenPath(const FileDialogRequest& request) override {
        return answer(request);
    }
    std::optional<std::string> askSavePath(const FileDialogRequest& request) override {
        return answer(request);
    }
    // The real "Import/Export CLUT" dialog without its modal loop: the next scripted folder is
    // typed in and OK clicked (Cancel for nullopt); the folder it proposed is kept.
    std::optional<std::string> askClutFolder(std::uint32_t mode) override {
        CDumpCLUT dialog(mode);
        auto* box = get(dialog, QStringLiteral("folderEdit"));
        clutFolderRequests.push_back({mode, box->text().toStdString()});
        const std::optional<std::string> folder = next(clutFolders, std::optional<std::string>());
        if (folder)
            box->setText(QString::fromStdString(*folder));
        click(dialog, folder ? QStringLiteral("okButton") : QStringLiteral("cancelButton"));
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

// Screenshots go to the scratch folder and to VELTRINO_SCREENSHOT_DIR (the documentation's).
inline QImage screenshot(QWidget& dialog, const char* name) {
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        return {};
    const QImage image = dialog.grab().toImage();
    image.save(QString::fromStdString((scratchDir() / name).string()));
    if (const QByteArray dir = qgetenv("VELTRINO_SCREENSHOT_DIR"); !dir.isEmpty())
        image.save(QString::fromLocal8Bit(dir) + '/' + name);
    return image;
}

// The other files' test classes register here; main() runs them after its own.
using GuiTestFactory = std::unique_ptr<QObject> (*)();
inline std::vector<GuiTestFactory>& guiTestClasses() {
    static std::vector<GuiTestFactory> classes;
    return classes;
}
template <class T> bool registerGuiTest() {
    guiTestClasses().push_back([]() -> std::unique_ptr<QObject> { return std::make_unique<T>(); });
    return true;
}
