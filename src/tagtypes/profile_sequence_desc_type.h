// 'pseq': the profiles that were combined into a device link or abstract profile, one
// description per profile with its device signatures and two embedded texts. Read only.
#pragma once

#include "tagtypes/multi_localized_unicode_type.h"
#include "tagtypes/tag_type.h"
#include "tagtypes/text_description_type.h"

#include <array>
#include <variant>
#include <vector>

// An embedded description text: a 'desc' (version 2) or an 'mluc' (version 4), or nothing.
class iccTextHolder {
public:
    // Makes an object of the class for `type` ('desc', any other signature 'mluc') and sets
    // the bytes through it. Bytes of the other text type give -1002.
    [[nodiscard]] icStatus load(icSignature type, std::span<const std::uint8_t> bytes);

    // 'desc', 'mluc', or 0 when empty.
    icSignature type() const;
    // The held object's raw size, 0 when empty.
    std::uint32_t rawSize() const;
    const iccTextDescriptionType* desc() const { return std::get_if<1>(&text_); }
    const iccMultiLocalizedUnicodeType* mluc() const { return std::get_if<2>(&text_); }

private:
    std::variant<std::monostate, iccTextDescriptionType, iccMultiLocalizedUnicodeType> text_;
};

struct icProfileDescription {
    static constexpr std::uint32_t kTextVersion2 = 0x2000000; // texts are 'desc'
    static constexpr std::uint32_t kTextVersion4 = 0x4000000; // texts are 'mluc'

    std::uint32_t textVersion = 0;
    std::uint32_t recordSize = 0; // 20 + the raw sizes of the two texts
    icSignature manufacturer = 0;
    icSignature model = 0;
    std::array<std::uint32_t, 2> attributes{}; // high word first
    icSignature technology = 0;
    iccTextHolder manufacturerText;
    iccTextHolder modelText;
};

class iccProfileSequenceDescType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("pseq");
    iccProfileSequenceDescType() : iccTagType(kSignature) {}

    void clear() override;
    // -1001 for a wrong signature or an embedded text of an unknown type, -12 when a count or
    // a text reaches past the bytes, -1002 when a model text differs in type from its
    // manufacturer text; otherwise the first failing text's own code.
    [[nodiscard]] icStatus decode() override;
    std::uint64_t encodedSize() const override;

    std::uint32_t recordCount() const { return static_cast<std::uint32_t>(records.size()); }

    std::vector<icProfileDescription> records;
};
