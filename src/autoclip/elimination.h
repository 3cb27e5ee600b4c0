/**
 * @file elimination.h
 * @brief Gauss-Jordan elimination without row exchanges.
 */
#ifndef VANTREL_AUTOCLIP_ELIMINATION_H
#define VANTREL_AUTOCLIP_ELIMINATION_H

namespace vantrel::autoclip {

/** Stands in for a pivot of exactly zero: the computation finishes, with large results. */
inline constexpr double kTinyPivot = 1e-7;

/** Reduces an N x N system to its diagonal: afterwards unknown i is rhs[i] / a[i][i]. */
template <int N>
void eliminate(double (&a)[N][N], double (&rhs)[N]) {
  for (int k = 0; k < N; ++k) {
    for (int j = 0; j < N; ++j) {
      if (j == k) continue;
      if (a[k][k] == 0.0) a[k][k] = kTinyPivot;
      const double f = -a[j][k] / a[k][k];
      for (int m = 0; m < N; ++m) {
        // Zeros are passed over: an infinite factor times zero would spoil the row.
        if (m != k && a[k][m] != 0.0) a[j][m] += a[k][m] * f;
      }
      a[j][k] = 0.0;
      rhs[j] += f * rhs[k];
    }
  }
}

}  // namespace vantrel::autoclip

#endif
