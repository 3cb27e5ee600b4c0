/**
 * @file heif_items.h
 * @brief The pictures of a HEIC file that are put together from others, judged before the decoder makes room for them.
 */
#ifndef VANTREL_CLI_FORMATS_HEIF_ITEMS_H
#define VANTREL_CLI_FORMATS_HEIF_ITEMS_H

#include <cstdint>
#include <optional>

#include "metadata.h"
#include "size_limits.h"

namespace tool {

struct AssembledSize {
  std::int64_t width;
  std::int64_t height;
};

/**
 * The size that the file's own picture is put together to, if it is.
 *
 * @throws Failure one of its pictures is larger than allowed or than the file says of it, is put together in more than
 * one step, is not coded as HEVC, or is damaged.
 */
std::optional<AssembledSize> check_heif_items(const Bytes& file, const Limits& limits);

}  // namespace tool

#endif
