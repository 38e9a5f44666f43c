// The header editor's fields and its rules for "OK", free of any toolkit: the dialog shows the
// texts and list positions given here and hands back what the user left in them.
#pragma once

#include "profile/header.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

// The lists' items, in position order.
inline constexpr std::array<std::string_view, 2> kEmbeddedItems = {"Not embedded",
                                                                   "Embedded in file"};
inline constexpr std::array<std::string_view, 2> kIndependentItems = {"Independent",
                                                                      "Not independent"};
inline constexpr std::array<std::array<std::string_view, 2>, 4> kAttributeItems = {{
    {"Reflective", "Transparency"},
    {"Glossy", "Matte"},
    {"Positive", "Negative"},
    {"Color", "Black & White"},
}};
inline constexpr std::array<std::string_view, 4> kIntentItems = {
    "Perceptual", "Media-relative Colorimetric", "Saturation", "ICC-absolute Colorimetric"};

inline constexpr int kNoSelection = -1;

struct HeaderEditFields {
    // Shown only; the CMM Type can be typed into but is never stored.
    std::string size, cmmType, deviceClass, colorSpace, pcs, magic, illuminant, profileId;
    // Editable texts.
    std::string version, date, time, platform, manufacturer, model, creator;
    // List positions; kNoSelection when the list shows nothing.
    int embedded = 0, independent = 0;
    std::array<int, 4> attributes{};
    int intent = 0;
};

// The initial contents. The lists are preset with the header bits masked but not shifted, so a
// bit above bit 0 lands past the end of its two-item list and shows no selection; since "no
// selection" counts as set on "OK", such a bit survives an unedited round trip.
HeaderEditFields headerEditFields(const icHeader& header);

// Applies the fields to the header in the editor's order and returns the texts of the plain
// boxes to show (the V2/V4 version warnings).
std::vector<std::string> applyHeaderEdit(const HeaderEditFields& fields, icHeader& header);
