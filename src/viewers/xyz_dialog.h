// The viewer of one XYZ value ('rXYZ', 'gXYZ', 'bXYZ', 'wtpt', 'bkpt'): the X, Y and Z boxes, the
// chromaticity x, y recomputed as the user types, and the chromaticity diagram.
#pragma once

#include "viewers/xyz_model.h"

#include <QDialog>

#include <string_view>

class CChromaticityDiagram;
class QLineEdit;

class CcieXYZDlg : public QDialog {
    Q_OBJECT
public:
    // An empty title gives "XYZ Data".
    CcieXYZDlg(double X, double Y, double Z, std::string_view title, QWidget* parent = nullptr);

    // The values as the boxes hold them: what "&OK" hands back to the tag.
    double X() const { return model_.X(); }
    double Y() const { return model_.Y(); }
    double Z() const { return model_.Z(); }
    const CChromaticityDiagram& diagram() const { return *diagram_; }

private:
    // Takes the three boxes as the values: until the user types, the values stay exactly those
    // given, not their five-decimal texts.
    void readValues();
    // Shows x and y of the values and moves the circle.
    void showChromaticity();

    XyzModel model_;
    CChromaticityDiagram* diagram_;
    QLineEdit* values_[3];
    QLineEdit* chromaticity_[2];
};
