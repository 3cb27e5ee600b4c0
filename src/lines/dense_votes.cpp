#include "lines/dense_votes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace vantrel::lines {
namespace {

using geometry::Span;

/** Cells lie a pixel apart, bytes a little less: from cell to cell its byte drifts to one side, by this much. */
constexpr double drift(double across, int cells) { return (cells - 1) * (1 - across); }

/** How many bytes of a slice may count for a cell, whatever lies between two bytes. */
int taps_for(double across, int cells) {
  constexpr double kSlack = 1e-3;
  return static_cast<int>(std::ceil((2 + drift(across, cells)) / across + kSlack));
}

/** Angles lean by 30 degrees at most. */
constexpr int kMostTaps = 13;
constexpr int kPositions = 1 << kPositionBits;

/** Bounds of distances are rounded outwards, and leave room for what positions are rounded by. */
constexpr int kFineSlack = 2;

int floor_of(double value) { return static_cast<int>(std::floor(value)); }

/** Where a whole number i has low < start + i * step < high; perhaps some more. */
Span between(double low, double high, double start, double step, Span all) {
  constexpr double kSlack = 1e-6;
  low -= start + kSlack;
  high -= start - kSlack;
  const double most = std::max(std::abs(all.first), std::abs(all.end));
  // Never (2): such a step is that of the slices of level or upright lines, where just the bytes between are asked for.
  if (std::abs(step) * most < kSlack) return low - kSlack < 0 && high + kSlack > 0 ? all : Span{};
  const double a = low / step, b = high / step;
  const auto whole = [&](double value) { return static_cast<int>(std::clamp<double>(value, all.first, all.end)); };
  return geometry::common({whole(std::floor(std::min(a, b)) + 1), whole(std::ceil(std::max(a, b)))}, all);
}

/** Cells are bounded, loosely or closely, by so many groups at a time. */
constexpr int kBlockGroups = kBoundCells / kSumCells;

/** Hands runs to the kernel, many at a time. */
class Runs {
 public:
  Runs(const SummedCells& cells, double* sums) : cells_(cells), sums_(sums) {}
  Runs(const Runs&) = delete;
  Runs& operator=(const Runs&) = delete;
  ~Runs() { flush(); }

  void add(const ByteRun& run) {
    if (count_ == runs_.size()) flush();
    runs_[count_++] = run;
  }

 private:
  void flush() {
    kernels->sum_cells(cells_, runs_.data(), static_cast<int>(count_), sums_);
    count_ = 0;
  }

  const SummedCells& cells_;
  double* sums_;
  std::array<ByteRun, 128> runs_;
  std::size_t count_ = 0;
};

}  // namespace

void plain::bound_cells(const BoundedSlices& slices, unsigned* sums) {
  for (int i = 0; i < slices.count; ++i) {
    const std::int64_t position = slices.position + i * slices.slope;
    const unsigned char* points = slices.slice + i * slices.stride + (position >> 32) + 1;
    const std::ptrdiff_t place = static_cast<std::uint32_t>(position) >> (32 - kPositionBits);
    const unsigned char* weights = slices.weights + place * slices.taps * kBoundCells;
    for (int tap = 0; tap < slices.taps; ++tap, ++points, weights += kBoundCells) {
      for (int cell = 0; cell < kBoundCells; ++cell) sums[cell] += points[cell] != 0 ? weights[cell] : 0;
    }
  }
}

void plain::weigh(const WeighedCells& cells, unsigned char* weights) {
  for (int cell = 0; cell < kBoundCells; ++cell) {
    const int before = kFine + cells.to - cells.drifts[cell];
    const int behind = kFine + 1 - cells.from + cells.drifts[cell];
    const int most = std::max(std::min({before, behind, kFine}), 0);
    weights[cell] = static_cast<unsigned char>((most + kFine / kVoteParts - 1) / (kFine / kVoteParts));
  }
}

