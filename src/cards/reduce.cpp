#include "cards/reduce.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "cards/cut.h"

namespace vantrel::cards {
namespace {

/** Pixels that are reduced before they are converted: few enough for the stack. */
constexpr int kChunk = 256;
constexpr int kMostChannels = 4;

constexpr unsigned char kWhite = 255;

/**
 * The truncated means of `count` blocks of times x times pixels, the first of which begins at `first` in row `top`. The
 * commonest numbers of times are known to the compiler: 0 stands for any other.
 */
template <int kChannels, int kTimes>
void mean_blocks(image::ConstPixels source, int top, std::ptrdiff_t first, int any_times, unsigned char* means,
                 int count) {
  const int times = kTimes > 0 ? kTimes : any_times;
  const std::uint32_t area = static_cast<std::uint32_t>(times) * static_cast<std::uint32_t>(times);
  for (int i = 0; i < count; ++i, first += times, means += kChannels) {
    std::array<std::uint32_t, kChannels> sums{};
    for (int y = 0; y < times; ++y) {
      const unsigned char* pixel = source.row(top + y) + first * kChannels;
      for (int x = 0; x < times; ++x, pixel += kChannels) {
        for (std::size_t k = 0; k < kChannels; ++k) sums[k] += pixel[k];
      }
    }
    for (std::size_t k = 0; k < kChannels; ++k) means[k] = static_cast<unsigned char>(sums[k] / area);
  }
}

template <int kChannels>
void mean_blocks(image::ConstPixels source, int top, std::ptrdiff_t first, int times, unsigned char* means, int count) {
  switch (times) {
    case 2:
      return mean_blocks<kChannels, 2>(source, top, first, times, means, count);
    case 3:
      return mean_blocks<kChannels, 3>(source, top, first, times, means, count);
    default:
      return mean_blocks<kChannels, 0>(source, top, first, times, means, count);
  }
}

/** The pixels `first` to before first + count of row y of the reduced image. */
void reduce_row(image::ConstPixels source, int channels, int times, int y, int first, unsigned char* means, int count) {
  const int top = y * times;
  const std::ptrdiff_t left = std::ptrdiff_t{first} * times;
  switch (channels) {
    case 1:
      return mean_blocks<1>(source, top, left, times, means, count);
    case 3:
      return mean_blocks<3>(source, top, left, times, means, count);
    default:
      return mean_blocks<4>(source, top, left, times, means, count);
  }
}

/** The bytes of a copy's rows, with what lies behind their pixels. */
int padded_bytes(int width, vantrel_format format, Padding padding) {
  return static_cast<int>(padding == Padding::kWhite ? image::stride_bytes(width, bits_of(format))
                                                     : row_bytes(width, format));
}

/** Whether the scan itself will do. */
bool needs_copy(const vantrel_image& scan, vantrel_format format, int times, Padding padding) {
  return times != 1 || scan.format != format ||
         padded_bytes(scan.width, format, padding) != row_bytes(scan.width, format);
}

/** The bytes of the copy, none where the scan itself will do. */
std::size_t copy_bytes(const vantrel_image& scan, vantrel_format format, int times, Padding padding) {
  if (!needs_copy(scan, format, times, padding)) return 0;
  return static_cast<std::size_t>(padded_bytes(scan.width / times, format, padding)) *
         static_cast<std::size_t>(scan.height / times);
}

void make_padding_white(image::Pixels pixels, int from, int to) {
  for (int y = 0; y < pixels.rows; ++y) std::fill(pixels.row(y) + from, pixels.row(y) + to, kWhite);
}

/** Reduces a piece of each row, then converts it: means are taken of the colours, not of the levels made of them. */
void fill(const vantrel_image& scan, vantrel_format format, int times, image::Pixels target) {
  const image::ConstPixels source = rows_from_top(scan);
  const int bytes = layout_of(format).bytes;
  std::array<unsigned char, kChunk * kMostChannels> means;
  for (int y = 0; y < target.rows; ++y) {
    if (times == 1) {
      convert_row(source.row(y), scan.format, target.row(y), format, target.cols);
      continue;
    }
    for (int x = 0; x < target.cols; x += kChunk) {
      const int count = std::min(kChunk, target.cols - x);
      reduce_row(source, layout_of(scan.format).bytes, times, y, x, means.data(), count);
      convert_row(means.data(), scan.format, target.row(y) + std::ptrdiff_t{x} * bytes, format, count);
    }
  }
}

}  // namespace

void reduce(const vantrel_image& image, int times, Target& target) {
  const image::ConstPixels source = rows_from_top(image);
  const image::Pixels pixels = target.rows_from_top();
  for (int y = 0; y < pixels.rows; ++y) {
    reduce_row(source, layout_of(image.format).bytes, times, y, 0, pixels.row(y), pixels.cols);
  }
}

void convert(const vantrel_image& image, Target& target) {
  if (image.format == VANTREL_FORMAT_BILEVEL && target.format() == VANTREL_FORMAT_BILEVEL) {
    return crop(image, {0, 0, image.width, image.height}, target);
  }
  fill(image, target.format(), 1, target.rows_from_top());
}

Copy::Copy(const vantrel_image& scan, vantrel_format format, int times, Padding padding)
    : pixels_(copy_bytes(scan, format, times, padding)),
      view_(rows_from_top(scan)),
      row_bytes_(padded_bytes(scan.width / times, format, padding)) {
  if (!needs_copy(scan, format, times, padding) || !pixels_.ready()) return;
  const image::Pixels target(pixels_.get(), scan.height / times, scan.width / times, row_bytes_);
  fill(scan, format, times, target);
  make_padding_white(target, static_cast<int>(cards::row_bytes(target.cols, format)), row_bytes_);
  view_ = target;
}

}  // namespace vantrel::cards
