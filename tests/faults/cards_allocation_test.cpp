// Every function of vantrel_cards.h with its first allocation failing, then its second, and so on: each one is reported
// as missing memory, nothing is written, and the same call succeeds when none fails.
#include <gtest/gtest.h>

#include <functional>

#include "cards/scans.h"
#include "faults/failing_allocators.h"

namespace {

using pictures::copy_of;
using pictures::Memory;
using pictures::Only;
using pictures::Picture;

/** Returns how many allocations a call makes. */
int fail_each_call(const std::function<vantrel_status()>& call) {
  for (int number = 0; number < 1000; ++number) {
    failing::fail_allocation(number);
    const vantrel_status status = call();
    const bool failed = failing::has_failed();
    failing::fail_allocation(-1);
    EXPECT_EQ(status, failed ? VANTREL_ERROR_MEMORY : VANTREL_OK) << number;
    if (!failed) return number;
  }
  ADD_FAILURE() << "no end of allocations";
  return 0;
}

/** Searches a scan; the handle is null unless there is an answer. */
int fail_find(const Memory& memory, double dpi, const vantrel_find_options& options, std::size_t expected) {
  const vantrel_image scan = memory.image(dpi);
  return fail_each_call([&] {
    char elsewhere = 0;
    auto* cards = reinterpret_cast<vantrel_cards*>(&elsewhere);
    const vantrel_status status = vantrel_find(&scan, &options, &cards);
    EXPECT_EQ(cards == nullptr, status != VANTREL_OK);
    if (status == VANTREL_OK) {
      EXPECT_EQ(vantrel_cards_count(cards), expected);
    }
    vantrel_cards_release(cards);
    return status;
  });
}

TEST(CardsAllocationFailure, EndsEachSearch) {
  for (const vantrel_format format : pictures::kByteFormats) {
    for (const double dpi : {200.0, 300.0}) {
      const Memory glass = pictures::card_on_glass(format);
      EXPECT_GE(fail_find(glass, dpi, Only(VANTREL_METHOD_DARK_GLASS), 1), 8);
    }
    const Memory flat = copy_of(pictures::card_on_flat_ground(), format);
    EXPECT_GE(fail_find(flat, 0, Only(VANTREL_METHOD_FLAT_LIGHT), 1), 2);
    std::vector<pictures::Block> strokes;
    for (int x = 180; x < 1245; x += 15) strokes.push_back({x, 540, x + 3, 1200});
    EXPECT_GE(fail_find(pictures::sheet_with(1500, 1500, strokes, format), 300, Only(VANTREL_METHOD_SHEET), 1), 4);
  }
}

TEST(CardsAllocationFailure, EndsASearchByAllMethods) {
  Memory blank(400, 300, VANTREL_FORMAT_RGB);
  const vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  EXPECT_GE(fail_find(blank, 300, options, 0), 8);
}

TEST(CardsAllocationFailure, EndsASearchAnywhere) {
  for (const vantrel_format format : pictures::kFormats) {
    EXPECT_GE(fail_find(pictures::card_on_glass(format), 0, Only(VANTREL_METHOD_ANYWHERE), 1), 4);
  }
  Only reduced(VANTREL_METHOD_ANYWHERE);
  reduced.analysis_dpi = 150;
  EXPECT_GE(fail_find(pictures::card_on_glass(VANTREL_FORMAT_RGB), 300, reduced, 1), 5);
}

TEST(CardsAllocationFailure, EndsTheSearchForTheBordersOfACardOnASheet) {
  Only options(VANTREL_METHOD_SHEET);
  const support::Image drawn = support::scan_of(support::turned_card(600, 500, 1065, 660, 2), 1200, 1000, 24);
  const Memory memory = copy_of(drawn, VANTREL_FORMAT_BGR);
  const int without = fail_find(memory, 300, options, 1);
  options.straighten = 1;
  EXPECT_GE(fail_find(memory, 300, options, 1), without + 6);
}

/** Makes a picture in a block of the library's, then in the caller's memory, which stays as it was on failure. */
void fail_picture(const std::function<vantrel_status(vantrel_picture*)>& make, int in_block, int in_memory) {
  Picture natural;
  ASSERT_EQ(make(&natural), VANTREL_OK);
  EXPECT_EQ(in_block, fail_each_call([&] {
              Picture picture;
              const vantrel_status status = make(&picture);
              EXPECT_EQ(picture.data == nullptr, status != VANTREL_OK);
              EXPECT_EQ(picture.width == 0, status != VANTREL_OK);
              return status;
            }));
  EXPECT_EQ(in_memory, fail_each_call([&] {
              Memory own(natural.width, natural.height, natural.format, pictures::Rows::kFromBottom, 3);
              const std::vector<unsigned char> before = own.bytes();
              vantrel_picture picture = own.picture();
              const vantrel_status status = make(&picture);
              EXPECT_EQ(own.bytes() == before, status != VANTREL_OK);
              return status;
            }));
}

TEST(CardsAllocationFailure, EndsEveryPicture) {
  const Memory memory = pictures::card_on_glass(VANTREL_FORMAT_BGRA);
  const vantrel_image image = memory.image();
  const vantrel_quad corners = pictures::upright(30, 20, 370, 280);
  const vantrel_rect rectangle = {10, 10, 200, 200};
  fail_picture([&](auto* target) { return vantrel_cut(&image, &corners, 0, target); }, 1, 0);
  fail_picture([&](auto* target) { return vantrel_crop(&image, &rectangle, target); }, 1, 0);
  fail_picture([&](auto* target) { return vantrel_reduce(&image, 3, target); }, 1, 0);
  fail_picture([&](auto* target) { return vantrel_convert(&image, target); }, 1, 0);
  fail_picture([&](auto* target) { return vantrel_enlarge(&image, VANTREL_ENLARGE_LINEAR, target); }, 2, 1);
  fail_picture([&](auto* target) { return vantrel_enlarge(&image, VANTREL_ENLARGE_CUBIC, target); }, 3, 2);
}

}  // namespace
