#include "lines/border_search.h"

#include "lines/verify_density.h"

namespace vantrel::lines {
namespace {

using geometry::Line;
using geometry::Rect;
using geometry::Side;

/** Horizontal borders are voted for and looked for within 15 degrees. */
constexpr Angles kHorizontalAngles{{75, 104}};

/** Vertical borders are voted for within 20 degrees; the steepest, 160, is not looked for. */
constexpr Angles kVerticalVotes{{0, 19}, {160, 179}};
constexpr Angles kVerticalAngles{{0, 19}, {161, 179}};

int rows_of(const BorderScene& scene) { return scene.gray.pixels.rows; }
int cols_of(const BorderScene& scene) { return scene.gray.pixels.cols; }

/** The rows or columns between a line and the image's edge. */
Rect band_beyond(const BorderScene& scene, int L) {
  const int rows = rows_of(scene);
  const int cols = cols_of(scene);
  switch (scene.side) {
    case Side::kTop:
      return {{L, rows}, {0, cols}};
    case Side::kBottom:
      return {{0, L}, {0, cols}};
    case Side::kLeft:
      return {{0, rows}, {0, L}};
    default:
      return {{0, rows}, {L, cols}};
  }
}

/** A line on the image's very edge has nothing beyond it. */
bool on_the_edge(const BorderScene& scene, int L) {
  switch (scene.side) {
    case Side::kTop:
      return L >= rows_of(scene) - 1;
    case Side::kRight:
      return L >= cols_of(scene) - 1;
    default:
      return L <= 0;
  }
}

/** Beyond the card lies the scanner's dark background. */
bool dark_beyond(const BorderScene& scene, int L) {
  return on_the_edge(scene, L) || mostly_dark(scene.gray, band_beyond(scene, L));
}

/** When the whole image is clearly bright or dark, the band beyond a horizontal line must not be the same. */
bool brightness_differs(const BorderScene& scene, int L) {
  if (scene.brightness == Brightness::kMixed || !is_horizontal(scene.side)) return true;
  return brightness_of(scene.gray, band_beyond(scene, L)) != scene.brightness;
}

template <class Test>
bool accepted_by(Test test, std::span<const Rect> components) {
  for (const Rect& box : components) test.add(box);
  return test.accepts();
}

/** A level, nearly full-width line that hugs the image's edge while the runner-up lies inside is the glass's border. */
bool hugs_the_edge(const BorderScene& scene, const Peak& strongest, int L1, int L2) {
  const int rows = rows_of(scene);
  return strongest.angle == 90 && strongest.votes * 100 > cols_of(scene) * 95.0 &&
         ((L1 <= 3 && L2 > 8) || (L1 > rows - 4 && L2 < rows - 8));
}

}  // namespace

BorderSearch::BorderSearch(const BorderScene& scene, Direction direction, const AngleTables& tables,
                           const HorizontalRules& rules, std::optional<Rect> area)
    : scene_(scene),
      direction_(direction),
      rules_(rules),
      votes_(rows_of(scene), cols_of(scene), direction == Direction::kAcrossRows ? kHorizontalAngles : kVerticalVotes,
             tables, area) {}

bool BorderSearch::background_beyond(int L) const {
  const int rows = rows_of(scene_);
  const int cols = cols_of(scene_);
  if (is_horizontal(scene_.side) && !dark_beyond(scene_, L)) return false;
  if (rules_.judges_clutter && !accepted_by(BandClutter(L, rows, cols, scene_.side), scene_.components)) return false;
  return accepted_by(CutComponents(L, rows, cols, rules_.cuts), scene_.components);
}

bool BorderSearch::strongest_passes(int L) const {
  return (!rules_.differs_in_brightness || brightness_differs(scene_, L)) && background_beyond(L);
}

bool BorderSearch::prefers_runner_up(const Peak& strongest, const Peak& runner_up, int L1, int L2,
                                     Border& border) const {
  if (!(2 * runner_up.votes > strongest.votes)) return false;
  if (hugs_the_edge(scene_, strongest, L1, L2)) return true;
  if (rules_.eager_for_runner_up && (L1 <= 9 || (scene_.side == Side::kBottom && L1 > 2.0 * L2))) return true;
  if (!worth_comparing(L1, L2, rows_of(scene_))) return false;
  const auto row_bytes = static_cast<int>(scene_.edge.stride);
  const EdgeHistogram histogram(scene_.edge, row_bytes);
  if (!histogram.ready()) {
    border.complete = false;
    return false;
  }
  return denser_beyond_first(histogram, L1, L2, scene_.side, row_bytes);
}

Border BorderSearch::accept_horizontal() {
  const int quorum = cols_of(scene_) / (scene_.side == Side::kTop ? 4 : rules_.bottom_quorum);
  const Peak strongest = votes_.strongest(kHorizontalAngles, nullptr, quorum);
  Border border;
  if (quorum > strongest.votes) return border;
  const Peak runner_up = votes_.strongest(kHorizontalAngles, &strongest, quorum);

  const auto settle = [&](const Peak& peak, Settled settled) {
    const Line line = votes_.line(peak);
    border.line = rules_.level ? Line{0.0, 1.0, line.c} : line;
    border.settled = settled;
    border.votes = peak.votes;
  };
  const int L1 = crossing(votes_.distance(strongest));
  const bool alone = quorum > runner_up.votes;
  if (alone) settle(strongest, Settled::kNormal);
  if (!alone && prefers_runner_up(strongest, runner_up, L1, crossing(votes_.distance(runner_up)), border)) {
    settle(runner_up, Settled::kLine);
    // From here on the runner-up stands where its stored, rounded distance puts it.
    if (background_beyond(crossing(border.line.c))) border.acceptance = Acceptance::kChosen;
    return border;
  }
  if (!strongest_passes(L1)) return border;
  settle(strongest, Settled::kLine);
  border.acceptance = alone ? Acceptance::kClear : Acceptance::kChosen;
  return border;
}

Border BorderSearch::accept_vertical() {
  const int quorum = rows_of(scene_) * 4 / 9;  // rounded down: the rest is judged below
  const Peak strongest = votes_.strongest(kVerticalAngles, nullptr, quorum);
  if (rows_of(scene_) * 4.0 > strongest.votes * 9) return {};
  const int L = crossing(votes_.distance(strongest));
  if (!accepted_by(SideClutter(L, rows_of(scene_), cols_of(scene_), scene_.side), scene_.components)) return {};
  if (!is_horizontal(scene_.side) && !dark_beyond(scene_, L)) return {};
  return {Acceptance::kChosen, Settled::kLine, votes_.line(strongest), strongest.votes};
}

Border BorderSearch::accept() {
  switch (direction_) {
    case Direction::kAcrossRows:
      return accept_horizontal();
    case Direction::kAlongRows:
      return accept_vertical();
    default:
      return {Acceptance::kChosen};
  }
}

Border find_border(const BorderScene& scene, const EdgeMaps& maps, const Rect& band, Direction direction,
                   const AngleTables& tables) {
  const std::int64_t points = maps.count_points(band, direction);
  if (points < kLeastPoints) return {};
  BorderSearch search(scene, direction, tables, kTiltedBorders, band);
  if (!search.ready()) return {.complete = false};
  const bool many = are_many(points, band, std::int64_t{band.rows.size()} * band.cols.size());
  vote_band(maps, band, direction, many, search);
  return search.accept();
}

}  // namespace vantrel::lines
