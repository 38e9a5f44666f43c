#include "tagtypes/curve_type.h"

#include "numeric/interpolation.h"
#include "profile/profile.h"
#include "tagtypes/tag_factory.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace {

// The upper clamp of the parametric functions lies a hundredth above full scale, as their plots
// and exports have always had it; the 16-bit form clamps to 65535 on its own.
constexpr double kParametricClamp = 65535.01;

// Parameters the byte layout of a function type holds; an unknown type holds none.
std::uint32_t storedParameterCount(std::uint16_t functionType) {
    const std::int32_t n = iccParametricCurveType::parameterCountFor(functionType);
    return n < 0 ? 0 : static_cast<std::uint32_t>(n);
}

std::uint16_t roundToU16(double y) {
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(truncToInt64(y + 0.5), 0, 65535));
}

std::int32_t roundToS32(double y) {
    // Not clamped to the curve's range; only kept inside what 32 bits can hold.
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(truncToInt64(y + 0.5), INT32_MIN, INT32_MAX));
}

// Runs a curve's double resampling and converts the result.
template <class Curve, class T, class Convert>
icStatus resampleAs(const Curve& curve, std::uint32_t points, std::vector<T>& out,
                    Convert convert) {
    out.clear();
    std::vector<double> values;
    if (icStatus s = curve.resample(points, values); s != icOk)
        return s;
    try {
        out.resize(values.size());
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    std::transform(values.begin(), values.end(), out.begin(), convert);
    return icOk;
}

// Room for N results; N below 2 has no x step.
icStatus prepareResample(std::uint32_t points, std::vector<double>& out) {
    out.clear();
    if (points < 2)
        return icErrInvalidArg;
    try {
        out.resize(points);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return icOk;
}

// One parametric function at x on the 0..65535 scale. The comparisons are strict: at x = d (or
// x = -b/a) the lower branch applies.
double evaluateParametric(std::uint16_t type, const std::vector<double>& p, double x) {
    const double g = p[0];
    switch (type) {
    case 0:
        return std::pow(x, g) * 65535.0;
    case 1: {
        const double a = p[1], b = p[2];
        if (x > -b / a)
            return std::min(std::pow(a * x + b, g) * 65535.0, kParametricClamp);
        return 0.0;
    }
    case 2: {
        const double a = p[1], b = p[2], c = p[3];
        const double y = x > -b / a
                             ? std::min((std::pow(a * x + b, g) + c) * 65535.0, kParametricClamp)
                             : c * 65535.0;
        return y < 0 ? 0.0 : y;
    }
    case 3: {
        const double a = p[1], b = p[2], c = p[3], d = p[4];
        const double y =
            x > d ? std::min(std::pow(a * x + b, g) * 65535.0, kParametricClamp) : c * 65535.0 * x;
        return y < 0 ? 0.0 : y;
    }
    default: {
        const double a = p[1], b = p[2], c = p[3], d = p[4], e = p[5], f = p[6];
        const double y = x > d ? std::min((std::pow(a * x + b, g) + e) * 65535.0, kParametricClamp)
                               : (c * x + f) * 65535.0;
        return y < 0 ? 0.0 : y;
    }
    }
}

} // namespace

// ---- iccCurveType ---------------------------------------------------------------------------

void iccCurveType::clear() {
    iccTagType::clear();
    count_ = 0;
    entries_.clear();
    gamma_ = 1.0;
}

icStatus iccCurveType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    iccReader r(raw());
    r.skip(8);
    const std::uint32_t count = r.u32();
    if (!r.ok())
        return icErrTruncated;
    // Counted from byte 8 rather than 12, so two entries may be missing here; a curve loaded
    // from a profile is then refused by the size check that follows decoding. Missing entries
    // read as 0.
    if (2 * std::uint64_t(count) + 8 > rawSize_)
        return icErrTruncated;
    count_ = count;
    if (count == 0) {
        gamma_ = 1.0;
    } else if (count == 1) {
        gamma_ = r.u16() * 0.00390625;
    } else {
        if (count > kMaxEntries)
            return icErrBadProfile;
        try {
            entries_.resize(count);
        } catch (const std::bad_alloc&) {
            return icErrNoMemory;
        }
        for (auto& entry : entries_)
            entry = r.u16();
    }
    return icOk;
}

