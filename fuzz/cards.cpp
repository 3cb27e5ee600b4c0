// The interface for people: every method, cut and picture on images of every format, and numbers that are none.
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include "cards/pictures.h"
#include "fuzz/check.h"
#include "fuzz/images.h"
#include "support/random.h"
#include "vantrel_cards.h"

namespace {

using pictures::Memory;
using support::Random;

double any_double(Random& random, double low, double high) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const std::array special = {0.0, -1.0, 1e300, kInfinite, -kInfinite, std::nan("")};
  return random.one_in(12) ? special[random.bits() % special.size()] : random.real(low, high);
}

/** A drawn card, or a pattern, in one of the formats, with rows in either order and a gap behind each. */
Memory any_memory(Random& random) {
  const support::Image drawn = fuzz::any_image(random, random.one_in(2) ? 8 : 24);
  const vantrel_format format = pictures::kFormats[random.bits() % pictures::kFormats.size()];
  const pictures::Rows rows = random.one_in(2) ? pictures::Rows::kFromTop : pictures::Rows::kFromBottom;
  const int width = std::max(drawn.width(), 1);
  const int height = std::max(drawn.height(), 1);
  Memory memory(width, height, format, rows, random.pick(0, 5));
  const int channels = drawn.header().biBitCount / 8;
  return memory.draw([&](int x, int y) -> pictures::Colour {
    if (drawn.width() == 0 || drawn.height() == 0) return {0, 0, 0};
    const int row = drawn.height() - 1 - y;
    const auto channel = [&](int k) { return drawn.at(row, x * channels + (channels == 1 ? 0 : k)); };
    return {channel(0), channel(1), channel(2)};
  });
}

void check_card(const vantrel_card& card) {
  FUZZ_CHECK(card.confidence >= 0 && card.confidence <= 1);
  FUZZ_CHECK(std::isfinite(card.tilt));
  for (const vantrel_point& corner :
       {card.corners.top_left, card.corners.top_right, card.corners.bottom_right, card.corners.bottom_left}) {
    FUZZ_CHECK(std::isfinite(corner.x) && std::isfinite(corner.y));
  }
}

/** What a method knows is told of one that looked; a record of another size is refused. */
template <class Details>
void check_details(const vantrel_cards* cards, vantrel_method method,
                   vantrel_status (*details_of)(const vantrel_cards*, Details*)) {
  Details details{};
  FUZZ_CHECK(details_of(cards, &details) != VANTREL_OK);
  details.size = sizeof details;
  const vantrel_status status = details_of(cards, &details);
  FUZZ_CHECK(status == VANTREL_OK || status == VANTREL_ERROR_ABSENT);
  if (vantrel_cards_reason(cards, method) == VANTREL_REASON_NOT_TRIED) FUZZ_CHECK(status == VANTREL_ERROR_ABSENT);
}

void find(Random& random, const vantrel_image& image) {
  std::array<vantrel_method, 5> methods{};
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.method_count = static_cast<std::size_t>(random.pick(0, 5));
  for (vantrel_method& method : methods) method = pictures::number<vantrel_method>(random.pick(0, 4));
  options.methods = methods.data();
  options.analysis_dpi = any_double(random, 0, 700);
  options.straighten = random.pick(-1, 2);
  options.most_cards = random.pick(-1, 70);
  vantrel_cards* cards = nullptr;
  const vantrel_status status = vantrel_find(&image, random.one_in(4) ? nullptr : &options, &cards);
  FUZZ_CHECK((status == VANTREL_OK) == (cards != nullptr));
  FUZZ_CHECK(status != VANTREL_ERROR_MEMORY);
  if (cards == nullptr) return;
  const std::size_t count = vantrel_cards_count(cards);
  vantrel_card card = VANTREL_CARD_INIT;
  for (std::size_t i = 0; i < count; ++i) {
    FUZZ_CHECK(vantrel_cards_get(cards, i, &card) == VANTREL_OK);
    check_card(card);
    vantrel_card other = VANTREL_CARD_INIT;
    for (std::size_t k = 0; vantrel_cards_alternative(cards, i, k, &other) == VANTREL_OK; ++k) check_card(other);
    vantrel_picture picture{};
    if (vantrel_cut(&image, &card.corners, any_double(random, 0, 3), &picture) == VANTREL_OK) {
      vantrel_picture_release(&picture);
    }
  }
  FUZZ_CHECK(vantrel_cards_get(cards, count, &card) != VANTREL_OK);
  for (int method = -1; method < 6; ++method) {
    const auto asked = pictures::number<vantrel_method>(method);
    FUZZ_CHECK(vantrel_reason_text(vantrel_cards_reason(cards, asked)) != nullptr);
  }
  check_details(cards, VANTREL_METHOD_DARK_GLASS, vantrel_cards_dark_glass);
  check_details(cards, VANTREL_METHOD_FLAT_LIGHT, vantrel_cards_flat_light);
  check_details(cards, VANTREL_METHOD_SHEET, vantrel_cards_sheet);
  vantrel_cards_release(cards);
}

