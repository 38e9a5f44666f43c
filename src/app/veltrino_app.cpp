#include "app/veltrino_app.h"

#include "app/qt_presenter.h"
#include "app/settings.h"
#include "app/veltrino_dialog.h"

#include <QFile>
#include <QSettings>

#include <clocale>
#include <cstdio>
#include <cstring>

namespace {

constexpr char kScreenshotOption[] = "--screenshot";

// A screenshot runs unattended: boxes go to standard error and file dialogs are cancelled.
class UnattendedPrompts : public PromptService {
public:
    void messageBox(icBoxKind, std::string_view caption, std::string_view text) override {
        std::fprintf(stderr, "%.*s: %.*s\n", int(caption.size()), caption.data(), int(text.size()),
                     text.data());
    }
    void about(std::string_view, std::string_view) override {}
    std::optional<std::string> askOpenPath(const FileDialogRequest&) override { return {}; }
    std::optional<std::string> askSavePath(const FileDialogRequest&) override { return {}; }
};

int saveScreenshot(CVeltrinoDlg& window, const QString& path) {
    window.show();
    QApplication::processEvents();
    if (!window.grab().save(path, "PNG")) {
        std::fprintf(stderr, "Cannot write the screenshot %s\n", QFile::encodeName(path).data());
        return 1;
    }
    return 0;
}

} // namespace

StartOptions parseStartOptions(const QStringList& arguments) {
    StartOptions options;
    QStringList rest;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String(kScreenshotOption) && i + 1 < arguments.size())
            options.screenshotPath = arguments[++i];
        else
            rest << arguments[i];
    }
    if (!rest.isEmpty())
        options.commandLineFile = QFile::encodeName(rest.front()).toStdString();
    return options;
}

bool wantsScreenshot(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], kScreenshotOption) == 0)
            return true;
    return false;
}

CVeltrinoApp::CVeltrinoApp(int& argc, char** argv) : QApplication(argc, argv) {
    // Qt adopts the user's locale for the C library too; every number the library formats
    // ("%f", "%1.5lf") and every exchange file must keep its decimal point whatever the locale.
    std::setlocale(LC_NUMERIC, "C");
    setOrganizationName(QLatin1String(kOrganisationName));
    setApplicationName(QLatin1String(kApplicationName));
}

int CVeltrinoApp::InitInstance() {
    const StartOptions options = parseStartOptions(arguments());
    QSettings settings;
    if (options.screenshotPath) {
        UnattendedPrompts prompts;
        CVeltrinoDlg window(prompts, settings, options.commandLineFile);
        return saveScreenshot(window, *options.screenshotPath);
    }
    QtPresenter prompts;
    CVeltrinoDlg window(prompts, settings, options.commandLineFile);
    prompts.setParent(&window);
    window.exec();
    return 0;
}
