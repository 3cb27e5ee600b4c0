#include "drawing/random.h"

#include <bit>
#include <cmath>
#include <vector>

namespace vantrel::drawing {
namespace {

std::uint64_t splitmix(std::uint64_t& state) {
  state += 0x9e3779b97f4a7c15U;
  std::uint64_t mixed = state;
  mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9U;
  mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebU;
  return mixed ^ (mixed >> 31);
}

std::uint64_t hash_of(const std::string& name) {
  std::uint64_t hash = 0;
  for (char letter : name) {
    hash ^= static_cast<unsigned char>(letter);
    hash = splitmix(hash);
  }
  return hash;
}

}  // namespace

Random::Random(std::uint64_t seed) {
  for (auto& word : state_) {
    word = splitmix(seed);
  }
}

Random::Random(const std::string& name, std::uint64_t seed) : Random(hash_of(name) ^ (seed * 0xd1342543de82ef95U)) {}

std::uint64_t Random::bits() {
  const std::uint64_t result = std::rotl(state_[0] + state_[3], 23) + state_[0];
  const std::uint64_t shifted = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= shifted;
  state_[3] = std::rotl(state_[3], 45);
  return result;
}

double Random::uniform() { return static_cast<double>(bits() >> 11) * 0x1p-53; }

double Random::uniform(double least, double most) { return least + (most - least) * uniform(); }

double Random::between(double least, double most) { return least * std::pow(most / least, uniform()); }

// Box and Muller's, of which one deviate is enough.
double Random::normal() {
  const double radius = std::sqrt(-2 * std::log(1 - uniform()));
  return radius * std::cos(6.283185307179586 * uniform());
}

int Random::integer(int least, int most) {
  return least + static_cast<int>(uniform() * (static_cast<double>(most) - least + 1));
}

const float* normal_deviates() {
  static const std::vector<float> kTable = [] {
    // As long again as a picture is wide, so that a row may begin anywhere and never turns round.
    std::vector<float> table(2 * kDeviates);
    Random random(1);
    for (auto& deviate : table) {
      deviate = static_cast<float>(random.normal());
    }
    return table;
  }();
  return kTable.data();
}

}  // namespace vantrel::drawing
