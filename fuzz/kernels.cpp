// Every form of every kernel that runs here against the plain one. Rows end with their last byte, so that the address
// sanitizer sees what is read or written behind them.
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "fuzz/check.h"
#include "kernels/form.h"
#include "lines/hough.h"
#include "support/random.h"

namespace {

using support::Random;
using vantrel::image::ConstPixels;
using vantrel::kernels::Form;
using vantrel::kernels::kPlain;
using Bytes = std::vector<unsigned char>;

/** Calls `check` with every other form that runs here. */
template <class Check>
void for_each_other_form(Check check) {
  for (const Form* form : vantrel::kernels::forms()) {
    if (form != &kPlain && form->runs_here()) check(*form);
  }
}

/** Noise, one level, two levels, or what the input says byte by byte. */
void fill(Bytes& bytes, Random& random) {
  const int kind = random.pick(0, 3);
  const unsigned char one = random.byte();
  const unsigned char other = random.byte();
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i, bits >>= 8) {
    if (i % 4 == 0) bits = kind == 0 ? bits * 2654435761u + one + 1 : random.bits();
    const auto noise = static_cast<unsigned char>(bits);
    bytes[i] = kind == 1 ? one : kind == 2 ? (noise & 1 ? one : other) : noise;
  }
}

Bytes any_bytes(Random& random, std::size_t count) {
  Bytes bytes(count);
  fill(bytes, random);
  return bytes;
}

int any_length(Random& random) { return random.one_in(8) ? random.pick(0, 700) : random.pick(0, 140); }
std::size_t size_of(int count) { return static_cast<std::size_t>(count); }

void gray_row(Random& random) {
  const int count = any_length(random);
  const Bytes pixels = any_bytes(random, 3 * size_of(count));
  const auto run = [&](const Form& form) {
    Bytes levels(size_of(count));
    form.image.gray_row(pixels.data(), levels.data(), count);
    return levels;
  };
  const Bytes wanted = run(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(run(form) == wanted); });
}

void any_far(Random& random) {
  const int count = random.pick(0, vantrel::cardcut::kMostCompared);
  const Bytes a = any_bytes(random, size_of(count));
  Bytes b = a;
  if (random.one_in(3)) {
    fill(b, random);
  } else {
    for (int i = random.pick(0, 5); i > 0 && count > 0; --i) b[size_of(random.pick(0, count - 1))] = random.byte();
  }
  const int least = random.one_in(3) ? random.pick(1, 21609) : random.pick(1, 1500);
  const bool wanted = kPlain.cardcut.any_far(a.data(), b.data(), count, least);
  for_each_other_form(
      [&](const Form& form) { FUZZ_CHECK(form.cardcut.any_far(a.data(), b.data(), count, least) == wanted); });
}

void find_foreground(Random& random) {
  const int count = any_length(random);
  Bytes bytes = any_bytes(random, size_of(count));
  for (int i = random.pick(0, 9); i > 0 && count > 0; --i) bytes[size_of(random.pick(0, count - 1))] = 0;
  const auto run = [&](const Form& form) {
    std::vector<std::uint64_t> words(size_of((count + 63) / 64), ~std::uint64_t{0});
    form.components.find_foreground(bytes.data(), count, words.data());
    return words;
  };
  const std::vector<std::uint64_t> wanted = run(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(run(form) == wanted); });
}

void mark_row(Random& random) {
  const int cols = random.pick(2, 150);
  const Bytes before = any_bytes(random, size_of(cols));
  const Bytes here = any_bytes(random, size_of(cols));
  const Bytes after = any_bytes(random, size_of(cols));
  const int from = random.pick(1, cols - 1);
  const int to = random.pick(from, cols - 1);
  Bytes wanted_edge(size_of(cols), 9), wanted_direction(size_of(cols), 9);
  const vantrel::lines::RowTriple rows{before.data(), here.data(), after.data()};
  kPlain.lines.mark_row(rows, wanted_edge.data(), wanted_direction.data(), from, to);
  for_each_other_form([&](const Form& form) {
    Bytes edge(size_of(cols), 9), direction(size_of(cols), 9);
    form.lines.mark_row(rows, edge.data(), direction.data(), from, to);
    FUZZ_CHECK(edge == wanted_edge && direction == wanted_direction);
  });
}

