#include "viewers/lut_model.h"

#include "document/text_format.h"
#include "tagtypes/lut16_type.h"

#include <new>

namespace {

template <class Lut> icLutCurveSet curveSet(const Lut& lut, bool input) {
    icLutCurveSet set;
    set.entries = input ? lut.inputEntries() : lut.outputEntries();
    set.fullScale = Lut::kMaxValue;
    const auto& tables = input ? lut.inputTables : lut.outputTables;
    const std::uint32_t channels = input ? lut.inputChannels() : lut.outputChannels();
    set.channels.resize(channels);
    for (std::uint32_t c = 0; c < channels; ++c)
        for (std::uint32_t i = 0; i < set.entries; ++i) {
            const std::size_t at = std::size_t(c) * set.entries + i;
            set.channels[c].push_back(at < tables.size() ? tables[at] : 0);
        }
    return set;
}

} // namespace

std::optional<long> parseValueBox(std::string_view text) {
    text = text.substr(0, 6);
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        negative = text[i++] == '-';
    const std::size_t digits = i;
    long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        value = value * 10 + (text[i] - '0');
    if (i == digits)
        return std::nullopt;
    return negative ? -value : value;
}

LutModel::LutModel(iccMftLut& lut, icSignature outputSpace)
    : lut_(lut), outputSpace_(outputSpace) {}

bool LutModel::isLut8() const {
    return lut_.isLut8();
}

std::uint32_t LutModel::inputChannels() const {
    return visitMftLut(lut_, [](const auto& lut) { return lut.inputChannels(); });
}

std::uint32_t LutModel::outputChannels() const {
    return visitMftLut(lut_, [](const auto& lut) { return lut.outputChannels(); });
}

std::uint32_t LutModel::gridPoints() const {
    return visitMftLut(lut_, [](const auto& lut) { return lut.gridPoints(); });
}

std::vector<std::string> LutModel::lines() const {
    std::vector<std::string> lines;
    visitMftLut(lut_, [&](const auto& lut) {
        const bool eight = isLut8();
        lines.push_back(std::string("LUT Type: ") + (eight ? "8-bit LUT" : "16-bit LUT"));
        lines.push_back(formatText("Input Channels: %u", lut.inputChannels()));
        lines.push_back(eight ? formatText("Input Entries: %d", 256)
                              : formatText("Input Entries: %u", lut.inputEntries()));
        lines.push_back(formatText("Output Channels: %u", lut.outputChannels()));
        lines.push_back(eight ? formatText("Output Entries: %d", 256)
                              : formatText("Output Entries: %u", lut.outputEntries()));
        lines.push_back(formatText("CLUT Points: %u", lut.gridPoints()));
        lines.push_back("Matrix:");
        for (std::size_t row = 0; row < 3; ++row)
            lines.push_back(formatText("%f %f %f", lut.matrixValue(3 * row),
                                       lut.matrixValue(3 * row + 1), lut.matrixValue(3 * row + 2)));
    });
    return lines;
}

std::optional<std::string_view> LutModel::clutPageWarning() const {
    if (inputChannels() > kLutPageChannels || outputChannels() > kLutPageChannels)
        return kLutTooManyChannels;
    return std::nullopt;
}

std::uint32_t LutModel::visibleInputs() const {
    return std::min(inputChannels(), kLutPageChannels);
}

std::uint32_t LutModel::visibleOutputs() const {
    return std::min(outputChannels(), kLutPageChannels);
}

std::string LutModel::highestNodeText() const {
    return formatText("%d", static_cast<int>(gridPoints()) - 1);
}

std::uint32_t LutModel::nodeIndex(std::uint32_t channel) const {
    return channel < kLutPageChannels ? node_[channel] : 0;
}

std::string LutModel::nodeIndexText(std::uint32_t channel) const {
    return formatText("%d", static_cast<int>(nodeIndex(channel)));
}

icStatus LutModel::scroll(std::uint32_t channel, icScrollRequest request, std::int64_t thumb) {
    if (channel >= visibleInputs())
        return icErrInvalidArg;
    node_[channel] = stepNode(node_[channel], request, thumb, 2, std::int64_t(gridPoints()) - 1);
    return icOk;
}

void LutModel::clampNodes() {
    for (std::uint32_t c = 0; c < kLutPageChannels; ++c)
        node_[c] =
            c < visibleInputs() && gridPoints() > 0 ? std::min(node_[c], gridPoints() - 1) : 0;
}

std::optional<std::size_t> LutModel::nodeOffset() const {
    // Channels beyond the page's twelve controls stay at node 0.
    std::vector<std::uint32_t> node(inputChannels(), 0);
    for (std::uint32_t c = 0; c < visibleInputs(); ++c)
        node[c] = node_[c];
    return visitMftLut(lut_, [&](const auto& lut) { return lut.clutNodeOffset(node); });
}

std::vector<icNodeValueText> LutModel::nodeValues() const {
    std::vector<icNodeValueText> values;
    const auto offset = nodeOffset();
    if (!offset)
        return values;
    const bool lab = outputSpace_ == icSig("Lab ");
    visitMftLut(lut_, [&](const auto& lut) {
        const bool eight = isLut8();
        for (std::uint32_t o = 0; o < visibleOutputs(); ++o) {
            const std::size_t at = *offset + o;
            const std::uint32_t v = at < lut.clut.size() ? lut.clut[at] : 0;
            icNodeValueText text{formatText("%u", v), {}};
            if (lab && o == 0)
                text.second = formatText("(%ux2.55)", static_cast<unsigned>(truncToInt64(
                                                          v / (eight ? 2.55 : 652.8) + 0.5)));
            else if (lab)
                text.second = formatText("(%d+128)", static_cast<int>(eight ? v : v >> 8) - 128);
            else if (!eight)
                text.second = formatText("(%u)", v >> 8);
            values.push_back(std::move(text));
        }
    });
    return values;
}

icStatus LutModel::acceptChange(std::span<const std::string> boxes) {
    modified_ = true;
    const auto offset = nodeOffset();
    if (!offset)
        return icErrInvalidArg;
    visitMftLut(lut_, [&](auto& lut) {
        using Value = typename std::remove_reference_t<decltype(lut)>::value_type;
        long value = 0;
        for (std::uint32_t o = 0; o < visibleOutputs() && o < boxes.size(); ++o) {
            if (const auto parsed = parseValueBox(boxes[o]))
                value = *parsed;
            value = std::max<long>(0, std::min<long>(value, lut.kMaxValue));
            if (*offset + o < lut.clut.size())
                lut.clut[*offset + o] = static_cast<Value>(value);
        }
    });
    return icOk;
}

icLutCurveSet LutModel::inputCurves() const {
    return visitMftLut(lut_, [](const auto& lut) { return curveSet(lut, true); });
}

icLutCurveSet LutModel::outputCurves() const {
    return visitMftLut(lut_, [](const auto& lut) { return curveSet(lut, false); });
}
