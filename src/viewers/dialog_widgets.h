// Small pieces shared by the viewer dialogs.
#pragma once

#include "viewers/scroll_request.h"

#include <QAbstractSlider>
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

// The request a scroll bar action stands for; `other` (no change) for the Home and End keys.
inline icScrollRequest scrollRequestOf(int sliderAction) {
    switch (sliderAction) {
    case QAbstractSlider::SliderSingleStepSub:
        return icScrollRequest::lineBack;
    case QAbstractSlider::SliderSingleStepAdd:
        return icScrollRequest::lineForward;
    case QAbstractSlider::SliderPageStepSub:
        return icScrollRequest::pageBack;
    case QAbstractSlider::SliderPageStepAdd:
        return icScrollRequest::pageForward;
    case QAbstractSlider::SliderMove:
        return icScrollRequest::thumbTrack;
    default:
        return icScrollRequest::other;
    }
}
