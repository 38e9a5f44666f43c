// The lut8/lut16 viewer's pages without widgets: the "LUT Info" texts, the CLUT page's node
// stepping, value texts and "Accept Change", and the data of the two curve pages.
#pragma once

#include "profile/byte_io.h"
#include "profile/status.h"
#include "viewers/scroll_request.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccMftLut;

inline constexpr std::string_view kLutDefaultCaption = "LutType Tag";
// The CLUT page has controls for this many input and output channels.
inline constexpr std::uint32_t kLutPageChannels = 12;
inline constexpr std::string_view kLutTooManyChannels =
    "Error: Input channels or output channels are greater than 12. \nThis program will not work "
    "correctly.";

// A CLUT value as the page shows it: the stored value and the text beside it.
struct icNodeValueText {
    std::string value;
    std::string second; // empty when the page sets none
};

// One side's tables for a curve page: x runs 0..entries-1, one table per channel.
struct icLutCurveSet {
    std::uint32_t entries = 0;
    std::uint32_t fullScale = 0; // 255 or 65535
    std::vector<std::vector<std::int32_t>> channels;
};

class LutModel {
public:
    // `outputSpace` is the colour space of the table's outputs.
    LutModel(iccMftLut& lut, icSignature outputSpace);

    bool isLut8() const;
    std::uint32_t inputChannels() const;
    std::uint32_t outputChannels() const;
    std::uint32_t gridPoints() const;

    // "LUT Info": the label/value lines, then "Matrix:" and three rows of "%f" values; these are
    // the lines veltrino-cli prints for `viewer lut`.
    std::vector<std::string> lines() const;

    // ---- CLUT page ----
    // The box shown when the page opens with more channels than it has controls for.
    std::optional<std::string_view> clutPageWarning() const;
    // The channels that get a scroll bar and a value box.
    std::uint32_t visibleInputs() const;
    std::uint32_t visibleOutputs() const;
    // The label at the end of every scroll bar: "%d" of grid points - 1.
    std::string highestNodeText() const;
    std::uint32_t nodeIndex(std::uint32_t channel) const;
    std::string nodeIndexText(std::uint32_t channel) const;
    // Lines and pages (2 nodes) are clamped to the grid; the thumb is taken as it is. -11 for a
    // channel without a scroll bar.
    [[nodiscard]] icStatus scroll(std::uint32_t channel, icScrollRequest request,
                                  std::int64_t thumb = 0);
    // Brings every node index back into the grid, after an import changed the dimensions.
    void clampNodes();
    // The values of the current node, one per visible output channel; empty when the node is
    // not in the table.
    std::vector<icNodeValueText> nodeValues() const;
    // "Accept Change": each box's text (its first 6 characters) as a decimal number, clamped to
    // the value range, stored into the current node; a box that is no number repeats the
    // previous box's value (0 for the first). Marks the viewer modified.
    [[nodiscard]] icStatus acceptChange(std::span<const std::string> boxes);

    // ---- curve pages ----
    icLutCurveSet inputCurves() const;
    icLutCurveSet outputCurves() const;

    bool modified() const { return modified_; }
    void markModified() { modified_ = true; }

private:
    std::optional<std::size_t> nodeOffset() const;

    iccMftLut& lut_;
    icSignature outputSpace_;
    std::array<std::uint32_t, kLutPageChannels> node_{};
    bool modified_ = false;
};

// A box's text as the page reads it: at most 6 characters, optional blanks and sign, digits.
std::optional<long> parseValueBox(std::string_view text);
