// The kernels of this room in one form; see kernels/bodies.h. No guard. They are loops over arrays of a few hundred
// bytes, step after step, which the compiler turns into vectors: first where each pixel comes from, then what is there,
// then its value.
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
inline unsigned load(const unsigned char* bytes) {
  Word word;
  __builtin_memcpy(&word, bytes, sizeof word);
  return word;
}

/** Two neighbours of a row for each position, as words of the source; nothing around them is read. */
template <int kChannels>
struct Pairs {
  unsigned left[kBlock];
  unsigned right[kBlock];

  void load_at(int i, const unsigned char* pixel) {
    left[i] = load<unsigned>(pixel);
    right[i] = load<unsigned>(pixel + 2 * kChannels - 4);
  }
  unsigned left_at(int i) const { return left[i]; }
  unsigned right_at(int i) const { return right[i] >> (32 - 8 * kChannels); }
};

template <>
struct Pairs<1> {
  unsigned both[kBlock];

  void load_at(int i, const unsigned char* pixel) { both[i] = load<unsigned short>(pixel); }
  unsigned left_at(int i) const { return both[i]; }
  unsigned right_at(int i) const { return both[i] >> 8; }
};

template <int kChannels>
struct Corners4 {
  static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
  Pairs<kChannels> top;
  Pairs<kChannels> bottom;
};

template <int kChannels>
inline void load_corners(const image::ConstPixels& source, const Neighbours& rows, const Neighbours& cols,
                         Corners4<kChannels>& corners) {
  int top[kBlock], bottom[kBlock];
  const int last = source.rows - 1;
  const int stride = static_cast<int>(source.stride);
  for (int i = 0; i < kBlock; ++i) {
    const int first = rows.first[i] < 0 ? 0 : rows.first[i];
    const int next = rows.first[i] < 0 ? 0 : rows.first[i] + 1;
    top[i] = (first > last ? last : first) * stride + cols.first[i] * kChannels;
    bottom[i] = (next > last ? last : next) * stride + cols.first[i] * kChannels;
  }
  for (int i = 0; i < kBlock; ++i) {
    corners.top.load_at(i, source.data + top[i]);
    corners.bottom.load_at(i, source.data + bottom[i]);
  }
}

inline float channel(unsigned pixel, int shift) { return static_cast<float>(static_cast<int>(pixel >> shift & 0xFF)); }

/**
 * Blends a channel of all pixels; see interpolate. That adds a half in double precision before it truncates. In single
 * precision the largest number below a half gives the same whole number for every value that can occur: it lacks so
 * little that a sum that should reach a whole number is rounded up to it, and one that should not, is not.
 */
template <int kChannels>
inline void blend(const Corners4<kChannels>& corners, const Neighbours& rows, const Neighbours& cols, int shift,
                  unsigned (&values)[kBlock]) {
  constexpr float kBelowHalf = 0x1.fffffep-2f;
  for (int i = 0; i < kBlock; ++i) {
    const float top_left = channel(corners.top.left_at(i), shift);
    const float bottom_left = channel(corners.bottom.left_at(i), shift);
    const float top = top_left + cols.weight[i] * (channel(corners.top.right_at(i), shift) - top_left);
    const float bottom = bottom_left + cols.weight[i] * (channel(corners.bottom.right_at(i), shift) - bottom_left);
    const float value = top + rows.weight[i] * (bottom - top);
    const int whole = static_cast<int>(value + kBelowHalf);
    values[i] = static_cast<unsigned>(whole > 255 ? 255 : whole) & 0xFF;
  }
}

/** Writes pixels of kChannels bytes, of which every one but the last may be written with what follows it. */
template <int kChannels>
inline void store(const unsigned (&values)[kBlock], int count, unsigned char* target) {
  if constexpr (kChannels == 1) {
    unsigned char bytes[kBlock];
    for (int i = 0; i < kBlock; ++i) bytes[i] = static_cast<unsigned char>(values[i]);
    __builtin_memcpy(target, bytes, static_cast<unsigned>(count));
  } else {
    for (int i = 0; i < count - 1; ++i) __builtin_memcpy(target + i * kChannels, &values[i], 4);
    __builtin_memcpy(target + (count - 1) * kChannels, &values[count - 1], kChannels);
  }
}

template <int kChannels>
void warp_block(const WarpSource& source, const WarpStretch& stretch) {
  Positions at;
  Neighbours rows, cols;
  Corners4<kChannels> corners;
  unsigned pixels[kBlock];
  map_positions(source, stretch, at);
  find_neighbours(at.row, source.first_position, rows);
  find_neighbours(at.col, source.first_position, cols);
  keep_columns(cols, source.pixels.cols);
  load_corners(source.pixels, rows, cols, corners);
  blend(corners, rows, cols, 0, pixels);
  for (int k = 1; k < kChannels; ++k) {
    unsigned values[kBlock];
    blend(corners, rows, cols, 8 * k, values);
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
