#include "catalogue/named_color2.h"

#include "profile/byte_io.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::size_t kNameField = 32;
constexpr std::size_t kFixedFields = 8 + 12 + 2 * kNameField;

// A name field: its text up to the first NUL, or all 32 bytes when it has none.
std::string nameField(iccReader& r) {
    const auto bytes = r.bytes(kNameField);
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t(0));
    return std::string(bytes.begin(), end);
}

} // namespace

icStatus decodeNamedColor2(std::span<const std::uint8_t> tag, icNamedColor2& out) {
    out = icNamedColor2{};
    iccReader r(tag);
    if (r.sig() != icSig("ncl2"))
        return icErrWrongType;
    if (tag.size() < kFixedFields)
        return icErrTruncated;
    try {
        r.skip(4);
        out.vendorFlag = r.u32();
        out.count = r.u32();
        out.deviceCoordinates = r.u32();
        out.prefix = nameField(r);
        out.suffix = nameField(r);
        const std::uint64_t available = r.remaining() / namedColorRecordSize(out.deviceCoordinates);
        const std::uint64_t colors = std::min<std::uint64_t>(out.count, available);
        out.colors.resize(static_cast<std::size_t>(colors));
        for (icNamedColor2Entry& color : out.colors) {
            color.rootName = nameField(r);
            for (std::uint16_t& v : color.pcs)
                v = r.u16();
            color.device.resize(out.deviceCoordinates);
            for (std::uint16_t& v : color.device)
                v = r.u16();
        }
    } catch (const std::bad_alloc&) {
        out = icNamedColor2{};
        return icErrNoMemory;
    }
    return icOk;
}
