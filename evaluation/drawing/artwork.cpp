#include "drawing/artwork.h"

#include <algorithm>
#include <cmath>

namespace vantrel::drawing {
namespace {

// A small picture of soft stains, which is enlarged: what is out of focus.
Texture stains(Random& random, int cells_across, int cells_down, double lightness, double spread) {
  Texture texture(cells_across, cells_down, gray(0));
  const double colourfulness = random.uniform(0, 50);
  for (int y = 0; y < cells_down; ++y) {
    for (int x = 0; x < cells_across; ++x) {
      texture.row(y)[x] = packed(tint(random, lightness + random.normal() * spread, colourfulness));
    }
  }
  return texture;
}

Box random_box(Random& random, const Box& box) {
  const double width = box.width * random.between(0.05, 0.8), height = box.height * random.between(0.05, 0.8);
  return {box.left + random.uniform(0, box.width - width), box.top + random.uniform(0, box.height - height), width,
          height};
}

void draw_shape(Canvas& canvas, Random& random, const Box& within) {
  const Box box = random_box(random, within);
  const Colour colour = tint(random, random.uniform(10, 245), random.uniform(0, 60));
  const double opacity = random.chance(0.7) ? 1 : random.uniform(0.2, 0.8);
  switch (random.integer(0, 4)) {
    case 0:
      return canvas.ellipse(box, colour, opacity);
    case 1:
      return canvas.fill(box, colour, opacity);
    case 2:
      return canvas.polygon({{box.left + box.width * random.uniform(), box.top},
                             {box.right(), box.bottom()},
                             {box.left, box.bottom() - box.height * random.uniform(0, 0.5)}},
                            colour, opacity);
    case 3:
      return canvas.line({box.left, random.chance(0.5) ? box.top : box.bottom()},
                         {box.right(), box.top + box.height / 2}, random.between(0.3, 4), colour, opacity);
    default:
      return canvas.fade(box, colour, tint(random, random.uniform(10, 245), 40), random.uniform(0, 6.3));
  }
}

// The ground of a landscape or a room: a horizon, or straight edges along a border of the picture.
void draw_setting(Canvas& canvas, Random& random, const Box& box) {
  const Colour colour = tint(random, random.uniform(20, 220), random.uniform(0, 50));
  const Colour other = tint(random, random.uniform(20, 220), random.uniform(0, 50));
  const double part = random.uniform(0.03, 0.6);
  switch (random.integer(0, 3)) {
    case 0:
      return canvas.fade({box.left, box.bottom() - box.height * part, box.width, box.height * part}, colour, other,
                         1.57);
    case 1:
      return canvas.fade({box.left, box.top, box.width * part, box.height}, colour, other, 0);
    case 2:
      return canvas.fade({box.left, box.top, box.width, box.height * part}, colour, other, 1.57);
    default:
      return canvas.fade({box.right() - box.width * part, box.top, box.width * part, box.height}, colour, other, 0);
  }
}

}  // namespace

Colour tint(Random& random, double lightness, double colourfulness) {
  const double angle = random.uniform(0, 6.283185307);
  Colour colour{lightness + colourfulness * 1.6 * std::cos(angle), lightness,
                lightness + colourfulness * std::cos(angle + 2.1)};
  colour = colour + (lightness - luminance(colour));
  return {std::clamp(colour.b, 0.0, 255.0), std::clamp(colour.g, 0.0, 255.0), std::clamp(colour.r, 0.0, 255.0)};
}

Colour ink(Random& random) {
  return random.chance(0.6) ? gray(random.uniform(10, 70))
                            : tint(random, random.uniform(20, 110), random.uniform(10, 60));
}

Colour paper(Random& random) {
  return random.chance(0.7) ? tint(random, random.uniform(225, 253), random.uniform(0, 4))
                            : tint(random, random.uniform(190, 245), random.uniform(3, 25));
}

Colour vivid(Random& random) { return tint(random, random.uniform(40, 200), random.uniform(20, 90)); }

void draw_photograph(Canvas& canvas, Random& random, const Box& box) {
  const double lightness = random.uniform(40, 200);
  const int cells = random.integer(3, 7);
  canvas.paste(box, stains(random, cells, cells, lightness, random.uniform(8, 40)));
  for (int i = random.integer(0, 2); i > 0; --i) draw_setting(canvas, random, box);
  for (int i = random.integer(2, 14); i > 0; --i) draw_shape(canvas, random, box);
  if (random.chance(0.5)) {  // foliage, crowds: many small things
    const Box area = random_box(random, box);
    const Colour first = tint(random, lightness, 40), second = tint(random, random.uniform(20, 230), 40);
    for (int i = random.integer(40, 150); i > 0; --i) {
      const double size = random.uniform(0.3, 2.5);
      canvas.ellipse({area.left + random.uniform(0, area.width), area.top + random.uniform(0, area.height), size,
                      size * random.uniform(0.4, 1.5)},
                     mixed(first, second, random.uniform()), random.uniform(0.3, 1));
    }
  }
}

Colour skin_colour(Random& random) {
  const double light = random.uniform(80, 235);
  return {light * random.uniform(0.55, 0.75), light * random.uniform(0.72, 0.85), light};
}

void draw_portrait(Canvas& canvas, Random& random, const Box& box) {
  canvas.fade(box, tint(random, random.uniform(120, 235), 15), tint(random, random.uniform(120, 235), 15), 1.57);
  const Colour skin = skin_colour(random);
  const Colour hair = gray(random.uniform(20, 120));
  const double middle = box.left + box.width / 2, w = box.width, h = box.height;
  canvas.ellipse({middle - 0.32 * w, box.top + 0.12 * h, 0.64 * w, 0.6 * h}, hair);
  const double shoulders = 0.68;
  canvas.polygon({{middle - 0.2 * w, box.top + shoulders * h},
                  {middle + 0.2 * w, box.top + shoulders * h},
                  {middle + 0.47 * w, box.bottom()},
                  {middle - 0.47 * w, box.bottom()}},
                 vivid(random));
  canvas.ellipse({middle - 0.24 * w, box.top + 0.2 * h, 0.48 * w, 0.55 * h}, skin);
  for (double side : {-0.1, 0.1}) {
    canvas.ellipse({middle + side * w - 0.04 * w, box.top + 0.42 * h, 0.08 * w, 0.03 * h}, hair);
  }
  canvas.ellipse({middle - 0.08 * w, box.top + 0.6 * h, 0.16 * w, 0.03 * h}, skin * 0.6);
}

void draw_bars(Canvas& canvas, Random& random, const Box& box, Colour colour) {
  const double module = std::max(box.width / random.integer(50, 110), 0.2);
  for (double x = box.left; x < box.right() - 4 * module;) {
    const double bar = module * random.integer(1, 3);
    canvas.fill({x, box.top, bar, box.height}, colour);
    x += bar + module * random.integer(1, 3);
  }
}

void draw_square_code(Canvas& canvas, Random& random, const Box& box, Colour colour) {
  const int modules = random.integer(21, 33);
  const double size = std::min(box.width, box.height) / modules;
  const auto module = [&](int x, int y, int width, int height, Colour paint) {
    canvas.fill({box.left + x * size, box.top + y * size, width * size, height * size}, paint);
  };
  for (int y = 0; y < modules; ++y) {
    for (int x = 0; x < modules; ++x) {
      if (random.chance(0.5)) module(x, y, 1, 1, colour);
    }
  }
  for (const auto& [x, y] : {std::pair{0, 0}, {modules - 7, 0}, {0, modules - 7}}) {
    module(x, y, 7, 7, colour);
    module(x + 1, y + 1, 5, 5, gray(245));
    module(x + 2, y + 2, 3, 3, colour);
  }
}

void draw_logo(Canvas& canvas, Random& random, const Box& box) {
  const Colour colour = vivid(random), other = vivid(random);
  switch (random.integer(0, 3)) {
    case 0:
      canvas.fill(box, colour);
      return canvas.ellipse(box.inset(std::min(box.width, box.height) * 0.2), other);
    case 1:
      canvas.ellipse(box, colour);
      return canvas.fill(box.inset(std::min(box.width, box.height) * 0.3), other);
    case 2:
      return canvas.polygon(
          {{box.left + box.width / 2, box.top}, {box.right(), box.bottom()}, {box.left, box.bottom()}}, colour);
    default:
      for (int i = 0; i < 4; ++i)
        canvas.fill({box.left, box.top + box.height * i / 4, box.width * (0.4 + 0.2 * i), box.height / 7}, colour);
  }
}

}  // namespace vantrel::drawing
