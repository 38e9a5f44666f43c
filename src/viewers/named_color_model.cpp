#include "viewers/named_color_model.h"

#include "document/text_format.h"

#include <algorithm>

std::string pcsValueText(icSignature pcs, std::uint32_t channel, std::uint16_t value) {
    double meaning;
    if (pcs == icSig("XYZ "))
        meaning = value * 0.0030517586022735946;
    else if (channel == 0)
        meaning = value / 652.8;
    else
        meaning = (value - 32768) * 0.00390625;
    return formatText("%u (%6.3f)", unsigned(value), meaning);
}

std::string deviceValueText(std::uint16_t value) {
    return formatText("%5u (%3d)", unsigned(value), static_cast<int>(value / 257.0 + 0.5));
}

NamedColorModel::NamedColorModel(const icNamedColor2& colors, icSignature pcs)
    : colors_(colors), pcs_(pcs) {}

std::array<std::string, 5> NamedColorModel::headerValues() const {
    return {formatText("%#x", colors_.vendorFlag), formatText("%u", colors_.count),
            formatText("%u", colors_.deviceCoordinates), colors_.prefix, colors_.suffix};
}

std::vector<std::string> NamedColorModel::headerLines() const {
    const std::array<std::string, 5> values = headerValues();
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < values.size(); ++i)
        lines.push_back(std::string(kNamedColorHeaderLabels[i]) + " " + values[i]);
    return lines;
}

std::array<std::string_view, 3> NamedColorModel::pcsLabels() const {
    if (pcs_ == icSig("XYZ "))
        return {"CIE X:", "CIE Y:", "CIE Z:"};
    return {"CIE L*:", "CIE a*:", "CIE b*:"};
}

std::optional<std::string_view> NamedColorModel::openingMessage() const {
    if (colors_.deviceCoordinates > kNamedColorChannels)
        return kTooManyDevicePlanes;
    return std::nullopt;
}

bool NamedColorModel::showsColors() const {
    return !openingMessage() && !colors_.colors.empty();
}

std::uint32_t NamedColorModel::visibleChannels() const {
    return std::min(colors_.deviceCoordinates, kNamedColorChannels);
}

int NamedColorModel::maxIndex() const {
    return static_cast<int>(colors_.colors.size()) - 1;
}

const std::string& NamedColorModel::rootName(int index) const {
    return colors_.colors[static_cast<std::size_t>(index)].rootName;
}

std::array<std::string, 3> NamedColorModel::pcsValues(int index) const {
    const icNamedColor2Entry& color = colors_.colors[static_cast<std::size_t>(index)];
    return {pcsValueText(pcs_, 0, color.pcs[0]), pcsValueText(pcs_, 1, color.pcs[1]),
            pcsValueText(pcs_, 2, color.pcs[2])};
}

std::vector<std::string> NamedColorModel::deviceValues(int index) const {
    const icNamedColor2Entry& color = colors_.colors[static_cast<std::size_t>(index)];
    std::vector<std::string> values;
    for (std::uint32_t c = 0; c < visibleChannels() && c < color.device.size(); ++c)
        values.push_back(deviceValueText(color.device[c]));
    return values;
}

std::vector<std::string> NamedColorModel::colorLines(int index) const {
    std::vector<std::string> lines;
    if (index < 0 || index > maxIndex())
        return lines;
    lines.push_back(formatText("Color #: %d", index));
    lines.push_back("Root name: " + rootName(index));
    const auto labels = pcsLabels();
    const auto pcs = pcsValues(index);
    for (std::size_t i = 0; i < 3; ++i)
        lines.push_back(std::string(labels[i]) + " " + pcs[i]);
    const std::vector<std::string> device = deviceValues(index);
    for (std::size_t c = 0; c < device.size(); ++c)
        lines.push_back(formatText("Channel %u: ", unsigned(c)) + device[c]);
    return lines;
}

std::vector<std::string> NamedColorModel::lines() const {
    std::vector<std::string> lines = headerLines();
    if (!showsColors())
        return lines;
    for (int i = 0; i <= maxIndex(); ++i)
        for (std::string& line : colorLines(i))
            lines.push_back(std::move(line));
    return lines;
}

std::optional<std::string> NamedColorModel::setIndexFromBox(int typed) {
    std::optional<std::string> message;
    if (typed > maxIndex()) {
        message = formatText("%s%d\n", "ERROR: Maximum index is ", maxIndex());
        typed = maxIndex();
    }
    index_ = std::max(typed, 0);
    return message;
}

void NamedColorModel::scroll(icScrollRequest request, std::int64_t thumb) {
    const std::int64_t count = static_cast<std::int64_t>(colors_.colors.size());
    index_ = static_cast<int>(std::max<std::int64_t>(
        0, clampIndex(scrollTarget(index_, request, thumb, count / 10), 0, count - 1)));
}
