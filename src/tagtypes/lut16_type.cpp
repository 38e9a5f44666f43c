#include "tagtypes/lut16_type.h"

#include <algorithm>
#include <new>

namespace {

// base^exponent, or none when it exceeds `limit`. The exponent is a channel count, so the loop
// is short; every step is checked before it multiplies.
std::optional<std::uint64_t> checkedPower(std::uint64_t base, std::uint32_t exponent,
                                          std::uint64_t limit) {
    std::uint64_t value = 1;
    for (std::uint32_t i = 0; i < exponent; ++i) {
        if (base != 0 && value > limit / base)
            return std::nullopt;
        value *= base;
    }
    if (value > limit)
        return std::nullopt;
    return value;
}

// grid^inputs x outputs, or none beyond `limit`.
std::optional<std::uint64_t> clutValues(std::uint32_t grid, std::uint32_t inputs,
                                        std::uint32_t outputs, std::uint64_t limit) {
    const auto nodes = checkedPower(grid, inputs, limit);
    if (!nodes || (outputs != 0 && *nodes > limit / outputs))
        return std::nullopt;
    return *nodes * outputs;
}

template <typename Value> void readValues(iccReader& r, std::vector<Value>& values) {
    if constexpr (sizeof(Value) == 1)
        r.u8s(values);
    else
        r.u16s(values);
}

// Each channel's table rises evenly from 0 to the largest value.
template <typename Value>
void fillRamps(std::vector<Value>& values, std::uint32_t channels, std::uint32_t entries) {
    constexpr double top = std::numeric_limits<Value>::max();
    for (std::uint32_t c = 0; c < channels; ++c)
        for (std::uint32_t i = 0; i < entries; ++i)
            values[std::size_t(c) * entries + i] =
                entries < 2 ? 0 : static_cast<Value>(truncToInt64(i * top / (entries - 1) + 0.5));
}

constexpr std::array<std::int32_t, 9> kIdentityMatrix = {65536, 0, 0, 0, 65536, 0, 0, 0, 65536};

} // namespace

template <typename Value> void iccMftLutType<Value>::clear() {
    iccTagType::clear();
    inputTables.clear();
    clut.clear();
    outputTables.clear();
    matrix.fill(0);
    inputChannels_ = outputChannels_ = inputEntries_ = outputEntries_ = gridPoints_ = 0;
    clutValueCount_ = 0;
}

template <typename Value> std::uint64_t iccMftLutType<Value>::encodedSize() const {
    return kTablesOffset + sizeof(Value) * (std::uint64_t(inputValueCount()) + clutValueCount_ +
                                            outputValueCount());
}

template <typename Value> std::size_t iccMftLutType<Value>::clutOffset() const {
    return kTablesOffset + sizeof(Value) * std::size_t(inputValueCount());
}

template <typename Value> std::size_t iccMftLutType<Value>::outputOffset() const {
    return clutOffset() + sizeof(Value) * std::size_t(clutValueCount_);
}

template <typename Value> bool iccMftLutType<Value>::tablesMatchDimensions() const {
    return inputTables.size() == inputValueCount() && clut.size() == clutValueCount_ &&
           outputTables.size() == outputValueCount();
}

template <typename Value> icStatus iccMftLutType<Value>::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    constexpr bool wide = sizeof(Value) == 2;
    // The size checks below count from byte 8, as these tables have always been read, so each
    // is eight bytes lenient; the check against the whole encoding then catches the rest.
    if (rawSize_ < 44)
        return icErrTruncated;
    // The fixed fields, with any the bytes do not reach read as 0.
    std::array<std::uint8_t, kTablesOffset> head{};
    std::copy_n(raw().begin(), std::min<std::size_t>(rawSize_, head.size()), head.begin());
    iccReader r(head);
    r.skip(8);
    const std::uint32_t inputs = r.u8();
    const std::uint32_t outputs = r.u8();
    const std::uint32_t grid = r.u8();
    r.skip(1);
    std::array<std::int32_t, 9> fixed{};
    for (auto& v : fixed)
        v = static_cast<std::int32_t>(r.u32());
    const std::uint32_t inputEntries = wide ? r.u16() : 256;
    const std::uint32_t outputEntries = wide ? r.u16() : 256;

    const std::uint64_t inputValues = std::uint64_t(inputs) * inputEntries;
    if (wide) {
        if (2 * inputValues + 44 > rawSize_)
            return icErrTruncated;
        // This check has always left out the output channels.
        const auto nodes = checkedPower(grid, inputs, rawSize_);
        if (!nodes || 2 * inputValues + 44 + 2 * *nodes > rawSize_)
            return icErrTruncated;
    }
    const auto clutCount = clutValues(grid, inputs, outputs, rawSize_);
    if (!clutCount)
        return icErrBadProfile;
    const std::uint64_t outputValues = std::uint64_t(outputs) * outputEntries;
    if (kTablesOffset + sizeof(Value) * (inputValues + *clutCount + outputValues) > rawSize_)
        return icErrBadProfile;

    try {
        std::vector<Value> in(inputValues), table(*clutCount), out(outputValues);
        iccReader tables(raw());
        tables.skip(kTablesOffset);
        readValues(tables, in);
        readValues(tables, table);
        readValues(tables, out);
        inputTables = std::move(in);
        clut = std::move(table);
        outputTables = std::move(out);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    inputChannels_ = inputs;
    outputChannels_ = outputs;
    gridPoints_ = grid;
    inputEntries_ = inputEntries;
    outputEntries_ = outputEntries;
    clutValueCount_ = static_cast<std::uint32_t>(*clutCount);
    matrix = fixed;
    return icOk;
}

