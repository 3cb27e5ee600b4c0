#include <span>

#include "lines/border_search.h"
#include "lines/hough.h"

namespace vantrel {
namespace {

/** Two borders of one direction: where to vote, where to look for each, and the votes that the second needs. */
struct PairRules {
  Angles voted;
  Angles first;
  Angles second;
  int first_side;
  int quorum;
};

/** Both horizontal borders lie among the same angles, so the second is the runner-up. */
PairRules horizontal_pair(int cols) { return {{{70, 109}}, {{70, 109}}, {{70, 109}}, kTop, cols / 4}; }

/** The vertical borders are told apart by the side of the vertical to which their normals lean, not by position. */
PairRules vertical_pair(int rows) { return {{{0, 29}, {150, 179}}, {{150, 179}}, {{0, 29}}, kLeft, rows / 5}; }

}  // namespace
}  // namespace vantrel

int Compute_Hough_Angle(double* lineNormal, double* lineDistance, typePoint* points, int rows, int cols, int count,
                        int dirClass, double* sinTable, double* cosTable) {
  using namespace vantrel;
  if (count < 2) return 0;
  const PairRules rules = dirClass == kHorizontalBorder ? horizontal_pair(cols) : vertical_pair(rows);
  HoughAccumulator votes(rows, cols, rules.voted, {sinTable, cosTable});
  if (!votes.ready()) return 0;
  const std::span<typePoint> edge_points(points, static_cast<std::size_t>(count));
  centre_points(edge_points, rows, cols);
  if (dirClass != kHorizontalBorder && dirClass != kVerticalBorder) return 1;

  votes.vote(edge_points);
  const Peak first = votes.strongest(rules.first);
  const Peak second = votes.strongest(rules.second, &first);
  // The first is not tested by itself: of two horizontal borders it is the stronger, of two vertical ones any will do.
  if (second.score < rules.quorum) return 0;
  int side = rules.first_side;
  for (const Peak& peak : {first, second}) {
    const BorderLine line = votes.line(peak);
    lineNormal[2 * side] = line.a;
    lineNormal[2 * side + 1] = line.b;
    lineDistance[side] = line.c;
    ++side;
  }
  return 1;
}
