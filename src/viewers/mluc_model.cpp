#include "viewers/mluc_model.h"

#include "document/text_format.h"
#include "tagtypes/multi_localized_unicode_type.h"
#include "viewers/hex_dump_model.h"

std::string languageCodeText(std::uint16_t code) {
    std::string chars;
    for (const char c : {char(code >> 8), char(code & 0xFF)}) {
        if (c == '\0')
            break;
        chars += c;
    }
    return formatText("0X%X/'", unsigned(code)) + chars + "'";
}

std::string byteCountText(std::uint32_t value) {
    return formatText("0X%X/%u", value, value);
}

MlucModel::MlucModel(const iccMultiLocalizedUnicodeType& strings) : strings_(strings) {}

std::uint32_t MlucModel::recordCount() const {
    return static_cast<std::uint32_t>(strings_.records.size());
}

std::string MlucModel::recordCountText() const {
    return formatText("%u", strings_.recordCount);
}

std::string MlucModel::recordSizeText() const {
    return formatText("%u", strings_.recordSize);
}

std::vector<std::string> MlucModel::headerLines() const {
    std::vector<std::string> lines{"Number of Names: " + recordCountText()};
    if (recordCount() > 0)
        lines.push_back("Name Record Size: " + recordSizeText());
    return lines;
}

std::string MlucModel::highestIndexText() const {
    return formatText("%d", static_cast<int>(recordCount()) - 1);
}

std::string MlucModel::indexText() const {
    return formatText("%d", index_);
}

std::string MlucModel::recordTitle(int index) const {
    return formatText("Name Record #%d:", index);
}

std::array<std::string, 4> MlucModel::recordValues(int index) const {
    const icNameRecord& record = strings_.records[static_cast<std::size_t>(index)];
    return {languageCodeText(record.language), languageCodeText(record.country),
            byteCountText(record.length), byteCountText(record.offset)};
}

std::vector<std::string> MlucModel::dumpLines(int index) const {
    if (static_cast<std::size_t>(index) >= strings_.strings.size())
        return {};
    return hexDumpLines(strings_.strings[static_cast<std::size_t>(index)]);
}

std::vector<std::string> MlucModel::recordLines(int index) const {
    std::vector<std::string> lines;
    if (index < 0 || static_cast<std::uint32_t>(index) >= recordCount())
        return lines;
    lines.push_back(recordTitle(index));
    const std::array<std::string, 4> values = recordValues(index);
    for (std::size_t i = 0; i < values.size(); ++i)
        lines.push_back(std::string(kMlucRecordLabels[i]) + " " + values[i]);
    for (std::string& line : dumpLines(index))
        lines.push_back(std::move(line));
    return lines;
}

std::vector<std::string> MlucModel::lines() const {
    std::vector<std::string> lines = headerLines();
    for (std::uint32_t i = 0; i < recordCount(); ++i)
        for (std::string& line : recordLines(static_cast<int>(i)))
            lines.push_back(std::move(line));
    return lines;
}

void MlucModel::scroll(icScrollRequest request, std::int64_t thumb) {
    index_ = static_cast<int>(
        std::max<std::int64_t>(0, clampIndex(scrollTarget(index_, request, thumb, 2), 0,
                                             std::int64_t(recordCount()) - 1)));
}
