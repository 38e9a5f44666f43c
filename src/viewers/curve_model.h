// The curve viewer's texts and the data of the curve plot, free of any toolkit.
#pragma once

#include "profile/status.h"
#include "viewers/plot_mapping.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccCurveElement;
class iccCurveType;
class iccParametricCurveType;
class PromptService;
struct FileDialogRequest;

inline constexpr std::string_view kCurveDefaultCaption = "Curve Tag";
// Title texts of the viewers are kept to 63 characters.
inline constexpr std::size_t kViewerTitleLimit = 63;
// What the plot says when it holds no curve.
inline constexpr std::string_view kNoCurveLabel = "No data";
// The box of an import whose curve could not be handed to the plot.
inline constexpr std::string_view kCurvePlotUpdateFailed = "Error in updating drawing object.\n";

// "Identity", "gamma=%4.3g" or "%d points" for 'curv'; the parameters for 'para'.
std::string curveLabel(const iccCurveType& curve);
std::string curveLabel(const iccParametricCurveType& curve);
// The held curve's label; "No data" for an empty element.
std::string curveLabel(const iccCurveElement& curve);

// One label per curve; with more than one curve each is numbered "#%d: " from 0.
std::vector<std::string> curvePlotLabels(std::span<const iccCurveElement> curves);
// The same numbering for labels made elsewhere (the lookup tables' channel curves).
std::vector<std::string> numberCurveLabels(std::vector<std::string> labels);

// What the curve plot draws: each curve as values at evenly spaced inputs from 0 to 1 (the first
// value at input 0, the last at input 1), and one label per curve for the legend.
struct icCurvePlotData {
    std::vector<std::vector<double>> curves;
    std::vector<std::string> labels;
    // The value drawn at the top of the plot: 65535 for resampled curves, 255 for 8-bit tables.
    double valueScale = 65535;
    // The numbers written at the right end of the input axis and the top of the output axis;
    // the axes are labelled in fractions of them.
    double inputAxisEnd = 1, outputAxisEnd = 1;
};
// Samples taken of each curve for the plot: enough for a smooth line at any window size.
inline constexpr std::uint32_t kCurvePlotPoints = 1024;
// Every curve resampled to `points` values on a 0..65535 scale, with its label. A curve that
// cannot be resampled (an unknown parametric type) keeps its label and gets no line, so its
// label can say why. -11 for fewer than 2 points, -10 when memory runs out; an empty set gives
// an empty plot.
[[nodiscard]] icStatus buildCurvePlot(std::span<const iccCurveElement> curves, std::uint32_t points,
                                      icCurvePlotData& out);

// Margins of the curve plot inside its widget, in pixels: room for the axis labels.
inline constexpr double kCurvePlotLeftMargin = 52;
inline constexpr double kCurvePlotTopMargin = 14;
inline constexpr double kCurvePlotRightMargin = 22;
inline constexpr double kCurvePlotBottomMargin = 30;
// Grid lines every tenth of each axis; labels every fifth.
inline constexpr int kCurvePlotDivisions = 10;
// Where the curve plot puts its data inside `bounds` (the whole widget): inputs 0..1 across,
// values 0..valueScale upwards.
inline icPlotMapping curvePlotMapping(icPlotArea bounds, double valueScale) {
    return icPlotMapping(insetArea(bounds, kCurvePlotLeftMargin, kCurvePlotTopMargin,
                                   kCurvePlotRightMargin, kCurvePlotBottomMargin),
                         1.0, valueScale > 0 ? valueScale : 1.0);
}

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

    // The file dialogs of "Export..." ("Save Curve") and "Import..." ("Read Curve"): the name
    // "curve.txt", text files first, starting in the shared data folder.
    static FileDialogRequest fileRequest(bool save);
    // "Export...": asks for a file, remembers its folder on OK and writes the curve there; a
    // failed write shows "Error in saving file!\n". Cancelling changes nothing.
    void exportCurve(PromptService& prompts);
    // "Import...": asks for a file, remembers its folder on OK, reads it into a scratch curve
    // and then into the shown one, and marks the viewer modified. True when the curve changed,
    // so the plot must be rebuilt; a bad file keeps the curve and shows "Error in saving
    // file!\n" (the read has always used the save wording).
    bool importCurve(PromptService& prompts);

private:
    iccCurveElement& curve_;
    std::string title_;
    bool modified_ = false;
};
