#include "tagtypes/xyz_type.h"

void iccXYZType::clear() {
    iccTagType::clear();
    X = Y = Z = 0;
}

icStatus iccXYZType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    // A tag too short for its value reads the missing words as 0; a load from a profile then
    // fails on the size check.
    iccReader r(raw());
    r.skip(8);
    X = r.s15f16();
    Y = r.s15f16();
    Z = r.s15f16();
    return icOk;
}

icStatus iccXYZType::setXYZ(double x, double y, double z) {
    if (rawSize_ < encodedSize()) {
        std::vector<std::uint8_t> bytes;
        if (icStatus s = encodeFields(bytes, [](iccWriter& w) { w.zeros(12); }); s != icOk)
            return s;
        if (icStatus s = adoptEncoded(std::move(bytes)); s != icOk)
            return s;
    }
    std::uint8_t* bytes = writableRaw();
    if (bytes == nullptr)
        return icErrNoMemory;
    X = x;
    Y = y;
    Z = z;
    storeBE32(bytes + 8, static_cast<std::uint32_t>(doubleToS15Fixed16(x)));
    storeBE32(bytes + 12, static_cast<std::uint32_t>(doubleToS15Fixed16(y)));
    storeBE32(bytes + 16, static_cast<std::uint32_t>(doubleToS15Fixed16(z)));
    return icOk;
}
