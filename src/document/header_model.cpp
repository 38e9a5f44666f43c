#include "document/header_model.h"

#include "document/text_format.h"
#include "profile/profile_id.h"

namespace {

double roundTo5(std::int32_t encoded) {
    const double v = s15Fixed16ToDouble(encoded);
    return static_cast<double>(truncToInt64(v * 100000.0 + 0.5)) / 100000.0;
}

} // namespace

std::string deviceClassText(icSignature deviceClass) {
    switch (deviceClass) {
    case icSig("scnr"):
        return "input";
    case icSig("mntr"):
        return "display";
    case icSig("prtr"):
        return "output";
    case icSig("link"):
        return "link";
    case icSig("spac"):
        return "colorspace";
    case icSig("abst"):
        return "abstract";
    default:
        return "Unknown";
    }
}

std::string flagsText(std::uint32_t flags) {
    std::string text = (flags & 1) ? "embedded, " : "not embedded, ";
    text += (flags & 2) ? "not independently" : "independently";
    return text;
}

std::string attributesText(std::uint32_t attributes) {
    std::string text = (attributes & 1) ? "transparency, " : "reflective, ";
    text += (attributes & 2) ? "matte, " : "glossy, ";
    text += (attributes & 4) ? "negative " : "positive, ";
    text += (attributes & 8) ? "black & white" : "color";
    return text;
}

std::string intentText(std::uint32_t intent) {
    switch (intent) {
    case 0:
        return "Perceptual";
    case 1:
        return "Relative Colorimetric";
    case 2:
        return "Saturation";
    case 3:
        return "Absolute Colorimetric";
    default:
        return "Unknown";
    }
}

std::string illuminantText(const icXYZNumber& illuminant) {
    return formatText("X=%1.5f, Y=%1.5f, Z=%1.5f\n", roundTo5(illuminant.X), roundTo5(illuminant.Y),
                      roundTo5(illuminant.Z));
}

std::string modelText(std::uint32_t model) {
    std::string text = formatText("0x%x", model);
    const std::string chars = sigToText(model);
    if (!chars.empty())
        text += " / " + chars;
    return text;
}

std::string dateText(const icDateTimeNumber& d) {
    return formatText("%u/%u/%u, %u:%u:%u", unsigned(d.year), unsigned(d.month), unsigned(d.day),
                      unsigned(d.hours), unsigned(d.minutes), unsigned(d.seconds));
}

HeaderFields headerFieldTexts(const icHeader& h) {
    return {{
        {"Size:", formatText("%u bytes", h.size)},
        {"CMM Type:", sigToText(h.cmmId)},
        {"Version:", formatText("0x%x", h.version)},
        {"Device Class:", deviceClassText(h.deviceClass)},
        {"Color Space:", sigToText(h.colorSpace)},
        {"PCS:", sigToText(h.pcs)},
        {"Date:", dateText(h.date)},
        {"Magic:", sigToText(h.magic)},
        {"Platform:", sigToText(h.platform)},
        {"Flags:", flagsText(h.flags)},
        {"Manufacture:", sigToText(h.manufacturer)},
        {"Model:", modelText(h.model)},
        {"Attribute:", attributesText(h.attributes[0])},
        {"Intent:", intentText(h.renderingIntent)},
        {"Illuminant:", illuminantText(h.illuminant)},
        {"Creator:", sigToText(h.creator)},
        {"Profile ID:", formatProfileId(h.profileID)},
    }};
}

icStatus fillHeaderPanel(const icHeader& header, Presenter& presenter, HeaderFields& fields) {
    const icStatus s = validateHeader(header);
    if (icFailed(s))
        return reportError(presenter, s, kCaption, "Error in icc header.");
    if (s == icWarnHeader)
        presenter.messageBox(icBoxKind::warning, kCaption,
                             "Warning: improper format in ICC Header.");
    fields = headerFieldTexts(header);
    return icOk;
}

std::string tagNumberCell(std::uint32_t value, bool hexadecimal) {
    return formatText(hexadecimal ? "%0X" : "%u", value);
}

std::string tagTableCaption(int tagCount) {
    return formatText("Tag Table (%d tags):", tagCount);
}

std::vector<TagRow> tagTableRows(const iccProfileBase& profile, bool hexadecimal) {
    std::vector<TagRow> rows;
    rows.reserve(static_cast<std::size_t>(profile.tagCount()));
    for (int i = 0; i < profile.tagCount(); ++i) {
        const icTag& tag = *profile.getEntry(i);
        rows.push_back({formatText("%d", i), sigToText(tag.sig),
                        tagNumberCell(tag.offset, hexadecimal),
                        tagNumberCell(tag.size, hexadecimal)});
    }
    return rows;
}

bool tagOffsetsAligned(const iccProfileBase& profile) {
    for (int i = 0; i < profile.tagCount(); ++i)
        if (profile.getEntry(i)->offset % 4 != 0)
            return false;
    return true;
}

void warnAboutTagOffsets(const iccProfileBase& profile, Presenter& presenter) {
    if (!tagOffsetsAligned(profile))
        presenter.messageBox(icBoxKind::warning, kCaption,
                             "Invalid ICC profile: Error in tag offset(s).");
}
