/**
 * @file on_white.h
 * @brief Transparency, resolved on white.
 */
#ifndef VANTREL_CLI_FORMATS_ON_WHITE_H
#define VANTREL_CLI_FORMATS_ON_WHITE_H

#include <algorithm>

namespace tool {

/** A level as it looks on white. */
inline unsigned char on_white(int level, int opacity) {
  const float part = static_cast<float>(opacity) / 255.0F;
  return static_cast<unsigned char>((1.0 - part) * 255 + static_cast<double>(part * static_cast<float>(level)));
}

/** A level that is multiplied with its opacity already: what the opacity lacks is white. */
inline unsigned char on_white_premultiplied(int level, int opacity) {
  return static_cast<unsigned char>(std::min(255, level + 255 - opacity));
}

/** A row of so many levels a pixel, each pixel with its opacity behind, without the opacity; `to` may be `from`. */
template <unsigned char (*kBlend)(int, int)>
void row_on_white(const unsigned char* from, int width, int levels, unsigned char* to) {
  for (int x = 0; x < width; ++x, from += levels + 1) {
    const int opacity = from[levels];
    for (int i = 0; i < levels; ++i) *to++ = kBlend(from[i], opacity);
  }
}

}  // namespace tool

#endif
