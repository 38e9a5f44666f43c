// The plain-text side of the exchange files: output built in memory with the number formats of
// C's "%u" and "%f", and a reader over a whole file held in memory that reads lines the way
// fgets does with a 1024-byte buffer and numbers the way scanf does.
//
// Every number goes through std::to_chars and std::from_chars: they are locale-independent,
// exact, and fast enough for CLUT files of a million lines.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// The program has always read its text files through a 1024-byte line buffer, so a line holds
// at most 1023 characters and a longer one is read as several.
inline constexpr std::size_t kExchangeLineLimit = 1023;

// An exchange file being written: appended to in memory, then written in one go. Numbers are
// formatted straight into the buffer, which grows only when a reservation was too small; clear()
// keeps it for the next file.
class icTextOut {
public:
    // Room for `bytes` in all.
    void reserve(std::size_t bytes) {
        if (bytes > capacity_)
            grow(bytes - size_);
    }
    icTextOut& text(std::string_view s) {
        if (!s.empty()) {
            std::memcpy(room(s.size()), s.data(), s.size());
            size_ += s.size();
        }
        return *this;
    }
    icTextOut& ch(char c) {
        *room(1) = c;
        ++size_;
        return *this;
    }
    // "%u"
    icTextOut& u(std::uint64_t v) {
        return number<kIntegerDigits>(
            [v](char* first, char* last) { return std::to_chars(first, last, v).ptr; });
    }
    // "%d"
    icTextOut& d(std::int64_t v) {
        return number<kIntegerDigits>(
            [v](char* first, char* last) { return std::to_chars(first, last, v).ptr; });
    }
    // "%f" (and "%lf"): fixed notation with six decimals, rounded exactly as printf rounds.
    icTextOut& f(double v);

    std::string_view str() const { return {data_.get(), size_}; }
    std::size_t size() const { return size_; }
    void clear() { size_ = 0; }

private:
    // The longest 64-bit integer: 20 digits, or a sign and 19.
    static constexpr std::size_t kIntegerDigits = 20;

    // Where the next `n` characters go.
    char* room(std::size_t n) {
        if (capacity_ - size_ < n)
            grow(n);
        return data_.get() + size_;
    }
    // A number of at most `longest` characters, formatted by `format(first, last)` (which
    // returns its end) straight into the buffer, or beside it when the buffer may be too short,
    // so that the buffer grows only for the characters it really gets.
    template <std::size_t longest, class Format> icTextOut& number(Format format) {
        if (capacity_ - size_ >= longest) {
            char* at = data_.get() + size_;
            size_ += static_cast<std::size_t>(format(at, at + longest) - at);
            return *this;
        }
        char digits[longest];
        return text({digits, static_cast<std::size_t>(format(digits, digits + longest) - digits)});
    }
    // Makes room for `n` more characters, at least doubling; throws std::bad_alloc.
    void grow(std::size_t n);

    std::unique_ptr<char[]> data_;
    std::size_t size_ = 0, capacity_ = 0;
};

// The C locale's white space, as scanf skips it.
constexpr bool isScanSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Readers over a view that they advance past what they consumed; each first skips white space
// as the matching scanf conversion does. They fail without a number (or word) to read, and
// leave the view unchanged then.
//
// "%s": a run of characters that are not white space.
bool scanWord(std::string_view& in, std::string_view& word);
// "%u" and "%lu": decimal digits after an optional '+'. A value beyond 32 bits is not taken for
// a 32-bit number.
bool scanU32(std::string_view& in, std::uint32_t& v);
bool scanU64(std::string_view& in, std::uint64_t& v);
// "%d", 64 bits wide so that the caller decides how to narrow it.
bool scanI64(std::string_view& in, std::int64_t& v);

// Reads numbers as scanU32 does, one after another, until `out` is full or one fails; returns
// how many were read, and `in` then starts after the last of them. Inline, so that a table
// reader's position stays in a register from one number to the next.
inline std::size_t scanU32s(std::string_view& in, std::span<std::uint32_t> out) {
    const char* at = in.data(); // after the last number read
    const char* const end = at + in.size();
    std::size_t n = 0;
    for (; n < out.size(); ++n) {
        const char* p = at;
        while (p != end && isScanSpace(*p))
            ++p;
        // A '+' as scanf takes it (see scanU32).
        if (end - p > 1 && p[0] == '+' && p[1] != '-' && p[1] != '+')
            ++p;
        const auto [next, ec] = std::from_chars(p, end, out[n]);
        if (ec != std::errc())
            break;
        at = next;
    }
    in.remove_prefix(static_cast<std::size_t>(at - in.data()));
    return n;
}

// "%lf": a decimal or exponent number, "inf" or "nan", after an optional sign.
bool scanDouble(std::string_view& in, double& v);

// A whole file in memory, read from the front: line by line and as a stream of tokens, in any
// mix, as a C program alternates fgets and fscanf on one stream.
class icTextIn {
public:
    explicit icTextIn(std::string_view text) : rest_(text) {}

    // The next line as fgets reads it: up to and including its '\n', but at most 1023
    // characters; none at the end of the text.
    std::optional<std::string_view> line();

    // Token stream reads, continuing where the last read stopped.
    bool u32(std::uint32_t& v) { return scanU32(rest_, v); }
    bool u64(std::uint64_t& v) { return scanU64(rest_, v); }
    bool real(double& v) { return scanDouble(rest_, v); }

    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

// A header line "Label: N" read as "%s %u": a word that must begin with `label` (so a label
// given without its colon accepts the line with or without one) and an unsigned number.
bool labelledNumber(std::optional<std::string_view> line, std::string_view label,
                    std::uint32_t& value);
// One such line per label, in order; false at the first that is missing or does not match.
bool labelledNumbers(icTextIn& in, std::span<const std::string_view> labels,
                     std::span<std::uint32_t> values);
// The first line of a folder's header.txt, "icTagTypeSignature: SIG": the signature word, or
// none when the line is missing or its first word is another.
std::optional<std::string_view> signatureLine(icTextIn& in);
