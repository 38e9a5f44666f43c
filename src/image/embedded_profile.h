// The ICC profile embedded in a JPEG, PNG, TIFF or WebP image. The containers are read by Exiv2;
// this header needs nothing but the standard library, so the document layer can name the
// reader without linking it. Nothing here throws.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

enum class icEmbeddedStatus {
    found,      // bytes hold the profile exactly as the image carries it
    noProfile,  // a JPEG, PNG, TIFF or WebP image without a profile
    notAnImage, // none of the four kinds (a profile file, say, or no file at all)
    unreadable, // one of the four kinds, but too damaged to read
};

struct icEmbeddedProfile {
    icEmbeddedStatus status = icEmbeddedStatus::notAnImage;
    std::vector<std::uint8_t> bytes;
};

// Recognises the image by its content, not its name.
icEmbeddedProfile readEmbeddedProfile(const std::string& path);
icEmbeddedProfile readEmbeddedProfile(std::span<const std::uint8_t> image);

// What the document is handed to look inside images (readEmbeddedProfile, where linked).
using EmbeddedProfileReader = icEmbeddedProfile (*)(const std::string& path);
