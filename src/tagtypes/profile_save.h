// The tags a saved profile must carry and the save procedures that add them: a missing
// description and copyright are made here, as tags of the profile's version, before the core
// lays the bytes out.
#pragma once

#include "profile/profile.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

// 'cprt' as 'text' (before version 4) or 'mluc'; no text gives the default notice with the year
// of the header's date.
[[nodiscard]] icStatus setCopyright(iccProfileRW& profile, const std::optional<std::string>& text);
// 'desc' as 'desc' (before version 4) or 'mluc'.
[[nodiscard]] icStatus setDescription(iccProfileRW& profile, const std::string& text);
// 'wtpt' as an 'XYZ ' tag holding one value.
[[nodiscard]] icStatus setMediaWhitePoint(iccProfileRW& profile, double x, double y, double z);
// 'chad' as an 'sf32' tag holding a 3x3 matrix in row order.
[[nodiscard]] icStatus setChromaticAdaptation(iccProfileRW& profile,
                                              const std::array<double, 9>& matrix);

// Adds a missing copyright, then lays out and writes the whole profile (with its Profile ID for
// version 4). -1 for a profile without tags or without a description.
[[nodiscard]] icStatus saveProfileToMemory(iccProfileRW& profile, std::vector<std::uint8_t>& out);
// Adds a missing description (the file's name) and copyright, then writes the file through a
// temporary beside it, so a failed save leaves an existing file untouched.
[[nodiscard]] icStatus saveProfileToFile(iccProfileRW& profile, const std::string& path);
