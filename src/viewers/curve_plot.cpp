#include "viewers/curve_plot.h"

#include "document/text_format.h"
#include "tagtypes/curve_type.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <utility>

namespace {

QPointF toPoint(icPlotPoint p) {
    return {p.x, p.y};
}

QString labelText(const std::string& label) {
    QString text = QString::fromUtf8(label.data(), static_cast<qsizetype>(label.size()));
    // "Curve Type #N not supported.\n" ends in a line feed that has no place in a legend.
    return text.trimmed();
}

const QColor kGridColor(222, 222, 222);
const QColor kAxisColor(0, 0, 0);
// The table style draws its grid and axis labels in one mid grey.
const QColor kTableGridColor(0x80, 0x80, 0x80);
constexpr int kTableFontPixels = 12;

QString qText(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

void drawTableGrid(QPainter& painter, const QRectF& bounds, const icPlotMapping& mapping) {
    const icPlotArea& a = mapping.area();
    const double xRange = mapping.xRange(), yRange = mapping.yRange();
    const QFontMetricsF metrics(painter.font());
    painter.setPen(QPen(kTableGridColor, 1));
    for (int i = 0; i <= kCurvePlotDivisions; ++i) {
        const double f = double(i) / kCurvePlotDivisions;
        const QPointF x = toPoint(mapping.map(f * xRange, 0));
        painter.drawLine(x, toPoint(mapping.map(f * xRange, yRange)));
        painter.drawText(QRectF(x.x() - 40, a.bottom() + 4, 80, metrics.height()),
                         Qt::AlignHCenter | Qt::AlignTop, qText(tableAxisLabel(i, xRange)));

        const QPointF y = toPoint(mapping.map(0, f * yRange));
        painter.drawLine(y, toPoint(mapping.map(xRange, f * yRange)));
        painter.drawText(QRectF(bounds.left(), y.y() - metrics.height() / 2,
                                a.left - 5 - bounds.left(), metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter, qText(tableAxisLabel(i, yRange)));
    }
}

void drawGridAndAxes(QPainter& painter, const QRectF& bounds, const icPlotMapping& mapping) {
    const icPlotArea& a = mapping.area();
    const QRectF area(a.left, a.top, a.width, a.height);
    const double top = mapping.yRange(), right = mapping.xRange();

    painter.setPen(QPen(kGridColor, 1));
    for (int i = 1; i < kCurvePlotDivisions; ++i) {
        const double f = double(i) / kCurvePlotDivisions;
        painter.drawLine(toPoint(mapping.map(f * right, 0)), toPoint(mapping.map(f * right, top)));
        painter.drawLine(toPoint(mapping.map(0, f * top)), toPoint(mapping.map(right, f * top)));
    }
    painter.setPen(QPen(kAxisColor, 1));
    painter.drawRect(area);

    const QFontMetricsF metrics(painter.font());
    for (int i = 0; i <= kCurvePlotDivisions; i += 2) {
        const double f = double(i) / kCurvePlotDivisions;
        const QPointF x = toPoint(mapping.map(f * right, 0));
        painter.drawLine(x, x + QPointF(0, 4));
        const QString xText = QString::fromStdString(formatText("%g", f * right));
        painter.drawText(QRectF(x.x() - 40, area.bottom() + 5, 80, metrics.height()),
                         Qt::AlignHCenter | Qt::AlignTop, xText);

        const QPointF y = toPoint(mapping.map(0, f * top));
        painter.drawLine(y, y - QPointF(4, 0));
        // Values are written as fractions of full scale, the way tone curves are thought of.
        const QString yText = QString::fromStdString(formatText("%g", f));
        painter.drawText(QRectF(bounds.left(), y.y() - metrics.height() / 2,
                                area.left() - 7 - bounds.left(), metrics.height()),
                         Qt::AlignRight | Qt::AlignVCenter, yText);
    }
}

void drawCurves(QPainter& painter, const icPlotMapping& mapping, const icCurvePlotData& data) {
    const icPlotArea& a = mapping.area();
    const bool table = data.style == icCurvePlotStyle::table;
    const std::size_t count = data.curves.size();
    for (std::size_t c = 0; c < count; ++c) {
        const std::vector<double>& values = data.curves[c];
        if (values.empty())
            continue;
        QPainterPath path;
        const double last = values.size() > 1 ? double(values.size() - 1) : 1.0;
        for (std::size_t i = 0; i < values.size(); ++i) {
            const QPointF p = toPoint(mapping.map(double(i) / last * mapping.xRange(), values[i]));
            if (i == 0)
                path.moveTo(p);
            else
                path.lineTo(p);
        }
        if (values.size() == 1) // a single value is a level line
            path.lineTo(toPoint(mapping.map(mapping.xRange(), values[0])));

        painter.save();
        if (table)
            painter.translate(tableCurveShift(c, count), 0);
        // A curve above full scale (an 'para' overshooting 1.0) stops at the frame; a shifted
        // table takes its frame along.
        painter.setClipRect(QRectF(a.left - 1, a.top - 1, a.width + 2, a.height + 2));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(curvePlotColor(c, count), table ? 1 : 2, Qt::SolidLine, Qt::RoundCap,
                            Qt::RoundJoin));
        painter.drawPath(path);
        painter.restore();
    }
}

void drawLegend(QPainter& painter, const icPlotMapping& mapping, const icCurvePlotData& data) {
    const icPlotArea& a = mapping.area();
    const QFontMetricsF metrics(painter.font());
    constexpr double kPad = 6, kSwatch = 18, kGap = 6;
    double textWidth = 0;
    for (const std::string& label : data.labels)
        textWidth = std::max(textWidth, metrics.horizontalAdvance(labelText(label)));
    const double rowHeight = metrics.height();
    QRectF box(a.left + 8, a.top + 8, kPad + kSwatch + kGap + textWidth + kPad,
               kPad * 2 + rowHeight * double(data.labels.size()));
    box.setWidth(std::min(box.width(), a.width - 16));

    painter.save();
    painter.setClipRect(QRectF(a.left, a.top, a.width, a.height));
    painter.setPen(QPen(QColor(160, 160, 160), 1));
    painter.setBrush(QColor(255, 255, 255, 235));
    painter.drawRect(box);
    for (std::size_t i = 0; i < data.labels.size(); ++i) {
        const double y = box.top() + kPad + rowHeight * double(i);
        const double middle = y + rowHeight / 2;
        painter.setPen(QPen(curvePlotColor(i, data.labels.size()), 2));
        painter.drawLine(QPointF(box.left() + kPad, middle),
                         QPointF(box.left() + kPad + kSwatch, middle));
        painter.setPen(kAxisColor);
        const double textLeft = box.left() + kPad + kSwatch + kGap;
        painter.drawText(QRectF(textLeft, y, box.right() - kPad - textLeft, rowHeight),
                         Qt::AlignLeft | Qt::AlignVCenter, labelText(data.labels[i]));
    }
    painter.restore();
}

void drawTableLegend(QPainter& painter, const QRectF& bounds, const icPlotMapping& mapping,
                     const icCurvePlotData& data) {
    const double right = mapping.area().right();
    const QFontMetricsF metrics(painter.font());
    const double textLeft = right + kTableLegendTextStart;
    const auto textAt = [&](double y, const QString& text) {
        painter.drawText(QRectF(textLeft, y - metrics.height() / 2,
                                std::max(0.0, bounds.right() - textLeft), metrics.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, text);
    };

    painter.save();
    painter.setClipRect(bounds);
    double y = bounds.top() + kTableLegendTop;
    for (std::size_t c = 0; c < data.labels.size(); ++c) {
        y = bounds.top() + kTableLegendTop + kTableLegendRowStep * double(c);
        painter.setPen(QPen(curvePlotColor(c, data.labels.size()), 2));
        painter.drawLine(QPointF(right + kTableLegendLineStart, y),
                         QPointF(right + kTableLegendLineEnd, y));
        painter.setPen(kAxisColor);
        textAt(y, labelText(data.labels[c]));
    }
    if (!data.legendFooter.empty()) {
        painter.setPen(kAxisColor);
        textAt(data.labels.empty() ? y : y + kTableLegendFooterGap, qText(data.legendFooter));
    }
    painter.restore();
}

} // namespace

QColor curvePlotColor(std::size_t index, std::size_t count) {
    static const std::array<QColor, 15> kColors{{
        {215, 0, 0},
        {0, 150, 0},
        {0, 0, 225},
        {0, 160, 175},
        {190, 0, 190},
        {150, 125, 0},
        {0, 0, 0},
        {255, 125, 0},
        {115, 60, 180},
        {135, 75, 20},
        {110, 110, 110},
        {240, 80, 145},
        {0, 110, 100},
        {20, 40, 120},
        {100, 190, 0},
    }};
    if (count <= 1)
        return Qt::black;
    return kColors[index % kColors.size()];
}

icPlotMapping curvePlotMapping(const QRectF& bounds, const icCurvePlotData& data) {
    return curvePlotMapping(
        icPlotArea{bounds.left(), bounds.top(), bounds.width(), bounds.height()}, data);
}

void drawCurvePlot(QPainter& painter, const QRectF& bounds, const icCurvePlotData& data) {
    const bool table = data.style == icCurvePlotStyle::table;
    painter.save();
    // Tables are drawn crisp: their whole-pixel shifts only keep equal tables apart when an
    // antialiased line does not blend into the one a pixel beside it.
    painter.setRenderHint(QPainter::Antialiasing, !table);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(bounds, Qt::white);

    if (table) {
        QFont font = painter.font();
        font.setPixelSize(kTableFontPixels);
        painter.setFont(font);
    }

    const icPlotMapping mapping = curvePlotMapping(bounds, data);
    if (table)
        drawTableGrid(painter, bounds, mapping);
    else
        drawGridAndAxes(painter, bounds, mapping);
    if (data.curves.empty() && data.labels.empty()) {
        const icPlotArea& a = mapping.area();
        painter.setPen(kAxisColor);
        painter.drawText(QRectF(a.left, a.top, a.width, a.height), Qt::AlignCenter,
                         QString::fromLatin1(kNoCurveLabel.data(),
                                             static_cast<qsizetype>(kNoCurveLabel.size())));
    } else {
        drawCurves(painter, mapping, data);
        if (table)
            drawTableLegend(painter, bounds, mapping, data);
        else
            drawLegend(painter, mapping, data);
    }
    painter.restore();
}

CCurvePlot::CCurvePlot(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("curvePlot"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    // The plot covers every pixel itself.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

icStatus CCurvePlot::setCurves(std::span<const iccCurveElement> curves) {
    icCurvePlotData data;
    if (icStatus s = buildCurvePlot(curves, kCurvePlotPoints, data); s != icOk)
        return s;
    setData(std::move(data));
    return icOk;
}

void CCurvePlot::setData(icCurvePlotData data) {
    data_ = std::move(data);
    update();
}

QSize CCurvePlot::sizeHint() const {
    return {440, 360};
}

QSize CCurvePlot::minimumSizeHint() const {
    return {200, 160};
}

void CCurvePlot::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    drawCurvePlot(painter, QRectF(rect()), data_);
}
