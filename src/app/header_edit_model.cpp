#include "app/header_edit_model.h"

#include "document/header_model.h"
#include "document/text_format.h"
#include "profile/profile_id.h"

#include <charconv>
#include <cstdint>
#include <optional>

namespace {

int listPosition(std::uint32_t value, std::size_t itemCount) {
    return value < itemCount ? static_cast<int>(value) : kNoSelection;
}

// C "%i": decimal, "0x" hexadecimal or leading-0 octal, keeping the low 32 bits.
std::optional<std::uint32_t> parseInteger(const std::string& text) {
    long long value = 0;
    if (text.empty() || std::sscanf(text.c_str(), "%lli", &value) != 1)
        return std::nullopt;
    return static_cast<std::uint32_t>(value);
}

bool parseTriple(const std::string& text, const char* fmt, std::uint16_t& a, std::uint16_t& b,
                 std::uint16_t& c) {
    int x = 0, y = 0, z = 0;
    if (text.empty() || std::sscanf(text.c_str(), fmt, &x, &y, &z) != 3)
        return false;
    a = static_cast<std::uint16_t>(x);
    b = static_cast<std::uint16_t>(y);
    c = static_cast<std::uint16_t>(z);
    return true;
}

std::uint32_t bitIfSet(int position, std::uint32_t bit) {
    return position != 0 ? bit : 0;
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Digits only, all of them in `base`, with a value up to `maximum`.
std::optional<std::uint32_t> numberUpTo(std::string_view text, int base, std::uint32_t maximum) {
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (text.empty() || error != std::errc() || end != text.data() + text.size() || value > maximum)
        return std::nullopt;
    return value;
}

bool isWord32(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with("0x") || text.starts_with("0X"))
        return text.size() <= 10 && numberUpTo(text.substr(2), 16, UINT32_MAX);
    return numberUpTo(text, text.starts_with('0') ? 8 : 10, UINT32_MAX).has_value();
}

// Three decimal numbers between two separators, each from its minimum to its maximum.
bool isTriple(std::string_view text, char separator, std::array<std::uint32_t, 3> minima,
              std::array<std::uint32_t, 3> maxima) {
    text = trimmed(text);
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t end = i < 2 ? text.find(separator) : text.size();
        if (end == std::string_view::npos)
            return false;
        const auto value = numberUpTo(text.substr(0, end), 10, maxima[i]);
        if (!value || *value < minima[i])
            return false;
        text.remove_prefix(i < 2 ? end + 1 : end);
    }
    return true;
}

struct NumberField {
    std::string HeaderEditFields::*field;
    const char* label;
    bool (*valid)(std::string_view);
    const char* rule;
};

constexpr NumberField kNumberFields[] = {
    {&HeaderEditFields::version, "Version", isWord32,
     "a 32-bit number: up to 8 hexadecimal digits after 0x, or a decimal number"},
    {&HeaderEditFields::date, "Date",
     [](std::string_view t) {
         return isTriple(t, '/', {0, 1, 1}, {65535, 12, 31});
     },
     "a date: year/month/day, with the month 1 to 12 and the day 1 to 31"},
    {&HeaderEditFields::time, "Time",
     [](std::string_view t) {
         return isTriple(t, ':', {0, 0, 0}, {23, 59, 59});
     },
     "a time: hour:minute:second, with the hour 0 to 23, minutes and seconds 0 to 59"},
    {&HeaderEditFields::model, "Model", isWord32,
     "a 32-bit number: up to 8 hexadecimal digits after 0x, or a decimal number"},
};

} // namespace

std::optional<HeaderEditRefusal> refuseHeaderEdit(const HeaderEditFields& typed,
                                                  const HeaderEditFields& shown) {
    for (const NumberField& f : kNumberFields) {
        const std::string& text = typed.*f.field;
        if (text.empty() || text == shown.*f.field || f.valid(text))
            continue;
        return HeaderEditRefusal{f.field, std::string(f.label) + ": \"" + text + "\" is not " +
                                              f.rule + ". The old value is kept."};
    }
    return std::nullopt;
}

HeaderEditFields headerEditFields(const icHeader& h) {
    HeaderEditFields f;
    f.size = formatText("%u bytes", h.size);
    f.cmmType = sigToText(h.cmmId);
    f.version = formatText("0x%x", h.version);
    f.deviceClass = sigToText(h.deviceClass);
    f.colorSpace = sigToText(h.colorSpace);
    f.pcs = sigToText(h.pcs);
    f.date =
        formatText("%u/%u/%u", unsigned(h.date.year), unsigned(h.date.month), unsigned(h.date.day));
    f.time = formatText("%u:%u:%u", unsigned(h.date.hours), unsigned(h.date.minutes),
                        unsigned(h.date.seconds));
    f.magic = sigToText(h.magic);
    f.platform = sigToText(h.platform);
    f.embedded = listPosition(h.flags & 1, kEmbeddedItems.size());
    f.independent = listPosition(h.flags & 2, kIndependentItems.size());
    f.manufacturer = sigToText(h.manufacturer);
    f.model = formatText("0x%x", h.model);
    for (std::size_t i = 0; i < f.attributes.size(); ++i)
        f.attributes[i] = listPosition(h.attributes[0] & (1u << i), 2);
    f.intent = listPosition(h.renderingIntent, kIntentItems.size());
    f.illuminant = illuminantText(h.illuminant);
    f.creator = sigToText(h.creator);
    f.profileId = formatProfileId(h.profileID);
    return f;
}

std::vector<std::string> applyHeaderEdit(const HeaderEditFields& f, icHeader& h) {
    std::vector<std::string> warnings;
    if (const auto version = parseInteger(f.version)) {
        const bool wasV4 = h.version >= kVersion4;
        const bool isV4 = *version >= kVersion4;
        if (isV4 && !wasV4)
            warnings.emplace_back(
                "Warning: Changed version number from V2 to V4, tags should be updated "
                "accordingly!");
        else if (wasV4 && !isV4)
            warnings.emplace_back(
                "Warning: Changed version number from V4 to V2, tags should be updated "
                "accordingly!");
        if (*version != 0)
            h.version = *version;
    }
    parseTriple(f.date, "%d/%d/%d", h.date.year, h.date.month, h.date.day);
    parseTriple(f.time, "%d:%d:%d", h.date.hours, h.date.minutes, h.date.seconds);
    h.platform = textToSig(f.platform);
    h.flags = bitIfSet(f.embedded, 1) | bitIfSet(f.independent, 2);
    h.manufacturer = textToSig(f.manufacturer);
    if (const auto model = parseInteger(f.model))
        h.model = *model;
    std::uint32_t attributes = 0;
    for (std::size_t i = 0; i < f.attributes.size(); ++i)
        attributes |= bitIfSet(f.attributes[i], 1u << i);
    h.attributes[0] = attributes;
    h.renderingIntent = static_cast<std::uint32_t>(f.intent);
    h.creator = textToSig(f.creator);
    return warnings;
}
