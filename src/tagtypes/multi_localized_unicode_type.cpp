#include "tagtypes/multi_localized_unicode_type.h"

#include <algorithm>
#include <cstring>
#include <new>

void iccMultiLocalizedUnicodeType::clear() {
    iccTagType::clear();
    recordCount = 0;
    recordSize = kRecordSize;
    records.clear();
    strings.clear();
}

std::uint64_t iccMultiLocalizedUnicodeType::encodedSize() const {
    std::uint64_t size = 16 + std::uint64_t(kRecordSize) * recordCount;
    for (const auto& record : records)
        size += record.length;
    return size;
}

icStatus iccMultiLocalizedUnicodeType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    iccReader r(raw());
    r.skip(8);
    const std::uint32_t count = r.u32();
    recordSize = r.u32();
    if (!r.ok())
        return icErrTruncated;
    if (recordSize != kRecordSize)
        return icErrBadProfile;
    if (std::uint64_t(count) * kRecordSize > r.remaining())
        return icErrTruncated;
    std::uint64_t total = 16 + std::uint64_t(kRecordSize) * count;
    try {
        records.resize(count);
        strings.resize(count);
        for (std::uint32_t i = 0; i < count; ++i) {
            icNameRecord& record = records[i];
            record.language = r.u16();
            record.country = r.u16();
            record.length = r.u32();
            record.offset = r.u32();
            if (std::uint64_t(record.offset) + record.length > rawSize_)
                return icErrTruncated;
            const auto* begin = raw().data() + record.offset;
            strings[i].assign(begin, begin + record.length);
            total += record.length;
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    recordCount = count;
    return setRawSize(total);
}

icStatus iccMultiLocalizedUnicodeType::rebuild() {
    if (rawSize_ == 0)
        return icErrGeneral;
    std::vector<std::uint8_t> bytes;
    try {
        bytes.assign(rawSize_, 0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    storeBE32(bytes.data(), kSignature);
    if (bytes.size() >= 16) {
        storeBE32(bytes.data() + 8, recordCount);
        storeBE32(bytes.data() + 12, recordSize);
    }
    const std::uint32_t count = std::min<std::uint32_t>(recordCount, records.size());
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t at = 16 + std::uint64_t(i) * recordSize;
        if (at + kRecordSize > bytes.size())
            break;
        const icNameRecord& record = records[i];
        storeBE16(&bytes[at], record.language);
        storeBE16(&bytes[at + 2], record.country);
        storeBE32(&bytes[at + 4], record.length);
        storeBE32(&bytes[at + 8], record.offset);
    }
    // Every string is written with the length of the last record, as the format has always
    // been written here; a string shorter than that is followed by zeros, and nothing is
    // written past the tag.
    const std::uint32_t length = count ? records[count - 1].length : 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint64_t at = records[i].offset;
        if (at >= bytes.size())
            continue;
        const std::size_t room =
            static_cast<std::size_t>(std::min<std::uint64_t>(length, bytes.size() - at));
        const std::size_t n = std::min(room, strings[i].size());
        std::copy_n(strings[i].begin(), n, bytes.begin() + static_cast<std::ptrdiff_t>(at));
    }
    return adoptEncoded(std::move(bytes));
}

icStatus iccMultiLocalizedUnicodeType::setRecord(std::uint32_t index, const icNameRecord& record) {
    if (index >= records.size() || index >= strings.size())
        return icErrInvalidArg;
    try {
        strings[index].assign(record.length, 0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    records[index] = record;
    return icOk;
}

icStatus iccMultiLocalizedUnicodeType::layoutRecords(std::span<const std::uint16_t> languages,
                                                     std::span<const std::uint16_t> countries,
                                                     std::span<const std::uint32_t> lengths) {
    const std::size_t count = lengths.size();
    if (languages.size() != count || countries.size() != count || count > UINT32_MAX / 12)
        return icErrInvalidArg;
    try {
        records.assign(count, icNameRecord{});
        strings.assign(count, {});
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    recordCount = static_cast<std::uint32_t>(count);
    recordSize = kRecordSize;
    std::uint64_t offset = 16 + std::uint64_t(kRecordSize) * count;
    for (std::size_t i = 0; i < count; ++i) {
        if (offset + lengths[i] > UINT32_MAX)
            return icErrInvalidArg;
        const icNameRecord record{languages[i], countries[i], lengths[i],
                                  static_cast<std::uint32_t>(offset)};
        if (icStatus s = setRecord(static_cast<std::uint32_t>(i), record); s != icOk)
            return s;
        offset += lengths[i];
    }
    return setRawSize(offset);
}

icStatus iccMultiLocalizedUnicodeType::setFromAscii(std::string_view text) {
    clear();
    text = text.substr(0, text.find('\0'));
    if (text.size() > UINT32_MAX / 4)
        return icErrInvalidArg;
    const std::uint16_t language = static_cast<std::uint16_t>(('e' << 8) | 'n');
    const std::uint16_t country = static_cast<std::uint16_t>(('U' << 8) | 'S');
    const std::uint32_t length = 2 * static_cast<std::uint32_t>(text.size()) + 2;
    icStatus s = layoutRecords({&language, 1}, {&country, 1}, {&length, 1});
    if (s == icOk) {
        // Each byte zero-extended to a UTF-16 unit, big-endian as in the file.
        auto& units = strings[0];
        for (std::size_t i = 0; i < text.size(); ++i)
            units[2 * i + 1] = static_cast<std::uint8_t>(text[i]);
        typeSig_ = kSignature;
        s = rebuild();
    }
    if (s != icOk)
        clear();
    return s;
}
