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

// How the curve plot lays itself out.
//  - curve: tone curves over a 0..1 input axis, both axes labelled with "%g" (the values as
//    fractions of full scale), a dark frame, and the legend boxed inside the plot's top left
//    corner. The curve viewer and the lutAToB/lutBToA curve pages use it.
//  - table: the channel tables of a lut8/lut16, whose readers think in table entries and stored
//    values: a grey grid with every line labelled by the integer part of its value, each curve
//    moved sideways by a few pixels so that channels holding the same table (the C, M and Y of
//    many CMYK outputs) do not hide one another, and the legend in a strip right of the plot,
//    closed by a footer line (the number of entries).
enum class icCurvePlotStyle { curve, table };

// What the curve plot draws: each curve as values at evenly spaced inputs from 0 to inputRange
// (the first value at input 0, the last at inputRange), and one label per curve for the legend.
struct icCurvePlotData {
    std::vector<std::vector<double>> curves;
    std::vector<std::string> labels;
    // The value drawn at the top of the plot: 65535 for resampled curves, 255 for 8-bit tables.
    double valueScale = 65535;
    // The input at the right end of the plot: 1 for tone curves, the last entry's index for
    // tables.
    double inputRange = 1;
    icCurvePlotStyle style = icCurvePlotStyle::curve;
    // Written under the legend entries in the table style; nothing when empty.
    std::string legendFooter;
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
// The table style keeps a strip right of the plot for its legend, wide enough for
// "Channel #14" and "65535 points".
inline constexpr double kTablePlotLegendStrip = 130;
// Grid lines every tenth of each axis; the curve style labels every fifth, the table style all.
inline constexpr int kCurvePlotDivisions = 10;
// The table legend, from the plot's right edge and the widget's top: a line from 10 to 35
// pixels right of the plot in the channel's colour, its text from 40; the first row 25 pixels
// down, one row every 16 (the 12-pixel font needs that much), and the footer 24 below the last
// row.
inline constexpr double kTableLegendLineStart = 10;
inline constexpr double kTableLegendLineEnd = 35;
inline constexpr double kTableLegendTextStart = 40;
inline constexpr double kTableLegendTop = 25;
inline constexpr double kTableLegendRowStep = 16;
inline constexpr double kTableLegendFooterGap = 24;

// Where the curve plot puts its data inside `bounds` (the whole widget): inputs
// 0..data.inputRange across, values 0..data.valueScale upwards.
inline icPlotMapping curvePlotMapping(icPlotArea bounds, const icCurvePlotData& data) {
    const bool table = data.style == icCurvePlotStyle::table;
    return icPlotMapping(
        insetArea(bounds, kCurvePlotLeftMargin, kCurvePlotTopMargin,
                  table ? kTablePlotLegendStrip : kCurvePlotRightMargin, kCurvePlotBottomMargin),
        data.inputRange > 0 ? data.inputRange : 1.0, data.valueScale > 0 ? data.valueScale : 1.0);
}

// The label of grid line `line` (0..10, from the left or from the bottom) in the table style:
// the integer part of line x range / 10, so 255 gives 0, 25, 51, 76, ..., 229, 255.
std::string tableAxisLabel(int line, double range);

// How many pixels curve `index` of `count` moves sideways in the table style: the shift starts
// at -(count / 2) and each curve adds its index mod 3 before it is drawn, so equal neighbours
// land at different columns (three channels: -1, 0, 2).
int tableCurveShift(std::size_t index, std::size_t count);

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
