#include "tagtypes/s15fixed16_array_type.h"

#include <new>

namespace {

icStatus encodeMatrix(const icMatrix3& matrix, std::vector<std::uint8_t>& bytes) {
    try {
        bytes.clear();
        bytes.reserve(44);
        iccWriter w(bytes);
        w.sig(iccChromaticAdaptationType::kSignature);
        w.u32(0);
        for (double v : matrix)
            w.s15f16(v);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

} // namespace

// ---- iccS15Fixed16ArrayType -----------------------------------------------------------------

void iccS15Fixed16ArrayType::clear() {
    iccTagType::clear();
    values.clear();
}

icStatus iccS15Fixed16ArrayType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    const std::uint32_t count = rawSize_ < 8 ? 0 : (rawSize_ - 8) / 4;
    iccReader r(raw());
    r.skip(8);
    try {
        std::vector<std::int32_t> decoded(count);
        for (auto& v : decoded)
            v = static_cast<std::int32_t>(r.u32());
        values = std::move(decoded);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

icStatus iccS15Fixed16ArrayType::rebuild() {
    const auto fields = [this](iccWriter& w) {
        for (std::int32_t v : values)
            w.u32(static_cast<std::uint32_t>(v));
    };
    std::vector<std::uint8_t> bytes;
    if (icStatus s = encodeFields(bytes, fields); s != icOk)
        return s;
    return setData(bytes);
}

// ---- iccChromaticAdaptationType -------------------------------------------------------------

icStatus iccChromaticAdaptationType::decode() {
    // Values the bytes do not hold read as 0; a load from a profile then fails the size check.
    iccReader r(raw());
    r.skip(8);
    for (double& v : matrix)
        v = r.s15f16();
    return icOk;
}

icStatus iccChromaticAdaptationType::rebuild() {
    std::vector<std::uint8_t> bytes;
    if (icStatus s = encodeMatrix(matrix, bytes); s != icOk)
        return s;
    return adoptEncoded(std::move(bytes));
}

icStatus iccChromaticAdaptationType::setFromSourceWhite(double x, double y, double z) {
    icMatrix3 adaptation{};
    if (icStatus s = bradfordAdaptation({x, y, z}, kD50White100, adaptation); s != icOk)
        return s;
    matrix = adaptation;
    std::vector<std::uint8_t> bytes;
    if (icStatus s = encodeMatrix(matrix, bytes); s != icOk)
        return s;
    return setData(bytes);
}
