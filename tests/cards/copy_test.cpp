// Crops, conversions, reductions and enlargements of small images.
#include <gtest/gtest.h>

#include <limits>

#include "cards/pictures.h"

namespace {

using pictures::Colour;
using pictures::Memory;
using pictures::Picture;
using pictures::Rows;

constexpr std::array kOrders = {Rows::kFromTop, Rows::kFromBottom};

/** The natural picture of a call. */
template <class Call>
std::vector<int> bytes_of(const Memory& memory, Call call) {
  const vantrel_image image = memory.image();
  Picture picture;
  EXPECT_EQ(call(&image, &picture), VANTREL_OK);
  return picture.bytes();
}

template <class Call>
vantrel_status status_of(const Memory& memory, Call call) {
  const vantrel_image image = memory.image();
  Picture picture;
  const vantrel_status status = call(&image, &picture);
  EXPECT_EQ(status == VANTREL_OK, picture.data != nullptr);
  return status;
}

/** Blue counts columns, green rows. */
Memory grid(int width, int height, vantrel_format format, Rows rows = Rows::kFromTop, int gap = 0) {
  Memory memory(width, height, format, rows, gap);
  return memory.draw([](int x, int y) { return Colour{x, y, 200, 100}; });
}

std::vector<int> crop(const Memory& memory, vantrel_rect rectangle) {
  return bytes_of(memory, [&](auto* image, auto* target) { return vantrel_crop(image, &rectangle, target); });
}

TEST(CardsCrop, CopiesPixelsOfEveryFormat) {
  for (const Rows rows : kOrders) {
    const vantrel_rect rectangle = {2, 1, 4, 3};
    EXPECT_EQ(crop(grid(5, 4, VANTREL_FORMAT_GRAY, rows, 3), rectangle), (std::vector<int>{1, 1, 2, 2}));
    EXPECT_EQ(crop(grid(5, 4, VANTREL_FORMAT_BGR, rows, 3), rectangle),
              (std::vector<int>{2, 1, 200, 3, 1, 200, 2, 2, 200, 3, 2, 200}));
    EXPECT_EQ(crop(grid(5, 4, VANTREL_FORMAT_RGB, rows, 3), rectangle),
              (std::vector<int>{200, 1, 2, 200, 1, 3, 200, 2, 2, 200, 2, 3}));
    EXPECT_EQ(crop(grid(5, 4, VANTREL_FORMAT_BGRA, rows, 3), rectangle),
              (std::vector<int>{2, 1, 200, 100, 3, 1, 200, 100, 2, 2, 200, 100, 3, 2, 200, 100}));
    EXPECT_EQ(crop(grid(5, 4, VANTREL_FORMAT_RGBA, rows, 3), rectangle),
              (std::vector<int>{200, 1, 2, 100, 200, 1, 3, 100, 200, 2, 2, 100, 200, 2, 3, 100}));
  }
}

TEST(CardsCrop, CopiesBitsFromAnywhereInARow) {
  for (const Rows rows : kOrders) {
    Memory memory(19, 2, VANTREL_FORMAT_BILEVEL, rows, 1);
    // 1011 0011 1000 1111 000 and its opposite
    const std::array bits = {1, 0, 1, 1, 0, 0, 1, 1, 1, 0, 0, 0, 1, 1, 1, 1, 0, 0, 0};
    memory.draw([&](int x, int y) {
      const int level = bits[static_cast<std::size_t>(x)] == y ? 0 : 255;
      return Colour{level, level, level};
    });
    EXPECT_EQ(crop(memory, {0, 0, 8, 2}), (std::vector<int>{0b10110011, 0b01001100}));
    EXPECT_EQ(crop(memory, {3, 0, 19, 1}), (std::vector<int>{0b10011100, 0b01111000}));
    EXPECT_EQ(crop(memory, {3, 1, 19, 2}), (std::vector<int>{0b01100011, 0b10000111}));
    EXPECT_EQ(crop(memory, {7, 0, 9, 2}), (std::vector<int>{0b11000000, 0}));
    EXPECT_EQ(crop(memory, {18, 1, 19, 2}), (std::vector<int>{0b10000000}));
  }
}

TEST(CardsCrop, LeavesTheBitsBehindItsOwnAlone) {
  Memory memory(16, 1, VANTREL_FORMAT_BILEVEL);
  memory.draw([](int, int) { return Colour{255, 255, 255}; });
  const vantrel_image image = memory.image();
  const vantrel_rect rectangle = {1, 0, 11, 1};
  Memory own(10, 1, VANTREL_FORMAT_BILEVEL);
  own.row(0)[0] = own.row(0)[1] = 0b00010101;
  Picture picture(own.picture());
  ASSERT_EQ(vantrel_crop(&image, &rectangle, &picture), VANTREL_OK);
  EXPECT_EQ(picture.bytes(), (std::vector<int>{0xFF, 0b11010101}));
}

TEST(CardsCrop, RefusesRectanglesThatAreEmptyOrOutside) {
  const Memory memory = grid(5, 4, VANTREL_FORMAT_GRAY);
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr int kLeast = std::numeric_limits<int>::min();
  for (const vantrel_rect& rectangle : {vantrel_rect{2, 1, 2, 3}, vantrel_rect{2, 3, 4, 3}, vantrel_rect{3, 1, 2, 3},
                                        vantrel_rect{-1, 0, 2, 2}, vantrel_rect{0, -1, 2, 2}, vantrel_rect{0, 0, 6, 2},
                                        vantrel_rect{0, 0, 2, 5}, vantrel_rect{kLeast, 0, kMost, 2}}) {
    EXPECT_EQ(status_of(memory, [&](auto* image, auto* target) { return vantrel_crop(image, &rectangle, target); }),
              VANTREL_ERROR_GEOMETRY);
  }
  EXPECT_EQ(status_of(memory, [](auto* image, auto* target) { return vantrel_crop(image, nullptr, target); }),
            VANTREL_ERROR_NULL);
}

std::vector<int> convert(const Memory& memory, vantrel_format format) {
  return bytes_of(memory, [&](auto* image, auto* target) {
    target->format = format;
    return vantrel_convert(image, target);
  });
}

TEST(CardsConvert, MakesGrayUnlessAskedOtherwise) {
  for (const vantrel_format format : pictures::kColourFormats) {
    Memory memory(2, 1, format);
    memory.draw([](int x, int) { return x == 0 ? Colour{10, 20, 30, 1} : Colour{255, 255, 255, 0}; });
    // (2 * 10 + 9 * 20 + 5 * 30) / 16 = 21.875
    EXPECT_EQ(convert(memory, pictures::number<vantrel_format>(0)), (std::vector<int>{21, 255}));
  }
}

TEST(CardsConvert, OrdersChannelsAsTheFormatSays) {
  for (const Rows rows : kOrders) {
    for (const vantrel_format from : pictures::kColourFormats) {
      Memory memory(1, 2, from, rows, 1);
      memory.draw([](int, int y) { return Colour{10 + y, 20 + y, 30 + y, 40 + y}; });
      const bool opacity = vantrel_format_bits(from) == 32;
      const int first = opacity ? 40 : 255;
      const int second = opacity ? 41 : 255;
      EXPECT_EQ(convert(memory, VANTREL_FORMAT_GRAY), (std::vector<int>{21, 22}));
      EXPECT_EQ(convert(memory, VANTREL_FORMAT_BGR), (std::vector<int>{10, 20, 30, 11, 21, 31}));
      EXPECT_EQ(convert(memory, VANTREL_FORMAT_RGB), (std::vector<int>{30, 20, 10, 31, 21, 11}));
      EXPECT_EQ(convert(memory, VANTREL_FORMAT_BGRA), (std::vector<int>{10, 20, 30, first, 11, 21, 31, second}));
      EXPECT_EQ(convert(memory, VANTREL_FORMAT_RGBA), (std::vector<int>{30, 20, 10, first, 31, 21, 11, second}));
    }
  }
}

TEST(CardsConvert, MakesThreeEqualChannelsOfGray) {
  Memory memory(2, 1, VANTREL_FORMAT_GRAY);
  memory.draw([](int x, int) { return Colour{0, 7 + x, 0}; });
  EXPECT_EQ(convert(memory, VANTREL_FORMAT_GRAY), (std::vector<int>{7, 8}));
  EXPECT_EQ(convert(memory, VANTREL_FORMAT_BGR), (std::vector<int>{7, 7, 7, 8, 8, 8}));
  EXPECT_EQ(convert(memory, VANTREL_FORMAT_RGBA), (std::vector<int>{7, 7, 7, 255, 8, 8, 8, 255}));
}

TEST(CardsConvert, MakesBlackAndWhiteOfBits) {
  Memory memory(10, 1, VANTREL_FORMAT_BILEVEL);
  memory.draw([](int x, int) { return x == 1 || x == 9 ? Colour{255, 255, 255} : Colour{0, 0, 0}; });
  EXPECT_EQ(convert(memory, VANTREL_FORMAT_GRAY), (std::vector<int>{0, 255, 0, 0, 0, 0, 0, 0, 0, 255}));
  const std::vector<int> bgra = convert(memory, VANTREL_FORMAT_BGRA);
  EXPECT_EQ(std::vector<int>(bgra.begin(), bgra.begin() + 8), (std::vector<int>{0, 0, 0, 255, 255, 255, 255, 255}));
  EXPECT_EQ(convert(memory, VANTREL_FORMAT_BILEVEL), (std::vector<int>{0b01000000, 0b01000000}));
}

TEST(CardsConvert, MakesNoBitsOfLevels) {
  for (const vantrel_format format : pictures::kByteFormats) {
    EXPECT_EQ(status_of(grid(2, 2, format),
                        [](auto* image, auto* target) {
                          target->format = VANTREL_FORMAT_BILEVEL;
                          return vantrel_convert(image, target);
                        }),
              VANTREL_ERROR_TARGET);
  }
}

TEST(CardsConvert, KeepsTheSize) {
  EXPECT_EQ(status_of(grid(2, 2, VANTREL_FORMAT_BGR),
                      [](auto* image, auto* target) {
                        target->width = 3;
                        return vantrel_convert(image, target);
                      }),
            VANTREL_ERROR_TARGET);
}

std::vector<int> reduce(const Memory& memory, int times) {
  return bytes_of(memory, [&](auto* image, auto* target) { return vantrel_reduce(image, times, target); });
}

TEST(CardsReduce, TakesTruncatedMeansFromTheTopLeft) {
  for (const Rows rows : kOrders) {
    Memory memory(5, 3, VANTREL_FORMAT_GRAY, rows, 2);
    const std::array levels = {10, 11, 20, 23, 255, 12, 14, 21, 23, 255, 255, 255, 255, 255, 255};
    memory.draw([&](int x, int y) { return Colour{0, levels[static_cast<std::size_t>(5 * y + x)], 0}; });
    // 47 / 4 and 87 / 4; the last column and row are left over
    EXPECT_EQ(reduce(memory, 2), (std::vector<int>{11, 21}));
    // (10 + 11 + 20 + 12 + 14 + 21 + 3 * 255) / 9
    EXPECT_EQ(reduce(memory, 3), (std::vector<int>{94}));
    EXPECT_EQ(reduce(memory, 1), (std::vector<int>(levels.begin(), levels.end())));
  }
}

TEST(CardsReduce, TakesTheMeanOfEachChannel) {
  const auto colour_at = [](int x, int y) { return Colour{10 * x, 100 + y, 7, 50 + x}; };
  for (const Rows rows : kOrders) {
    EXPECT_EQ(reduce(Memory(4, 2, VANTREL_FORMAT_BGR, rows).draw(colour_at), 2),
              (std::vector<int>{5, 100, 7, 25, 100, 7}));
    EXPECT_EQ(reduce(Memory(4, 2, VANTREL_FORMAT_RGBA, rows).draw(colour_at), 2),
              (std::vector<int>{7, 100, 5, 50, 7, 100, 25, 52}));
  }
}

TEST(CardsReduce, HoldsTheSumOfTheLargestBlock) {
  Memory memory(4096, 4096, VANTREL_FORMAT_GRAY);
  std::fill(memory.bytes().begin(), memory.bytes().end(), static_cast<unsigned char>(255));
  EXPECT_EQ(reduce(memory, 4096), (std::vector<int>{255}));
}

TEST(CardsReduce, RefusesWhatLeavesNothing) {
  const auto status = [](const Memory& memory, int times) {
    return status_of(memory, [&](auto* image, auto* target) { return vantrel_reduce(image, times, target); });
  };
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 4), VANTREL_OK);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 5), VANTREL_ERROR_SIZE);
  EXPECT_EQ(status(grid(4, 5, VANTREL_FORMAT_GRAY), 5), VANTREL_ERROR_SIZE);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 0), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), -2), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 4097), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(Memory(8, 8, VANTREL_FORMAT_BILEVEL), 2), VANTREL_ERROR_FORMAT);
}

