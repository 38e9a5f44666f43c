// Small pieces shared by the lookup-table sheets and the CLUT folder dialog.
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <utility>

class QBoxLayout;
class QDialog;
class QLineEdit;
class QWidget;

QString sheetText(std::string_view text);
// A model's "Label: value" line as the label (with its colon) and the value.
std::pair<QString, QString> splitLabelLine(const std::string& line);
QLineEdit* readOnlyBox(QWidget* parent, const QString& objectName);
// "OK" and "Cancel" (named okButton and cancelButton) at the end of `layout`, closing `dialog`.
void addOkCancel(QDialog& dialog, QBoxLayout& layout);
