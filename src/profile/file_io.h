// Whole-file reads and safe whole-file writes.
#pragma once

#include "profile/status.h"

#include <cstdint>
#include <cstdio>
#include <functional>
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
// The same, with the `size` bytes of contents written by `write` into the open temporary file
// (which it may seek in); it returns false when it could not write them. The file's blocks are
// reserved first where the file system can, so that the writes only copy.
[[nodiscard]] icStatus writeFileReplacing(const std::string& path, std::uint64_t size,
                                          const std::function<bool(std::FILE*)>& write);
