#include "profile/byte_io.h"

std::string sigToText(icSignature sig) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char c = static_cast<char>((sig >> shift) & 0xFF);
        if (c == '\0')
            break;
        text += c;
    }
    return text;
}

icSignature textToSig(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    icSignature sig = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::uint8_t c = i < text.size() ? static_cast<std::uint8_t>(text[i]) : 0;
        sig = (sig << 8) | c;
    }
    return sig;
}
