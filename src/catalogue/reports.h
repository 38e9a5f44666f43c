// The informational tag reports: each turns a tag into the boxes it shows, in order, without
// showing anything itself. The tag handlers hand the boxes to a presenter; tests compare them.
//
// Byte-level reports take the tag's bytes exactly as the profile holds them (sized by the tag
// directory) and never read past them: a count or size that points beyond the tag ends the walk
// there, and whatever was built up to that point is still shown.
#pragma once

#include "document/presenter.h"
#include "profile/status.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccProfileSequenceDescType;
struct icProfileDescription;

struct icReportBox {
    icBoxKind kind = icBoxKind::info;
    std::string caption;
    std::string text;
    friend bool operator==(const icReportBox&, const icReportBox&) = default;
};

// The boxes a report opens and the status its handler returns.
struct icReport {
    icStatus status = icOk;
    std::vector<icReportBox> boxes;
};

// Reports from this length on go to the large-text window instead of a message box.
inline constexpr std::size_t kLargeTextThreshold = 500;

// Shows the boxes in order. With `largeText` (the simple text reports), plain boxes of 500
// characters or more go to the large-text window; otherwise every box is a message box.
void presentReport(Presenter& presenter, const icReport& report, bool largeText);
// One simple report text under a caption: the large-text window from 500 characters on.
void presentText(Presenter& presenter, std::string_view caption, std::string_view text);

// ---- simple tags --------------------------------------------------------------------------

// 'chad': the first nine s15Fixed16 values as three rows; fewer than nine show nothing.
icReport reportChromaticAdaptation(std::span<const std::uint8_t> tag, std::string_view label);
// 'calt' ('dtim'): "Date = M/D/Y \nTime = h:m:s\n".
icReport reportDateTime(std::span<const std::uint8_t> tag, std::string_view label);
// 'lumi': the Y of the decoded XYZ value.
std::string luminanceText(double y);
// 'ps2s', 'psd0'-'psd3', 'ps2i' ('data'): the ASCII text up to its NUL or the tag's end, or the
// size of binary data.
icReport reportData(std::span<const std::uint8_t> tag, std::string_view label);

// ---- measurement, viewing and device tags -----------------------------------------------

icReport reportMeasurement(std::span<const std::uint8_t> tag, std::string_view label);
icReport reportViewingConditions(std::span<const std::uint8_t> tag, std::string_view label);
icReport reportTechnology(std::span<const std::uint8_t> tag, std::string_view label);
icReport reportScreening(std::span<const std::uint8_t> tag, std::string_view label);

// ---- settings, sequences and response curves --------------------------------------------

// 'devs': one box per platform.
icReport reportDeviceSettings(std::span<const std::uint8_t> tag, std::string_view label);
// 'rcs2': a summary box, then one box per measurement type.
icReport reportResponseCurves(std::span<const std::uint8_t> tag, std::string_view label);

// 'pseq': the summary line shown first in both forms.
std::string sequenceCountText(std::uint32_t count);
// Caption of the boxes of description `index`.
std::string sequenceCaption(std::uint32_t index);
// The device lines of one description, ending with the technology word and its line end.
std::string sequenceDescriptionText(const icProfileDescription& description);
// The version-2 form: every box repeats all text before it and adds one description with its
// two ASCII texts.
icReport reportSequenceV2(const iccProfileSequenceDescType& sequence, std::string_view label);
inline constexpr std::string_view kNoManufacturerNames =
    "No Name Record found on Device Manufacture Description.\n";
inline constexpr std::string_view kNoModelNames =
    "No Name Record found on Device Model Description.\n";

// The technology word of a 'tech' tag and of a sequence description; null when unknown.
const char* technologyWord(std::uint32_t signature);
