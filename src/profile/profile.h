// Profile objects: the header, the tag directory and the bytes of every tag.
//
// iccProfileBase holds the data; iccProfile reads a profile from a file or memory and reads tag
// bytes on first use; iccProfileRW reads everything into memory, lets tags be replaced and writes
// the profile again.
#pragma once

#include "profile/byte_io.h"
#include "profile/header.h"
#include "profile/profile_id.h"
#include "profile/status.h"
#include "profile/stream.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

// One directory entry; 12 bytes in the file.
struct icTag {
    icSignature sig = 0;
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
    friend bool operator==(const icTag&, const icTag&) = default;
};

inline constexpr int kMaxTags = 50;

class iccProfileBase {
public:
    iccProfileBase() { links_.fill(0); }
    virtual ~iccProfileBase() = default;
    iccProfileBase(const iccProfileBase&) = delete;
    iccProfileBase& operator=(const iccProfileBase&) = delete;

    // The bytes of entry `index` as currently held (no loading). The span holds at most the
    // entry's size; its data() is null when the bytes cannot be had.
    virtual std::span<const std::uint8_t> getTagData(int index);

    const icHeader& header() const { return header_; }
    icHeader& header() { return header_; }
    int tagCount() const { return tagCount_; }

    // Entry `index`, or null past the directory. Like the directory arrays it admits
    // index == tagCount (an empty entry) as long as that is within capacity.
    const icTag* getEntry(int index) const;
    // Index of the first entry with that signature, -1 if none.
    int findTag(icSignature sig) const;
    // Index of the entry whose bytes entry `index` uses.
    int link(int index) const { return validIndex(index) ? links_[index] : -1; }
    // The tag type signature: the first four bytes of the tag's data, 0xFFFFFFFF when the data
    // cannot be had.
    icSignature getTagTypeSignature(int index);
    // A co-owning reference to the held buffer when `bytes` (a span this profile handed out)
    // covers it exactly, so that its padding is the zeroed padding; null otherwise. The buffer
    // stays alive when the profile replaces or frees the tag.
    std::shared_ptr<const std::uint8_t[]> shareTagBuffer(std::span<const std::uint8_t> bytes) const;
    bool isReadOnly() const { return readOnly_; }

protected:
    // Shared so that a tag object can view the bytes without copying them; a buffer is never
    // written once its bytes are read, only replaced.
    struct TagBuffer {
        std::shared_ptr<std::uint8_t[]> bytes; // size rounded up to a multiple of 4
        std::uint32_t size = 0;
    };

    bool validIndex(int index) const { return index >= 0 && index < tagCount_; }
    std::span<const std::uint8_t> heldBytes(int owner, int index) const;
    void reset();

    bool readOnly_ = true;
    iccStream stream_;
    icHeader header_;
    int tagCount_ = 0;
    std::array<icTag, kMaxTags> tags_{};
    std::array<TagBuffer, kMaxTags> tagData_{};
    std::array<int, kMaxTags> links_{};
};

class iccProfile : public iccProfileBase {
public:
    // Reads the tag's bytes from the open source on first use.
    std::span<const std::uint8_t> getTagData(int index) override;
    [[nodiscard]] virtual icStatus loadFromMemory(std::span<const std::uint8_t> data);
    [[nodiscard]] virtual icStatus loadFromFile(const std::string& path);

    // The entry's bytes found by tag signature; empty span with null data() if absent.
    std::span<const std::uint8_t> getTagDataBySignature(icSignature sig);

private:
    icStatus readHeader(std::int64_t length);
    icStatus readDirectory();
};

class iccProfileRW : public iccProfile {
public:
    iccProfileRW();

    // Follows the entry's link to the owner of its bytes.
    std::span<const std::uint8_t> getTagData(int index) override;
    // Loads every tag into memory and closes the source.
    [[nodiscard]] icStatus loadFromMemory(std::span<const std::uint8_t> data) override;
    [[nodiscard]] icStatus loadFromFile(const std::string& path) override;

    // Replaces or adds tag `sig` with a copy of the bytes; a shared block is replaced for every
    // entry that shares it.
    [[nodiscard]] icStatus setTagData(icSignature sig, std::span<const std::uint8_t> bytes);
    // Adds an entry `sig` that shares the bytes of `targetSig`.
    [[nodiscard]] icStatus linkTag(icSignature sig, icSignature targetSig);

    // Lays the profile out again: places every block after the directory on a 4-byte boundary,
    // updates the size and stamps the date. -1 without tags or without a 'desc' tag.
    [[nodiscard]] icStatus layout();
    // Lays out and writes the whole profile, with its Profile ID for version 4. `out` is
    // reused; it is left empty when the profile cannot be written.
    [[nodiscard]] icStatus saveToMemory(std::vector<std::uint8_t>& out);
    // Writes the file through a temporary beside it, so a failed save leaves an existing file
    // untouched.
    [[nodiscard]] icStatus saveToFile(const std::string& path);

private:
    // Hand the laid-out profile to `sink` in file order; see profile.cpp.
    template <class Sink>
    icStatus writeLaidOut(Sink& sink, bool hashed, std::optional<icDigest>& id) const;
    template <class Sink>
    icStatus writeLaidOutWithId(Sink& sink, std::optional<icDigest>& id) const;
    icStatus loadEverything(icStatus loaded);
    icStatus storeOwned(int owner, std::span<const std::uint8_t> bytes);
};
