// The curve viewer's texts and the data of the curve plot, free of any toolkit.
#pragma once

#include "profile/status.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccCurveElement;
class iccCurveType;
class iccParametricCurveType;

inline constexpr std::string_view kCurveDefaultCaption = "Curve Tag";
// Title texts of the viewers are kept to 63 characters.
inline constexpr std::size_t kViewerTitleLimit = 63;
// What the plot says when it holds no curve.
inline constexpr std::string_view kNoCurveLabel = "No data";

// "Identity", "gamma=%4.3g" or "%d points" for 'curv'; the parameters for 'para'.
std::string curveLabel(const iccCurveType& curve);
std::string curveLabel(const iccParametricCurveType& curve);
// The held curve's label; "No data" for an empty element.
std::string curveLabel(const iccCurveElement& curve);

// One label per curve; with more than one curve each is numbered "#%d: " from 0.
std::vector<std::string> curvePlotLabels(std::span<const iccCurveElement> curves);

// What the curve plot draws: every curve resampled on a 0..65535 scale, and its label.
struct icCurvePlotData {
    std::vector<std::vector<double>> curves;
    std::vector<std::string> labels;
};
// -11 for fewer than 2 points, the curve's own status when one cannot be resampled, -10 when
// memory runs out. An empty set gives an empty plot.
[[nodiscard]] icStatus buildCurvePlot(std::span<const iccCurveElement> curves, std::uint32_t points,
                                      icCurvePlotData& out);

// The viewer of one tone curve. It never owns the curve; an import replaces the curve in place
// and marks the viewer modified, which tells the tag handler to write it back.
class CurveModel {
public:
    CurveModel(iccCurveElement& curve, std::string_view title);

    const std::string& title() const { return title_; }
    iccCurveElement& curve() { return curve_; }
    std::string label() const;
    // The lines veltrino-cli prints for `viewer curve`: the label.
    std::vector<std::string> lines() const;

    bool modified() const { return modified_; }
    void markModified() { modified_ = true; }

private:
    iccCurveElement& curve_;
    std::string title_;
    bool modified_ = false;
};
