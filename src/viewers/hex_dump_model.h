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

// Whether a message is a table of numbers, such as the rows of the chromatic adaptation matrix:
// two or more lines, every one of them numbers between blanks. Such a text is shown in the
// system's fixed-width font so that its columns line up.
bool isNumberTable(std::string_view text);
