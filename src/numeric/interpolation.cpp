#include "numeric/interpolation.h"

#include <new>

icStatus iccLinearInterpolator::setup(std::span<const double> x, std::span<const double> y) {
    x_.clear();
    y_.clear();
    if (x.size() < 2 || x.size() != y.size())
        return icErrNumeric;
    try {
        x_.assign(x.begin(), x.end());
        y_.assign(y.begin(), y.end());
    } catch (const std::bad_alloc&) {
        x_.clear();
        y_.clear();
        return icErrNoMemory;
    }
    return icOk;
}

double iccLinearInterpolator::operator()(double at) const {
    if (!ready())
        return 0.0;
    const std::size_t last = x_.size() - 1;
    if (!(at > x_[0]))
        return y_[0];
    if (!(at < x_[last]))
        return y_[last];
    // x_[low] < at < x_[high] holds throughout.
    std::size_t low = 0;
    std::size_t high = last;
    while (high - low > 1) {
        const std::size_t mid = low + (high - low) / 2;
        if (x_[mid] > at)
            high = mid;
        else
            low = mid;
    }
    const double width = x_[high] - x_[low];
    if (width < 1e-15)
        return y_[low];
    return y_[low] + (y_[high] - y_[low]) * (at - x_[low]) / width;
}
