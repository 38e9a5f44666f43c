// The texts of the main window's header panel and tag table, free of any toolkit, so the
// command line prints exactly what the window shows.
#pragma once

#include "document/presenter.h"
#include "profile/header.h"
#include "profile/profile.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

struct HeaderField {
    std::string_view label;
    std::string text;
};

inline constexpr std::size_t kHeaderFieldCount = 17;
using HeaderFields = std::array<HeaderField, kHeaderFieldCount>;

// The seventeen labelled field texts, in the order the panel fills them.
HeaderFields headerFieldTexts(const icHeader& header);

std::string deviceClassText(icSignature deviceClass);
std::string flagsText(std::uint32_t flags);
std::string attributesText(std::uint32_t attributes);
std::string intentText(std::uint32_t intent);
// "X=%1.5f, Y=%1.5f, Z=%1.5f\n", each coordinate rounded to five decimals first.
std::string illuminantText(const icXYZNumber& illuminant);
std::string modelText(std::uint32_t model);
std::string dateText(const icDateTimeNumber& date);

// Validates the header without a file length and fills the fields: a rejected header is
// reported ("Error in icc header." with its code) and returned; a suspicious one shows a
// warning and is filled all the same.
[[nodiscard]] icStatus fillHeaderPanel(const icHeader& header, Presenter& presenter,
                                       HeaderFields& fields);

struct TagRow {
    std::string index;
    std::string signature;
    std::string offset;
    std::string size;
};

// "%u" in decimal mode, "%0X" in hexadecimal mode.
std::string tagNumberCell(std::uint32_t value, bool hexadecimal);
std::string tagTableCaption(int tagCount);
std::vector<TagRow> tagTableRows(const iccProfileBase& profile, bool hexadecimal);
// True when every tag offset is a multiple of 4.
bool tagOffsetsAligned(const iccProfileBase& profile);
// Shows the misaligned-offset warning, once, when any tag offset is not a multiple of 4.
void warnAboutTagOffsets(const iccProfileBase& profile, Presenter& presenter);
