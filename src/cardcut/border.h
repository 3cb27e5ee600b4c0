/**
 * @file border.h
 * @brief A horizontal border of the card: votes over a band of the image, the line they favour, and its check.
 */
#ifndef VANTREL_CARDCUT_BORDER_H
#define VANTREL_CARDCUT_BORDER_H

#include <algorithm>
#include <cstdint>
#include <span>

#include "cardcut/scene.h"

namespace vantrel::cardcut {

/** The pixels that vote. `shift`: by how many bytes those examined lie behind them. */
struct Band {
  Span rows;
  Span columns;
  int shift;
};

/** What became of a border. */
struct Border {
  bool found = false;
  Peak line = kLowestLine;  // when found
  int hits = 0;             // columns in which the voted line, accepted or not, runs over an edge
  int columns = 0;          // of how many
};

/** Pixels of a row that change more across columns than across rows, by how much in all. */
struct ColumnChanges {
  int pixels = 0;
  std::int64_t sum = 0;

  bool is_print(int mean) const { return pixels > kMostChangesWithoutPrint && sum / pixels > mean; }
};

/** Lets the edge pixels of a row vote; where a difference would reach out of the image there is no edge. */
template <class Rules>
ColumnChanges vote_row(Scene<Rules>& scene, const Band& band, int y, geometry::AngleSpan angles, Contrasts& contrasts) {
  const Span columns = band.columns;
  RowVotes votes(scene.votes, y, angles);
  ColumnChanges changes;
  std::int16_t contrast[kRunLength];
  for (int start = columns.first; start < columns.end; start += kRunLength) {
    const int count = std::min(columns.end - start, kRunLength);
    const Run run = {scene.pixel(start, y - kReach) + band.shift, scene.pixel(start, y) + band.shift,
                     scene.pixel(start, y + kReach) + band.shift};
    if (contrasts(run, count, Rules::kEdge, contrast) <= Rules::kEdge) continue;
    // Without jumps: on a picture of nothing but edges every other one would be guessed wrong.
    int voters[kRunLength];
    int voting = 0, changing = 0, change = 0;
    for (int i = 0; i < count; ++i) {
      voters[voting] = start + i;
      voting += contrast[i] > Rules::kEdge ? 1 : 0;
    }
    for (int i = 0; i < count; ++i) {
      changing += contrast[i] < -Rules::kEdge ? 1 : 0;
      change += contrast[i] < -Rules::kEdge ? contrast[i] : 0;
    }
    votes.add(std::span<const int>(voters, static_cast<std::size_t>(voting)));
    changes.pixels += changing;
    changes.sum -= change;
  }
  return changes;
}

/** The part of a band whose differences lie inside the image, its votes cleared. No rows when there are no columns. */
template <class Rules>
Band begin_votes(Scene<Rules>& scene, const Band& band) {
  Band inner = {common(band.rows, inner_rows(scene.image)), common(band.columns, inner_columns(scene.image)),
                band.shift};
  if (inner.columns.empty()) inner.rows = {};
  scene.votes.clear(inner.rows);
  return inner;
}

/** In how many of the columns the line runs over an edge. */
template <class Rules>
int count_hits(const Scene<Rules>& scene, Peak line, Span columns) {
  int hits = 0;
  for (int x = columns.first; x < columns.end; ++x) hits += scene.border_at(x, scene.votes.row_at(line, x));
  return hits;
}

/**
 * Accepts a voted line when more than 1 / `share` of the image's width lies on edges.
 *
 * @param earlier_hits count as if they were the line's.
 */
template <class Rules>
Border check_line(const Scene<Rules>& scene, std::optional<Peak> line, Span columns, int share, int earlier_hits = 0) {
  if (!line) return {};
  const int hits = count_hits(scene, *line, columns);
  const bool found = std::int64_t{share} * (hits + earlier_hits) > scene.image.cols;
  return {found, *line, hits, columns.size()};
}

/** Votes over a band in the image's lowest part, and the lowest line that they favour. */
template <class Rules>
std::optional<Peak> vote_for_lower_line(Scene<Rules>& scene, const Band& band, Contrasts& contrasts) {
  const Band inner = begin_votes(scene, band);
  for (int y = inner.rows.first; y < inner.rows.end; ++y) vote_row(scene, inner, y, kAllAngles, contrasts);
  return scene.votes.lowest_peak(kLowerShare);
}

/** The card's lower border in the left third of the image. */
template <class Rules>
Border left_lower_border(Scene<Rules>& scene) {
  const int cols = scene.image.cols;
  const Band band = {Rules::lower_rows(scene.image.rows), {3, cols / 3}, 0};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kSideContrasts), {0, cols / 3}, kLowerShare);
}

/** The card's lower border in the right third. */
template <class Rules>
Border right_lower_border(Scene<Rules>& scene) {
  const int cols = scene.image.cols;
  const int first = 2 * cols / 3;
  const Band band = {Rules::lower_rows(scene.image.rows), {first, cols - 3}, Rules::right_shift(cols)};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kSideContrasts), {first, cols}, kLowerShare);
}

/** The card's lower border in the middle third, after it was found on neither side. */
template <class Rules>
Border middle_lower_border(Scene<Rules>& scene, int right_hits) {
  const int cols = scene.image.cols;
  const Band band = {Rules::lower_rows(scene.image.rows), Rules::middle_columns(cols), Rules::middle_shift(cols)};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kContrasts), band.columns, Rules::kMiddleShare,
                    Rules::kMiddleAddsRightHits ? right_hits : 0);
}

/**
 * The card's upper border, looked for downwards in a band near the top of the picture and ending at the first row of
 * print. Only lines of kUpperAngles count.
 */
template <class Rules>
Border upper_border(Scene<Rules>& scene) {
  const int cols = scene.image.cols;
  const Band band = {Rules::upper_rows(scene.image.rows), {cols / 8, 7 * cols / 8 + 1}, Rules::upper_shift(cols)};
  const Band inner = begin_votes(scene, band);
  for (int y = inner.rows.last(); y >= inner.rows.first; --y) {
    if (vote_row(scene, inner, y, kUpperAngles, Rules::kContrasts).is_print(Rules::kPrint)) break;
  }
  return check_line(scene, scene.votes.highest_peak(kUpperShare), band.columns, kUpperShare);
}

}  // namespace vantrel::cardcut

#endif
