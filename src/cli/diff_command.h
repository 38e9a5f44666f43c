// veltrino-cli diff: what differs between two profiles, as text or as one JSON document.
#pragma once

#include <string>

inline constexpr int kExitDiffers = 1;
inline constexpr int kExitCannotOpen = 3;

// Opens both profiles as "&Browse..." does (their boxes on standard error) and prints the
// comparison. Returns 0 when they are equivalent, 1 when they differ, 3 when either cannot be
// opened.
int runDiffCommand(const std::string& pathA, const std::string& pathB, bool json, double tolerance);
