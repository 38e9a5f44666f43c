// 'mAB ' and 'mBA ': the version-4 lookup tables made of up to five elements (B curves, matrix,
// M curves, CLUT, A curves), each found at an offset given in the tag's header.
#pragma once

#include "tagtypes/curve_type.h"
#include "tagtypes/tag_type.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

// The colour lookup table of an 'mAB '/'mBA ' tag, held exactly as encoded: 16 grid-point bytes
// (one per input channel, unused ones 0), the precision byte (bytes per value), 3 reserved
// bytes, then the values big-endian with the first input channel varying slowest.
class iccClut {
public:
    static constexpr std::uint32_t kMaxInputs = 16;
    static constexpr std::uint32_t kHeaderSize = 20;

    // A table of zero values with the grid points of the first `inputs` bytes of `gridPoints`.
    // -11 for more than 16 inputs, fewer grid bytes than inputs, or a table beyond 4 GiB;
    // -10 on allocation failure.
    [[nodiscard]] icStatus init(std::uint32_t inputs, std::uint32_t outputs, std::uint8_t precision,
                                std::span<const std::uint8_t> gridPoints);
    // As init, with grid points and values taken from an encoded table; -12 when `encoded`
    // holds fewer bytes than the table needs. The unused grid bytes and the reserved bytes are
    // written as 0 whatever the source holds.
    [[nodiscard]] icStatus set(std::uint32_t inputs, std::uint32_t outputs, std::uint8_t precision,
                               std::span<const std::uint8_t> encoded);

    std::uint32_t inputChannels() const { return inputs_; }
    std::uint32_t outputChannels() const { return outputs_; }
    // Output channels times the product of the grid points.
    std::uint32_t valueCount() const { return valueCount_; }
    // valueCount() * precision() + 20.
    std::uint32_t byteSize() const { return byteSize_; }
    std::uint8_t precision() const { return bytes_.size() > 16 ? bytes_[16] : 0; }
    // 0 for a channel beyond the inputs.
    std::uint8_t gridPoints(std::uint32_t channel) const {
        return channel < kMaxInputs && !bytes_.empty() ? bytes_[channel] : 0;
    }
    // The whole table as encoded, byteSize() bytes.
    std::span<const std::uint8_t> encoded() const { return {bytes_.data(), byteSize_}; }
    // The values' bytes, after the 20-byte header.
    std::span<const std::uint8_t> valueBytes() const { return encoded().subspan(bytesHeader()); }
    std::span<std::uint8_t> valueBytes() {
        return std::span<std::uint8_t>(bytes_.data(), byteSize_).subspan(bytesHeader());
    }
    // Value `index` for precision 1 or 2; 0 out of range or for another precision.
    std::uint32_t value(std::uint64_t index) const;
    // Stores value `index` (cut to the precision's width); -11 out of range or for another
    // precision.
    [[nodiscard]] icStatus setValue(std::uint64_t index, std::uint32_t v);

private:
    std::size_t bytesHeader() const { return byteSize_ >= kHeaderSize ? kHeaderSize : 0; }
    // Takes a table built by init or set (size rounded up to four, grid points in place) with
    // its precision byte, value count and byte size; both checked below 4 GiB by the caller.
    void adopt(std::vector<std::uint8_t>&& bytes, std::uint32_t inputs, std::uint32_t outputs,
               std::uint8_t precision, std::uint64_t values, std::uint64_t size);

    std::uint32_t inputs_ = 0;
    std::uint32_t outputs_ = 0;
    std::uint32_t valueCount_ = 0;
    std::uint32_t byteSize_ = 0;
    std::vector<std::uint8_t> bytes_; // byteSize_ rounded up to 4
};

// Which of the five elements a layout has.
struct icMlutElements {
    bool bCurves = false;
    bool matrix = false;
    bool mCurves = false;
    bool clut = false;
    bool aCurves = false;
};

// The common part of 'mAB ' and 'mBA '. For 'mAB ' the A curves number the input channels and
// the B and M curves the output channels; for 'mBA ' it is the other way round.
class iccMlutType : public iccTagType {
public:
    static constexpr icSignature kAToB = icSig("mAB ");
    static constexpr icSignature kBToA = icSig("mBA ");
    explicit iccMlutType(icSignature own = kAToB) : iccTagType(own) {}

    void clear() override;
    // Reads 'mAB ' and 'mBA ' alike; anything else is -1001.
    [[nodiscard]] icStatus decode() override;
    // Lays the elements out again in the order B curves, matrix, M curves, CLUT, A curves.
    // -1001 for a structure decoding would refuse, -1 when a curve or the CLUT was never set.
    [[nodiscard]] icStatus rebuild() override;
    // The largest of the five offsets: a lower bound for the size checks of a load, not the
    // size the tag needs.
    std::uint64_t encodedSize() const override;

    // An empty layout (the raw bytes stay until the next rebuild): the curve sets with their counts
    // (curves not yet created), an identity matrix and an empty CLUT for the elements present. -11
    // for another signature or more than 255 channels, -10 on allocation failure.
    [[nodiscard]] icStatus createLayout(icSignature type, std::uint32_t inputs,
                                        std::uint32_t outputs, icMlutElements present);

    // The checks on the header's offsets and structure; -1001 on the first that fails.
    icStatus validate() const;

    icMlutElements present() const;
    bool isBToA() const { return typeSig_ == kBToA; }

    std::uint32_t inputChannels = 0;
    std::uint32_t outputChannels = 0;
    // From the start of the tag; 0 when the element is absent. Decoding stores the tag's own,
    // rebuild the new layout's.
    std::uint32_t offsetB = 0;
    std::uint32_t offsetMatrix = 0;
    std::uint32_t offsetM = 0;
    std::uint32_t offsetClut = 0;
    std::uint32_t offsetA = 0;
    // An element is present when it holds a value.
    std::optional<std::vector<iccCurveElement>> bCurves;
    // 3x3 in row order, then the three offsets; s15Fixed16Number.
    std::optional<std::array<std::int32_t, 12>> matrix;
    std::optional<std::vector<iccCurveElement>> mCurves;
    std::optional<iccClut> clut;
    std::optional<std::vector<iccCurveElement>> aCurves;

private:
    // Every decoded field back to empty; the raw bytes and the common header stay.
    void resetLayout();
};

class iccLutAToBType : public iccMlutType {
public:
    iccLutAToBType() : iccMlutType(kAToB) {}
    // The base load; when that fails, the tag's bytes are set again as plain bytes (checked
    // only against the minimum size before decoding) and that result stands. A tag that loads
    // but is not an 'mAB ' gives -1001.
    [[nodiscard]] icStatus loadBySignature(icSignature sig, iccProfile& profile) override;
};

class iccLutBToAType : public iccMlutType {
public:
    iccLutBToAType() : iccMlutType(kBToA) {}
    // As iccLutAToBType, for 'mBA '.
    [[nodiscard]] icStatus loadBySignature(icSignature sig, iccProfile& profile) override;
};
