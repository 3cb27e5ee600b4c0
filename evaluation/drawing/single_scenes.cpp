// One card on a scanner.
#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

constexpr std::array<const char*, 12> kPlaces{"free",  "free", "free", "upright", "upright", "small",
                                              "large", "edge", "edge", "cut",     "corner",  "cut twice"};

bool is_of_paper(const Design& design) {
  for (const char* kind : {"plain", "framed", "bordered", "banded", "blank", "boxes", "page", "receipt", "thermal"}) {
    if (design.kind == kind) return true;
  }
  return false;
}

double tilt_for(Random& random, const std::string& place) {
  const double quarter = 1.5707963268 * (random.chance(0.7) ? 0 : random.integer(1, 3));
  if (place == "upright") return quarter + random.normal() * 0.003;
  if (place == "edge" || place == "corner") return quarter + (random.chance(0.5) ? 0 : random.normal() * 0.02);
  if (place == "large") return quarter + random.normal() * 0.04;
  return pick_tilt(random);
}

// The card made to fit the bed, or to be as small or as large as its place says.
void fit(Design& design, Random& random, const Bed& bed, const std::string& place, double tilt) {
  const double c = std::abs(std::cos(tilt)), s = std::abs(std::sin(tilt));
  const double across = design.width * c + design.height * s, down = design.width * s + design.height * c;
  const double room = std::min(bed.width / bed.pixels_per_mm / across, bed.height / bed.pixels_per_mm / down);
  double factor = std::min(1.0, room * random.uniform(0.5, 0.95));
  if (place == "large") factor = room * random.uniform(0.85, 0.99);
  if (place == "small") {
    // Nothing narrower than 12 mm on a glass of 300 is a card: not even a strip of a receipt.
    constexpr double kNarrowest = 0.04;
    const double longer = std::max(bed.width, bed.height) / bed.pixels_per_mm;
    const double least = longer * kNarrowest / std::min(design.width, design.height);
    factor =
        std::min(factor, std::max(least, longer * random.between(0.06, 0.2) / std::max(design.width, design.height)));
  }
  design.width *= factor, design.height *= factor, design.radius *= factor;
}

std::string pick_ground(Random& random) {
  return random.chance(0.55) ? pick_scanner_ground(random) : pick_table_ground(random);
}

bool is_busy(const std::string& ground) {
  for (const char* kind : {"weave", "cloth", "stone", "terrazzo", "wood", "leather", "carpet", "print", "keys"}) {
    if (ground == kind) return true;
  }
  return false;
}

// Something else that lies there and reaches beyond the scan: no card of the truth.
void lay_neighbour(Scene& scene, Random& random, const Quad& card) {
  const Bed& bed = scene.bed;
  for (int attempt = 0; attempt < 8; ++attempt) {
    const double size = std::max(bed.width, bed.height) * random.uniform(0.2, 0.6);
    const Point middle{
        random.chance(0.5) ? random.uniform(-0.35, -0.1) * size : bed.width + random.uniform(0.1, 0.35) * size,
        random.uniform(0, bed.height)};
    const Quad quad = rectangle(middle, size, size * random.uniform(0.5, 1), random.uniform(0, 6.3));
    const Quad wide = grown(quad, 2 * bed.pixels_per_mm), wide_card = grown(card, 2 * bed.pixels_per_mm);
    bool apart = true;
    for (int i = 0; i <= 40; ++i) {
      const std::size_t side = static_cast<std::size_t>(i / 10) % 4;
      const double t = i % 10 / 10.0;
      apart = apart && !contains(wide, wide_card[side] + (wide_card[(side + 1) % 4] - wide_card[side]) * t) &&
              !contains(wide_card, wide[side] + (wide[(side + 1) % 4] - wide[side]) * t);
    }
    if (!apart) continue;
    scene.note("neighbour");
    Design design = design_card(random, random.chance(0.5) ? "page" : "dark");
    design.width = size / bed.pixels_per_mm, design.height = length(quad[3] - quad[0]) / bed.pixels_per_mm;
    return lay(scene, random, design, quad, {.counted = false});
  }
}

void add_specks(Scene& scene, Random& random, double probability) {
  if (!random.chance(probability)) return;
  scene.note("specks");
  const double levels = luminance(scene.ground->mean) > 128 ? -random.uniform(10, 90) : random.uniform(10, 120);
  scene.layers.push_back(std::make_unique<Specks>(
      drawn_specks(random, scene.bed.width, scene.bed.height, scene.bed.pixels_per_mm, levels)));
}

// The faint lines that stay beside all edges of a sheet that lies flat: darker towards one corner.
void cast_lines_around(Scene& scene, Random& random, const Quad& quad) {
  scene.note("lines around");
  const double width = std::max(3.0, random.between(0.4, 1.2) * scene.bed.pixels_per_mm);
  const double along = std::atan2(quad[1].y - quad[0].y, quad[1].x - quad[0].x);
  const double toward = along + 0.7854 + random.uniform(-0.35, 0.35) + 1.5707963 * random.integer(0, 3);
  for (double turn : {0.0, 3.1415927}) {
    const Quad cast = moved(quad, unit(toward + turn) * width);
    scene.layers.push_back(std::make_unique<Shade>(cast, width * 0.6, random.between(0.018, 0.05)));
  }
}

