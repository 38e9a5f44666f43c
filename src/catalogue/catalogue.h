// The tag catalogue: for each tag signature the label it is shown under and the report or viewer
// that shows it, and "Show selected tag", the one entry point the main window (and the command
// line) calls for a row of the tag table.
#pragma once

#include "document/presenter.h"
#include "profile/byte_io.h"
#include "profile/header.h"
#include "profile/profile.h"

#include <array>
#include <cstdint>
#include <string_view>

enum class icTagHandler : std::uint8_t {
    lut,                 // by the tag's type signature: lutAToB/lutBToA, lut8 or lut16 viewer
    curve,               // curve viewer, edited curve written back
    xyz,                 // XYZ viewer, values written back on OK
    chromaticAdaptation, // report
    dateTime,            // report
    luminance,           // report
    data,                // report
    text,                // report (large-text window from 500 characters on)
    textDescription,     // report of the ASCII description
    localizedText,       // localized-string viewer
    measurement,         // report
    viewingConditions,   // report
    technology,          // report
    screening,           // report
    deviceSettings,      // one box per platform
    sequenceV2,          // growing boxes with the ASCII descriptions
    sequenceV4,          // short boxes and localized-string viewers
    responseCurves,      // one box per measurement type
    namedColor,          // named colour viewer
    crdInfo,             // a fixed box; the tag's content is not shown
    hexDump,             // raw bytes
};

struct icCatalogueRow {
    icSignature signature;
    std::string_view label;   // profiles below version 4
    std::string_view labelV4; // version 4 and later
    icTagHandler handler;
    icTagHandler handlerV4;
};

namespace catalogue_detail {

constexpr icCatalogueRow row(const char (&sig)[5], std::string_view label, icTagHandler handler) {
    return {icSig(sig), label, label, handler, handler};
}
constexpr icCatalogueRow byVersion(const char (&sig)[5], std::string_view label,
                                   std::string_view labelV4, icTagHandler handler,
                                   icTagHandler handlerV4) {
    return {icSig(sig), label, labelV4, handler, handlerV4};
}

} // namespace catalogue_detail

// Every tag not in the catalogue opens in the hex dump window under this label.
inline constexpr std::string_view kPrivateTagLabel = "Private or Unsupported Tag";
// The localized-string viewer's caption when it is handed none (profile sequence texts).
inline constexpr std::string_view kLocalizedViewerCaption = "MultiLocalizedUnicodeType";

inline constexpr std::array kTagCatalogue = [] {
    using catalogue_detail::byVersion;
    using catalogue_detail::row;
    using H = icTagHandler;
    return std::array{
        row("A2B0", "AToB0 Tag", H::lut),
        row("A2B1", "AToB1 Tag", H::lut),
        row("A2B2", "AToB2 Tag", H::lut),
        row("B2A0", "BToA0 Tag", H::lut),
        row("B2A1", "BToA1 Tag", H::lut),
        row("B2A2", "BToA2 Tag", H::lut),
        row("gamt", "Gamut Tag", H::lut),
        row("pre0", "Preview0 Tag", H::lut),
        row("pre1", "Preview1 Tag", H::lut),
        row("pre2", "Preview2 Tag", H::lut),
        row("rTRC", "RedTRC Tag", H::curve),
        row("gTRC", "GreenTRC Tag", H::curve),
        row("bTRC", "BlueTRC Tag", H::curve),
        row("kTRC", "GrayTRC Tag", H::curve),
        byVersion("rXYZ", "RedColorant Tag", "RedMatrixColumn Tag", H::xyz, H::xyz),
        byVersion("gXYZ", "GreenColorant Tag", "GreenMatrixColumn Tag", H::xyz, H::xyz),
        byVersion("bXYZ", "BlueColorant Tag", "BlueMatrixColumn Tag", H::xyz, H::xyz),
        row("wtpt", "MediaWhitePoint Tag", H::xyz),
        row("bkpt", "MediaBlackPoint Tag", H::xyz),
        row("chad", "Chromatic Adaptation Tag", H::chromaticAdaptation),
        row("calt", "CalibrationDateTime Tag", H::dateTime),
        row("lumi", "Luminance Tag", H::luminance),
        row("ps2s", "PS2 Color Space Array Tag", H::data),
        row("psd0", "PS2 CRD (Perceptual) Tag", H::data),
        row("psd1", "PS2 CRD (Relative Colorimetric) Tag", H::data),
        row("psd2", "PS2 CRD (Saturation) Tag", H::data),
        row("psd3", "PS2 CRD (Absolute Colorimetric) Tag", H::data),
        row("ps2i", "PS2 Rendering Intent Tag", H::data),
        row("targ", "CharTarget Tag", H::text),
        byVersion("cprt", "Copyright Tag", "Copyright Tag", H::text, H::localizedText),
        byVersion("desc", "Profile Description Tag", "Profile Description Tag", H::textDescription,
                  H::localizedText),
        byVersion("dmnd", "Device Manufacture Tag", "Device Manufacture Tag", H::textDescription,
                  H::localizedText),
        byVersion("dmdd", "Device Model Description Tag", "Device Model Description Tag",
                  H::textDescription, H::localizedText),
        byVersion("vued", "Viewing Condition Desc Tag", "Viewing Condition Desc Tag",
                  H::textDescription, H::localizedText),
        byVersion("scrd", "Screening Description Tag", "Screening Description Tag",
                  H::textDescription, H::localizedText),
        row("meas", "Measurement Tag", H::measurement),
        row("view", "Viewing Conditions Tag", H::viewingConditions),
        row("tech", "Technology Tag", H::technology),
        row("scrn", "Screening Tag", H::screening),
        row("devs", "Device Settings Tag", H::deviceSettings),
        byVersion("pseq", "Profile Sequence Desc Tag", "Profile Sequence Desc Tag", H::sequenceV2,
                  H::sequenceV4),
        row("resp", "Output Response Tag", H::responseCurves),
        row("ncl2", "Named Color2 Tag", H::namedColor),
        row("crdi", "CrdInfo Tag", H::crdInfo),
    };
}();

