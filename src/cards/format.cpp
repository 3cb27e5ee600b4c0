#include "cards/format.h"

#include <cstring>

#include "image/gray.h"

namespace vantrel::cards {
namespace {

constexpr unsigned char kOpaque = 255;

void to_gray(const unsigned char* source, vantrel_format from, unsigned char* target, int count) {
  switch (from) {
    case VANTREL_FORMAT_BGR:
      return image::row_to_gray<3, 0>(source, target, count);
    case VANTREL_FORMAT_RGB:
      return image::row_to_gray<3, 2>(source, target, count);
    case VANTREL_FORMAT_BGRA:
      return image::row_to_gray<4, 0>(source, target, count);
    default:
      return image::row_to_gray<4, 2>(source, target, count);
  }
}

void write_pixel(unsigned char* pixel, const Layout& layout, int blue, int green, int red, int opacity) {
  pixel[layout.blue] = static_cast<unsigned char>(blue);
  pixel[layout.green] = static_cast<unsigned char>(green);
  pixel[layout.red] = static_cast<unsigned char>(red);
  if (layout.opacity >= 0) pixel[layout.opacity] = static_cast<unsigned char>(opacity);
}

void from_bilevel(const unsigned char* source, unsigned char* target, const Layout& to, int count) {
  for (int i = 0; i < count; ++i, target += to.bytes) {
    const int level = (source[i / 8] & 0x80 >> i % 8) != 0 ? 255 : 0;
    write_pixel(target, to, level, level, level, kOpaque);
  }
}

void to_colour(const unsigned char* source, const Layout& from, unsigned char* target, const Layout& to, int count) {
  for (int i = 0; i < count; ++i, source += from.bytes, target += to.bytes) {
    const int opacity = from.opacity >= 0 ? source[from.opacity] : kOpaque;
    write_pixel(target, to, source[from.blue], source[from.green], source[from.red], opacity);
  }
}

}  // namespace

void convert_row(const unsigned char* source, vantrel_format from, unsigned char* target, vantrel_format to,
                 int count) {
  if (from == VANTREL_FORMAT_BILEVEL) {
    from_bilevel(source, target, layout_of(to), count);
  } else if (from == to) {
    std::memcpy(target, source, static_cast<std::size_t>(row_bytes(count, from)));
  } else if (to == VANTREL_FORMAT_GRAY) {
    to_gray(source, from, target, count);
  } else {
    to_colour(source, layout_of(from), target, layout_of(to), count);
  }
}

}  // namespace vantrel::cards
