#include "numeric/matrix.h"

#include <cmath>

namespace {

// The cone response matrix of the linear Bradford transform. Its first element is 0.895, not
// the 0.8951 found in most references: adaptation matrices this program has always written
// were computed with it, and changing it would change every 'chad' tag it builds.
constexpr icMatrix3 kBradford = {0.895,   0.2664,  -0.1614, //
                                 -0.7502, 1.7135,  0.0367,  //
                                 0.0389,  -0.0685, 1.0296};

} // namespace

icMatrix3 multiply3x3(const icMatrix3& a, const icMatrix3& b) {
    icMatrix3 r{};
    for (int row = 0; row < 3; ++row)
        for (int col = 0; col < 3; ++col)
            for (int k = 0; k < 3; ++k)
                r[row * 3 + col] += a[row * 3 + k] * b[k * 3 + col];
    return r;
}

icVector3 apply3x3(const icMatrix3& m, const icVector3& v) {
    icVector3 r{};
    for (int row = 0; row < 3; ++row)
        for (int k = 0; k < 3; ++k)
            r[row] += m[row * 3 + k] * v[k];
    return r;
}

double determinant3x3(const icMatrix3& m) {
    return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
           m[2] * (m[3] * m[7] - m[4] * m[6]);
}

icStatus invert3x3(const icMatrix3& m, icMatrix3& out) {
    const double det = determinant3x3(m);
    // Written so that a NaN determinant is also refused.
    if (!(std::fabs(det) >= kSingularDeterminant))
        return icErrSingular;
    // The adjugate (transposed cofactors) divided by the determinant.
    out = {(m[4] * m[8] - m[5] * m[7]) / det, (m[2] * m[7] - m[1] * m[8]) / det,
           (m[1] * m[5] - m[2] * m[4]) / det, (m[5] * m[6] - m[3] * m[8]) / det,
           (m[0] * m[8] - m[2] * m[6]) / det, (m[2] * m[3] - m[0] * m[5]) / det,
           (m[3] * m[7] - m[4] * m[6]) / det, (m[1] * m[6] - m[0] * m[7]) / det,
           (m[0] * m[4] - m[1] * m[3]) / det};
    return icOk;
}

icStatus bradfordAdaptation(const icVector3& sourceWhite, const icVector3& destinationWhite,
                            icMatrix3& out) {
    icMatrix3 inverse{};
    if (icStatus s = invert3x3(kBradford, inverse); s != icOk)
        return s;
    const icVector3 source = apply3x3(kBradford, sourceWhite);
    const icVector3 destination = apply3x3(kBradford, destinationWhite);
    icMatrix3 scaled = kBradford;
    for (int row = 0; row < 3; ++row) {
        if (source[row] == 0 || !std::isfinite(source[row]))
            return icErrSingular;
        const double gain = destination[row] / source[row];
        for (int col = 0; col < 3; ++col)
            scaled[row * 3 + col] *= gain;
    }
    out = multiply3x3(inverse, scaled);
    return icOk;
}
