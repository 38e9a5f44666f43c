// The window for a report text too long for a message box.
#pragma once

#include <QDialog>

#include <string_view>

class QPlainTextEdit;

class CLargeTextDlg : public QDialog {
    Q_OBJECT
public:
    CLargeTextDlg(std::string_view caption, std::string_view text, QWidget* parent = nullptr);

private:
    QPlainTextEdit* edit_;
};
