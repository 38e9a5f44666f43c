// The XYZ viewer's values and texts and the chromaticity diagram's geometry, free of any
// toolkit: the chromaticity of a value, its display colour, the spectral locus and the sRGB
// triangle, and the mapping of a chromaticity into the plot.
#pragma once

#include "viewers/plot_mapping.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class iccXYZType;

inline constexpr std::string_view kXyzDefaultCaption = "XYZ Data";

struct icChromaticity {
    double x = 0, y = 0;
};

// x = X / (X + Y + Z), y likewise; 0.3333 for both when the sum is 1e-5 or less.
icChromaticity chromaticity(double X, double Y, double Z);

struct icRgb8 {
    std::uint8_t r = 0, g = 0, b = 0;
    friend bool operator==(const icRgb8&, const icRgb8&) = default;
};

// The fill colour of the value's circle: a fixed linear transform of X, Y, Z times 100,
// negatives set to 0, scaled down together when one exceeds 255, truncated, low 8 bits.
icRgb8 displayColor(double X, double Y, double Z);

struct icLocusPoint {
    icChromaticity xy;
    icRgb8 color;
};

// The spectral locus from violet to red (0-30), the purple line back (31-35), and point 0 again
// (36). Point 25 lies behind point 24; the table is drawn as it stands.
extern const std::array<icLocusPoint, 37> kSpectralLocus;

// The sRGB primaries red, green and blue as chromaticities.
std::array<icChromaticity, 3> srgbPrimaries();

inline constexpr double kDiagramLeftMargin = 20;
inline constexpr double kDiagramRange = 1.0;
inline constexpr icRgb8 kTrianglePen{128, 128, 128};
inline constexpr int kValueRadius = 7;

// The diagram inside its widget: room for the y axis labels left of the mapping's own 20-pixel
// margin, a strip of 20 pixels under the plot for the x axis labels, and a little air above and
// to the right.
inline constexpr double kDiagramLabelRoom = 14;
inline constexpr double kDiagramBottomStrip = 20;
inline constexpr double kDiagramTopMargin = 10;
inline constexpr double kDiagramRightMargin = 12;

class ChromaticityMapping {
public:
    // A plot area of `width` by `height` pixels in a client area whose top left corner is
    // `origin`: x = x * width + 20, y = height - y * height, both from the origin.
    ChromaticityMapping(double width, double height, icPlotPoint origin = {})
        : mapping_({origin.x + kDiagramLeftMargin, origin.y, width, height}, kDiagramRange,
                   kDiagramRange) {}
    icPlotPoint map(icChromaticity c) const { return mapping_.map(c.x, c.y); }
    const icPlotMapping& mapping() const { return mapping_; }
    // The locus mapped point by point, and the triangle red, green, blue, red.
    std::array<icPlotPoint, 37> locus() const;
    std::array<icPlotPoint, 4> srgbTriangle() const;

private:
    icPlotMapping mapping_;
};

// The mapping of a diagram that fills `bounds` (its whole widget).
ChromaticityMapping chromaticityDiagramMapping(icPlotArea bounds);

// The viewer's state: the three values being edited and the title.
class XyzModel {
public:
    XyzModel(double X, double Y, double Z, std::string_view title = {});
    explicit XyzModel(const iccXYZType& xyz, std::string_view title = {});

    const std::string& title() const { return title_; }
    double X() const { return X_; }
    double Y() const { return Y_; }
    double Z() const { return Z_; }
    void setXYZ(double X, double Y, double Z);
    // The texts of the X, Y and Z boxes as the user left them, each read as its leading number
    // (a box without one counts as 0).
    void setXYZ(std::string_view X, std::string_view Y, std::string_view Z);
    static double parseValueText(std::string_view text);
    // Why the text of box `label` cannot be a value, or nothing when it can: it must be one
    // number, blanks around it and a decimal comma allowed, within what the tag stores (-32768
    // to 32767.99998).
    static std::optional<std::string> valueRefusal(std::string_view label, std::string_view text);

    // From the values, not from the rounded texts of the boxes.
    icChromaticity chromaticity() const { return ::chromaticity(X_, Y_, Z_); }
    icRgb8 displayColor() const { return ::displayColor(X_, Y_, Z_); }

    // "%1.5lf" for the X, Y and Z boxes, "%lf" for x and y.
    std::string valueText(double v) const;
    std::string chromaticityText(double v) const;
    // "X: ...", "Y: ...", "Z: ...", "x: ...", "y: ..." as veltrino-cli prints `viewer xyz`.
    std::vector<std::string> lines() const;

private:
    double X_, Y_, Z_;
    std::string title_;
};
