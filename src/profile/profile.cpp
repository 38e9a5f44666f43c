#include "profile/profile.h"

#include "profile/file_io.h"
#include "profile/profile_id.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <thread>

namespace {

// A tag buffer of `size` bytes rounded up to a multiple of four; the padding is zeroed so that
// nothing uninitialised can leak into a decoder or a file.
std::shared_ptr<std::uint8_t[]> allocateTagBuffer(std::uint32_t size) {
    try {
        const std::uint64_t padded = roundUp4(size);
        auto bytes = std::make_shared_for_overwrite<std::uint8_t[]>(padded);
        std::memset(bytes.get() + size, 0, padded - size);
        return bytes;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

// ---- iccProfileBase -------------------------------------------------------------------------

std::span<const std::uint8_t> iccProfileBase::heldBytes(int owner, int index) const {
    if (!validIndex(owner) || !validIndex(index) || !tagData_[owner].bytes)
        return {};
    const TagBuffer& buffer = tagData_[owner];
    // An entry linked by offset may claim more bytes than its owner holds: never hand out more.
    return {buffer.bytes.get(), std::min(tags_[index].size, buffer.size)};
}

std::span<const std::uint8_t> iccProfileBase::getTagData(int index) {
    return heldBytes(index, index);
}

const icTag* iccProfileBase::getEntry(int index) const {
    if (index < 0 || index > tagCount_ || index >= kMaxTags)
        return nullptr;
    return &tags_[index];
}

int iccProfileBase::findTag(icSignature sig) const {
    for (int i = 0; i < tagCount_; ++i)
        if (tags_[i].sig == sig)
            return i;
    return -1;
}

std::shared_ptr<const std::uint8_t[]>
iccProfileBase::shareTagBuffer(std::span<const std::uint8_t> bytes) const {
    if (bytes.data() == nullptr || bytes.empty())
        return nullptr;
    for (int i = 0; i < tagCount_; ++i) {
        const TagBuffer& buffer = tagData_[i];
        if (buffer.bytes.get() == bytes.data() && buffer.size == bytes.size())
            return buffer.bytes;
    }
    return nullptr;
}

icSignature iccProfileBase::getTagTypeSignature(int index) {
    const auto bytes = getTagData(index);
    if (bytes.data() == nullptr || bytes.size() < 4)
        return 0xFFFFFFFF;
    return loadBE32(bytes.data());
}

void iccProfileBase::reset() {
    for (auto& buffer : tagData_)
        buffer = TagBuffer{};
    tags_.fill(icTag{});
    tagCount_ = 0;
    stream_.close();
}

// ---- iccProfile -----------------------------------------------------------------------------

std::span<const std::uint8_t> iccProfile::getTagData(int index) {
    if (!validIndex(index))
        return {};
    TagBuffer& buffer = tagData_[index];
    if (!buffer.bytes) {
        const icTag& entry = tags_[index];
        // Check the entry against the source before allocating: a hostile size must not
        // reserve gigabytes for bytes that are not there.
        const std::int64_t length = stream_.length();
        if (length < 0 || std::uint64_t(entry.offset) + entry.size > std::uint64_t(length))
            return {};
        buffer.bytes = allocateTagBuffer(entry.size);
        if (!buffer.bytes)
            return {};
        buffer.size = entry.size;
        if (!stream_.seek(entry.offset) || !stream_.read(buffer.bytes.get(), entry.size)) {
            // The buffer stays attached, as its bytes were asked for; clear what the read left.
            std::memset(buffer.bytes.get(), 0, roundUp4(entry.size));
            return {};
        }
    }
    return heldBytes(index, index);
}

std::span<const std::uint8_t> iccProfile::getTagDataBySignature(icSignature sig) {
    const int index = findTag(sig);
    return index < 0 ? std::span<const std::uint8_t>() : getTagData(index);
}

icStatus iccProfile::readHeader(std::int64_t length) {
    if (length < static_cast<std::int64_t>(kHeaderSize))
        return icErrBadProfile;
    std::array<std::uint8_t, kHeaderSize> bytes{};
    if (!stream_.seek(0) || !stream_.read(bytes.data(), bytes.size()))
        return icErrBadProfile;
    header_ = headerFromBytes(bytes);
    // A warning (size or illuminant) is no reason to refuse a profile.
    if (icFailed(validateHeader(header_, length)))
        return icErrBadProfile;
    if (header_.size > static_cast<std::uint64_t>(length))
        header_.size = static_cast<std::uint32_t>(length);
    return icOk;
}

icStatus iccProfile::readDirectory() {
    std::uint8_t countBytes[4];
    if (!stream_.seek(kHeaderSize) || !stream_.read(countBytes, sizeof countBytes))
        return icErrBadProfile;
    const std::uint32_t count = loadBE32(countBytes);
    // The directory holds at most 50 entries; a larger (or negative) count is refused.
    if (count > static_cast<std::uint32_t>(kMaxTags))
        return icErrBadProfile;
    std::array<std::uint8_t, 12 * kMaxTags> entries{};
    if (!stream_.read(entries.data(), 12 * count))
        return icErrBadProfile;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint8_t* p = entries.data() + 12 * i;
        tags_[i] = {loadBE32(p), loadBE32(p + 4), loadBE32(p + 8)};
    }
    tagCount_ = static_cast<int>(count);
    return icOk;
}

icStatus iccProfile::loadFromFile(const std::string& path) {
    reset();
    if (!stream_.openFile(path))
        return icErrFile;
    readOnly_ = true;
    if (icStatus s = readHeader(stream_.length()); s != icOk)
        return s;
    return readDirectory();
}

icStatus iccProfile::loadFromMemory(std::span<const std::uint8_t> data) {
    if (data.size() < kHeaderSize + 4)
        return icErrBadProfile;
    reset();
    iccMemoryStream memory = iccMemoryStream::forReading(data);
    if (!memory.ok())
        return icErrNoMemory;
    stream_.openMemory(std::move(memory));
    readOnly_ = true;
    if (icStatus s = readHeader(stream_.length()); s != icOk)
        return s;
    return readDirectory();
}

// ---- iccProfileRW: loading ------------------------------------------------------------------

iccProfileRW::iccProfileRW() {
    readOnly_ = false;
    for (int i = 0; i < kMaxTags; ++i)
        links_[i] = i;
    header_ = defaultHeader();
}

std::span<const std::uint8_t> iccProfileRW::getTagData(int index) {
    if (!validIndex(index))
        return {};
    const int owner = links_[index];
    if (owner == index)
        return iccProfile::getTagData(index);
    iccProfile::getTagData(owner);
    return heldBytes(owner, index);
}

icStatus iccProfileRW::loadEverything(icStatus loaded) {
    for (int i = 0; i < kMaxTags; ++i)
        links_[i] = i;
    if (loaded != icOk)
        return loaded;
    // Entries at the same offset share one buffer, read once (only the offset is compared).
    // An empty block has nothing to share: the layout places the tag after an empty one at the
    // same offset, and linking the two would lose that tag's bytes.
    for (int i = 1; i < tagCount_; ++i) {
        for (int j = 0; j < i; ++j) {
            if (tags_[j].offset == tags_[i].offset && (tags_[j].size > 0 || tags_[i].size == 0)) {
                links_[i] = j;
                break;
            }
        }
    }
    for (int i = 0; i < tagCount_; ++i)
        if (links_[i] == i && getTagData(i).data() == nullptr)
            return icErrBadProfile;
    stream_.close();
    readOnly_ = false;
    return icOk;
}

icStatus iccProfileRW::loadFromFile(const std::string& path) {
    return loadEverything(iccProfile::loadFromFile(path));
}

icStatus iccProfileRW::loadFromMemory(std::span<const std::uint8_t> data) {
    return loadEverything(iccProfile::loadFromMemory(data));
}

// ---- iccProfileRW: editing ------------------------------------------------------------------

icStatus iccProfileRW::storeOwned(int owner, std::span<const std::uint8_t> bytes) {
    auto buffer = allocateTagBuffer(static_cast<std::uint32_t>(bytes.size()));
    if (!buffer)
        return icErrNoMemory;
    if (!bytes.empty())
        std::memcpy(buffer.get(), bytes.data(), bytes.size());
    tagData_[owner].bytes = std::move(buffer);
    tagData_[owner].size = static_cast<std::uint32_t>(bytes.size());
    return icOk;
}

icStatus iccProfileRW::setTagData(icSignature sig, std::span<const std::uint8_t> bytes) {
    if (bytes.size() > UINT32_MAX)
        return icErrInvalidArg;
    const auto size = static_cast<std::uint32_t>(bytes.size());
    int i = findTag(sig);
    if (i < 0) {
        if (tagCount_ >= kMaxTags)
            return icErrInvalidArg;
        i = tagCount_++;
        links_[i] = i;
    }
    tags_[i].sig = sig;
    tags_[i].size = size;
    int owner = i;
    if (links_[i] != i) {
        tagData_[i] = TagBuffer{};
        owner = links_[i];
        tags_[owner].size = size;
    }
    return storeOwned(owner, bytes);
}

icStatus iccProfileRW::linkTag(icSignature sig, icSignature targetSig) {
    if (sig == targetSig)
        return icErrInvalidArg;
    const int existing = findTag(sig);
    if (existing >= 0 && links_[existing] == existing)
        tagData_[existing] = TagBuffer{};
    const int target = findTag(targetSig);
    if (target < 0 || tagCount_ >= kMaxTags)
        return icErrInvalidArg;
    const int i = tagCount_++;
    tags_[i] = {sig, tags_[target].offset, tags_[target].size};
    links_[i] = links_[target];
    return icOk;
}

// ---- iccProfileRW: writing ------------------------------------------------------------------

icStatus iccProfileRW::layout() {
    if (tagCount_ < 1)
        return icErrGeneral;
    if (findTag(icSig("desc")) < 0)
        return icErrGeneral;

    std::uint64_t end = kHeaderSize + 4 + 12 * std::uint64_t(tagCount_);
    tags_[0].offset = static_cast<std::uint32_t>(end);
    int lastOwner = links_[0] == 0 ? 0 : -1;
    if (lastOwner < 0)
        return icErrGeneral;
    for (int i = 1; i < tagCount_; ++i) {
        if (links_[i] != i) {
            tags_[i].offset = tags_[links_[i]].offset;
            tags_[i].size = tags_[links_[i]].size;
            continue;
        }
        const icTag& previous = tags_[lastOwner];
        const std::uint64_t offset = std::uint64_t(previous.offset) + roundUp4(previous.size);
        if (offset > UINT32_MAX)
            return icErrGeneral;
        tags_[i].offset = static_cast<std::uint32_t>(offset);
        lastOwner = i;
    }
    for (int i = 0; i < tagCount_; ++i)
        end = std::max(end, std::uint64_t(tags_[i].offset) + tags_[i].size);
    end = roundUp4(end);
    if (end > UINT32_MAX)
        return icErrGeneral;
    header_.size = static_cast<std::uint32_t>(end);
    stampCurrentDate(header_);
    return icOk;
}

// The profile goes out in pieces of at most this many bytes; a pass that also hashes them does so
// while each is still in the cache.
constexpr std::size_t kPieceSize = 1u << 20;

// Hands the laid-out profile to `sink` (a callable taking a span, false when it could not take
// it) in file order: the header as it stands, the directory, the bytes of every owned block at
// its offset and zeros in any gap, up to the size in the header. With `hashed` each byte is
// hashed on its way, so that `id` then holds the Profile ID that belongs at bytes 84-99 (the
// header handed over still carries the old one).
template <class Sink>
icStatus iccProfileRW::writeLaidOut(Sink& sink, bool hashed, std::optional<icDigest>& id) const {
    static constexpr std::array<std::uint8_t, 4096> kZeros{};
    icProfileIdHash hash;
    std::uint64_t written = 0;
    const auto put = [&](std::span<const std::uint8_t> bytes) {
        while (!bytes.empty()) {
            const auto piece = bytes.first(std::min(bytes.size(), kPieceSize));
            if ((hashed && !hash.update(piece)) || !sink(piece))
                return false;
            bytes = bytes.subspan(piece.size());
            written += piece.size();
        }
        return true;
    };
    const auto zeros = [&](std::uint64_t count) {
        for (; count > 0; count -= std::min<std::uint64_t>(count, kZeros.size()))
            if (!put(std::span(kZeros).first(std::min<std::uint64_t>(count, kZeros.size()))))
                return false;
        return true;
    };

    const auto headerBytes = headerToBytes(header_);
    if (hashed && !hash.header(headerBytes))
        return icErrFile;
    if (!sink(std::span<const std::uint8_t>(headerBytes)))
        return icErrFile;
    written = headerBytes.size();

    std::array<std::uint8_t, 4 + 12 * kMaxTags> directory{};
    storeBE32(directory.data(), static_cast<std::uint32_t>(tagCount_));
    for (int i = 0; i < tagCount_; ++i) {
        std::uint8_t* entry = directory.data() + 4 + 12 * i;
        storeBE32(entry, tags_[i].sig);
        storeBE32(entry + 4, tags_[i].offset);
        storeBE32(entry + 8, tags_[i].size);
    }
    if (!put(std::span(directory).first(4 + 12 * std::size_t(tagCount_))))
        return icErrFile;

    // The layout placed the owned blocks one after another in directory order.
    for (int i = 0; i < tagCount_; ++i) {
        if (links_[i] != i)
            continue;
        const TagBuffer& buffer = tagData_[i];
        if (!buffer.bytes || tags_[i].offset < written)
            return icErrGeneral;
        if (!zeros(tags_[i].offset - written) ||
            !put({buffer.bytes.get(), std::min(buffer.size, tags_[i].size)}))
            return icErrFile;
    }
    if (written > header_.size)
        return icErrGeneral;
    if (!zeros(header_.size - written))
        return icErrFile;
    if (hashed) {
        icDigest digest{};
        if (!hash.finish(digest))
            return icErrFile;
        id = digest;
    }
    return icOk;
}

// writeLaidOut with the Profile ID of a version-4 profile. The hash is computed on another core
// while `sink` takes the bytes, both passes reading the same blocks, which nothing changes
// meanwhile; where no thread can be started, the one pass hashes as it goes.
template <class Sink>
icStatus iccProfileRW::writeLaidOutWithId(Sink& sink, std::optional<icDigest>& id) const {
    if (!isVersion4(header_))
        return writeLaidOut(sink, false, id);
    icStatus hashed = icErrFile;
    std::optional<icDigest> digest;
    std::jthread hasher;
    try {
        hasher = std::jthread([this, &hashed, &digest] {
            auto nowhere = [](std::span<const std::uint8_t>) { return true; };
            hashed = writeLaidOut(nowhere, true, digest);
        });
    } catch (const std::system_error&) {
        return writeLaidOut(sink, true, id);
    }
    std::optional<icDigest> none;
    const icStatus written = writeLaidOut(sink, false, none);
    hasher.join();
    if (written != icOk)
        return written;
    id = digest;
    return hashed;
}

icStatus iccProfileRW::saveToMemory(std::vector<std::uint8_t>& out) {
    out.clear();
    if (icStatus s = layout(); s != icOk)
        return s;
    try {
        out.reserve(header_.size);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    // Within the reserved size (the layout's), so appending never reallocates.
    auto append = [&out](std::span<const std::uint8_t> bytes) {
        if (bytes.size() > out.capacity() - out.size())
            return false;
        out.insert(out.end(), bytes.begin(), bytes.end());
        return true;
    };
    std::optional<icDigest> id;
    if (icStatus s = writeLaidOutWithId(append, id); s != icOk) {
        out.clear();
        return s;
    }
    if (id)
        std::memcpy(out.data() + kProfileIdOffset, id->data(), id->size());
    return icOk;
}

icStatus iccProfileRW::saveToFile(const std::string& path) {
    if (icStatus s = layout(); s != icOk)
        return s;
    icStatus status = icOk;
    const icStatus written = writeFileReplacing(path, header_.size, [&](std::FILE* file) {
        auto write = [file](std::span<const std::uint8_t> bytes) {
            return std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        };
        std::optional<icDigest> id;
        status = writeLaidOutWithId(write, id);
        if (status == icOk && id &&
            (std::fseek(file, static_cast<long>(kProfileIdOffset), SEEK_SET) != 0 || !write(*id)))
            status = icErrFile;
        return status == icOk;
    });
    return status != icOk ? status : written;
}