icStatus iccCurveType::build(std::uint32_t count, std::span<const std::uint16_t> values) {
    if (!values.empty() && values.size() < count)
        return icErrInvalidArg;
    // Decoding refuses such a curve anyway; refusing it here avoids allocating for it.
    if (count > kMaxEntries)
        return icErrBadProfile;
    std::vector<std::uint8_t> bytes;
    try {
        bytes.reserve(12 + 2 * std::size_t(count));
        iccWriter w(bytes);
        w.sig(kSignature);
        w.u32(0);
        w.u32(count);
        if (!values.empty()) {
            for (std::uint32_t i = 0; i < count; ++i)
                w.u16(values[i]);
        } else if (count == 1) {
            w.u8f8(1.0);
        } else {
            const double step = 65535.0 / (count - 1);
            for (std::uint32_t i = 0; i < count; ++i)
                w.u16(static_cast<std::uint16_t>(truncToInt64(i * step + 0.5)));
        }
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return setData(bytes);
}

icStatus iccCurveType::build(std::span<const double> values) {
    if (values.size() > kMaxEntries)
        return icErrBadProfile;
    const auto count = static_cast<std::uint32_t>(values.size());
    if (count == 0)
        return build(0);
    if (count == 1) {
        const std::uint16_t stored = doubleToU8Fixed8(values[0]);
        if (icStatus s = build(1, {&stored, 1}); s != icOk)
            return s;
        // The double is kept as given, so an export prints what was imported.
        gamma_ = values[0];
        return icOk;
    }
    std::vector<std::uint16_t> entries;
    try {
        entries.resize(count);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    for (std::uint32_t i = 0; i < count; ++i)
        entries[i] = static_cast<std::uint16_t>(
            truncToInt64(std::min(std::max(values[i], 0.0), 65535.0) + 0.5));
    return build(count, entries);
}

icStatus iccCurveType::resample(std::uint32_t points, std::vector<double>& out) const {
    if (icStatus s = prepareResample(points, out); s != icOk)
        return s;
    const double last = points - 1;
    if (count_ < 2) {
        for (std::uint32_t i = 0; i < points; ++i)
            out[i] = std::pow(i / last, gamma_) * 65535.0;
        return icOk;
    }
    if (entries_.size() != count_) {
        out.clear();
        return icErrCurve;
    }
    if (count_ == points) {
        std::copy(entries_.begin(), entries_.end(), out.begin());
        return icOk;
    }
    std::vector<double> x, y;
    iccLinearInterpolator table;
    try {
        x.resize(count_);
        y.resize(count_);
    } catch (const std::bad_alloc&) {
        out.clear();
        return icErrNoMemory;
    }
    for (std::uint32_t j = 0; j < count_; ++j) {
        x[j] = j;
        y[j] = entries_[j];
    }
    if (icStatus s = table.setup(x, y); s != icOk) {
        out.clear();
        return s;
    }
    const double span = count_ - 1;
    for (std::uint32_t i = 0; i < points; ++i)
        out[i] = table(span * i / last);
    return icOk;
}

icStatus iccCurveType::resample(std::uint32_t points, std::vector<std::uint16_t>& out) const {
    return resampleAs(*this, points, out, roundToU16);
}

icStatus iccCurveType::resample(std::uint32_t points, std::vector<std::int32_t>& out) const {
    return resampleAs(*this, points, out, roundToS32);
}

// ---- iccParametricCurveType -----------------------------------------------------------------

std::int32_t iccParametricCurveType::parameterCountFor(std::uint16_t functionType) {
    switch (functionType) {
    case 0:
        return 1;
    case 1:
        return 3;
    case 2:
        return 4;
    case 3:
        return 5;
    case 4:
        return 7;
    default:
        return -1;
    }
}

void iccParametricCurveType::clear() {
    iccTagType::clear();
    functionType = 0;
    parameterCount = 0;
    parameters.clear();
}

icStatus iccParametricCurveType::decode() {
    if (icStatus s = checkSignature(); s != icOk)
        return s;
    iccReader r(raw());
    r.skip(8);
    const std::uint16_t type = r.u16();
    // Bytes too short for the type's parameters leave the curve undecoded (type 0 without
    // parameters, so it can be neither rebuilt nor resampled) and are no failure. The check
    // counts from byte 8, so the last parameter may be missing; it then reads as 0 here and a
    // load from a profile fails its size check.
    if (!r.ok() || 4 * std::uint64_t(storedParameterCount(type)) + 8 > rawSize_)
        return icOk;
    r.skip(2);
    functionType = type;
    parameterCount = parameterCountFor(type);
    if (parameterCount < 0)
        return icOk;
    try {
        parameters.resize(static_cast<std::size_t>(parameterCount));
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    for (auto& p : parameters)
        p = r.s15f16();
    return icOk;
}

icStatus iccParametricCurveType::build(std::uint16_t type, std::int32_t count,
                                       std::span<const double> values) {
    functionType = type;
    parameterCount = count;
    if (count != parameterCountFor(type) ||
        (count > 0 && values.size() < static_cast<std::size_t>(count)))
        return icErrInvalidArg;
    std::vector<std::uint8_t> bytes;
    try {
        iccWriter w(bytes);
        w.sig(kSignature);
        w.u32(0);
        w.u16(type);
        w.u16(0);
        for (std::int32_t i = 0; i < count; ++i)
            w.s15f16(values[static_cast<std::size_t>(i)]);
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return setData(bytes);
}

icStatus iccParametricCurveType::rebuild() {
    // build() starts by clearing the object, so it gets a copy of the parameters.
    std::vector<double> values;
    try {
        values = parameters;
    } catch (const std::bad_alloc&) {
        return icErrNoMemory;
    }
    return build(functionType, parameterCount, values);
}

icStatus iccParametricCurveType::resample(std::uint32_t points, std::vector<double>& out) const {
    const std::int32_t needed = parameterCountFor(functionType);
    if (needed < 0 || parameters.size() < static_cast<std::size_t>(needed)) {
        out.clear();
        return icErrCurve;
    }
    if (icStatus s = prepareResample(points, out); s != icOk)
        return s;
    const double last = points - 1;
    for (std::uint32_t i = 0; i < points; ++i)
        out[i] = evaluateParametric(functionType, parameters, i / last);
    return icOk;
}

icStatus iccParametricCurveType::resample(std::uint32_t points,
                                          std::vector<std::uint16_t>& out) const {
    return resampleAs(*this, points, out, roundToU16);
}

icStatus iccParametricCurveType::resample(std::uint32_t points,
                                          std::vector<std::int32_t>& out) const {
    return resampleAs(*this, points, out, roundToS32);
}

// ---- iccCurveElement ------------------------------------------------------------------------

void iccCurveElement::clear() {
    curv_.reset();
    para_.reset();
}

icStatus iccCurveElement::create(icSignature typeSignature) {
    clear();
    std::unique_ptr<iccTagType> tag;
    if (icStatus s = makeTagType(typeSignature, tag); s != icOk)
        return s;
    return adopt(std::move(tag));
}

icStatus iccCurveElement::adopt(std::unique_ptr<iccTagType> tag) {
    clear();
    if (auto* curv = dynamic_cast<iccCurveType*>(tag.get())) {
        tag.release();
        curv_.reset(curv);
    } else if (auto* para = dynamic_cast<iccParametricCurveType*>(tag.get())) {
        tag.release();
        para_.reset(para);
    } else {
        return icErrGeneral;
    }
    return icOk;
}

icStatus iccCurveElement::buildParametric(std::uint16_t type, std::int32_t count,
                                          std::span<const double> values) {
    if (icStatus s = create(iccParametricCurveType::kSignature); s != icOk)
        return s;
    return para_->build(type, count, values);
}

icStatus iccCurveElement::buildCurve(std::uint32_t count, std::span<const std::uint16_t> values) {
    if (icStatus s = create(iccCurveType::kSignature); s != icOk)
        return s;
    return curv_->build(count, values);
}

icStatus iccCurveElement::buildCurve(std::span<const double> values) {
    if (icStatus s = create(iccCurveType::kSignature); s != icOk)
        return s;
    return curv_->build(values);
}

icStatus iccCurveElement::loadByTagSignature(icSignature tagSignature, iccProfile& profile) {
    const int index = profile.findTag(tagSignature);
    if (index < 0)
        return icErrGeneral;
    if (icStatus s = create(profile.getTagTypeSignature(index)); s != icOk)
        return s;
    if (curv_)
        return curv_->loadBySignature(tagSignature, profile);
    return para_->loadBySignature(tagSignature, profile);
}

icStatus iccCurveElement::decodeFrom(std::span<const std::uint8_t> bytes) {
    clear();
    iccReader r(bytes);
    const icSignature type = r.sig();
    r.skip(4);
    std::uint64_t length = 0;
    if (type == iccCurveType::kSignature)
        length = 12 + 2 * std::uint64_t(r.u32());
    else if (type == iccParametricCurveType::kSignature)
        length = 12 + 4 * std::uint64_t(storedParameterCount(r.u16()));
    if (!r.ok())
        return icErrTruncated;
    if (icStatus s = create(type); s != icOk)
        return s;
    // The curve's own bytes only, so that its raw size is its true size and the next curve of
    // a set starts right after it.
    if (length > bytes.size())
        return icErrTruncated;
    const auto own = bytes.first(static_cast<std::size_t>(length));
    return curv_ ? curv_->setData(own) : para_->setData(own);
}

icSignature iccCurveElement::signature() const {
    if (curv_)
        return iccCurveType::kSignature;
    if (para_)
        return iccParametricCurveType::kSignature;
    return 0xFFFFFFFFu;
}

std::uint32_t iccCurveElement::size() const {
    if (curv_)
        return curv_->rawSize();
    if (para_)
        return para_->rawSize();
    return 0;
}

std::span<const std::uint8_t> iccCurveElement::data() {
    if (curv_)
        return curv_->getData();
    if (para_)
        return para_->getData();
    return {};
}

icStatus iccCurveElement::rebuild() {
    if (curv_)
        return curv_->rebuild();
    if (para_)
        return para_->rebuild();
    return icErrGeneral;
}

template <class T>
icStatus iccCurveElement::resampleHeld(std::uint32_t points, std::vector<T>& out) const {
    if (curv_)
        return curv_->resample(points, out);
    if (para_)
        return para_->resample(points, out);
    out.clear();
    return icErrGeneral;
}

icStatus iccCurveElement::resample(std::uint32_t points, std::vector<double>& out) const {
    return resampleHeld(points, out);
}

icStatus iccCurveElement::resample(std::uint32_t points, std::vector<std::uint16_t>& out) const {
    return resampleHeld(points, out);
}

icStatus iccCurveElement::resample(std::uint32_t points, std::vector<std::int32_t>& out) const {
    return resampleHeld(points, out);
}
