#include "viewers/sheet_parts.h"

#include "document/prompt_service.h"

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
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
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog,
                     [&dialog] { dialog.QDialog::reject(); });
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

void CEditingViewerDlg::reject() {
    if (!pendingChanges())
        return QDialog::reject();
    const std::string caption = windowTitle().toStdString();
    switch (
        prompts_.askBeforeClosing(icKeepButton::apply, caption,
                                  "Apply the changes made in " + caption + " before closing?")) {
    case icCloseAnswer::keep:
        takeTypedValues();
        accept();
        break;
    case icCloseAnswer::discard:
        QDialog::reject();
        break;
    case icCloseAnswer::stay:
        break;
    }
}

void CEditingViewerDlg::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && qobject_cast<QLineEdit*>(focusWidget()))
        return;
    QDialog::keyPressEvent(event);
}
