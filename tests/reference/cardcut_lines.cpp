#include "reference/cardcut_lines.h"

#include <cmath>
#include <cstddef>

namespace reference {
namespace {

constexpr int kAngles = 21;

double radians(int k) { return ((k - 10) * 0.5 + 90.0) * 3.14159265 / 180.0; }
float sine(int k) { return static_cast<float>(std::sin(radians(k))); }
float cosine(int k) { return static_cast<float>(std::cos(radians(k))); }

int rounded(float value) { return static_cast<int>(static_cast<double>(value) + 0.5); }

}  // namespace

CutVotes::CutVotes(int width, int height)
    : width_(width),
      diagonal_(static_cast<int>(std::sqrt(static_cast<double>(width * width + height * height)) + 0.5)),
      table_(kAngles, std::vector<int>(static_cast<std::size_t>(diagonal_) + 1, 0)) {}

void CutVotes::cast(int x, int y, int from, int to) {
  static const std::vector<float> sines = [] {
    std::vector<float> table;
    for (int k = 0; k < kAngles; ++k) table.push_back(sine(k));
    return table;
  }();
  static const std::vector<float> cosines = [] {
    std::vector<float> table;
    for (int k = 0; k < kAngles; ++k) table.push_back(cosine(k));
    return table;
  }();
  for (int k = from; k <= to; ++k) {
    const auto i = static_cast<std::size_t>(k);
    const float across = static_cast<float>(x - width_ / 2) * cosines.at(i);
    const float up = static_cast<float>(y) * sines.at(i);
    const int r = rounded(across + up);
    if (r >= 0) table_.at(i).at(static_cast<std::size_t>(r)) += 1;
  }
}

int CutVotes::votes(int r, int k) const {
  return table_.at(static_cast<std::size_t>(k)).at(static_cast<std::size_t>(r));
}

int CutVotes::strongest(int r) const {
  int best = 0;
  int angle = 10;
  for (int k = 0; k < kAngles; ++k) {
    if (votes(r, k) > best) {
      best = votes(r, k);
      angle = k;
    }
  }
  return angle;
}

std::optional<CutLine> CutVotes::lowest() const {
  for (int r = 0; r < diagonal_; ++r) {
    const int k = strongest(r);
    const int best = votes(r, k);
    if (votes(r + 1, k) <= best && 4 * best > width_) return CutLine{r, k};
  }
  return std::nullopt;
}

std::optional<CutLine> CutVotes::highest() const {
  for (int r = diagonal_ - 1; r >= 1; --r) {
    const int k = strongest(r);
    const int best = votes(r, k);
    if (votes(r - 1, k) <= best && 3 * best > width_) return CutLine{r, k};
  }
  return std::nullopt;
}

int cut_row(CutLine line, int x, int width) {
  const float across = static_cast<float>(x - width / 2) * cosine(line.k);
  return rounded((static_cast<float>(line.r) - across) / sine(line.k));
}

int cut_centre_row(CutLine line) { return rounded(static_cast<float>(line.r) / sine(line.k)); }

}  // namespace reference
