// The kernels of this room in one form, but for those of many points (dense_kernels_body.h); see kernels/bodies.h. No
// guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::lines::form {
namespace {

using vantrel::kernels::any;
using vantrel::kernels::as_signed;
using vantrel::kernels::as_words;
using vantrel::kernels::high_product;
using vantrel::kernels::kWords;
using vantrel::kernels::SignedWords;
using vantrel::kernels::Words;

struct Gradients {
  SignedWords across_rows;
  SignedWords along_rows;
};

/** What the gradients of a pixel take from a column of three: a weighted sum, and the difference of its ends. */
struct Columns {
  Words sum;
  Words difference;
};

/** Every second of kBytes columns, from j on and from j + 1 on. */
struct ColumnPair {
  Columns first;
  Columns second;
};

inline Words load(const unsigned char* bytes) {
  Words words;
  __builtin_memcpy(&words, bytes, sizeof words);
  return words;
}

inline ColumnPair columns_at(const RowTriple& gray, int j) {
  const Words before = load(gray.before + j), here = load(gray.here + j), after = load(gray.after + j);
  const auto of = [](Words b, Words h, Words a) { return Columns{b + 2 * h + a, b - a}; };
  return {of(before & 255, here & 255, after & 255), of(before >> 8, here >> 8, after >> 8)};
}

/** Each component lies within -1020 and 1020. */
inline Gradients gradients_of(const Columns& left, const Columns& here, const Columns& right) {
  return {as_signed(left.difference + 2 * here.difference + right.difference), as_signed(right.sum - left.sum)};
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

/** What is marked where kWords pixels are, one in each word. */
struct Marks {
  Words edge;
  Words direction;
};

inline Marks marks_of(const Gradients& gradient) {
  static_assert(kEdge == 0);
  const Words none = Words{} + static_cast<unsigned short>(Direction::kNone);
  const SignedWords lower = gradient.along_rows >> 15;
  const Words across = magnitude(gradient.across_rows, gradient.across_rows >> 15);
  const Words along = magnitude(gradient.along_rows, lower);
  const SignedWords flat = no_edge(across, along);
  return {as_words(flat) & kNoEdge, flat ? none : direction_classes(gradient, across, along, lower)};
}

/** The least and the largest of some levels. */
struct Range {
  Bytes least;
  Bytes most;
};

inline Range range_of(const Bytes& a, const Bytes& b) { return {a < b ? a : b, a > b ? a : b}; }

inline Range range_of(const Range& a, const Range& b) {
  return {a.least < b.least ? a.least : b.least, a.most > b.most ? a.most : b.most};
}

/** That of the levels before and behind each of kBytes pixels. */
inline Range range_around(const unsigned char* levels) {
  Bytes left, right;
  __builtin_memcpy(&left, levels - 1, sizeof left);
  __builtin_memcpy(&right, levels + 1, sizeof right);
  return range_of(left, right);
}

/**
 * Whether there is surely no edge among the kBytes pixels from column j on, as on most of a scan. When the levels of
 * the columns before and behind a pixel lie within r, and those of its own as well, its gradient is sqrt(20) r at most:
 * the square is a convex function of the levels, so that it is largest where each is as low or as high as can be, and
 * none of these gradients is longer than (4, 2) r and (2, 4) r. Neighbours at even distances are looked at together
 * here, and a pixel's own column with one of them.
 */
inline bool surely_flat(const RowTriple& gray, int j) {
  constexpr unsigned char kRange = 44;
  static_assert(20 * kRange * kRange < kLeastEdgeMagnitude * kLeastEdgeMagnitude);
  const Range range =
      range_of(range_of(range_around(gray.before + j), range_around(gray.here + j)), range_around(gray.after + j));
  return !any(as_signed(range.most - range.least > kRange));
}

/** So many vectors of a row are looked at before those with edges among them are. */
constexpr int kNoted = 64;

inline void fill(unsigned char* bytes, unsigned char value) {
  const Bytes filled = Bytes{} + value;
  __builtin_memcpy(bytes, &filled, sizeof filled);
}

/** Marks kBytes pixels. */
inline void mark_at(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int j) {
  const auto [before, first] = columns_at(gray, j - 1);
  const auto [second, behind] = columns_at(gray, j + 1);
  const Marks even = marks_of(gradients_of(before, first, second));
  const Marks odd = marks_of(gradients_of(first, second, behind));
  const Words edges = even.edge | odd.edge << 8;
  const Words directions = even.direction | odd.direction << 8;
  __builtin_memcpy(edge + j, &edges, sizeof edges);
  __builtin_memcpy(direction + j, &directions, sizeof directions);
}

void mark_row(const RowTriple& gray, unsigned char* edge, unsigned char* direction, int from, int to) {
  if (to - from < kBytes) return plain::mark_row(gray, edge, direction, from, to);
  int j = from;
  while (j < to - kBytes) {
    // Vectors with edges are only noted at first: a jump for each would often be guessed wrong.
    int noted[kNoted];
    int count = 0;
    for (int i = 0; i < kNoted && j < to - kBytes; ++i, j += kBytes) {
      noted[count] = j;
      count += surely_flat(gray, j) ? 0 : 1;
      fill(edge + j, kNoEdge);
      fill(direction + j, static_cast<unsigned char>(Direction::kNone));
    }
    for (int i = 0; i < count; ++i) mark_at(gray, edge, direction, noted[i]);
  }
  mark_at(gray, edge, direction, to - kBytes);  // some of these a second time
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
  const VoteSheet kept = sheet;  // which no vote can be written to
  for (int i = 0; i < count; ++i) {
    share_out(kept, __builtin_truncf(points[i].row), __builtin_truncf(points[i].col), votes);
    double* column = kept.cells;
    for (int t = 0; t < kept.angles; ++t, column += kept.stride) {
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
  constexpr int kLanes = kDoubles;
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

/** The sum of all lanes: pairs of bytes first, and then four words by a product, whose highest one holds it. */
inline int sum_of(const Bytes& counts) {
  constexpr std::uint64_t kEven = 0x00FF00FF00FF00FF, kOnes = 0x0001000100010001;
  std::uint64_t eights[kBytes / 8];
  __builtin_memcpy(eights, &counts, sizeof eights);
  std::uint64_t words = 0;
  for (const std::uint64_t eight : eights) words += (eight & kEven) + (eight >> 8 & kEven);
  return static_cast<int>(words * kOnes >> 48);
}
static_assert(kBytes * 255 < 1 << 16);

inline Bytes ones_below(const Bytes& levels, unsigned char level) {
  return -reinterpret_cast<Bytes>(levels < Bytes{} + level);
}

int count_below(const unsigned char* bytes, int count, unsigned char level) {
  if (count == 0) return 0;
  const int rest = count % kBytes;
  Bytes last = Bytes{} + static_cast<unsigned char>(255);  // below no level
  __builtin_memcpy(&last, bytes + count - rest, static_cast<unsigned>(rest));
  int below = sum_of(ones_below(last, level));
  for (int i = 0; i < count - rest;) {
    // A lane counts to 255, and then is emptied.
    const int whole = (count - i) / kBytes;
    const int end = i + (whole < 255 ? whole : 255) * kBytes;
    Bytes counts{};
    for (; i < end; i += kBytes) {
      Bytes next;
      __builtin_memcpy(&next, bytes + i, sizeof next);
      counts += ones_below(next, level);
    }
    below += sum_of(counts);
  }
  return below;
}

constexpr Kernels kKernels{mark_row, vote, weigh, bound_cells, spread, add_rows, sum_cells, largest, count_below, true};

}  // namespace
}  // namespace vantrel::lines::form
// NOLINTEND(misc-definitions-in-headers)
