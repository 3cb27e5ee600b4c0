#include "lines/border_search.h"

#include <span>

#include "image/bitmap.h"
#include "lines/hough.h"
#include "lines/levels.h"
#include "lines/verify.h"

namespace vantrel {
namespace {

/** Fewer edge points than this make no border. */
constexpr int kLeastPoints = 50;

/** Horizontal borders are voted for and looked for within 15 degrees. */
constexpr Angles kHorizontalAngles{{75, 104}};

/** Vertical borders are voted for within 20 degrees; the steepest, 160, is not looked for. */
constexpr Angles kVerticalVotes{{0, 19}, {160, 179}};
constexpr Angles kVerticalAngles{{0, 19}, {161, 179}};

/** What a search knows of the image besides its edge points. */
struct Scene {
  ConstPixels gray;
  unsigned char* edge;
  _BNODE* components;
  int side;
  short brightness;
};

/** The slots of one side in the caller's arrays. */
struct LineSlots {
  double* normal;
  double* distance;

  void write_normal(const BorderLine& line) const {
    normal[0] = line.a;
    normal[1] = line.b;
  }
  void write(const BorderLine& line) const {
    write_normal(line);
    *distance = line.c;
  }
};

/** The points in which the two ways to accept a horizontal border differ. */
struct HorizontalRules {
  int bottom_quorum;          /**< votes needed at the bottom: the width over this (at the top: over 4) */
  bool level;                 /**< report the level line through the peak's distance */
  bool differs_in_brightness; /**< the strongest line needs a brightness class beyond it other than the image's */
  bool eager_for_runner_up;   /**< more reasons to prefer the runner-up */
  bool (*verify)(_BNODE*, int, int, int, int, short);
};

bool verify_clutter_and_cuts(_BNODE* line, int L, int rows, int cols, int side, short wbClass) {
  return VerifyCorrectLineV_2(line, L, rows, cols, side, wbClass) &&
         VerifyCorrectLineV_3(line, L, rows, cols, side, wbClass);
}

constexpr HorizontalRules kTiltedBorders{4, false, true, false, verify_clutter_and_cuts};
constexpr HorizontalRules kLevelBorders{5, true, false, true, VerifyCorrectLineV_3_ORVA};

bool on_horizontal_side(const Scene& scene) { return scene.side == kTop || scene.side == kBottom; }

/** The rows or columns between a line and the image's edge. */
Region band_beyond(const Scene& scene, int L) {
  const int rows = scene.gray.rows;
  const int cols = scene.gray.cols;
  switch (scene.side) {
    case kTop:
      return {L, rows, 0, cols};
    case kBottom:
      return {0, L, 0, cols};
    case kLeft:
      return {0, rows, 0, L};
    default:
      return {0, rows, L, cols};
  }
}

/** A line on the image's very edge has nothing beyond it. */
bool on_the_edge(const Scene& scene, int L) {
  switch (scene.side) {
    case kTop:
      return L >= scene.gray.rows - 1;
    case kRight:
      return L >= scene.gray.cols - 1;
    default:
      return L <= 0;
  }
}

/** Beyond the card lies the scanner's dark background. */
bool dark_beyond(const Scene& scene, int L) {
  return on_the_edge(scene, L) || mostly_dark(scene.gray, band_beyond(scene, L));
}

/** When the whole image is clearly bright or dark, the band beyond a horizontal line must not be the same. */
bool brightness_differs(const Scene& scene, int L) {
  if (scene.brightness == 0 || !on_horizontal_side(scene)) return true;
  return brightness_class(scene.gray, band_beyond(scene, L)) != scene.brightness;
}

bool background_beyond(const Scene& scene, const HorizontalRules& rules, int L) {
  return (!on_horizontal_side(scene) || dark_beyond(scene, L)) &&
         rules.verify(scene.components, L, scene.gray.rows, scene.gray.cols, scene.side, scene.brightness);
}

bool strongest_passes(const Scene& scene, const HorizontalRules& rules, int L) {
  return (!rules.differs_in_brightness || brightness_differs(scene, L)) && background_beyond(scene, rules, L);
}

/** A level, nearly full-width line that hugs the image's edge while the runner-up lies inside is the glass's border. */
bool hugs_the_edge(const Scene& scene, const Peak& strongest, int L1, int L2) {
  const int rows = scene.gray.rows;
  return strongest.angle == 90 && strongest.score * 100 > scene.gray.cols * 95.0 &&
         ((L1 <= 3 && L2 > 8) || (L1 > rows - 4 && L2 < rows - 8));
}

bool prefers_runner_up(const Scene& scene, const HorizontalRules& rules, const Peak& strongest, const Peak& runner_up,
                       int L1, int L2) {
  if (!(2 * runner_up.score > strongest.score)) return false;
  if (hugs_the_edge(scene, strongest, L1, L2)) return true;
  if (rules.eager_for_runner_up && (L1 <= 9 || (scene.side == kBottom && L1 > 2.0 * L2))) return true;
  return VerifyCorrectLineV_0(scene.edge, nullptr, nullptr, L1, L2, scene.gray.rows, scene.gray.cols, scene.side);
}

int accept_horizontal(const Scene& scene, const HoughAccumulator& votes, const HorizontalRules& rules,
                      const LineSlots& slots) {
  const Peak strongest = votes.strongest(kHorizontalAngles);
  const Peak runner_up = votes.strongest(kHorizontalAngles, &strongest);
  const int quorum = scene.gray.cols / (scene.side == kTop ? 4 : rules.bottom_quorum);
  if (quorum > strongest.score) return 0;

  const auto line_of = [&](const Peak& peak) {
    const BorderLine line = votes.line(peak);
    return rules.level ? BorderLine{0.0, 1.0, line.c} : line;
  };
  const int L1 = crossing(votes.distance(strongest));
  const bool alone = quorum > runner_up.score;
  if (alone) slots.write_normal(line_of(strongest));
  if (!alone && prefers_runner_up(scene, rules, strongest, runner_up, L1, crossing(votes.distance(runner_up)))) {
    const BorderLine line = line_of(runner_up);
    slots.write(line);
    // From here on the runner-up stands where its stored, rounded distance puts it.
    return background_beyond(scene, rules, crossing(line.c)) ? 2 : 0;
  }
  if (!strongest_passes(scene, rules, L1)) return 0;
  slots.write(line_of(strongest));
  return alone ? 1 : 2;
}

int accept_vertical(const Scene& scene, const HoughAccumulator& votes, const LineSlots& slots) {
  const Peak strongest = votes.strongest(kVerticalAngles);
  if (scene.gray.rows * 4.0 > strongest.score * 9) return 0;
  const int L = crossing(votes.distance(strongest));
  if (!VerifyCorrectLineH_0(scene.components, L, scene.gray.rows, scene.gray.cols, scene.side, scene.brightness)) {
    return 0;
  }
  if (!on_horizontal_side(scene) && !dark_beyond(scene, L)) return 0;
  slots.write(votes.line(strongest));
  return 2;
}

int find_border(const Scene& scene, std::span<typePoint> points, int dir_class, const AngleTables& tables,
                const HorizontalRules& rules, const LineSlots& slots) {
  const Angles voted = dir_class == kHorizontalBorder ? kHorizontalAngles : kVerticalVotes;
  HoughAccumulator votes(scene.gray.rows, scene.gray.cols, voted, tables);
  if (!votes.ready()) return 0;
  centre_points(points, scene.gray.rows, scene.gray.cols);
  if (dir_class != kHorizontalBorder && dir_class != kVerticalBorder) return 2;
  votes.vote(points);
  return dir_class == kHorizontalBorder ? accept_horizontal(scene, votes, rules, slots)
                                        : accept_vertical(scene, votes, slots);
}

}  // namespace
}  // namespace vantrel

