// Small pieces shared by the lookup-table sheets, the curve viewer and the CLUT folder dialog.
#pragma once

#include <QDialog>
#include <QString>

#include <string>
#include <string_view>
#include <utility>

class PromptService;
class QBoxLayout;
class QHBoxLayout;
class QPushButton;
class QTabWidget;
class QWidget;

QString sheetText(std::string_view text);
// A model's "Label: value" line as the label (with its colon) and the value.
std::pair<QString, QString> splitLabelLine(const std::string& line);
// "OK" and "Cancel" (named okButton and cancelButton) at the end of `layout`, closing `dialog`.
// Cancel drops any changes without asking: that is what the user chose.
void addOkCancel(QDialog& dialog, QBoxLayout& layout);
// A push button named for tests.
QPushButton* namedButton(const QString& text, const QString& objectName, QWidget* parent);
// The two buttons right-aligned in one row, in the order given.
QHBoxLayout* buttonRow(QPushButton* first, QPushButton* second);
// `page` as the next tab of `pages`, named for tests.
void addPage(QTabWidget& pages, QWidget* page, const QString& objectName, const QString& title);

// A viewer whose changes reach the profile only through OK: the lookup-table sheets and the
// curve viewer. Enter in an edit box stays with the box (a CLUT value box takes its values)
// instead of pressing OK, and Escape or the window's close button with changes OK has not
// confirmed asks first: apply them and close as OK does, discard them, or stay.
class CEditingViewerDlg : public QDialog {
    Q_OBJECT
public:
    explicit CEditingViewerDlg(PromptService& prompts, QWidget* parent = nullptr)
        : QDialog(parent), prompts_(prompts) {}
    void reject() override;

    // Whether the viewer changed its object; the caller writes it back after OK.
    virtual bool modified() const = 0;

protected:
    // Whether closing without OK would lose something.
    virtual bool pendingChanges() const { return modified(); }
    // Before "apply" closes with OK: takes what was typed but not yet taken.
    virtual void takeTypedValues() {}
    void keyPressEvent(QKeyEvent* event) override;

    PromptService& prompts_;
};
