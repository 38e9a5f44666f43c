#include "app/about_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QVBoxLayout>

CAboutDlg::CAboutDlg(std::string_view caption, std::string_view text, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(QString::fromUtf8(caption.data(), static_cast<qsizetype>(caption.size())));
    auto* icon = new QLabel(this);
    icon->setPixmap(windowIcon().pixmap(48, 48));
    auto* message =
        new QLabel(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())), this);
    message->setObjectName(QStringLiteral("aboutText"));
    message->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->setObjectName(QStringLiteral("aboutButtons"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* row = new QHBoxLayout;
    row->addWidget(icon, 0, Qt::AlignTop);
    row->addWidget(message, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(buttons);
}
