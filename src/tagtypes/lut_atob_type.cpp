#include "tagtypes/lut_atob_type.h"

#include "profile/profile.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::uint32_t kTagHeaderSize = 32;
constexpr std::uint32_t kMatrixSize = 48;
constexpr std::int32_t kOneS15Fixed16 = 0x10000;

// Output channels times the product of the grid points. It saturates far above anything a
// tag can hold, so that a hostile grid is refused by a size comparison instead of overflowing.
std::uint64_t tableValueCount(std::uint32_t outputs, std::span<const std::uint8_t> grid) {
    constexpr std::uint64_t kSaturated = std::uint64_t(1) << 40;
    if (std::find(grid.begin(), grid.end(), 0) != grid.end())
        return 0;
    std::uint64_t n = outputs;
    for (std::uint8_t g : grid)
        n = std::min(n * g, kSaturated);
    return n;
}

// One structure rule for decoding and for laying a table out: B curves always; M curves
// exactly with the matrix; A curves exactly with the CLUT.
bool validStructure(const icMlutElements& e) {
    return e.bCurves && e.matrix == e.mCurves && e.clut == e.aCurves;
}

} // namespace

// ---- iccClut --------------------------------------------------------------------------------

void iccClut::adopt(std::vector<std::uint8_t>&& bytes, std::uint32_t inputs, std::uint32_t outputs,
                    std::uint8_t precision, std::uint64_t values, std::uint64_t size) {
    bytes[16] = precision;
    bytes_ = std::move(bytes);
    inputs_ = inputs;
    outputs_ = outputs;
    valueCount_ = static_cast<std::uint32_t>(values);
    byteSize_ = static_cast<std::uint32_t>(size);
}