void plain::sum_cells(const SummedCells& cells, const ByteRun* runs, int count, double* sums) {
  for (const ByteRun& run : std::span(runs, static_cast<std::size_t>(count))) {
    for (int i = 0; i < run.count; ++i) {
      const int slice = cells.runs_along ? run.slice + i : run.slice;
      const int byte = cells.runs_along ? run.byte : run.byte + i;
      for (int cell = 0; cell < kSumCells; ++cell) {
        if (cells.first[slice * cells.stride + byte + cell] == 0) continue;
        const double rho =
            (cells.first_across + byte + cell) * cells.across + (cells.first_along + slice) * cells.along;
        const double distance = cells.distance + cell;
        sums[cell] += std::max(0.0, std::min(distance + 1 - rho, rho - (distance - 1)));
      }
    }
  }
}

DenseVotes::DenseVotes(PointMap&& points, int centre_row, int centre_col, std::span<const Slant> slants,
                       int first_distance, int cells)
    : points_(std::move(points)),
      first_across_(points_.across().first - (points_.slices_are_rows() ? centre_col : centre_row)),
      first_along_(points_.slices().first - (points_.slices_are_rows() ? centre_row : centre_col)),
      slants_{},
      largest_{},
      angles_(static_cast<int>(slants.size())),
      first_distance_(first_distance),
      groups_((cells + kSumCells - 1) / kSumCells),
      bounds_(slants.size() * static_cast<std::size_t>(groups_)),
      weights_(std::size_t{kPositions} * kMostTaps * kBoundCells) {
  std::copy(slants.begin(), slants.end(), slants_.begin());
  const LooseVotes loose(points_, slants);
  if (!loose.ready()) bounds_ = {};
  if (!ready()) return;
  for (int angle = 0; angle < angles_; ++angle) {
    for (int group = 0; group < groups_; group += kBlockGroups) {
      const Slant slant = slants_[static_cast<std::size_t>(angle)];
      const int distance = first_distance + group * kSumCells;
      const double ends[] = {place_of(slant, distance), place_of(slant, distance + kBoundCells - 1)};
      const int most = loose.most(angle, std::min(ends[0], ends[1]), std::max(ends[0], ends[1]));
      const auto first = bounds_.all().subspan(index(angle, group));
      std::fill_n(first.begin(), std::min(kBlockGroups, groups_ - group), Bound{most, State::kLoose});
      largest_[static_cast<std::size_t>(angle)] = std::max(largest_[static_cast<std::size_t>(angle)], most);
    }
  }
}

/** Where a line of that distance passes slice 0. */
double DenseVotes::place_of(Slant slant, int distance) const {
  return (distance - first_along_ * slant.along) / slant.across - first_across_;
}

/**
 * A point at distance d from a cell's line gives it 1 - |d|. Of all points at a position, none lies further from where
 * that is most than those at its ends.
 */
void DenseVotes::fill_weights(double across) {
  taps_ = taps_for(across, kBoundCells);
  std::array<short, kBoundCells> drifts;
  for (std::size_t cell = 0; cell < drifts.size(); ++cell) {
    drifts[cell] = static_cast<short>(kFine * drift(across, static_cast<int>(cell) + 1));
  }
  unsigned char* weights = weights_.get();
  for (int place = 0; place < kPositions; ++place) {
    for (int tap = 0; tap < taps_; ++tap, weights += kBoundCells) {
      const auto distance = [&](int end) { return (tap + 1 - end / double{kPositions}) * across - 1; };
      const auto from = static_cast<short>(floor_of(kFine * distance(place + 1)) - kFineSlack);
      const auto to = static_cast<short>(floor_of(kFine * distance(place)) + 1 + kFineSlack);
      kernels->weigh({from, to, drifts.data()}, weights);
    }
  }
}

