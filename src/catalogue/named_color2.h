// 'ncl2': a named colour tag, decoded for the named colour viewer.
#pragma once

#include "profile/status.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

struct icNamedColor2Entry {
    std::string rootName; // up to its NUL, at most 32 characters
    std::array<std::uint16_t, 3> pcs{};
    std::vector<std::uint16_t> device; // one value per device coordinate
};

struct icNamedColor2 {
    std::uint32_t vendorFlag = 0;
    std::uint32_t count = 0;             // as the tag states it
    std::uint32_t deviceCoordinates = 0; // device planes of every colour
    std::string prefix, suffix;
    // The colours whose records lie wholly inside the tag, at most `count`.
    std::vector<icNamedColor2Entry> colors;
};

// Bytes of one colour record: root name, three PCS values and the device values, 16 bits each.
constexpr std::uint64_t namedColorRecordSize(std::uint32_t deviceCoordinates) {
    return 2 * (std::uint64_t(deviceCoordinates) + 19);
}

// -1002 when the tag is not 'ncl2'; -12 when it ends inside its fixed fields; -10 when memory
// runs out. A tag that ends inside its colour records keeps the colours before that point.
[[nodiscard]] icStatus decodeNamedColor2(std::span<const std::uint8_t> tag, icNamedColor2& out);
