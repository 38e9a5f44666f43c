// The 128-byte profile header, held in host order; the file holds it big-endian.
#pragma once

#include "profile/byte_io.h"
#include "profile/status.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

struct icDateTimeNumber {
    std::uint16_t year = 0, month = 0, day = 0, hours = 0, minutes = 0, seconds = 0;
    friend bool operator==(const icDateTimeNumber&, const icDateTimeNumber&) = default;
};

// Raw s15Fixed16 encodings, as stored.
struct icXYZNumber {
    std::int32_t X = 0, Y = 0, Z = 0;
    friend bool operator==(const icXYZNumber&, const icXYZNumber&) = default;
};

inline constexpr std::size_t kHeaderSize = 128;
inline constexpr icSignature kMagic = icSig("acsp");
inline constexpr std::uint32_t kVersion4 = 0x04000000;

struct icHeader {
    std::uint32_t size = 0;
    icSignature cmmId = 0;
    std::uint32_t version = 0;
    icSignature deviceClass = 0;
    icSignature colorSpace = 0;
    icSignature pcs = 0;
    icDateTimeNumber date;
    icSignature magic = 0;
    icSignature platform = 0;
    std::uint32_t flags = 0;
    icSignature manufacturer = 0;
    std::uint32_t model = 0;
    std::array<std::uint32_t, 2> attributes{};
    std::uint32_t renderingIntent = 0;
    icXYZNumber illuminant;
    icSignature creator = 0;
    std::array<std::uint8_t, 16> profileID{}; // raw bytes, never byte-swapped
    std::array<std::uint8_t, 28> reserved{};

    friend bool operator==(const icHeader&, const icHeader&) = default;
};

// Decodes 128 big-endian bytes. The span must hold at least 128 bytes.
icHeader headerFromBytes(std::span<const std::uint8_t> bytes);

// Encodes the header into 128 big-endian bytes.
std::array<std::uint8_t, kHeaderSize> headerToBytes(const icHeader& header);

// A fresh header: version 2.4, Lab PCS, D50 illuminant, today's date.
icHeader defaultHeader();

// Fills the date from the local clock.
void stampCurrentDate(icHeader& header);
icDateTimeNumber currentLocalDate();

// Accept (0), accept with a warning (1000) or reject (-1001). The file length is compared with
// the header size only when given (negative means "not given").
[[nodiscard]] icStatus validateHeader(const icHeader& header, std::int64_t fileLength = -1);

// The stand-alone header reader: reads the first 128 bytes of a file, 0 when the magic is right.
[[nodiscard]] icStatus readHeaderFromFile(const std::string& path, icHeader& header);

// True for version 4.0 and later.
constexpr bool isVersion4(const icHeader& h) {
    return h.version >= kVersion4;
}
