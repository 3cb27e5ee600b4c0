// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::lines::form {
namespace {

using vantrel::kernels::any;
using vantrel::kernels::as_signed;
using vantrel::kernels::as_words;
using vantrel::kernels::high_product;
using vantrel::kernels::kWords;
using vantrel::kernels::load_bytes;
using vantrel::kernels::SignedWords;
using vantrel::kernels::store_low_bytes;
using vantrel::kernels::Words;

struct Gradients {
  SignedWords across_rows;
  SignedWords along_rows;
};

/** Those of the kWords pixels from column j on; each lies within -1020 and 1020. */
inline Gradients gradients_at(const RowTriple& gray, int j) {
  const auto [before, here, after] = gray;
  const Words before_left = load_bytes(before + j - 1);
  const Words before_right = load_bytes(before + j + 1);
  const Words after_left = load_bytes(after + j - 1);
  const Words after_right = load_bytes(after + j + 1);
  return {as_signed(before_left + 2 * load_bytes(before + j) + before_right -
                    (after_left + 2 * load_bytes(after + j) + after_right)),
          as_signed(before_right + 2 * load_bytes(here + j + 1) + after_right -
                    (before_left + 2 * load_bytes(here + j - 1) + after_left))};
}

/** The part of a whole gradient that is compared: words that are negative are all ones in `negative`. */
inline Words magnitude(SignedWords value, SignedWords negative) { return as_words((value ^ negative) - negative); }

/**
 * Where a gradient is shorter than kLeastEdgeMagnitude. Components are cut to that first, which changes nothing of the
 * answer and keeps a square, and what the other one lacks, within a word.
 */
inline SignedWords no_edge(Words across, Words along) {
  constexpr unsigned short kLeast = kLeastEdgeMagnitude;
  const Words least = Words{} + kLeast;
  const Words a = across < least ? across : least;
  const Words b = along < least ? along : least;
  return as_signed(a * a < kLeast * kLeast - b * b);
}

/**
 * The directions without a division. direction_of compares `along` with a limit times `across`, both taken positive,
 * and the limits lie near 0.4142 and 2.4142. Here such a limit is T / 2^17, or 2 + T / 2^17, and the product is
 * truncated. No gradient of bytes lies between the two: its components are 1020 at most, and both even or both odd, as
 * both have the parity of the sum of the four corners. Where the gradient rises, one T serves both half-planes.
 */
inline Words direction_classes(const Gradients& gradient, Words across, Words along, SignedWords lower) {
  using enum Direction;
  const SignedWords rising = ((gradient.across_rows ^ gradient.along_rows) >= 0) & (gradient.across_rows != 0);
  const SignedWords falling_gentle = SignedWords{} + static_cast<short>(54302);
  const SignedWords falling_steep = SignedWords{} + static_cast<short>(54335);
  const Words gentle_limit = rising ? Words{} + 54291 : as_words(falling_gentle + 2 * lower);  // lower: 54300
  const Words steep_limit = rising ? Words{} + 54290 : as_words(falling_steep + 5 * lower);    // lower: 54330
  const Words gentle = high_product(across, gentle_limit) >> 1;
  const Words steep = 2 * across + (high_product(across, steep_limit) >> 1);
  const Words diagonal = rising ? Words{} + static_cast<unsigned short>(kRising)  //
                                : Words{} + static_cast<unsigned short>(kFalling);
  static_assert(static_cast<int>(kAcrossRows) == 0);
  return along > steep ? Words{} + static_cast<unsigned short>(kAlongRows) : diagonal & as_words(along > gentle);
}

void mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to) {
  static_assert(kEdge == 0);
  const Words none = Words{} + static_cast<unsigned short>(Direction::kNone);
  const auto mark_at = [&](int j) {
    const Gradients gradient = gradients_at(gray, j);
    const SignedWords lower = gradient.along_rows >> 15;
    const Words across = magnitude(gradient.across_rows, gradient.across_rows >> 15);
    const Words along = magnitude(gradient.along_rows, lower);
    const SignedWords flat = no_edge(across, along);
    store_low_bytes(edge + j, as_words(flat) & kNoEdge);
    // Few places of a scan have edges at all.
    const Words classes = any(flat == 0) ? direction_classes(gradient, across, along, lower) : none;
    store_low_bytes(direction + j, flat ? none : classes);
  };
  if (to - from < kWords) return plain::mark_row(gray, edge, direction, from, to);
  for (int j = from; j < to - kWords; j += kWords) mark_at(j);
  mark_at(to - kWords);  // some of these a second time
}

