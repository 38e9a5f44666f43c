// "Compare with...": the open profile compared with another one, shown as a tree with one
// collapsible section per tag and the differing values highlighted. A double click on a tag
// section opens that tag's viewer for the open profile.
#pragma once

#include "diff/profile_diff.h"
#include "document/document.h"
#include "document/prompt_service.h"

#include <QDialog>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

class CCompareDlg : public QDialog {
    Q_OBJECT
public:
    CCompareDlg(const icProfileDiff& diff, const QString& nameA, const QString& nameB,
                QWidget* parent = nullptr);

signals:
    // A tag section (or a line in it) was double-clicked: the tag's directory index in A.
    void tagActivated(int indexA);

private:
    void activate(QTreeWidgetItem* item);

    QTreeWidget* tree_;
};

// Asks for the second profile with `request`, opens it as "&Browse..." would (its boxes go to
// `prompts`), compares the document's profile with it and shows the result modally. Nothing
// happens without an open document or when the dialog is cancelled.
void compareWithFile(PromptService& prompts, iccDocument& document,
                     const FileDialogRequest& request, QWidget* parent,
                     const std::function<void(int)>& showTagAt);
