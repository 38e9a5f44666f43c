// The tag type framework: raw bytes of one tag (iccTagData) and the protocol by which a typed
// object decodes them into fields and rebuilds them after an edit (iccTagType).
#pragma once

#include "profile/byte_io.h"
#include "profile/status.h"

#include <cstdint>
#include <memory>
#include <new>
#include <span>
#include <vector>

class iccProfile;

// The raw bytes of one tag exactly as they stand in the file (big-endian). The buffer is
// allocated with the raw size rounded up to a multiple of four.
//
// Bytes loaded from a profile are not copied: the object shares the profile's buffer, which
// stays alive as long as the object needs it. Anything that writes into the raw bytes goes
// through writableRaw(), which first copies a shared buffer into one the object owns.
class iccTagData {
public:
    iccTagData() = default;
    virtual ~iccTagData() = default;
    iccTagData(const iccTagData&) = default;
    iccTagData& operator=(const iccTagData&) = default;

    virtual void clear();
    // The raw bytes as held; null data() when there are none.
    virtual std::span<const std::uint8_t> getData();
    [[nodiscard]] virtual icStatus setData(std::span<const std::uint8_t> bytes);
    // The bytes of the tag at a directory index, sized by its directory entry.
    [[nodiscard]] virtual icStatus loadByIndex(int index, iccProfile& profile);
    // The bytes of the first tag with that signature.
    [[nodiscard]] virtual icStatus loadBySignature(icSignature sig, iccProfile& profile);

    // The meaningful raw bytes, without padding.
    std::span<const std::uint8_t> raw() const { return {rawData(), rawSize_}; }
    std::uint32_t rawSize() const { return rawSize_; }
    bool hasRaw() const { return rawCapacity() != 0; }

protected:
    // Copies the bytes into a buffer of their size rounded up to four; -10 on allocation failure.
    icStatus assignRaw(std::span<const std::uint8_t> bytes);
    // Sets the raw size a decoder computed from the fields; the buffer grows (zero-filled) when
    // the fields claim more than the bytes held, so raw() never reaches past it.
    icStatus setRawSize(std::uint64_t size);
    // Takes freshly encoded bytes, already padded to four, as the raw buffer.
    void adoptRaw(std::vector<std::uint8_t>&& padded);
    // The raw buffer made the object's own for writing; null only on allocation failure.
    std::uint8_t* writableRaw();

    std::uint32_t rawSize_ = 0;

private:
    const std::uint8_t* rawData() const { return shared_ ? shared_.get() : own_.data(); }
    std::size_t rawCapacity() const { return shared_ ? sharedCapacity_ : own_.size(); }
    // Copies a shared buffer into an owned one of at least `capacity` bytes (zero-filled beyond
    // the copy); grows an owned one likewise. -10 on allocation failure.
    icStatus ownRaw(std::size_t capacity);
    // Shares the profile's buffer behind `bytes` when it can, copies them otherwise.
    icStatus takeProfileBytes(std::span<const std::uint8_t> bytes, const iccProfile& profile);

    std::vector<std::uint8_t> own_;                // the raw buffer unless shared_ is set
    std::shared_ptr<const std::uint8_t[]> shared_; // a profile's buffer, never written
    std::size_t sharedCapacity_ = 0;
};

// A typed tag: the common 8-byte tag header (type signature, 4 reserved bytes) followed by the
// type's own fields.
class iccTagType : public iccTagData {
public:
    explicit iccTagType(icSignature ownSignature) : ownSignature_(ownSignature) {}

    void clear() override;
    // Rebuilds first; null data() when the rebuild fails.
    std::span<const std::uint8_t> getData() override;
    // Bytes in file order: copy, read the header, check the type's minimum size, decode.
    [[nodiscard]] icStatus setData(std::span<const std::uint8_t> bytes) override;
    [[nodiscard]] icStatus loadByIndex(int index, iccProfile& profile) override;
    [[nodiscard]] icStatus loadBySignature(icSignature sig, iccProfile& profile) override;

    // Regenerates the raw bytes from the decoded fields. The base keeps its raw bytes.
    [[nodiscard]] virtual icStatus rebuild() { return icOk; }
    // Checks the type signature and parses the raw bytes into the fields.
    [[nodiscard]] virtual icStatus decode() = 0;
    // Bytes the current fields need.
    virtual std::uint64_t encodedSize() const = 0;

    // setData after checking that at least 9 bytes start with the expected signature.
    [[nodiscard]] icStatus setDataChecked(icSignature expected,
                                          std::span<const std::uint8_t> bytes);

    icSignature typeSignature() const { return typeSig_; }
    std::uint32_t reservedWord() const { return reserved_; }
    icSignature ownSignature() const { return ownSignature_; }

protected:
    // Reads the type signature and the reserved word from the raw bytes.
    void readCommonHeader();
    // -1001 unless the held type signature is the type's own.
    icStatus checkSignature() const { return typeSig_ == ownSignature_ ? icOk : icErrBadProfile; }
    // Takes freshly encoded bytes as the raw bytes and reads their common header; -10 on
    // allocation failure.
    icStatus adoptEncoded(std::vector<std::uint8_t>&& bytes);
    // Writes the type's own signature and a zero reserved word, then whatever `body` writes with
    // the iccWriter it is given, into `bytes` reserved for encodedSize(); -10 on allocation
    // failure.
    template <class Body>
    icStatus encodeFields(std::vector<std::uint8_t>& bytes, Body&& body) const {
        try {
            bytes.reserve(encodedSize());
            iccWriter w(bytes);
            w.sig(ownSignature_);
            w.u32(0);
            body(w);
        } catch (const std::bad_alloc&) {
            return icErrNoMemory;
        }
        return icOk;
    }
    // Runs after a load: decode, then the decoded fields must fit the raw size.
    icStatus decodeLoaded(icStatus loaded);

    icSignature typeSig_ = 0;
    std::uint32_t reserved_ = 0;

private:
    icSignature ownSignature_;
};
