/**
 * @file colours.h
 * @brief What colours mean: profiles that fit no output are resolved into sRGB.
 */
#ifndef VANTREL_CLI_COLOURS_H
#define VANTREL_CLI_COLOURS_H

#include <memory>
#include <optional>

#include "metadata.h"

namespace tool {

/** Which colours an output's format can tell the meaning of. */
enum class Profiles {
  kNone,      /**< none: all are taken for sRGB */
  kOwn,       /**< gray pictures hold a profile of gray levels, coloured ones one of red, green and blue */
  kColourOnly /**< it keeps gray pictures as coloured ones */
};

/** What becomes of a picture's profile in an output. */
struct FittingColours {
  bool profile_stays = false;
  std::optional<Bitmap> converted; /**< the picture in sRGB, where the profile does not stay */
};

/**
 * Makes picture and profile fit each other and the output. No profile, or a damaged one, means sRGB.
 *
 * @throws std::bad_alloc
 */
FittingColours fit_colours(const Bitmap& picture, const Bytes& icc, Profiles held);

/** Turns rows of cyan, magenta, yellow and black into red, green and blue of sRGB: by a profile, or plainly. */
class CmykReader {
 public:
  /** @param inverted 255 is no ink. */
  CmykReader(const Bytes& icc, bool inverted);
  void convert(const unsigned char* cmyk, int width, unsigned char* rgb) const;

 private:
  std::shared_ptr<void> transform_; /**< null: plainly */
  bool inverted_;
};

}  // namespace tool

#endif
