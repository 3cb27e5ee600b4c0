/**
 * @file record.h
 * @brief Records that begin with their size and may grow from version to version.
 */
#ifndef VANTREL_CARDS_RECORD_H
#define VANTREL_CARDS_RECORD_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include "vantrel_cards.h"

namespace vantrel::cards {

/**
 * Gives a record to the caller: of a program built against an older header the members that it knows, of one built
 * against a newer header those that the library knows.
 *
 * @param first the size that the record had in the first version: smaller ones there never were.
 */
template <class Record>
vantrel_status give(const Record& record, std::size_t first, Record& caller) {
  static_assert(std::is_trivially_copyable_v<Record> && offsetof(Record, size) == 0);
  const std::size_t size = caller.size;
  if (size < first) return VANTREL_ERROR_OPTION;
  constexpr std::size_t kSize = sizeof(std::size_t);
  std::memcpy(reinterpret_cast<unsigned char*>(&caller) + kSize,
              reinterpret_cast<const unsigned char*>(&record) + kSize, std::min(size, sizeof(Record)) - kSize);
  return VANTREL_OK;
}

}  // namespace vantrel::cards

#endif
