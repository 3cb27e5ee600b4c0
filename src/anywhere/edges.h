/**
 * @file edges.h
 * @brief The edges of a copy, thin and with their place between the pixels.
 */
#ifndef VANTREL_ANYWHERE_EDGES_H
#define VANTREL_ANYWHERE_EDGES_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "anywhere/copy.h"
#include "anywhere/directions.h"
#include "image/work_array.h"

namespace vantrel::anywhere {

/** A gradient of one level a pixel. */
inline constexpr int kGradient = 128;

/** The gradient at a pixel, in the plane in which it is greatest. */
struct Gradient {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t magnitude = 0;
};

/** A place where the gradient is greatest along its own direction. */
struct Edge {
  float x;
  float y;
  std::uint16_t magnitude; /**< kGradient a level a pixel */
  std::uint8_t direction;  /**< of the gradient, as a bin of directions.h */
};

/** The edges of a copy by their direction, those of one direction row by row from the top down. */
struct Edges {
  image::WorkArray<Edge> places;
  std::size_t count = 0;
  int threshold = 0; /**< the least magnitude */
  std::array<std::uint32_t, kDirections + 1> starts{};

  bool ready() const { return places.ready(); }
  std::span<const Edge> all() const { return {places.get(), count}; }
  /** Calls `function` with each edge whose direction is no more than `turn` bins from `direction`. */
  template <class Function>
  void for_each_near(int direction, int turn, Function function) const {
    constexpr double kFar = 1e9;
    for_each_near(direction, turn, -kFar, kFar, function);
  }
  /** The same for edges from y = `top` to y = `bottom`, and perhaps some beside these. */
  template <class Function>
  void for_each_near(int direction, int turn, double top, double bottom, Function function) const {
    for (int d = direction - turn; d <= direction + turn; ++d) {
      const auto bin = static_cast<std::size_t>((d + kDirections) % kDirections);
      const std::uint32_t end = starts[bin + 1];
      for (std::uint32_t i = first_below(starts[bin], end, top); i < end && places[i].y <= bottom + 1.0F; ++i)
        function(places[i]);
    }
  }

 private:
  /** Of the edges of a direction the first that may lie below y: an edge lies up to a pixel below its row's upper rim.
   */
  std::uint32_t first_below(std::uint32_t first, std::uint32_t end, double y) const {
    while (first < end) {
      const std::uint32_t middle = first + (end - first) / 2;
      if (places[middle].y < y - 1.0) {
        first = middle + 1;
      } else {
        end = middle;
      }
    }
    return first;
  }
};

/** The gradients of a copy, row by row; 0 on its outermost pixels. Not ready without memory. */
image::WorkArray<Gradient> find_gradients(const Copy& copy);

/** The least magnitude of an edge: what most of the picture stays below. */
int edge_threshold(std::span<const Gradient> gradients);

/** The gradients that are greatest across their direction. */
Edges find_edges(const Copy& copy, std::span<const Gradient> gradients);

}  // namespace vantrel::anywhere

#endif
