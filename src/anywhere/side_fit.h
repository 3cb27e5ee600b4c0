/**
 * @file side_fit.h
 * @brief A quadrilateral's sides laid onto the outline of the region that it encloses.
 */
#ifndef VANTREL_ANYWHERE_SIDE_FIT_H
#define VANTREL_ANYWHERE_SIDE_FIT_H

#include "anywhere/copy.h"
#include "anywhere/outline.h"
#include "anywhere/quad.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** How well a quadrilateral describes a region. */
struct Plausibility {
  double mean_share = 0.0;  /**< of the places along the sides, those that have the outline beside them */
  double least_share = 0.0; /**< of the worst side */
  double fill = 0.0;        /**< the region's area, holes filled, over the quadrilateral's */

  double score() const;
};

/** Fits in the same memory, one quadrilateral after the other. */
class SideFitter {
 public:
  explicit SideFitter(const Copy& copy) : copy_(copy), places_(most_places(copy)) {}

  bool ready() const { return places_.ready(); }
  /** Moves each side onto the steps of the copy along the outline near its middle part; those without stay. */
  void fit(const Outline& outline, Quad& quad);
  Plausibility judge(const Outline& outline, const Quad& quad);

 private:
  /** A place of the outline: where along an axis, and where across. */
  struct Place {
    double along;
    double across;
  };
  static std::size_t most_places(const Copy& copy) {
    return static_cast<std::size_t>(copy.rows > copy.cols ? copy.rows : copy.cols);
  }
  enum class Snap { kNo, kYes };
  std::size_t collect(const Outline& outline, Point from, Point to, double margin, Snap snap);
  int step(bool level, int along, int across) const;
  double snapped(bool level, int along, int across) const;
  bool fit_side(const Outline& outline, Point from, Point to, NormalLine& line);

  const Copy& copy_;
  image::WorkArray<Place> places_;
};

}  // namespace vantrel::anywhere

#endif
