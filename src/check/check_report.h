// The findings of a check as text lines and as JSON, for the command line and the Check window.
#pragma once

#include "check/profile_check.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The TAG column: the signature without trailing blanks ("bfd", as the command line's TAG
// argument takes it), other bytes outside printable ASCII as \xHH; "-" for no tag.
std::string findingTag(const icFinding& finding);
// The offset in decimal, "-" for none.
std::string findingOffset(const icFinding& finding);
// "SEVERITY OFFSET TAG CODE: message".
std::string findingLine(const icFinding& finding);

// "valid", "warnings" or "errors".
std::string_view verdictName(icVerdict verdict);
// "verdict: errors (1 error, 2 warnings, 3 info)".
std::string verdictLine(const icCheckReport& report);
// The lines of one file: "=== PATH", one line per finding, the verdict line; each ends in "\n".
std::string reportText(std::string_view path, const icCheckReport& report);

using icCheckedFile = std::pair<std::string, icCheckReport>;
// One JSON document: an array of {file, verdict, findings: [{severity, code, offset, tag,
// index, message}]}, where offset, tag and index are null when the finding has none. Bytes of
// file names that are not UTF-8 become U+FFFD. Empty only when memory runs out.
std::string reportsJson(std::span<const icCheckedFile> files);
