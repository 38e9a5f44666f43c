// The chromaticity diagram of the XYZ viewer: the spectral locus in its colours, the sRGB gamut
// as a dashed grey triangle and one value as a filled circle.
//
// Drawing is a plain function over a painter, shared by the widget, screenshots and the tests.
#pragma once

#include "viewers/xyz_model.h"

#include <QRectF>
#include <QWidget>

class QPainter;

// What the diagram marks: where the value lies and the colour it is filled with.
struct icDiagramValue {
    icChromaticity xy;
    icRgb8 color;
};

// Paints the diagram into `bounds` (axis labels included), with the mapping that
// chromaticityDiagramMapping() gives for those bounds.
void drawChromaticityDiagram(QPainter& painter, const QRectF& bounds, const icDiagramValue& value);

ChromaticityMapping chromaticityDiagramMapping(const QRectF& bounds);

class CChromaticityDiagram : public QWidget {
    Q_OBJECT
public:
    explicit CChromaticityDiagram(QWidget* parent = nullptr);

    void setValue(const icDiagramValue& value);
    const icDiagramValue& value() const { return value_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    icDiagramValue value_;
};
