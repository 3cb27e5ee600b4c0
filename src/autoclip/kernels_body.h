// The kernels of this room in one form; see kernels/bodies.h. No guard. They are loops over arrays of a few hundred
// bytes, step after step, which the compiler turns into vectors: first where each pixel comes from, then what is there,
// then its value.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::autoclip::form {
namespace {

/** Pixels whose steps are done together; a multiple of every vector's lanes. */
constexpr int kBlock = 128;

/** Where each pixel of a block comes from, as fractional columns and memory rows of the source. */
struct Positions {
  float col[kBlock];
  float row[kBlock];
};

/** See map_coordinate: the same operations in the same order, with what a row has in common taken out. */
inline void map_positions(const WarpSource& source, const WarpStretch& s, Positions& at) {
  const double* c = s.mapping;
  const double u_y = s.y * c[1];
  const double v_y = s.y * c[4];
  const double d_y = s.y * c[7] + 1.0;
  const double c0 = c[0], c2 = c[2], c3 = c[3], c5 = c[5], c6 = c[6];
  const auto last_row = static_cast<float>(source.pixels.rows - 1);
  for (int i = 0; i < kBlock; ++i) {
    const double x = s.x + i;
    const double d = x * c6 + d_y;
    at.col[i] = static_cast<float>((x * c0 + u_y + c2) / d) + 0.5f;
    at.row[i] = last_row - (static_cast<float>((x * c3 + v_y + c5) / d) + 0.5f);
  }
}

/** The first of the two neighbours of a position, perhaps out of the image, and the weight of the second. See locate.
 */
struct Neighbours {
  int first[kBlock];
  float weight[kBlock];
};

inline void find_neighbours(const float (&positions)[kBlock], float first_position, Neighbours& found) {
  constexpr float kFar = 1 << 30;
  const float least = first_position > -kFar ? first_position : -kFar;  // also for what is no number
  float at[kBlock];
  // One choice a loop: several at once become jumps.
  for (int i = 0; i < kBlock; ++i) at[i] = positions[i] > least ? positions[i] : least;
  for (int i = 0; i < kBlock; ++i) at[i] = at[i] < kFar ? at[i] : kFar;
  for (int i = 0; i < kBlock; ++i) {
    found.first[i] = static_cast<int>(at[i]);
    found.weight[i] = at[i] - static_cast<float>(found.first[i]);
  }
}

/**
 * Keeps pairs of neighbouring columns inside the image. Where both are the last column (or both the first), the pair
 * before it (or behind it) with the weight 1 (or 0) is the same to the bit: for bytes, first + 1 * (second - first) is
 * second, and first + 0 * (second - first) is first.
 */
inline void keep_columns(Neighbours& cols, int count) {
  const int last_first = count - 2;
  for (int i = 0; i < kBlock; ++i) {
    const int first = cols.first[i];
    const float weight = first < 0 ? 0.0f : cols.weight[i];
    cols.weight[i] = first > last_first ? 1.0f : weight;
    const int kept = first < 0 ? 0 : first;
    cols.first[i] = kept > last_first ? last_first : kept;
  }
}

template <class Word>
inline Word load(const unsigned char* bytes) {
  Word word;
  __builtin_memcpy(&word, bytes, sizeof word);
  return word;
}

/** A word in which two neighbouring pixels lie, the first in the lowest bytes. */
template <int kChannels>
struct PairWord {
  using Type = unsigned long long;
};
template <>
struct PairWord<1> {
  using Type = unsigned;
};
template <int kChannels>
using Pair = typename PairWord<kChannels>::Type;

/** Loads two pixels. Six bytes are loaded as eight where those behind them may be read, else as four and four. */
template <int kChannels, bool kReadsOn>
inline Pair<kChannels> load_pair(const unsigned char* pixels) {
  static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
  if constexpr (kChannels == 1) {
    return load<unsigned short>(pixels);
  } else if constexpr (kChannels == 3 && !kReadsOn) {
    return load<unsigned>(pixels) | Pair<kChannels>{load<unsigned>(pixels + 2)} << 16;
  } else {
    return load<Pair<kChannels>>(pixels);
  }
}

/** Where the pairs of a block lie, in bytes from the source's first row. */
struct Offsets {
  int top[kBlock];
  int bottom[kBlock];
};

template <int kChannels>
inline void find_pairs(const image::ConstPixels& source, const Neighbours& rows, const Neighbours& cols, Offsets& at) {
  const int last = source.rows - 1;
  const auto stride = static_cast<int>(source.stride);
  for (int i = 0; i < kBlock; ++i) {
    const int first = rows.first[i] < 0 ? 0 : rows.first[i];
    const int next = rows.first[i] < 0 ? 0 : rows.first[i] + 1;
    at.top[i] = (first > last ? last : first) * stride + cols.first[i] * kChannels;
    at.bottom[i] = (next > last ? last : next) * stride + cols.first[i] * kChannels;
  }
}

/** The last place from which a pair is loaded. */
inline int furthest_of(const Offsets& at) {
  int furthest = at.top[0];
  for (int i = 0; i < kBlock; ++i) furthest = furthest > at.top[i] ? furthest : at.top[i];
  for (int i = 0; i < kBlock; ++i) furthest = furthest > at.bottom[i] ? furthest : at.bottom[i];
  return furthest;
}

/** The four pixels around each position. */
struct Around {
  unsigned top_left[kBlock];
  unsigned top_right[kBlock];
  unsigned bottom_left[kBlock];
  unsigned bottom_right[kBlock];
};

template <int kChannels, bool kReadsOn>
inline void load_pairs(const unsigned char* source, const Offsets& at, Around& found) {
  Pair<kChannels> top[kBlock], bottom[kBlock];
  for (int i = 0; i < kBlock; ++i) {
    top[i] = load_pair<kChannels, kReadsOn>(source + at.top[i]);
    bottom[i] = load_pair<kChannels, kReadsOn>(source + at.bottom[i]);
  }
  for (int i = 0; i < kBlock; ++i) {
    found.top_left[i] = static_cast<unsigned>(top[i]);
    found.top_right[i] = static_cast<unsigned>(top[i] >> 8 * kChannels);
  }
  for (int i = 0; i < kBlock; ++i) {
    found.bottom_left[i] = static_cast<unsigned>(bottom[i]);
    found.bottom_right[i] = static_cast<unsigned>(bottom[i] >> 8 * kChannels);
  }
}

/** The first byte that is not the source's, in bytes from its first row; rows may lie in either order. */
template <int kChannels>
inline int end_of(const image::ConstPixels& source) {
  return (source.stride > 0 ? static_cast<int>(source.stride) * (source.rows - 1) : 0) + source.cols * kChannels;
}

inline float channel(unsigned pixel, int shift) { return static_cast<float>(static_cast<int>(pixel >> shift & 0xFF)); }

/**
 * Blends a channel of all pixels; see interpolate. That adds a half in double precision before it truncates. In single
 * precision the largest number below a half gives the same whole number for every value that can occur: it lacks so
 * little that a sum that should reach a whole number is rounded up to it, and one that should not, is not.
 */
inline void blend(const Around& around, const Neighbours& rows, const Neighbours& cols, int shift,
                  unsigned (&values)[kBlock]) {
  constexpr float kBelowHalf = 0x1.fffffep-2f;
  for (int i = 0; i < kBlock; ++i) {
    const float top_left = channel(around.top_left[i], shift);
    const float bottom_left = channel(around.bottom_left[i], shift);
    const float top = top_left + cols.weight[i] * (channel(around.top_right[i], shift) - top_left);
    const float bottom = bottom_left + cols.weight[i] * (channel(around.bottom_right[i], shift) - bottom_left);
    const float value = top + rows.weight[i] * (bottom - top);
    const int whole = static_cast<int>(value + kBelowHalf);
    values[i] = static_cast<unsigned>(whole > 255 ? 255 : whole) & 0xFF;
  }
}

#if defined(VANTREL_FORM_AVX2)
/** Four pixels of three bytes; the four bytes behind them are written, too. */
inline void store_triples(const unsigned* values, unsigned char* target) {
  const __m128i packed = _mm_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(target),
                   _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(values)), packed));
}
#else
inline void store_triples(const unsigned* values, unsigned char* target) {
  for (int i = 0; i < 4; ++i) __builtin_memcpy(target + 3 * i, &values[i], 4);
}
#endif