struct icTagChoice {
    std::string_view label;
    icTagHandler handler;
};

// The label and handler for a tag signature in a profile of that raw header version (version 4
// from 0x04000000 on; anything smaller counts as version 2).
constexpr icTagChoice chooseTagHandler(icSignature tagSignature, std::uint32_t version) {
    const bool v4 = version >= kVersion4;
    for (const icCatalogueRow& row : kTagCatalogue)
        if (row.signature == tagSignature)
            return v4 ? icTagChoice{row.labelV4, row.handlerV4}
                      : icTagChoice{row.label, row.handler};
    return {kPrivateTagLabel, icTagHandler::hexDump};
}

// The colour space of a lut8/lut16 table's outputs: the PCS for 'A2B0' to 'A2B2', the data
// colour space for every other tag.
constexpr icSignature lutOutputSpace(icSignature tagSignature, const icHeader& header) {
    return tagSignature >= icSig("A2B0") && tagSignature <= icSig("A2B2") ? header.pcs
                                                                          : header.colorSpace;
}

// The boxes of a tag that cannot be decoded for its viewer, and of a viewer's changes that could
// not be stored.
inline constexpr std::string_view kInvalidFormat = "Invalid ICC format.";
inline constexpr std::string_view kCurveWriteFailed = "Error in updating the curve data.\n";
inline constexpr std::string_view kLutWriteFailed = "Error in writing the modified MLUT tag.\n";

// The write-back of a viewer that closed with OK and changed its tag: `bytes` (the changed
// tag's encoding) replace the tag at `index`, a shared block for every entry that shares it.
// When they cannot be stored the viewer's box is shown (`failedText`, one of the two above)
// and false returned.
bool writeBackTag(Presenter& presenter, iccProfileRW& profile, int index,
                  std::span<const std::uint8_t> bytes, std::string_view failedText);

// Show selected tag: runs the handler of the tag at directory `index` under its label. A
// negative index (no row selected) or one past the directory shows nothing. A handler failure
// is reported as "Failed in displaying tag." with its code, after whatever the handler showed
// itself; running out of memory raises the presenter's out-of-memory escalation instead.
// Returns the handler's status.
icStatus showTag(Presenter& presenter, iccProfileRW& profile, int index);

// One handler under a label, without the failure rule of showTag.
[[nodiscard]] icStatus runTagHandler(icTagHandler handler, Presenter& presenter,
                                     iccProfileRW& profile, int index, std::string_view label);
