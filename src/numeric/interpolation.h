// Linear interpolation in a table of points, used to resample sampled curves.
#pragma once

#include "profile/status.h"

#include <span>
#include <vector>

// Piecewise-linear function through points (x[j], y[j]) whose x values ascend. Outside the
// table it holds the first or the last value.
class iccLinearInterpolator {
public:
    // Copies the points; -4 unless there are at least two and both spans have the same length,
    // -10 when the copy cannot be allocated.
    [[nodiscard]] icStatus setup(std::span<const double> x, std::span<const double> y);

    // The interval is found by bisection. An interval narrower than 1e-15 yields its left value
    // rather than dividing by (almost) zero.
    double operator()(double at) const;

    bool ready() const { return x_.size() >= 2; }

private:
    std::vector<double> x_;
    std::vector<double> y_;
};
