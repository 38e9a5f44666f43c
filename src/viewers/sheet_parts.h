// Small pieces shared by the lookup-table sheets and the CLUT folder dialog.
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <utility>

class QBoxLayout;
class QDialog;
class QHBoxLayout;
class QPushButton;
class QTabWidget;
class QWidget;

QString sheetText(std::string_view text);
// A model's "Label: value" line as the label (with its colon) and the value.
std::pair<QString, QString> splitLabelLine(const std::string& line);
// "OK" and "Cancel" (named okButton and cancelButton) at the end of `layout`, closing `dialog`.
void addOkCancel(QDialog& dialog, QBoxLayout& layout);
// A push button named for tests.
QPushButton* namedButton(const QString& text, const QString& objectName, QWidget* parent);
// The two buttons right-aligned in one row, in the order given.
QHBoxLayout* buttonRow(QPushButton* first, QPushButton* second);
// `page` as the next tab of `pages`, named for tests.
void addPage(QTabWidget& pages, QWidget* page, const QString& objectName, const QString& title);