std::vector<int> enlarge(const Memory& memory, vantrel_enlargement method, int width = 0) {
  return bytes_of(memory, [&](auto* image, auto* target) {
    target->width = width;
    return vantrel_enlarge(image, method, target);
  });
}

TEST(CardsEnlarge, PutsRoundedMeansBetweenPixels) {
  for (const Rows rows : kOrders) {
    Memory memory(2, 2, VANTREL_FORMAT_GRAY, rows, 1);
    const std::array levels = {10, 21, 40, 50};
    memory.draw([&](int x, int y) { return Colour{0, levels[static_cast<std::size_t>(2 * y + x)], 0}; });
    // Rows are made from the bottom upwards, so it is the top row that is repeated.
    EXPECT_EQ(enlarge(memory, VANTREL_ENLARGE_LINEAR),
              (std::vector<int>{10, 16, 21, 21, 10, 16, 21, 21, 25, 30, 36, 36, 40, 45, 50, 50}));
    EXPECT_EQ(enlarge(memory, VANTREL_ENLARGE_LINEAR, 6),
              (std::vector<int>{10, 16, 21, 21, 21, 21, 10, 16, 21, 21, 21, 21,  //
                                25, 30, 36, 36, 36, 36, 40, 45, 50, 50, 50, 50}));
  }
}

