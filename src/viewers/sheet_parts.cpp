#include "viewers/sheet_parts.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>

QString sheetText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::pair<QString, QString> splitLabelLine(const std::string& line) {
    const std::size_t colon = line.find(": ");
    if (colon == std::string::npos)
        return {sheetText(line), QString()};
    return {sheetText(line.substr(0, colon + 1)), sheetText(line.substr(colon + 2))};
}

void addOkCancel(QDialog& dialog, QBoxLayout& layout) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("okButton"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cancelButton"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    layout.addWidget(buttons);
}

QPushButton* namedButton(const QString& text, const QString& objectName, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setObjectName(objectName);
    return button;
}

QHBoxLayout* buttonRow(QPushButton* first, QPushButton* second) {
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(first);
    row->addWidget(second);
    return row;
}

void addPage(QTabWidget& pages, QWidget* page, const QString& objectName, const QString& title) {
    page->setObjectName(objectName);
    pages.addTab(page, title);
}
