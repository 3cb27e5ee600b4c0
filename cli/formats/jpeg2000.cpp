#include <algorithm>
#include <cstddef>

#include "formats/codecs.h"
#include "leptonica_pix.h"
#include "memory.h"

namespace tool {
namespace {

/** A number of so many bytes, the most significant first; 0 beyond the end of the file. */
std::int64_t number_at(const Bytes& file, std::size_t at, std::size_t bytes) {
  if (at > file.size() || bytes > file.size() - at) return 0;
  std::int64_t number = 0;
  for (std::size_t i = 0; i < bytes; ++i) number = number << 8 | file[at + i];
  return number;
}

/** Where the code stream of a JPEG 2000 file begins, which the decoder goes by; the end of the file if nowhere. */
std::size_t code_stream_of(const Bytes& file) {
  constexpr std::int64_t kCodeStream = 0x6a703263;  // "jp2c"
  constexpr std::size_t kHead = 8;
  constexpr std::size_t kLongHead = 16;
  for (std::size_t at = 0; at + kHead < file.size();) {
    const bool is_long = number_at(file, at, 4) == 1;
    const std::size_t head = is_long ? kLongHead : kHead;
    if (number_at(file, at + 4, 4) == kCodeStream) return at + head;
    const auto length = static_cast<std::size_t>(is_long ? number_at(file, at + 12, 4) : number_at(file, at, 4));
    if (length < head || length > file.size() - at) break;
    at += length;
  }
  return file.size();
}

/** Where the segment of a marker begins, behind its length, in the head of the code stream; the file's end if nowhere.
 */
std::size_t segment_of(const Bytes& file, std::size_t code_stream, std::int64_t marker) {
  constexpr std::int64_t kStartOfTile = 0xff90;
  for (std::size_t at = code_stream + 2; at + 4 <= file.size();) {
    const std::int64_t here = number_at(file, at, 2);
    if (here == kStartOfTile) break;
    if (here == marker) return at + 4;
    at += 2 + static_cast<std::size_t>(std::max<std::int64_t>(number_at(file, at + 2, 2), 2));
  }
  return file.size();
}

/** How many bytes the decoder notes of the blocks that a sample of each pixel is coded in, and of their precincts. */
std::int64_t notes_of_blocks(const Bytes& file, std::size_t code_stream, std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kCodingStyle = 0xff52;
  constexpr std::int64_t kBytesOfBlock = 450;
  constexpr std::int64_t kBytesOfPrecinct = 700;
  constexpr std::int64_t kMostLevels = 32;
  constexpr std::int64_t kWhole = 15;
  const std::size_t at = segment_of(file, code_stream, kCodingStyle);
  const bool has_precincts = (number_at(file, at, 1) & 1) != 0;
  const std::int64_t levels = std::min(number_at(file, at + 5, 1), kMostLevels);
  const std::int64_t block_width = (number_at(file, at + 6, 1) & kWhole) + 2;
  const std::int64_t block_height = (number_at(file, at + 7, 1) & kWhole) + 2;
  std::int64_t bytes = 0;
  for (std::int64_t level = 0; level <= levels; ++level) {
    // The first form is the smallest; of the others each precinct lies in bands of half the size.
    const std::int64_t precinct = has_precincts ? number_at(file, at + 9 + static_cast<std::size_t>(level), 1) : 0xff;
    const std::int64_t band = level > 0 ? 1 : 0;
    const std::int64_t x = std::max<std::int64_t>((precinct & kWhole) - band, 0);
    const std::int64_t y = std::max<std::int64_t>((precinct >> 4) - band, 0);
    const std::int64_t columns = (width >> (levels - level)) + 1;
    const std::int64_t rows = (height >> (levels - level)) + 1;
    bytes += kBytesOfPrecinct * ((columns >> (x + band)) + 1) * ((rows >> (y + band)) + 1);
    bytes += kBytesOfBlock * (((columns * rows) >> (std::min(x, block_width) + std::min(y, block_height))) + 1);
  }
  return bytes;
}

/**
 * Judges what the code stream says of itself: the boxes before it may say anything else. The decoder takes four bytes a
 * sample, and notes much of every tile and block before it has seen any. Returns how much memory it may take in all.
 */
std::int64_t check_code_stream(const Bytes& file, const Limits& limits) {
  constexpr std::int64_t kStart = 0xff4fff51;
  constexpr std::int64_t kMostSamples = 4;
  constexpr std::int64_t kMostTiles = 65535;
  constexpr std::int64_t kBytesOfSample = 4;
  constexpr std::int64_t kBytesOfTile = 9000;
  constexpr std::int64_t kBytesOfTileSample = 1200;
  const std::size_t at = code_stream_of(file);
  struct Side {
    std::int64_t end, first, tile, first_tile;
  };
  const auto side = [&](std::size_t place) {
    const auto word = [&](std::size_t n) { return number_at(file, at + place + 8 * n, 4); };
    return Side{word(0), word(1), word(2), word(3)};
  };
  const auto is_whole = [](const Side& s) {
    return s.first < s.end && s.first_tile <= s.first && s.first_tile + s.tile > s.first;
  };
  const auto tiles_along = [](const Side& s) { return (s.end - s.first_tile + s.tile - 1) / s.tile; };
  const Side x = side(8);
  const Side y = side(12);
  const std::int64_t samples = number_at(file, at + 40, 2);
  if (number_at(file, at, 4) != kStart || !is_whole(x) || !is_whole(y) || samples == 0) {
    refuse_damaged(Format::kJpeg2000);
  }
  if (samples > kMostSamples) refuse_kind(Format::kJpeg2000, "more than four samples a pixel");
  const std::int64_t width = x.end - x.first;
  const std::int64_t height = y.end - y.first;
  check_size(width, height, static_cast<int>(8 * kBytesOfSample * samples), limits);
  const std::int64_t tiles = tiles_along(x) * tiles_along(y);
  if (tiles > kMostTiles) refuse_damaged(Format::kJpeg2000);
  const std::int64_t notes =
      (tiles * (kBytesOfTile + kBytesOfTileSample * samples) + samples * notes_of_blocks(file, at, width, height)) /
      (width * height);
  check_size(width, height, static_cast<int>(8 * (kBytesOfSample * samples + notes)), limits);
  // While it decodes it has the samples in several forms, and what it notes of their blocks.
  constexpr std::int64_t kBytesAside = 64 * Budget::kMega;
  constexpr std::int64_t kForms = 4;
  return kBytesAside + 4 * static_cast<std::int64_t>(file.size()) +
         width * height * (kForms * kBytesOfSample * samples + 2 * notes);
}

}  // namespace

Picture read_jpeg2000(const Bytes& file, const Limits& limits) {
  const Budget budget(check_code_stream(file, limits), limits.megabytes);
  const ForeignCode foreign(Large::kCrashes);
  l_int32 bits = 0;
  if (readHeaderMemJp2k(file.data(), file.size(), nullptr, nullptr, &bits, nullptr, nullptr) != 0) {
    refuse_damaged(Format::kJpeg2000);
  }
  PixPtr pix(pixReadMemJp2k(file.data(), file.size(), 1, nullptr, 0, 0));
  if (!pix) refuse_damaged(Format::kJpeg2000);
  pixSetResolution(pix.get(), 0, 0);
  Picture picture;
  picture.image = bitmap_of(std::move(pix));
  picture.sample_bits = bits;
  return picture;
}

}  // namespace tool
