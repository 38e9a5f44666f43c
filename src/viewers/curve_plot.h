// The curve plot: one or several tone curves over a 0..1 input axis on a grid, with a legend of
// their labels. The curve viewer shows one curve in it, the lookup-table viewers' curve pages
// one curve per channel; the lut8/lut16 pages draw their channel tables in the plot's table
// style, over table entries and stored values.
//
// Drawing is a plain function over a painter, so the widget, a screenshot and the tests paint
// the very same picture; the widget only keeps the data and repaints.
#pragma once

#include "profile/status.h"
#include "viewers/curve_model.h"

#include <QColor>
#include <QRectF>
#include <QWidget>

#include <cstddef>
#include <span>

class QPainter;
class iccCurveElement;

// Paints the plot into `bounds` (axis labels and, in the table style, the legend strip
// included): grid and axis labels, each curve in its colour, and the legend, laid out as
// data.style says (see icCurvePlotStyle). A plot without curves says "No data" in its middle.
void drawCurvePlot(QPainter& painter, const QRectF& bounds, const icCurvePlotData& data);

// The mapping drawCurvePlot uses for `bounds`.
icPlotMapping curvePlotMapping(const QRectF& bounds, const icCurvePlotData& data);

// Curve `index` of `count`: black when alone, otherwise a colour of its own (red, green, blue
// first, as the channels of an RGB table come).
QColor curvePlotColor(std::size_t index, std::size_t count);

class CCurvePlot : public QWidget {
    Q_OBJECT
public:
    explicit CCurvePlot(QWidget* parent = nullptr);

    // Resamples the curves and labels them ("#N: " before each when there are several). On
    // failure (-10) the plot keeps what it showed.
    [[nodiscard]] icStatus setCurves(std::span<const iccCurveElement> curves);
    // Curves the caller has sampled itself (the lookup tables' channel tables).
    void setData(icCurvePlotData data);
    const icCurvePlotData& data() const { return data_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    icCurvePlotData data_;
};
