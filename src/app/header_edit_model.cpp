#include "app/header_edit_model.h"

#include "document/header_model.h"
#include "document/text_format.h"
#include "profile/profile_id.h"

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

} // namespace

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