template <int kChannels>
inline void store(const unsigned (&values)[kBlock], int count, unsigned char* target) {
  int i = 0;
  if constexpr (kChannels == 1) {
    unsigned char bytes[kBlock];
    for (int k = 0; k < kBlock; ++k) bytes[k] = static_cast<unsigned char>(values[k]);
    __builtin_memcpy(target, bytes, static_cast<unsigned>(count));
    return;
  } else if constexpr (kChannels == 3) {
    // What is written behind four pixels is written over by the next ones, of which there are two at least.
    for (; i + 6 <= count; i += 4) store_triples(values + i, target + 3 * i);
  }
  for (; i < count; ++i) __builtin_memcpy(target + i * kChannels, &values[i], kChannels);
}

/**
 * Asks for what the same block of a later row will show: some rows on, where a mapping that turns little reads, and
 * nearly the same columns. The processor itself foresees along a row only, of which a block is too short a piece, and
 * an image that its caches do not hold took twice the time. Nothing is read, so that the place may lie anywhere.
 */
template <int kChannels>
inline void prefetch_later_row(const WarpSource& source, const WarpStretch& stretch, const Offsets& at) {
  constexpr int kRowsOn = 6;
  constexpr int kStep = 64 / kChannels;  // pixels to a line of a cache
  // The position's y counts against the memory rows, and so does the coordinate of which this is the growth with y.
  const auto rows = static_cast<__INTPTR_TYPE__>(stretch.mapping[4] > 0 ? -kRowsOn : kRowsOn);
  const auto first = reinterpret_cast<__INTPTR_TYPE__>(source.pixels.data) + rows * source.pixels.stride;
  for (int i = 0; i < kBlock; i += kStep) __builtin_prefetch(reinterpret_cast<const void*>(first + at.top[i]));
}

