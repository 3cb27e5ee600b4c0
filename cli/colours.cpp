#include "colours.h"

#include <lcms2.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "big_endian.h"
#include "icc_extent.h"
#include "memory.h"

namespace tool {
namespace {

struct ProfileRelease {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};

/** No handle: there is none, or it is damaged. */
struct Profile {
  std::unique_ptr<void, ProfileRelease> handle;
  std::uint64_t space = 0; /**< as its head says: the library's answer is an enumeration, whatever stands there */
};

Profile opened(const Bytes& icc) {
  constexpr std::size_t kSpace = 16;
  if (icc.empty() || !is_modest_profile(icc)) return {};
  Profile profile;
  profile.handle.reset(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
  if (profile.handle) profile.space = big_endian(icc.data() + kSpace, 4);
  return profile;
}

/** Colours of a profile to 8-bit sRGB; null when the profile allows none. */
std::shared_ptr<void> transform_to_srgb(const Profile& from, cmsUInt32Number format) {
  const std::unique_ptr<void, ProfileRelease> srgb(cmsCreate_sRGBProfile());
  void* const transform =
      cmsCreateTransform(from.handle.get(), format, srgb.get(), TYPE_RGB_8, INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
  if (transform == nullptr) return nullptr;
  return {transform, cmsDeleteTransform};
}

using Levels = std::array<unsigned char, 256>;

/** What each gray level is in sRGB: of a profile of gray levels, or where all three colours have that level. */
bool levels_in_srgb(const Profile& profile, Levels& levels) {
  const bool gray = profile.space == cmsSigGrayData;
  const auto transform = transform_to_srgb(profile, gray ? TYPE_GRAY_8 : TYPE_RGB_8);
  if (!transform) return false;
  for (std::size_t level = 0; level < levels.size(); ++level) {
    std::array<unsigned char, 3> in{};
    std::array<unsigned char, 3> out{};
    in.fill(static_cast<unsigned char>(level));
    cmsDoTransform(transform.get(), in.data(), out.data(), 1);
    levels[level] = out[1];
  }
  return true;
}

/** A copy of the picture whose rows `convert(from, to, width)` makes. */
template <class Convert>
Bitmap converted(const Bitmap& picture, Convert convert) {
  Bitmap result(picture.width(), picture.height(), picture.format(), picture.resolution());
  for (int y = 0; y < picture.height(); ++y) convert(picture.row(y), result.row(y), picture.width());
  return result;
}

/** Each byte of the picture is a level. */
std::optional<Bitmap> with_levels_in_srgb(const Bitmap& picture, const Profile& profile) {
  Levels levels{};
  if (!levels_in_srgb(profile, levels)) return std::nullopt;
  return converted(picture, [&](const unsigned char* from, unsigned char* to, int width) {
    for (int i = 0; i < width * picture.depth() / 8; ++i) to[i] = levels[from[i]];
  });
}

std::optional<Bitmap> with_colours_in_srgb(const Bitmap& picture, const Profile& profile) {
  const auto transform = transform_to_srgb(profile, TYPE_RGB_8);
  if (!transform) return std::nullopt;
  return converted(picture, [&](const unsigned char* from, unsigned char* to, int width) {
    cmsDoTransform(transform.get(), from, to, static_cast<cmsUInt32Number>(width));
  });
}

}  // namespace

FittingColours fit_colours(const Bitmap& picture, const Bytes& icc, Profiles held) {
  const bool colour = picture.depth() == 24;
  // Black and white are the same everywhere.
  if (icc.empty() || picture.depth() == 1) return {};
  const ForeignCode foreign(Large::kCrashes);
  const Profile profile = opened(icc);
  if (profile.space != cmsSigRgbData && profile.space != cmsSigGrayData) return {};
  const bool can_stay = held == Profiles::kOwn || (held == Profiles::kColourOnly && colour);
  if (can_stay && (profile.space == cmsSigRgbData) == colour) return {true, std::nullopt};
  const bool colours = colour && profile.space == cmsSigRgbData;
  return {false, colours ? with_colours_in_srgb(picture, profile) : with_levels_in_srgb(picture, profile)};
}

CmykReader::CmykReader(const Bytes& icc, bool inverted) : inverted_(inverted) {
  if (icc.empty()) return;
  const ForeignCode foreign(Large::kCrashes);
  const Profile profile = opened(icc);
  if (profile.space == cmsSigCmykData) {
    transform_ = transform_to_srgb(profile, inverted ? TYPE_CMYK_8_REV : TYPE_CMYK_8);
  }
}

void CmykReader::convert(const unsigned char* cmyk, int width, unsigned char* rgb) const {
  if (transform_) {
    cmsDoTransform(transform_.get(), cmyk, rgb, static_cast<cmsUInt32Number>(width));
    return;
  }
  for (int x = 0; x < width; ++x, cmyk += 4, rgb += 3) {
    const auto light = [&](int ink) { return inverted_ ? cmyk[ink] : 255 - cmyk[ink]; };
    for (int i = 0; i < 3; ++i) rgb[i] = static_cast<unsigned char>(light(i) * light(3) / 255);
  }
}

}  // namespace tool