TEST(CardsEnlarge, TreatsChannelsAlike) {
  const auto colour_at = [](int x, int y) { return Colour{10 * x * x, 3 * x * y, 5 + x * y * y, 200 - x}; };
  for (const vantrel_enlargement method : {VANTREL_ENLARGE_LINEAR, VANTREL_ENLARGE_CUBIC}) {
    const std::vector<int> expected = enlarge(Memory(7, 6, VANTREL_FORMAT_BGRA).draw(colour_at), method);
    for (const Rows rows : kOrders) {
      for (const vantrel_format format : pictures::kColourFormats) {
        const std::vector<int> found = enlarge(Memory(7, 6, format, rows, 5).draw(colour_at), method);
        const std::size_t bytes = static_cast<std::size_t>(vantrel_format_bits(format)) / 8;
        const bool blue_first = format == VANTREL_FORMAT_BGR || format == VANTREL_FORMAT_BGRA;
        ASSERT_EQ(found.size(), 14 * 12 * bytes);
        for (std::size_t i = 0; i < 14 * 12; ++i) {
          EXPECT_EQ(found[bytes * i + (blue_first ? 0 : 2)], expected[4 * i]);
          EXPECT_EQ(found[bytes * i + 1], expected[4 * i + 1]);
          EXPECT_EQ(found[bytes * i + (blue_first ? 2 : 0)], expected[4 * i + 2]);
          if (bytes == 4) {
            EXPECT_EQ(found[bytes * i + 3], expected[4 * i + 3]);
          }
        }
      }
    }
  }
}

