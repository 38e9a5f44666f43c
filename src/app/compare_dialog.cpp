#include "app/compare_dialog.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kIndexRole = Qt::UserRole;
constexpr int kMaxColumnWidth = 320;

// Decoded texts are UTF-8; bytes that are not show as U+FFFD.
QString text(const std::string& s) {
    return QString::fromUtf8(s.data(), static_cast<qsizetype>(s.size()));
}

QString fileName(const std::string& path) {
    return QFileInfo(QFile::decodeName(path.c_str())).fileName();
}

} // namespace

CCompareDlg::CCompareDlg(const icProfileDiff& diff, const QString& nameA, const QString& nameB,
                         QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(tr("Compare %1 with %2").arg(nameA, nameB));
    setSizeGripEnabled(true);
    auto* summary = new QLabel(text(diffSummaryText(diff)), this);
    summary->setObjectName(QStringLiteral("summaryLabel"));
    summary->setWordWrap(true);

    tree_ = new QTreeWidget(this);
    tree_->setObjectName(QStringLiteral("compareTree"));
    tree_->setColumnCount(4);
    tree_->setHeaderLabels({tr("Difference"), nameA, nameB, tr("Detail")});
    tree_->setUniformRowHeights(true);
    tree_->setAllColumnsShowFocus(true);
    const QBrush highlight(QColor(255, 226, 140));
    for (const icDiffSection& section : diff.sections) {
        auto* top = new QTreeWidgetItem(tree_, {text(section.title)});
        top->setFirstColumnSpanned(true);
        top->setData(0, kIndexRole, section.indexA);
        QFont bold = top->font(0);
        bold.setBold(true);
        top->setFont(0, bold);
        for (const icDiffEntry& entry : section.entries) {
            const std::string what = entry.tag.empty() ? entry.what : entry.what + " " + entry.tag;
            auto* row = new QTreeWidgetItem(
                top, {text(what), text(entry.a), text(entry.b), text(entry.detail)});
            // Long strings are cut by their column; the tool tip shows them whole.
            for (int column = 1; column < 4; ++column)
                row->setToolTip(column, row->text(column));
            // A pair of differing values; summing-up lines and one-sided entries stay plain.
            if (!entry.a.empty() && !entry.b.empty())
                for (int column : {1, 2})
                    row->setBackground(column, highlight);
        }
    }
    tree_->expandAll();
    for (int c = 0; c < 3; ++c) {
        tree_->resizeColumnToContents(c);
        tree_->setColumnWidth(c, std::min(tree_->columnWidth(c), kMaxColumnWidth));
    }
    connect(tree_, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { activate(item); });

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(summary);
    layout->addWidget(tree_, 1);
    layout->addWidget(buttons);
    resize(900, 600);
}

void CCompareDlg::activate(QTreeWidgetItem* item) {
    while (item && item->parent())
        item = item->parent();
    if (!item)
        return;
    if (const int index = item->data(0, kIndexRole).toInt(); index >= 0)
        emit tagActivated(index);
}

void compareWithFile(PromptService& prompts, iccDocument& document,
                     const FileDialogRequest& request, QWidget* parent,
                     const std::function<void(int)>& showTagAt) {
    if (!document.isOpen())
        return;
    const auto path = prompts.askOpenPath(request);
    if (!path)
        return;
    iccDocument other(prompts);
    if (!other.open(*path))
        return;
    icProfileDiff diff;
    if (diffProfiles(document.profile(), other.profile(), {}, diff) != icOk) {
        prompts.outOfMemory();
        return;
    }
    CCompareDlg dialog(diff, fileName(document.path()), fileName(*path), parent);
    QObject::connect(&dialog, &CCompareDlg::tagActivated, &dialog, showTagAt);
    dialog.exec();
}
