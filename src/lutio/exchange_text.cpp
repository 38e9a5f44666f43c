#include "lutio/exchange_text.h"

#include <algorithm>
#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

void icTextOut::grow(std::size_t n) {
    const std::size_t capacity = std::max({2 * capacity_, size_ + n, std::size_t(256)});
    auto data = std::make_unique_for_overwrite<char[]>(capacity);
    if (size_ > 0)
        std::memcpy(data.get(), data_.get(), size_);
    data_ = std::move(data);
    capacity_ = capacity;
}

icTextOut& icTextOut::f(double v) {
    // The longest fixed form of a double: 309 integer digits, sign, point and six decimals.
    return number<352>([v](char* first, char* last) {
        return std::to_chars(first, last, v, std::chars_format::fixed, 6).ptr;
    });
}

namespace {

void skipSpace(std::string_view& in) {
    std::size_t i = 0;
    while (i < in.size() && isScanSpace(in[i]))
        ++i;
    in.remove_prefix(i);
}

// scanf takes a '+' before a number; std::from_chars does not, so it is stepped over here.
// A '-' stays: the unsigned readers refuse it, the floating-point reader handles it.
std::size_t signLength(std::string_view in) {
    return in.size() > 1 && in[0] == '+' && in[1] != '-' && in[1] != '+' ? 1 : 0;
}

template <class T> bool scanInteger(std::string_view& in, T& v) {
    std::string_view s = in;
    skipSpace(s);
    s.remove_prefix(signLength(s));
    T value{};
    const auto [ptr, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec != std::errc())
        return false;
    v = value;
    in.remove_prefix(static_cast<std::size_t>(ptr - in.data()));
    return true;
}

} // namespace

bool scanWord(std::string_view& in, std::string_view& word) {
    std::string_view s = in;
    skipSpace(s);
    std::size_t n = 0;
    while (n < s.size() && !isScanSpace(s[n]))
        ++n;
    if (n == 0)
        return false;
    word = s.substr(0, n);
    in = s.substr(n);
    return true;
}

bool scanU32(std::string_view& in, std::uint32_t& v) {
    return scanInteger(in, v);
}

bool scanU64(std::string_view& in, std::uint64_t& v) {
    return scanInteger(in, v);
}

bool scanI64(std::string_view& in, std::int64_t& v) {
    return scanInteger(in, v);
}

bool scanDouble(std::string_view& in, double& v) {
    std::string_view s = in;
    skipSpace(s);
    s.remove_prefix(signLength(s));
    double value = 0;
    const auto [ptr, ec] =
        std::from_chars(s.data(), s.data() + s.size(), value, std::chars_format::general);
    if (ec != std::errc())
        return false;
    v = value;
    in.remove_prefix(static_cast<std::size_t>(ptr - in.data()));
    return true;
}

namespace {

// The batch reader looks at blocks of this many bytes, and reads eight bytes from where a number
// starts in one.
constexpr std::ptrdiff_t kBlock = 64;

// What the 64 bytes at `p` hold, one bit per byte: white space as scanf sees it, and anything
// that is neither that nor a digit.
struct BlockBits {
    std::uint64_t space = 0, other = 0;
};

BlockBits classifyBlock(const char* p) {
    BlockBits bits;
#ifdef __SSE2__
    for (int i = 0; i < kBlock / 16; ++i) {
        const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i));
        // ' ', or '\t' to '\r'; bytes from 0x80 compare as negative, so they are neither.
        const __m128i space =
            _mm_or_si128(_mm_cmpeq_epi8(c, _mm_set1_epi8(' ')),
                         _mm_and_si128(_mm_cmpgt_epi8(c, _mm_set1_epi8('\t' - 1)),
                                       _mm_cmplt_epi8(c, _mm_set1_epi8('\r' + 1))));
        const __m128i digit = _mm_and_si128(_mm_cmpgt_epi8(c, _mm_set1_epi8('0' - 1)),
                                            _mm_cmplt_epi8(c, _mm_set1_epi8('9' + 1)));
        const auto spaceMask = static_cast<std::uint32_t>(_mm_movemask_epi8(space));
        const auto digitMask = static_cast<std::uint32_t>(_mm_movemask_epi8(digit));
        bits.space |= std::uint64_t(spaceMask) << (16 * i);
        bits.other |= std::uint64_t(~(spaceMask | digitMask) & 0xFFFF) << (16 * i);
    }
#else
    for (int i = 0; i < kBlock; ++i) {
        const bool space = isScanSpace(p[i]);
        const bool digit = p[i] >= '0' && p[i] <= '9';
        bits.space |= std::uint64_t(space) << i;
        bits.other |= std::uint64_t(!space && !digit) << i;
    }