/** What needs no picture, of numbers that mean something and of some that do not. */
void ask(Random& random, const vantrel_image& image) {
  const int number = random.pick(-2, 20);
  FUZZ_CHECK(vantrel_status_text(pictures::number<vantrel_status>(number)) != nullptr);
  FUZZ_CHECK(vantrel_reason_text(pictures::number<vantrel_reason>(number)) != nullptr);
  FUZZ_CHECK((vantrel_method_name(pictures::number<vantrel_method>(number)) != nullptr) ==
             (number >= 1 && number <= 4));
  FUZZ_CHECK(vantrel_limit_value(pictures::number<vantrel_limit>(number)) >= 0);
  FUZZ_CHECK(vantrel_image_check(&image) != VANTREL_ERROR_MEMORY);
  const auto point = [&] {
    const double x = any_double(random, -20, 90);
    return vantrel_point{x, any_double(random, -20, 90)};
  };
  const vantrel_quad quad = {point(), point(), point(), point()};
  vantrel_quad scaled = quad;
  if (vantrel_quad_scale(&quad, any_double(random, 0, 3), &scaled) != VANTREL_OK) {
    FUZZ_CHECK(std::memcmp(&quad, &scaled, sizeof quad) == 0);
  } else {
    FUZZ_CHECK(std::isfinite(scaled.top_left.x) && std::isfinite(scaled.bottom_right.y));
  }
}

/** Runs an operation into a block of the library's, then into the caller's memory: the same pixels. */
template <class Make>
void make(Random& random, Make operation) {
  vantrel_picture made{};
  const vantrel_status status = operation(&made);
  FUZZ_CHECK((status == VANTREL_OK) == (made.data != nullptr));
  if (status != VANTREL_OK) return;
  if (std::int64_t{made.width} * made.height <= 100000) {
    Memory own(made.width, made.height, made.format, pictures::Rows::kFromBottom, random.pick(0, 4));
    vantrel_picture target = own.picture();
    FUZZ_CHECK(operation(&target) == VANTREL_OK);
    const std::size_t bytes =
        static_cast<std::size_t>(made.width) * static_cast<std::size_t>(vantrel_format_bits(made.format)) / 8;
    for (int y = 0; y < made.height; ++y) {
      const auto* row = static_cast<const unsigned char*>(made.data) + y * made.stride;
      FUZZ_CHECK(std::memcmp(row, own.row(y), bytes) == 0);
    }
  }
  vantrel_picture_release(&made);
  FUZZ_CHECK(made.data == nullptr);
}

void pictures_of(Random& random, const vantrel_image& image) {
  const auto point = [&] {
    const double x = any_double(random, -20, 90);
    return vantrel_point{x, any_double(random, -20, 90)};
  };
  const vantrel_quad quad = {point(), point(), point(), point()};
  const auto bound = [&] { return random.one_in(9) ? static_cast<int>(random.bits()) : random.pick(-2, 70); };
  const vantrel_rect rectangle = {bound(), bound(), bound(), bound()};
  const double margin = any_double(random, -3, 3);
  const int times = random.pick(-1, 9);
  int32_t width = 0;
  int32_t height = 0;
  switch (random.pick(0, 4)) {
    case 0:
      // Corners far apart make large pictures, which are right but slow.
      if (vantrel_cut_size(&quad, margin, &width, &height) != VANTREL_OK || std::int64_t{width} * height > 40000)
        return;
      return make(random, [&](auto* target) { return vantrel_cut(&image, &quad, margin, target); });
    case 1:
      return make(random, [&](auto* target) { return vantrel_crop(&image, &rectangle, target); });
    case 2:
      return make(random, [&](auto* target) { return vantrel_reduce(&image, times, target); });
    case 3:
      return make(random, [&](auto* target) { return vantrel_convert(&image, target); });
    default: {
      const auto method = random.one_in(2) ? VANTREL_ENLARGE_LINEAR : VANTREL_ENLARGE_CUBIC;
      return make(random, [&](auto* target) { return vantrel_enlarge(&image, method, target); });
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  Random random(data, size);
  // A search takes as long as twenty pictures.
  const bool finds = random.one_in(10);
  Memory memory = any_memory(random);
  const std::vector<unsigned char> before = memory.bytes();
  vantrel_image image = memory.image(any_double(random, 0, 1300));
  if (random.one_in(16)) (random.one_in(2) ? image.width : image.height) = -random.pick(0, 1);
  finds ? find(random, image) : pictures_of(random, image);
  ask(random, image);
  FUZZ_CHECK(memory.bytes() == before);
  return 0;
}
