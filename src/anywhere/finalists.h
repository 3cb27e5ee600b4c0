/**
 * @file finalists.h
 * @brief The candidates that are laid onto the scan, and how likely each is a card's border.
 */
#ifndef VANTREL_ANYWHERE_FINALISTS_H
#define VANTREL_ANYWHERE_FINALISTS_H

#include <cstddef>
#include <span>

#include "anywhere/analysis.h"
#include "anywhere/rivalry.h"
#include "anywhere/scan.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** How far the scan's border may lie from a candidate's, in pixels of the copy. */
inline constexpr double kBorderReach = 2.5;

/** Finalists, the best first once they are judged. */
struct Finalists {
  image::WorkArray<Finalist> items;
  std::size_t count = 0;

  std::span<Finalist> all() { return {items.get(), count}; }
  std::span<const Finalist> all() const { return {items.get(), count}; }
};

/** Takes the likeliest candidates of the copy that differ, lays them onto the scan and measures them. False: no memory.
 */
bool measure_likeliest(const Scan& scan, const Analysis& analysis, Finalists& finalists);

/** The same, judged and in order. */
bool choose_finalists(const Scan& scan, const Analysis& analysis, Finalists& finalists);

}  // namespace vantrel::anywhere

#endif
