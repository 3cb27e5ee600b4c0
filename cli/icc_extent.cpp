#include "icc_extent.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace tool {
namespace {

/** Profiles have three steps, mostly, and curves of three segments at most. */
constexpr std::size_t kMostSteps = 16;
constexpr std::size_t kMostSegments = 256;
/** Of ink, the widest space that is read; a step between others would be one of very many values. */
constexpr std::size_t kMostChannels = 4;
constexpr std::size_t kMostTags = 100;
/** Samples of curves that several channels share count for each of them. */
constexpr std::uint64_t kMostTimes = 8;
constexpr std::uint64_t kAlwaysAllowed = 64 << 10;

/** Reads numbers, of which those behind the end are 0. */
class Reader {
 public:
  explicit Reader(const Bytes& data) : data_(data) {}

  std::size_t size() const { return data_.size(); }

  std::size_t number(std::size_t at, std::size_t bytes) const {
    std::size_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) value = value << 8 | (at + i < data_.size() ? data_[at + i] : 0U);
    return value;
  }

  bool is(std::size_t at, std::string_view kind) const {
    return at <= size() && kind.size() <= size() - at && std::memcmp(data_.data() + at, kind.data(), kind.size()) == 0;
  }

 private:
  const Bytes& data_;
};

/** Whether a table of so many points in each direction lies within the profile. */
bool has_room(const Reader& profile, std::size_t points, std::size_t stride, std::size_t in, std::size_t value_bytes) {
  std::size_t bytes = value_bytes;
  for (std::size_t i = 0; i < in && bytes <= profile.size(); ++i) bytes *= profile.number(points + stride * i, 1);
  return bytes <= profile.size();
}

/** Tables of whole numbers, for which room is taken before they are read. */
bool has_room_for_table(const Reader& profile, std::size_t tag) {
  const std::size_t in = profile.number(tag + 8, 1);
  const std::size_t out = profile.number(tag + 9, 1);
  const bool bytes = profile.is(tag, "mft1");
  if (bytes || profile.is(tag, "mft2")) return has_room(profile, tag + 10, 0, in, out * (bytes ? 1 : 2));
  if (!profile.is(tag, "mAB ") && !profile.is(tag, "mBA ")) return true;
  constexpr std::size_t kMostDirections = 16;
  const std::size_t place = profile.number(tag + 24, 4);
  const std::size_t table = tag + place;
  return place == 0 || (in <= kMostDirections && has_room(profile, table, 1, in, out * profile.number(table + 16, 1)));
}

/** What the steps of a tag, or their curves, have together. */
struct Sum {
  std::size_t segments = 0;
  std::uint64_t samples = 0; /**< in bytes */
};

/** A curve: its number of segments, their limits, and then they themselves. */
void add_curve(const Reader& profile, std::size_t at, Sum& sum) {
  const std::size_t count = profile.number(at + 8, 2);
  sum.segments += count;
  std::size_t segment = at + 12 + 4 * (std::max<std::size_t>(count, 1) - 1);
  for (std::size_t i = 0; i < count && sum.segments <= kMostSegments && segment < profile.size(); ++i) {
    if (profile.is(segment, "samf")) {
      const std::size_t samples = profile.number(segment + 8, 4);
      sum.samples += 4 * samples;
      segment += 12 + 4 * samples;
    } else {
      constexpr std::size_t kParameters = 5;  // of the longest kind; the others have four
      segment += 12 + 4 * (profile.number(segment + 8, 2) == 0 ? kParameters - 1 : kParameters);
    }
  }
}

/** Steps in floating point. */
bool has_few(const Reader& profile, std::size_t tag) {
  const std::size_t steps = profile.number(tag + 12, 4);
  if (steps > kMostSteps) return false;
  Sum sum;
  for (std::size_t i = 0; i < steps; ++i) {
    const std::size_t step = tag + profile.number(tag + 16 + 8 * i, 4);
    const std::size_t in = profile.number(step + 8, 2);
    if (in > kMostChannels || profile.number(step + 10, 2) > kMostChannels) return false;
    if (profile.is(step, "clut") && !has_room(profile, step + 12, 1, in, 4 * profile.number(step + 10, 2)))
      return false;
    if (!profile.is(step, "cvst")) continue;
    for (std::size_t channel = 0; channel < in; ++channel) {
      add_curve(profile, step + profile.number(step + 12 + 8 * channel, 4), sum);
    }
  }
  return sum.segments <= kMostSegments && sum.samples <= kMostTimes * profile.size() + kAlwaysAllowed;
}

}  // namespace

bool is_modest_profile(const Bytes& icc) {
  constexpr std::size_t kTable = 128;
  const Reader profile(icc);
  const std::size_t tags = std::min(profile.number(kTable, 4), kMostTags);
  for (std::size_t i = 0; i < tags; ++i) {
    const std::size_t tag = profile.number(kTable + 4 + 12 * i + 4, 4);
    if (!has_room_for_table(profile, tag) || (profile.is(tag, "mpet") && !has_few(profile, tag))) return false;
  }
  return true;
}

}  // namespace tool