#endif
    return bits;
}

// The value of the `length` (1 to 8) digits at `p`; eight bytes from `p` must be readable.
std::uint32_t shortDigits(const char* p, int length) {
    if constexpr (std::endian::native == std::endian::little) {
        std::uint64_t bytes;
        std::memcpy(&bytes, p, 8);
        // The first character is the lowest byte: moved to the top, the digits lie under zeros
        // that count as leading zeros, and are combined in pairs, fours and eights.
        std::uint64_t n = (bytes & 0x0F0F0F0F0F0F0F0F) << (64 - 8 * length);
        n = (n * 10 + (n >> 8)) & 0x00FF00FF00FF00FF;
        n = (n * 100 + (n >> 16)) & 0x0000FFFF0000FFFF;
        return static_cast<std::uint32_t>(n * 10000 + (n >> 32));
    } else {
        std::uint32_t value = 0;
        for (int i = 0; i < length; ++i)
            value = value * 10 + static_cast<std::uint32_t>(p[i] - '0');
        return value;
    }
}

// One number the usual way from `p`, which then follows it; false when there is none.
bool scanOne(const char*& p, const char* end, std::uint32_t& v) {
    std::string_view rest(p, static_cast<std::size_t>(end - p));
    if (!scanU32(rest, v))
        return false;
    p = rest.data();
    return true;
}

} // namespace

std::size_t scanU32s(std::string_view& in, std::span<std::uint32_t> out) {
    const char* p = in.data();
    const char* const end = p + in.size();
    std::size_t n = 0;
    bool failed = false;
    // One number the usual way from `at`; the next block starts after it.
    const auto single = [&](const char* at) {
        failed = !scanOne(at, end, out[n]);
        n += failed ? 0 : 1;
        return at;
    };
    while (n < out.size() && !failed) {
        if (end - p < kBlock + 8) {
            p = single(p);
            continue;
        }
        // p is at white space or at the start of a number, so the byte before the block counts
        // as white space: the k-th number that ends in the block is the k-th that starts in it.
        const BlockBits bits = classifyBlock(p);
        const std::uint64_t spaceBefore = (bits.space << 1) | 1;
        std::uint64_t starts = ~bits.space & spaceBefore;
        std::uint64_t ends = bits.space & ~spaceBefore;
        const char* resume = nullptr;
        int lastEnd = 0;
        while (ends != 0 && n < out.size()) {
            const int start = std::countr_zero(starts);
            lastEnd = std::countr_zero(ends);
            const int length = lastEnd - start;
            // Eight digits at most, and nothing but digits; anything else the usual way.
            if (length > 8 || (bits.other != 0 &&
                               ((bits.other >> start) & ((std::uint64_t(1) << length) - 1)) != 0)) {
                resume = single(p + start);
                break;
            }
            out[n++] = shortDigits(p + start, length);
            starts &= starts - 1;
            ends &= ends - 1;
        }
        if (resume == nullptr) {
            if (n == out.size())
                resume = p + lastEnd; // just after the last number
            else if (starts == 0)
                resume = p + kBlock;
            else if (const int start = std::countr_zero(starts); start > 0)
                resume = p + start; // a number that runs on into the next block
            else
                resume = single(p); // one that fills the whole block
        }
        p = resume;
    }
    in = std::string_view(p, static_cast<std::size_t>(end - p));
    return n;
}

std::optional<std::string_view> icTextIn::line() {
    if (rest_.empty())
        return std::nullopt;
    const std::size_t window = std::min(rest_.size(), kExchangeLineLimit);
    const void* newline = std::memchr(rest_.data(), '\n', window);
    const std::size_t length =
        newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - rest_.data()) + 1
                : window;
    const std::string_view result = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return result;
}

bool labelledNumber(std::optional<std::string_view> line, std::string_view label,
                    std::uint32_t& value) {
    if (!line)
        return false;
    std::string_view rest = *line;
    std::string_view word;
    return scanWord(rest, word) && scanU32(rest, value) && word.starts_with(label);
}

bool labelledNumbers(icTextIn& in, std::span<const std::string_view> labels,
                     std::span<std::uint32_t> values) {
    for (std::size_t i = 0; i < labels.size() && i < values.size(); ++i)
        if (!labelledNumber(in.line(), labels[i], values[i]))
            return false;
    return true;
}

std::optional<std::string_view> signatureLine(icTextIn& in) {
    const auto line = in.line();
    if (!line)
        return std::nullopt;
    // The label's 18 characters are compared, not its colon.
    std::string_view rest = *line, label, signature;
    if (!scanWord(rest, label) || !scanWord(rest, signature) ||
        !label.starts_with("icTagTypeSignature"))
        return std::nullopt;
    return signature;
}
