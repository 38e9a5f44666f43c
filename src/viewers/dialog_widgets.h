// Small pieces shared by the viewer dialogs.
#pragma once

#include <QLineEdit>
#include <QString>

#include <string_view>

// Names, codes and dump lines are bytes from the tag; Latin-1 shows every byte as one character.
inline QString latin1Text(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// A value the viewer shows but does not let the user change, named for tests.
inline QLineEdit* readOnlyBox(QWidget* parent, const QString& objectName) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(objectName);
    box->setReadOnly(true);
    return box;
}
