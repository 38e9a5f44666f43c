// The one data-to-pixel mapping of the viewers' plots (the curve plot and the chromaticity
// diagram), free of any toolkit so that where a value lands is tested on numbers alone.
#pragma once

struct icPlotPoint {
    double x = 0, y = 0;
};

// A rectangle in pixels, y growing downwards as on screen.
struct icPlotArea {
    double left = 0, top = 0, width = 0, height = 0;
    double right() const { return left + width; }
    double bottom() const { return top + height; }
};

// Data from 0..xRange and 0..yRange onto `area`: x grows to the right, y upwards, so 0,0 is the
// bottom left corner of the area.
class icPlotMapping {
public:
    constexpr icPlotMapping(icPlotArea area, double xRange = 1.0, double yRange = 1.0)
        : area_(area), xRange_(xRange), yRange_(yRange) {}

    constexpr icPlotPoint map(double x, double y) const {
        return {area_.left + x * (area_.width / xRange_),
                area_.top + area_.height - y * (area_.height / yRange_)};
    }
    constexpr const icPlotArea& area() const { return area_; }
    constexpr double xRange() const { return xRange_; }
    constexpr double yRange() const { return yRange_; }

private:
    icPlotArea area_;
    double xRange_, yRange_;
};

// An area with margins taken off; never narrower or lower than 1 pixel, so a tiny window still
// maps every value somewhere inside it.
constexpr icPlotArea insetArea(icPlotArea a, double left, double top, double right, double bottom) {
    const double width = a.width - left - right;
    const double height = a.height - top - bottom;
    return {a.left + left, a.top + top, width < 1 ? 1 : width, height < 1 ? 1 : height};
}
