// Curve text files: one 'curv' or 'para' curve as a small text file that says on its first line
// which type it holds. The curve viewer exports and imports them, and the lutAToB/lutBToA
// folders keep each of their curves in one.
//
//   Data_Type: curv          Data_Type: para
//   Count: N                 Type: T
//   0 V0                     Count: N
//   1 V1  ...                0 G  ...
//
// A 'curv' of one entry holds its gamma as "%f"; one of none holds nothing more. 'curv' values
// are read as a free token stream, 'para' values one per line.
#pragma once

#include "profile/status.h"
#include "tagtypes/curve_type.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

// A 'curv' file never holds more entries than this, although a 'curv' tag may.
inline constexpr std::uint32_t kMaxCurveFileEntries = 4096;
// A 'para' file holds 1 to 7 parameters, as the five function types need.
inline constexpr std::uint32_t kMaxParametricFileParameters = 7;

// The texts of the files, built in memory.
[[nodiscard]] icStatus formatCurveText(const iccCurveType& curve, std::string& text);
[[nodiscard]] icStatus formatParametricText(const iccParametricCurveType& curve, std::string& text);

// The readers over a file's whole text. On failure the curve is as it was, unless its own
// setter refused the values read (-11 for a 'para' count that does not fit its type).
// -100 for a malformed text.
[[nodiscard]] icStatus parseCurveText(iccCurveType& curve, std::string_view text);
[[nodiscard]] icStatus parseParametricText(iccParametricCurveType& curve, std::string_view text);
// Empties the element, then makes it hold a new 'curv' or 'para' (as the first line says) filled
// from the text. A failed fill leaves the new, unset curve attached.
[[nodiscard]] icStatus parseCurveElementText(iccCurveElement& element, std::string_view text);

// The file forms. Writers: 0, or -100 when the file cannot be created. Readers: 0, -10, -100,
// or the curve setter's status.
[[nodiscard]] icStatus WriteCurveTextFile(const iccCurveType& curve,
                                          const std::filesystem::path& path);
[[nodiscard]] icStatus WriteParametricTextFile(const iccParametricCurveType& curve,
                                               const std::filesystem::path& path);
[[nodiscard]] icStatus ReadCurveTextFile(iccCurveType& curve, const std::filesystem::path& path);
[[nodiscard]] icStatus ReadParametricTextFile(iccParametricCurveType& curve,
                                              const std::filesystem::path& path);
// The file of whichever curve the element holds; -1 when it holds none.
[[nodiscard]] icStatus WriteCurveElementFile(const iccCurveElement& element,
                                             const std::filesystem::path& path);
[[nodiscard]] icStatus ReadCurveElementFile(iccCurveElement& element,
                                            const std::filesystem::path& path);
