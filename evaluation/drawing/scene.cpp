#include "drawing/scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace vantrel::drawing {
namespace {

struct Set {
  const char* name;
  void (*compose)(Scene&, Random&);
  double patience = 0;  // how many of the scenes are composed anew where a side is on the scan but cannot be seen
};
constexpr std::array<Set, 10> kSets{{{"singles", compose_single, 0.97},
                                     {"flat", compose_flat, 0.97},
                                     {"white", compose_white, 0.92},
                                     {"photos", compose_photo},
                                     {"receipts", compose_receipt},
                                     {"several", compose_several},
                                     {"bare", compose_bare},
                                     {"strips", compose_strips},
                                     {"pages", compose_page},
                                     {"fine", compose_fine}}};
constexpr std::uint64_t kMostAttempts = 5;

const Set& set_named(const std::string& name) {
  for (const Set& set : kSets) {
    if (name == set.name) return set;
  }
  throw std::invalid_argument("no such set: " + name);
}

struct Drawing {
  DrawnScan scan;
  bool all_seen = false;
};

Drawing attempt(const Set& set, std::uint64_t seed, std::uint64_t number, bool crisp) {
  // Seeds of later attempts are far from those that anyone counts up.
  Random random(set.name, seed + (number << 48));
  Scene scene;
  set.compose(scene, random);
  Drawing drawing{.scan = scene.scan};
  drawing.scan.set = set.name;
  const auto draw = [&scene](int y, Row& row) {
    scene.ground->draw(y, row);
    for (const auto& layer : scene.layers) layer->draw(y, row);
  };
  develop(crisp ? Capture{} : scene.capture, random, draw, drawing.scan);
  drawing.all_seen = find_truth(scene, drawing.scan);
  return drawing;
}

// A border that nothing shows is nothing to learn from or to be judged by, so that most such scenes are given up.
DrawnScan drawn(const std::string& name, std::uint64_t seed, bool crisp) {
  const Set& set = set_named(name);
  const bool patient = set.patience > 0 && Random(name + " patience", seed).chance(set.patience);
  if (crisp && !patient) return attempt(set, seed, 0, true).scan;
  std::uint64_t number = 0;
  Drawing drawing = attempt(set, seed, number, false);
  while (patient && !drawing.all_seen && number + 1 < kMostAttempts) drawing = attempt(set, seed, ++number, false);
  // The finished picture decides which scene it is, that of the crisp one too.
  return std::move(crisp ? attempt(set, seed, number, true) : drawing).scan;
}

}  // namespace

void Scene::set_bed(const Bed& wanted) {
  bed = wanted;
  scan.width = bed.width, scan.height = bed.height;
  scan.dpi = bed.pixels_per_mm * 25.4;
}

void Scene::set_ground(Random& random, const std::string& kind) {
  ground = make_ground(kind, random, bed);
  scan.ground = kind;
}

std::vector<std::string> sets() {
  std::vector<std::string> names;
  for (const Set& set : kSets) names.emplace_back(set.name);
  return names;
}

DrawnScan draw_scan(const std::string& set, std::uint64_t seed) { return drawn(set, seed, false); }

DrawnScan draw_crisp_scan(const std::string& set, std::uint64_t seed) { return drawn(set, seed, true); }

}  // namespace vantrel::drawing
