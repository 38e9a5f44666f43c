#include "profile/profile_id.h"

#include "profile/file_io.h"
#include "profile/header.h"

#include <openssl/evp.h>

#include <cstdio>
#include <cstring>
#include <memory>

namespace {

// Bytes 56-67: both attribute words and the rendering intent.
constexpr std::size_t kClearedFirst = 56;
constexpr std::size_t kClearedCount = 12;
constexpr std::size_t kIdOffset = 84;

bool md5(std::span<const std::span<const std::uint8_t>> parts, icDigest& out) {
    std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX*)> ctx(EVP_MD_CTX_new(), &EVP_MD_CTX_free);
    if (!ctx || EVP_DigestInit_ex(ctx.get(), EVP_md5(), nullptr) != 1)
        return false;
    for (const auto part : parts)
        if (EVP_DigestUpdate(ctx.get(), part.data(), part.size()) != 1)
            return false;
    unsigned int length = 0;
    return EVP_DigestFinal_ex(ctx.get(), out.data(), &length) == 1 && length == out.size();
}

} // namespace

icStatus CMD5Checksum::digestOfMemory(std::span<const std::uint8_t> block, icDigest& out) const {
    return digestOfParts(std::span(&block, 1), out);
}

icStatus CMD5Checksum::digestOfParts(std::span<const std::span<const std::uint8_t>> parts,
                                     icDigest& out) const {
    return md5(parts, out) ? icOk : icErrFile;
}

icStatus computeProfileIdInMemory(std::span<std::uint8_t> block) {
    if (block.size() < kHeaderSize)
        return icErrInvalidArg;
    const icHeader header = headerFromBytes(block);
    if (!isVersion4(header))
        return icOk;
    std::array<std::uint8_t, kHeaderSize> original{};
    std::memcpy(original.data(), block.data(), kHeaderSize);
    std::memset(block.data() + kClearedFirst, 0, kClearedCount);
    icDigest digest{};
    if (CMD5Checksum().digestOfMemory(block, digest) != icOk)
        return icErrFile;
    std::memcpy(block.data(), original.data(), kHeaderSize);
    std::memcpy(block.data() + kIdOffset, digest.data(), digest.size());
    return icOk;
}

icStatus computeProfileIdForFile(const std::string& path) {
    std::vector<std::uint8_t> bytes;
    if (readWholeFile(path, bytes) != icOk || bytes.size() < kHeaderSize)
        return icErrFile;
    if (computeProfileIdInMemory(bytes) != icOk)
        return icErrFile;
    // Only the header changes; rewrite it in place.
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb+"),
                                                         &std::fclose);
    if (!file || std::fseek(file.get(), 0, SEEK_SET) != 0 ||
        std::fwrite(bytes.data(), 1, kHeaderSize, file.get()) != kHeaderSize)
        return icErrFile;
    return std::fflush(file.get()) == 0 ? icOk : icErrFile;
}

std::string formatProfileId(std::span<const std::uint8_t, 16> id) {
    char text[36];
    std::snprintf(text, sizeof text,
                  "%02x%02x%02x%02x-%02x%02x%02x%02x-%02x%02x%02x%02x-%02x%02x%02x%02x", id[0],
                  id[1], id[2], id[3], id[4], id[5], id[6], id[7], id[8], id[9], id[10], id[11],
                  id[12], id[13], id[14], id[15]);
    return text;
}
