#include "cardcut/vote_table.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace vantrel::cardcut {
namespace {

// Not the full constant: the last bits of the tabulated sines and cosines decide where votes fall.
constexpr double kPi = 3.14159265;

/** The longest distance for which the counters stay within the library's limit of 2^31 - 1 bytes a block. */
constexpr std::int64_t kLongest =
    std::numeric_limits<std::int32_t>::max() / (kAngles * std::int64_t{sizeof(std::int32_t)}) - 1;

/** The diagonal in whole pixels. */
std::int64_t diagonal(std::int64_t cols, std::int64_t rows) {
  const auto square = static_cast<std::uint64_t>(cols * cols) + static_cast<std::uint64_t>(rows * rows);
  return static_cast<std::int64_t>(std::sqrt(static_cast<double>(square)) + 0.5);
}

int rounded(float value) { return static_cast<int>(static_cast<double>(value) + 0.5); }

}  // namespace

VoteTable::VoteTable(int cols, int rows) : cols_(cols), centre_(cols / 2), last_distance_(0) {
  const std::int64_t longest = diagonal(cols, rows);
  if (longest > kLongest) return;
  last_distance_ = static_cast<int>(longest);
  for (int k = 0; k < kAngles; ++k) {
    const double angle = ((k - kHorizontal) * 0.5 + 90.0) * kPi / 180.0;
    const auto i = static_cast<std::size_t>(k);
    sine_[i] = static_cast<float>(std::sin(angle));
    cosine_[i] = static_cast<float>(std::cos(angle));
  }
  counters_.reset(new (std::nothrow) std::int32_t[static_cast<std::size_t>(last_distance_ + 1) * kAngles]);
}

void VoteTable::clear() { std::fill_n(counters_.get(), static_cast<std::ptrdiff_t>(last_distance_ + 1) * kAngles, 0); }

VoteTable::Strongest VoteTable::strongest(int distance) const {
  Strongest best = {kHorizontal, 0};
  for (int k = 0; k < kAngles; ++k) {
    if (votes(distance, k) > best.votes) best = {k, votes(distance, k)};
  }
  return best;
}

std::optional<Line> VoteTable::peak(int distance, int neighbour, int share) const {
  const Strongest best = strongest(distance);
  if (std::int64_t{share} * best.votes <= cols_ || votes(neighbour, best.angle) > best.votes) return std::nullopt;
  return Line{distance, best.angle};
}

std::optional<Line> VoteTable::lowest_peak(int share) const {
  for (int distance = 0; distance < last_distance_; ++distance) {
    if (const auto line = peak(distance, distance + 1, share)) return line;
  }
  return std::nullopt;
}

std::optional<Line> VoteTable::highest_peak(int share) const {
  for (int distance = last_distance_ - 1; distance >= 1; --distance) {
    if (const auto line = peak(distance, distance - 1, share)) return line;
  }
  return std::nullopt;
}

int VoteTable::row_at(Line line, int column) const {
  const auto angle = static_cast<std::size_t>(line.angle);
  const float across = static_cast<float>(column - centre_) * cosine_[angle];
  return rounded((static_cast<float>(line.distance) - across) / sine_[angle]);
}

RowVotes::RowVotes(VoteTable& table, int row, Angles angles) : table_(table), angles_(angles) {
  for (std::size_t k = 0; k < kAngles; ++k) row_part_[k] = static_cast<float>(row) * table.sine_[k];
}

void RowVotes::add(int column) {
  const auto x = static_cast<float>(column - table_.centre_);
  int distance[kAngles];
  for (std::size_t k = 0; k < kAngles; ++k) distance[k] = rounded(x * table_.cosine_[k] + row_part_[k]);

  std::int32_t* const counters = table_.counters_.get();
  const auto last_distance = static_cast<unsigned>(table_.last_distance_);
  const auto [first, last] = angles_;
  for (int k = first; k <= last; ++k) {
    // As unsigned numbers the distances below 0 lie above the last one too.
    if (static_cast<unsigned>(distance[k]) <= last_distance) ++counters[distance[k] * kAngles + k];
  }
}

}  // namespace vantrel::cardcut
