#include "tagtypes/text_description_type.h"

#include <algorithm>
#include <new>

void iccTextDescriptionType::clear() {
    iccTagType::clear();
    asciiCount = 0;
    ascii.clear();
    unicodeLanguage = 0;
    unicodeCount = 0;
    unicode.clear();
    scriptCode = 0;
    scriptCount = 0;
    scriptText.fill(0);
}

icStatus iccTextDescriptionType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    iccReader r(raw());
    r.skip(8);
    asciiCount = r.u32();
    // Counts are checked against the bytes that are there before anything is allocated.
    if (asciiCount > r.remaining())
        return icErrTruncated;
    const auto asciiBytes = r.bytes(asciiCount);
    unicodeLanguage = r.u32();
    unicodeCount = r.u32();
    if (std::uint64_t(unicodeCount) * 2 > r.remaining())
        return icErrTruncated;
    try {
        ascii.assign(asciiBytes.begin(), asciiBytes.end());
        unicode.resize(unicodeCount);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    for (auto& c : unicode)
        c = r.u16();
    // Some writers store only the ScriptCode characters they use instead of the whole 67-byte
    // field, or leave the part out. What is missing of it reads as zeros; the ASCII and
    // Unicode parts before it must be complete.
    std::array<std::uint8_t, 3 + 67> script{};
    const auto present = r.bytes(std::min(r.remaining(), script.size()));
    std::copy(present.begin(), present.end(), script.begin());
    scriptCode = loadBE16(script.data());
    scriptCount = script[2];
    // Compared as a signed byte: counts of 128 to 255 pass.
    if (static_cast<std::int8_t>(scriptCount) > 67)
        return icErrNoMemory;
    std::copy(script.begin() + 3, script.end(), scriptText.begin());
    return setRawSize(encodedSize());
}

icStatus iccTextDescriptionType::rebuild() {
    if (rawSize_ == 0)
        return icErrGeneral;
    const auto fields = [this](iccWriter& w) {
        w.u32(asciiCount);
        w.bytes(std::span(ascii).first(std::min<std::size_t>(ascii.size(), asciiCount)));
        w.zeros(asciiCount - std::min<std::size_t>(ascii.size(), asciiCount));
        w.u32(unicodeLanguage);
        w.u32(unicodeCount);
        for (std::uint32_t i = 0; i < unicodeCount; ++i)
            w.u16(i < unicode.size() ? unicode[i] : 0);
        w.u16(scriptCode);
        w.u8(scriptCount);
        w.bytes(scriptText);
    };
    std::vector<std::uint8_t> bytes;
    if (icStatus s = encodeFields(bytes, fields); s != icOk)
        return s;
    return adoptEncoded(std::move(bytes));
}

icStatus iccTextDescriptionType::setFromAscii(std::string_view text) {
    clear();
    text = text.substr(0, text.find('\0'));
    if (text.size() >= UINT32_MAX / 4)
        return icErrInvalidArg;
    const auto length = static_cast<std::uint32_t>(text.size());
    try {
        asciiCount = length + 1;
        ascii.assign(text.begin(), text.end());
        ascii.push_back(0);
        unicodeCount = length + 2;
        unicode.reserve(unicodeCount);
        unicode.push_back(0xFEFF);
        // Each byte widened as a signed byte: 0x80-0xFF become 0xFF80-0xFFFF.
        for (char c : text)
            unicode.push_back(
                static_cast<std::uint16_t>(static_cast<std::int16_t>(static_cast<std::int8_t>(c))));
        unicode.push_back(0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    const std::size_t copied = length < 67 ? length : 66;
    scriptCount = static_cast<std::uint8_t>(length < 67 ? length + 1 : 67);
    std::copy_n(text.begin(), copied, scriptText.begin());
    typeSig_ = kSignature;
    icStatus s = setRawSize(encodedSize());
    if (s == icOk)
        s = rebuild();
    if (s != icOk)
        clear();
    return s;
}

std::string_view iccTextDescriptionType::asciiText() const {
    const auto* begin = reinterpret_cast<const char*>(ascii.data());
    const auto end = std::find(ascii.begin(), ascii.end(), 0);
    return {begin, static_cast<std::size_t>(end - ascii.begin())};
}
