#include "autoclip/corners.h"

namespace vantrel {
namespace {

/** Writes a corner as a (column, memory row) pair. */
void store(float* corner, float x, float y) {
  corner[0] = x;
  corner[1] = y;
}

/** Intersects a horizontal border that is not exactly level with a vertical border. */
bool intersect_tilted(const BorderLine& horizontal, const BorderLine& vertical, float* corner) {
  if (vertical.b != 0.0) {
    const typePoint at = CalcUnknownFun(horizontal.a, horizontal.b, vertical.a, vertical.b, horizontal.c, vertical.c);
    store(corner, at.col + 0.5f, at.row + 0.5f);
    return true;
  }
  if (vertical.a == 0.0 || horizontal.b == 0.0) return false;
  // Beside an exactly upright border the half pixel of x enters the computation of y.
  const auto x = static_cast<float>(vertical.c / vertical.a + 0.5);
  const double y = (horizontal.c - static_cast<double>(x) * horizontal.a) / horizontal.b + 0.5;
  store(corner, x, static_cast<float>(y));
  return true;
}

/** Intersects an exactly level border with both vertical borders. The half pixel of y enters the computation of x. */
bool intersect_level(const BorderLine& level, const BorderLine& left, const BorderLine& right, float* corners) {
  if (level.b == 0.0 || left.a == 0.0 || right.a == 0.0) return false;
  const auto y = static_cast<float>(level.c / level.b + 0.5);
  const auto column_of = [y](const BorderLine& vertical) {
    return static_cast<float>((vertical.c - static_cast<double>(y) * vertical.b) / vertical.a + 0.5);
  };
  store(corners, column_of(left), y);
  store(corners + 2, column_of(right), y);
  return true;
}

bool intersect(const BorderLine& horizontal, const BorderLine& left, const BorderLine& right, float* corners) {
  if (horizontal.a == 0.0) return intersect_level(horizontal, left, right, corners);
  return intersect_tilted(horizontal, left, corners) && intersect_tilted(horizontal, right, corners + 2);
}

}  // namespace
}  // namespace vantrel

bool CalIntersectPoint(double* lineNormal, double* lineDistance, float* corners) {
  const auto line = [&](int side) {
    return vantrel::BorderLine{lineNormal[2 * side], lineNormal[2 * side + 1], lineDistance[side]};
  };
  const vantrel::BorderLine left = line(vantrel::kLeft);
  const vantrel::BorderLine right = line(vantrel::kRight);
  return vantrel::intersect(line(vantrel::kTop), left, right, corners) &&
         vantrel::intersect(line(vantrel::kBottom), left, right, corners + 4);
}
