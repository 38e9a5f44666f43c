#include "viewers/hex_dump_model.h"

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
