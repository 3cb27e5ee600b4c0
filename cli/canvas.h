/**
 * @file canvas.h
 * @brief Drawing on a coloured copy of a scan. Coordinates are columns and rows from the top.
 */
#ifndef VANTREL_CLI_CANVAS_H
#define VANTREL_CLI_CANVAS_H

#include <string>

#include "bitmap.h"
#include "leptonica_pix.h"

namespace tool {

struct Colour {
  unsigned char red;
  unsigned char green;
  unsigned char blue;
};

inline constexpr Colour kGreen{0, 160, 60};
inline constexpr Colour kAmber{255, 170, 0};
inline constexpr Colour kBlue{40, 110, 230};
inline constexpr Colour kRed{220, 40, 40};

/** How broad a line is. */
enum class Stroke { kThin, kThick };

class Canvas {
 public:
  explicit Canvas(const Bitmap& scan);

  int width() const { return pixGetWidth(pix_.get()); }
  int height() const { return pixGetHeight(pix_.get()); }

  /** Tints a rectangle. */
  void shade(int x, int y, int width, int height, Colour colour);
  /** Draws a line whose ends may lie outside; positions that are no numbers draw nothing. */
  void line(double x1, double y1, double x2, double y2, Colour colour, Stroke breadth = Stroke::kThick);
  /** Draws the outline of a rectangle along its outermost pixels. */
  void frame(const vantrel_rect& rectangle, Colour colour);
  /** Marks a point with a dot and writes a text beside it, towards the middle of the picture. */
  void label(double x, double y, const std::string& text, Colour colour);

  Bitmap picture() const { return bitmap_of(checked(pixClone(pix_.get()))); }

 private:
  int stroke(Stroke breadth = Stroke::kThick) const;

  PixPtr pix_;
};

}  // namespace tool

#endif
