// The kernels of this room that bound and sum the votes of many points, in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::lines::form {
namespace {

using vantrel::kernels::as_words;
using vantrel::kernels::kWords;
using vantrel::kernels::load_bytes;
using vantrel::kernels::SignedWords;
using vantrel::kernels::store_low_bytes;
using vantrel::kernels::Words;

using Bytes = unsigned char __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
constexpr int kBytes = VANTREL_VECTOR_BYTES;

void weigh(const WeighedCells& cells, unsigned char* weights) {
  constexpr int kFineParts = kFine / kVoteParts;
  const SignedWords most = SignedWords{} + short{kFine}, none{};
  const SignedWords last = most + cells.to, first = most + 1 - cells.from;
  for (int cell = 0; cell < kBoundCells; cell += kWords) {
    SignedWords drift;
    __builtin_memcpy(&drift, cells.drifts + cell, sizeof drift);
    const SignedWords before = last - drift, behind = first + drift;
    const SignedWords nearer = before < behind ? before : behind;
    const SignedWords within = nearer < most ? nearer : most;
    const SignedWords vote = (within > none ? within : none) + (kFineParts - 1);
    store_low_bytes(weights + cell, as_words(vote) / kFineParts);
  }
}

/** One sum of bytes for each cell. */
constexpr int kBoundVectors = kBoundCells / kBytes;

inline void add_slice(const BoundedSlices& slices, int index, Bytes* votes) {
  const std::int64_t position = slices.position + index * slices.slope;
  const unsigned char* points = slices.slice + index * slices.stride + (position >> 32) + 1;
  const std::ptrdiff_t between = static_cast<std::uint32_t>(position) >> (32 - kPositionBits);
  const unsigned char* weights = slices.weights + between * slices.taps * kBoundCells;
  for (int tap = 0; tap < slices.taps; ++tap, ++points, weights += kBoundCells) {
    for (int v = 0; v < kBoundVectors; ++v) {
      Bytes marks, weight;
      __builtin_memcpy(&marks, points + v * kBytes, sizeof marks);
      __builtin_memcpy(&weight, weights + v * kBytes, sizeof weight);
      votes[v] += marks & weight;
    }
  }
}

/** Two slices fit a byte, and all of them a word. */
static_assert(2 * kMostPartsASlice < 1 << 8 && kMostSlices * kMostPartsASlice < 1 << 16);
void bound_cells(const BoundedSlices& slices, unsigned* sums) {
  Words even[kBoundVectors]{}, odd[kBoundVectors]{};
  for (int i = 0; i < slices.count; i += 2) {
    Bytes votes[kBoundVectors]{};
    add_slice(slices, i, votes);
    if (i + 1 < slices.count) add_slice(slices, i + 1, votes);
    for (int v = 0; v < kBoundVectors; ++v) {
      even[v] += as_words(votes[v]) & 255;
      odd[v] += as_words(votes[v]) >> 8;
    }
  }
  for (int i = 0; i < kBoundCells; i += 2) {
    const int v = i / kBytes, lane = i % kBytes / 2;
    sums[i] += even[v][lane];
    sums[i + 1] += odd[v][lane];
  }
}

/** A slice gives no more than kMostLooseParts, whatever its bytes give one by one. */
void spread(const unsigned char* points, int steps, unsigned char* const* rows) {
  static_assert(kLooseStep % kBytes == 0);
  const Bytes most = Bytes{} + kMostLooseParts;
  for (int from = 0; from < steps * kLooseStep; from += kBytes) {
    Bytes marks[kLooseBytes];
    for (int i = 0; i < kLooseBytes; ++i) __builtin_memcpy(&marks[i], points + from + kFirstLoose + i, kBytes);
    for (int piece = 0; piece < kPieces; ++piece) {
      Bytes votes{};
      for (int i = 0; i < kLooseBytes; ++i) votes += marks[i] & loose_weight(piece, kFirstLoose + i);
      votes = votes < most ? votes : most;
      __builtin_memcpy(rows[piece] + from, &votes, kBytes);
    }
  }
}

template <int kVectors>
inline void add_bytes(const LooseRows& rows, int from, std::uint16_t* sums) {
  Bytes totals[kVectors]{};
  for (int i = 0; i < rows.slices; ++i) {
    for (int v = 0; v < kVectors; ++v) {
      Bytes row;
      __builtin_memcpy(&row, rows.bytes + rows.offsets[i] + from + v * kBytes, kBytes);
      totals[v] += row;
    }
  }
  unsigned char votes[kVectors * kBytes];
  __builtin_memcpy(votes, totals, sizeof votes);
  for (int i = 0; i < kVectors * kBytes; i += kWords) {
    Words sum;
    __builtin_memcpy(&sum, sums + from + i, sizeof sum);
    const Words more = load_bytes(votes + i);
    sum += more;
    sum |= as_words(sum < more);  // all ones where it ran over
    __builtin_memcpy(sums + from + i, &sum, sizeof sum);
  }
}

static_assert(kLooseSlices * kMostLooseParts < 1 << 8);
void add_rows(const LooseRows& rows, int from, int steps, std::uint16_t* sums) {
  constexpr int kStepVectors = kLooseStep / kBytes;
  for (; steps > 1; steps -= 2, from += 2 * kLooseStep) add_bytes<2 * kStepVectors>(rows, from, sums);
  if (steps > 0) add_bytes<kStepVectors>(rows, from, sums);
}

using Doubles = double __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
using LaneWords = unsigned long long __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
constexpr int kDoubles = VANTREL_VECTOR_BYTES / 8;
constexpr int kSumVectors = kSumCells / kDoubles;

/** What is the same for all pixels: the cells' distances less 1 and plus 1, and the byte of each cell in a word. */
struct Lanes {
  Doubles number[kSumVectors];
  Doubles from[kSumVectors];
  Doubles to[kSumVectors];
  LaneWords byte;
};

/** A point between `from` and `to` votes for the cell by its distance from the nearer one. */
inline void add_pixel(const SummedCells& cells, const Lanes& lanes, int byte, int slice, Doubles* sums) {
  const double along = (cells.first_along + slice) * cells.along;
  const unsigned char* points = cells.first + slice * cells.stride + byte;
  for (int v = 0; v < kSumVectors; ++v) {
    std::uint64_t marks = 0;
    __builtin_memcpy(&marks, points + v * kDoubles, kDoubles);
    const Doubles rho = (cells.first_across + byte + lanes.number[v]) * cells.across + along;
    const Doubles before = rho - lanes.from[v], behind = lanes.to[v] - rho;
    const Doubles nearer = before < behind ? before : behind;
    const auto counts = (((LaneWords{} + marks) & lanes.byte) != 0) & (nearer > 0);
    sums[v] += counts ? nearer : Doubles{};
  }
}

/** A share of 0 changes no sum, so that pixels too far from a cell, and those without a point, may be added to it. */
void sum_cells(const SummedCells& cells, const ByteRun* runs, int count, double* sums) {
  const SummedCells kept = cells;  // which no sum can be written to
  Lanes lanes;
  for (int i = 0; i < kDoubles; ++i) lanes.byte[i] = 255ULL << 8 * i;
  Doubles total[kSumVectors];
  for (int v = 0; v < kSumVectors; ++v) {
    for (int i = 0; i < kDoubles; ++i) lanes.number[v][i] = v * kDoubles + i;
    lanes.from[v] = kept.distance + lanes.number[v] - 1;
    lanes.to[v] = kept.distance + lanes.number[v] + 1;
    __builtin_memcpy(&total[v], sums + v * kDoubles, sizeof total[v]);
  }
  for (const ByteRun* run = runs; run < runs + count; ++run) {
    if (kept.runs_along) {
      for (int i = 0; i < run->count; ++i) add_pixel(kept, lanes, run->byte, run->slice + i, total);
    } else {
      for (int i = 0; i < run->count; ++i) add_pixel(kept, lanes, run->byte + i, run->slice, total);
    }
  }
  for (int v = 0; v < kSumVectors; ++v) __builtin_memcpy(sums + v * kDoubles, &total[v], sizeof total[v]);
}

}  // namespace
}  // namespace vantrel::lines::form
// NOLINTEND(misc-definitions-in-headers)
