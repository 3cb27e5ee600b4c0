#include "drawing/lettering.h"

#include <algorithm>
#include <cmath>

namespace vantrel::drawing {
namespace {

constexpr int kGlyphs = 36;
constexpr int kSpace = -1;

double distance(Point p, const std::array<Point, 2>& stroke) {
  const Point along = stroke[1] - stroke[0], off = p - stroke[0];
  const double t = std::clamp((off.x * along.x + off.y * along.y) / (along.x * along.x + along.y * along.y), 0.0, 1.0);
  return length(off - along * t);
}

}  // namespace

Lettering::Lettering(Random& random, double height, double weight, double slant)
    : height_(height), weight_(weight), slant_(slant), capitals_(random.chance(0.25)) {
  for (int i = 0; i < kGlyphs; ++i) {
    Glyph glyph;
    glyph.width = random.uniform(0.4, 0.62);
    const double right = glyph.width, tall = random.uniform();
    const double top = capitals_ || tall < 0.3 ? 0 : 0.32, bottom = !capitals_ && tall > 0.88 ? 1.25 : 1;
    const double middle = random.uniform(0.45, 0.6);
    const std::array<std::array<Point, 2>, 9> strokes{{{{{0, top}, {0, bottom}}},
                                                       {{{right, top}, {right, bottom}}},
                                                       {{{right / 2, top}, {right / 2, bottom}}},
                                                       {{{0, top}, {right, top}}},
                                                       {{{0, middle}, {right, middle}}},
                                                       {{{0, bottom}, {right, bottom}}},
                                                       {{{0, top}, {right, bottom}}},
                                                       {{{right, top}, {0, bottom}}},
                                                       {{{right, middle}, {right, bottom}}}}};
    for (int count = random.integer(2, 4); count > 0; --count) glyph.strokes.push_back(random.pick(strokes));
    glyphs_.push_back(glyph);
  }
}

// Made when first wanted: of a big heading only a few.
void Lettering::engrave(Glyph& glyph, double pixels) {
  const double half = std::max(weight_ * pixels / 2, 0.3), strength = std::min(1.0, weight_ * pixels / 0.6);
  const double lean = std::abs(slant_) * pixels;
  const int height = static_cast<int>(pixels * 1.3 + 2 * half) + 3;
  glyph.mask_width = static_cast<int>(glyph.width * pixels + 2 * half + lean) + 3;
  glyph.mask.resize(static_cast<std::size_t>(glyph.mask_width) * static_cast<std::size_t>(height));
  auto* out = glyph.mask.data();
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < glyph.mask_width; ++x) {
      const double down = y - 0.5 - half;
      const Point p{(x - 0.5 - half - slant_ * (pixels - down) * (slant_ > 0)) / pixels, down / pixels};
      double nearest = 9;
      for (const auto& stroke : glyph.strokes) nearest = std::min(nearest, distance(p, stroke));
      *out++ = static_cast<unsigned char>(255 * strength * std::clamp(half + 0.5 - nearest * pixels, 0.0, 1.0));
    }
  }
}

std::vector<int> Lettering::line_of_letters(Random& random, double width, double& length) {
  std::vector<int> letters;
  length = 0;
  const double gap = 0.22 * height_;
  while (true) {
    double word = 0;
    std::vector<int> added;
    for (int count = random.integer(2, 9); count > 0; --count) {
      added.push_back(random.integer(0, kGlyphs - 1));
      word += glyphs_[static_cast<std::size_t>(added.back())].width * height_ + gap;
    }
    const double before = letters.empty() ? 0 : 0.45 * height_;
    if (length + before + word > width) return letters;
    if (!letters.empty()) letters.push_back(kSpace);
    letters.insert(letters.end(), added.begin(), added.end());
    length += before + word;
  }
}

void Lettering::put(Canvas& canvas, const std::vector<int>& letters, Point left_top, Colour colour) {
  const double pixels = height_ * canvas.scale();
  double at = left_top.x;
  for (int letter : letters) {
    if (letter == kSpace) {
      at += 0.45 * height_;
      continue;
    }
    Glyph& glyph = glyphs_[static_cast<std::size_t>(letter)];
    if (glyph.mask.empty()) engrave(glyph, pixels);
    canvas.stamp(static_cast<int>(std::lround(at * canvas.scale())) - 1,
                 static_cast<int>(std::lround(left_top.y * canvas.scale())) - 1, glyph.mask, glyph.mask_width, colour,
                 1);
    at += glyph.width * height_ + 0.22 * height_;
  }
}

double Lettering::write(Canvas& canvas, Random& random, Point left_top, double width, Colour colour) {
  double length = 0;
  put(canvas, line_of_letters(random, width, length), left_top, colour);
  return left_top.x + length;
}

void Lettering::write_centred(Canvas& canvas, Random& random, Point middle_top, double width, Colour colour) {
  double length = 0;
  const auto letters = line_of_letters(random, width, length);
  put(canvas, letters, {middle_top.x - length / 2, middle_top.y}, colour);
}

void Lettering::write_to_right(Canvas& canvas, Random& random, Point right_top, double width, Colour colour) {
  double length = 0;
  const auto letters = line_of_letters(random, width, length);
  put(canvas, letters, {right_top.x - length, right_top.y}, colour);
}

void Lettering::paragraph(Canvas& canvas, Random& random, const Box& box, double line_distance, Colour colour) {
  for (double y = box.top; y + height_ * 1.3 <= box.bottom(); y += line_distance) {
    const bool last = y + line_distance + height_ * 1.3 > box.bottom();
    write(canvas, random, {box.left, y}, last ? box.width * random.uniform(0.3, 1) : box.width, colour);
  }
}

Lettering small_print(Random& random) {
  return Lettering(random, random.uniform(1.3, 2.4), random.uniform(0.09, 0.17), random.chance(0.15) ? 0.2 : 0);
}

Lettering heading(Random& random, double height) {
  return Lettering(random, height, random.uniform(0.1, 0.28), random.chance(0.15) ? 0.2 : 0);
}

}  // namespace vantrel::drawing