/** The votes of one point: for each angle the nearer of two neighbouring cells to the column's start, and both shares.
 */
struct Votes {
  int cell[kMostAngles];
  double shares[2 * kMostAngles];
};

/** Distances lie within an int, where truncation and a step down for what it raised are floor(). */
inline void share_out(const VoteSheet& sheet, double row, double col, Votes& votes) {
  for (int t = 0; t < sheet.angles; ++t) {
    const double rho = col * sheet.cos[t] + row * sheet.sin[t];
    const int toward_zero = static_cast<int>(rho);
    const int whole = toward_zero - (static_cast<double>(toward_zero) > rho ? 1 : 0);
    const auto below = static_cast<double>(whole);
    votes.cell[t] = whole + sheet.zero;
    votes.shares[2 * t] = below + 1 - rho;
    votes.shares[2 * t + 1] = rho - below;
  }
}

/** A cell gets its votes in the order of the points, as in the plain form: only cells of other angles come between. */
void vote(const VoteSheet& sheet, const EdgePoint* points, int count) {
  using Pair = double __attribute__((vector_size(16)));
  Votes votes;
  for (int i = 0; i < count; ++i) {
    share_out(sheet, __builtin_truncf(points[i].row), __builtin_truncf(points[i].col), votes);
    double* column = sheet.cells;
    for (int t = 0; t < sheet.angles; ++t, column += sheet.stride) {
      double* cells = column + votes.cell[t];
      Pair sums, shares;
      __builtin_memcpy(&sums, cells, sizeof sums);
      __builtin_memcpy(&shares, votes.shares + 2 * t, sizeof shares);
      sums += shares;
      __builtin_memcpy(cells, &sums, sizeof sums);
    }
  }
}

double largest(const double* values, int count) {
  using Doubles = double __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
  constexpr int kLanes = VANTREL_VECTOR_BYTES / 8;
  Doubles most{};
  int i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    Doubles next;
    __builtin_memcpy(&next, values + i, sizeof next);
    most = next > most ? next : most;
  }
  double largest = plain::largest(values + i, count - i);
  for (int lane = 0; lane < kLanes; ++lane) largest = most[lane] > largest ? most[lane] : largest;
  return largest;
}

int count_below(const unsigned char* bytes, int count, unsigned char level) {
  using Bytes = unsigned char __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
  constexpr int kLanes = VANTREL_VECTOR_BYTES;
  int below = 0;
  int i = 0;
  while (i + kLanes <= count) {
    // A lane counts to 255, and then is emptied.
    const int whole = (count - i) / kLanes;
    const int end = i + (whole < 255 ? whole : 255) * kLanes;
    Bytes counts{};
    for (; i < end; i += kLanes) {
      Bytes next;
      __builtin_memcpy(&next, bytes + i, sizeof next);
      counts -= reinterpret_cast<Bytes>(next < Bytes{} + level);
    }
    for (int lane = 0; lane < kLanes; ++lane) below += counts[lane];
  }
  return below + plain::count_below(bytes + i, count - i, level);
}

constexpr Kernels kKernels{mark_row, vote, largest, count_below};

}  // namespace
}  // namespace vantrel::lines::form
// NOLINTEND(misc-definitions-in-headers)
