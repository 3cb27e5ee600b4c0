#include "autoclip/mapping.h"

#include "autoclip/elimination.h"

namespace vantrel::autoclip {
namespace {

std::array<float, 8> coordinates_of(const geometry::Quadrilateral<float>& q) {
  return {q.top_left.x,    q.top_left.y,    q.top_right.x,    q.top_right.y,
          q.bottom_left.x, q.bottom_left.y, q.bottom_right.x, q.bottom_right.y};
}

}  // namespace

/*
 * A point pair (x, y) -> (u, v) gives two linear equations in the coefficients:
 *
 *   x c0 + y c1 + c2                      - x u c6 - y u c7 = u
 *                     x c3 + y c4 + c5    - x v c6 - y v c7 = v
 *
 * Those for the u of the first three pairs go to rows 0 to 2, those for their v to rows 3 to 5, and the last pair's to
 * rows 6 and 7, so that no diagonal entry is zero by construction.
 */
void solve_mapping(std::span<const float> from, std::span<const float> to, std::span<double> coefficients) {
  constexpr std::size_t kUnknowns = 8;
  constexpr std::size_t kRowOf[kUnknowns] = {0, 3, 1, 4, 2, 5, 6, 7};
  double a[kUnknowns][kUnknowns] = {};
  double rhs[kUnknowns] = {};
  const std::size_t equations = coefficients.size();
  for (std::size_t i = 0; i < equations; ++i) {
    const bool is_v = i % 2 == 1;
    const double x = static_cast<double>(from[is_v ? i - 1 : i]);
    // With an odd number of equations the last pair has no v, and its y is not the caller's to give.
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

  eliminate(a, rhs);
  for (std::size_t i = 0; i < equations; ++i) {
    // Never: the elimination has put the tiny pivot where there was none.
    coefficients[i] = rhs[i] / (a[i][i] == 0.0 ? kTinyPivot : a[i][i]);
  }
}

Mapping solve_mapping(const geometry::Quadrilateral<float>& from, const geometry::Quadrilateral<float>& to) {
  Mapping mapping{};
  solve_mapping(coordinates_of(from), coordinates_of(to), mapping);
  return mapping;
}

}  // namespace vantrel::autoclip
