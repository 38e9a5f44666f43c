// The MD5 Profile ID of version-4 profiles.
#pragma once

#include "profile/status.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

using icDigest = std::array<std::uint8_t, 16>;

// Where the Profile ID lies in the header.
inline constexpr std::size_t kProfileIdOffset = 84;

// MD5 (RFC 1321) through OpenSSL's EVP interface.
class CMD5Checksum {
public:
    virtual ~CMD5Checksum() = default;
    [[nodiscard]] icStatus digestOfMemory(std::span<const std::uint8_t> block, icDigest& out) const;
};

struct evp_md_ctx_st;

// The Profile ID of a profile handed over in pieces, in file order: first its 128 header bytes
// as they stand (bytes 56-67 are cleared in a copy before hashing), then the bytes after them.
// A save hashes each piece as it writes it, so the profile is never held or read twice. Every
// step is false once the digest operation failed.
class icProfileIdHash {
public:
    icProfileIdHash();
    bool header(std::span<const std::uint8_t> bytes);
    bool update(std::span<const std::uint8_t> bytes);
    bool finish(icDigest& out);

private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> ctx_;
    bool ok_;
};

// Writes the Profile ID into bytes 84-99 of a laid-out profile of version 4 or later; older
// profiles are left unchanged. The hash covers the block with bytes 56-67 (attributes and
// rendering intent) cleared; flags and the previous ID are hashed as they stand.
[[nodiscard]] icStatus computeProfileIdInMemory(std::span<std::uint8_t> block);

// The same procedure on a profile file, rewriting its header in place.
[[nodiscard]] icStatus computeProfileIdForFile(const std::string& path);

// "%02x%02x%02x%02x-..." over the 16 bytes in stored order.
std::string formatProfileId(std::span<const std::uint8_t, 16> id);