template <int kChannels>
void warp_block(const WarpSource& source, const WarpStretch& stretch) {
  Positions at;
  Neighbours rows, cols;
  Offsets offsets;
  Around around;
  unsigned pixels[kBlock];
  map_positions(source, stretch, at);
  find_neighbours(at.row, source.first_position, rows);
  find_neighbours(at.col, source.first_position, cols);
  keep_columns(cols, source.pixels.cols);
  find_pairs<kChannels>(source.pixels, rows, cols, offsets);
  prefetch_later_row<kChannels>(source, stretch, offsets);
  if (kChannels != 3 || furthest_of(offsets) <= end_of<kChannels>(source.pixels) - 8) {
    load_pairs<kChannels, true>(source.pixels.data, offsets, around);
  } else {
    load_pairs<kChannels, false>(source.pixels.data, offsets, around);
  }
  blend(around, rows, cols, 0, pixels);
  for (int k = 1; k < kChannels; ++k) {
    unsigned values[kBlock];
    blend(around, rows, cols, 8 * k, values);
    for (int i = 0; i < kBlock; ++i) pixels[i] |= values[i] << 8 * k;
  }
  store<kChannels>(pixels, stretch.count, stretch.target);
}

template <int kChannels>
void warp(const WarpSource& source, const WarpStretch& stretch) {
  const image::ConstPixels& pixels = source.pixels;
  const long long extent = pixels.stride * static_cast<long long>(pixels.rows);
  // Blocks need two columns, offsets that are ints, and positions that are ints beyond the last one, too.
  const bool fits = pixels.cols >= 2 && extent <= image::kMaxBytes && -extent <= image::kMaxBytes;
  if (!fits || stretch.x > image::kMaxBytes - stretch.count - kBlock) {
    return plain::warp_stretch<kChannels>(source, stretch);
  }
  WarpStretch block = stretch;
  for (int left = stretch.count; left > 0; left -= kBlock) {
    block.count = left < kBlock ? left : kBlock;
    warp_block<kChannels>(source, block);
    block.x += kBlock;
    block.target += kBlock * kChannels;
  }
}

constexpr Kernels kKernels{warp<1>, warp<3>, warp<4>};

}  // namespace
}  // namespace vantrel::autoclip::form
// NOLINTEND(misc-definitions-in-headers)
