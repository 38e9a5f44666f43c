// One-dimensional tone curves: 'curv' (a sampled table or a single gamma), 'para' (one of the
// five parametric functions) and iccCurveElement, the holder that owns either kind and is used
// for the curve sets inside lutAToB/lutBToA tags.
//
// Both types resample themselves to any number of points on a 0..65535 scale, for plotting and
// for export.
#pragma once

#include "tagtypes/tag_type.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

class iccProfile;

// 'curv': count 0 is the identity, count 1 a u8Fixed8 gamma, 2 or more a table of 16-bit values.
//
// The raw bytes are the curve: rebuild keeps them as they are, and the decoded fields change
// only through the build operations, which encode new bytes and decode them again.
class iccCurveType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("curv");
    static constexpr std::uint32_t kMaxEntries = 65536;
    iccCurveType() : iccTagType(kSignature) {}

    void clear() override;
    [[nodiscard]] icStatus decode() override;
    std::uint64_t encodedSize() const override { return 12 + 2 * std::uint64_t(count_); }

    // A curve of `count` entries taken from `values`; with no values, an identity ramp
    // (a single entry then means gamma 1.0). -11 when fewer values than `count` are given,
    // -1001 above 65536 entries, -10 on allocation failure.
    [[nodiscard]] icStatus build(std::uint32_t count, std::span<const std::uint16_t> values = {});
    // A curve from doubles: none is the identity; one is a gamma, kept as given although the
    // tag stores it as u8Fixed8; more are clamped to 0..65535 and rounded to 16 bits.
    [[nodiscard]] icStatus build(std::span<const double> values);

    // N points on x = i / (N - 1); -11 for fewer than 2 points, -10 on allocation failure.
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<double>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::uint16_t>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::int32_t>& out) const;

    std::uint32_t count() const { return count_; }
    // Empty unless the count is 2 or more.
    const std::vector<std::uint16_t>& entries() const { return entries_; }
    // 1.0 for the identity; the decoded (or built) gamma for a single entry.
    double gamma() const { return gamma_; }

private:
    std::uint32_t count_ = 0;
    std::vector<std::uint16_t> entries_;
    double gamma_ = 1.0;
};

// 'para': function type and its parameters g, a, b, c, d, e, f (as many as the type has).
class iccParametricCurveType : public iccTagType {
public:
    static constexpr icSignature kSignature = icSig("para");
    iccParametricCurveType() : iccTagType(kSignature) {}

    // Parameters of a function type, -1 for a type this program does not know.
    static std::int32_t parameterCountFor(std::uint16_t functionType);

    void clear() override;
    [[nodiscard]] icStatus decode() override;
    [[nodiscard]] icStatus rebuild() override;
    // Computed in 32 bits, so the count -1 of an unknown type gives 8.
    std::uint64_t encodedSize() const override {
        return std::uint32_t(12u + 4u * static_cast<std::uint32_t>(parameterCount));
    }

    // Stores the type and count, then -11 unless `count` is the type's parameter count and as
    // many parameters are given; the parameters are stored as s15Fixed16Number.
    [[nodiscard]] icStatus build(std::uint16_t type, std::int32_t count,
                                 std::span<const double> values);

    // N points on x = i / (N - 1); -11 for fewer than 2 points, -8 for an unknown function type
    // or missing parameters, -10 on allocation failure.
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<double>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::uint16_t>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::int32_t>& out) const;

    std::uint16_t functionType = 0;
    std::int32_t parameterCount = 0;
    std::vector<double> parameters;
};

// Owns at most one 'curv' or one 'para' curve.
class iccCurveElement {
public:
    iccCurveElement() = default;
    iccCurveElement(iccCurveElement&&) noexcept = default;
    iccCurveElement& operator=(iccCurveElement&&) noexcept = default;

    void clear();
    // An empty curve of that type signature; -1 for any other signature, -10 on allocation
    // failure. Whatever was held is dropped first.
    [[nodiscard]] icStatus create(icSignature typeSignature);
    // Holds a curve object the tag factory made (and perhaps loaded); -1 for any other object.
    [[nodiscard]] icStatus adopt(std::unique_ptr<iccTagType> tag);

    [[nodiscard]] icStatus buildParametric(std::uint16_t type, std::int32_t count,
                                           std::span<const double> values);
    [[nodiscard]] icStatus buildCurve(std::uint32_t count,
                                      std::span<const std::uint16_t> values = {});
    [[nodiscard]] icStatus buildCurve(std::span<const double> values);

    // The tag with that tag signature, typed by its data; -1 if the profile has no such tag.
    [[nodiscard]] icStatus loadByTagSignature(icSignature tagSignature, iccProfile& profile);
    // The curve at the start of `bytes` (a curve inside a larger tag): its own length is read
    // from its header; -12 when the bytes end before it does, -1 for an unknown type.
    [[nodiscard]] icStatus decodeFrom(std::span<const std::uint8_t> bytes);

    // 'curv', 'para', or 0xFFFFFFFF (-1) when empty.
    icSignature signature() const;
    // The held curve's raw size, 0 when empty.
    std::uint32_t size() const;
    // The held curve's bytes, rebuilt first; empty when there is no curve or it cannot be built.
    std::span<const std::uint8_t> data();
    // Rebuilds the held curve; -1 when empty.
    [[nodiscard]] icStatus rebuild();

    iccCurveType* curve() { return curv_.get(); }
    const iccCurveType* curve() const { return curv_.get(); }
    iccParametricCurveType* parametric() { return para_.get(); }
    const iccParametricCurveType* parametric() const { return para_.get(); }

    // Resampled by the held curve; -1 when empty.
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<double>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::uint16_t>& out) const;
    [[nodiscard]] icStatus resample(std::uint32_t points, std::vector<std::int32_t>& out) const;

private:
    template <class T> icStatus resampleHeld(std::uint32_t points, std::vector<T>& out) const;

    std::unique_ptr<iccCurveType> curv_;
    std::unique_ptr<iccParametricCurveType> para_;
};
