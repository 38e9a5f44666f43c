// 'sf32': an array of s15Fixed16Number, and the chromatic adaptation tag ('chad'), an 'sf32'
// of nine values read as a 3x3 matrix.
#pragma once

#include "numeric/matrix.h"
#include "tagtypes/tag_type.h"

#include <vector>

class iccS15Fixed16ArrayType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("sf32");
    iccS15Fixed16ArrayType() : iccTagType(kSignature) {}

    void clear() override;
    // Every whole 4-byte value after the header; trailing bytes are ignored.
    [[nodiscard]] icStatus decode() override;
    // Encodes the values and sets them as the raw bytes, decoding them again.
    [[nodiscard]] icStatus rebuild() override;
    std::uint64_t encodedSize() const override { return 8 + 4 * std::uint64_t(values.size()); }

    std::uint32_t valueCount() const { return static_cast<std::uint32_t>(values.size()); }
    double value(std::size_t i) const { return s15Fixed16ToDouble(values.at(i)); }

    std::vector<std::int32_t> values; // s15Fixed16 encodings, host order
};

class iccChromaticAdaptationType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("sf32");
    iccChromaticAdaptationType() : iccTagType(kSignature) {}

    // The matrix survives clear(): a failed load leaves the last good matrix in place.

    // Reads nine values whatever the type signature says: 'chad' tags are read by position.
    [[nodiscard]] icStatus decode() override;
    // Encodes the matrix as a 44-byte 'sf32' tag without decoding it again.
    [[nodiscard]] icStatus rebuild() override;
    std::uint64_t encodedSize() const override { return 44; }

    // The Bradford adaptation from a source white (0..100 scale) to D50, encoded and decoded
    // back, so the matrix holds the values the tag stores. -200 when it cannot be computed.
    [[nodiscard]] icStatus setFromSourceWhite(double x, double y, double z);

    icMatrix3 matrix{}; // row order
};
