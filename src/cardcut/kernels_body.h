// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::cardcut::form {
namespace {

/** The largest difference of two bytes. */
inline int largest_difference(const unsigned char* a, const unsigned char* b, int count) {
  using Bytes = unsigned char __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
  constexpr int kLanes = VANTREL_VECTOR_BYTES;
  Bytes most{};
  int i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    Bytes x, y;
    __builtin_memcpy(&x, a + i, sizeof x);
    __builtin_memcpy(&y, b + i, sizeof y);
    const Bytes apart = (x > y ? x : y) - (x > y ? y : x);
    most = apart > most ? apart : most;
  }
  unsigned char largest = 0;
  for (int lane = 0; lane < kLanes; ++lane) largest = most[lane] > largest ? most[lane] : largest;
  for (; i < count; ++i) {
    const auto apart = static_cast<unsigned char>(a[i] > b[i] ? a[i] - b[i] : b[i] - a[i]);
    largest = apart > largest ? apart : largest;
  }
  return largest;
}

/**
 * On flat ground even three times the largest square is too little. Else, in words of 16 bits: differences are cut to
 * 147 first, of which one square alone reaches any `least`, and three still fit a word.
 */
bool any_far(const unsigned char* a, const unsigned char* b, int count, int least) {
  constexpr int kCut = 147;
  static_assert(3 * kCut * kCut < 1 << 16);
  const int largest = largest_difference(a, b, count);
  if (3 * largest * largest < least) return false;
  unsigned short squares[kMostCompared];
  for (int i = 0; i < count; ++i) {
    const auto apart = static_cast<unsigned char>(a[i] > b[i] ? a[i] - b[i] : b[i] - a[i]);
    const auto cut = static_cast<unsigned short>(apart < kCut ? apart : kCut);
    squares[i] = static_cast<unsigned short>(cut * cut);
  }
  unsigned short most = 0;
  for (int i = 0; i < count - 2; ++i) {
    const auto sum = static_cast<unsigned short>(squares[i] + squares[i + 1] + squares[i + 2]);
    most = most > sum ? most : sum;
  }
  return most >= least;
}

/** Counts lie in bytes of an integer, four places to each: no count is above kMostCounted. */
void count_distances(const CountedColumns& columns, int places, int* counts) {
  using Floats = float __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
  using Integers = int __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
  using Quads = int __attribute__((vector_size(16)));
  constexpr int kLanes = VANTREL_VECTOR_BYTES / 4;
  constexpr int kVectors = kMostCounted / kLanes;
  constexpr int kPlaces = 4;
  Integers distances[kVectors];
  for (int v = 0; v < kVectors; ++v) {
    Floats across;
    __builtin_memcpy(&across, columns.across + v * kLanes, sizeof across);
    const Floats rounded = across * columns.cosine + columns.row_part + kBelowHalf;
    distances[v] = __builtin_convertvector(rounded, Integers) - columns.first;
  }
  for (int from = 0; from < places; from += kPlaces) {
    const int here = places - from < kPlaces ? places - from : kPlaces;
    Integers packed{};
    for (int i = 0; i < here; ++i) {
      const int distance = (from + i) * columns.step;
      const int one = 1 << 8 * i;
      const Integers place = Integers{} + distance, ones = Integers{} + one;
      for (int v = 0; v < kVectors; ++v) packed += (distances[v] == place) & ones;
    }
    Quads quads[kLanes / 4];
    __builtin_memcpy(quads, &packed, sizeof quads);
    for (int q = 1; q < kLanes / 4; ++q) quads[0] += quads[q];
    const auto sum = static_cast<unsigned>(quads[0][0] + quads[0][1] + quads[0][2] + quads[0][3]);
    for (int i = 0; i < here; ++i) counts[from + i] = static_cast<int>(sum >> 8 * i & 255);
  }
}

constexpr Kernels kKernels{any_far, count_distances};

}  // namespace
}  // namespace vantrel::cardcut::form
// NOLINTEND(misc-definitions-in-headers)
