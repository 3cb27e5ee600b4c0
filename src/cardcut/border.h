/**
 * @file border.h
 * @brief A horizontal border of the card: votes over a band of the image, the line they favour, and its check.
 */
#ifndef VANTREL_CARDCUT_BORDER_H
#define VANTREL_CARDCUT_BORDER_H

#include <algorithm>

#include "cardcut/scene.h"

namespace vantrel::cardcut {

/** The pixels that vote. `shift`: by how many bytes those examined lie behind them. */
struct Band {
  Span rows;
  Span columns;
  int shift;
};

/** What became of a border; the line is the default one when it was not found. */
struct Border {
  bool found = false;
  Line line;
  int hits = 0;  // columns in which the voted line, accepted or not, runs over an edge
};

/** Pixels of a row that change more across columns than across rows, by how much in all. */
struct ColumnChanges {
  int pixels = 0;
  int sum = 0;

  bool is_print(int mean) const { return pixels > 7 && sum / pixels > mean; }
};

/** The part of a span that lies in another. */
constexpr Span common(Span a, Span b) { return {std::max(a.first, b.first), std::min(a.end, b.end)}; }

/** Lets the edge pixels of a row vote; where a difference would reach out of the image there is no edge. */
template <class Rules>
ColumnChanges vote_row(const Scene<Rules>& scene, const Band& band, int y, Angles angles, Contrasts& contrasts) {
  const Span columns = common(band.columns, {1, scene.image.cols - 1});
  RowVotes votes(scene.votes, y, angles);
  ColumnChanges changes;
  std::int16_t contrast[kRunLength];
  for (int start = columns.first; start < columns.end; start += kRunLength) {
    const int count = std::min(columns.end - start, kRunLength);
    const Run run = {scene.pixel(start, y + kReach) + band.shift, scene.pixel(start, y) + band.shift,
                     scene.pixel(start, y - kReach) + band.shift};
    if (contrasts(run, count, Rules::kEdge, contrast) <= Rules::kEdge) continue;
    for (int i = 0; i < count; ++i) {
      if (contrast[i] > Rules::kEdge) {
        votes.add(start + i);
      } else if (contrast[i] < -Rules::kEdge) {
        ++changes.pixels;
        changes.sum -= contrast[i];
      }
    }
  }
  return changes;
}

/** In how many of the columns the line runs over an edge. */
template <class Rules>
int count_hits(const Scene<Rules>& scene, Line line, Span columns) {
  int hits = 0;
  for (int x = columns.first; x < columns.end; ++x) hits += scene.border_at(x, scene.votes.row_at(line, x));
  return hits;
}

/** Accepts a voted line when more than 1 / `share` of the image's width, `hits` counted before, lies on edges. */
template <class Rules>
Border check_line(const Scene<Rules>& scene, std::optional<Line> line, Span columns, int share, int hits = 0) {
  if (!line) return {};
  hits += count_hits(scene, *line, columns);
  if (share * hits <= scene.image.cols) return {false, {}, hits};
  return {true, *line, hits};
}

/** Votes over a band in the image's lowest part, and the lowest line that they favour. */
template <class Rules>
std::optional<Line> vote_for_lower_line(const Scene<Rules>& scene, const Band& band, Contrasts& contrasts) {
  scene.votes.clear();
  const Span rows = common(band.rows, scene.inner_rows());
  for (int y = rows.first; y < rows.end; ++y) vote_row(scene, band, y, {}, contrasts);
  return scene.votes.lowest_peak(4);
}

/** The card's lower border in the left third of the image. */
template <class Rules>
Border left_lower_border(const Scene<Rules>& scene) {
  const auto& [pixels, rows, cols, stride] = scene.image;
  const Band band = {Rules::lower_rows(rows), {3, cols / 3}, 0};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kSideContrasts), {0, cols / 3}, 4);
}

/** The card's lower border in the right third. */
template <class Rules>
Border right_lower_border(const Scene<Rules>& scene) {
  const auto& [pixels, rows, cols, stride] = scene.image;
  const int first = 2 * cols / 3;
  const Band band = {Rules::lower_rows(rows), {first, cols - 3}, Rules::right_shift(cols)};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kSideContrasts), {first, cols}, 4);
}

/** The card's lower border in the middle third, after it was found on neither side. */
template <class Rules>
Border middle_lower_border(const Scene<Rules>& scene, int right_hits) {
  const auto& [pixels, rows, cols, stride] = scene.image;
  const Band band = {Rules::lower_rows(rows), Rules::middle_columns(cols), Rules::middle_shift(cols)};
  return check_line(scene, vote_for_lower_line(scene, band, Rules::kContrasts), band.columns, Rules::kMiddleShare,
                    Rules::kMiddleAddsRightHits ? right_hits : 0);
}

/**
 * The card's upper border, looked for downwards in a band near the top of the picture and ending at the first row of
 * print. Only lines between 86.5 and 92.5 degrees count.
 */
template <class Rules>
Border upper_border(const Scene<Rules>& scene) {
  constexpr Angles kAngleRange = {3, 15};
  const auto& [pixels, rows, cols, stride] = scene.image;
  const Band band = {
      {3 * rows / 4 + 1, Rules::upper_row(rows) + 1}, {cols / 8, 7 * cols / 8 + 1}, Rules::upper_shift(cols)};
  const Span inner = common(band.rows, scene.inner_rows());
  scene.votes.clear();
  for (int y = inner.end - 1; y >= inner.first; --y) {
    if (vote_row(scene, band, y, kAngleRange, Rules::kContrasts).is_print(Rules::kPrint)) break;
  }
  return check_line(scene, scene.votes.highest_peak(3), band.columns, 3);
}

}  // namespace vantrel::cardcut

#endif
