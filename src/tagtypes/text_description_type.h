// 'desc': the version-2 profile description with its ASCII, Unicode and ScriptCode parts.
#pragma once

#include "tagtypes/tag_type.h"

#include <array>
#include <string_view>
#include <vector>

class iccTextDescriptionType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("desc");
    iccTextDescriptionType() : iccTagType(kSignature) {}

    void clear() override;
    [[nodiscard]] icStatus decode() override;
    [[nodiscard]] icStatus rebuild() override;
    std::uint64_t encodedSize() const override {
        return std::uint64_t(asciiCount) + 2 * std::uint64_t(unicodeCount) + 90;
    }

    // Description built from an ASCII text: the text with its NUL, the same text widened to
    // UTF-16 behind a byte-order mark, and as much of it as the ScriptCode part holds.
    [[nodiscard]] icStatus setFromAscii(std::string_view text);

    // The ASCII text up to its first NUL.
    std::string_view asciiText() const;

    std::uint32_t asciiCount = 0;    // bytes including the NUL
    std::vector<std::uint8_t> ascii; // asciiCount bytes
    std::uint32_t unicodeLanguage = 0;
    std::uint32_t unicodeCount = 0;     // characters
    std::vector<std::uint16_t> unicode; // unicodeCount characters
    std::uint16_t scriptCode = 0;
    std::uint8_t scriptCount = 0;
    std::array<std::uint8_t, 67> scriptText{};
};
