// How sheets lie on the ground: their faces, wear and shadows.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

double mean_side(const Quad& quad, std::size_t side) {
  return (length(quad[(side + 1) % 4] - quad[side]) + length(quad[(side + 3) % 4] - quad[(side + 2) % 4])) / 2;
}

void curl(Scene& scene, Random& random, Outline& outline) {
  scene.note("curled");
  const Quad& quad = outline.corners();
  const std::size_t first = static_cast<std::size_t>(random.integer(0, 1));
  // Opposite sides bend the same way, as of a sheet that rises in the middle; or all outwards.
  const double part = random.uniform(0.001, 0.005) * random.sign(), other = random.chance(0.7) ? -1 : 1;
  outline.bend(first, {.bulge = part * length(quad[(first + 1) % 4] - quad[first])});
  outline.bend(first + 2, {.bulge = part * other * length(quad[(first + 3) % 4] - quad[first + 2])});
}

void crumple(Scene& scene, Random& random, Outline& outline, double millimetres) {
  scene.note("crumpled");
  for (std::size_t side = 0; side < 4; ++side) {
    outline.bend(side, {.crumple = millimetres * scene.bed.pixels_per_mm * random.uniform(0.3, 1),
                        .crumple_step = random.uniform(3, 15) * scene.bed.pixels_per_mm,
                        .crumple_seed = random.bits() % kDeviates});
  }
}

void crease(Scene& scene, Random& random, Sheet& sheet, const Quad& quad, int count) {
  scene.note("creased");
  const double along = std::atan2(quad[1].y - quad[0].y, quad[1].x - quad[0].x);
  for (; count > 0; --count) {
    const Point on = middle_of(quad) + (quad[0] - quad[2]) * random.uniform(-0.4, 0.4);
    const double angle =
        random.chance(0.6) ? along + 1.5708 * random.integer(0, 1) + random.normal() * 0.03 : random.uniform(0, 3.2);
    sheet.add({on, angle, random.between(0.3, 3) * scene.bed.pixels_per_mm, random.normal() * 8, random.normal() * 18});
  }
}

// Where a slip was folded for the purse: each part of it lies at another slope and takes another light.
void fold(Scene& scene, Random& random, Sheet& sheet, const Quad& quad, int count) {
  scene.note("folded");
  const double along = std::atan2(quad[1].y - quad[0].y, quad[1].x - quad[0].x);
  for (int i = 1; i <= count; ++i) {
    const Point on = middle_of(quad) + (quad[3] - quad[0]) * (i / (count + 1.0) - 0.5 + random.normal() * 0.04);
    const double angle = along + random.normal() * 0.03;
    sheet.add({on, angle, random.uniform(4, 14) * scene.bed.pixels_per_mm, 0, random.normal() * 14});
    sheet.add({on, angle, random.between(0.3, 0.8) * scene.bed.pixels_per_mm, -random.uniform(4, 40), 0});
  }
}

// A corner that rises from the glass: it darkens, with a gleam where the bend begins.
void curl_corners(Scene& scene, Random& random, Sheet& sheet, const Quad& quad, int count) {
  scene.note("curled corner");
  for (std::size_t i = static_cast<std::size_t>(random.integer(0, 3)); count > 0; --count, ++i) {
    const Point corner = quad[i % 4], inward = middle_of(quad) - corner;
    const double size = mean_side(quad, 0) * random.uniform(0.05, 0.18);
    const double diagonal = std::atan2(inward.y, inward.x) + 1.5707963 + random.normal() * 0.15;
    sheet.add({corner, diagonal, size, -random.uniform(15, 90), 0});
    sheet.add({corner + inward * (1.6 * size / length(inward)), diagonal, size * 0.3, random.uniform(0, 25), 0});
  }
}

void polish(Scene& scene, Random& random, Sheet& sheet, const Quad& quad) {
  scene.note("gloss");
  const Point on = middle_of(quad) + (quad[0] - quad[2]) * random.uniform(-0.4, 0.4);
  sheet.add({on, random.uniform(0, 3.2), mean_side(quad, 0) * random.uniform(0.03, 0.2), random.uniform(15, 110), 0});
}

// The cut edge of thick stock catches the light, or lies in the dark.
void light_edges(Scene& scene, Random& random, Sheet& sheet, const Quad& quad) {
  scene.note("lit edge");
  const double levels = random.uniform(12, 60) * random.sign();
  for (int sides = random.integer(1, 2), side = random.integer(0, 3); sides > 0; --sides, ++side) {
    const Point from = quad[static_cast<std::size_t>(side % 4)], to = quad[static_cast<std::size_t>((side + 1) % 4)];
    sheet.add({from, std::atan2(to.y - from.y, to.x - from.x), random.uniform(0.4, 1.5), levels, 0});
  }
}

void pierce(Scene& scene, Random& random, Outline& outline) {
  scene.note("hole");
  const Quad& quad = outline.corners();
  const double least = std::min(mean_side(quad, 0), mean_side(quad, 1));
  const double radius = std::min(random.uniform(2.5, 8) * scene.bed.pixels_per_mm, 0.15 * least);
  const auto side = static_cast<std::size_t>(random.integer(0, 3));
  const Point at = quad[side] + (quad[(side + 1) % 4] - quad[side]) * random.uniform(0.25, 0.75);
  const Point inward = middle_of(quad) - at;
  // Punched inside, or through the border as a notch.
  const double depth = random.chance(0.5) ? radius * random.uniform(1.3, 3) : random.uniform(-0.3, 0.3) * radius;
  outline.cut({at + inward * (depth / length(inward)), radius});
}

