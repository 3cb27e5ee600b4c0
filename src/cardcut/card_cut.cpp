#include "cardcut/card_cut.h"

#include <cstdlib>

#include "cardcut/corner.h"
#include "image/convert.h"

namespace vantrel::cardcut {
namespace {

/** The lower border as the two sides of the image show it. */
struct LowerBorder {
  Line left;
  Line right;
  bool agree = false;         // both sides found the same border
  std::optional<int> bottom;  // its row in the middle of the card
};

template <class Rules>
LowerBorder find_lower_border(const Scene<Rules>& scene) {
  const VoteTable& votes = scene.votes;
  const int cols = scene.image.cols;
  const Border left = left_lower_border(scene);
  const Border right = right_lower_border(scene);
  LowerBorder lower = {left.line, right.line, false, std::nullopt};
  if (left.found && right.found) {
    int left_row = votes.centre_row(left.line);
    int right_row = votes.centre_row(right.line);
    lower.agree = std::abs(left_row - right_row) <= 33;
    if (lower.agree) {
      left_row = votes.row_at(left.line, cols / 4);
      right_row = votes.row_at(right.line, 3 * cols / 4);
    }
    // Lines that disagree are averaged too: the card's border lies between them.
    lower.bottom = (left_row + right_row) / 2;
  } else if (left.found || right.found) {
    lower.bottom = votes.centre_row(left.found ? left.line : right.line);
  } else if (const Border middle = middle_lower_border(scene, right.hits); middle.found) {
    lower.bottom = votes.centre_row(middle.line);
  }
  return lower;
}

/** The card's bounds, from the rules' defaults where nothing is found. */
template <class Rules>
Bounds find_card(const Scene<Rules>& scene) {
  const int cols = scene.image.cols;
  const int rows = scene.image.rows;
  Bounds bounds = Rules::defaults(cols, rows);

  const LowerBorder lower = find_lower_border(scene);
  const int bottom = Rules::kept_bottom(lower.bottom.value_or(static_cast<int>(bounds.bottom)), rows);
  bounds.bottom = bottom;
  if (lower.agree || !Rules::kCornersNeedAgreement) {
    const auto left = find_corner(scene, lower.left, Rules::left_walk(cols), Diagonal::kRising, bottom);
    const auto right = find_corner(scene, lower.right, Rules::right_walk(cols), Diagonal::kFalling, bottom);
    if (left) bounds.left = *left;
    if (right) bounds.right = *right;
  }
  if (const Border upper = upper_border(scene); upper.found) bounds.top = scene.votes.centre_row(upper.line);
  return bounds;
}

/** Writes the four bounds, each cut to 16 bits. */
void write(const Bounds& bounds, MYRECT& rect) {
  rect.left = static_cast<std::int16_t>(bounds.left);
  rect.top = static_cast<std::int16_t>(bounds.top);
  rect.right = static_cast<std::int16_t>(bounds.right);
  rect.bottom = static_cast<std::int16_t>(bounds.bottom);
}

template <class Rules>
void write_defaults(const BITMAPINFOHEADER& header, MYRECT& rect) {
  write(Rules::defaults(header.biWidth, header.biHeight), rect);
}

/** A gray image of its own. */
bool copy_as_gray(BITMAPPTR& image, BITMAPPTR& gray) {
  return image.pInfo->biBitCount == 8 ? ImageCopy(&image, &gray) : Color2Gray(&image, &gray);
}

}  // namespace
}  // namespace vantrel::cardcut

bool CutCard(BITMAPPTR* image, MYRECT& rect) {
  using namespace vantrel::cardcut;
  if (image == nullptr || image->pInfo == nullptr) return false;
  const BITMAPINFOHEADER& header = *image->pInfo;
  if (header.biBitCount != 8 && header.biBitCount != 24) return false;
  write_defaults<GrayRules>(header, rect);
  VoteTable votes(header.biWidth, header.biHeight);
  vantrel::WorkImage gray;
  if (!votes.usable() || !copy_as_gray(*image, *gray)) return false;
  write(find_card(Scene<GrayRules>{vantrel::const_pixels_of(*gray), votes}), rect);
  return true;
}

bool CutCard24(BITMAPPTR* image, MYRECT& rect) {
  using namespace vantrel::cardcut;
  constexpr int kSmallest = 128;
  if (image == nullptr || image->pInfo == nullptr) return false;
  const BITMAPINFOHEADER& header = *image->pInfo;
  if (header.biBitCount != 24 || header.biWidth < kSmallest || header.biHeight < kSmallest) return false;
  write_defaults<ColourRules>(header, rect);
  VoteTable votes(header.biWidth, header.biHeight);
  if (!votes.usable()) return false;
  write(find_card(Scene<ColourRules>{vantrel::const_pixels_of(*image), votes}), rect);
  return true;
}
