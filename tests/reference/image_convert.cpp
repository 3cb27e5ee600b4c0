#include "reference/image_convert.h"

#include <cstdlib>

#include "support/tally.h"

namespace reference::image {

Picture gray_of(const Picture& colour) {
  Picture gray(colour.cols, colour.rows, 8, 255);
  gray.x_resolution = colour.x_resolution;
  gray.y_resolution = colour.y_resolution;
  for (int row = 0; row < colour.rows; ++row) {
    for (int col = 0; col < colour.cols; ++col) {
      const int blue = colour.at(row, 3 * col);
      const int green = colour.at(row, 3 * col + 1);
      const int red = colour.at(row, 3 * col + 2);
      gray.at(row, col) = static_cast<unsigned char>((2 * blue + 9 * green + 5 * red) / 16);
    }
  }
  return gray;
}

Picture plane_of(const Picture& colour, int channel) {
  Picture plane(colour.cols, colour.rows, 8, 0);
  for (int row = 0; row < colour.rows; ++row) {
    for (int col = 0; col < colour.cols; ++col) plane.at(row, col) = colour.at(row, 3 * col + channel);
  }
  return plane;
}

bool inside(const Picture& source, MYRECT rect) {
  const int height = std::abs(rect.top - rect.bottom) + 1;
  return rect.left >= 0 && rect.right < source.cols && rect.bottom >= 0 && rect.bottom + height <= source.rows;
}

int bit_at(const Picture& bilevel, int row, int col) { return bilevel.at(row, col / 8) >> (7 - col % 8) & 1; }

namespace {

bool has_pixel(const Picture& source, int row, int col) {
  return row >= 0 && row < source.rows && col >= 0 && col < source.cols;
}

void crop_bytes(const Picture& source, MYRECT rect, Picture& result) {
  const int bytes_per_pixel = source.bits / 8;
  for (int row = 0; row < result.rows; ++row) {
    for (int col = 0; col < result.cols; ++col) {
      if (!has_pixel(source, rect.bottom + row, rect.left + col)) continue;
      for (int byte = 0; byte < bytes_per_pixel; ++byte) {
        result.at(row, bytes_per_pixel * col + byte) =
            source.at(rect.bottom + row, bytes_per_pixel * (rect.left + col) + byte);
      }
    }
  }
}

/** Whole bytes are put together from two neighbours, so that bits behind the last column come along. */
void crop_bits_inside(const Picture& source, MYRECT rect, Picture& result) {
  const int first = rect.left / 8;
  const int shift = rect.left % 8;
  for (int row = 0; row < result.rows; ++row) {
    for (int col = 0; col < result.cols; col += 8) {
      const int byte = first + col / 8;
      const int high = source.flat(rect.bottom + row, byte, 0) << shift;
      const int low = source.flat(rect.bottom + row, byte + 1, 0) >> (8 - shift);
      result.at(row, col / 8) = static_cast<unsigned char>(high | low);
    }
  }
}

void crop_bits_anywhere(const Picture& source, MYRECT rect, Picture& result) {
  for (int row = 0; row < result.rows; ++row) {
    for (int col = 0; col < result.cols; ++col) {
      if (!has_pixel(source, rect.bottom + row, rect.left + col)) continue;
      if (bit_at(source, rect.bottom + row, rect.left + col) == 1) continue;
      result.at(row, col / 8) = static_cast<unsigned char>(result.at(row, col / 8) & ~(0x80 >> col % 8));
    }
  }
}

}  // namespace

Crop crop(const Picture& source, MYRECT rect) {
  const auto height = static_cast<short>(std::abs(rect.top - rect.bottom) + 1);
  const auto width = static_cast<short>(rect.right - rect.left + 1);
  if (height < 0 || width < 0) {
    support::tally::count("crop: negative size");
    return {};
  }
  Crop result{1, Picture(width, height, source.bits, 255)};
  result.picture->x_resolution = source.x_resolution;
  result.picture->y_resolution = source.y_resolution;
  if (source.bits == 8 || source.bits == 24) {
    crop_bytes(source, rect, *result.picture);
  } else if (source.bits != 1) {
    support::tally::count("crop: other depth");
    result.code = -1;
  } else if (inside(source, rect)) {
    support::tally::count("crop: bits inside");
    crop_bits_inside(source, rect, *result.picture);
  } else {
    support::tally::count("crop: bits partly outside");
    crop_bits_anywhere(source, rect, *result.picture);
  }
  return result;
}

}  // namespace reference::image
