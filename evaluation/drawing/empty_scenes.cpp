// Scans without a card, and what on them might be taken for one.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

// A ruler or the marks beside a scanner's glass.
void lay_scale(Scene& scene, Random& random) {
  scene.note("scale marks");
  const Bed& bed = scene.bed;
  const double scale = bed.pixels_per_mm, depth = random.uniform(4, 25), reach = bed.width / scale + 4;
  Canvas canvas(reach, depth, scale, tint(random, random.uniform(20, 245), random.uniform(0, 30)));
  const Colour mark = luminance(unpacked(canvas.texture().row(0)[0])) > 128 ? gray(30) : gray(230);
  for (int i = 0; i < reach; ++i) {
    canvas.fill({static_cast<double>(i), 0, 0.25, depth * (i % 10 == 0 ? 0.5 : i % 5 == 0 ? 0.35 : 0.2)}, mark);
  }
  const double w = reach * scale, h = depth * scale;
  const Quad quad =
      random.chance(0.5)
          ? Quad{{{0, 0}, {w, 0}, {w, h}, {0, h}}}
          : Quad{{{w, bed.height + 0.0}, {0, bed.height + 0.0}, {0, bed.height - h}, {w, bed.height - h}}};
  const auto mapping = Mapping::from_rectangle(canvas.texture().width(), canvas.texture().height(), quad);
  scene.layers.push_back(
      std::make_unique<Sheet>(Outline(quad), std::make_shared<Texture>(std::move(canvas.texture())), mapping));
}

void lay_strips(Scene& scene, Random& random) {
  scene.note("strips");
  const int first = random.integer(0, 3), strips = random.integer(1, 3);
  const Colour colour =
      random.chance(0.5) ? gray(random.uniform(5, 250)) : tint(random, random.uniform(20, 235), random.uniform(5, 60));
  for (int i = 0; i < strips; ++i) {
    const Quad quad = border_strip(random, scene.bed, (first + i) % 4, random.between(0.01, 0.35));
    lay_backing(scene, random, quad, random.chance(0.7) ? colour : tint(random, random.uniform(20, 235), 30));
  }
}

// A sheet that fills all but a rim on one, two or four sides.
void lay_sheet_with_rim(Scene& scene, Random& random) {
  scene.note("sheet with a rim");
  const double w = scene.bed.width, h = scene.bed.height;
  std::array<double, 4> rims{};
  for (double& rim : rims) rim = random.chance(0.5) ? random.between(0.005, 0.06) : -0.1;
  const Quad quad{{{rims[3] * w, rims[0] * h},
                   {w - rims[1] * w, rims[0] * h},
                   {w - rims[1] * w, h - rims[2] * h},
                   {rims[3] * w, h - rims[2] * h}}};
  lay_backing(
      scene, random, quad,
      random.chance(0.5) ? tint(random, random.uniform(225, 252), 2) : tint(random, random.uniform(30, 230), 40));
}

void add_dirt(Scene& scene, Random& random) {
  const double levels = luminance(scene.ground->mean) > 128 ? -random.uniform(10, 120) : random.uniform(10, 140);
  for (int i = random.integer(0, 3); i > 0; --i) {
    scene.note("specks");
    scene.layers.push_back(std::make_unique<Specks>(
        drawn_specks(random, scene.bed.width, scene.bed.height, scene.bed.pixels_per_mm, levels)));
  }
  if (random.chance(0.2)) {  // the lid's hinge lets light in, or keeps it out
    scene.note("hinge shadow");
    const Quad quad = border_strip(random, scene.bed, random.integer(0, 3), random.between(0.02, 0.3));
    const double softness = random.between(1, 25) * scene.bed.pixels_per_mm;
    scene.layers.push_back(std::make_unique<Shade>(quad, softness, random.uniform(-0.3, 0.6)));
  }
}

}  // namespace

void compose_bare(Scene& scene, Random& random) {
  const bool photographed = random.chance(0.3);
  Bed bed = pick_bed(random);
  bed.photographed = photographed;
  scene.set_bed(bed);
  scene.capture =
      photographed ? pick_camera_capture(random, scene.scan.effects) : pick_scanner_capture(random, scene.scan.effects);
  scene.set_ground(random, random.chance(0.5) ? pick_scanner_ground(random) : pick_table_ground(random));
  add_dirt(scene, random);
}

void compose_strips(Scene& scene, Random& random) {
  scene.set_bed(pick_bed(random));
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  scene.set_ground(random, random.chance(0.7) ? pick_scanner_ground(random) : pick_table_ground(random));
  const double kind = random.uniform();
  if (kind < 0.55) {
    lay_strips(scene, random);
  } else if (kind < 0.8) {
    lay_sheet_with_rim(scene, random);
  }
  if (kind > 0.75 || random.chance(0.15)) lay_scale(scene, random);
  add_dirt(scene, random);
}

void compose_page(Scene& scene, Random& random) {
  const Bed bed = bed_of(210, random.chance(0.8) ? 297 : 148, random.between(75, 150), 2.2e6);
  scene.set_bed(bed);
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  scene.set_ground(random, "white lid");
  scene.scan.ground = "page";
  // A little larger than the scan: its borders stay outside, however it is turned.
  const double w = bed.width * 1.12, h = bed.height * 1.12;
  const Quad quad = rectangle({bed.width / 2.0, bed.height / 2.0}, w, h, random.normal() * 0.01);
  Canvas canvas(w / bed.pixels_per_mm, h / bed.pixels_per_mm, bed.pixels_per_mm, paper(random));
  const double inset = 0.06 * canvas.width();
  draw_page(canvas, random, canvas.box().inset(inset), ink(random));
  const auto mapping = Mapping::from_rectangle(canvas.texture().width(), canvas.texture().height(), quad);
  scene.layers.push_back(
      std::make_unique<Sheet>(Outline(quad), std::make_shared<Texture>(std::move(canvas.texture())), mapping));
}

}  // namespace vantrel::drawing
