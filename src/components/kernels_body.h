// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::components::form {
namespace {

#if defined(VANTREL_FORM_AVX512)

inline std::uint64_t zeros_of_64(const unsigned char* bytes) {
  const __m512i loaded = _mm512_loadu_si512(bytes);
  return _mm512_testn_epi8_mask(loaded, loaded);
}

#elif defined(VANTREL_FORM_AVX2)

inline std::uint64_t zeros_of_32(const unsigned char* bytes) {
  const __m256i loaded = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes));
  return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(loaded, _mm256_setzero_si256())));
}
inline std::uint64_t zeros_of_64(const unsigned char* bytes) {
  return zeros_of_32(bytes) | zeros_of_32(bytes + 32) << 32;
}

#elif defined(VANTREL_FORM_SSE2)

inline std::uint64_t zeros_of_16(const unsigned char* bytes) {
  const __m128i loaded = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(loaded, _mm_setzero_si128())));
}
inline std::uint64_t zeros_of_64(const unsigned char* bytes) {
  return zeros_of_16(bytes) | zeros_of_16(bytes + 16) << 16 | zeros_of_16(bytes + 32) << 32 |
         zeros_of_16(bytes + 48) << 48;
}

#else

/**
 * Eight bytes at a time: each gets its sign bit where it is 0, from which the product gathers the eight bits in order.
 */
inline std::uint64_t zeros_of_8(const unsigned char* bytes) {
  constexpr std::uint64_t kLowBits = 0x7F7F7F7F7F7F7F7F;
  constexpr std::uint64_t kGather = 0x0002040810204081;
  std::uint64_t eight = 0;
  for (int i = 0; i < 8; ++i) eight |= std::uint64_t{bytes[i]} << 8 * i;
  const std::uint64_t zero = ~((eight & kLowBits) + kLowBits | eight | kLowBits);
  return zero * kGather >> 56;
}
inline std::uint64_t zeros_of_64(const unsigned char* bytes) {
  std::uint64_t found = 0;
  for (int i = 0; i < 8; ++i) found |= zeros_of_8(bytes + 8 * i) << 8 * i;
  return found;
}

#endif

void find_foreground(const unsigned char* bytes, int count, std::uint64_t* foreground) {
  const int whole = count / 64;
  for (int i = 0; i < whole; ++i) foreground[i] = zeros_of_64(bytes + 64 * i);
  const int rest = count - 64 * whole;
  if (rest == 0) return;
  if (whole > 0) {
    // The last 64 bytes, of which some were seen before, make the last word.
    foreground[whole] = zeros_of_64(bytes + count - 64) >> (64 - rest);
  } else {
    unsigned char padded[64];
    __builtin_memset(padded, 255, sizeof padded);
    __builtin_memcpy(padded, bytes, static_cast<unsigned>(rest));
    foreground[0] = zeros_of_64(padded);
  }
}

constexpr Kernels kKernels{find_foreground};

}  // namespace
}  // namespace vantrel::components::form
// NOLINTEND(misc-definitions-in-headers)
