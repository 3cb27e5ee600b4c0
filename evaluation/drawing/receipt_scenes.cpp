// Receipts on glass, before backing sheets, the lid and its rim: straight borders abound, the receipt's are but four.
#include <algorithm>
#include <cmath>
#include <utility>

#include "drawing/artwork.h"
#include "drawing/scene.h"

namespace vantrel::drawing {
namespace {

constexpr double kQuarter = 1.5707963267948966;

struct Slip {
  Design design;
  Quad quad;
};

double pick_slip_tilt(Random& random) {
  const double turned = random.chance(0.85) ? 0 : kQuarter * random.integer(1, 3);
  if (random.chance(0.2)) return turned;  // exactly as the frame
  return turned + random.normal() * (random.chance(0.7) ? 0.015 : 0.08);
}

// A receipt of 8 to 50 % of the bed, turned by `tilt`; `longer` than the glass where that is asked for.
Slip pick_slip(Random& random, const Bed& bed, double tilt, bool longer) {
  const double width = bed.width / bed.pixels_per_mm, height = bed.height / bed.pixels_per_mm;
  Slip slip{design_card(random, random.chance(0.85) ? "thermal" : "receipt"), {}};
  const double area = random.uniform(0.08, 0.5) * width * height, ratio = random.between(1.3, 3.5);
  slip.design.width = std::sqrt(area / ratio), slip.design.height = slip.design.width * ratio;
  const bool lying = std::abs(std::sin(tilt)) > 0.7;
  const double along = lying ? width : height, across = lying ? height : width;
  if (longer) {
    slip.design.height = along * random.uniform(1.02, 1.25);
    slip.design.width = std::min(slip.design.width, 0.5 * across);
  } else {
    slip.design.height = std::min(slip.design.height, 0.93 * along);
    slip.design.width = std::min(slip.design.width, 0.9 * across);
  }
  const double scale = bed.pixels_per_mm;
  slip.quad = rectangle({0, 0}, slip.design.width * scale, slip.design.height * scale, tilt);
  return slip;
}

Quad with_middle(const Quad& quad, Point middle) { return moved(quad, middle - middle_of(quad)); }

std::string pick_glass(Random& random) {
  return random.pick(
      std::array<const char*, 6>{"dark glass", "black", "real glass", "real glass", "real glass", "gray lid"});
}

Colour pick_backing(Random& random) {
  const double kind = random.uniform();
  if (kind < 0.4) return tint(random, random.uniform(215, 252), 2);
  if (kind < 0.6) return gray(random.uniform(60, 200));
  if (kind < 0.8) {  // cardboard
    const double light = random.uniform(90, 200);
    return {light * 0.65, light * 0.9, std::min(255.0, light * 1.15)};
  }
  return tint(random, random.uniform(40, 220), random.uniform(15, 70));
}

// The ground in two tones: a step across the whole scan, behind the receipt or right past one of its sides.
void lay_step(Scene& scene, Random& random, const Quad& quad) {
  scene.note("step of the ground");
  const auto side = static_cast<std::size_t>(random.integer(0, 3));
  const Point from = quad[side], to = quad[(side + 1) % 4];
  const Point inward = middle_of(quad) - (from + to) * 0.5;
  const double depth = length(inward);
  const double off = random.chance(0.5) ? random.uniform(-6, 6) * scene.bed.pixels_per_mm  // close to the side
                                        : random.uniform(-0.5, 1) * depth;
  const Point on = (from + to) * 0.5 + inward * (off / depth);
  // As the frame lies, seldom exactly; or as the receipt does.
  const double nearest = std::round(std::atan2(to.y - from.y, to.x - from.x) / kQuarter) * kQuarter;
  const double angle =
      nearest + (random.chance(0.4) ? 0 : random.normal() * 0.02) + (random.chance(0.5) ? 0 : 2 * kQuarter);
  const double light = luminance(scene.ground->mean);
  const bool sheet = random.chance(0.4);
  const Colour colour =
      sheet ? pick_backing(random) : scene.ground->mean + random.between(4, 50) * (light < 60 ? 1 : random.sign());
  lay_backing(scene, random, half_plane(scene.bed, on, angle),
              {std::clamp(colour.b, 0.0, 255.0), std::clamp(colour.g, 0.0, 255.0), std::clamp(colour.r, 0.0, 255.0)});
}

// The lid's rim, or what is beyond the glass, along one side or two that meet.
void lay_rim(Scene& scene, Random& random) {
  scene.note("rim");
  const Colour colour = tint(random, random.uniform(150, 254), 3);
  const int side = random.integer(0, 3);
  for (int sides = random.integer(1, 2), i = 0; i < sides; ++i) {
    lay_backing(scene, random, border_strip(random, scene.bed, (side + i) % 4, random.between(0.006, 0.06)), colour);
  }
}

// A sheet of which two or three borders are on the scan. Returns a place by one of them or by a corner.
Point lay_sheet(Scene& scene, Random& random) {
  scene.note("backing sheet");
  const Bed& bed = scene.bed;
  const double w = bed.width, h = bed.height;
  const double left = random.uniform(0.02, 0.3) * w, top = random.uniform(0.02, 0.3) * h;
  const double right = random.chance(0.4) ? random.uniform(0.75, 0.98) * w : 1.2 * w, bottom = 1.2 * h;
  Quad quad = rectangle({(left + right) / 2, (top + bottom) / 2}, right - left, bottom - top, random.normal() * 0.015);
  // Any two of the bed's sides may be the near ones; the corners stay clockwise.
  std::size_t near = 0;
  if (random.chance(0.5)) {
    for (Point& p : quad) p.x = w - p.x;
    std::swap(quad[0], quad[1]), std::swap(quad[2], quad[3]), near = 1;
  }
  if (random.chance(0.5)) {
    for (Point& p : quad) p.y = h - p.y;
    std::swap(quad[0], quad[3]), std::swap(quad[1], quad[2]), near = 3 - near;
  }
  lay_backing(scene, random, quad, pick_backing(random));
  scene.scan.ground += " and sheet";
  const Point corner = quad[near];
  const Point middle{w * random.uniform(0.4, 0.6), h * random.uniform(0.4, 0.6)};
  Point place = corner + (middle - corner) * random.uniform(0.2, 0.7);  // near the corner
  const double kind = random.uniform();
  if (kind < 0.3) place = {corner.x + random.uniform(-0.02, 0.1) * w, middle.y};
  if (kind > 0.7) place = {middle.x, corner.y + random.uniform(-0.02, 0.1) * h};
  return place;
}

// Another sheet on the sheet, around the receipt: rectangles within rectangles.
void lay_inner_sheet(Scene& scene, Random& random, const Quad& quad) {
  scene.note("sheet on sheet");
  const double by = random.uniform(2, 30) * scene.bed.pixels_per_mm;
  const Point off = unit(random.uniform(0, 6.3)) * (by * random.uniform(0, 0.8));
  lay_backing(scene, random, moved(grown(quad, by), off), pick_backing(random));
}

// Pushed into a corner of the glass, beyond one side or two of it by up to a sixth.
Quad in_corner(Random& random, const Quad& quad, const Bed& bed) {
  const double kind = random.uniform();
  if (kind < 0.35) return placed(random, quad, bed, "cut twice");
  if (kind < 0.65) return placed(random, quad, bed, "corner");
  if (kind < 0.85) return placed(random, quad, bed, "cut");
  return placed(random, quad, bed, "edge");
}

void lay_slip(Scene& scene, Random& random, const Slip& slip) {
  Laying laying{.wear = 0.25};
  if (random.chance(0.65)) laying.crumple = random.between(0.03, 0.4);
  if (random.chance(0.6)) laying.folds = random.integer(1, 4);
  laying.curled_corners = random.chance(0.35) ? random.integer(1, 2) : 0;
  // Light gray; on white its own tone is what tells it.
  if (slip.design.kind == "thermal") laying.paper = tint(random, random.uniform(165, 242), random.uniform(0, 6));
  lay(scene, random, slip.design, slip.quad, laying);
}

}  // namespace

void compose_receipt(Scene& scene, Random& random) {
  scene.set_bed(bed_of(210, 297, random.between(75, 150), 2.2e6));
  scene.capture = pick_scanner_capture(random, scene.scan.effects);
  scene.set_ground(random, pick_glass(random));
  const Bed& bed = scene.bed;
  const bool longer = random.chance(0.15);
  const double tilt =
      longer ? random.normal() * 0.02 + kQuarter * (random.chance(0.85) ? 0 : 1) : pick_slip_tilt(random);
  Slip slip = pick_slip(random, bed, tilt, longer);
  const bool sheet = random.chance(0.45);
  const Point place = sheet ? lay_sheet(scene, random) : Point{};
  const double kind = random.uniform();
  if (longer) {
    scene.scan.place = "cut at both ends";
    const Point middle{bed.width * random.uniform(0.2, 0.8), bed.height * random.uniform(0.2, 0.8)};
    const bool lying = std::abs(std::sin(tilt)) > 0.7;
    slip.quad = with_middle(slip.quad, lying ? Point{bed.width / 2.0, middle.y} : Point{middle.x, bed.height / 2.0});
  } else if (sheet && kind < 0.7) {
    scene.scan.place = "by the sheet's border";
    slip.quad = with_middle(slip.quad, place);
  } else if (kind < 0.75) {
    scene.scan.place = "corner";
    slip.quad = in_corner(random, slip.quad, bed);
  } else {
    scene.scan.place = "free";
    slip.quad = placed(random, slip.quad, bed, "free");
  }
  if (random.chance(sheet ? 0.2 : 0.5)) lay_step(scene, random, slip.quad);
  if (random.chance(0.25)) lay_rim(scene, random);
  if (random.chance(sheet ? 0.2 : 0.1)) lay_inner_sheet(scene, random, slip.quad);
  lay_slip(scene, random, slip);
}

}  // namespace vantrel::drawing