template <typename Value>
void iccMftLutType<Value>::writeValues(std::size_t offset, const std::vector<Value>& values) {
    if (!bytesHoldTables() || offset + sizeof(Value) * values.size() > rawSize_)
        return;
    std::uint8_t* p = writableRaw();
    if (p == nullptr)
        return;
    p += offset;
    for (Value v : values) {
        if constexpr (sizeof(Value) == 1)
            *p = v;
        else
            storeBE16(p, v);
        p += sizeof(Value);
    }
}

template <typename Value> void iccMftLutType<Value>::writeHeaderFields() {
    if (!bytesHoldTables())
        return;
    std::uint8_t* raw = writableRaw();
    if (raw == nullptr)
        return;
    raw[8] = static_cast<std::uint8_t>(inputChannels_);
    raw[9] = static_cast<std::uint8_t>(outputChannels_);
    raw[10] = static_cast<std::uint8_t>(gridPoints_);
    for (std::size_t i = 0; i < matrix.size(); ++i)
        storeBE32(raw + 12 + 4 * i, static_cast<std::uint32_t>(matrix[i]));
    if constexpr (sizeof(Value) == 2) {
        storeBE16(raw + 48, static_cast<std::uint16_t>(inputEntries_));
        storeBE16(raw + 50, static_cast<std::uint16_t>(outputEntries_));
    }
}

template <typename Value> icStatus iccMftLutType<Value>::rebuild() {
    if (rawSize_ == 0)
        return icErrGeneral;
    if (!tablesMatchDimensions())
        return icErrInvalidArg;
    if (!bytesHoldTables()) {
        if (icStatus s = setRawSize(encodedSize()); s != icOk)
            return s;
    }
    // Written in place: a buffer shared with a profile is copied first.
    if (writableRaw() == nullptr)
        return icErrNoMemory;
    writeHeaderFields();
    writeValues(kTablesOffset, inputTables);
    writeValues(outputOffset(), outputTables);
    writeValues(clutOffset(), clut);
    return icOk;
}

