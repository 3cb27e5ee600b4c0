#include "formats/tiff_judgement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

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

}  // namespace

bool sound_tiff_pieces(TIFF* tiff, const Bytes& file) {
  const bool tiled = TIFFIsTiled(tiff) != 0;
  const bool jbig = tiff_short(tiff, TIFFTAG_COMPRESSION) == COMPRESSION_JBIG;
  const std::uint32_t count = tiled ? TIFFNumberOfTiles(tiff) : TIFFNumberOfStrips(tiff);
  const std::uint64_t unpacked = tiled ? TIFFTileSize64(tiff) : TIFFStripSize64(tiff);
  for (std::uint32_t piece = 0; piece < count; ++piece) {
    const std::uint64_t offset = TIFFGetStrileOffset(tiff, piece);
    const std::uint64_t bytes = TIFFGetStrileByteCount(tiff, piece);
    if (offset == 0 || bytes == 0 || offset > file.size() || bytes > file.size() - offset) return false;
    // The decoder takes what the header asks for, and ends the process where it cannot have it.
    if (jbig && !JbigData(tiff, file.data() + offset, bytes).within(unpacked)) return false;
  }
  return count > 0;
}

}  // namespace tool
