// Status codes of the profile library: 0 success, negative failure, positive warning.
// Every library operation returns one of these; the first failure's code travels up unchanged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

enum icStatus : std::int32_t {
    icOk = 0,
    icWarnHeader = 1000,     // file length differs from the header size, or illuminant off
    icWarnTagOffset = 1003,  // a tag offset is not a multiple of 4
    icErrGeneral = -1,       // not found, empty directory, missing 'desc', seek/write failure
    icErrLowerLevel = -2,    // a lower-level step failed in a viewer or the tag dispatch
    icErrNumeric = -4,       // numeric helper failure
    icErrCurve = -8,         // curve helper: bad sizes
    icErrMatrix = -9,        // matrix helper: missing data
    icErrNoMemory = -10,     // allocation failed
    icErrInvalidArg = -11,   // index or count out of range, buffer too short
    icErrTruncated = -12,    // raw bytes too short for the counts they declare
    icErrPlot = -25,         // plotting helper failure
    icErrFile = -100,        // file could not be opened, read or written; MD5 failure
    icErrSingular = -200,    // matrix is singular
    icErrFileTarget = -301,  // Profile ID or zero-fill asked on a file target
    icErrBadProfile = -1001, // not a valid profile, or a tag of another type
    icErrWrongType = -1002,  // buffer does not start with the expected type signature
};

constexpr bool icFailed(icStatus s) {
    return s < 0;
}

// Short English meaning of a code, for logs and the command line's diagnostics.
std::string_view statusMeaning(icStatus s);

// The error reporter's text: the message cut to 254 characters, then " Errcode: N.\n" when the
// code is not 0, or a single line feed when it is.
std::string errorReportText(icStatus code, std::string_view message);
