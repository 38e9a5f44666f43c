// The hex dump window of a tag's raw bytes.
#pragma once

#include <QDialog>

#include <string>
#include <string_view>
#include <vector>

class QListWidget;

class CHexDlg : public QDialog {
    Q_OBJECT
public:
    // `lines` are the formatted dump lines; an empty caption gives the window's own.
    CHexDlg(std::string_view caption, const std::vector<std::string>& lines,
            QWidget* parent = nullptr);

private:
    QListWidget* list_;
};
