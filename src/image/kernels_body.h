// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::image::form {
namespace {

#if defined(VANTREL_FORM_AVX2)

/**
 * The weighted sums of four pixels in each half: blue, green, red, 0 are multiplied by 2, 9, 5, 0 and added in pairs.
 * Both sums of a pair stay below 2^12.
 */
inline __m256i weighted_pairs(const unsigned char* low, const unsigned char* high) {
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                          0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m256i pixels =
      _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
                              _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
  return _mm256_maddubs_epi16(_mm256_shuffle_epi8(pixels, spread), _mm256_set1_epi32(0x00050902));
}

/** 32 pixels at a time: the first 16 make the lower half of the result, the others the upper. */
void gray_row(const unsigned char* pixels, unsigned char* levels, int count) {
  constexpr int kHalf = 48;  // bytes of 16 pixels
  const auto eight = [&](int at) {
    return _mm256_srli_epi16(_mm256_hadd_epi16(weighted_pairs(pixels + at, pixels + kHalf + at),
                                               weighted_pairs(pixels + at + 12, pixels + kHalf + at + 12)),
                             4);
  };
  // The last load of a step reaches four bytes behind its pixels.
  for (; count >= 34; count -= 32, pixels += 2 * kHalf, levels += 32) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(levels), _mm256_packus_epi16(eight(0), eight(24)));
  }
  plain::gray_row(pixels, levels, count);
}

#elif defined(VANTREL_FORM_NEON)

void gray_row(const unsigned char* pixels, unsigned char* levels, int count) {
  for (; count >= 8; count -= 8, pixels += 24, levels += 8) {
    const uint8x8x3_t colour = vld3_u8(pixels);
    const uint16x8_t blue_green = vmlal_u8(vmull_u8(colour.val[0], vdup_n_u8(2)), colour.val[1], vdup_n_u8(9));
    vst1_u8(levels, vshrn_n_u16(vmlal_u8(blue_green, colour.val[2], vdup_n_u8(5)), 4));
  }
  plain::gray_row(pixels, levels, count);
}

#else

using plain::gray_row;

#endif

constexpr Kernels kKernels{gray_row};

}  // namespace
}  // namespace vantrel::image::form
// NOLINTEND(misc-definitions-in-headers)
