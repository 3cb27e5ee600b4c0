// The kernels of this room in one form; see kernels/bodies.h. No guard. They are loops that the compiler turns into
// vectors, but for the pixels of three bytes.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::scale::form {
namespace {

void means(const unsigned char* a, const unsigned char* b, int count, unsigned char* __restrict result) {
  for (int i = 0; i < count; ++i) result[i] = static_cast<unsigned char>((a[i] + b[i] + 1) >> 1);
}

void means_of_four(const unsigned char* a, const unsigned char* b, int step, int count,
                   unsigned char* __restrict result) {
  for (int i = 0; i < count; ++i) {
    result[i] = static_cast<unsigned char>((a[i] + a[i + step] + b[i] + b[i + step] + 2) >> 2);
  }
}

/** The kernel on pixels and on values between them, all well within 16 bits: twice as many at once as with integers. */
inline short cubic(int a, int b, int c, int d) {
  const auto sum = static_cast<short>(9 * static_cast<short>(b + c) - static_cast<short>(a + d) + 8);
  return static_cast<short>(sum >> 4);
}

inline unsigned char clamped(short value) {
  const short above = value < 0 ? short{0} : value;
  return static_cast<unsigned char>(above > 255 ? 255 : above);
}

void cubic_values(const ByteTaps& taps, int count, std::int16_t* __restrict result) {
  const unsigned char *a = taps[0], *b = taps[1], *c = taps[2], *d = taps[3];
  for (int i = 0; i < count; ++i) result[i] = cubic(a[i], b[i], c[i], d[i]);
}

void cubic_of_bytes(const ByteTaps& taps, int count, unsigned char* __restrict result) {
  const unsigned char *a = taps[0], *b = taps[1], *c = taps[2], *d = taps[3];
  for (int i = 0; i < count; ++i) result[i] = clamped(cubic(a[i], b[i], c[i], d[i]));
}

void cubic_of_values(const ValueTaps& taps, int count, unsigned char* __restrict result) {
  const std::int16_t *a = taps[0], *b = taps[1], *c = taps[2], *d = taps[3];
  for (int i = 0; i < count; ++i) result[i] = clamped(cubic(a[i], b[i], c[i], d[i]));
}

void clamp(const std::int16_t* values, int count, unsigned char* __restrict result) {
  for (int i = 0; i < count; ++i) result[i] = clamped(values[i]);
}

void interleave_1(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* __restrict result) {
  for (int i = 0; i < pairs; ++i) {
    result[2 * i] = even[i];
    result[2 * i + 1] = odd[i];
  }
}

#if defined(VANTREL_FORM_AVX2)

/** Five pixels of each at a time: 15 bytes of either become 30 of the result, and two behind them, written over next.
 */
void interleave_3(const unsigned char* even, const unsigned char* odd, int pairs, unsigned char* result) {
  const __m128i even_first = _mm_setr_epi8(0, 1, 2, -1, -1, -1, 3, 4, 5, -1, -1, -1, 6, 7, 8, -1);
  const __m128i odd_first = _mm_setr_epi8(-1, -1, -1, 0, 1, 2, -1, -1, -1, 3, 4, 5, -1, -1, -1, 6);
  const __m128i even_second = _mm_setr_epi8(-1, -1, 9, 10, 11, -1, -1, -1, 12, 13, 14, -1, -1, -1, -1, -1);
  const __m128i odd_second = _mm_setr_epi8(7, 8, -1, -1, -1, 9, 10, 11, -1, -1, -1, 12, 13, 14, -1, -1);
  int left = pairs;
  for (; left >= 6; left -= 5, even += 15, odd += 15, result += 30) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(even));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(odd));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(result),
                     _mm_or_si128(_mm_shuffle_epi8(a, even_first), _mm_shuffle_epi8(b, odd_first)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(result + 16),
                     _mm_or_si128(_mm_shuffle_epi8(a, even_second), _mm_shuffle_epi8(b, odd_second)));
  }
  plain::interleave_3(even, odd, left, result);
}

#else

using plain::interleave_3;

#endif

constexpr Kernels kKernels{means,           means_of_four, cubic_values, cubic_of_bytes,
                           cubic_of_values, clamp,         interleave_1, interleave_3};

}  // namespace
}  // namespace vantrel::scale::form
// NOLINTEND(misc-definitions-in-headers)
