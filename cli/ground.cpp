#include "ground.h"

#include <algorithm>
#include <array>
#include <vector>

#include "gray_copy.h"
#include "library.h"

namespace tool {
namespace {

constexpr int kMostDark = 90;
constexpr int kLeastLight = 170;
constexpr int kLeastColour = 40; /**< between the strongest and the weakest of the three */
constexpr int kPlaces = 64;      /**< that are looked at on each side of the frame */

struct Sample {
  int level;
  int colour;
};

double cross(const vantrel_point& a, const vantrel_point& b, double x, double y) {
  return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
}

bool covers(const vantrel_quad& q, double x, double y) {
  return cross(q.top_left, q.top_right, x, y) >= 0 && cross(q.top_right, q.bottom_right, x, y) >= 0 &&
         cross(q.bottom_right, q.bottom_left, x, y) >= 0 && cross(q.bottom_left, q.top_left, x, y) >= 0;
}

Sample sample_at(const vantrel_image& view, int x, int y) {
  const auto* row = static_cast<const unsigned char*>(view.data) + view.stride * y;
  const int bytes = vantrel_format_bits(view.format) / 8;
  const unsigned char* pixel = row + std::ptrdiff_t{x} * bytes;
  if (bytes == 1) return {pixel[0], 0};
  const auto [least, most] = std::minmax({pixel[0], pixel[1], pixel[2]});
  return {(pixel[0] + pixel[1] + pixel[2]) / 3, most - least};
}

template <class Member>
int median(std::vector<Sample>& samples, Member member) {
  const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
  std::nth_element(samples.begin(), middle, samples.end(),
                   [&](const Sample& a, const Sample& b) { return a.*member < b.*member; });
  return (*middle).*member;
}

}  // namespace

Ground ground_of(const Bitmap& scan, const CardSearch& search) {
  const Bitmap gray = scan.format() == VANTREL_FORMAT_BILEVEL ? converted(scan, VANTREL_FORMAT_GRAY) : Bitmap();
  const vantrel_image view = gray.empty() ? scan.view() : gray.view();
  std::vector<Sample> samples;
  const auto take = [&](int x, int y) {
    const bool covered = std::any_of(search.cards.begin(), search.cards.end(), [&](const FoundCard& found) {
      return found.claimed() && covers(found.card.corners, x + 0.5, y + 0.5);
    });
    if (!covered) samples.push_back(sample_at(view, x, y));
  };
  for (int i = 0; i < kPlaces; ++i) {
    const auto along = [&](int length) { return static_cast<int>((i + 0.5) / kPlaces * length); };
    const int inset = std::min(view.width, view.height) / 50;
    take(along(view.width), inset);
    take(along(view.width), view.height - 1 - inset);
    take(inset, along(view.height));
    take(view.width - 1 - inset, along(view.height));
  }
  if (samples.empty()) return Ground::kUnknown;
  if (median(samples, &Sample::colour) >= kLeastColour) return Ground::kColoured;
  const int level = median(samples, &Sample::level);
  if (level <= kMostDark) return Ground::kDark;
  return level >= kLeastLight ? Ground::kLight : Ground::kGray;
}

Json name_of(Ground ground) {
  constexpr std::array kNames = {"", "dark", "gray", "light", "coloured"};
  return ground == Ground::kUnknown ? Json() : Json(kNames[static_cast<std::size_t>(ground)]);
}

std::string words_of(Ground ground) {
  return ground == Ground::kUnknown ? "no ground to see" : "a " + name_of(ground).get<std::string>() + " ground";
}

}  // namespace tool
