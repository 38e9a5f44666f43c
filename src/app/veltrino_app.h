// The application: reads the command line, prepares the settings store and runs the main
// window until it closes.
#pragma once

#include <QApplication>
#include <QString>

#include <optional>
#include <string>

struct StartOptions {
    // The profile to open at start-up; empty when none was given.
    std::string commandLineFile;
    // Render the window into this PNG file and end, instead of running it.
    std::optional<QString> screenshotPath;
};

// The first argument is the profile; "--screenshot PATH" may come anywhere before or after it.
StartOptions parseStartOptions(const QStringList& arguments);

// True when the arguments ask for a screenshot, so that main() can choose the offscreen
// platform before the application object exists.
bool wantsScreenshot(int argc, char** argv);

class CVeltrinoApp : public QApplication {
    Q_OBJECT
public:
    CVeltrinoApp(int& argc, char** argv);

    // Runs the main window modally and returns the exit code.
    int InitInstance();
};
