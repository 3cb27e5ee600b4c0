#include <cstdint>

#include "vantrel.h"

namespace {

constexpr std::uint32_t square(std::uint32_t i) { return i * i; }

}  // namespace

// An array cannot be returned from a function, so the function's values are listed, a power of four at a time.
#define VANTREL_SQUARES_4(i) square(i), square((i) + 1), square((i) + 2), square((i) + 3)
#define VANTREL_SQUARES_16(i) \
  VANTREL_SQUARES_4(i), VANTREL_SQUARES_4((i) + 4), VANTREL_SQUARES_4((i) + 8), VANTREL_SQUARES_4((i) + 12)
#define VANTREL_SQUARES_64(i) \
  VANTREL_SQUARES_16(i), VANTREL_SQUARES_16((i) + 16), VANTREL_SQUARES_16((i) + 32), VANTREL_SQUARES_16((i) + 48)

constexpr std::uint32_t SQUARE_TABLE[256] = {VANTREL_SQUARES_64(0u), VANTREL_SQUARES_64(64u), VANTREL_SQUARES_64(128u),
                                             VANTREL_SQUARES_64(192u)};

static_assert(SQUARE_TABLE[3] == 9 && SQUARE_TABLE[255] == 65025);
