#include "viewers/hex_dump_dialog.h"

#include "viewers/hex_dump_model.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

CHexDlg::CHexDlg(std::string_view caption, const std::vector<std::string>& lines, QWidget* parent)
    : QDialog(parent), list_(new QListWidget(this)) {
    if (caption.empty())
        caption = kHexDumpDefaultCaption;
    setWindowTitle(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())));
    setModal(true);

    list_->setObjectName(QStringLiteral("hexList"));
    // The columns only line up in a fixed-pitch font.
    const QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    list_->setFont(mono);
    list_->setUniformItemSizes(true);
    for (const std::string& line : lines)
        list_->addItem(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())));

    auto* close = new QPushButton(tr("&Close"), this);
    close->setObjectName(QStringLiteral("closeButton"));
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    layout->addLayout(buttons);

    const QFontMetrics metrics(mono);
    const int lineWidth = metrics.horizontalAdvance(QString(80, QLatin1Char('0')));
    resize(lineWidth + 80, metrics.lineSpacing() * 24 + 80);
}