void vote(Random& random) {
  static const vantrel::lines::DegreeTables tables;
  // A smaller sheet has no room for all votes.
  const int side = random.pick(3, 60);
  const int angles = random.pick(1, random.one_in(4) ? vantrel::lines::kMostAngles : 20);
  const int first = random.pick(0, vantrel::lines::kMostAngles - angles);
  const int stride = 2 * side + random.pick(1, 9);
  std::vector<vantrel::lines::EdgePoint> points;
  for (int i = random.pick(0, 60); i > 0; --i) {
    // Within half a side of the centre, so that all votes fall on the sheet.
    const auto row = static_cast<float>(random.pick(-side, side)) / 2;
    points.push_back({row, static_cast<float>(random.pick(-side, side)) / 2});
  }
  const auto run = [&](const Form& form) {
    std::vector<double> cells(size_of(angles * stride));
    const vantrel::lines::VoteSheet sheet{cells.data(),       stride, 2 * side, side, tables.cos + first,
                                          tables.sin + first, angles};
    form.lines.vote(sheet, points.data(), static_cast<int>(points.size()));
    return cells;
  };
  const std::vector<double> wanted = run(kPlain);
  const double largest = kPlain.lines.largest(wanted.data(), static_cast<int>(wanted.size()));
  for_each_other_form([&](const Form& form) {
    const std::vector<double> cells = run(form);
    FUZZ_CHECK(std::memcmp(cells.data(), wanted.data(), cells.size() * sizeof cells[0]) == 0);
    FUZZ_CHECK(form.lines.largest(cells.data(), static_cast<int>(cells.size())) == largest);
  });
}

void count_below(Random& random) {
  const int count = random.one_in(20) ? random.pick(0, 20000) : any_length(random);
  const Bytes bytes = any_bytes(random, size_of(count));
  const unsigned char level = random.byte();
  const int wanted = kPlain.lines.count_below(bytes.data(), count, level);
  for_each_other_form(
      [&](const Form& form) { FUZZ_CHECK(form.lines.count_below(bytes.data(), count, level) == wanted); });
}

/** A search for lines, which votes are counted for. */
struct Search {
  vantrel::lines::Direction direction;
  vantrel::lines::Angles angles;
};

/** Many points at once, by each form, and each for itself: the same strongest cells. */
void dense_votes(Random& random) {
  using namespace vantrel::lines;
  static const DegreeTables tables;
  const int rows = random.pick(8, 70), cols = random.one_in(4) ? random.pick(71, 400) : random.pick(8, 70);
  const Bytes gray = any_bytes(random, size_of(rows * cols));
  EdgeMaps maps({gray.data(), rows, cols, cols});
  if (!maps.ready()) return;
  maps.detect({});
  const Search search = random.one_in(2) ? Search{Direction::kAcrossRows, {{70, 109}}}
                                         : Search{Direction::kAlongRows, {{0, 29}, {150, 179}}};
  const auto strongest = [&](bool many) {
    HoughAccumulator votes(rows, cols, search.angles, tables, std::nullopt);
    FUZZ_CHECK(votes.ready());
    vote_band(maps, {{0, rows}, {0, cols}}, search.direction, many, votes);
    const Peak first = votes.strongest(search.angles);
    return std::array{first, votes.strongest(search.angles, &first)};
  };
  const Kernels* const chosen = kernels;
  const std::array<Peak, 2> wanted = strongest(false);
  for_each_other_form([&](const Form& form) {
    kernels = &form.lines;
    const std::array<Peak, 2> found = strongest(true);
    for (std::size_t i = 0; i < found.size(); ++i) {
      FUZZ_CHECK(found[i].distance == wanted[i].distance && found[i].angle == wanted[i].angle);
      FUZZ_CHECK(found[i].votes == wanted[i].votes);
    }
  });
  kernels = chosen;
}

void loose_rows(Random& random) {
  using namespace vantrel::lines;
  const int steps = random.pick(0, 4), slices = random.pick(1, kLooseSlices);
  const std::size_t count = size_of(steps * kLooseStep);
  Bytes points = any_bytes(random, count + kLooseBytes - 1);
  for (unsigned char& point : points) point = point & 1 ? 255 : 0;
  Bytes held = any_bytes(random, count + size_of(slices));
  for (unsigned char& byte : held) byte %= kMostLooseParts + 1;
  const auto run = [&](const Form& form) {
    std::array<Bytes, kPieces> rows;
    std::array<unsigned char*, kPieces> to;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      rows[i].resize(count);
      to[i] = rows[i].data();
    }
    form.lines.spread(points.data() - kFirstLoose, steps, to.data());
    LooseRows shifted{held.data(), {}, slices};
    for (int i = 0; i < slices; ++i) shifted.offsets[i] = i;
    std::vector<std::uint16_t> sums(count, 65400);
    form.lines.add_rows(shifted, 0, steps, sums.data());
    return std::pair(rows, sums);
  };
  const auto wanted = run(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(run(form) == wanted); });
}

void count_distances(Random& random) {
  std::array<float, vantrel::cardcut::kMostCounted> across;
  for (float& one : across) one = static_cast<float>(random.pick(-400, 400));
  const float cosine = static_cast<float>(random.pick(-87, 87)) / 1000;
  const float row_part = static_cast<float>(random.pick(-40000, 40000)) / 64;
  const int first = static_cast<int>(row_part) + random.pick(-40, 40);
  const int step = random.one_in(2) ? 1 : -1;
  const int places = random.pick(1, vantrel::cardcut::kMostDistances);
  const auto run = [&](const Form& form) {
    std::array<int, vantrel::cardcut::kMostDistances> counts{};
    form.cardcut.count_distances({across.data(), cosine, row_part, first, step}, places, counts.data());
    return std::vector<int>(counts.begin(), counts.begin() + places);
  };
  const std::vector<int> wanted = run(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(run(form) == wanted); });
}

