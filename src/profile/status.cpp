#include "profile/status.h"

#include <array>
#include <utility>

namespace {

constexpr std::array<std::pair<icStatus, std::string_view>, 17> kMeanings{{
    {icOk, "success"},
    {icWarnHeader, "header warning: size or illuminant off"},
    {icWarnTagOffset, "a tag offset is not a multiple of 4"},
    {icErrGeneral, "general failure"},
    {icErrLowerLevel, "a lower-level step failed"},
    {icErrNumeric, "numeric failure"},
    {icErrCurve, "curve helper failure"},
    {icErrMatrix, "matrix helper failure"},
    {icErrNoMemory, "memory allocation failed"},
    {icErrInvalidArg, "invalid argument"},
    {icErrTruncated, "data too short for its counts"},
    {icErrPlot, "plotting failure"},
    {icErrFile, "file could not be opened, read or written"},
    {icErrSingular, "matrix is singular"},
    {icErrFileTarget, "operation needs a memory target"},
    {icErrBadProfile, "not a valid profile or tag"},
    {icErrWrongType, "wrong tag type signature"},
}};

// The reporter formats into a 255-character buffer; longer messages are cut.
constexpr std::size_t kReportBuffer = 255;

} // namespace

std::string_view statusMeaning(icStatus s) {
    for (const auto& [code, text] : kMeanings)
        if (code == s)
            return text;
    return "unknown status";
}

std::string errorReportText(icStatus code, std::string_view message) {
    std::string text(message.substr(0, kReportBuffer - 1));
    if (code != icOk) {
        text += " Errcode: " + std::to_string(code) + ".\n";
    } else {
        text += '\n';
    }
    return text;
}
