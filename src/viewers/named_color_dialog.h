// The viewer of a named colour tag ('ncl2'): the header fields, then one colour at a time with
// its root name, PCS coordinates and device coordinates, chosen by index box or scroll bar.
// It only displays.
#pragma once

#include "viewers/named_color_model.h"

#include <QDialog>

#include <array>
#include <string_view>

class Presenter;
class QLabel;
class QLineEdit;
class QScrollBar;

class CNameColor2Dlg : public QDialog {
    Q_OBJECT
public:
    // An empty caption gives "Named Color Tag". Boxes go through `prompts`.
    CNameColor2Dlg(const icNamedColor2& colors, icSignature pcs, std::string_view caption,
                   Presenter& prompts, QWidget* parent = nullptr);

    const NamedColorModel& model() const { return model_; }

protected:
    // A tag with more device planes than there are boxes says so once the dialog is up.
    void showEvent(QShowEvent* event) override;

private:
    void indexEdited(const QString& text);
    void scrollRequested(int action);
    void moveTo(icScrollRequest request, int thumb);
    void showColor(int index);

    NamedColorModel model_;
    Presenter& prompts_;
    bool opened_ = false;
    QLineEdit* indexBox_;
    QScrollBar* scroll_;
    QLineEdit* rootName_;
    std::array<QLineEdit*, 3> pcs_{};
    std::array<QLabel*, kNamedColorChannels> channelLabels_{};
    std::array<QLineEdit*, kNamedColorChannels> channels_{};
};
