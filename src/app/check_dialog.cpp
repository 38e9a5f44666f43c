#include "app/check_dialog.h"

#include "check/check_report.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

enum Column { kSeverity, kOffset, kTag, kMessage };

constexpr int kFindingRole = Qt::UserRole;
constexpr int kSortRole = Qt::UserRole + 1;

// Messages are ASCII; a path is in the platform's encoding, UTF-8 here.
QString qText(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Sorts by a key per column, so that severities go error, warning, info and offsets by number;
// equal keys keep the order in which the check found them.
class FindingItem : public QTreeWidgetItem {
public:
    using QTreeWidgetItem::QTreeWidgetItem;
    bool operator<(const QTreeWidgetItem& other) const override {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const QVariant a = data(column, kSortRole), b = other.data(column, kSortRole);
        if (a != b)
            return column == kTag || column == kMessage ? a.toString() < b.toString()
                                                        : a.toULongLong() < b.toULongLong();
        return data(0, kFindingRole).toInt() < other.data(0, kFindingRole).toInt();
    }
};

QIcon severityIcon(const QStyle& style, icSeverity severity) {
    switch (severity) {
    case icSeverity::error:
        return style.standardIcon(QStyle::SP_MessageBoxCritical);
    case icSeverity::warning:
        return style.standardIcon(QStyle::SP_MessageBoxWarning);
    case icSeverity::info:
        break;
    }
    return style.standardIcon(QStyle::SP_MessageBoxInformation);
}

} // namespace

CCheckDlg::CCheckDlg(const std::string& path, icCheckReport report, QWidget* parent)
    : QDialog(parent), path_(path), report_(std::move(report)), list_(new QTreeWidget(this)) {
    setWindowTitle(tr("Check: %1").arg(QFileInfo(QFile::decodeName(path.c_str())).fileName()));
    setModal(true);
    setSizeGripEnabled(true);

    auto* verdict = new QLabel(qText(verdictLine(report_)), this);
    verdict->setObjectName(QStringLiteral("verdictLabel"));

    list_->setObjectName(QStringLiteral("findingList"));
    list_->setHeaderLabels({tr("Severity"), tr("Offset"), tr("Tag"), tr("Message")});
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(false);
    list_->setWordWrap(true);
    list_->setAllColumnsShowFocus(true);
    QList<QTreeWidgetItem*> items;
    for (std::size_t i = 0; i < report_.findings.size(); ++i) {
        const icFinding& f = report_.findings[i];
        auto* item = new FindingItem(QStringList{qText(std::string(severityName(f.severity))),
                                                 qText(findingOffset(f)), qText(findingTag(f)),
                                                 qText(f.message)});
        item->setIcon(kSeverity, severityIcon(*style(), f.severity));
        item->setToolTip(kMessage, qText(f.message + " (" + f.code + ")"));
        item->setTextAlignment(kOffset, Qt::AlignRight | Qt::AlignVCenter);
        item->setData(0, kFindingRole, static_cast<int>(i));
        item->setData(kSeverity, kSortRole, static_cast<qulonglong>(f.severity));
        item->setData(kOffset, kSortRole,
                      static_cast<qulonglong>(f.offset.value_or(UINT32_MAX) + 1ull));
        item->setData(kTag, kSortRole, item->text(kTag));
        item->setData(kMessage, kSortRole, item->text(kMessage));
        items << item;
    }
    list_->addTopLevelItems(items);
    list_->setSortingEnabled(true);
    list_->sortByColumn(kSeverity, Qt::AscendingOrder);
    for (int c : {kSeverity, kOffset, kTag})
        list_->resizeColumnToContents(c);
    connect(list_, &QTreeWidget::itemDoubleClicked, this, &CCheckDlg::chooseFinding);

    auto* copy = new QPushButton(tr("&Copy"), this);
    copy->setObjectName(QStringLiteral("copyButton"));
    connect(copy, &QPushButton::clicked, this,
            [this] { QApplication::clipboard()->setText(reportText()); });
    auto* close = new QPushButton(tr("&Close"), this);
    close->setObjectName(QStringLiteral("closeButton"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(copy);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(verdict);
    layout->addWidget(list_, 1);
    layout->addLayout(buttons);
    resize(900, 420);
}

QString CCheckDlg::reportText() const {
    return qText(::reportText(path_, report_));
}

void CCheckDlg::chooseFinding(QTreeWidgetItem* item) {
    const int i = item ? item->data(0, kFindingRole).toInt() : -1;
    if (i >= 0 && static_cast<std::size_t>(i) < report_.findings.size() &&
        report_.findings[static_cast<std::size_t>(i)].tagIndex >= 0)
        emit tagChosen(report_.findings[static_cast<std::size_t>(i)].tagIndex);
}
