/**
 * @file target.h
 * @brief Pictures that are written: into the caller's memory, or into a block that is handed out.
 */
#ifndef VANTREL_CARDS_TARGET_H
#define VANTREL_CARDS_TARGET_H

#include <cstdlib>

#include "cards/source.h"
#include "image/view.h"

namespace vantrel::cards {

/**
 * Reads what a record asks for: its own shape, or the natural one where it leaves the shape to the library.
 *
 * @return VANTREL_OK, or why there is no such picture; `shape` is then not defined.
 */
vantrel_status requested_shape(const vantrel_picture& picture, const Shape& natural, Shape& shape);

/**
 * The memory of a picture that is being made. The caller's record changes by `hand_over` only; a block that was not
 * handed over is released at the end of the scope.
 */
class Target {
 public:
  /** @param shape from `requested_shape` of the same record. */
  Target(const vantrel_picture& picture, const Shape& shape);
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;
  ~Target() { std::free(block_); }

  /** Whether there is memory. */
  bool ready() const { return made_.data != nullptr; }

  /** The pixels, the picture's top row first, or its bottom row. */
  image::Pixels rows_from_top() const {
    return {static_cast<unsigned char*>(made_.data), made_.height, made_.width, made_.stride};
  }
  image::Pixels memory_rows() const { return rows_from_top().upside_down(); }
  vantrel_format format() const { return made_.format; }

  /** Gives the finished picture to the caller. */
  void hand_over(vantrel_picture& picture);

 private:
  vantrel_picture made_;
  void* block_ = nullptr;
};

}  // namespace vantrel::cards

#endif
