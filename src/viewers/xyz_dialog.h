// The viewer of one XYZ value ('rXYZ', 'gXYZ', 'bXYZ', 'wtpt', 'bkpt'): the X, Y and Z boxes, the
// chromaticity x, y recomputed as the user types, and the chromaticity diagram.
#pragma once

#include "viewers/xyz_model.h"

#include <QDialog>

#include <string_view>

class CChromaticityDiagram;
class Presenter;
class QLineEdit;

class CcieXYZDlg : public QDialog {
    Q_OBJECT
public:
    // An empty title gives "XYZ Data". A refused box is reported through `boxes`.
    CcieXYZDlg(double X, double Y, double Z, std::string_view title, Presenter& boxes,
               QWidget* parent = nullptr);

    // The values as the boxes hold them: what "&OK" hands back to the tag.
    double X() const { return model_.X(); }
    double Y() const { return model_.Y(); }
    double Z() const { return model_.Z(); }
    const CChromaticityDiagram& diagram() const { return *diagram_; }

    // "&OK": a box that holds no value the tag can store is refused with a warning and set back
    // to the value it opened with, and the dialog stays open.
    void accept() override;

private:
    // Takes the boxes as the values. A box still showing its value's text keeps the value
    // exactly, not its five decimals; a box without an acceptable value keeps its last.
    void readValues();
    // Shows x and y of the values and moves the circle.
    void showChromaticity();

    XyzModel model_;
    const XyzModel given_;
    Presenter& boxes_;
    CChromaticityDiagram* diagram_;
    QLineEdit* values_[3];
    QLineEdit* chromaticity_[2];
};
