#include "tagtypes/profile_sequence_desc_type.h"

#include <new>

namespace {

constexpr icSignature kDesc = iccTextDescriptionType::kSignature;
constexpr icSignature kMluc = iccMultiLocalizedUnicodeType::kSignature;

// Device signatures, attributes and technology in front of a record's two texts.
constexpr std::uint64_t kRecordFields = 20;
// The smallest record: its fields and two empty 'mluc' texts.
constexpr std::uint64_t kSmallestRecord = kRecordFields + 2 * 16;

struct TextExtent {
    icSignature type = 0;
    std::uint64_t size = 0;
};

// Where an embedded text ends, from its own counts: for 'desc' n + 2 * (m + 45), for 'mluc'
// the header, the records and the sum of the string lengths (the strings are assumed to follow
// the records without gaps). -1001 for any other type or an 'mluc' record size other than 12;
// -12 when the counts reach past the bytes.
icStatus measureText(std::span<const std::uint8_t> bytes, std::size_t offset, TextExtent& out) {
    iccReader r(bytes);
    r.seek(offset);
    const std::size_t available = r.remaining();
    out.type = r.sig();
    r.skip(4);
    if (!r.ok())
        return icErrTruncated;
    if (out.type == kDesc) {
        const std::uint32_t asciiCount = r.u32();
        r.skip(asciiCount);
        r.skip(4);
        const std::uint32_t unicodeCount = r.u32();
        if (!r.ok())
            return icErrTruncated;
        out.size = std::uint64_t(asciiCount) + 2 * (std::uint64_t(unicodeCount) + 45);
    } else if (out.type == kMluc) {
        const std::uint32_t count = r.u32();
        const std::uint32_t recordSize = r.u32();
        if (!r.ok())
            return icErrTruncated;
        if (recordSize != iccMultiLocalizedUnicodeType::kRecordSize)
            return icErrBadProfile;
        if (std::uint64_t(count) * recordSize > r.remaining())
            return icErrTruncated;
        out.size = 16 + std::uint64_t(count) * recordSize;
        for (std::uint32_t i = 0; i < count; ++i) {
            r.skip(4);
            out.size += r.u32();
            r.skip(4);
        }
    } else {
        return icErrBadProfile;
    }
    return out.size > available ? icErrTruncated : icOk;
}

struct RecordExtent {
    std::size_t offset = 0;
    TextExtent manufacturer, model;
};

} // namespace

// ---- iccTextHolder --------------------------------------------------------------------------

icStatus iccTextHolder::load(icSignature type, std::span<const std::uint8_t> bytes) {
    iccTagType* text = nullptr;
    if (type == kDesc)
        text = &text_.emplace<iccTextDescriptionType>();
    else
        text = &text_.emplace<iccMultiLocalizedUnicodeType>();
    // The object only takes bytes of its own type.
    if (bytes.size() < 4 || loadBE32(bytes.data()) != text->ownSignature())
        return icErrWrongType;
    return text->setData(bytes);
}

icSignature iccTextHolder::type() const {
    if (desc())
        return kDesc;
    return mluc() ? kMluc : 0;
}

std::uint32_t iccTextHolder::rawSize() const {
    if (const auto* d = desc())
        return d->rawSize();
    if (const auto* m = mluc())
        return m->rawSize();
    return 0;
}

// ---- iccProfileSequenceDescType -------------------------------------------------------------

void iccProfileSequenceDescType::clear() {
    iccTagType::clear();
    records.clear();
}

std::uint64_t iccProfileSequenceDescType::encodedSize() const {
    std::uint64_t size = 12;
    for (const auto& record : records)
        size += record.recordSize;
    return size;
}

icStatus iccProfileSequenceDescType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    const auto bytes = raw();
    iccReader r(bytes);
    r.skip(8);
    const std::uint32_t count = r.u32();
    if (!r.ok() || count > r.remaining() / kSmallestRecord)
        return icErrTruncated;

    // First walk every record, so that an unknown or overlong text anywhere fails the whole
    // tag before any record is parsed.
    std::vector<RecordExtent> extents;
    try {
        extents.resize(count);
        std::uint64_t offset = 12;
        for (auto& extent : extents) {
            if (kRecordFields > bytes.size() - offset)
                return icErrTruncated;
            extent.offset = static_cast<std::size_t>(offset);
            offset += kRecordFields;
            if (icStatus s = measureText(bytes, offset, extent.manufacturer); s != icOk)
                return s;
            offset += extent.manufacturer.size;
            if (icStatus s = measureText(bytes, offset, extent.model); s != icOk)
                return s;
            offset += extent.model.size;
        }
        records.assign(count, icProfileDescription{});
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }

    for (std::uint32_t i = 0; i < count; ++i) {
        const RecordExtent& extent = extents[i];
        icProfileDescription& record = records[i];
        iccReader fields(bytes.subspan(extent.offset, kRecordFields));
        record.manufacturer = fields.sig();
        record.model = fields.sig();
        record.attributes[0] = fields.u32();
        record.attributes[1] = fields.u32();
        record.technology = fields.sig();
        // Both texts are read as the manufacturer text's type; a model text of the other type
        // is refused.
        const icSignature type = extent.manufacturer.type;
        record.textVersion = type == kDesc ? icProfileDescription::kTextVersion2
                                           : icProfileDescription::kTextVersion4;
        record.recordSize = static_cast<std::uint32_t>(kRecordFields);
        std::size_t at = extent.offset + kRecordFields;
        const auto manufacturerBytes = bytes.subspan(at, extent.manufacturer.size);
        if (icStatus s = record.manufacturerText.load(type, manufacturerBytes); icFailed(s))
            return s;
        record.recordSize += record.manufacturerText.rawSize();
        at += extent.manufacturer.size;
        const auto modelBytes = bytes.subspan(at, extent.model.size);
        if (icStatus s = record.modelText.load(type, modelBytes); icFailed(s))
            return s;
        record.recordSize += record.modelText.rawSize();
    }
    return icOk;
}