template <typename Value>
icStatus iccMftLutType<Value>::setInputTables(std::span<const Value> values) {
    try {
        if (values.empty()) {
            inputTables.assign(inputValueCount(), 0);
            fillRamps(inputTables, inputChannels_, inputEntries_);
        } else if (values.size() == inputValueCount()) {
            inputTables.assign(values.begin(), values.end());
        } else {
            return icErrInvalidArg;
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    writeValues(kTablesOffset, inputTables);
    return icOk;
}

template <typename Value>
icStatus iccMftLutType<Value>::setOutputTables(std::span<const Value> values) {
    try {
        if (values.empty()) {
            outputTables.assign(outputValueCount(), 0);
            fillRamps(outputTables, outputChannels_, outputEntries_);
        } else if (values.size() == outputValueCount()) {
            outputTables.assign(values.begin(), values.end());
        } else {
            return icErrInvalidArg;
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    // Placed after the CLUT, which must already have its length.
    if (clut.size() == clutValueCount_)
        writeValues(outputOffset(), outputTables);
    return icOk;
}

template <typename Value> icStatus iccMftLutType<Value>::setClut(std::span<const Value> values) {
    if (values.size() != clutValueCount_)
        return icErrInvalidArg;
    try {
        clut.assign(values.begin(), values.end());
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    writeValues(clutOffset(), clut);
    return icOk;
}

template <typename Value>
void iccMftLutType<Value>::setMatrixFixed(std::span<const std::int32_t, 9> values) {
    std::copy(values.begin(), values.end(), matrix.begin());
    writeHeaderFields();
}

template <typename Value> void iccMftLutType<Value>::setMatrix(std::span<const double, 9> values) {
    std::array<std::int32_t, 9> fixed{};
    std::transform(values.begin(), values.end(), fixed.begin(), doubleToS15Fixed16);
    setMatrixFixed(fixed);
}

std::optional<std::size_t> iccMftLut::clutNodeOffset(std::span<const std::uint32_t> node) const {
    if (node.size() != inputChannels_)
        return std::nullopt;
    std::size_t index = 0;
    for (std::uint32_t i : node) {
        if (i >= gridPoints_)
            return std::nullopt;
        index = index * gridPoints_ + i;
    }
    return index * outputChannels_;
}

template <typename Value>
icStatus iccMftLutType<Value>::initializeTables(std::uint32_t inputs, std::uint32_t inputEntries,
                                                std::uint32_t outputs, std::uint32_t outputEntries,
                                                std::uint32_t grid) {
    if (inputs > kMaxDimension || outputs > kMaxDimension || grid > kMaxDimension ||
        inputEntries > UINT16_MAX || outputEntries > UINT16_MAX)
        return icErrInvalidArg;
    // The whole encoding must stay addressable by the 32-bit sizes of the tag directory.
    const auto clutCount = clutValues(grid, inputs, outputs, UINT32_MAX);
    if (!clutCount)
        return icErrInvalidArg;
    const std::uint64_t size =
        kTablesOffset + sizeof(Value) * (std::uint64_t(inputs) * inputEntries + *clutCount +
                                         std::uint64_t(outputs) * outputEntries);
    if (size > UINT32_MAX)
        return icErrInvalidArg;

    clear();
    inputChannels_ = inputs;
    outputChannels_ = outputs;
    inputEntries_ = inputEntries;
    outputEntries_ = outputEntries;
    gridPoints_ = grid;
    clutValueCount_ = static_cast<std::uint32_t>(*clutCount);
    std::vector<std::uint8_t> bytes;
    try {
        inputTables.assign(inputValueCount(), 0);
        clut.assign(clutValueCount_, 0);
        outputTables.assign(outputValueCount(), 0);
        // Room for the padding too, so that taking the bytes does not copy them.
        bytes.reserve(roundUp4(size));
        bytes.assign(size, 0);
    } catch (const std::bad_alloc&) {
        clear();
        return icErrNoMemory;
    }
    fillRamps(inputTables, inputs, inputEntries);
    fillRamps(outputTables, outputs, outputEntries);
    matrix = kIdentityMatrix;
    storeBE32(bytes.data(), ownSignature());
    if (icStatus s = adoptEncoded(std::move(bytes)); s != icOk) {
        clear();
        return s;
    }
    return rebuild();
}

template class iccMftLutType<std::uint8_t>;
template class iccMftLutType<std::uint16_t>;

// ---- conversions between the two widths -----------------------------------------------------

icStatus iccLut16Type::setFromLut8(const iccLut8Type& lut8) {
    if (!lut8.tablesMatchDimensions())
        return icErrInvalidArg;
    if (icStatus s =
            initialize(lut8.inputChannels(), 256, lut8.outputChannels(), 256, lut8.gridPoints());
        s != icOk)
        return s;
    const auto widen = [](std::uint8_t v) { return static_cast<std::uint16_t>(v * 257); };
    std::transform(lut8.inputTables.begin(), lut8.inputTables.end(), inputTables.begin(), widen);
    std::transform(lut8.clut.begin(), lut8.clut.end(), clut.begin(), widen);
    std::transform(lut8.outputTables.begin(), lut8.outputTables.end(), outputTables.begin(), widen);
    matrix = lut8.matrix;
    return rebuild();
}

icStatus iccLut8Type::setFromLut16(const iccLut16Type& lut16) {
    if (!lut16.tablesMatchDimensions() || lut16.inputEntries() != 256 ||
        lut16.outputEntries() != 256)
        return icErrInvalidArg;
    if (icStatus s = initialize(lut16.inputChannels(), lut16.outputChannels(), lut16.gridPoints());
        s != icOk)
        return s;
    const auto narrow = [](std::uint16_t v) {
        return static_cast<std::uint8_t>(truncToInt64(v / 257.0 + 0.5));
    };
    std::transform(lut16.inputTables.begin(), lut16.inputTables.end(), inputTables.begin(), narrow);
    std::transform(lut16.clut.begin(), lut16.clut.end(), clut.begin(), narrow);
    std::transform(lut16.outputTables.begin(), lut16.outputTables.end(), outputTables.begin(),
                   narrow);
    matrix = lut16.matrix;
    return rebuild();
}
