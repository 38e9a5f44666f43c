// What the library asks of a user interface: message boxes and the large-text window. The
// desktop program shows real dialogs, the command line prints blocks, tests record.
#pragma once

#include "document/hex_dump.h"
#include "profile/byte_io.h"
#include "profile/status.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

class iccCurveElement;
class iccXYZType;
class iccMftLut;
class iccMlutType;
class iccMultiLocalizedUnicodeType;
struct icNamedColor2;

enum class icBoxKind {
    info,    // plain message box
    warning, // warning icon
    stop,    // stop icon; the error reporter
};

inline constexpr std::string_view kCaption = "Veltrino";
inline constexpr std::string_view kOutOfMemoryText = "Out of memory.";

// How a modal viewer closed: with OK or not, and whether it changed the object it was given.
// A negative status means the viewer could not be set up at all.
struct icViewerResult {
    bool accepted = false;
    bool modified = false;
    icStatus status = icOk;
};

class Presenter {
public:
    virtual ~Presenter() = default;
    virtual void messageBox(icBoxKind kind, std::string_view caption, std::string_view text) = 0;

    // The large-text window, for a report too long for a message box. A presenter without such
    // a window shows the text in a plain box, so nothing is lost.
    virtual void showLargeText(std::string_view caption, std::string_view text) {
        messageBox(icBoxKind::info, caption, text);
    }
    // The hex dump window over a tag's raw bytes, given as its formatted lines (one per 16
    // bytes). Returns when the window is closed; a presenter without one shows the lines in a
    // plain box.
    virtual void showHexDump(std::string_view caption, const std::vector<std::string>& lines) {
        std::string text;
        for (const std::string& line : lines)
            text += line + '\n';
        messageBox(icBoxKind::info, caption, text);
    }

    // The tag viewers. Each runs modally on the object the tag handler decoded and may change
    // it in place; the handler writes back what the result reports. A presenter without a
    // viewer of that kind shows nothing and answers as if it had been cancelled.
    virtual icViewerResult curveViewer(std::string_view /*caption*/, iccCurveElement& /*curve*/) {
        return {};
    }
    // The viewer edits X, Y and Z of the object; the handler stores them on OK.
    virtual icViewerResult xyzViewer(std::string_view /*caption*/, iccXYZType& /*xyz*/) {
        return {};
    }
    // A lut8 or lut16 table; `outputSpace` is the colour space of its outputs.
    virtual icViewerResult lutViewer(std::string_view /*caption*/, iccMftLut& /*lut*/,
                                     icSignature /*outputSpace*/) {
        return {};
    }
    virtual icViewerResult mlutViewer(std::string_view /*caption*/, iccMlutType& /*lut*/) {
        return {};
    }
    // Display only: nothing is written back.
    virtual icViewerResult namedColorViewer(std::string_view /*caption*/,
                                            const icNamedColor2& /*colors*/, icSignature /*pcs*/) {
        return {};
    }
    virtual icViewerResult mlucViewer(std::string_view /*caption*/,
                                      const iccMultiLocalizedUnicodeType& /*strings*/) {
        return {};
    }
    virtual icViewerResult hexDumpViewer(std::string_view caption,
                                         std::span<const std::uint8_t> bytes) {
        showHexDump(caption, hexDumpLines(bytes));
        return {true, false, icOk};
    }

    // A tag handler ran out of memory: the command is abandoned with this box instead of the
    // usual failure report.
    virtual void outOfMemory() { messageBox(icBoxKind::stop, kCaption, kOutOfMemoryText); }
};

// The error reporter: a stop box with the message and " Errcode: N." (or a plain line feed
// when the code is 0). Returns the code, so a caller can report and return in one step.
inline icStatus reportError(Presenter& presenter, icStatus code, std::string_view caption,
                            std::string_view message) {
    presenter.messageBox(icBoxKind::stop, caption, errorReportText(code, message));
    return code;
}
