#include "drawing/ground.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

#include "drawing/artwork.h"
#include "drawing/noise_field.h"

namespace vantrel::drawing {
namespace {

constexpr int kRamp = 1024;

// A random field, shown through a ramp of colours.
class FieldGround : public Ground {
 public:
  FieldGround(FractalField field, int width) : field_(std::move(field)), values_(static_cast<std::size_t>(width)) {}

  // Colours of the field's values from -4 to 4.
  template <class Colouring>
  void colour(Colouring colouring) {
    for (std::size_t i = 0; i < kRamp; ++i) {
      const Colour colour = colouring((static_cast<double>(i) - kRamp / 2) * 8 / kRamp);
      ramp_[i] = {static_cast<float>(colour.b), static_cast<float>(colour.g), static_cast<float>(colour.r)};
    }
  }

  void draw(int y, Row& row) override {
    field_.draw(y, values_);
    for (std::size_t x = 0; x < values_.size(); ++x) {
      const float at = std::clamp(values_[x] * (kRamp / 8.0F) + kRamp / 2.0F, 0.0F, kRamp - 1.0F);
      const auto& colour = ramp_[static_cast<std::size_t>(static_cast<int>(at))];
      row.b[x] = colour[0], row.g[x] = colour[1], row.r[x] = colour[2];
    }
  }

 private:
  FractalField field_;
  std::vector<float> values_;
  std::array<std::array<float, 3>, kRamp> ramp_;
};

// Smooth, with slight stains: glass, lids, sheets of paper, plastic.
std::unique_ptr<Ground> plain_ground(Random& random, const Bed& bed, Colour colour, double stains, double texture) {
  FractalField field;
  field.add_octaves(random, bed.width, bed.height, std::max(bed.width, bed.height) * random.uniform(0.1, 0.4), 2, 1);
  if (texture > 0)
    field.add_octaves(random, bed.width, bed.height, random.uniform(1, 5), 1, texture / std::max(stains, 0.1));
  auto ground = std::make_unique<FieldGround>(std::move(field), bed.width);
  ground->colour([&](double value) { return colour + value * stains; });
  ground->mean = colour;
  return ground;
}

std::unique_ptr<Ground> stone_ground(Random& random, const Bed& bed) {
  FractalField field;
  field.add_octaves(random, bed.width, bed.height, random.between(8, 80) * bed.pixels_per_mm, 6, 1,
                    random.uniform(0.45, 0.65));
  auto ground = std::make_unique<FieldGround>(std::move(field), bed.width);
  const Colour base = tint(random, random.uniform(25, 235), random.uniform(0, 20));
  const Colour other = mixed(base, tint(random, random.uniform(25, 235), 15), random.uniform(0.15, 0.6));
  const double veins = random.chance(0.6) ? random.uniform(0.2, 1) : 0, thickness = random.between(0.02, 0.3);
  const Colour vein = random.chance(0.5) ? gray(235) : tint(random, 60, 10);
  ground->colour([&](double value) {
    const Colour stone = mixed(base, other, 0.5 + 0.5 * std::sin(value * 2));
    return mixed(stone, vein, veins * std::exp(-value * value / (thickness * thickness)));
  });
  ground->mean = mixed(base, other, 0.5);
  return ground;
}

// Planks of wood: grain is a tone that runs along the plank and wavers.
class WoodGround : public Ground {
 public:
  WoodGround(Random& random, const Bed& bed) : values_(static_cast<std::size_t>(bed.width)) {
    const double scale = bed.pixels_per_mm;
    const double angle =
        bed.photographed ? random.uniform(0, 3.14) : random.normal() * 0.03 + (random.chance(0.5) ? 1.5708 : 0);
    across_ = unit(angle);
    const bool upright = std::abs(across_.x) > 0.7;
    const int fine = std::max(2, static_cast<int>(scale * random.uniform(2, 6))), coarse = fine * random.integer(5, 12);
    warp_.add(NoiseField(random, bed.width, bed.height, upright ? fine * 3 : coarse * 3,
                         upright ? coarse * 3 : fine * 3, scale * random.uniform(0.5, 5)));
    grain_step_ = 1 / (scale * random.between(0.15, 0.8));
    plank_ = random.chance(0.6) ? scale * random.uniform(40, 180) : 1e9;
    gap_ = scale * random.uniform(0.3, 2);
    shift_ = random.uniform(0, 1e4);
    light_ = tint(random, random.uniform(70, 220), 0);
    const double warmth = random.uniform(0, 0.35);
    light_ = {light_.b * (1 - warmth), light_.g * (1 - warmth * 0.4), std::min(255.0, light_.r * (1 + warmth * 0.3))};
    dark_ = light_ * random.uniform(0.5, 0.9);
    mean = mixed(light_, dark_, 0.5);
    for (auto& tone : tones_) tone = static_cast<float>(random.normal() * 0.3);
  }

