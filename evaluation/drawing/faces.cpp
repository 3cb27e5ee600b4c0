#include "drawing/faces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "drawing/artwork.h"
#include "drawing/lettering.h"

namespace vantrel::drawing {
namespace {

struct Paints {
  Colour paper, ink;
};

// A name, what its bearer does, an address: on the left, in the middle or on the right.
void draw_text(Canvas& canvas, Random& random, const Box& box, Colour ink) {
  Lettering print = small_print(random);
  Lettering name = heading(random, std::clamp(box.height * random.uniform(0.05, 0.13), 1.5, 12.0));
  const int place = random.integer(0, 2);
  const auto write = [&](Lettering& letters, double y, double width) {
    if (place == 0) return (void)letters.write(canvas, random, {box.left, y}, width, ink);
    if (place == 1) return letters.write_centred(canvas, random, {box.left + box.width / 2, y}, width, ink);
    return letters.write_to_right(canvas, random, {box.right(), y}, width, ink);
  };
  double y = box.top + box.height * random.uniform(0, 0.3);
  write(name, y, box.width * random.uniform(0.5, 1));
  y += name.height() * 2;
  const double line = print.height() * random.uniform(1.5, 2.2);
  for (int lines = random.integer(1, 8); lines > 0 && y + line < box.bottom(); --lines, y += line) {
    if (random.chance(0.15)) y += line;
    write(print, y, box.width * random.uniform(0.25, 0.8));
  }
}

double margin_of(const Canvas& canvas, Random& random) {
  return std::min(canvas.width(), canvas.height()) * random.uniform(0.05, 0.16);
}

void draw_plain(Canvas& canvas, Random& random, const Paints& paints) {
  const Box box = canvas.box().inset(margin_of(canvas, random));
  draw_text(canvas, random, box, paints.ink);
  const double size = std::min(box.width, box.height) * random.uniform(0.15, 0.4);
  if (random.chance(0.5))
    draw_logo(canvas, random, {random.chance(0.5) ? box.left : box.right() - size, box.top, size, size});
}

void draw_framed(Canvas& canvas, Random& random, const Paints& paints) {
  const Colour colour = random.chance(0.5) ? paints.ink : vivid(random);
  const double short_side = std::min(canvas.width(), canvas.height());
  Box box = canvas.box().inset(short_side * random.uniform(0.015, 0.1));
  for (int frames = random.integer(1, 2); frames > 0; --frames) {
    const double thickness = random.between(0.12, 1.5);
    canvas.frame(box, thickness, colour);
    box = box.inset(thickness + random.uniform(0.4, 3));
  }
  draw_text(canvas, random, box.inset(short_side * 0.05), paints.ink);
}

// A wide printed rim, light or dark, within which the paper is seen.
void draw_bordered(Canvas& canvas, Random& random, const Paints& paints) {
  canvas.fill(canvas.box(), vivid(random));
  const Box box = canvas.box().inset(std::min(canvas.width(), canvas.height()) * random.uniform(0.02, 0.12));
  canvas.fill(box, paints.paper);
  draw_text(canvas, random, box.inset(std::min(box.width, box.height) * 0.1), paints.ink);
}

void draw_banded(Canvas& canvas, Random& random, const Paints& paints) {
  draw_text(canvas, random, canvas.box().inset(margin_of(canvas, random) * 1.8), paints.ink);
  for (int bands = random.integer(1, 2); bands > 0; --bands) {
    const Colour colour = vivid(random);
    const double w = canvas.width(), h = canvas.height(), part = random.uniform(0.04, 0.4);
    // At the very border, or a little inside, where a strip of paper is left.
    const double inset = random.chance(0.6) ? 0 : random.uniform(0.5, 3);
    switch (random.integer(0, 3)) {
      case 0:
        canvas.fill({0, inset, w, h * part}, colour);
        break;
      case 1:
        canvas.fill({0, h - h * part - inset, w, h * part}, colour);
        break;
      case 2:
        canvas.fill({inset, 0, w * part, h}, colour);
        break;
      default:
        canvas.fill({w - w * part - inset, 0, w * part, h}, colour);
        break;
    }
  }
}

void draw_dark(Canvas& canvas, Random& random, const Paints&) {
  const Colour stock = tint(random, random.uniform(8, 90), random.uniform(0, 40));
  canvas.fill(canvas.box(), stock);
  const Colour light = random.chance(0.6) ? gray(random.uniform(180, 250)) : tint(random, random.uniform(120, 220), 60);
  draw_text(canvas, random, canvas.box().inset(margin_of(canvas, random)), light);
  if (random.chance(0.3)) canvas.frame(canvas.box().inset(random.uniform(1, 5)), random.between(0.15, 1), light);
}

void draw_photo(Canvas& canvas, Random& random, const Paints&) {
  draw_photograph(canvas, random, canvas.box());
  if (random.chance(0.4)) canvas.frame(canvas.box(), random.uniform(1, 6), gray(random.uniform(225, 252)));
}

void draw_identity(Canvas& canvas, Random& random, const Paints& paints) {
  const double w = canvas.width(), h = canvas.height();
  canvas.fade(canvas.box(), tint(random, random.uniform(170, 245), 25), tint(random, random.uniform(170, 245), 25),
              random.uniform(0, 6.3));
  if (random.chance(0.5)) {
    for (double y = 0; y < h; y += 2.2) canvas.line({0, y}, {w, y + random.uniform(-4, 4)}, 0.15, vivid(random), 0.4);
  }
  const double head = h * random.uniform(0.12, 0.25);
  canvas.fill({0, 0, w, head}, vivid(random));
  heading(random, head * 0.4).write(canvas, random, {w * 0.06, head * 0.3}, w * 0.8, gray(245));
  const double photo = std::min(w * 0.3, (h - head) * 0.6);
  const bool left = random.chance(0.6);
  draw_portrait(canvas, random, {left ? w * 0.06 : w * 0.94 - photo, head * 1.3, photo, photo * 1.25});
  const double text_left = left ? w * 0.1 + photo : w * 0.06;
  Lettering print = small_print(random);
  print.paragraph(canvas, random, {text_left, head * 1.3, w * 0.84 - photo, (h - head * 1.3) * 0.6},
                  print.height() * 2.2, paints.ink);
  if (random.chance(0.4))
    print.paragraph(canvas, random, {w * 0.05, h * 0.87, w * 0.9, h * 0.12}, print.height() * 1.5, paints.ink);
}

void draw_two_tone(Canvas& canvas, Random& random, const Paints& paints) {
  const double w = canvas.width(), h = canvas.height();
  const Colour other = random.chance(0.6) ? vivid(random) : tint(random, random.uniform(10, 120), 20);
  const double cut = random.uniform(0.2, 0.8), slant = random.chance(0.5) ? 0 : random.uniform(-0.5, 0.5);
  if (random.chance(0.5)) {
    canvas.polygon({{-9, -9}, {w * (cut + slant), -9}, {w * (cut - slant), h + 9}, {-9, h + 9}}, other);
  } else {
    canvas.polygon({{-9, h * (cut + slant)}, {w + 9, h * (cut - slant)}, {w + 9, h + 9}, {-9, h + 9}}, other);
  }
  draw_text(canvas, random, canvas.box().inset(margin_of(canvas, random)), random.chance(0.5) ? paints.ink : gray(245));
}

void draw_instant(Canvas& canvas, Random& random, const Paints& paints) {
  const double w = canvas.width(), rim = w * random.uniform(0.04, 0.09);
  const Box picture{rim, rim * random.uniform(1, 1.6), w - 2 * rim, canvas.height() * random.uniform(0.68, 0.8)};
  canvas.fill(canvas.box(), paints.paper);
  draw_photograph(canvas, random, picture);
}

void draw_blank(Canvas& canvas, Random& random, const Paints& paints) {
  if (random.chance(0.3)) return;
  // Embossed: a light and a dark line side by side.
  const Box box = canvas.box().inset(margin_of(canvas, random));
  const double depth = random.uniform(2, 14);
  if (random.chance(0.6)) {
    canvas.frame(box, 0.3, paints.paper + -depth);
    canvas.frame(box.inset(0.3), 0.3, paints.paper + depth);
  }
  heading(random, canvas.height() * 0.12)
      .write_centred(canvas, random, {canvas.width() / 2, canvas.height() * 0.4}, canvas.width() * 0.7,
                     paints.paper + -depth);
}

void draw_boxes(Canvas& canvas, Random& random, const Paints& paints) {
  const Box box = canvas.box().inset(margin_of(canvas, random));
  const double size = std::min(box.width, box.height) * random.uniform(0.3, 0.7);
  draw_square_code(canvas, random, {random.chance(0.5) ? box.left : box.right() - size, box.top, size, size},
                   paints.ink);
  draw_bars(canvas, random,
            {box.left, box.bottom() - box.height * 0.2, box.width * random.uniform(0.5, 1), box.height * 0.2},
            paints.ink);
  for (int i = random.integer(0, 3); i > 0; --i) {
    const double width = box.width * random.uniform(0.1, 0.5), height = box.height * random.uniform(0.1, 0.4);
    const Box logo{box.left + random.uniform(0, box.width - width), box.top + random.uniform(0, box.height - height),
                   width, height};
    random.chance(0.5) ? draw_logo(canvas, random, logo) : canvas.frame(logo, random.between(0.15, 1), paints.ink);
  }
  draw_text(canvas, random, box, paints.ink);
}

void draw_faded(Canvas& canvas, Random& random, const Paints& paints) {
  canvas.fade(canvas.box(), paints.paper, tint(random, random.uniform(60, 240), 50), random.uniform(0, 6.3));
  draw_text(canvas, random, canvas.box().inset(margin_of(canvas, random)), paints.ink);
}

// Film with a faint rim: drawn on what lies below it.
void draw_film(Canvas& canvas, Random& random, const Paints& paints) {
  canvas.fill(canvas.box(), tint(random, random.uniform(215, 248), 4));
  canvas.frame(canvas.box(), random.uniform(0.2, 0.8), gray(random.uniform(150, 225)));
  draw_text(canvas, random, canvas.box().inset(margin_of(canvas, random)), paints.ink);
}

void draw_text_page(Canvas& canvas, Random& random, const Paints& paints) {
  draw_page(canvas, random, canvas.box(), paints.ink);
}

void draw_slip(Canvas& canvas, Random& random, const Paints& paints) { draw_receipt(canvas, random, paints.ink); }

void draw_till_roll(Canvas& canvas, Random& random, const Paints& paints) {
  draw_thermal(canvas, random, paints.paper);
}

struct Kind {
  const char* name;
  enum Size { kBusiness, kBank, kPhoto, kInstant, kPage, kSlip } size;
  void (*draw)(Canvas&, Random&, const Paints&);
};

constexpr std::array<Kind, 16> kKinds{{{"plain", Kind::kBusiness, draw_plain},
                                       {"framed", Kind::kBusiness, draw_framed},
                                       {"bordered", Kind::kBusiness, draw_bordered},
                                       {"banded", Kind::kBusiness, draw_banded},
                                       {"dark", Kind::kBusiness, draw_dark},
                                       {"photograph", Kind::kPhoto, draw_photo},
                                       {"identity", Kind::kBank, draw_identity},
                                       {"two-tone", Kind::kBusiness, draw_two_tone},
                                       {"instant", Kind::kInstant, draw_instant},
                                       {"blank", Kind::kBusiness, draw_blank},
                                       {"boxes", Kind::kBusiness, draw_boxes},
                                       {"faded", Kind::kBank, draw_faded},
                                       {"film", Kind::kBusiness, draw_film},
                                       {"page", Kind::kPage, draw_text_page},
                                       {"receipt", Kind::kSlip, draw_slip},
                                       {"thermal", Kind::kSlip, draw_till_roll}}};

const Kind& kind_named(const std::string& name) {
  for (const Kind& kind : kKinds) {
    if (name == kind.name) return kind;
  }
  throw std::invalid_argument("no such card: " + name);
}

Design design_of(Random& random, const Kind& kind) {
  switch (kind.size) {
    case Kind::kBank:
      return {kind.name, 85.6, 54, random.uniform(2.5, 4)};
    case Kind::kPhoto:
      return {kind.name, random.uniform(85, 160), random.uniform(60, 115)};
    case Kind::kInstant:
      return {kind.name, random.uniform(52, 90), random.uniform(84, 110), random.chance(0.5) ? 1.0 : 0};
    case Kind::kPage:
      return {kind.name, random.uniform(100, 190), random.uniform(140, 260)};
    case Kind::kSlip: {
      const double width = random.uniform(44, 84);
      return {kind.name, width, width * random.between(1.3, 5)};
    }
    default:
      return {kind.name, random.uniform(76, 96), random.uniform(44, 61),
              random.chance(0.35) ? random.uniform(0.5, 4) : 0};
  }
}

}  // namespace

Design design_card(Random& random, const std::string& kind) {
  Design design = design_of(random, kind_named(kind));
  design.transparent = kind == "film";
  if (design.width > design.height && random.chance(0.2)) std::swap(design.width, design.height);  // upright print
  return design;
}

Design design_card(Random& random) { return design_card(random, random.pick(kKinds).name); }

Canvas draw_face(const Design& design, Random& random, double pixels_per_mm, std::optional<Colour> stock) {
  const Paints paints{stock.value_or(paper(random)), ink(random)};
  Canvas canvas(design.width, design.height, pixels_per_mm, paints.paper);
  kind_named(design.kind).draw(canvas, random, paints);
  return canvas;
}

}  // namespace vantrel::drawing
