#include "lutio/exchange_text.h"

#include <algorithm>
#include <cstring>

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
