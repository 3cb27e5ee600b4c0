/**
 * @file vote_table.h
 * @brief A Hough transform for nearly horizontal lines.
 */
#ifndef VANTREL_CARDCUT_VOTE_TABLE_H
#define VANTREL_CARDCUT_VOTE_TABLE_H

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace vantrel::cardcut {

inline constexpr int kAngles = 21;
inline constexpr int kHorizontal = 10;

/**
 * The line (x - centre column) * cos + y * sin = distance, x a column and y a memory row. The angle is an index that
 * counts half degrees from 85 to 95.
 */
struct Line {
  int distance = 0;
  int angle = kHorizontal;
};

/** Angle indices, both inclusive. */
struct Angles {
  int first = 0;
  int last = kAngles - 1;
};

/**
 * Counts for each line the pixels that voted for it.
 *
 * Distances and rows are computed in single precision, then rounded by adding 0.5 in double precision and truncating:
 * another precision or order would move votes from one line to the next.
 */
class VoteTable {
 public:
  /** For an image of these sizes; not usable when there is no memory or a side is too long. */
  VoteTable(int cols, int rows);

  bool usable() const { return counters_ != nullptr; }
  void clear();

  /**
   * The line of smallest distance that has more than 1 / `share` of the image's width in votes and at least as many as
   * its neighbour at the next distance.
   */
  std::optional<Line> lowest_peak(int share) const;
  /** The same from above: the line of largest distance, its neighbour that at the distance before. */
  std::optional<Line> highest_peak(int share) const;

  /** The row in which a line crosses a column. */
  int row_at(Line line, int column) const;
  int centre_row(Line line) const { return row_at(line, centre_); }

 private:
  friend class RowVotes;

  struct Strongest {
    int angle;
    int votes;
  };
  int votes(int distance, int angle) const { return counters_.get()[distance * kAngles + angle]; }
  Strongest strongest(int distance) const;
  std::optional<Line> peak(int distance, int neighbour, int share) const;

  int cols_;
  int centre_;
  int last_distance_;
  std::array<float, kAngles> sine_;
  std::array<float, kAngles> cosine_;
  std::unique_ptr<std::int32_t[]> counters_;  // those of one distance lie together
};

/** Collects the votes of one row's pixels: each votes for the lines through it, one at each angle. */
class RowVotes {
 public:
  RowVotes(VoteTable& table, int row, Angles angles);
  void add(int column);

 private:
  VoteTable& table_;
  Angles angles_;
  std::array<float, kAngles> row_part_;  // what the row adds to the distances
};

}  // namespace vantrel::cardcut

#endif
