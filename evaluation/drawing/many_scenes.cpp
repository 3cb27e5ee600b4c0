// Several cards on a bed, and album pages.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

// Whether a straight line along one of their sides keeps two convex shapes apart by that gap.
bool apart(const Quad& a, const Quad& b, double gap) {
  for (const auto& [first, second] : {std::pair{&a, &b}, {&b, &a}}) {
    for (std::size_t i = 0; i < 4; ++i) {
      const Point from = (*first)[i], side = (*first)[(i + 1) % 4] - from;
      double nearest = 1e9;
      for (Point p : *second)
        nearest = std::min(nearest, (side.y * (p.x - from.x) - side.x * (p.y - from.y)) / length(side));
      if (nearest >= gap) return true;
    }
  }
  return false;
}

struct Arrangement {
  std::vector<Design> designs;
  std::vector<Quad> quads;
};

Design resized(Design design, double factor) {
  design.width *= factor, design.height *= factor, design.radius *= factor;
  return design;
}

// Rows and columns: cards of about one size, each turned a little in its cell.
Arrangement in_rows(Random& random, const Bed& bed, int count) {
  Arrangement result;
  const Design model = design_card(random, "plain");
  const double bed_width = bed.width / bed.pixels_per_mm, bed_height = bed.height / bed.pixels_per_mm;
  const int columns = std::clamp(
      static_cast<int>(std::lround(std::sqrt(count * bed_width / bed_height * model.height / model.width))), 1, count);
  const int rows = (count + columns - 1) / columns;
  const double gap = random.chance(0.05) ? 0 : random.chance(0.3) ? random.between(0.5, 3) : random.uniform(2, 20);
  const double turn = gap == 0 ? 0 : random.between(0.002, 0.04);
  const double fit =
      std::min((bed_width - gap) / columns / (model.width + gap), (bed_height - gap) / rows / (model.height + gap));
  const double factor = std::min(fit, random.uniform(0.9, 1.1));
  const double cell_width = (model.width + gap) * factor, cell_height = (model.height + gap) * factor;
  const Point start{random.uniform(0, bed_width - columns * cell_width),
                    random.uniform(0, bed_height - rows * cell_height)};
  for (int i = 0; i < count; ++i) {
    Design design =
        design_card(random, random.pick(std::array<const char*, 8>{"plain", "framed", "banded", "dark", "two-tone",
                                                                   "boxes", "bordered", "blank"}));
    design.width = model.width * factor, design.height = model.height * factor;
    const Point middle = start + Point{(i % columns + 0.5) * cell_width, (i / columns + 0.5) * cell_height};
    // No further than the gap allows: half of it for each of two neighbours.
    const double angle = std::clamp(random.normal() * turn, -0.8 * gap / model.width, 0.8 * gap / model.width);
    result.designs.push_back(design);
    result.quads.push_back(rectangle(middle * bed.pixels_per_mm, design.width * bed.pixels_per_mm,
                                     design.height * bed.pixels_per_mm, angle));
  }
  return result;
}

Arrangement strewn(Random& random, const Bed& bed, int count, double least_gap) {
  Arrangement result;
  const double area = bed.width / bed.pixels_per_mm * (bed.height / bed.pixels_per_mm);
  const bool level = random.chance(0.5);
  for (int i = 0; i < count; ++i) {
    Design design = design_card(random);
    const double factor =
        std::min(1.0, std::sqrt(area / count * random.uniform(0.25, 0.55) / (design.width * design.height)));
    design = resized(design, factor);
    for (int attempt = 0; attempt < 60; ++attempt) {
      const double tilt = level ? random.normal() * 0.05 + 1.5707963 * random.integer(0, 3) : random.uniform(0, 6.3);
      const Quad quad =
          placed(random, rectangle({0, 0}, design.width * bed.pixels_per_mm, design.height * bed.pixels_per_mm, tilt),
                 bed, "free");
      const bool free = std::all_of(result.quads.begin(), result.quads.end(),
                                    [&](const Quad& other) { return apart(quad, other, least_gap); });
      if (!free) continue;
      result.designs.push_back(design);
      result.quads.push_back(quad);
      break;
    }
  }
  return result;
}

void lay_album_page(Scene& scene, Random& random) {
  scene.note("album page");
  const Bed& bed = scene.bed;
  const Colour colour = random.chance(0.5) ? gray(random.uniform(15, 60)) : tint(random, random.uniform(150, 240), 12);
  const Quad page = rectangle({bed.width / 2.0, bed.height / 2.0}, bed.width * random.uniform(0.85, 1.1),
                              bed.height * random.uniform(0.85, 1.1), random.normal() * 0.01);
  lay_backing(scene, random, page, colour);
}

void lay_all(Scene& scene, Random& random, const Arrangement& arrangement) {
  for (std::size_t i = 0; i < arrangement.quads.size(); ++i) {
    lay(scene, random, arrangement.designs[i], arrangement.quads[i], {.wear = 0.15});
  }
}

}  // namespace

void compose_several(Scene& scene, Random& random) {
  scene.set_bed(random.chance(0.75) ? bed_of(210, 297, random.between(75, 200), 2.5e6) : pick_bed(random));
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  scene.set_ground(random, random.chance(0.7) ? pick_scanner_ground(random) : pick_table_ground(random));
  const int count = random.chance(0.3) ? random.integer(5, 12) : random.integer(2, 6);
  const double kind = random.uniform();
  if (kind < 0.12) {
    lay_album_page(scene, random);
    scene.scan.place = "album";
    Arrangement photos = strewn(random, scene.bed, std::min(count, 6), 3 * scene.bed.pixels_per_mm);
    for (Design& design : photos.designs) {
      design.kind = random.chance(0.8) ? "photograph" : "instant";
      design.radius = 0, design.transparent = false;
    }
    return lay_all(scene, random, photos);
  }
  if (kind < 0.5) {
    scene.scan.place = "rows";
    return lay_all(scene, random, in_rows(random, scene.bed, count));
  }
  const bool overlapping = kind > 0.9;
  scene.scan.place = overlapping ? "overlapping" : "strewn";
  const double gap = overlapping ? -12 : random.between(0.5, 8);
  lay_all(scene, random, strewn(random, scene.bed, count, gap * scene.bed.pixels_per_mm));
}

}  // namespace vantrel::drawing