int Compute_Hough_Angle2(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                         double* lineDistance, typePoint* points, int rows, int cols, int count, int dirClass,
                         double* sinTable, double* cosTable, int side, short wbClass) {
  if (count < vantrel::kLeastPoints) return 0;
  const vantrel::ConstPixels pixels{gray, rows, cols, static_cast<std::ptrdiff_t>(vantrel::stride_bytes(cols, 8))};
  return vantrel::find_border({pixels, edge, line, side, wbClass}, {points, static_cast<std::size_t>(count)}, dirClass,
                              {sinTable, cosTable}, vantrel::kTiltedBorders,
                              {lineNormal + 2 * side, lineDistance + side});
}

int Compute_Hough_Angle3(unsigned char* gray, _BNODE* line, unsigned char* edge, double* lineNormal,
                         double* lineDistance, typePoint* points, int rows, int cols, int count, int dirClass,
                         double* sinTable, double* cosTable, int side, short wbClass) {
  if (count < vantrel::kLeastPoints) return 0;
  const vantrel::ConstPixels pixels{gray, rows, cols, static_cast<std::ptrdiff_t>(vantrel::stride_bytes(cols, 8))};
  return vantrel::find_border({pixels, edge, line, side, wbClass}, {points, static_cast<std::size_t>(count)}, dirClass,
                              {sinTable, cosTable}, vantrel::kLevelBorders,
                              {lineNormal + 2 * side, lineDistance + side});
}
