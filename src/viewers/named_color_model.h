// The named colour viewer without widgets: the header fields, one colour's lines, and the index
// box and scroll bar rules.
#pragma once

#include "catalogue/named_color2.h"
#include "profile/byte_io.h"
#include "viewers/scroll_request.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

inline constexpr std::string_view kNamedColorDefaultCaption = "Named Color Tag";
// The dialog has value boxes for eight device channels.
inline constexpr std::uint32_t kNamedColorChannels = 8;
inline constexpr std::string_view kTooManyDevicePlanes =
    "Device planes is greater than 8. Current version of Veltrino not supported.\n";

// "%u (%6.3f)": the raw PCS value and its meaning, XYZ in percent or Lab in its 16-bit
// version-2 encoding.
std::string pcsValueText(icSignature pcs, std::uint32_t channel, std::uint16_t value);
// "%5u (%3d)": the raw device value and its 8-bit equivalent, rounded half up.
std::string deviceValueText(std::uint16_t value);

// The labels of the header fields, in the dialog's order.
inline constexpr std::array<std::string_view, 5> kNamedColorHeaderLabels{
    "Vendor specific flag:", "Count of named colors:", "Number of device planes:",
    "Prefix of each color name:", "Suffix of each color name:"};

class NamedColorModel {
public:
    NamedColorModel(const icNamedColor2& colors, icSignature pcs);

    // The values of the header fields: "%#x", "%u", "%u", "%s", "%s".
    std::array<std::string, 5> headerValues() const;
    // Each header label with its value.
    std::vector<std::string> headerLines() const;
    // "CIE X:"... for an XYZ PCS, "CIE L*:"... otherwise.
    std::array<std::string_view, 3> pcsLabels() const;

    // The box the dialog shows when it opens: more device planes than it has boxes for.
    std::optional<std::string_view> openingMessage() const;
    // Whether any colour is shown at all (not with too many planes, not without colours).
    bool showsColors() const;
    // Device channels whose labels stay visible.
    std::uint32_t visibleChannels() const;

    int index() const { return index_; }
    // The highest index the scroll bar and the box accept.
    int maxIndex() const;
    // Colour `index` (which must be shown): its root name, its three PCS values and one value
    // per visible device channel.
    const std::string& rootName(int index) const;
    std::array<std::string, 3> pcsValues(int index) const;
    std::vector<std::string> deviceValues(int index) const;
    // "Color #:", "Root name:", the three PCS lines and one "Channel N:" line per device plane;
    // nothing for an index without a colour.
    std::vector<std::string> colorLines(int index) const;
    // What veltrino-cli prints for `viewer namedcolor`: the header, then every colour.
    std::vector<std::string> lines() const;

    // The index box (which itself accepts 0 to 65535): below 0 gives 0; above the highest index
    // gives the highest index and the returned box text "ERROR: Maximum index is N\n".
    std::optional<std::string> setIndexFromBox(int typed);
    // Lines by 1, pages by a tenth of the colours, the thumb to its position; clamped.
    void scroll(icScrollRequest request, std::int64_t thumb = 0);

private:
    const icNamedColor2& colors_;
    icSignature pcs_;
    int index_ = 0;
};
