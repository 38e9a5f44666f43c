#include "viewers/chromaticity_diagram.h"

#include "document/text_format.h"

#include <QFontMetricsF>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

QPointF toPoint(icPlotPoint p) {
    return {p.x, p.y};
}

QColor toColor(icRgb8 c) {
    return {c.r, c.g, c.b};
}

constexpr int kDivisions = 10;
constexpr double kLocusWidth = 3;
const QColor kGridColor(232, 232, 232);

void drawAxes(QPainter& painter, const QRectF& bounds, const ChromaticityMapping& mapping) {
    const icPlotMapping& m = mapping.mapping();
    painter.setPen(QPen(kGridColor, 1));
    for (int i = 1; i <= kDivisions; ++i) {
        const double f = double(i) / kDivisions;
        painter.drawLine(toPoint(m.map(f, 0)), toPoint(m.map(f, 1)));
        painter.drawLine(toPoint(m.map(0, f)), toPoint(m.map(1, f)));
    }

    painter.setPen(QPen(Qt::black, 1));
    const QPointF origin = toPoint(m.map(0, 0));
    painter.drawLine(origin, toPoint(m.map(1, 0)));
    painter.drawLine(origin, toPoint(m.map(0, 1)));

    // Every tenth is labelled while the labels fit side by side, else every fifth.
    const QFontMetricsF metrics(painter.font());
    const double labelWidth = metrics.horizontalAdvance(QStringLiteral("0.8")) + 8;
    const double tenth = m.area().width / kDivisions;
    const double tenthHigh = m.area().height / kDivisions;
    const int xStep = tenth >= labelWidth ? 1 : 2;
    const int yStep = tenthHigh >= metrics.height() + 2 ? 1 : 2;
    for (int i = 0; i <= kDivisions; ++i) {
        const double f = double(i) / kDivisions;
        const QString text = QString::fromStdString(formatText("%1.3g", f));
        if (i % xStep == 0) {
            const QPointF x = toPoint(m.map(f, 0));
            painter.drawLine(x, x + QPointF(0, 4));
            painter.drawText(QRectF(x.x() - 30, x.y() + 4, 60, metrics.height()),
                             Qt::AlignHCenter | Qt::AlignTop, text);
        }
        if (i % yStep == 0 && i > 0) { // the origin's 0 is written once, under the x axis
            const QPointF y = toPoint(m.map(0, f));
            painter.drawLine(y, y - QPointF(4, 0));
            painter.drawText(QRectF(bounds.left(), y.y() - metrics.height() / 2,
                                    y.x() - 6 - bounds.left(), metrics.height()),
                             Qt::AlignRight | Qt::AlignVCenter, text);
        }
    }
}

// Each segment runs from the colour of its first point to that of its second, so every table
// point is drawn in exactly its own colour.
void drawLocus(QPainter& painter, const ChromaticityMapping& mapping) {
    const auto points = mapping.locus();
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const QPointF from = toPoint(points[i]);
        const QPointF to = toPoint(points[i + 1]);
        const QColor first = toColor(kSpectralLocus[i].color);
        QBrush brush(first);
        if (std::hypot(to.x() - from.x(), to.y() - from.y()) > 0.5) {
            QLinearGradient gradient(from, to);
            gradient.setColorAt(0, first);
            gradient.setColorAt(1, toColor(kSpectralLocus[i + 1].color));
            brush = QBrush(gradient);
        }
        painter.setPen(QPen(brush, kLocusWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawLine(from, to);
    }
}

void drawTriangle(QPainter& painter, const ChromaticityMapping& mapping) {
    const auto corners = mapping.srgbTriangle();
    QPainterPath path(toPoint(corners[0]));
    for (std::size_t i = 1; i < corners.size(); ++i)
        path.lineTo(toPoint(corners[i]));
    painter.setPen(QPen(toColor(kTrianglePen), 1, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
}

void drawValue(QPainter& painter, const ChromaticityMapping& mapping, const icDiagramValue& value) {
    painter.setPen(QPen(Qt::black, 2));
    painter.setBrush(toColor(value.color));
    painter.drawEllipse(toPoint(mapping.map(value.xy)), kValueRadius, kValueRadius);
}

} // namespace

ChromaticityMapping chromaticityDiagramMapping(const QRectF& bounds) {
    return chromaticityDiagramMapping(
        icPlotArea{bounds.left(), bounds.top(), bounds.width(), bounds.height()});
}

void drawChromaticityDiagram(QPainter& painter, const QRectF& bounds, const icDiagramValue& value) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(bounds, Qt::white);
    const ChromaticityMapping mapping = chromaticityDiagramMapping(bounds);
    drawAxes(painter, bounds, mapping);
    drawLocus(painter, mapping);
    drawTriangle(painter, mapping);
    drawValue(painter, mapping, value);
    painter.restore();
}

CChromaticityDiagram::CChromaticityDiagram(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("chromaticityDiagram"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void CChromaticityDiagram::setValue(const icDiagramValue& value) {
    value_ = value;
    update();
}

QSize CChromaticityDiagram::sizeHint() const {
    return {420, 400};
}

QSize CChromaticityDiagram::minimumSizeHint() const {
    return {200, 190};
}

void CChromaticityDiagram::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawChromaticityDiagram(painter, QRectF(rect()), value_);
}
