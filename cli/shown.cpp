#include "shown.h"

#include <algorithm>

#include "library.h"

namespace tool {

Bitmap small_overlay(const Scan& scan, const Finding& finding, int side) {
  Canvas canvas(scan.image);
  if (finding.draw) finding.draw(canvas);
  Bitmap drawn = canvas.picture();
  const int times = std::max(drawn.width(), drawn.height()) / side;
  return times > 1 && std::min(drawn.width(), drawn.height()) >= times ? reduced(drawn, times) : std::move(drawn);
}

std::string title_of(const Report& report) {
  return report.pages > 1 ? report.input + ", page " + std::to_string(report.page) : report.input;
}

}  // namespace tool