/** Rows that a running mean walks along, with the sums it comes with. */
class MeanLines {
 public:
  explicit MeanLines(Random& random) : cols_(any_length(random)), backwards_(random.one_in(2)) {
    levels_ = any_bytes(random, size_of(cols_) * vantrel::segment::kLines);
    for (vantrel::segment::LineSums* sums : {&first_, &second_}) {
      for (std::uint16_t& sum : *sums) sum = static_cast<std::uint16_t>(random.pick(0, 65280));
    }
  }

  /** What two walks leave, and then a third one that marks what is dark by the sums that the second one noted. */
  Bytes walked(const Form& form) const {
    MeanLines own = *this;
    std::vector<std::uint16_t> noted(own.levels_.size());
    form.segment.follow(own.lines(), own.first_, own.second_);
    form.segment.note(own.lines(), own.first_, noted.data());
    form.segment.mark(own.lines(), own.second_, noted.data());
    Bytes left = own.levels_;
    const auto append = [&left](const auto* sums, std::size_t count) {
      for (std::size_t i = 0; i < count; ++i) {
        left.push_back(static_cast<unsigned char>(sums[i]));
        left.push_back(static_cast<unsigned char>(sums[i] >> 8));
      }
    };
    append(own.first_, vantrel::segment::kLines);
    append(own.second_, vantrel::segment::kLines);
    return left;
  }

 private:
  vantrel::segment::Lines lines() {
    vantrel::segment::Lines lines{.levels = {}, .cols = cols_, .backwards = backwards_};
    for (std::size_t i = 0; i < vantrel::segment::kLines; ++i) lines.levels[i] = levels_.data() + i * size_of(cols_);
    return lines;
  }

  int cols_;
  bool backwards_;
  Bytes levels_;
  vantrel::segment::LineSums first_{};
  vantrel::segment::LineSums second_{};
};

void mean_lines(Random& random) {
  const MeanLines lines(random);
  const Bytes wanted = lines.walked(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(lines.walked(form) == wanted); });
}

/** A coefficient near that one, or one that is odd. */
double any_coefficient(Random& random, double near, double spread) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  constexpr std::array kOdd = {0.0, -0.0, 1e-300, 1e300, -1e9, 2147483648.0, 1e38, 1e-10, -0.3, kInfinite, -kInfinite};
  if (random.one_in(24)) return random.one_in(6) ? std::nan("") : kOdd[random.bits() % kOdd.size()];
  return near + random.real(-spread, spread);
}

void warp(Random& random) {
  const int channels = std::array{1, 3, 4}[random.bits() % 3];
  const int rows = random.pick(1, 12);
  const int cols = random.pick(1, 40);
  const std::ptrdiff_t stride = cols * channels + random.pick(0, 3);
  const Bytes pixels = any_bytes(random, static_cast<std::size_t>(stride * (rows - 1) + cols * channels));
  ConstPixels source{pixels.data(), rows, cols, stride};
  if (random.one_in(3)) source = source.upside_down();
  std::array<double, 8> mapping{};
  const std::array near = {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0};
  const std::array spread = {1.2, 0.5, 40.0, 0.3, 1.2, 12.0, 0.02, 0.02};
  for (std::size_t i = 0; i < 8; ++i) mapping.at(i) = any_coefficient(random, near.at(i), spread.at(i));
  const float first = random.one_in(2) ? 0.0f : -std::numeric_limits<float>::infinity();
  const int count = any_length(random);
  const int x = random.pick(-20, 40);
  const int y = random.pick(-10, 20);
  const auto run = [&](const Form& form) {
    Bytes target(size_of(count * channels), 99);
    const auto& kernels = form.autoclip;
    const auto kernel = channels == 1 ? kernels.warp_1 : channels == 3 ? kernels.warp_3 : kernels.warp_4;
    kernel({source, first}, {mapping.data(), x, y, count, target.data()});
    return target;
  };
  const Bytes wanted = run(kPlain);
  for_each_other_form([&](const Form& form) { FUZZ_CHECK(run(form) == wanted); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  constexpr std::array kKernels = {gray_row, any_far,     find_foreground, mark_row,   vote,
                                   warp,     count_below, mean_lines,      loose_rows, count_distances};
  Random random(data, size);
  // It takes as long as hundreds of the others.
  if (random.one_in(64)) {
    dense_votes(random);
  } else {
    kKernels[random.bits() % kKernels.size()](random);
  }
  return 0;
}
