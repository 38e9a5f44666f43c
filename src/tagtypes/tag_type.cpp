#include "tagtypes/tag_type.h"

#include "profile/profile.h"

#include <algorithm>
#include <new>

// ---- iccTagData -----------------------------------------------------------------------------

void iccTagData::clear() {
    own_.clear();
    shared_.reset();
    sharedCapacity_ = 0;
    rawSize_ = 0;
}

std::span<const std::uint8_t> iccTagData::getData() {
    return hasRaw() ? raw() : std::span<const std::uint8_t>();
}

void iccTagData::adoptRaw(std::vector<std::uint8_t>&& padded) {
    own_ = std::move(padded);
    shared_.reset();
    sharedCapacity_ = 0;
}

icStatus iccTagData::ownRaw(std::size_t capacity) {
    try {
        if (!shared_) {
            if (own_.size() < capacity)
                own_.resize(capacity, 0);
            return icOk;
        }
        const std::size_t size = std::max(capacity, sharedCapacity_);
        std::vector<std::uint8_t> copy;
        copy.reserve(size);
        copy.assign(shared_.get(), shared_.get() + sharedCapacity_);
        copy.resize(size, 0);
        adoptRaw(std::move(copy));
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

std::uint8_t* iccTagData::writableRaw() {
    return ownRaw(0) == icOk ? own_.data() : nullptr;
}

icStatus iccTagData::assignRaw(std::span<const std::uint8_t> bytes) {
    if (bytes.size() > UINT32_MAX)
        return icErrInvalidArg;
    try {
        // Copy, then pad: zero-filling the whole buffer first would touch large tables twice.
        std::vector<std::uint8_t> copy;
        copy.reserve(roundUp4(bytes.size()));
        copy.assign(bytes.begin(), bytes.end());
        copy.resize(roundUp4(bytes.size()), 0);
        adoptRaw(std::move(copy));
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    rawSize_ = static_cast<std::uint32_t>(bytes.size());
    return icOk;
}

icStatus iccTagData::setRawSize(std::uint64_t size) {
    if (size > UINT32_MAX)
        return icErrInvalidArg;
    if (roundUp4(size) > rawCapacity())
        if (icStatus s = ownRaw(roundUp4(size)); s != icOk)
            return s;
    rawSize_ = static_cast<std::uint32_t>(size);
    return icOk;
}

icStatus iccTagData::setData(std::span<const std::uint8_t> bytes) {
    return assignRaw(bytes);
}

icStatus iccTagData::takeProfileBytes(std::span<const std::uint8_t> bytes,
                                      const iccProfile& profile) {
    if (bytes.data() == nullptr)
        return icErrBadProfile;
    auto shared = profile.shareTagBuffer(bytes);
    if (!shared)
        return assignRaw(bytes);
    own_ = {};
    shared_ = std::move(shared);
    sharedCapacity_ = roundUp4(bytes.size());
    rawSize_ = static_cast<std::uint32_t>(bytes.size());
    return icOk;
}

icStatus iccTagData::loadByIndex(int index, iccProfile& profile) {
    return takeProfileBytes(profile.getTagData(index), profile);
}

icStatus iccTagData::loadBySignature(icSignature sig, iccProfile& profile) {
    return takeProfileBytes(profile.getTagDataBySignature(sig), profile);
}

// ---- iccTagType -----------------------------------------------------------------------------

void iccTagType::clear() {
    iccTagData::clear();
    typeSig_ = 0;
    reserved_ = 0;
}

std::span<const std::uint8_t> iccTagType::getData() {
    if (rebuild() != icOk)
        return {};
    return iccTagData::getData();
}

void iccTagType::readCommonHeader() {
    iccReader r(raw());
    typeSig_ = r.sig();
    // The reserved bytes are kept as they stand, not byte-swapped.
    const auto reserved = r.bytes(4);
    reserved_ = reserved.empty()
                    ? 0
                    : (std::uint32_t(reserved[3]) << 24) | (std::uint32_t(reserved[2]) << 16) |
                          (std::uint32_t(reserved[1]) << 8) | reserved[0];
}

icStatus iccTagType::setData(std::span<const std::uint8_t> bytes) {
    clear();
    if (icStatus s = assignRaw(bytes); s != icOk)
        return s;
    readCommonHeader();
    // Checked against the cleared object, i.e. the type's minimum size, before decoding.
    if (rawSize_ < encodedSize())
        return icErrBadProfile;
    return decode();
}

icStatus iccTagType::setDataChecked(icSignature expected, std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 9)
        return icErrInvalidArg;
    if (loadBE32(bytes.data()) != expected)
        return icErrWrongType;
    return setData(bytes);
}

icStatus iccTagType::decodeLoaded(icStatus loaded) {
    if (loaded != icOk)
        return loaded;
    readCommonHeader();
    if (icStatus s = decode(); icFailed(s))
        return s;
    // Checked after decoding, against the decoded fields.
    if (rawSize_ < encodedSize())
        return icErrBadProfile;
    return icOk;
}

icStatus iccTagType::loadByIndex(int index, iccProfile& profile) {
    clear();
    return decodeLoaded(iccTagData::loadByIndex(index, profile));
}

icStatus iccTagType::loadBySignature(icSignature sig, iccProfile& profile) {
    clear();
    return decodeLoaded(iccTagData::loadBySignature(sig, profile));
}

icStatus iccTagType::adoptEncoded(std::vector<std::uint8_t>&& bytes) {
    if (bytes.size() > UINT32_MAX)
        return icErrInvalidArg;
    rawSize_ = static_cast<std::uint32_t>(bytes.size());
    try {
        bytes.resize(roundUp4(bytes.size()), 0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    adoptRaw(std::move(bytes));
    readCommonHeader();
    return icOk;
}
