// The MD5 Profile ID of version-4 profiles.
#pragma once

#include "profile/status.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

using icDigest = std::array<std::uint8_t, 16>;

// MD5 (RFC 1321) through OpenSSL's EVP interface.
class CMD5Checksum {
public:
    virtual ~CMD5Checksum() = default;
    [[nodiscard]] icStatus digestOfMemory(std::span<const std::uint8_t> block, icDigest& out) const;
    // The digest of the parts one after the other, as if they were one block: a changed header
    // can be hashed before the rest of a profile without copying the profile.
    [[nodiscard]] icStatus digestOfParts(std::span<const std::span<const std::uint8_t>> parts,
                                         icDigest& out) const;
};

// Writes the Profile ID into bytes 84-99 of a laid-out profile of version 4 or later; older
// profiles are left unchanged. The hash covers the block with bytes 56-67 (attributes and
// rendering intent) cleared; flags and the previous ID are hashed as they stand.
[[nodiscard]] icStatus computeProfileIdInMemory(std::span<std::uint8_t> block);

// The same procedure on a profile file, rewriting its header in place.
[[nodiscard]] icStatus computeProfileIdForFile(const std::string& path);

// "%02x%02x%02x%02x-..." over the 16 bytes in stored order.
std::string formatProfileId(std::span<const std::uint8_t, 16> id);
