// 3x3 matrices in row order (m00, m01, m02, m10, ... m22) and the linear Bradford chromatic
// adaptation built from them.
#pragma once

#include "profile/status.h"

#include <array>

using icMatrix3 = std::array<double, 9>;
using icVector3 = std::array<double, 3>;

// Determinants whose magnitude is below this count as singular.
inline constexpr double kSingularDeterminant = 1e-5;

inline constexpr icMatrix3 kIdentity3 = {1, 0, 0, 0, 1, 0, 0, 0, 1};

// The white point that profile connection space values refer to (D50), on a 0..100 scale.
inline constexpr icVector3 kD50White100 = {96.42, 100.0, 82.49};

icMatrix3 multiply3x3(const icMatrix3& a, const icMatrix3& b);
icVector3 apply3x3(const icMatrix3& m, const icVector3& v);
double determinant3x3(const icMatrix3& m);

// The inverse by cofactors; -200 (and `out` untouched) when |det| < 1e-5.
[[nodiscard]] icStatus invert3x3(const icMatrix3& m, icMatrix3& out);

// The matrix that adapts colours seen under `sourceWhite` to `destinationWhite` by scaling the
// cone responses: M^-1 * diag(D/S) * M with M the Bradford cone matrix. Both whites on the same
// scale. -200 when a cone response of the source white is zero (the scaling is undefined) or
// the cone matrix cannot be inverted.
[[nodiscard]] icStatus bradfordAdaptation(const icVector3& sourceWhite,
                                          const icVector3& destinationWhite, icMatrix3& out);