Quad pick_quad(Scene& scene, Random& random, Design& design, const std::string& place) {
  const double tilt = tilt_for(random, place);
  fit(design, random, scene.bed, place, tilt);
  scene.scan.place = place;
  const double scale = scene.bed.pixels_per_mm;
  Quad quad = rectangle({0, 0}, design.width * scale, design.height * scale, tilt);
  if (random.chance(0.2)) {
    scene.note("perspective");
    quad = foreshortened(random, quad, random.chance(0.25) ? random.uniform(0.08, 0.25) : random.uniform(0.005, 0.06));
  }
  return placed(random, quad, scene.bed, place);
}

void compose_on(Scene& scene, Random& random, const Bed& bed) {
  scene.set_bed(bed);
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  const std::string ground = pick_ground(random);
  scene.set_ground(random, ground);
  Design design = design_card(random);
  // On a pattern nobody sees where film ends.
  while (design.transparent && is_busy(ground)) design = design_card(random);
  const Quad quad = pick_quad(scene, random, design, random.pick(kPlaces));
  Laying laying;
  if (is_of_paper(design) && random.chance(0.15)) {
    scene.note("low contrast");
    laying.paper = colour_near(random, scene.ground->mean, 6, 20);
  }
  if (random.chance(0.1)) lay_neighbour(scene, random, quad);
  if (random.chance(0.1)) lay_strip(scene, random);
  lay(scene, random, design, quad, laying);
  add_specks(scene, random, 0.35);
}

}  // namespace

void compose_single(Scene& scene, Random& random) { compose_on(scene, random, pick_bed(random)); }

void compose_flat(Scene& scene, Random& random) {
  scene.set_bed(pick_bed(random));
  std::vector<std::string> effects;
  scene.capture = pick_scanner_capture(random, effects);
  scene.capture.fringe = scene.capture.stripes = scene.capture.banding = 0;
  for (const std::string& effect : effects)
    if (effect != "fringe" && effect != "stripes" && effect != "banding") scene.scan.effects.push_back(effect);
  const std::string ground = random.pick(std::array<const char*, 9>{
      "dark glass", "gray lid", "white lid", "real glass", "coloured sheet", "weave", "cloth", "stone", "wood"});
  scene.set_ground(random, ground);
  constexpr std::array<const char*, 10> kCards{"plain",      "framed",   "bordered", "banded",  "dark",
                                               "photograph", "identity", "two-tone", "instant", "page"};
  constexpr std::array<const char*, 7> kFlatPlaces{"free", "upright", "small", "large", "edge", "cut", "corner"};
  Design design = design_card(random, random.pick(kCards));
  // White on white has a set of its own.
  while (ground == "white lid" && is_of_paper(design)) design = design_card(random, random.pick(kCards));
  const Quad quad = pick_quad(scene, random, design, random.pick(kFlatPlaces));
  Laying laying{.wear = 0};
  if (is_of_paper(design) && random.chance(0.15)) {
    scene.note("low contrast");
    laying.paper = colour_near(random, scene.ground->mean, 6, 20);
  }
  lay(scene, random, design, quad, laying);
}

void compose_fine(Scene& scene, Random& random) {
  switch (random.integer(0, 3)) {
    case 0:
      return compose_on(scene, random, bed_of(210, 297, random.uniform(290, 400), 16e6));
    case 1:
      return compose_on(scene, random, bed_of(105, 148, random.uniform(400, 900), 20e6));
    case 2:
      return compose_on(scene, random,
                        bed_of(random.uniform(92, 105), random.uniform(62, 72), random.uniform(600, 1200), 16e6));
    default:
      return compose_on(scene, random, bed_of(215.9, 279.4, random.uniform(300, 600), 30e6));
  }
}

void compose_white(Scene& scene, Random& random) {
  scene.set_bed(pick_bed(random));
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  scene.capture.noise = random.between(0.5, 3);
  scene.capture.chroma_noise = scene.capture.noise * random.uniform(0, 0.4);
  scene.set_ground(random, "white lid");
  Design design = design_card(
      random, random.pick(std::array<const char*, 6>{"plain", "blank", "framed", "boxes", "page", "receipt"}));
  const Quad quad = pick_quad(scene, random, design, random.pick(kPlaces));
  Laying laying{.paper = colour_near(random, scene.ground->mean, 3, 12), .shadow = Shadow::kFaint, .wear = 0.1};
  if (random.chance(0.35)) {  // of the ground's own colour: the shadow alone tells
    laying = {.paper = colour_near(random, scene.ground->mean, 0, 2), .shadow = Shadow::kNone, .wear = 0};
    cast_shadow(scene, random, quad, true);
    if (random.chance(0.8)) cast_lines_around(scene, random, quad);
  }
  lay(scene, random, design, quad, laying);
  add_specks(scene, random, 0.3);
}

}  // namespace vantrel::drawing
