#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "memory.h"

namespace tool {
namespace {

struct BoxRelease {
  void operator()(BOX* box) const { boxDestroy(&box); }
};
struct FontRelease {
  void operator()(L_BMF* font) const { bmfDestroy(&font); }
};

l_uint32 word_of(Colour colour) {
  return l_uint32{colour.red} << L_RED_SHIFT | l_uint32{colour.green} << L_GREEN_SHIFT |
         l_uint32{colour.blue} << L_BLUE_SHIFT;
}

/** A size of Leptonica's built-in font, in points; it is drawn for 200 dots per inch, so a digit is 20 to 30 high. */
constexpr int kFontSize = 10;

/** Drawing that went without memory would go unnoticed: nothing of it is returned. */
void check(const ForeignCode& foreign) {
  if (foreign.missed_memory()) throw std::bad_alloc();
}

/** A text as a 1-bit mask, magnified by a whole factor. */
PixPtr text_mask(const std::string& text, int factor) {
  const std::unique_ptr<L_BMF, FontRelease> font(bmfCreate(nullptr, kFontSize));
  if (!font) throw std::bad_alloc();
  PixPtr mask = checked(pixCreate(static_cast<l_int32>(text.size()) * 4 * kFontSize, 8 * kFontSize, 1));
  pixSetTextline(mask.get(), font.get(), text.c_str(), 1, 0, 6 * kFontSize, nullptr, nullptr);
  PIX* tight = nullptr;
  if (pixClipToForeground(mask.get(), &tight, nullptr) == 0 && tight != nullptr) mask.reset(tight);
  return checked(pixExpandReplicate(mask.get(), factor));
}

}  // namespace

Canvas::Canvas(const Bitmap& scan) : pix_(colour_pix_of(scan)) {}

int Canvas::stroke(Stroke breadth) const {
  const int thick = std::max(2, std::max(width(), height()) / 400);
  return breadth == Stroke::kThick ? thick : thick / 2;
}

void Canvas::shade(int x, int y, int width, int height, Colour colour) {
  if (width <= 0 || height <= 0) return;
  const ForeignCode foreign;
  const std::unique_ptr<BOX, BoxRelease> box(boxCreate(x, y, width, height));
  if (!box) throw std::bad_alloc();
  pixBlendInRect(pix_.get(), box.get(), word_of(colour), 0.18F);
  check(foreign);
}

void Canvas::line(double x1, double y1, double x2, double y2, Colour colour, Stroke breadth) {
  const double limit = 4.0 * std::max(width(), height());
  for (const double position : {x1, y1, x2, y2}) {
    if (!(std::abs(position) <= limit)) return;
  }
  const auto whole = [](double position) { return static_cast<l_int32>(std::floor(position)); };
  const ForeignCode foreign;
  pixRenderLineArb(pix_.get(), whole(x1), whole(y1), whole(x2), whole(y2), stroke(breadth), colour.red, colour.green,
                   colour.blue);
  check(foreign);
}

void Canvas::frame(const vantrel_rect& rectangle, Colour colour) {
  const auto [left, top, end, below] = rectangle;
  const int right = end - 1;
  const int bottom = below - 1;
  line(left, top, right, top, colour);
  line(left, bottom, right, bottom, colour);
  line(left, top, left, bottom, colour);
  line(right, top, right, bottom, colour);
}

void Canvas::label(double x, double y, const std::string& text, Colour colour) {
  if (!(std::abs(x) <= 4.0 * width()) || !(std::abs(y) <= 4.0 * height())) return;
  const int column = static_cast<int>(x);
  const int row = static_cast<int>(y);
  const int radius = 2 * stroke();
  const ForeignCode foreign;
  const std::unique_ptr<BOX, BoxRelease> dot(boxCreate(column - radius, row - radius, 2 * radius + 1, 2 * radius + 1));
  if (!dot) throw std::bad_alloc();
  pixSetInRectArbitrary(pix_.get(), dot.get(), word_of(colour));

  const PixPtr mask = text_mask(text, std::max(1, std::max(width(), height()) / 800));
  const int gap = 2 * radius;
  const int left = column < width() / 2 ? column + gap : column - gap - pixGetWidth(mask.get());
  const int top = row < height() / 2 ? row + gap : row - gap - pixGetHeight(mask.get());
  pixPaintThroughMask(pix_.get(), mask.get(), left, top, word_of(colour));
  check(foreign);
}

}  // namespace tool
