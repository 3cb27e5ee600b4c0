#include <algorithm>
#include <array>
#include <cstddef>

#include "big_endian.h"
#include "formats/codecs.h"
#include "leptonica_pix.h"
#include "memory.h"

namespace tool {
namespace {

/** 0 beyond the end of the file. */
std::int64_t number_at(const Bytes& file, std::size_t at, std::size_t bytes) {
  if (at > file.size() || bytes > file.size() - at) return 0;
  return static_cast<std::int64_t>(big_endian(file.data() + at, bytes));
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

/** How the samples are coded: of all that is said of any tile or sample the worst, whichever it holds for. */
struct Coding {
  static constexpr std::int64_t kMostLevels = 32;
  static constexpr std::int64_t kWhole = 15;

  /** Both sides of a block or a precinct, as powers of two. */
  struct Powers {
    std::int64_t x = kWhole, y = kWhole;
    void take(std::int64_t other_x, std::int64_t other_y) { *this = {std::min(x, other_x), std::min(y, other_y)}; }
  };

  std::int64_t layers = 0;
  std::int64_t levels = 0;
  std::int64_t orders = 1; /**< that the packets come in, one after the other */
  Powers block;
  std::array<Powers, kMostLevels + 1> precincts; /**< by how often the size is halved */

  /** The part that a segment for all samples shares with one for a single sample. */
  void take(const Bytes& file, std::size_t at, bool has_precincts) {
    const std::int64_t told = std::min(number_at(file, at, 1), kMostLevels);
    levels = std::max(levels, told);
    block.take((number_at(file, at + 1, 1) & kWhole) + 2, (number_at(file, at + 2, 1) & kWhole) + 2);
    for (std::int64_t level = 0; has_precincts && level <= told; ++level) {
      const std::int64_t powers = number_at(file, at + 5 + static_cast<std::size_t>(level), 1);
      precincts[static_cast<std::size_t>(told - level)].take(powers & kWhole, powers >> 4);
    }
  }
};

/** Whether the decoder goes by the length of a segment; behind another marker it looks for the next of these. */
bool has_length(std::int64_t marker) {
  constexpr std::array kKnown = {0xff50, 0xff51, 0xff52, 0xff53, 0xff55, 0xff57, 0xff58, 0xff59, 0xff5c, 0xff5d, 0xff5e,
                                 0xff5f, 0xff60, 0xff61, 0xff63, 0xff64, 0xff74, 0xff75, 0xff77, 0xff78, 0xff90};
  return std::binary_search(kKnown.begin(), kKnown.end(), marker);
}

/** Reads the heads of the code stream and of the parts of its tiles, as the decoder does. */
Coding coding_of(const Bytes& file, std::size_t code_stream) {
  constexpr std::int64_t kStartOfTile = 0xff90;
  constexpr std::int64_t kStartOfData = 0xff93;
  constexpr std::int64_t kCodingStyle = 0xff52;
  constexpr std::int64_t kCodingStyleOfSample = 0xff53;
  constexpr std::int64_t kOrders = 0xff5f;
  constexpr std::int64_t kBytesOfOrder = 7;
  constexpr std::int64_t kMostOrders = 32;
  Coding coding;
  std::size_t end_of_part = 0;
  for (std::size_t at = code_stream + 2; at + 4 <= file.size();) {
    const std::int64_t marker = number_at(file, at, 2);
    if (marker == kStartOfData && end_of_part > 0) {
      if (end_of_part <= at) break;
      at = end_of_part;
      if (number_at(file, at, 2) != kStartOfTile) break;
      continue;
    }
    if (!has_length(marker)) {
      at += 2;
      continue;
    }
    const std::int64_t length = std::max<std::int64_t>(number_at(file, at + 2, 2), 2);
    const std::size_t segment = at + 4;
    if (marker == kStartOfTile) {
      const auto part = static_cast<std::size_t>(number_at(file, segment + 2, 4));
      end_of_part = part > 0 ? at + part : file.size();
    } else if (marker == kCodingStyle) {
      coding.layers = std::max(coding.layers, number_at(file, segment + 2, 2));
      coding.take(file, segment + 5, (number_at(file, segment, 1) & 1) != 0);
    } else if (marker == kCodingStyleOfSample) {
      coding.take(file, segment + 2, (number_at(file, segment + 1, 1) & 1) != 0);
    } else if (marker == kOrders) {
      coding.orders = std::min(coding.orders + length / kBytesOfOrder, kMostOrders);
    }
    at += 2 + static_cast<std::size_t>(length);
  }
  return coding;
}

/** How many bytes the decoder notes of the blocks that a sample of each pixel is coded in, and of their precincts. */
std::int64_t notes_of_blocks(const Coding& coding, std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kBytesOfBlock = 450;
  constexpr std::int64_t kBytesOfPrecinct = 700;
  std::int64_t bytes = 0;
  for (std::int64_t halved = 0; halved <= coding.levels; ++halved) {
    // The smallest form is one band; of the others each precinct lies in bands of half the size.
    const Coding::Powers precinct = coding.precincts[static_cast<std::size_t>(halved)];
    const std::int64_t band = halved < coding.levels ? 1 : 0;
    const std::int64_t x = std::max<std::int64_t>(precinct.x - band, 0);
    const std::int64_t y = std::max<std::int64_t>(precinct.y - band, 0);
    const std::int64_t columns = (width >> halved) + 1;
    const std::int64_t rows = (height >> halved) + 1;
    bytes += kBytesOfPrecinct * ((columns >> (x + band)) + 1) * ((rows >> (y + band)) + 1);
    bytes += kBytesOfBlock * (((columns * rows) >> (std::min(x, coding.block.x) + std::min(y, coding.block.y))) + 1);
  }
  return bytes;
}

/** One direction of the picture: where it and its first tile begin, where it ends, and how long a tile is. */
struct Side {
  std::int64_t end, first, tile, first_tile;

  bool is_whole() const { return first < end && first_tile <= first && first_tile + tile > first; }
  std::int64_t tiles() const { return (end - first_tile + tile - 1) / tile; }

  /** How many precincts of a form of the picture lie along it, in all tiles: one never reaches into the next tile. */
  std::int64_t precincts(std::int64_t halved, std::int64_t power) const {
    const auto shrunk = [&](std::int64_t at) { return (at + (std::int64_t{1} << halved) - 1) >> halved; };
    std::int64_t count = 0;
    for (std::int64_t begin = first_tile; begin < end; begin += tile) {
      const std::int64_t from = shrunk(std::max(begin, first));
      const std::int64_t to = shrunk(std::min(begin + tile, end));
      if (from < to) count += ((to - 1) >> power) - (from >> power) + 1;
    }
    return count;
  }
};

/**
 * How many packets the decoder goes through, one for each layer of each precinct of a sample; and how many places it
 * looks for them at. These lie as close in each direction as the smallest side of any precinct.
 */
std::int64_t steps_of(const Coding& coding, const Side& x, const Side& y, std::int64_t samples) {
  std::int64_t precincts = 0;
  Coding::Powers closest{Coding::kMostLevels, Coding::kMostLevels};
  for (std::int64_t halved = 0; halved <= coding.levels; ++halved) {
    const Coding::Powers power = coding.precincts[static_cast<std::size_t>(halved)];
    precincts += x.precincts(halved, power.x) * y.precincts(halved, power.y);
    closest.take(power.x + halved, power.y + halved);
  }
  const std::int64_t places = x.precincts(0, closest.x) * y.precincts(0, closest.y) * (coding.levels + 1);
  return samples * (coding.layers * precincts + coding.orders * places);
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
  // More than one, as not all tiles and samples are coded in the worst way.
  constexpr std::int64_t kStepsOfByte = 4;
  constexpr std::int64_t kStepsAside = 2000000;
  const std::size_t at = code_stream_of(file);
  const auto side = [&](std::size_t place) {
    const auto word = [&](std::size_t n) { return number_at(file, at + place + 8 * n, 4); };
    return Side{word(0), word(1), word(2), word(3)};
  };
  const Side x = side(8);
  const Side y = side(12);
  const std::int64_t samples = number_at(file, at + 40, 2);
  if (number_at(file, at, 4) != kStart || !x.is_whole() || !y.is_whole() || samples == 0) {
    refuse_damaged(Format::kJpeg2000);
  }
  if (samples > kMostSamples) refuse_kind(Format::kJpeg2000, "more than four samples a pixel");
  const std::int64_t width = x.end - x.first;
  const std::int64_t height = y.end - y.first;
  check_size(width, height, static_cast<int>(8 * kBytesOfSample * samples), limits);
  const std::int64_t tiles = x.tiles() * y.tiles();
  if (tiles > kMostTiles) refuse_damaged(Format::kJpeg2000);
  const Coding coding = coding_of(file, at);
  const std::int64_t notes =
      (tiles * (kBytesOfTile + kBytesOfTileSample * samples) + samples * notes_of_blocks(coding, width, height)) /
      (width * height);
  check_size(width, height, static_cast<int>(8 * (kBytesOfSample * samples + notes)), limits);
  // In a whole file each packet has a byte; the decoder goes through all that are told, whether they are there or not.
  if (steps_of(coding, x, y, samples) > kStepsOfByte * static_cast<std::int64_t>(file.size()) + kStepsAside) {
    refuse_damaged(Format::kJpeg2000);
  }
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
