#include "tagtypes/text_type.h"

#include <algorithm>

std::string_view iccTextType::text() const {
    const auto bytes = raw();
    if (bytes.size() <= 8)
        return {};
    const auto* begin = reinterpret_cast<const char*>(bytes.data()) + 8;
    const auto* end = reinterpret_cast<const char*>(bytes.data()) + bytes.size();
    return {begin, static_cast<std::size_t>(std::find(begin, end, '\0') - begin)};
}

icStatus iccTextType::setText(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    std::vector<std::uint8_t> bytes;
    iccWriter w(bytes);
    w.sig(kSignature);
    w.u32(0);
    w.bytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    w.u8(0);
    return setData(bytes);
}
