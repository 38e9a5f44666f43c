#include "viewers/large_text_dialog.h"

#include "viewers/hex_dump_model.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QPlainTextEdit>
#include <QVBoxLayout>

CLargeTextDlg::CLargeTextDlg(std::string_view caption, std::string_view text, QWidget* parent)
    : QDialog(parent), edit_(new QPlainTextEdit(this)) {
    setWindowTitle(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())));
    setModal(true);

    edit_->setObjectName(QStringLiteral("textEdit"));
    edit_->setReadOnly(true);
    // Long reports hold columns of numbers; a fixed-width font keeps them under each other.
    edit_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    const std::string converted = toEditBoxLineEnds(text);
    edit_->setPlainText(
        QString::fromUtf8(converted.data(), static_cast<qsizetype>(converted.size())));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(edit_);
    layout->addWidget(buttons);

    const QFontMetrics metrics(edit_->font());
    resize(metrics.averageCharWidth() * 80 + 60, metrics.lineSpacing() * 25 + 80);
}
