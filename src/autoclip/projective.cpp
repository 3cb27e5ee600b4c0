#include "autoclip/projective.h"

#include <algorithm>

#include "autoclip/elimination.h"

/*
 * A point pair (x, y) -> (u, v) gives two linear equations in the coefficients:
 *
 *   x c0 + y c1 + c2                      - x u c6 - y u c7 = u
 *                     x c3 + y c4 + c5    - x v c6 - y v c7 = v
 *
 * Those for the u of the first three pairs go to rows 0 to 2, those for their v to rows 3 to 5, and the last pair's to
 * rows 6 and 7, so that no diagonal entry is zero by construction.
 */
int SolveMultiUnknownFunc(double* coeffs, float* from, float* to, int n) {
  constexpr int kUnknowns = 8;
  constexpr int kRowOf[kUnknowns] = {0, 3, 1, 4, 2, 5, 6, 7};
  double a[kUnknowns][kUnknowns] = {};
  double rhs[kUnknowns] = {};
  const int equations = std::clamp(n, 0, kUnknowns);
  for (int i = 0; i < equations; ++i) {
    const bool is_v = i % 2 == 1;
    const double x = static_cast<double>(from[is_v ? i - 1 : i]);
    // With an odd n the last pair has no v, and its y is not the caller's to give.
    const double y = is_v || i + 1 < equations ? static_cast<double>(from[is_v ? i : i + 1]) : 0.0;
    const double target = static_cast<double>(to[i]);
    double* row = a[kRowOf[i]];
    double* own = row + (is_v ? 3 : 0);
    own[0] = x;
    own[1] = y;
    own[2] = 1.0;
    row[6] = -x * target;
    row[7] = -y * target;
    rhs[kRowOf[i]] = target;
  }

  vantrel::eliminate(a, rhs);
  for (int i = 0; i < equations; ++i) {
    coeffs[i] = rhs[i] / (a[i][i] == 0.0 ? vantrel::kTinyPivot : a[i][i]);
  }
  return 1;
}

float Get_U(double a, double b, double c, double d, int x, int y) {
  return static_cast<float>((x * a + y * b + c) / d) + 0.5f;
}

float Get_V(double a, double b, double c, double d, int x, int y) { return Get_U(a, b, c, d, x, y); }