  void draw(int y, Row& row) override {
    warp_.draw(y, values_);
    const float* deviates = normal_deviates();
    for (std::size_t x = 0; x < values_.size(); ++x) {
      const double at = across_.x * static_cast<double>(x) + across_.y * y + shift_;
      const auto plank = static_cast<std::size_t>(at / plank_);
      const double grain =
          (at + static_cast<double>(values_[x])) * grain_step_ + static_cast<double>(plank * 977) + 100;
      const auto cell = static_cast<std::size_t>(grain);
      const auto t = static_cast<float>(grain - static_cast<double>(cell));
      // Two rhythms: rings and the fibres between them.
      const float fibre = deviates[cell % kDeviates] * (1 - t) + deviates[(cell + 1) % kDeviates] * t;
      const float ring = deviates[(cell / 9 + 7) % kDeviates];
      const float tone = std::clamp(0.5F + 0.22F * fibre + 0.15F * ring + tones_[plank % tones_.size()], -0.3F, 1.3F);
      const bool gap = plank_ < 1e8 && at - static_cast<double>(plank) * plank_ < gap_;
      const float shade = gap ? 0.35F : 1;
      row.b[x] = shade * static_cast<float>(light_.b + (dark_.b - light_.b) * static_cast<double>(tone));
      row.g[x] = shade * static_cast<float>(light_.g + (dark_.g - light_.g) * static_cast<double>(tone));
      row.r[x] = shade * static_cast<float>(light_.r + (dark_.r - light_.r) * static_cast<double>(tone));
    }
  }

 private:
  FractalField warp_;
  std::vector<float> values_;
  Point across_{};
  double grain_step_, plank_, gap_, shift_;
  Colour light_, dark_;
  std::array<float, 8> tones_;
};

class PatternGround : public Ground {
 public:
  PatternGround(Pattern pattern, Random& random, const Bed& bed) : texture_(std::move(pattern.texture)) {
    const double angle = bed.photographed || random.chance(0.25)
                             ? random.uniform(0, 6.3)
                             : random.normal() * 0.1 + random.integer(0, 3) * 1.5707963;
    const double scale = pattern.pixels_per_mm / bed.pixels_per_mm;
    mapping_ =
        Mapping::turn(angle, scale, {random.uniform(-texture_.width(), 0), random.uniform(-texture_.height(), 0)});
    Colour sum = gray(0);
    for (int y = 0; y < texture_.height(); y += 7) {
      for (int x = 0; x < texture_.width(); x += 7) {
        const Colour colour = unpacked(texture_.row(y)[x]);
        sum = {sum.b + colour.b, sum.g + colour.g, sum.r + colour.r};
      }
    }
    mean = sum * (1.0 / ((texture_.width() + 6) / 7) / ((texture_.height() + 6) / 7));
  }

  void draw(int y, Row& row) override { texture_.sample(mapping_, Beyond::kMirror, y, 0, row.width(), row); }

 private:
  Texture texture_;
  Mapping mapping_;
};

using Maker = std::unique_ptr<Ground> (*)(Random&, const Bed&);

template <Pattern (*draw)(Random&)>
std::unique_ptr<Ground> patterned(Random& random, const Bed& bed) {
  return std::make_unique<PatternGround>(draw(random), random, bed);
}

std::unique_ptr<Ground> dark_glass(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(18, 75), random.uniform(0, 8)), random.uniform(0.3, 3),
                      random.uniform(0, 1));
}
std::unique_ptr<Ground> black(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(0, 18), 1), random.uniform(0, 1), 0);
}
std::unique_ptr<Ground> gray_lid(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(90, 205), random.uniform(0, 6)), random.uniform(0.5, 4),
                      random.uniform(0, 2));
}
std::unique_ptr<Ground> white_lid(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(215, 252), random.uniform(0, 3)), random.uniform(0.3, 3),
                      random.uniform(0, 1.5));
}
std::unique_ptr<Ground> coloured_sheet(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(30, 225), random.uniform(15, 90)),
                      random.uniform(0.5, 4), random.uniform(0, 3));
}
std::unique_ptr<Ground> coarse_noise(Random& random, const Bed& bed) {
  return plain_ground(random, bed, tint(random, random.uniform(30, 225), random.uniform(0, 40)), random.uniform(1, 6),
                      random.uniform(4, 14));
}
std::unique_ptr<Ground> wood(Random& random, const Bed& bed) { return std::make_unique<WoodGround>(random, bed); }

struct GroundKind {
  const char* name;
  Maker make;
};
constexpr std::array<GroundKind, 16> kGroundKinds{{{"dark glass", dark_glass},
                                                   {"black", black},
                                                   {"gray lid", gray_lid},
                                                   {"white lid", white_lid},
                                                   {"real glass", patterned<real_glass>},
                                                   {"coloured sheet", coloured_sheet},
                                                   {"coarse", coarse_noise},
                                                   {"weave", patterned<draw_weave>},
                                                   {"cloth", patterned<draw_cloth>},
                                                   {"stone", stone_ground},
                                                   {"terrazzo", patterned<draw_terrazzo>},
                                                   {"wood", wood},
                                                   {"leather", patterned<draw_leather>},
                                                   {"carpet", patterned<draw_carpet>},
                                                   {"print", patterned<draw_print>},
                                                   {"keys", patterned<draw_keys>}}};
constexpr int kOfScanners = 5;  // the first ones
constexpr int kOfTables = 5;    // from there

}  // namespace

std::string pick_scanner_ground(Random& random) {
  return kGroundKinds[static_cast<std::size_t>(random.integer(0, kOfScanners - 1))].name;
}

std::string pick_table_ground(Random& random) {
  return kGroundKinds[static_cast<std::size_t>(random.integer(kOfTables, static_cast<int>(kGroundKinds.size()) - 1))]
      .name;
}

std::unique_ptr<Ground> make_ground(const std::string& name, Random& random, const Bed& bed) {
  for (const GroundKind& kind : kGroundKinds) {
    if (name == kind.name) return kind.make(random, bed);
  }
  throw std::invalid_argument("no such ground: " + name);
}

}  // namespace vantrel::drawing
