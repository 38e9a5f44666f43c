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

} // namespace

icProfileIdHash::icProfileIdHash() : ctx_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
    ok_ = ctx_ && EVP_DigestInit_ex(ctx_.get(), EVP_md5(), nullptr) == 1;
}

bool icProfileIdHash::header(std::span<const std::uint8_t> bytes) {
    if (bytes.size() != kHeaderSize)
        return ok_ = false;
    std::array<std::uint8_t, kHeaderSize> cleared{};
    std::memcpy(cleared.data(), bytes.data(), kHeaderSize);
    std::memset(cleared.data() + kClearedFirst, 0, kClearedCount);
    return update(cleared);
}

bool icProfileIdHash::update(std::span<const std::uint8_t> bytes) {
    return ok_ = ok_ && EVP_DigestUpdate(ctx_.get(), bytes.data(), bytes.size()) == 1;
}

bool icProfileIdHash::finish(icDigest& out) {
    unsigned int length = 0;
    return ok_ = ok_ && EVP_DigestFinal_ex(ctx_.get(), out.data(), &length) == 1 &&
                 length == out.size();
}

icStatus CMD5Checksum::digestOfMemory(std::span<const std::uint8_t> block, icDigest& out) const {
    icProfileIdHash hash;
    return hash.update(block) && hash.finish(out) ? icOk : icErrFile;
}

icStatus computeProfileIdInMemory(std::span<std::uint8_t> block) {
    if (block.size() < kHeaderSize)
        return icErrInvalidArg;
    if (!isVersion4(headerFromBytes(block)))
        return icOk;
    icProfileIdHash hash;
    icDigest digest{};
    if (!hash.header(block.first(kHeaderSize)) || !hash.update(block.subspan(kHeaderSize)) ||
        !hash.finish(digest))
        return icErrFile;
    std::memcpy(block.data() + kProfileIdOffset, digest.data(), digest.size());
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
