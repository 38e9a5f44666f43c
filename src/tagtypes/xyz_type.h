// 'XYZ ': one XYZ value (white point, colorant, luminance). Further XYZ numbers in the tag are
// kept in the raw bytes but not decoded.
#pragma once

#include "tagtypes/tag_type.h"

class iccXYZType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("XYZ ");
    iccXYZType() : iccTagType(kSignature) {}

    void clear() override;
    [[nodiscard]] icStatus decode() override;
    std::uint64_t encodedSize() const override { return 20; }

    // Replaces the first XYZ number (rounded to s15Fixed16) in the raw bytes, leaving any others
    // as they are; an object without bytes gets a fresh one-value tag.
    [[nodiscard]] icStatus setXYZ(double x, double y, double z);

    double X = 0, Y = 0, Z = 0;
};
