// Big-endian primitives of the profile format: a bounded reader with a sticky failure, a
// growing writer, signatures and fixed-point numbers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

using icSignature = std::uint32_t;

// Four characters, the first one in the most significant byte.
constexpr icSignature icSig(const char (&s)[5]) {
    return (icSignature(std::uint8_t(s[0])) << 24) | (icSignature(std::uint8_t(s[1])) << 16) |
           (icSignature(std::uint8_t(s[2])) << 8) | icSignature(std::uint8_t(s[3]));
}

// The signature's characters from the most significant byte down; a zero byte ends the text.
std::string sigToText(icSignature sig);

// The first four characters of a text, padded on the right with zero bytes.
icSignature textToSig(std::string_view text);

// Fixed-point conversions. Encoding multiplies, adds 0.5 and truncates toward zero, so a
// negative value moves toward zero after the shift; the low 32 (or 16) bits are stored.
constexpr double s15Fixed16ToDouble(std::int32_t v) {
    return v * 1.52587890625e-5;
}
constexpr double u16Fixed16ToDouble(std::uint32_t v) {
    return v / 65536.0;
}
constexpr double u8Fixed8ToDouble(std::uint16_t v) {
    return v / 256.0;
}
// Truncation toward zero to 64 bits; values beyond that range saturate and NaN gives 0, so
// no input can make the conversion undefined.
constexpr std::int64_t truncToInt64(double d) {
    if (!(d == d))
        return 0;
    if (d >= 9.2233720368547758e18)
        return INT64_MAX;
    if (d <= -9.2233720368547758e18)
        return INT64_MIN;
    return static_cast<std::int64_t>(d);
}
constexpr std::int32_t doubleToS15Fixed16(double d) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(truncToInt64(d * 65536.0 + 0.5)));
}
constexpr std::uint32_t doubleToU16Fixed16(double d) {
    return static_cast<std::uint32_t>(truncToInt64(d * 65536.0 + 0.5));
}
constexpr std::uint16_t doubleToU8Fixed8(double d) {
    return static_cast<std::uint16_t>(truncToInt64(d * 256.0 + 0.5));
}

inline std::uint16_t loadBE16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>((p[0] << 8) | p[1]);
}
inline std::uint32_t loadBE32(const std::uint8_t* p) {
    return (std::uint32_t(p[0]) << 24) | (std::uint32_t(p[1]) << 16) | (std::uint32_t(p[2]) << 8) |
           std::uint32_t(p[3]);
}
inline void storeBE16(std::uint8_t* p, std::uint16_t v) {
    p[0] = std::uint8_t(v >> 8);
    p[1] = std::uint8_t(v);
}
inline void storeBE32(std::uint8_t* p, std::uint32_t v) {
    p[0] = std::uint8_t(v >> 24);
    p[1] = std::uint8_t(v >> 16);
    p[2] = std::uint8_t(v >> 8);
    p[3] = std::uint8_t(v);
}

// Reads big-endian values from a span. A read past the end fails: the reader is pinned at the
// end, every later read yields 0, and ok() turns false, so a decoder reads a record and tests
// ok() once.
class iccReader {
public:
    explicit iccReader(std::span<const std::uint8_t> data) : data_(data) {}

    std::uint8_t u8() {
        const std::uint8_t* p = take(1);
        return p ? p[0] : 0;
    }
    std::uint16_t u16() {
        const std::uint8_t* p = take(2);
        return p ? loadBE16(p) : 0;
    }
    std::uint32_t u32() {
        const std::uint8_t* p = take(4);
        return p ? loadBE32(p) : 0;
    }
    icSignature sig() { return u32(); }
    double s15f16() { return s15Fixed16ToDouble(static_cast<std::int32_t>(u32())); }
    double u16f16() { return u16Fixed16ToDouble(u32()); }
    double u8f8() { return u8Fixed8ToDouble(u16()); }

    // The next n bytes, or an empty span (and failure) when fewer remain.
    std::span<const std::uint8_t> bytes(std::size_t n) {
        const std::uint8_t* p = take(n);
        return p ? std::span<const std::uint8_t>(p, n) : std::span<const std::uint8_t>();
    }
    // Fills `out` with consecutive values; checked once, converted in one tight loop that the
    // compiler vectorises, which matters for tables of millions of entries.
    void u16s(std::span<std::uint16_t> out) {
        const std::uint8_t* p = take(2 * out.size());
        if (!p) {
            std::fill(out.begin(), out.end(), std::uint16_t(0));
            return;
        }
        for (std::size_t i = 0; i < out.size(); ++i)
            out[i] = static_cast<std::uint16_t>((p[2 * i] << 8) | p[2 * i + 1]);
    }
    void u8s(std::span<std::uint8_t> out) {
        const std::uint8_t* p = take(out.size());
        if (p)
            std::copy(p, p + out.size(), out.begin());
        else
            std::fill(out.begin(), out.end(), std::uint8_t(0));
    }
    void skip(std::size_t n) { take(n); }
    bool seek(std::size_t offset) {
        if (offset > data_.size())
            return fail();
        pos_ = offset;
        return true;
    }

    std::size_t position() const { return pos_; }
    std::size_t remaining() const { return data_.size() - pos_; }
    std::size_t size() const { return data_.size(); }
    bool ok() const { return ok_; }

private:
    const std::uint8_t* take(std::size_t n) {
        if (!ok_ || n > remaining()) {
            fail();
            return nullptr;
        }
        const std::uint8_t* p = data_.data() + pos_;
        pos_ += n;
        return p;
    }
    bool fail() {
        ok_ = false;
        pos_ = data_.size();
        return false;
    }

    std::span<const std::uint8_t> data_;
    std::size_t pos_ = 0;
    bool ok_ = true;
};

// Appends big-endian values to a byte vector.
class iccWriter {
public:
    explicit iccWriter(std::vector<std::uint8_t>& out) : out_(out) {}

    void u8(std::uint8_t v) { out_.push_back(v); }
    void u16(std::uint16_t v) {
        std::uint8_t b[2];
        storeBE16(b, v);
        out_.insert(out_.end(), b, b + 2);
    }
    void u32(std::uint32_t v) {
        std::uint8_t b[4];
        storeBE32(b, v);
        out_.insert(out_.end(), b, b + 4);
    }
    void sig(icSignature v) { u32(v); }
    void s15f16(double d) { u32(static_cast<std::uint32_t>(doubleToS15Fixed16(d))); }
    void u16f16(double d) { u32(doubleToU16Fixed16(d)); }
    void u8f8(double d) { u16(doubleToU8Fixed8(d)); }
    void bytes(std::span<const std::uint8_t> b) { out_.insert(out_.end(), b.begin(), b.end()); }
    void zeros(std::size_t n) { out_.insert(out_.end(), n, 0); }
    void pad4() { zeros((4 - out_.size() % 4) % 4); }
    std::size_t size() const { return out_.size(); }

private:
    std::vector<std::uint8_t>& out_;
};

// Bytes up to the next multiple of four.
constexpr std::uint32_t padTo4(std::uint32_t size) {
    return (4 - size % 4) % 4;
}
constexpr std::uint64_t roundUp4(std::uint64_t size) {
    return (size + 3) / 4 * 4;
}
