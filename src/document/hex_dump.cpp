#include "document/hex_dump.h"

#include "document/text_format.h"

#include <array>

namespace {

// Only ASCII letters and digits: bytes above 0x7F are not characters on their own in the
// multi-byte code pages of today's systems, and showing them raw could break the line.
bool isAlphanumeric(std::uint8_t c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

} // namespace

std::string hexDumpLine(std::uint32_t offset, std::span<const std::uint8_t> row) {
    std::array<std::uint8_t, 16> b{};
    const std::size_t count = row.size() < b.size() ? row.size() : b.size();
    for (std::size_t i = 0; i < count; ++i)
        b[i] = row[i];
    // "%.8X" and "%.2X" pad with zeros through the precision alone.
    std::string line = formatText("%.8X    %.2X %.2X %.2X %.2X %.2X %.2X %.2X %.2X - "
                                  "%.2X %.2X %.2X %.2X %.2X %.2X %.2X %.2X    ",
                                  offset, b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7], b[8],
                                  b[9], b[10], b[11], b[12], b[13], b[14], b[15]);
    for (std::size_t i = 0; i < count; ++i)
        line += isAlphanumeric(b[i]) ? static_cast<char>(b[i]) : '.';
    return line;
}

std::vector<std::string> hexDumpLines(std::span<const std::uint8_t> bytes) {
    std::vector<std::string> lines;
    lines.reserve((bytes.size() + 15) / 16);
    for (std::size_t start = 0; start < bytes.size(); start += 16) {
        const std::size_t n = bytes.size() - start < 16 ? bytes.size() - start : 16;
        lines.push_back(hexDumpLine(static_cast<std::uint32_t>(start), bytes.subspan(start, n)));
    }
    return lines;
}
