// The header editor's fields and its rules for "OK", free of any toolkit: the dialog shows the
// texts and list positions given here and hands back what the user left in them.
#pragma once

#include "profile/header.h"

#include <array>
#include <optional>
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

// A text that "OK" refuses, leaving the whole header as it was: the field (as a member of the
// fields, so the dialog can put its old text back) and the warning that says why.
struct HeaderEditRefusal {
    std::string HeaderEditFields::*field = nullptr;
    std::string message;
};

// The first number field whose text the header cannot hold. Version and Model take one 32-bit
// number: decimal, up to 8 hexadecimal digits after "0x", or octal after a leading 0. Date takes
// year/month/day (year up to 65535, month 1 to 12, day 1 to 31), Time hour:minute:second (0 to
// 23, 0 to 59, 0 to 59). An empty field, and one still holding the text it was `shown` with,
// is taken as it is: both keep the rules of applyHeaderEdit.
std::optional<HeaderEditRefusal> refuseHeaderEdit(const HeaderEditFields& typed,
                                                  const HeaderEditFields& shown);
