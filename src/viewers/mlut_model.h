// The lutAToB/lutBToA viewer's pages without widgets: "LUT Info", "Matrix", the curve sets of
// the three curve pages and the "Multidimensional LUT" page's node stepping and value texts.
#pragma once

#include "profile/status.h"
#include "viewers/scroll_request.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccMlutType;
class iccCurveElement;

inline constexpr std::string_view kMlutDefaultCaption = "Version-4 LUT Tag";
// The page has controls for twelve channels but warns above eight, with the text it has
// always shown.
inline constexpr std::uint32_t kMlutPageControls = 12;
inline constexpr std::uint32_t kMlutWarningLimit = 8;
inline constexpr std::string_view kMlutTooManyChannels =
    "Error: Input channels or output channels are greater than 12. \nThe program will not work "
    "correctly.";

enum class icMlutCurves { b, m, a };

class MlutModel {
public:
    explicit MlutModel(iccMlutType& lut);

    iccMlutType& lut() { return lut_; }

    // "LUT Info": the chain, the channel counts and the element offsets.
    std::vector<std::string> infoLines() const;
    // "Matrix": "e1 %g" ... "e12 %g", or "e1 N/A" ... without a matrix.
    std::vector<std::string> matrixLines() const;
    // The twelve matrix boxes: "%g" of each value, or "N/A" without a matrix.
    std::vector<std::string> matrixTexts() const;
    // What veltrino-cli prints for `viewer mlut`: the info lines, then the matrix lines.
    std::vector<std::string> lines() const;

    // The curves of a curve page; empty when the tag has no such element.
    std::span<const iccCurveElement> curves(icMlutCurves which) const;

    // ---- "Multidimensional LUT" page ----
    bool hasClut() const;
    // "8-bit/channel", "16-bit/channel" or "%d bytes/channel".
    std::string precisionText() const;
    std::optional<std::string_view> clutPageWarning() const;
    std::uint32_t visibleInputs() const;
    // Channel c's own highest node, "%d" of its grid points - 1.
    std::string rangeLabel(std::uint32_t channel) const;
    // Every scroll bar runs to the first channel's highest node.
    std::int64_t scrollMaximum() const;
    std::uint32_t nodeIndex(std::uint32_t channel) const;
    std::string nodeIndexText(std::uint32_t channel) const;
    // Lines and pages (2 nodes) stop at 0 and at the channel's own highest node; the thumb is
    // taken as it is. -11 for a channel without controls or a tag without a CLUT.
    [[nodiscard]] icStatus scroll(std::uint32_t channel, icScrollRequest request,
                                  std::int64_t thumb = 0);
    // Brings every node index back into its channel's grid, after an import.
    void clampNodes();
    // The node's number, first input channel most significant.
    std::uint64_t nodeNumber() const;
    // "%u" (8-bit) or "%u (%u)" (16-bit and its high byte) per output channel; nothing for
    // other precisions.
    std::vector<std::string> nodeValues() const;

    bool modified() const { return modified_; }
    void markModified() { modified_ = true; }

private:
    std::uint32_t gridPoints(std::uint32_t channel) const;

    iccMlutType& lut_;
    std::array<std::uint32_t, kMlutPageControls> node_{};
    bool modified_ = false;
};
