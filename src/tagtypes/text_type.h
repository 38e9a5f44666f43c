// 'text': one NUL-terminated ASCII string after the 8-byte tag header.
#pragma once

#include "tagtypes/tag_type.h"

#include <string>
#include <string_view>

class iccTextType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("text");
    iccTextType() : iccTagType(kSignature) {}

    icStatus decode() override { return checkSignature(); }
    // The text plus its NUL plus the header; a text without NUL counts up to the end of the
    // raw bytes, so such a tag is one byte short of its own size.
    std::uint64_t encodedSize() const override { return text().size() + 9; }

    // The text read in place, never past the raw bytes.
    std::string_view text() const;
    // Replaces the bytes by 'text', the reserved word, the text and its NUL.
    [[nodiscard]] icStatus setText(std::string_view text);
};
