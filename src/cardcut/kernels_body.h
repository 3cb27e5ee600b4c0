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

constexpr Kernels kKernels{any_far};

}  // namespace
}  // namespace vantrel::cardcut::form
// NOLINTEND(misc-definitions-in-headers)
