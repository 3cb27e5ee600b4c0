/**
 * @file slanted_card.h
 * @brief A card that lies aslant on a ground, drawn exactly: each pixel is the mean of what it covers.
 */
#ifndef VANTREL_TESTS_ANYWHERE_SLANTED_CARD_H
#define VANTREL_TESTS_ANYWHERE_SLANTED_CARD_H

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "anywhere/quad.h"
#include "anywhere/scan.h"
#include "support/random.h"

namespace support {

using Colour = std::array<double, 3>; /**< red, green, blue */

/** What is drawn. Distances are in pixels. */
struct SlantedCard {
  int width = 640;
  int height = 480;
  double centre_x = 320.3;
  double centre_y = 240.6;
  double half_width = 230.0;
  double half_height = 140.0;
  double slope = 0.1; /**< of the upper side */
  Colour card = {235, 235, 235};
  Colour ground = {60, 60, 60};
  double shadow_width = 0.0; /**< of a dark line around the card */
  double shadow = 0.0;       /**< by how much it is darker than the ground */
  double frame_inset = 0.0;  /**< of a line that is printed along the border, 2 pixels wide */
  bool writing = false;      /**< black blocks near the upper side, over two thirds of it */
  double noise = 0.0;        /**< the largest deviation of a level */

  double size() const { return std::sqrt(1.0 + slope * slope); }
  /** A point of the card, from its centre along its sides. */
  vantrel::anywhere::Point at(double u, double v) const {
    return {centre_x + (u - v * slope) / size(), centre_y + (u * slope + v) / size()};
  }
  vantrel::anywhere::Quad quad() const {
    return {{at(-half_width, -half_height), at(half_width, -half_height), at(half_width, half_height),
             at(-half_width, half_height)}};
  }
  Colour colour_at(double x, double y) const;
};

inline Colour SlantedCard::colour_at(double x, double y) const {
  const double u = ((x - centre_x) + (y - centre_y) * slope) / size();
  const double v = ((y - centre_y) - (x - centre_x) * slope) / size();
  const double outside = std::max(std::abs(u) - half_width, std::abs(v) - half_height);
  if (outside > shadow_width) return ground;
  if (outside > 0) return {ground[0] - shadow, ground[1] - shadow, ground[2] - shadow};
  if (frame_inset > 0 && -outside >= frame_inset && -outside < frame_inset + 2) return {40, 40, 40};
  const double below_top = v + half_height;
  if (writing && below_top > 4 && below_top < 9 && u < half_width / 3) return {20, 20, 20};
  return card;
}

/** The pixels of a drawn card, as rows of red, green and blue. */
class DrawnCard {
 public:
  explicit DrawnCard(const SlantedCard& card) : card_(card) {
    Random random(7);
    for (int y = 0; y < card.height; ++y) {
      for (int x = 0; x < card.width; ++x) {
        for (const double level : mean_at(x, y)) {
          const double noise = random.real(-card.noise, card.noise);
          bytes_.push_back(static_cast<unsigned char>(std::clamp(level + noise + 0.5, 0.0, 255.0)));
        }
      }
    }
  }

  const std::vector<unsigned char>& bytes() const { return bytes_; }
  vantrel::anywhere::Scan scan() const {
    return {{bytes_.data(), card_.height, card_.width, 3 * card_.width}, vantrel::anywhere::Layout::kRgb};
  }

 private:
  Colour mean_at(int x, int y) const {
    // Only where something ends within the pixel there is something to be averaged.
    const Colour middle = card_.colour_at(x + 0.5, y + 0.5);
    bool plain = true;
    for (const double dx : {-0.2, 0.5, 1.2})
      for (const double dy : {-0.2, 0.5, 1.2}) plain = plain && card_.colour_at(x + dx, y + dy) == middle;
    if (plain) return middle;
    constexpr int kParts = 16;
    Colour sum{};
    for (int i = 0; i < kParts * kParts; ++i) {
      const Colour part = card_.colour_at(x + (i % kParts + 0.5) / kParts, y + (i / kParts + 0.5) / kParts);
      for (std::size_t c = 0; c < 3; ++c) sum[c] += part[c] / (kParts * kParts);
    }
    return sum;
  }

  SlantedCard card_;
  std::vector<unsigned char> bytes_;
};

}  // namespace support

#endif