void wear_out(Scene& scene, Random& random, Sheet& sheet, double wear) {
  const Quad quad = sheet.outline().corners();
  if (random.chance(wear * 0.4)) curl(scene, random, sheet.outline());
  if (random.chance(wear * 0.4)) crease(scene, random, sheet, quad, random.integer(1, 3));
  if (random.chance(wear * 0.35)) polish(scene, random, sheet, quad);
  if (random.chance(wear * 0.25)) light_edges(scene, random, sheet, quad);
  if (random.chance(wear * 0.15)) pierce(scene, random, sheet.outline());
  if (random.chance(wear * 0.25)) {
    scene.note("raster");
    sheet.add_raster(random.between(2.1, 7), random.uniform(0, 1.57), random.between(0.02, 0.12));
  }
}

}  // namespace

Colour colour_near(Random& random, Colour ground, double least, double most) {
  const double off = random.uniform(least, most) * (luminance(ground) + most > 252 ? -1 : random.sign());
  if (random.chance(0.3)) {
    const Colour hue = tint(random, luminance(ground), std::abs(off));
    return hue;
  }
  const Colour near = ground + off;
  return {std::clamp(near.b, 0.0, 255.0), std::clamp(near.g, 0.0, 255.0), std::clamp(near.r, 0.0, 255.0)};
}

void cast_shadow(Scene& scene, Random& random, const Quad& quad, bool faint) {
  const double scale = scene.bed.pixels_per_mm;
  const double darkness = faint ? random.between(0.008, 0.08) : random.between(0.08, 0.65);
  const double kind = random.uniform();
  if (kind < 0.45) {  // the line that a scanner's lamp leaves beside an edge, on one or two sides
    scene.note("edge line");
    const double width = random.between(0.15, 0.8) * scale;
    // Across the lamp's way, or as the card lies; grown by as much, it shows on a third side too.
    const double along = random.chance(0.5) ? 0 : std::atan2(quad[1].y - quad[0].y, quad[1].x - quad[0].x);
    const double toward = along + random.integer(0, 3) * 1.5707963 + (random.chance(0.5) ? 0 : random.uniform(0, 1.57));
    const Quad cast = moved(random.chance(0.3) ? grown(quad, width) : quad, unit(toward) * width);
    scene.layers.push_back(std::make_unique<Shade>(cast, std::min(width * 0.6, 0.5 * scale), darkness));
  } else if (kind < 0.85) {
    scene.note("shadow");
    const Point by = unit(random.uniform(0, 6.3)) * (random.between(0.4, 4) * scale);
    scene.layers.push_back(std::make_unique<Shade>(moved(quad, by), random.between(0.3, 4) * scale, darkness));
  } else {  // close around, more on one hand
    scene.note("shadow");
    const double width = random.between(0.2, 1.5) * scale;
    const Point by = unit(random.uniform(0, 6.3)) * (width * 0.7);
    scene.layers.push_back(std::make_unique<Shade>(moved(grown(quad, width * 0.5), by), width, darkness));
  }
}

void lay_strip(Scene& scene, Random& random) {
  scene.note("strip");
  const Quad quad = border_strip(random, scene.bed, random.integer(0, 3), random.between(0.01, 0.2));
  lay_backing(scene, random, quad,
              tint(random, random.uniform(5, 250), random.chance(0.6) ? 3 : random.uniform(5, 60)));
}

void lay(Scene& scene, Random& random, const Design& design, const Quad& quad, const Laying& laying) {
  if (laying.shadow != Shadow::kNone && !design.transparent && random.chance(0.65)) {
    cast_shadow(scene, random, quad, laying.shadow == Shadow::kFaint);
  }
  const double scale = mean_side(quad, 0) / design.width;  // pixels of the scan to a millimetre of the card
  Canvas canvas = draw_face(design, random, scale * 1.15, laying.paper);
  if (design.radius > 0) scene.note("round corners");
  const auto mapping = Mapping::from_rectangle(canvas.texture().width(), canvas.texture().height(), quad);
  auto sheet = std::make_unique<Sheet>(Outline(quad, design.radius * scale),
                                       std::make_shared<Texture>(std::move(canvas.texture())), mapping);
  if (design.transparent) sheet->make_transparent(random.uniform(0.02, 0.25));
  if (laying.crumple > 0) {
    crumple(scene, random, sheet->outline(), laying.crumple);
    crease(scene, random, *sheet, quad, random.integer(0, 6));
  } else {
    wear_out(scene, random, *sheet, laying.wear);
  }
  if (laying.folds > 0) fold(scene, random, *sheet, quad, laying.folds);
  if (laying.curled_corners > 0) curl_corners(scene, random, *sheet, quad, laying.curled_corners);
  if (laying.counted) {
    scene.cards.push_back({quad, scene.layers.size()});
    scene.scan.card = design.kind;
  }
  scene.layers.push_back(std::move(sheet));
}

void lay_backing(Scene& scene, Random& random, const Quad& quad, Colour colour) {
  if (random.chance(0.6)) cast_shadow(scene, random, quad, random.chance(0.4));
  // Coarse, as nothing but slow changes is on it.
  Texture stains(random.integer(2, 12), random.integer(2, 12), colour);
  const double unevenness = random.uniform(0, 3);
  for (int y = 0; y < stains.height(); ++y) {
    for (int x = 0; x < stains.width(); ++x) stains.row(y)[x] = packed(colour + random.normal() * unevenness);
  }
  const auto mapping = Mapping::from_rectangle(stains.width(), stains.height(), quad);
  scene.layers.push_back(std::make_unique<Sheet>(Outline(quad), std::make_shared<Texture>(std::move(stains)), mapping));
}

}  // namespace vantrel::drawing
