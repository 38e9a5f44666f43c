#include "viewers/curve_model.h"

#include "document/prompt_service.h"
#include "document/settings_model.h"
#include "document/text_format.h"
#include "lutio/exchange_procedures.h"
#include "tagtypes/curve_type.h"

#include <filesystem>
#include <new>

namespace {

std::string cutTitle(std::string_view title, std::string_view fallback) {
    if (title.empty())
        title = fallback;
    return std::string(title.substr(0, kViewerTitleLimit));
}

} // namespace

std::string curveLabel(const iccCurveType& curve) {
    switch (curve.count()) {
    case 0:
        return "Identity";
    case 1:
        return formatText("gamma=%4.3g", curve.gamma());
    default:
        return formatText("%d points", static_cast<int>(curve.count()));
    }
}

std::string curveLabel(const iccParametricCurveType& curve) {
    // A missing parameter reads as 0; the decoder holds as many as the type has.
    auto p = [&](std::size_t i) { return i < curve.parameters.size() ? curve.parameters[i] : 0.0; };
    switch (curve.functionType) {
    case 0:
        return formatText("gamma=%.4g", p(0));
    case 1:
        return formatText("gamma=%.4g; a=%.4g; b=%.4g", p(0), p(1), p(2));
    case 2:
        return formatText("gamma=%.4g; a=%.4g; b=%.4g; c=%.4g", p(0), p(1), p(2), p(3));
    case 3:
        // Types 3 and 4 have always been written without blanks.
        return formatText("gamma=%.4g;a=%.4g;b=%.4g;c=%.4g;d=%.4g", p(0), p(1), p(2), p(3), p(4));
    case 4:
        return formatText("gamma=%.4g;a=%.4g;b=%.4g;c=%.4g;d=%.4g;e=%.4g;f=%.4g", p(0), p(1), p(2),
                          p(3), p(4), p(5), p(6));
    default:
        return formatText("Curve Type #%d not supported.\n", static_cast<int>(curve.functionType));
    }
}

std::string curveLabel(const iccCurveElement& curve) {
    if (const iccCurveType* curv = curve.curve())
        return curveLabel(*curv);
    if (const iccParametricCurveType* para = curve.parametric())
        return curveLabel(*para);
    return std::string(kNoCurveLabel);
}

std::vector<std::string> curvePlotLabels(std::span<const iccCurveElement> curves) {
    std::vector<std::string> labels;
    labels.reserve(curves.size());
    for (const iccCurveElement& curve : curves)
        labels.push_back(curveLabel(curve));
    return numberCurveLabels(std::move(labels));
}

std::vector<std::string> numberCurveLabels(std::vector<std::string> labels) {
    if (labels.size() > 1)
        for (std::size_t i = 0; i < labels.size(); ++i)
            labels[i] = formatText("#%d: ", static_cast<int>(i)) + labels[i];
    return labels;
}

std::string tableAxisLabel(int line, double range) {
    return formatText("%d", static_cast<int>(line * (range / kCurvePlotDivisions)));
}

int tableCurveShift(std::size_t index, std::size_t count) {
    int shift = -static_cast<int>(count / 2);
    for (std::size_t c = 0; c <= index; ++c)
        shift += static_cast<int>(c % 3);
    return shift;
}

icStatus buildCurvePlot(std::span<const iccCurveElement> curves, std::uint32_t points,
                        icCurvePlotData& out) {
    out = {};
    if (points < 2)
        return icErrInvalidArg;
    try {
        out.labels = curvePlotLabels(curves);
        out.curves.resize(curves.size());
        for (std::size_t i = 0; i < curves.size(); ++i)
            if (icStatus s = curves[i].resample(points, out.curves[i]); s == icErrNoMemory) {
                out = {};
                return s;
            } else if (s != icOk) {
                out.curves[i].clear();
            }
    } catch (const std::bad_alloc&) {
        out = {};
        return icErrNoMemory;
    }
    return icOk;
}

CurveModel::CurveModel(iccCurveElement& curve, std::string_view title)
    : curve_(curve), title_(cutTitle(title, kCurveDefaultCaption)) {}

std::string CurveModel::label() const {
    return curveLabel(curve_);
}

std::vector<std::string> CurveModel::lines() const {
    return {label()};
}

FileDialogRequest CurveModel::fileRequest(bool save) {
    FileDialogRequest request;
    request.caption = save ? "Save Curve" : "Read Curve";
    request.filters = {"Text Files (*.txt)", "All Files (*.*)"};
    request.defaultSuffix = "txt";
    request.directory = DataFolder::get();
    request.fileName = "curve.txt";
    return request;
}

namespace {

// The chosen file's folder becomes the one every file dialog of the program starts in.
void rememberFolder(const std::string& path) {
    DataFolder::set(std::filesystem::path(path).parent_path().string());
}

} // namespace

void CurveModel::exportCurve(PromptService& prompts) {
    const std::optional<std::string> path = prompts.askSavePath(fileRequest(true));
    if (!path)
        return;
    rememberFolder(*path);
    // The procedure has shown its box on failure; nothing else changes.
    (void)runCurveExport(prompts, curve_, *path);
}

bool CurveModel::importCurve(PromptService& prompts) {
    const std::optional<std::string> path = prompts.askOpenPath(fileRequest(false));
    if (!path)
        return false;
    rememberFolder(*path);
    if (runCurveImport(prompts, curve_, *path) != icOk)
        return false;
    markModified();
    return true;
}
