#include "given_entries.h"

#include <vantrel.h>

#include <array>
#include <cstring>
#include <new>
#include <vector>

#include "library.h"

namespace tool {
namespace {

std::ptrdiff_t stride_of(int width, vantrel_format format) {
  return (std::ptrdiff_t{width} * vantrel_format_bits(format) + 31) / 32 * 4;
}

/** An image as a packed block: a header, a palette for gray, and the rows from the bottom, blue first. */
class PackedBlock {
 public:
  /** @param format gray or BGR. */
  PackedBlock(const Bitmap& image, vantrel_format format) {
    const vantrel_image view = image.view();
    const std::ptrdiff_t stride = stride_of(view.width, format);
    const std::size_t pixels = static_cast<std::size_t>(stride) * static_cast<std::size_t>(view.height);
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = view.width;
    header.biHeight = view.height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<std::uint16_t>(vantrel_format_bits(format));
    header.biSizeImage = static_cast<std::uint32_t>(pixels);
    header.biClrUsed = format == VANTREL_FORMAT_GRAY ? 256 : 0;
    // No entry reads the palette of a gray image.
    const std::size_t start = sizeof header + header.biClrUsed * sizeof(RGBQUAD);
    bytes_.resize(start + pixels);
    std::memcpy(bytes_.data(), &header, sizeof header);
    info_ = bytes_.data();
    unsigned char* rows = bytes_.data() + start;
    convert(view, {rows + stride * (view.height - 1), view.width, view.height, -stride, format, nullptr});
    record_ = {static_cast<BITMAPINFOHEADER*>(info_), reinterpret_cast<RGBQUAD*>(bytes_.data() + sizeof header), rows};
  }
  PackedBlock(const PackedBlock&) = delete;
  PackedBlock& operator=(const PackedBlock&) = delete;

  void** handle() { return &info_; }
  BITMAPPTR* record() { return &record_; }

 private:
  std::vector<unsigned char> bytes_;
  void* info_;
  BITMAPPTR record_;
};

/** A result of the library's, released at the end. */
struct ResultBlock {
  ~ResultBlock() {
    void* block = record.pInfo;
    FreeCardImg(&block);
  }
  vantrel_image view(vantrel_format format) const {
    const int width = record.pInfo->biWidth;
    const int height = record.pInfo->biHeight;
    const std::ptrdiff_t stride = stride_of(width, format);
    return {record.pBits + stride * (height - 1), width, height, -stride, format, 0};
  }
  BITMAPPTR record{};
};

}  // namespace

std::optional<vantrel_quad> gradient_corners(const Bitmap& scan) {
  PackedBlock gray(scan, VANTREL_FORMAT_GRAY);
  std::array<float, 8> c{};
  std::array<float, 8> box{};
  const int found = vantrel_find_gradient_corners(gray.record(), c.data(), box.data());
  if (found < 0) throw std::bad_alloc();
  if (found == 0) return {};
  return vantrel_quad{{c[0], c[1]}, {c[2], c[3]}, {c[6], c[7]}, {c[4], c[5]}};
}

BorderRows border_rows(const Bitmap& scan) {
  PackedBlock gray(scan, VANTREL_FORMAT_GRAY);
  int near = 0;
  int far = 0;
  if (!ClipImg(gray.record(), near, far)) throw std::bad_alloc();
  const int last = scan.height() - 1;
  return {last - far, last - near};
}

Bitmap stretched_card(const Bitmap& analysed, const Bitmap& scan, int scale) {
  // The entry wants both in one depth. It finds the same on gray levels that come as colours.
  const vantrel_format format = scan.depth() == 8 ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_BGR;
  PackedBlock search(analysed, format);
  PackedBlock source(scan, format);
  ResultBlock result;
  if (vantrel_auto_clip(search.handle(), source.handle(), &result.record, scale) != 1) throw std::bad_alloc();
  Bitmap card(scan.width(), scan.height(), scan.format(), scan.resolution());
  convert(result.view(format), card.target());
  return card;
}

}  // namespace tool
