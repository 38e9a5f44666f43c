// 'mluc': name records (language, country, UTF-16 string) of version-4 profiles.
#pragma once

#include "tagtypes/tag_type.h"

#include <string_view>
#include <vector>

struct icNameRecord {
    std::uint16_t language = 0;
    std::uint16_t country = 0;
    std::uint32_t length = 0; // bytes
    std::uint32_t offset = 0; // from the start of the tag
};

class iccMultiLocalizedUnicodeType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("mluc");
    static constexpr std::uint32_t kRecordSize = 12;
    iccMultiLocalizedUnicodeType() : iccTagType(kSignature) {}

    void clear() override;
    [[nodiscard]] icStatus decode() override;
    [[nodiscard]] icStatus rebuild() override;
    std::uint64_t encodedSize() const override;

    // Stores record `index` and gives it a fresh zeroed string buffer of `length` bytes.
    [[nodiscard]] icStatus setRecord(std::uint32_t index, const icNameRecord& record);
    // Lays out one record per entry, each string right after the previous one.
    [[nodiscard]] icStatus layoutRecords(std::span<const std::uint16_t> languages,
                                         std::span<const std::uint16_t> countries,
                                         std::span<const std::uint32_t> lengths);
    // One "en"/"US" record holding the text widened to UTF-16 with a terminating 0.
    [[nodiscard]] icStatus setFromAscii(std::string_view text);

    std::uint32_t recordCount = 0;
    std::uint32_t recordSize = kRecordSize;
    std::vector<icNameRecord> records;
    // Each record's string bytes in file order (big-endian UTF-16), as the viewers show them.
    std::vector<std::vector<std::uint8_t>> strings;
};
