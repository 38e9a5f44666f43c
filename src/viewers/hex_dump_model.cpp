#include "viewers/hex_dump_model.h"

#include <algorithm>
#include <cstdlib>

std::string toEditBoxLineEnds(std::string_view text) {
    std::string out;
    out.reserve(text.size() * 2 + 10);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '\n' && i > 0 && out.back() != '\r')
            out += '\r';
        out += c;
        if (c == '\r' && i + 1 < text.size() && text[i + 1] != '\n')
            out += '\n';
    }
    return out;
}

bool isNumberTable(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    int rows = 0;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        bool numbers = false;
        for (std::size_t at = line.find_first_not_of(kBlanks); at != std::string_view::npos;
             at = line.find_first_not_of(kBlanks, at)) {
            const std::string token(line.substr(at, line.find_first_of(kBlanks, at) - at));
            char* end = nullptr;
            (void)std::strtod(token.c_str(), &end);
            if (end != token.c_str() + token.size())
                return false;
            numbers = true;
            at += token.size();
        }
        rows += numbers;
    }
    return rows >= 2;
}
