// The hex dump of a tag's bytes: the hex dump window's lines and the localized-string viewer's.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// One line of sixteen bytes: the offset, two groups of eight bytes and the characters. A short
// row prints its missing bytes as "00" but has only its own bytes in the character column.
std::string hexDumpLine(std::uint32_t offset, std::span<const std::uint8_t> row);

// The whole dump, one line per 16 bytes; no bytes give no lines.
std::vector<std::string> hexDumpLines(std::span<const std::uint8_t> bytes);
