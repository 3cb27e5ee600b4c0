/**
 * @file cardcut_lines.h
 * @brief Voting for nearly horizontal lines, the naive way.
 */
#ifndef VANTREL_TESTS_REFERENCE_CARDCUT_LINES_H
#define VANTREL_TESTS_REFERENCE_CARDCUT_LINES_H

#include <optional>
#include <vector>

namespace reference {

/** The line (x - c) cos + y sin = r of the angle 90 + (k - 10) / 2 degrees. */
struct CutLine {
  int r;
  int k;
};

/** The votes of one stage. */
class CutVotes {
 public:
  CutVotes(int width, int height);

  /** One vote of the pixel at each of the angles from..to. */
  void cast(int x, int y, int from, int to);

  /** The first line met from below, or from above, that no longer rises and has more than its share of the width. */
  std::optional<CutLine> lowest() const;
  std::optional<CutLine> highest() const;

 private:
  int votes(int r, int k) const;
  int strongest(int r) const;

  int width_;
  int diagonal_;
  std::vector<std::vector<int>> table_;
};

/** The row of the line at column x of an image of the given width. */
int cut_row(CutLine line, int x, int width);
int cut_centre_row(CutLine line);

}  // namespace reference

#endif
