#include "lines/pair_search.h"

namespace vantrel::lines {

PairRules PairRules::of(int rows, int cols, bool horizontal) {
  // Both horizontal borders lie among the same angles, so the second is the runner-up. The vertical ones are told apart
  // by the side of the vertical to which their normals lean, not by position.
  if (horizontal) return {{{70, 109}}, {{70, 109}}, {{70, 109}}, cols / 4, cols / 4};
  return {{{0, 29}, {150, 179}}, {{150, 179}}, {{0, 29}}, 0, rows / 5};
}

PairSearch::PairSearch(int rows, int cols, bool horizontal, const AngleTables& tables)
    : rules_(PairRules::of(rows, cols, horizontal)), votes_(rows, cols, rules_.voted, tables) {}

BorderPair PairSearch::find() {
  const Peak first = votes_.strongest(rules_.first, nullptr, rules_.first_quorum);
  if (first.votes < rules_.first_quorum) return {};
  const Peak second = votes_.strongest(rules_.second, &first, rules_.quorum);
  if (second.votes < rules_.quorum) return {};
  return {true, votes_.line(first), votes_.line(second)};
}

}  // namespace vantrel::lines
