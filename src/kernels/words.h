// Vectors of 16-bit words, for the kernels of one form: arithmetic and comparisons are the compiler's own on vectors,
// and here is what it has no operator for. No guard: see bodies.h.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::kernels {
namespace {

/** So many words are worked on at once. */
constexpr int kWords = VANTREL_VECTOR_BYTES / 2;

using Words = unsigned short __attribute__((vector_size(VANTREL_VECTOR_BYTES)));
using SignedWords = short __attribute__((vector_size(VANTREL_VECTOR_BYTES))); /**< also: true is -1, false is 0 */

using HalfBytes = unsigned char __attribute__((vector_size(VANTREL_VECTOR_BYTES / 2)));

/** The same bits, seen as words or signed words. */
template <class Vector>
inline Words as_words(Vector vector) {
  return reinterpret_cast<Words>(vector);
}
template <class Vector>
inline SignedWords as_signed(Vector vector) {
  return reinterpret_cast<SignedWords>(vector);
}

#if defined(VANTREL_FORM_AVX512)

[[maybe_unused]] inline Words load_bytes(const unsigned char* bytes) {
  return as_words(_mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes))));
}
[[maybe_unused]] inline void store_low_bytes(unsigned char* bytes, Words words) {
  const HalfBytes stored = __builtin_convertvector(words, HalfBytes);
  __builtin_memcpy(bytes, &stored, sizeof stored);
}
[[maybe_unused]] inline Words high_product(Words a, Words b) {
  return as_words(_mm512_mulhi_epu16(reinterpret_cast<__m512i>(a), reinterpret_cast<__m512i>(b)));
}
[[maybe_unused]] inline bool any(SignedWords flags) {
  return _mm512_test_epi16_mask(reinterpret_cast<__m512i>(flags), reinterpret_cast<__m512i>(flags));
}

#elif defined(VANTREL_FORM_AVX2)

[[maybe_unused]] inline Words load_bytes(const unsigned char* bytes) {
  return as_words(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))));
}
/** Words must be 255 at most. */
[[maybe_unused]] inline void store_low_bytes(unsigned char* bytes, Words words) {
  const __m256i all = reinterpret_cast<__m256i>(words);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes),
                   _mm_packus_epi16(_mm256_castsi256_si128(all), _mm256_extracti128_si256(all, 1)));
}
[[maybe_unused]] inline Words high_product(Words a, Words b) {
  return as_words(_mm256_mulhi_epu16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
[[maybe_unused]] inline bool any(SignedWords flags) {
  return _mm256_testz_si256(reinterpret_cast<__m256i>(flags), reinterpret_cast<__m256i>(flags)) == 0;
}

#elif defined(VANTREL_FORM_SSE2)

[[maybe_unused]] inline Words load_bytes(const unsigned char* bytes) {
  return as_words(_mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes)), _mm_setzero_si128()));
}
[[maybe_unused]] inline void store_low_bytes(unsigned char* bytes, Words words) {
  _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes),
                   _mm_packus_epi16(reinterpret_cast<__m128i>(words), reinterpret_cast<__m128i>(words)));
}
[[maybe_unused]] inline Words high_product(Words a, Words b) {
  return as_words(_mm_mulhi_epu16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
[[maybe_unused]] inline bool any(SignedWords flags) { return _mm_movemask_epi8(reinterpret_cast<__m128i>(flags)) != 0; }

#else

using DoubleWords = unsigned __attribute__((vector_size(2 * VANTREL_VECTOR_BYTES)));

[[maybe_unused]] inline Words load_bytes(const unsigned char* bytes) {
  HalfBytes loaded;
  __builtin_memcpy(&loaded, bytes, sizeof loaded);
  return __builtin_convertvector(loaded, Words);
}
[[maybe_unused]] inline void store_low_bytes(unsigned char* bytes, Words words) {
  const HalfBytes stored = __builtin_convertvector(words, HalfBytes);
  __builtin_memcpy(bytes, &stored, sizeof stored);
}
[[maybe_unused]] inline Words high_product(Words a, Words b) {
  return __builtin_convertvector(
      __builtin_convertvector(a, DoubleWords) * __builtin_convertvector(b, DoubleWords) >> 16, Words);
}
[[maybe_unused]] inline bool any(SignedWords flags) {
  short found = 0;
  for (int i = 0; i < kWords; ++i) found |= flags[i];
  return found != 0;
}

#endif

}  // namespace
}  // namespace vantrel::kernels
// NOLINTEND(misc-definitions-in-headers)
