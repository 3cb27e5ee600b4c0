// Photographs of cards on tables.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

Design pick_handheld(Random& random) {
  return design_card(random, random.pick(std::array<const char*, 14>{"plain", "plain", "framed", "bordered", "banded",
                                                                     "dark", "identity", "identity", "two-tone",
                                                                     "boxes", "faded", "page", "receipt", "thermal"}));
}

double area_of(const Quad& quad) {
  double sum = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const Point a = quad[i], b = quad[(i + 1) % 4];
    sum += (a.x * b.y - a.y * b.x) / 2;
  }
  return sum;
}

// A card so large that it fills that part of the picture, as far as it fits.
Quad filling(Random& random, const Design& design, const Bed& bed, double part) {
  const double tilt =
      random.chance(0.7) ? random.normal() * 0.15 + 1.5707963 * random.integer(0, 3) : random.uniform(0, 6.3);
  const double amount = random.chance(0.4) ? random.uniform(0.1, 0.4) : random.uniform(0, 0.12);
  const Quad flat = rectangle({0, 0}, design.width, design.height, tilt);
  Quad quad = random.chance(0.22) ? strongly_foreshortened(random, flat) : foreshortened(random, flat, amount);
  double width = 0, height = 0;
  for (Point p : quad) {
    for (Point q : quad) width = std::max(width, p.x - q.x), height = std::max(height, p.y - q.y);
  }
  const double wanted = std::sqrt(part * bed.width * bed.height / area_of(quad));
  const double room = std::min(bed.width / width, bed.height / height) * 0.98;
  const double scale = std::min(wanted, room);
  for (Point& p : quad) p = p * scale;
  return quad;
}

// Another paper below the card, or other things beside it: they may reach beyond the picture.
void clutter(Scene& scene, Random& random, const Quad& card) {
  const Bed& bed = scene.bed;
  for (int things = random.integer(0, 3); things > 0; --things) {
    scene.note("clutter");
    const double size = std::max(bed.width, bed.height) * random.uniform(0.2, 0.9);
    const double angle = random.uniform(0, 6.3);
    // Around the picture's middle at a distance: mostly at its borders.
    const Point middle = Point{bed.width / 2.0, bed.height / 2.0} +
                         unit(angle) * (std::max(bed.width, bed.height) * random.uniform(0.45, 0.8));
    const Quad quad =
        foreshortened(random, rectangle(middle, size, size * random.uniform(0.3, 1), random.uniform(0, 6.3)), 0.15);
    Design design = design_card(random);
    design.transparent = false;
    design.width = length(quad[1] - quad[0]) / bed.pixels_per_mm,
    design.height = length(quad[3] - quad[0]) / bed.pixels_per_mm;
    lay(scene, random, design, quad, {.counted = false});
  }
  if (random.chance(0.12)) {
    scene.note("paper below");
    const Quad quad = moved(grown(card, length(card[1] - card[0]) * random.uniform(0.05, 0.4)),
                            unit(random.uniform(0, 6.3)) * (10 * bed.pixels_per_mm));
    lay_backing(scene, random, quad, tint(random, random.uniform(40, 245), random.uniform(0, 40)));
  }
}

// One strong straight edge behind the card, parallel to it or nearly so: a table's, or that of a large sheet.
void lay_edge_behind(Scene& scene, Random& random, const Quad& card) {
  if (!random.chance(0.3)) return;
  scene.note("edge behind");
  const auto side = static_cast<std::size_t>(random.integer(0, 3));
  const Point from = card[side], to = card[(side + 1) % 4];
  const Point inward = (card[(side + 2) % 4] + card[(side + 3) % 4] - from - to) * 0.5;
  // Across the card, or past it at a little distance.
  const Point on = (from + to) * 0.5 + inward * random.uniform(-0.15, 0.6);
  const double lean = random.uniform(-0.087, 0.087) + (random.chance(0.5) ? 0 : 3.1415927);
  const double light = luminance(scene.ground->mean);
  const double level = light > 128 ? random.uniform(5, light - 50) : random.uniform(light + 50, 245);
  lay_backing(scene, random, half_plane(scene.bed, on, std::atan2(to.y - from.y, to.x - from.x) + lean),
              tint(random, level, random.uniform(0, 40)));
}

// Of a hand or a telephone held above.
void darken_by_hand(Scene& scene, Random& random) {
  if (!random.chance(0.35)) return;
  scene.note("hand shadow");
  const Bed& bed = scene.bed;
  const double size = std::max(bed.width, bed.height) * random.uniform(0.5, 1.2);
  const Point middle{random.uniform(0, bed.width), random.uniform(0, bed.height)};
  const Quad quad = rectangle(middle, size, size * random.uniform(0.3, 0.8), random.uniform(0, 6.3));
  scene.layers.push_back(std::make_unique<Shade>(quad, size * random.between(0.01, 0.15), random.uniform(0.08, 0.45)));
}

// A thumb that holds the card: it hides a piece of a side.
void hold(Scene& scene, Random& random, const Quad& card) {
  if (!random.chance(0.12)) return;
  scene.note("finger");
  const auto side = static_cast<std::size_t>(random.integer(0, 3));
  const Point at = card[side] + (card[(side + 1) % 4] - card[side]) * random.uniform(0.2, 0.8);
  const Point outward = at - middle_of(card);
  const double width = random.uniform(14, 22) * scene.bed.pixels_per_mm, reach = 6 * width;
  const double angle = std::atan2(outward.y, outward.x) + random.normal() * 0.4;
  const Point middle = at + unit(angle) * (reach / 2 - width * random.uniform(0.2, 1));
  const Quad quad = rectangle(middle, reach, width, angle);
  Canvas canvas(10, 10, 4, gray(0));
  const Colour skin = skin_colour(random);
  canvas.fade(canvas.box(), skin, skin * random.uniform(0.55, 0.85), 1.5707963 * random.sign());
  const auto mapping = Mapping::from_rectangle(canvas.texture().width(), canvas.texture().height(), quad);
  scene.layers.push_back(std::make_unique<Shade>(grown(quad, 0.05 * width), 0.3 * width, 0.25));
  scene.layers.push_back(std::make_unique<Sheet>(Outline(quad, width / 2),
                                                 std::make_shared<Texture>(std::move(canvas.texture())), mapping));
}

}  // namespace

void compose_photo(Scene& scene, Random& random) {
  const int longer = random.integer(640, 1600), shorter = longer * (random.chance(0.7) ? 12 : 9) / 16;
  Bed bed{longer, shorter, 1, true};
  if (random.chance(0.5)) std::swap(bed.width, bed.height);
  const Design design = pick_handheld(random);
  const Quad shape = filling(random, design, bed, random.uniform(0.15, 0.9));
  bed.pixels_per_mm = std::sqrt(area_of(shape) / (design.width * design.height));
  scene.set_bed(bed);
  scene.capture = pick_camera_capture(random, scene.scan.effects);
  scene.set_ground(random, pick_table_ground(random));
  scene.scan.place = random.chance(0.1) ? "cut" : "free";
  const Quad quad = placed(random, shape, scene.bed, scene.scan.place);
  lay_edge_behind(scene, random, quad);
  clutter(scene, random, quad);
  Laying laying;
  if (design.kind == "receipt" || design.kind == "thermal" || design.kind == "page")
    laying.crumple = random.chance(0.5) ? random.uniform(0.05, 0.5) : 0;
  lay(scene, random, design, quad, laying);
  hold(scene, random, quad);
  darken_by_hand(scene, random);
}

}  // namespace vantrel::drawing