void DenseVotes::bound_block(Slant slant, int first_distance, unsigned* sums) const {
  constexpr double kWhole = 0x1p32;
  const double first = (first_distance - 1 - first_along_ * slant.along) / slant.across - first_across_;
  const auto slope = static_cast<std::int64_t>(-slant.along / slant.across * kWhole);
  auto position = static_cast<std::int64_t>(first * kWhole);
  const int count = points_.slices().size();
  for (int from = 0; from < count; from += PointMap::kBlock) {
    const std::int64_t next = position + slope * PointMap::kBlock;
    const Span reached{static_cast<int>(std::min(position, next) >> 32),
                       static_cast<int>(std::max(position, next) >> 32) + taps_ + kBoundCells + 1};
    if (!points_.is_empty(from / PointMap::kBlock, reached)) {
      const int slices = std::min(PointMap::kBlock, count - from);
      kernels->bound_cells({points_.slice(from), points_.stride(), slices, position, slope, weights_.get(), taps_},
                           sums);
    }
    position = next;
  }
}

void DenseVotes::bound(int angle, int least) {
  Slant slant = slants_[static_cast<std::size_t>(angle)];
  const bool turned = slant.across < 0;
  if (turned) slant = {-slant.across, -slant.along};
  fill_weights(slant.across);
  for (int group = 0; group < groups_; group += kBlockGroups) {
    if (!is_loose(angle, group) || bound_of(angle, group) <= least) continue;
    const int distance = first_distance_ + group * kSumCells;
    std::array<unsigned, kBoundCells> sums{};
    bound_block(slant, turned ? -(distance + kBoundCells - 1) : distance, sums.data());
    if (turned) std::reverse(sums.begin(), sums.end());
    for (int i = 0; i < std::min(kBlockGroups, groups_ - group); ++i) {
      const auto first = sums.begin() + i * kSumCells;
      const unsigned most = *std::max_element(first, first + kSumCells);
      Bound& bound = bounds_[index(angle, group + i)];
      bound = {std::min(bound.votes, most == 0 ? 0 : static_cast<int>(most / kVoteParts + 1)), State::kClose};
    }
  }
  int& largest = largest_[static_cast<std::size_t>(angle)];
  largest = 0;
  for (int group = 0; group < groups_; ++group) largest = std::max(largest, bound_of(angle, group));
}

void DenseVotes::sum(int angle, int group, double* sums) {
  bounds_[index(angle, group)].state = State::kSummed;
  Slant slant = slants_[static_cast<std::size_t>(angle)];
  const int first_distance = first_distance_ + group * kSumCells;
  const bool turned = slant.across < 0;
  if (turned) slant = {-slant.across, -slant.along};
  const int distance = turned ? -(first_distance + kSumCells - 1) : first_distance;
  const Span slices{0, points_.slices().size()};
  const Span bytes{1 - kSumCells, points_.across().size()};
  const bool along = !points_.slices_are_rows();  // points are added row by row
  const SummedCells cells{points_.slice(0), points_.stride(), first_across_,  first_along_,
                          slant.across,     slant.along,      distance * 1.0, along};
  // The first cell's votes come from within a pixel of its line, the last one's from further, where bytes drift.
  const double low = distance - 1, high = distance + 1 + drift(slant.across, kSumCells);
  std::fill_n(sums, kSumCells, 0.0);
  {
    Runs runs(cells, sums);
    const double corner = first_across_ * slant.across + first_along_ * slant.along;
    if (along) {
      const double ends[] = {0, slant.along * slices.last()};
      const Span reached =
          between(low - std::max(ends[0], ends[1]), high - std::min(ends[0], ends[1]), corner, slant.across, bytes);
      for (int byte = reached.first; byte < reached.end; ++byte) {
        const Span run = between(low, high, corner + byte * slant.across, slant.along, slices);
        // Never: from slice to slice the distance changes by half a pixel at most, so that one lies within two pixels.
        if (!run.empty()) runs.add({byte, run.first, run.size()});
      }
    } else {
      const double reached_bytes = (high - low) / slant.across;
      const int count = static_cast<int>(std::ceil(reached_bytes + 1e-6));
      for (int slice = slices.first; slice < slices.end; ++slice) {
        const int byte = floor_of((low - corner - slice * slant.along) / slant.across - 1e-6) + 1;
        if (byte + count > bytes.first && byte < bytes.end) runs.add({byte, slice, count});
      }
    }
  }
  if (turned) std::reverse(sums, sums + kSumCells);
}

}  // namespace vantrel::lines
