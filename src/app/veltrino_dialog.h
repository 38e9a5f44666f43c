// The main window: the open profile's header and tag table, and the commands on it.
#pragma once

#include "document/document.h"
#include "document/prompt_service.h"

#include <QDialog>

#include <array>
#include <string>

class QAction;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSettings;
class QTreeWidget;
class ProfileSnapshot;

class CVeltrinoDlg : public QDialog {
    Q_OBJECT
public:
    // Reads the data folder from `settings` (and writes it back when the window goes), then
    // opens `commandLineFile` when one is given. Every box and file dialog goes to `prompts`.
    CVeltrinoDlg(PromptService& prompts, QSettings& settings,
                 const std::string& commandLineFile = {}, QWidget* parent = nullptr);
    ~CVeltrinoDlg() override;

    // The open procedure: on success the window shows the profile, unmodified. On failure it
    // keeps what it showed, changes included, and every command on it stays usable.
    bool openProfile(const std::string& path);

    const iccDocument& document() const { return document_; }

    // The window's commands, as its buttons run them.
    void browse();
    void saveAs();
    void modifyHeader();
    // Checks the open profile's file and lists the findings in the Check window.
    void checkProfile();
    void openSelectedTag();
    void showAbout();
    // "Compare with...": the open profile against another one, in the comparison window.
    void compareWith();

    // The dialogs' fixed texts, also used by tests to check what was asked.
    static FileDialogRequest openRequest();
    static FileDialogRequest saveRequest();

    // Every way of closing the window ("&Close", Escape, the close button) ends here: with
    // unsaved changes the user saves them, drops them or keeps the window open.
    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void buildLayout();
    void showProfile();
    void showHeaderFields();
    void showTagTable();
    // Modify..., Save As..., Compare with... and Check... act on an open profile only.
    void enableCommands();
    void rewriteNumberColumns();
    bool tagListKeyPressed(const QKeyEvent& key);
    // Show selected tag for a directory index; a viewer's change marks the window modified.
    void showTagNotingChanges(int index);
    // Marks the window modified when the profile differs from `before`.
    void noteChanges(const ProfileSnapshot& before);
    // Whether the profile shown may go: no unsaved changes, or the user saved or dropped them.
    bool mayDropChanges();
    // The columns keep their opening widths as a minimum and share the room beyond them.
    void stretchColumns();
    std::string currentFolder() const;

    PromptService& prompts_;
    QSettings& settings_;
    iccDocument document_;
    bool hexadecimal_ = false;
    // Whether the space bar is down: the tag list opens its tag when it gains the focus then.
    bool spaceHeld_ = false;

    QPushButton* browseButton_;
    QLineEdit* pathField_;
    QPushButton* saveAsButton_;
    QPushButton* compareButton_;
    QGroupBox* headerGroup_;
    std::array<QLineEdit*, kHeaderFieldCount> headerFields_{};
    QPushButton* modifyButton_;
    QPushButton* checkButton_;
    QGroupBox* tagGroup_;
    QTreeWidget* tagList_;
    QRadioButton* decimalButton_;
    QRadioButton* hexadecimalButton_;
    QAction* aboutAction_;
    QPushButton* closeButton_;
};
