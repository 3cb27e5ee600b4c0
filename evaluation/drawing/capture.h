// What optics, sensor and file make of a scene.
#pragma once

#include <functional>
#include <vector>

#include "drawing/drawn_scan.h"
#include "drawing/ground.h"
#include "drawing/random.h"

namespace vantrel::drawing {

struct Capture {
  double blur = 0;    // deviation of the point spread, in pixels
  double fringe = 0;  // how far blue and red lie off, along y, to either hand
  double grain = 0;   // noise that the optics blur too
  double noise = 0, chroma_noise = 0;
  double slope_x = 0, slope_y = 0;  // light from one border to the other, as part of the level
  double vignette = 0;              // what the corners lack
  double stripes = 0;               // deviation of the columns' gains
  double banding = 0, band = 20;    // the lamp's flicker, and its period in rows
  bool gray = false;
  int quality = 0;  // of JPEG, or 0
  bool halved_chroma = false;
};

Capture pick_scanner_capture(Random& random, std::vector<std::string>& effects);
Capture pick_camera_capture(Random& random, std::vector<std::string>& effects);

// Makes the picture's bytes from the scene's rows, which `draw` draws from the top.
void develop(const Capture& capture, Random& random, const std::function<void(int, Row&)>& draw, DrawnScan& scan);

}  // namespace vantrel::drawing
