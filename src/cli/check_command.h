// veltrino-cli check: whether profiles are sound, every finding with its offset and tag.
#pragma once

#include <string>
#include <vector>

struct CheckCommandOptions {
    bool json = false;   // one JSON document instead of text
    bool strict = false; // warnings count as errors for the exit status
    // Profile IDs a profile had before Veltrino saved it, as "Profile ID:" shows them.
    std::vector<std::string> previousIds;
    std::vector<std::string> paths; // profiles, or folders searched for .icc and .icm files
};

// Checks every profile and prints the findings. Returns 0 when no file has an error (nor, with
// --strict, a warning), 1 when one has, 2 for an earlier ID that is no Profile ID.
int runCheckCommand(const CheckCommandOptions& options);
