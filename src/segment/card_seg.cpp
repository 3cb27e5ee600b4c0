#include <algorithm>

#include "image/work_array.h"
#include "segment/card_window.h"
#include "segment/reduce.h"

namespace vantrel {
namespace {

constexpr int kDone = 1;
constexpr int kNoMemory = -1;
constexpr int kWrongDepth = -2;
constexpr int kTooCoarse = -3;

/** Makes the reduced black-and-white copy on which everything is decided. */
int reduce_sheet(BITMAPPTR& image, int factor, BITMAPPTR& sheet) {
  bool reduced = false;
  switch (image.pInfo->biBitCount) {
    case 1:
      return Bin2ScaledGray(&image, &sheet, factor) ? kDone : kNoMemory;
    case 8:
      reduced = Gray2ScaledGray(&image, &sheet, factor);
      break;
    case 24:
      reduced = Color2ScaledGray(&image, &sheet, factor);
      break;
    default:
      return kWrongDepth;
  }
  if (!reduced) return kNoMemory;
  const Pixels pixels = pixels_of(sheet);
  return Moving_Average(pixels.data, pixels.cols, pixels.rows, static_cast<int>(pixels.stride)) ? kDone : kNoMemory;
}

/** Work memory for a sheet; both passes use the same. */
struct Work {
  explicit Work(ConstPixels sheet)
      : rows(static_cast<std::size_t>(sheet.rows)),
        bands(static_cast<std::size_t>(most_bands(sheet.rows))),
        profile(static_cast<std::size_t>(sheet.cols)) {}
  bool ready() const { return rows.ready() && bands.ready() && profile.ready(); }

  WorkArray<RowClass> rows;
  WorkArray<Band> bands;
  WorkArray<int> profile;
};

/** Columns first to first + cols - 1 of the sheet. */
struct Strip {
  int first;
  int cols;
};

ConstPixels view(ConstPixels sheet, Strip strip) {
  return {sheet.data + strip.first, sheet.rows, strip.cols, sheet.stride};
}

/** A card found on the reduced sheet. */
struct Card {
  int left;
  Band rows;
};

/** Finds the cards of one column, from the bottom up; returns their number. */
int find_cards(ConstPixels strip, const CardSize& size, const Work& work, std::array<Card, kMostGroups>& cards) {
  const std::span<RowClass> rows = work.rows.all();
  classify_rows(strip, size.dense_count, rows);
  bridge_gaps(rows, size.bridged_gap);
  const std::span<const Band> bands = collect_bands(rows, work.bands.all());

  Groups groups = merge_bands(bands, size.height);
  reassign_by_centre(bands, groups);
  balance_by_midpoint(bands, groups);
  balance_by_height(bands, groups, size);

  const std::array<Band, kMostGroups> completed = complete_heights(bands, groups, size.height, strip.rows);
  for (int k = 0; k < groups.count; ++k) {
    const auto i = static_cast<std::size_t>(k);
    cards[i] = {fullest_window(strip, rows_of(bands, groups, k), size.length, work.profile.all()), completed[i]};
  }
  return groups.count;
}

/** Writes a card in pixels of the scan; the members keep their low 16 bits, the fifth stays. */
void write_rectangle(MYRECT& rect, const Card& card, int length, int sheet_cols, int factor) {
  rect.left = static_cast<std::int16_t>(factor * card.left);
  rect.right = static_cast<std::int16_t>(factor * std::min(card.left + length - 1, sheet_cols - 1));
  rect.bottom = static_cast<std::int16_t>(factor * card.rows.first);
  rect.top = static_cast<std::int16_t>(factor * card.rows.last);
}

/** Finds the cards of a strip and writes their rectangles; returns their number. */
int segment_strip(ConstPixels sheet, Strip strip, const CardSize& size, int factor, const Work& work,
                  MYRECT (&rectangles)[kMostGroups]) {
  std::array<Card, kMostGroups> cards{};
  const int count = find_cards(view(sheet, strip), size, work, cards);
  for (int k = 0; k < count; ++k) {
    Card card = cards[static_cast<std::size_t>(k)];
    card.left += strip.first;
    write_rectangle(rectangles[k], card, size.length, sheet.cols, factor);
  }
  return count;
}

}  // namespace
}  // namespace vantrel

int CardSeg(BITMAPPTR* image, RectRegions& regions) {
  using namespace vantrel;
  regions.firstCount = regions.secondCount = 0;
  if (image->pInfo == nullptr) return kNoMemory;
  const float resolution = dots_per_inch(*image->pInfo);
  if (resolution < kLeastDotsPerInch) return kTooCoarse;
  const int factor = reduction_factor(resolution);

  WorkImage reduced;
  if (const int code = reduce_sheet(*image, factor, *reduced); code != kDone) return code;
  const ConstPixels sheet = const_pixels_of(*reduced);
  if (sheet.rows == 0 || sheet.cols == 0) return kDone;
  const Work work(sheet);
  if (!work.ready()) return kNoMemory;

  const CardSize size = card_size(resolution, factor);
  if (has_two_columns(sheet, size)) {
    const int half = sheet.cols / 2;
    regions.firstCount = segment_strip(sheet, {0, half}, size, factor, work, regions.firstColumn);
    regions.secondCount = segment_strip(sheet, {half, half}, size, factor, work, regions.secondColumn);
  } else {
    regions.firstCount = segment_strip(sheet, {0, sheet.cols}, size, factor, work, regions.firstColumn);
  }
  return kDone;
}
