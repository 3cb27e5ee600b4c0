#include "drawing/scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>

namespace vantrel::drawing {
namespace {

struct Set {
  const char* name;
  void (*compose)(Scene&, Random&);
};
constexpr std::array<Set, 9> kSets{{{"singles", compose_single},
                                    {"white", compose_white},
                                    {"photos", compose_photo},
                                    {"receipts", compose_receipt},
                                    {"several", compose_several},
                                    {"bare", compose_bare},
                                    {"strips", compose_strips},
                                    {"pages", compose_page},
                                    {"fine", compose_fine}}};

const Set& set_named(const std::string& name) {
  for (const Set& set : kSets) {
    if (name == set.name) return set;
  }
  throw std::invalid_argument("no such set: " + name);
}

DrawnScan drawn(const std::string& set, std::uint64_t seed, bool crisp) {
  Random random(set, seed);
  Scene scene;
  set_named(set).compose(scene, random);
  DrawnScan scan = scene.scan;
  scan.set = set;
  const auto draw = [&scene](int y, Row& row) {
    scene.ground->draw(y, row);
    for (const auto& layer : scene.layers) layer->draw(y, row);
  };
  develop(crisp ? Capture{} : scene.capture, random, draw, scan);
  find_truth(scene, scan);
  return scan;
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
