// The texts of the hex dump window and the large-text window, free of any toolkit.
#pragma once

#include "document/hex_dump.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// Caption of the hex dump window when it is handed no label.
inline constexpr std::string_view kHexDumpDefaultCaption = "Private or UnknownTag";

// Line ends for a multi-line edit box: a bare line feed becomes CR LF and a bare carriage return
// gains its line feed, except a line feed at the very start and a carriage return at the very
// end, which stay as they are.
std::string toEditBoxLineEnds(std::string_view text);
