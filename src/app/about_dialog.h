// The "About Veltrino" box: the program's name and version with one "OK" button.
#pragma once

#include <QDialog>

#include <string_view>

class CAboutDlg : public QDialog {
    Q_OBJECT
public:
    CAboutDlg(std::string_view caption, std::string_view text, QWidget* parent = nullptr);
};
