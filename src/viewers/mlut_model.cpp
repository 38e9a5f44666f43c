#include "viewers/mlut_model.h"

#include "document/text_format.h"
#include "tagtypes/lut_atob_type.h"

#include <algorithm>

namespace {

std::string offsetText(std::uint32_t offset) {
    return offset == 0 ? std::string("N/A") : formatText("%d / 0X%X", int(offset), offset);
}

} // namespace

MlutModel::MlutModel(iccMlutType& lut) : lut_(lut) {}

std::vector<std::string> MlutModel::infoLines() const {
    const std::string chain =
        lut_.isBToA()
            ? "lutBToAType: (B curve)->(matrix)->(M curve)->(multidimensional LUT)->(A curve)"
            : "lutAToBType: (A curve)->(multidimensional LUT)->(M curve)->(matrix)->(B curve)";
    return {
        chain,
        formatText("Input Channels: %d", static_cast<int>(lut_.inputChannels)),
        formatText("Output Channels: %d", static_cast<int>(lut_.outputChannels)),
        "B Curves: " + offsetText(lut_.offsetB),
        "Matrix: " + offsetText(lut_.offsetMatrix),
        "M Curves: " + offsetText(lut_.offsetM),
        // The label's spelling is the one the viewer has always shown.
        "Mulitdimensional LUT: " + offsetText(lut_.offsetClut),
        "A Curves: " + offsetText(lut_.offsetA),
    };
}

std::vector<std::string> MlutModel::matrixTexts() const {
    std::vector<std::string> texts;
    for (int i = 0; i < 12; ++i)
        texts.push_back(lut_.matrix ? formatText("%g", s15Fixed16ToDouble((*lut_.matrix)[i]))
                                    : std::string("N/A"));
    return texts;
}

std::vector<std::string> MlutModel::matrixLines() const {
    std::vector<std::string> lines;
    for (const std::string& text : matrixTexts())
        lines.push_back(formatText("e%d ", static_cast<int>(lines.size()) + 1) + text);
    return lines;
}

std::vector<std::string> MlutModel::lines() const {
    std::vector<std::string> lines = infoLines();
    for (std::string& line : matrixLines())
        lines.push_back(std::move(line));
    return lines;
}

std::span<const iccCurveElement> MlutModel::curves(icMlutCurves which) const {
    const auto& set = which == icMlutCurves::b   ? lut_.bCurves
                      : which == icMlutCurves::m ? lut_.mCurves
                                                 : lut_.aCurves;
    return set ? std::span<const iccCurveElement>(*set) : std::span<const iccCurveElement>();
}

bool MlutModel::hasClut() const {
    return lut_.clut.has_value();
}

std::string MlutModel::precisionText() const {
    const int precision = hasClut() ? lut_.clut->precision() : 0;
    if (precision == 1)
        return "8-bit/channel";
    if (precision == 2)
        return "16-bit/channel";
    return formatText("%d bytes/channel", precision);
}

std::optional<std::string_view> MlutModel::clutPageWarning() const {
    if (!hasClut())
        return std::nullopt;
    if (lut_.clut->inputChannels() > kMlutWarningLimit ||
        lut_.clut->outputChannels() > kMlutWarningLimit)
        return kMlutTooManyChannels;
    return std::nullopt;
}

std::uint32_t MlutModel::visibleInputs() const {
    return hasClut() ? std::min(lut_.clut->inputChannels(), kMlutPageControls) : 0;
}

std::uint32_t MlutModel::gridPoints(std::uint32_t channel) const {
    return hasClut() ? lut_.clut->gridPoints(channel) : 0;
}

std::string MlutModel::rangeLabel(std::uint32_t channel) const {
    return formatText("%d", static_cast<int>(gridPoints(channel)) - 1);
}

std::int64_t MlutModel::scrollMaximum() const {
    return std::int64_t(gridPoints(0)) - 1;
}

std::uint32_t MlutModel::nodeIndex(std::uint32_t channel) const {
    return channel < kMlutPageControls ? node_[channel] : 0;
}

std::string MlutModel::nodeIndexText(std::uint32_t channel) const {
    return formatText("%d", static_cast<int>(nodeIndex(channel)));
}

icStatus MlutModel::scroll(std::uint32_t channel, icScrollRequest request, std::int64_t thumb) {
    if (channel >= visibleInputs())
        return icErrInvalidArg;
    node_[channel] =
        stepNode(node_[channel], request, thumb, 2, std::int64_t(gridPoints(channel)) - 1);
    return icOk;
}

void MlutModel::clampNodes() {
    for (std::uint32_t c = 0; c < kMlutPageControls; ++c)
        node_[c] =
            c < visibleInputs() && gridPoints(c) > 0 ? std::min(node_[c], gridPoints(c) - 1u) : 0;
}

std::uint64_t MlutModel::nodeNumber() const {
    // Channels beyond the page's controls stay at node 0 but still count in the number.
    const std::uint32_t inputs = hasClut() ? lut_.clut->inputChannels() : 0;
    std::uint64_t n = 0;
    for (std::uint32_t c = 0; c < inputs; ++c)
        n = c == 0 ? nodeIndex(0) : n * gridPoints(c) + nodeIndex(c);
    return n;
}

std::vector<std::string> MlutModel::nodeValues() const {
    std::vector<std::string> values;
    if (!hasClut())
        return values;
    const iccClut& clut = *lut_.clut;
    const std::uint32_t precision = clut.precision();
    if (precision != 1 && precision != 2)
        return values;
    const std::uint64_t first = nodeNumber() * clut.outputChannels();
    for (std::uint32_t o = 0; o < clut.outputChannels(); ++o) {
        // A node outside the table (a thumb beyond a channel's own grid) reads as 0.
        const std::uint32_t v = clut.value(first + o);
        values.push_back(precision == 1 ? formatText("%u", v) : formatText("%u (%u)", v, v >> 8));
    }
    return values;
}