icStatus iccClut::init(std::uint32_t inputs, std::uint32_t outputs, std::uint8_t precision,
                       std::span<const std::uint8_t> gridPoints) {
    if (inputs > kMaxInputs || gridPoints.size() < inputs)
        return icErrInvalidArg;
    const auto grid = gridPoints.first(inputs);
    const std::uint64_t values = tableValueCount(outputs, grid);
    const std::uint64_t size = values * precision + kHeaderSize;
    if (size > UINT32_MAX)
        return icErrInvalidArg;
    std::vector<std::uint8_t> bytes;
    try {
        bytes.assign(roundUp4(size), 0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    std::copy(grid.begin(), grid.end(), bytes.begin());
    adopt(std::move(bytes), inputs, outputs, precision, values, size);
    return icOk;
}

icStatus iccClut::set(std::uint32_t inputs, std::uint32_t outputs, std::uint8_t precision,
                      std::span<const std::uint8_t> encoded) {
    if (inputs > kMaxInputs)
        return icErrInvalidArg;
    if (encoded.size() < kHeaderSize)
        return icErrTruncated;
    // The values must all be there before anything is allocated for them.
    const std::uint64_t values = tableValueCount(outputs, encoded.first(inputs));
    const std::uint64_t size = values * precision + kHeaderSize;
    if (size > encoded.size())
        return icErrTruncated;
    if (size > UINT32_MAX)
        return icErrInvalidArg;
    // One pass over a table that may hold millions of values: copy it whole, then clear the
    // unused grid entries and the reserved bytes of the header.
    std::vector<std::uint8_t> bytes;
    try {
        bytes.reserve(roundUp4(size));
        bytes.assign(encoded.begin(), encoded.begin() + static_cast<std::ptrdiff_t>(size));
        bytes.resize(roundUp4(size), 0);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    std::fill(bytes.begin() + inputs, bytes.begin() + kHeaderSize, std::uint8_t(0));
    adopt(std::move(bytes), inputs, outputs, precision, values, size);
    return icOk;
}

std::uint32_t iccClut::value(std::uint64_t index) const {
    if (index >= valueCount_)
        return 0;
    const std::uint8_t* p = bytes_.data() + kHeaderSize;
    switch (precision()) {
    case 1:
        return p[index];
    case 2:
        return loadBE16(p + 2 * index);
    default:
        return 0;
    }
}

icStatus iccClut::setValue(std::uint64_t index, std::uint32_t v) {
    if (index >= valueCount_)
        return icErrInvalidArg;
    std::uint8_t* p = bytes_.data() + kHeaderSize;
    switch (precision()) {
    case 1:
        p[index] = static_cast<std::uint8_t>(v);
        return icOk;
    case 2:
        storeBE16(p + 2 * index, static_cast<std::uint16_t>(v));
        return icOk;
    default:
        return icErrInvalidArg;
    }
}

// ---- iccMlutType ----------------------------------------------------------------------------

void iccMlutType::clear() {
    iccTagType::clear();
    resetLayout();
}

void iccMlutType::resetLayout() {
    inputChannels = outputChannels = 0;
    offsetB = offsetMatrix = offsetM = offsetClut = offsetA = 0;
    bCurves.reset();
    matrix.reset();
    mCurves.reset();
    clut.reset();
    aCurves.reset();
}

std::uint64_t iccMlutType::encodedSize() const {
    return std::max({offsetB, offsetMatrix, offsetM, offsetClut, offsetA});
}

icMlutElements iccMlutType::present() const {
    return {bCurves.has_value(), matrix.has_value(), mCurves.has_value(), clut.has_value(),
            aCurves.has_value()};
}

icStatus iccMlutType::createLayout(icSignature type, std::uint32_t inputs, std::uint32_t outputs,
                                   icMlutElements elements) {
    // The raw bytes stay: decoding lays out the fields of the bytes it is reading.
    resetLayout();
    if ((type != kAToB && type != kBToA) || inputs > 255 || outputs > 255)
        return icErrInvalidArg;
    typeSig_ = type;
    inputChannels = inputs;
    outputChannels = outputs;
    const std::uint32_t bmCount = type == kBToA ? inputs : outputs;
    const std::uint32_t aCount = type == kBToA ? outputs : inputs;
    try {
        if (elements.bCurves)
            bCurves.emplace(bmCount);
        if (elements.matrix) {
            matrix.emplace();
            matrix->fill(0);
            (*matrix)[0] = (*matrix)[4] = (*matrix)[8] = kOneS15Fixed16;
        }
        if (elements.mCurves)
            mCurves.emplace(bmCount);
        if (elements.clut)
            clut.emplace();
        if (elements.aCurves)
            aCurves.emplace(aCount);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

icStatus iccMlutType::validate() const {
    for (std::uint32_t offset : {offsetB, offsetMatrix, offsetM, offsetClut, offsetA})
        if (offset % 4 != 0)
            return icErrBadProfile;
    if (typeSig_ != kAToB && typeSig_ != kBToA)
        return icErrBadProfile;
    const icMlutElements e{offsetB != 0, offsetMatrix != 0, offsetM != 0, offsetClut != 0,
                           offsetA != 0};
    return validStructure(e) ? icOk : icErrBadProfile;
}

namespace {

// One curve after another from `offset`, each starting on a 4-byte boundary after the last.
icStatus readCurves(std::span<const std::uint8_t> raw, std::uint32_t offset,
                    std::vector<iccCurveElement>& curves) {
    std::uint64_t at = offset;
    for (auto& curve : curves) {
        if (at > raw.size())
            return icErrTruncated;
        if (icStatus s = curve.decodeFrom(raw.subspan(static_cast<std::size_t>(at))); s != icOk)
            return s;
        at += roundUp4(curve.size());
    }
    return icOk;
}

} // namespace

icStatus iccMlutType::decode() {
    iccReader r(raw());
    const icSignature type = r.sig();
    r.skip(4);
    const std::uint8_t inputs = r.u8();
    const std::uint8_t outputs = r.u8();
    r.skip(2);
    std::uint32_t offsets[5];
    for (auto& offset : offsets)
        offset = r.u32();
    if (!r.ok())
        return icErrTruncated;
    // Another type is refused here, before the layout would call it an invalid argument.
    if (type != kAToB && type != kBToA)
        return icErrBadProfile;
    const icMlutElements elements{offsets[0] != 0, offsets[1] != 0, offsets[2] != 0,
                                  offsets[3] != 0, offsets[4] != 0};
    if (icStatus s = createLayout(type, inputs, outputs, elements); s != icOk)
        return s;
    offsetB = offsets[0];
    offsetMatrix = offsets[1];
    offsetM = offsets[2];
    offsetClut = offsets[3];
    offsetA = offsets[4];
    if (icStatus s = validate(); s != icOk)
        return s;

    for (auto [curves, offset] : {std::pair{&bCurves, offsetB}, std::pair{&mCurves, offsetM},
                                  std::pair{&aCurves, offsetA}}) {
        if (!*curves)
            continue;
        if (icStatus s = readCurves(raw(), offset, **curves); s != icOk)
            return s;
    }
    if (matrix) {
        r.seek(offsetMatrix);
        for (auto& value : *matrix)
            value = static_cast<std::int32_t>(r.u32());
        if (!r.ok())
            return icErrTruncated;
    }
    if (clut) {
        if (offsetClut > rawSize_ || rawSize_ - offsetClut < iccClut::kHeaderSize)
            return icErrTruncated;
        const auto encoded = raw().subspan(offsetClut);
        if (icStatus s = clut->set(inputChannels, outputChannels, encoded[16], encoded); s != icOk)
            return s;
    }
    return icOk;
}

icStatus iccMlutType::rebuild() {
    if (typeSig_ != kAToB && typeSig_ != kBToA)
        return icErrGeneral;
    // A layout that decoding would refuse is not written at all, nor one with a CLUT that was
    // never given its grid.
    if (!validStructure(present()))
        return icErrBadProfile;
    if (clut && clut->byteSize() < iccClut::kHeaderSize)
        return icErrGeneral;

    // Curves first, so that their sizes are current; each is stored padded to 4 bytes.
    const auto curveSetSize = [](std::vector<iccCurveElement>& curves, std::uint64_t& size) {
        size = 0;
        for (auto& curve : curves) {
            if (icStatus s = curve.rebuild(); s != icOk)
                return s;
            size += roundUp4(curve.size());
        }
        return icOk;
    };
    std::uint64_t bSize = 0, mSize = 0, aSize = 0;
    for (auto [curves, size] :
         {std::pair{&bCurves, &bSize}, std::pair{&mCurves, &mSize}, std::pair{&aCurves, &aSize}}) {
        if (!*curves)
            continue;
        if (icStatus s = curveSetSize(**curves, *size); s != icOk)
            return s;
    }

    // B curves, matrix, M curves, CLUT, A curves, each right after the one before.
    std::uint64_t at = kTagHeaderSize;
    const auto place = [&at](bool present, std::uint64_t size) -> std::uint64_t {
        if (!present)
            return 0;
        const std::uint64_t offset = at;
        at += size;
        return offset;
    };
    const std::uint64_t newB = place(true, bSize);
    const std::uint64_t newMatrix = place(matrix.has_value(), kMatrixSize);
    const std::uint64_t newM = place(mCurves.has_value(), mSize);
    const std::uint64_t newClut = place(clut.has_value(), clut ? roundUp4(clut->byteSize()) : 0);
    const std::uint64_t newA = place(aCurves.has_value(), aSize);
    if (at > UINT32_MAX)
        return icErrInvalidArg;

    std::vector<std::uint8_t> bytes;
    try {
        bytes.reserve(static_cast<std::size_t>(at));
        iccWriter w(bytes);
        w.sig(typeSig_);
        w.u32(0);
        w.u8(static_cast<std::uint8_t>(inputChannels));
        w.u8(static_cast<std::uint8_t>(outputChannels));
        w.u16(0);
        for (std::uint64_t offset : {newB, newMatrix, newM, newClut, newA})
            w.u32(static_cast<std::uint32_t>(offset));
        const auto writeCurves = [&w](std::optional<std::vector<iccCurveElement>>& curves) {
            if (!curves)
                return;
            for (auto& curve : *curves) {
                w.bytes(curve.data());
                w.pad4();
            }
        };
        writeCurves(bCurves);
        if (matrix)
            for (std::int32_t value : *matrix)
                w.u32(static_cast<std::uint32_t>(value));
        writeCurves(mCurves);
        if (clut) {
            w.bytes(clut->encoded());
            w.pad4();
        }
        writeCurves(aCurves);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    if (icStatus s = adoptEncoded(std::move(bytes)); s != icOk)
        return s;
    offsetB = static_cast<std::uint32_t>(newB);
    offsetMatrix = static_cast<std::uint32_t>(newMatrix);
    offsetM = static_cast<std::uint32_t>(newM);
    offsetClut = static_cast<std::uint32_t>(newClut);
    offsetA = static_cast<std::uint32_t>(newA);
    return icOk;
}

namespace {

// The load of the subclasses: the base load, and when that fails the tag's bytes set again as
// plain bytes, whose result stands. Only a successful first load is held to the own signature.
icStatus loadOwnType(iccMlutType& tag, icSignature sig, iccProfile& profile, icStatus loaded) {
    if (icFailed(loaded)) {
        const auto bytes = profile.getTagDataBySignature(sig);
        if (bytes.data() == nullptr)
            return icErrBadProfile;
        return tag.setData(bytes);
    }
    return tag.typeSignature() == tag.ownSignature() ? loaded : icErrBadProfile;
}

} // namespace

icStatus iccLutAToBType::loadBySignature(icSignature sig, iccProfile& profile) {
    return loadOwnType(*this, sig, profile, iccMlutType::loadBySignature(sig, profile));
}

icStatus iccLutBToAType::loadBySignature(icSignature sig, iccProfile& profile) {
    return loadOwnType(*this, sig, profile, iccMlutType::loadBySignature(sig, profile));
}
