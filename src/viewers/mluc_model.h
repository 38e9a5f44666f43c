// The localized-string viewer without widgets: the record count and size, one record's lines
// with the hex dump of its UTF-16 string, and stepping through the records.
#pragma once

#include "viewers/scroll_request.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class iccMultiLocalizedUnicodeType;

// "0X%X/'%s'": the code in hexadecimal and its two characters, high byte first.
std::string languageCodeText(std::uint16_t code);
// "0X%X/%u": hexadecimal first, although the label says decimal and hex.
std::string byteCountText(std::uint32_t value);

// The labels of a record's fields, in the dialog's order.
inline constexpr std::array<std::string_view, 4> kMlucRecordLabels{
    "Language Code:", "Country Code:", "Length in Bytes (decimal and hex):",
    "Offset in Bytes (decimal and hex):"};
inline constexpr std::string_view kMlucDefaultCaption = "MultiLocalizedUnicodeType";

class MlucModel {
public:
    explicit MlucModel(const iccMultiLocalizedUnicodeType& strings);

    std::uint32_t recordCount() const;
    // "%u" of the number of records and of the record size.
    std::string recordCountText() const;
    std::string recordSizeText() const;
    // "Number of Names:", and with at least one record "Name Record Size:".
    std::vector<std::string> headerLines() const;
    // The label at the right end of the scroll bar: the highest index.
    std::string highestIndexText() const;

    int index() const { return index_; }
    std::string indexText() const;
    // Record `index` (which must exist): the group title "Name Record #%d:", the values of the
    // four fields and the hex dump of its string, one line per 16 bytes.
    std::string recordTitle(int index) const;
    std::array<std::string, 4> recordValues(int index) const;
    std::vector<std::string> dumpLines(int index) const;
    // The title, the four labelled fields and the dump; nothing for an index without a record.
    std::vector<std::string> recordLines(int index) const;
    // What veltrino-cli prints for `viewer mluc`: the header, then every record.
    std::vector<std::string> lines() const;

    // Lines by 1, pages by 2, the thumb to its position; clamped to the records.
    void scroll(icScrollRequest request, std::int64_t thumb = 0);

private:
    const iccMultiLocalizedUnicodeType& strings_;
    int index_ = 0;
};