TEST(CardsEnlarge, WeighsFourNeighboursCubically) {
  Memory memory(5, 5, VANTREL_FORMAT_GRAY);
  const std::array levels = {0, 100, 200, 50, 50};
  memory.draw([&](int x, int) { return Colour{0, levels[static_cast<std::size_t>(x)], 0}; });
  const std::vector<int> found = enlarge(memory, VANTREL_ENLARGE_CUBIC);
  // (9 * (100 + 200) - 0 - 50 + 8) / 16 and (9 * (200 + 50) - 100 - 50 + 8) / 16 in a row in the middle
  EXPECT_EQ(std::vector<int>(found.begin() + 50, found.begin() + 60),
            (std::vector<int>{0, 0, 100, 166, 200, 131, 50, 50, 50, 50}));
}

TEST(CardsEnlarge, RefusesWhatItDoesNotTake) {
  const auto status = [](const Memory& memory, int method, int width = 0, int height = 0) {
    return status_of(memory, [&](auto* image, auto* target) {
      target->width = width;
      target->height = height;
      return vantrel_enlarge(image, pictures::number<vantrel_enlargement>(method), target);
    });
  };
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 1, 11, 8), VANTREL_OK);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 1, 9, 8), VANTREL_ERROR_TARGET);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 1, 10, 9), VANTREL_ERROR_TARGET);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 0), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(grid(5, 4, VANTREL_FORMAT_GRAY), 3), VANTREL_ERROR_OPTION);
  EXPECT_EQ(status(Memory(8, 8, VANTREL_FORMAT_BILEVEL), 1), VANTREL_ERROR_FORMAT);
  EXPECT_EQ(status(Memory(2000, 1, VANTREL_FORMAT_GRAY), 1), VANTREL_OK);
  EXPECT_EQ(status(Memory(2001, 1, VANTREL_FORMAT_GRAY), 1), VANTREL_ERROR_SIZE);
  EXPECT_EQ(status(Memory(1, 2001, VANTREL_FORMAT_GRAY), 2), VANTREL_ERROR_SIZE);
}

}  // namespace
