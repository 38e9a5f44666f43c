// Small pieces shared by the viewer dialogs.
#pragma once

#include <QLineEdit>
#include <QPalette>
#include <QString>

#include <string_view>

// Names, codes and dump lines are bytes from the tag; Latin-1 shows every byte as one character.
inline QString latin1Text(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

// A box the user cannot type into looks it: the window's background instead of an edit box's.
// Its text can still be selected and copied.
inline void setReadOnlyLook(QLineEdit& box) {
    box.setReadOnly(true);
    QPalette palette = box.palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    box.setPalette(palette);
}

// A value the viewer shows but does not let the user change, named for tests.
inline QLineEdit* readOnlyBox(QWidget* parent, const QString& objectName) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(objectName);
    setReadOnlyLook(*box);
    return box;
}
