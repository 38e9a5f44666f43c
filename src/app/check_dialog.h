// The Check window: the findings of a profile's check in a sortable table (severity, offset,
// tag, message), copied as text with "Copy". Double-clicking a finding about a tag asks the main
// window to select that tag's row.
#pragma once

#include "check/profile_check.h"

#include <QDialog>

#include <string>

class QTreeWidget;
class QTreeWidgetItem;

class CCheckDlg : public QDialog {
    Q_OBJECT
public:
    CCheckDlg(const std::string& path, icCheckReport report, QWidget* parent = nullptr);

    // The findings as the command line prints them, as "Copy" puts them on the clipboard.
    QString reportText() const;

signals:
    // A finding about directory entry `index` was double-clicked.
    void tagChosen(int index);

private:
    void chooseFinding(QTreeWidgetItem* item);

    std::string path_;
    icCheckReport report_;
    QTreeWidget* list_;
};
