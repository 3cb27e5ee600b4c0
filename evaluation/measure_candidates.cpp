/**
 * Measures the candidates of drawn scans, for the fit of the finder's model.
 *
 *   vantrel_measure_candidates first|final SET FIRST_SEED COUNT > TABLE
 *
 * Writes rows of 32-bit floats: the seed, the number of the true card that the candidate covers best (-1: none), the
 * Jaccard index with it, the distance of the farthest corner over the card's diagonal, x and y of the four corners,
 * then the features: of every candidate of the copy (first), or of the finalists on the scan (final). Behind those of a
 * finalist follow which of the scan's finalists overlap it, and which are its rivals: 16 to a number, the lowest bit
 * first. A scan begins with a row whose second number is -2 and whose third is the count of its true cards.
 */
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "anywhere/finalists.h"
#include "anywhere/overlap.h"
#include "drawing/drawn_scan.h"
#include "jaccard.h"

namespace {

using namespace vantrel;
using anywhere::Quad;
using anywhere::operator-;
using anywhere::operator*;

struct Truth {
  float card = -1.0F;
  float jaccard = 0.0F;
  float distance = 1.0F;
};

Quad quad_of(const drawing::TrueCard& card) {
  Quad quad;
  for (std::size_t i = 0; i < 4; ++i) quad.corners[i] = {card.corners[i].x, card.corners[i].y};
  return quad;
}

Truth compare(const drawing::DrawnScan& scan, const Quad& found) {
  Truth truth;
  for (std::size_t i = 0; i < scan.cards.size(); ++i) {
    const Quad card = quad_of(scan.cards[i]);
    const auto value = static_cast<float>(evaluation::jaccard(found, card, scan.width, scan.height));
    if (value <= truth.jaccard) continue;
    const double diagonal = anywhere::length(card[2] - card[0]);
    truth = {static_cast<float>(i), value, static_cast<float>(evaluation::corner_distance(found, card) / diagonal)};
  }
  return truth;
}

template <class Features>
void write_row(std::uint64_t seed, const Truth& truth, const Quad& quad, const Features& features,
               const std::vector<float>& marks = {}) {
  std::vector<float> row = {static_cast<float>(seed), truth.card, truth.jaccard, truth.distance};
  for (const anywhere::Point& corner : quad.corners) {
    row.push_back(static_cast<float>(corner.x));
    row.push_back(static_cast<float>(corner.y));
  }
  row.insert(row.end(), features.begin(), features.end());
  row.insert(row.end(), marks.begin(), marks.end());
  std::fwrite(row.data(), sizeof(float), row.size(), stdout);
}

template <class Features>
void write_head(std::uint64_t seed, const drawing::DrawnScan& scan, const std::vector<float>& marks = {}) {
  write_row(seed, {-2.0F, static_cast<float>(scan.cards.size()), 0.0F}, Quad{}, Features{}, marks);
}

Quad scaled(const Quad& quad, double factor) {
  Quad result;
  for (std::size_t i = 0; i < 4; ++i) result.corners[i] = quad[i] * factor;
  return result;
}

void measure_first(std::uint64_t seed, const drawing::DrawnScan& drawn, const anywhere::Analysis& analysis) {
  write_head<anywhere::Features>(seed, drawn);
  for (std::size_t i = 0; i < analysis.features.size(); ++i) {
    const Quad quad = scaled(analysis.candidates[i].quad, analysis.copy.factor);
    write_row(seed, compare(drawn, quad), quad, analysis.features[i]);
  }
}

/** Of all finalists some, 16 to a number. */
class Marks {
 public:
  void set(std::size_t i) { words_[i / kBits] |= 1U << (i % kBits); }
  void append_to(std::vector<float>& numbers) const {
    for (const std::uint16_t word : words_) numbers.push_back(word);
  }

 private:
  static constexpr std::size_t kBits = 16;
  std::array<std::uint16_t, anywhere::kMostFinalists / kBits> words_{};
};

std::vector<float> marks_of(const anywhere::Finalists& finalists, const anywhere::Finalist& one) {
  Marks overlaps, rivals;
  for (std::size_t i = 0; i < finalists.count; ++i) {
    const anywhere::Finalist& other = finalists.items[i];
    if (relation(one.refined.quad, other.refined.quad) != anywhere::Relation::kApart) overlaps.set(i);
    if (are_rivals(one, other)) rivals.set(i);
  }
  std::vector<float> numbers;
  overlaps.append_to(numbers);
  rivals.append_to(numbers);
  return numbers;
}

void measure_final(std::uint64_t seed, const drawing::DrawnScan& drawn, const anywhere::Scan& scan,
                   const anywhere::Analysis& analysis) {
  write_head<anywhere::FinalFeatures>(seed, drawn, marks_of({}, {}));
  anywhere::Finalists finalists;
  if (!anywhere::measure_likeliest(scan, analysis, finalists)) std::abort();
  for (const anywhere::Finalist& one : finalists.all())
    write_row(seed, compare(drawn, one.refined.quad), one.refined.quad, one.features, marks_of(finalists, one));
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 5) {
    std::fputs("usage: vantrel_measure_candidates first|final SET FIRST_SEED COUNT > TABLE\n", stderr);
    return 2;
  }
  const bool final = std::strcmp(arguments[1], "final") == 0;
  const std::uint64_t first = std::stoull(arguments[3]), end = first + std::stoull(arguments[4]);
  for (std::uint64_t seed = first; seed < end; ++seed) {
    const drawing::DrawnScan drawn = drawing::draw_scan(arguments[2], seed);
    const anywhere::Scan scan = {{drawn.bgr.data(), drawn.height, drawn.width, std::ptrdiff_t{drawn.width} * 3},
                                 anywhere::Layout::kBgr};
    anywhere::Analysis analysis;
    if (!anywhere::analyse(scan, analysis)) return 1;
    if (final)
      measure_final(seed, drawn, scan, analysis);
    else
      measure_first(seed, drawn, analysis);
  }
  return 0;
}
