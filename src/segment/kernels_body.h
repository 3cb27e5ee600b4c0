// The kernels of this room in one form; see kernels/bodies.h. No guard.
// NOLINTBEGIN(misc-definitions-in-headers): unnamed, and included once by each form.
namespace vantrel::segment::form {
namespace {

using vantrel::kernels::as_words;
using vantrel::kernels::high_product;
using vantrel::kernels::kWords;
using vantrel::kernels::load_bytes;
using vantrel::kernels::store_low_bytes;
using vantrel::kernels::Words;

/** So many columns are taken out of the lines, and put back, at once. */
constexpr int kColumns = 16;

/** A column is as many bytes as there are lines. */
struct alignas(32) Columns {
  unsigned char levels[kColumns][kLines];
};

template <class Vector>
inline void load(const void* from, Vector& vector) {
  __builtin_memcpy(&vector, from, sizeof vector);
}
template <class Vector>
inline void store(void* to, const Vector& vector) {
  __builtin_memcpy(to, &vector, sizeof vector);
}

using Sixteen = unsigned char __attribute__((vector_size(16)));
static_assert(kLines == 32 && kColumns == 16);

#if defined(VANTREL_FORM_AVX2)

/** Sixteen bytes of a line, and sixteen of the line sixteen behind it. */
using LineBytes = unsigned char __attribute__((vector_size(32)));
constexpr int kBlocks = 1;

inline void load_line(const unsigned char* line, const unsigned char* behind, LineBytes& bytes) {
  bytes = reinterpret_cast<LineBytes>(_mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(behind),  //
                                                          reinterpret_cast<const __m128i*>(line)));
}
inline void store_line(unsigned char* line, unsigned char* behind, const LineBytes& bytes) {
  _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(behind), reinterpret_cast<__m128i*>(line),
                       reinterpret_cast<__m256i>(bytes));
}
inline void zip(LineBytes a, LineBytes b, LineBytes (&zipped)[2]) {
  zipped[0] =
      reinterpret_cast<LineBytes>(_mm256_unpacklo_epi8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
  zipped[1] =
      reinterpret_cast<LineBytes>(_mm256_unpackhi_epi8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}

#else

/** Sixteen bytes of a line; the lines sixteen behind are a block of their own. */
using LineBytes = Sixteen;
constexpr int kBlocks = 2;

inline void load_line(const unsigned char* line, const unsigned char*, LineBytes& bytes) { load(line, bytes); }
inline void store_line(unsigned char* line, const unsigned char*, const LineBytes& bytes) { store(line, bytes); }
inline void zip(const LineBytes& a, const LineBytes& b, LineBytes (&zipped)[2]) {
  zipped[0] = __builtin_shufflevector(a, b, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
  zipped[1] = __builtin_shufflevector(a, b, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
}

#endif

/**
 * Makes columns of lines, sixteen of each, and lines of columns. Zipping each of the first eight vectors with the one
 * eight behind it rotates the eight bits of a byte's place, line and column, by one: after four times line and column
 * have changed places.
 */
inline void transpose(LineBytes (&lines)[16]) {
  for (int round = 0; round < 4; ++round) {
    LineBytes zipped[8][2];
    for (int i = 0; i < 8; ++i) zip(lines[i], lines[i + 8], zipped[i]);
    for (int i = 0; i < 16; ++i) lines[i] = zipped[i / 2][i % 2];
  }
}

inline void load_columns(unsigned char* const (&lines)[kLines], int from, Columns& columns) {
  for (int block = 0; block < kBlocks; ++block) {
    LineBytes bytes[16];
    for (int k = 0; k < 16; ++k) {
      load_line(lines[16 * block + k] + from, lines[16 + k] + from, bytes[k]);
    }
    transpose(bytes);
    for (int c = 0; c < kColumns; ++c) store(columns.levels[c] + 16 * block, bytes[c]);
  }
}

inline void store_columns(unsigned char* const (&lines)[kLines], int from, const Columns& columns) {
  for (int block = 0; block < kBlocks; ++block) {
    LineBytes bytes[16];
    for (int c = 0; c < kColumns; ++c) load(columns.levels[c] + 16 * block, bytes[c]);
    transpose(bytes);
    for (int k = 0; k < 16; ++k) store_line(lines[16 * block + k] + from, lines[16 + k] + from, bytes[k]);
  }
}

/** Columns that are fewer than are taken at once, by way of lines that are long enough. */
struct ShortLines {
  unsigned char bytes[kLines][kColumns];
  unsigned char* lines[kLines];
  int count;

  ShortLines(const Lines& from, int first, int taken) : bytes{}, count(taken) {
    for (int k = 0; k < kLines; ++k) {
      __builtin_memcpy(bytes[k], from.levels[k] + first, static_cast<unsigned>(count));
      lines[k] = bytes[k];
    }
  }
  void copy_back(const Lines& to, int first) const {
    for (int k = 0; k < kLines; ++k) __builtin_memcpy(to.levels[k] + first, bytes[k], static_cast<unsigned>(count));
  }
};

/** So many streams are more than a processor follows on its own: asks for what is worked on some steps later. */
constexpr int kCacheLine = 64;
inline void prefetch(const Lines& lines, int from) {
  const int ahead = from + (lines.backwards ? -4 : 4) * kCacheLine;
  if (ahead < 0 || ahead >= lines.cols) return;
  for (int k = 0; k < kLines; ++k) __builtin_prefetch(lines.levels[k] + ahead);
}

/** Calls `visit(levels, column)` for one column after the other; it may change the levels where they are kept. */
template <bool kKeeps, class Visit>
inline void walk(const Lines& lines, Visit visit) {
  const auto visit_columns = [&](Columns& columns, int from, int count) {
    for (int i = 0; i < count; ++i) {
      const int c = lines.backwards ? count - 1 - i : i;
      visit(columns.levels[c], from + c);
    }
  };
  const int whole = lines.cols / kColumns * kColumns;
  const auto visit_rest = [&] {
    if (whole == lines.cols) return;
    Columns columns;
    ShortLines rest(lines, whole, lines.cols - whole);
    load_columns(rest.lines, 0, columns);
    visit_columns(columns, whole, rest.count);
    if constexpr (kKeeps) {
      store_columns(rest.lines, 0, columns);
      rest.copy_back(lines, whole);
    }
  };
  if (lines.backwards) visit_rest();
  for (int i = 0; i < whole; i += kColumns) {
    const int from = lines.backwards ? whole - kColumns - i : i;
    if (i % kCacheLine == 0) prefetch(lines, from);
    Columns columns;
    load_columns(lines.levels, from, columns);
    visit_columns(columns, from, kColumns);
    if constexpr (kKeeps) store_columns(lines.levels, from, columns);
  }
  if (!lines.backwards) visit_rest();
}

/** The sums of all lines. No step leaves a word: 65280 + 255 - 255 is the most. */
constexpr int kVectors = kLines / kWords;
struct Sums {
  Words parts[kVectors];

  explicit Sums(const LineSums& sums) { load(sums, parts); }
  void keep(LineSums& sums) const { store(sums, parts); }
  void add(const unsigned char* levels) {
    for (int k = 0; k < kVectors; ++k) parts[k] = parts[k] - (parts[k] >> 8) + load_bytes(levels + k * kWords);
  }
};

void follow(const Lines& lines, LineSums& first, LineSums& second) {
  Sums a(first), b(second);
  walk<false>(lines, [&](const unsigned char* levels, int) {
    a.add(levels);
    b.add(levels);
  });
  a.keep(first);
  b.keep(second);
}

void note(const Lines& lines, LineSums& sums, std::uint16_t* noted) {
  Sums sum(sums);
  walk<false>(lines, [&](const unsigned char* levels, int c) {
    sum.add(levels);
    store(noted + kLines * c, sum.parts);
  });
  sum.keep(sums);
}

/**
 * 27 * (a + b) >> 14 in words. With a + b = 2 h + e, e its last bit, that is 216 h + 108 e >> 16: the high word of the
 * first product, and one more where the second carries its low word over.
 */
inline Words limit_of(Words a, Words b) {
  const Words last = (a ^ b) & 1;
  const Words half = (a & b) + ((a ^ b) >> 1);
  const Words low = half * 216;
  const auto carried = low + 108 * last < low;
  return high_product(half, Words{} + 216) - as_words(carried);
}

void mark(const Lines& lines, LineSums& sums, std::uint16_t* noted) {
  Sums sum(sums);
  walk<true>(lines, [&](unsigned char* levels, int c) {
    Words before[kVectors];
    load(noted + kLines * c, before);
    sum.add(levels);
    store(noted + kLines * c, sum.parts);
    for (int k = 0; k < kVectors; ++k) {
      unsigned char* part = levels + k * kWords;
      store_low_bytes(part, as_words(load_bytes(part) >= limit_of(sum.parts[k], before[k])) & 255);
    }
  });
  sum.keep(sums);
}

constexpr Kernels kKernels{follow, note, mark};

}  // namespace
}  // namespace vantrel::segment::form
// NOLINTEND(misc-definitions-in-headers)
