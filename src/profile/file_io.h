// Whole-file reads and safe whole-file writes.
#pragma once

#include "profile/status.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// Reads the whole file; -100 when it cannot be opened or read.
[[nodiscard]] icStatus readWholeFile(const std::string& path, std::vector<std::uint8_t>& out);

// Writes the bytes to a temporary file beside `path` and renames it over `path`, so that a
// failure at any point leaves an existing file untouched. An existing target that cannot be
// opened for writing is refused. -100 on any failure, with errno telling why.
[[nodiscard]] icStatus writeFileReplacing(const std::string& path,
                                          std::span<const std::uint8_t> bytes);
