#include "lines/loose_votes.h"

#include <algorithm>
#include <cmath>

namespace vantrel::lines {
namespace {

using geometry::Span;

/** A slice is passed at most so many bytes further than another one of those that are added at once. */
constexpr int kMostShift = 10;
static_assert(kMostShift >= kLooseSlices * 0.578);

/** Lines count points from so many bytes behind the one where they pass a slice, and no further. */
constexpr int kLastLoose = kFirstLoose + kLooseBytes - 1;

/** Of a span with points, lines are counted from where each passes the slice that it passes last so far before it. */
constexpr int kBefore = kMostShift + kLastLoose;

/** How many steps there are for the lines of a span, whatever they lean, and how many bytes of each row they pass. */
constexpr int steps_for(int bytes) { return (kBefore + bytes - kFirstLoose + kLooseStep - 1) / kLooseStep; }
constexpr int passed_by(int steps) { return steps * kLooseStep + kMostShift; }

/** Where byte 0 lies in a row. */
constexpr int kMargin = 64;

constexpr int whole(std::int64_t position) { return static_cast<int>(position >> 32); }

/**
 * Among slices that are added at once, places are known to so many bits of a byte. What they are off by is less than
 * what weights are rounded up by.
 */
constexpr int kPlaceBits = 16;

}  // namespace

void plain::spread(const unsigned char* points, int steps, unsigned char* const* rows) {
  for (int at = 0; at < steps * kLooseStep; ++at) {
    for (int piece = 0; piece < kPieces; ++piece) {
      int votes = 0;
      for (int byte = kFirstLoose; byte < kFirstLoose + kLooseBytes; ++byte) {
        votes += points[at + byte] != 0 ? loose_weight(piece, byte) : 0;
      }
      rows[piece][at] = static_cast<unsigned char>(std::min<int>(votes, kMostLooseParts));
    }
  }
}

void plain::add_rows(const LooseRows& rows, int from, int steps, std::uint16_t* sums) {
  for (int at = from; at < from + steps * kLooseStep; ++at) {
    int sum = sums[at];
    for (int i = 0; i < rows.slices; ++i) sum += rows.bytes[rows.offsets[i] + at];
    sums[at] = static_cast<std::uint16_t>(std::min(sum, kMostLooseSum));
  }
}

LooseVotes::LooseVotes(const PointMap& points, std::span<const Slant> slants)
    // Steps from a span's begin end up to one later than those from byte 0.
    : width_(std::ptrdiff_t{kMargin} + (steps_for(points.across().size() + PointMap::kTile) + 1) * kLooseStep),
      slices_(points.slices().size()),
      lines_{},
      rows_(static_cast<std::size_t>(width_) * kLooseSlices * kPieces) {
  constexpr double kWhole = 0x1p32;
  int most = 0;
  for (std::size_t i = 0; i < slants.size(); ++i) {
    const auto slope = static_cast<std::int64_t>(-slants[i].along / slants[i].across * kWhole);
    const int reached = whole(slope * (slices_ - 1));
    lines_[i] = {slope, -std::max(reached, 0) - kBefore};
    most = std::max(most, std::abs(reached));
  }
  stride_ = static_cast<std::size_t>(steps_for(points.across().size() + PointMap::kTile + most) + 1) * kLooseStep;
  sums_ = image::WorkArray<std::uint16_t>(stride_ * slants.size(), image::Fill::kZero);
  if (!ready()) return;
  for (int from = 0; from < slices_; from += kLooseSlices) {
    const Tile tile = tile_of(points, {from, std::min(from + kLooseSlices, slices_)});
    spread_slices(points, tile);
    for (std::size_t angle = 0; angle < slants.size(); ++angle) add_slices(tile, angle);
  }
}

LooseVotes::Tile LooseVotes::tile_of(const PointMap& points, Span slices) {
  Tile tile{slices, {}, 0};
  points.for_each_span(slices.first / PointMap::kBlock, [&](Span bytes) {
    // Spans near each other are taken together, so that whole steps never fall on two; and what there is no place for.
    Span& last = tile.spans[tile.count == 0 ? 0 : tile.count - 1];
    const bool near = tile.count > 0 && bytes.first < last.end + 2 * kLooseStep;
    if (near || tile.count == tile.spans.size()) {
      last.end = bytes.end;
    } else {
      tile.spans[tile.count++] = bytes;
    }
  });
  return tile;
}

void LooseVotes::spread_slices(const PointMap& points, const Tile& tile) {
  for (const Span& bytes : tile.all()) {
    const int first = bytes.first - kBefore;
    const int steps = steps_for(bytes.size());
    for (int i = 0; i < tile.slices.size(); ++i) {
      unsigned char* rows[kPieces];
      for (int piece = 0; piece < kPieces; ++piece) {
        rows[piece] = row(i, piece) + kMargin + first;
        std::fill(rows[piece] + steps * kLooseStep, rows[piece] + passed_by(steps), static_cast<unsigned char>(0));
      }
      kernels->spread(points.slice(tile.slices.first + i) + first, steps, rows);
    }
  }
}

void LooseVotes::add_slices(const Tile& tile, std::size_t angle) {
  const Lines& lines = lines_[angle];
  const std::int64_t position = lines.slope * tile.slices.first;
  const auto place = static_cast<int>((position & 0xffffffff) >> (32 - kPlaceBits));
  const auto slope = static_cast<int>(lines.slope >> (32 - kPlaceBits));
  const auto width = static_cast<int>(width_);
  LooseRows rows{rows_.get() + kMargin + whole(position), {}, tile.slices.size()};
  for (int i = 0; i < kLooseSlices; ++i) {
    const int at = place + i * slope;
    static_assert(kPieces == 2);
    const int second_half = -(at >> (kPlaceBits - 1) & 1);
    rows.offsets[i] = i * kPieces * width + (second_half & width) + (at >> kPlaceBits);
  }
  const int last = place + (rows.slices - 1) * slope;
  const int least = whole(position) + std::min(0, last >> kPlaceBits);
  std::uint16_t* const sums = sums_.get() + static_cast<std::ptrdiff_t>(angle * stride_) - lines.first;
  for (const Span& bytes : tile.all()) {
    kernels->add_rows(rows, bytes.first - kBefore - least, steps_for(bytes.size()), sums);
  }
}

int LooseVotes::most(int angle, double from, double to) const {
  constexpr double kSlack = 1e-6;
  const int first_line = lines_[static_cast<std::size_t>(angle)].first;
  const auto index = [&](double place) {
    return static_cast<int>(std::clamp(std::floor(place) - first_line, -1.0, static_cast<double>(stride_)));
  };
  const int first = std::max(index(from - kSlack), 0);
  const int end = std::min(index(to + kSlack) + 1, static_cast<int>(stride_));
  const std::uint16_t* sums = sums_.get() + static_cast<std::size_t>(angle) * stride_;
  std::uint16_t most = 0;
  for (int i = first; i < end; ++i) most = std::max(most, sums[i]);
  const int sum = most == kMostLooseSum ? slices_ * kMostLooseParts : most;
  return sum == 0 ? 0 : sum / kLooseParts + 1;
}

}  // namespace vantrel::lines
