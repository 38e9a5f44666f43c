// 'mft1' and 'mft2': the version-2 lookup tables. A 3x3 matrix, one input table per input
// channel, a colour lookup table (CLUT) over a grid of points per input channel and one output
// table per output channel, with 8-bit (lut8) or 16-bit (lut16) values.
//
// Both types hold their tables as owned arrays in host order; rebuild() writes them back into
// the raw bytes in place, leaving the reserved and padding bytes (and any bytes after the
// tables) as they were read.
#pragma once

#include "tagtypes/tag_type.h"

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <type_traits>
#include <vector>

// What lut8 and lut16 share, so that a caller takes either through one reference: the
// dimensions, the matrix and the grid node lookup. visitMftLut() reaches the typed tables.
class iccMftLut : public iccTagType {
public:
    std::uint32_t inputChannels() const { return inputChannels_; }
    std::uint32_t outputChannels() const { return outputChannels_; }
    std::uint32_t inputEntries() const { return inputEntries_; }
    std::uint32_t outputEntries() const { return outputEntries_; }
    std::uint32_t gridPoints() const { return gridPoints_; }
    std::uint32_t inputValueCount() const { return inputChannels_ * inputEntries_; }
    std::uint32_t clutValueCount() const { return clutValueCount_; }
    std::uint32_t outputValueCount() const { return outputChannels_ * outputEntries_; }
    bool isLut8() const { return ownSignature() == icSig("mft1"); }

    double matrixValue(std::size_t i) const { return s15Fixed16ToDouble(matrix.at(i)); }

    // Offset in the CLUT of the first output value of the grid node with one index per input
    // channel; none when the node is not in the grid.
    std::optional<std::size_t> clutNodeOffset(std::span<const std::uint32_t> node) const;

    std::array<std::int32_t, 9> matrix{}; // s15Fixed16, row order

protected:
    explicit iccMftLut(icSignature ownSignature) : iccTagType(ownSignature) {}

    std::uint32_t inputChannels_ = 0, outputChannels_ = 0;
    std::uint32_t inputEntries_ = 0, outputEntries_ = 0;
    std::uint32_t gridPoints_ = 0;
    std::uint32_t clutValueCount_ = 0;
};

template <typename Value> class iccMftLutType : public iccMftLut {
public:
    using value_type = Value;
    static constexpr std::uint32_t kMaxValue = std::numeric_limits<Value>::max();
    // Bytes before the input tables: lut16 stores its two entry counts after the matrix.
    static constexpr std::uint32_t kTablesOffset = sizeof(Value) == 1 ? 48 : 52;
    // Channel counts and grid points are single bytes in the encoding.
    static constexpr std::uint32_t kMaxDimension = 255;

    void clear() override;
    // -1001 wrong signature; -12 when the bytes cannot hold the matrix or the tables they
    // announce; -1001 when the bytes end inside the tables; -10 allocation failure.
    [[nodiscard]] icStatus decode() override;
    // Writes the dimensions, matrix and tables back into the raw bytes (growing them to the
    // encoded size if they are shorter). -1 without raw bytes; -11 when a table's length no
    // longer matches the dimensions.
    [[nodiscard]] icStatus rebuild() override;
    std::uint64_t encodedSize() const override;

    // Table setters copy the values (which must match the dimensions, else -11) and also write
    // them into the raw bytes. With no values the input and output tables become identity
    // ramps; the CLUT has no identity and needs its values.
    [[nodiscard]] icStatus setInputTables(std::span<const Value> values = {});
    [[nodiscard]] icStatus setOutputTables(std::span<const Value> values = {});
    [[nodiscard]] icStatus setClut(std::span<const Value> values);
    // Doubles are rounded to s15Fixed16 (add 0.5, truncate).
    void setMatrix(std::span<const double, 9> values);
    void setMatrixFixed(std::span<const std::int32_t, 9> values);

    // Whether every table still has the length the dimensions give.
    bool tablesMatchDimensions() const;

    // Tables lie channel after channel; the CLUT in storage order (first input channel
    // slowest), the output values of a node together. Edits reach the raw bytes at rebuild().
    std::vector<Value> inputTables, clut, outputTables;

protected:
    explicit iccMftLutType(icSignature ownSignature) : iccMftLut(ownSignature) {}

    // Fresh tables for the dimensions: identity ramps and matrix, a zero CLUT, raw bytes of
    // the encoded size. -11 for dimensions the encoding cannot hold or whose size exceeds
    // 32 bits; -10 allocation failure.
    icStatus initializeTables(std::uint32_t inputs, std::uint32_t inputEntries,
                              std::uint32_t outputs, std::uint32_t outputEntries,
                              std::uint32_t grid);

private:
    bool bytesHoldTables() const { return rawSize_ >= encodedSize(); }
    std::size_t clutOffset() const;
    std::size_t outputOffset() const;
    void writeValues(std::size_t offset, const std::vector<Value>& values);
    void writeHeaderFields();
};

extern template class iccMftLutType<std::uint8_t>;
extern template class iccMftLutType<std::uint16_t>;

class iccLut16Type;

class iccLut8Type final : public iccMftLutType<std::uint8_t> {
public:
    static constexpr icSignature kSignature = icSig("mft1");
    iccLut8Type() : iccMftLutType(kSignature) {}

    // Re-initialises from dimensions; the tables always have 256 entries.
    [[nodiscard]] icStatus initialize(std::uint32_t inputs, std::uint32_t outputs,
                                      std::uint32_t grid) {
        return initializeTables(inputs, 256, outputs, 256, grid);
    }
    // The same table at 8 bits, each value / 257 rounded. The lut16 tables must have 256
    // entries (-11 otherwise).
    [[nodiscard]] icStatus setFromLut16(const iccLut16Type& lut16);
};

class iccLut16Type final : public iccMftLutType<std::uint16_t> {
public:
    static constexpr icSignature kSignature = icSig("mft2");
    iccLut16Type() : iccMftLutType(kSignature) {}

    [[nodiscard]] icStatus initialize(std::uint32_t inputs, std::uint32_t inputEntries,
                                      std::uint32_t outputs, std::uint32_t outputEntries,
                                      std::uint32_t grid) {
        return initializeTables(inputs, inputEntries, outputs, outputEntries, grid);
    }
    // The same table at 16 bits, each value x 257 (so 255 becomes 65535).
    [[nodiscard]] icStatus setFromLut8(const iccLut8Type& lut8);
};

// Runs `f` on the typed table behind `lut`: an iccLut8Type& or an iccLut16Type&.
template <class Lut, class F> decltype(auto) visitMftLut(Lut& lut, F&& f) {
    static_assert(std::is_same_v<std::remove_const_t<Lut>, iccMftLut>);
    using Lut8 = std::conditional_t<std::is_const_v<Lut>, const iccLut8Type, iccLut8Type>;
    using Lut16 = std::conditional_t<std::is_const_v<Lut>, const iccLut16Type, iccLut16Type>;
    return lut.isLut8() ? f(static_cast<Lut8&>(lut)) : f(static_cast<Lut16&>(lut));
}
