#include "formats/tiff_judgement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "formats/codecs.h"
#include "formats/tiff_file.h"

namespace tool {
namespace {

/** The data of a piece in the order of bits in which libtiff hands them to the decoder of JBIG. */
class JbigData {
 public:
  JbigData(TIFF* tiff, const unsigned char* data, std::size_t size)
      : data_(data), size_(size), bits_(TIFFGetBitRevTable(tiff_short(tiff, TIFFTAG_FILLORDER) == FILLORDER_MSB2LSB)) {}

  /** Whether what they become, by their own header, is at most so many bytes. */
  bool within(std::uint64_t most) const {
    if (size_ < kHeaderSize) return true;  // which is no picture
    const std::uint64_t row = std::uint64_t{byte(2)} * ((std::uint64_t{number(4)} + 7) / 8);
    const std::uint32_t rows = height();
    return rows == 0 || row <= most / rows;
  }

 private:
  static constexpr std::size_t kHeaderSize = 20;
  static constexpr std::size_t kTableSize = 1728;

  std::uint32_t byte(std::size_t at) const { return bits_[data_[at]]; }
  std::uint32_t number(std::size_t at) const {
    return byte(at) << 24 | byte(at + 1) << 16 | byte(at + 2) << 8 | byte(at + 3);
  }

  /** Where it was not known when the data began, the true one stands in a marker among them. */
  std::uint32_t height() const {
    constexpr std::uint32_t kLateHeight = 0x20;
    constexpr std::uint32_t kTable = 0x07;
    constexpr std::uint32_t kOwnTable = 0x06;
    const std::uint32_t told = number(8);
    const std::uint32_t options = byte(19);
    if ((options & kLateHeight) == 0) return told;
    std::size_t at = (options & kTable) == kOwnTable ? kHeaderSize + kTableSize : kHeaderSize;
    while (at + 6 <= size_) {
      if (byte(at) != 0xff) {
        ++at;
        continue;
      }
      switch (byte(at + 1)) {
        case 0x00:  // no marker, but a byte of 255
        case 0x02:  // the end of a stripe
        case 0x03:
        case 0x04:
          at += 2;
          break;
        case 0x05:
          return std::min(told, number(at + 2));
        case 0x06:  // another place to look at
          at += 8;
          break;
        case 0x07:  // a comment
          at += std::size_t{6} + number(at + 2);
          break;
        default:
          return told;
      }
    }
    return told;
  }

  const unsigned char* data_;
  std::size_t size_;
  const unsigned char* bits_; /**< of each byte, in their order or reversed */
};

/** All the strips or tiles of a page. */
struct Pieces {
  bool tiled;
  std::int64_t width;
  std::int64_t height;
  std::uint64_t count;
  std::uint64_t unpacked; /**< bytes, of each */
};

Pieces pieces_of(TIFF* tiff) {
  const std::uint32_t height = tiff_number(tiff, TIFFTAG_IMAGELENGTH);
  if (TIFFIsTiled(tiff) == 0) {
    return {false, tiff_number(tiff, TIFFTAG_IMAGEWIDTH), std::min(tiff_number(tiff, TIFFTAG_ROWSPERSTRIP), height),
            TIFFNumberOfStrips(tiff), TIFFStripSize64(tiff)};
  }
  return {true, tiff_number(tiff, TIFFTAG_TILEWIDTH), tiff_number(tiff, TIFFTAG_TILELENGTH), TIFFNumberOfTiles(tiff),
          TIFFTileSize64(tiff)};
}

/** What the pieces become, in the bits that their pixels have in the file. */
void judge_unpacked(TIFF* tiff, const Pieces& pieces, const Limits& limits) {
  const double bits = std::max<double>(tiff_short(tiff, TIFFTAG_BITSPERSAMPLE), 1);
  const double samples = tiff_short(tiff, TIFFTAG_SAMPLESPERPIXEL);
  const bool together = tiff_short(tiff, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_CONTIG;
  check_size(pieces.width, pieces.height, static_cast<int>(std::min(together ? bits * samples : bits, 1e9)), limits);
  if (!pieces.tiled) return;
  // Tiles are unpacked as a whole, however far they reach beyond the picture. Those of small pictures are often as
  // large as those of large ones, as in a pyramid.
  constexpr double kTimes = 4;
  constexpr double kAnyPicture = 64 << 20;
  const double picture =
      bits / 8 * samples * tiff_number(tiff, TIFFTAG_IMAGEWIDTH) * tiff_number(tiff, TIFFTAG_IMAGELENGTH);
  if (static_cast<double>(pieces.count) * static_cast<double>(pieces.unpacked) > kTimes * picture + kAnyPicture) {
    refuse_kind(Format::kTiff, "tiles far larger than the picture");
  }
}

}  // namespace

bool sound_tiff_pieces(TIFF* tiff, const Bytes& file, const Limits& limits) {
  const Pieces pieces = pieces_of(tiff);
  judge_unpacked(tiff, pieces, limits);
  // Pieces may share their bytes, as white strips do, which are small beside what they become. What becomes next to
  // nothing, again and again, was made for its work.
  constexpr std::uint64_t kHeader = 1024;
  const std::uint64_t most_packed = file.size() + pieces.count * (pieces.unpacked + kHeader);
  std::uint64_t packed = 0;
  const bool jbig = tiff_short(tiff, TIFFTAG_COMPRESSION) == COMPRESSION_JBIG;
  for (std::uint32_t piece = 0; piece < pieces.count; ++piece) {
    const std::uint64_t offset = TIFFGetStrileOffset(tiff, piece);
    const std::uint64_t bytes = TIFFGetStrileByteCount(tiff, piece);
    if (offset == 0 || bytes == 0 || offset > file.size() || bytes > file.size() - offset) return false;
    packed += bytes;
    if (packed > most_packed) return false;
    // The decoder takes what the header asks for, and ends the process where it cannot have it.
    if (jbig && !JbigData(tiff, file.data() + offset, bytes).within(pieces.unpacked)) return false;
  }
  return pieces.count > 0;
}

}  // namespace tool
