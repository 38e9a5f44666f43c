// Shared test helpers: installed profiles, profiles built in memory, scratch files, the CLI.
#pragma once

#include "profile/byte_io.h"
#include "profile/header.h"
#include "profile/profile.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

using Bytes = std::vector<std::uint8_t>;

// Every .icc/.icm file under /usr/share/color, sorted, and the few the tests name.
std::vector<std::filesystem::path> installedProfiles();
inline const std::string kSrgb = "/usr/share/color/icc/colord/sRGB.icc"; // version 4
inline const std::string kSrgbV2 = "/usr/share/color/icc/sRGB.icc";
inline const std::string kX11 = "/usr/share/color/icc/colord/x11-colors.icc";
inline const std::string kCmyk = "/usr/share/color/icc/ghostscript/default_cmyk.icc";

// A test name for the index-th of the installed profiles: its file name, letters and digits only.
inline std::string profileTestName(const std::filesystem::path& path, std::size_t index) {
    std::string name = std::to_string(index) + "_" + path.stem().string();
    for (char& c : name)
        c = std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
    return name;
}

// A scratch folder of the test run, created on first use.
std::filesystem::path scratchDir();

// The writers return the path as a string.
Bytes readBytes(const std::filesystem::path& path);
std::string writeBytes(const std::filesystem::path& path, const Bytes& bytes);
std::string readText(const std::filesystem::path& path);
std::string writeText(const std::filesystem::path& path, const std::string& text);

// Tag bytes: the type signature, four zero bytes and the payload (or 32-bit words).
Bytes tagBytes(icSignature type, const Bytes& payload = {});
Bytes textTag(const std::string& text);
inline Bytes wordTag(icSignature type, std::initializer_list<std::uint32_t> words) {
    Bytes bytes = tagBytes(type);
    iccWriter w(bytes);
    for (std::uint32_t v : words)
        w.u32(v);
    return bytes;
}

// Builds a profile in memory. Tags are laid out after the directory in order, each on a
// 4-byte boundary, unless an entry gives its own offset (to share or misplace a block).
class ProfileBuilder {
public:
    ProfileBuilder();
    icHeader header;
    ProfileBuilder& tag(icSignature sig, Bytes bytes);
    // An entry pointing at explicit offset/size, with no bytes of its own.
    ProfileBuilder& entry(icSignature sig, std::uint32_t offset, std::uint32_t size);
    // Writes the header size as the real length unless keepSize is set.
    Bytes build(bool keepSize = false) const;

private:
    struct Item {
        icSignature sig;
        Bytes bytes;
        bool explicitPlace;
        std::uint32_t offset, size;
    };
    std::vector<Item> items_;
};

// A profile loaded from memory, the load expected to end with `expected`.
inline std::unique_ptr<iccProfileRW> loaded(const Bytes& bytes, icStatus expected = icOk) {
    auto profile = std::make_unique<iccProfileRW>();
    EXPECT_EQ(profile->loadFromMemory(bytes), expected);
    return profile;
}

struct CliResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};
// Runs veltrino-cli with the arguments (each quoted for the shell).
CliResult runCli(const std::vector<std::string>& args);

// An 8x8 image in the scratch folder by ImageMagick's convert, of the name's extension, carrying
// `profile` if given (`options` go before it). Returns the path, or "" on failure.
std::string makeImage(const std::string& name, const std::string& profile = {},
                      const std::string& options = {});
