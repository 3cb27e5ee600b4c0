// Drawing on a texture in millimetres.
#pragma once

#include <memory>

#include "drawing/random.h"
#include "drawing/texture.h"

namespace vantrel::drawing {

struct Box {
  double left, top, width, height;
  double right() const { return left + width; }
  double bottom() const { return top + height; }
  Box inset(double by) const { return {left + by, top + by, width - 2 * by, height - 2 * by}; }
};

class Canvas {
 public:
  Canvas(double width, double height, double pixels_per_mm, Colour colour);

  double width() const { return width_; }
  double height() const { return height_; }
  double scale() const { return scale_; }
  Box box() const { return {0, 0, width_, height_}; }
  Texture& texture() { return texture_; }

  void fill(const Box& box, Colour colour, double opacity = 1);
  void frame(const Box& box, double thickness, Colour colour);
  void line(Point from, Point to, double thickness, Colour colour, double opacity = 1);
  void ellipse(const Box& box, Colour colour, double opacity = 1);
  void polygon(const std::vector<Point>& corners, Colour colour, double opacity = 1);  // convex, clockwise
  void fade(const Box& box, Colour from, Colour to, double angle);
  void paste(const Box& box, const Texture& picture);
  void grain(Random& random, double levels);
  // A mask of coverage from 0 to 255, at whole pixels.
  void stamp(int left, int top, const std::vector<unsigned char>& mask, int mask_width, Colour colour, double opacity);

 private:
  struct Pixels {
    int left, top, right, bottom;
    bool empty() const { return left >= right || top >= bottom; }
  };
  Pixels within(const Box& box) const;
  template <class Part>
  void blend(const Box& box, Colour colour, double opacity, Part part);

  double width_, height_, scale_;
  Texture texture_;
};

// A pixel moved towards a colour, by weight/256.
inline std::uint32_t blended(std::uint32_t pixel, std::uint32_t colour, std::uint32_t weight) {
  const std::uint32_t blue_red = (pixel & 0xff00ff) * (256 - weight) + (colour & 0xff00ff) * weight;
  const std::uint32_t green = (pixel >> 8 & 0xff) * (256 - weight) + (colour >> 8 & 0xff) * weight;
  return (blue_red >> 8 & 0xff00ff) | (green & 0xff00);
}

}  // namespace vantrel::drawing
