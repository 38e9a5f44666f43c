// printf-style formatting into a std::string, for the program's fixed report and label formats.
#pragma once

#include <cstdarg>
#include <cstdio>
#include <string>

// The whole formatted text, however long; an encoding error gives an empty text.
[[gnu::format(printf, 1, 2)]] inline std::string formatText(const char* fmt, ...) {
    char small[256];
    std::va_list args;
    va_start(args, fmt);
    const int length = std::vsnprintf(small, sizeof small, fmt, args);
    va_end(args);
    if (length < 0)
        return {};
    if (static_cast<std::size_t>(length) < sizeof small)
        return std::string(small, static_cast<std::size_t>(length));
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    va_start(args, fmt);
    std::vsnprintf(text.data(), text.size(), fmt, args);
    va_end(args);
    text.resize(static_cast<std::size_t>(length));
    return text;
}
