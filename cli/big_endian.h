/**
 * @file big_endian.h
 * @brief Numbers as most formats write them.
 */
#ifndef VANTREL_CLI_BIG_ENDIAN_H
#define VANTREL_CLI_BIG_ENDIAN_H

#include <cstddef>
#include <cstdint>

namespace tool {

/** A number of so many bytes, the most significant first. */
inline std::uint64_t big_endian(const unsigned char* from, std::size_t bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < bytes; ++i) number = number << 8 | from[i];
  return number;
}

}  // namespace tool

#endif
