// Whether a profile is sound, where and why: every finding with its severity, the byte offset it
// points at, the tag it concerns and a sentence saying what is wrong and what a reader of the
// file will do about it.
//
// The check reads the bytes itself (header, directory, a byte map of the tag data) so that it
// can speak about files the loader refuses, and decodes every tag through the tag factory as a
// double click in the window does.
#pragma once

#include "profile/byte_io.h"
#include "profile/profile_id.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// error: a reader may misread or refuse the file. warning: the file breaks a rule of the ICC
// format that readers usually tolerate. info: worth knowing, nothing wrong.
enum class icSeverity : std::uint8_t { error, warning, info };

std::string_view severityName(icSeverity severity);

struct icFinding {
    icSeverity severity = icSeverity::info;
    std::string code; // a short stable name, such as "misaligned" or "id-mismatch"
    // The byte in the file the finding points at; none for something missing.
    std::optional<std::uint32_t> offset;
    // The tag it concerns: the directory entry when there is one (-1 otherwise), and the
    // signature (also for a required tag that is missing).
    int tagIndex = -1;
    std::optional<icSignature> tag;
    std::string message;
};

enum class icVerdict : std::uint8_t { valid, warnings, errors };

struct icCheckReport {
    std::vector<icFinding> findings;

    std::size_t count(icSeverity severity) const;
    icVerdict verdict() const;
};

struct icCheckOptions {
    // Profile IDs a profile may have carried before Veltrino saved it. Veltrino's ID hashes the
    // ID the profile was loaded with, which the saved file no longer holds; the check tries an
    // empty one and these.
    std::vector<icDigest> previousIds;
};

// The check of a profile held in memory. Never throws; running out of memory ends the check
// with an error finding.
icCheckReport checkProfile(std::span<const std::uint8_t> bytes, const icCheckOptions& options = {});

// The check of a file; a file that cannot be read is one error finding.
icCheckReport checkProfileFile(const std::string& path, const icCheckOptions& options = {});
