#include "reference/segment_cards.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "reference/segment_reduce.h"
#include "support/tally.h"

namespace reference {
namespace {

struct Sizes {
  int n;
  int card_height;
  int card_length;
  int bridged;
  int least_gap;
  int strong;
};

Sizes sizes_of(float dpi) {
  Sizes sizes{};
  sizes.n = static_cast<int>(static_cast<double>(dpi / 100.0f) + 0.5);
  const auto reduced_inches = [&](double inches) {
    return static_cast<int>(static_cast<double>(dpi) * inches / sizes.n);
  };
  sizes.card_height = reduced_inches(2.2);
  sizes.card_length = reduced_inches(3.55);
  sizes.bridged = reduced_inches(0.18);
  sizes.least_gap = 4 * reduced_inches(0.375) / 5;
  sizes.strong = sizes.card_length / 24;
  return sizes;
}

struct Band {
  int first;
  int last;
  int middle() const { return (first + last) / 2; }
};

/** The bands of a group, never empty. */
struct Group {
  std::vector<Band> bands;
  int first() const { return bands.front().first; }
  int last() const { return bands.back().last; }
  int height() const { return last() - first() + 1; }
};

/** One column of cards: the strip of `width` columns that begins at `offset`. */
struct Strip {
  const Picture& sheet;
  int offset;
  int width;
  const Sizes& sizes;

  int black_in_row(int row) const {
    int count = 0;
    for (int x = 0; x < width; ++x) count += sheet.at(row, offset + x) == 0;
    return count;
  }

  std::vector<bool> text_rows() const {
    std::vector<bool> text;
    for (int row = 0; row < sheet.rows; ++row) text.push_back(black_in_row(row) > sizes.strong);
    bridge(text);
    return text;
  }

  void bridge(std::vector<bool>& text) const {
    const std::size_t rows = text.size();
    for (std::size_t r = 0; r + 1 < rows; ++r) {
      if (!text.at(r) || text.at(r + 1)) continue;
      std::size_t next = r + 2;
      while (next < rows && !text.at(next)) ++next;
      if (next >= rows) return;
      if (static_cast<int>(next - r) < sizes.bridged) {
        for (std::size_t i = r; i < next; ++i) text.at(i) = true;
        support::tally::count("gap bridged");
      } else {
        support::tally::count("gap not bridged");
      }
    }
  }

  static std::vector<Band> bands_of(const std::vector<bool>& text) {
    std::vector<Band> bands;
    for (std::size_t r = 0; r < text.size(); ++r) {
      if (!text.at(r)) continue;
      const int row = static_cast<int>(r);
      if (r > 0 && text.at(r - 1)) {
        bands.back().last = row;
      } else {
        bands.push_back({row, row});
      }
    }
    return bands;
  }

  /** Groups of neighbouring bands whose extent stays within a card's height; at most five. */
  std::vector<Group> merged(const std::vector<Band>& bands) const {
    std::vector<Group> groups;
    for (const Band& band : bands) {
      if (!groups.empty() && band.last - groups.back().first() + 1 <= sizes.card_height) {
        groups.back().bands.push_back(band);
        support::tally::count("bands merged");
      } else {
        groups.push_back({{band}});
      }
    }
    if (groups.size() > 5) {
      groups.resize(5);
      support::tally::count("groups dropped");
    }
    return groups;
  }

  static int centre_of(const Group& group) {
    int sum = 0;
    int rows = 0;
    for (const Band& band : group.bands) {
      const int length = band.last - band.first + 1;
      sum += (band.first + band.last) * length / 2;
      rows += length;
    }
    return sum / rows;
  }

  std::vector<Group> reassigned(const std::vector<Group>& groups) const {
    std::vector<Group> result(groups.size());
    for (std::size_t from = 0; from < groups.size(); ++from) {
      for (const Band& band : groups.at(from).bands) {
        std::size_t k = 0;
        while (k + 1 < groups.size() && band.middle() >= (centre_of(groups.at(k)) + centre_of(groups.at(k + 1))) / 2) {
          ++k;
        }
        result.at(k).bands.push_back(band);
        if (k > from) support::tally::count("band reassigned upwards");
        if (k < from) support::tally::count("band reassigned downwards");
      }
    }
    std::erase_if(result, [](const Group& group) { return group.bands.empty(); });
    return result;
  }

  bool move_up_last_band(Group& a, Group& b) const {
    b.bands.insert(b.bands.begin(), a.bands.back());
    a.bands.pop_back();
    return true;
  }
  bool move_down_first_band(Group& a, Group& b) const {
    a.bands.push_back(b.bands.front());
    b.bands.erase(b.bands.begin());
    return true;
  }

  bool balance_by_midpoint(Group& a, Group& b) const {
    const int line = (a.first() + b.last()) / 2;
    bool changed = false;
    while (a.bands.back().middle() >= line) {
      changed = move_up_last_band(a, b);
      support::tally::count("midpoint: band to the upper group");
    }
    while (b.bands.front().middle() < line) {
      changed = move_down_first_band(a, b);
      support::tally::count("midpoint: band to the lower group");
    }
    return changed;
  }

  static float height_ratio(const Group& a, const Group& b) {
    const auto low = static_cast<float>(std::min(a.height(), b.height()));
    const auto high = static_cast<float>(std::max(a.height(), b.height()));
    return low / high;
  }

  /** Whether moving a band made a pair with enough room between its groups and heights alike enough. */
  bool acceptable(const Group& a, const Group& b, float before) const {
    const float limit = before * 3.0f * 0.25f;
    return b.first() - a.last() >= sizes.least_gap && height_ratio(a, b) >= limit;
  }

  bool balance_by_height(Group& a, Group& b) const {
    const float ratio = height_ratio(a, b);
    if (b.first() - a.last() >= sizes.least_gap && a.height() <= sizes.card_height && b.height() <= sizes.card_height &&
        ratio >= 0.75f) {
      support::tally::count("height: pair left alone");
      return false;
    }
    Group lower_a = a, lower_b = b;
    Group upper_a = a, upper_b = b;
    const bool can_down = a.bands.size() > 1 && move_up_last_band(lower_a, lower_b);
    const bool can_up = b.bands.size() > 1 && move_down_first_band(upper_a, upper_b);
    const bool down = can_down && acceptable(lower_a, lower_b, ratio);
    const bool up = can_up && acceptable(upper_a, upper_b, ratio);
    if (!down && !up) {
      support::tally::count("height: no move acceptable");
      return false;
    }
    const float down_ratio = down ? height_ratio(lower_a, lower_b) : -1.0f;
    const float up_ratio = up ? height_ratio(upper_a, upper_b) : -1.0f;
    if (down && up) support::tally::count("height: both moves acceptable");
    if (down_ratio == up_ratio) {
      support::tally::count("height: equal moves");
      return false;
    }
    const bool take_down = down_ratio > up_ratio;
    support::tally::count(take_down ? "height: band to the upper group" : "height: band to the lower group");
    a = take_down ? lower_a : upper_a;
    b = take_down ? lower_b : upper_b;
    return true;
  }

  template <class Balance>
  void sweep(std::vector<Group>& groups, const char* name, Balance balance) const {
    const std::size_t pairs = groups.empty() ? 0 : groups.size() - 1;
    for (int round = 0; round < 6; ++round) {
      bool changed = false;
      for (std::size_t k = 0; k < pairs; ++k) changed = balance(groups.at(k), groups.at(k + 1)) || changed;
      for (std::size_t k = pairs; k-- > 0;) changed = balance(groups.at(k), groups.at(k + 1)) || changed;
      if (!changed) return;
      if (round == 1) support::tally::count(std::string(name) + ": second round changed something");
    }
    support::tally::count(std::string(name) + ": rounds used up");
  }

  /** The left column of the window of a card's length with the most black pixels, in columns of the sheet. */
  int best_column(const Group& group) const {
    const int run = std::min(sizes.card_length, width);
    if (run < sizes.card_length) support::tally::count("window clamped to the strip");
    std::vector<int> black(static_cast<std::size_t>(width), 0);
    for (int row = group.first(); row <= group.last(); ++row) {
      for (int x = 0; x < width; ++x) black.at(static_cast<std::size_t>(x)) += sheet.at(row, offset + x) == 0;
    }
    int best = -1;
    int starts = 0;
    int sum = 0;
    for (int start = 0; start + run <= width; ++start) {
      int count = 0;
      for (int x = start; x < start + run; ++x) count += black.at(static_cast<std::size_t>(x));
      if (count > best) {
        best = count;
        starts = 0;
        sum = 0;
      }
      if (count == best) {
        ++starts;
        sum += start;
      }
    }
    support::tally::count(starts > 1 ? "several best windows" : "one best window");
    return sum / starts + offset;
  }

  /** How far the first and the last row move outwards. `previous` is the completed last row of the group below. */
  Band completed(const std::vector<Group>& groups, std::size_t k, int previous) const {
    Band rows{groups.at(k).first(), groups.at(k).last()};
    const int deficit = sizes.card_height - groups.at(k).height();
    if (deficit <= 0) {
      support::tally::count("height complete");
      return rows;
    }
    const bool lowest = k == 0;
    const bool highest = k + 1 == groups.size();
    const int below = lowest ? rows.first : rows.first - previous;
    const int above = highest ? sheet.rows - 1 - rows.last : groups.at(k + 1).first() - rows.last;
    const int most_down = lowest ? below : below / 2;
    const int most_up = highest ? above : above / 2;
    const bool down_first = below <= above;
    const int down = down_first ? std::min(deficit / 2, most_down) : 0;
    const int up = std::min(down_first ? deficit - down : deficit / 2, most_up);
    const int rest = down_first ? down : std::min(deficit - up, most_down);
    support::tally::count(down_first ? "completed downwards first" : "completed upwards first");
    if (below == above) support::tally::count("completed with equal rooms");
    support::tally::count(lowest ? "completed at the lower edge" : "completed against a group below");
    support::tally::count(highest ? "completed at the upper edge" : "completed against a group above");
    if (rest + up < deficit) support::tally::count("completion ran out of room");
    rows.first -= rest;
    rows.last += up;
    return rows;
  }

  int find(MYRECT* cards) const {
    const std::vector<bool> text = text_rows();
    std::vector<Group> groups = reassigned(merged(bands_of(text)));
    sweep(groups, "midpoint", [&](Group& a, Group& b) { return balance_by_midpoint(a, b); });
    sweep(groups, "height", [&](Group& a, Group& b) { return balance_by_height(a, b); });
    int previous = 0;
    for (std::size_t k = 0; k < groups.size(); ++k) {
      const int column = best_column(groups.at(k));
      const Band rows = completed(groups, k, previous);
      previous = rows.last;
      const int right = std::min(column + sizes.card_length - 1, sheet.cols - 1);
      if (right == sheet.cols - 1) support::tally::count("right bound at the image's edge");
      cards[k].left = static_cast<std::int16_t>(sizes.n * column);
      cards[k].right = static_cast<std::int16_t>(sizes.n * right);
      cards[k].bottom = static_cast<std::int16_t>(sizes.n * rows.first);
      cards[k].top = static_cast<std::int16_t>(sizes.n * rows.last);
    }
    support::tally::count("groups: " + std::to_string(groups.size()));
    return static_cast<int>(groups.size());
  }
};

bool gutter_is_clear(const Picture& sheet, const Sizes& sizes) {
  int rows = 0;
  for (int row = 0; row < sheet.rows; ++row) {
    bool black = false;
    for (int x = sheet.cols / 2 - 5; x <= sheet.cols / 2 + 4; ++x) black = black || sheet.at(row, x) == 0;
    rows += black;
  }
  return rows <= sizes.card_height / 8;
}

}  // namespace

int card_seg(const Picture& sheet, int x_per_metre, int y_per_metre, RectRegions& regions) {
  regions.firstCount = 0;
  regions.secondCount = 0;
  const float dpi = static_cast<float>(std::min(x_per_metre, y_per_metre)) / 39.37f;
  if (dpi < 250) return -3;
  if (sheet.bits != 1 && sheet.bits != 8 && sheet.bits != 24) return -2;
  const Sizes sizes = sizes_of(dpi);
  Picture small = reduced(sheet, sizes.n);
  if (sheet.bits != 1 && !small.bytes.empty()) {
    Binarised ignored;
    moving_average(small.bytes, small.cols, small.rows, small.stride(), ignored);
  }
  const bool wide = small.cols > 2 * sizes.card_length;
  if (wide && gutter_is_clear(small, sizes)) {
    support::tally::count("two columns");
    const int half = small.cols / 2;
    regions.firstCount = Strip{small, 0, half, sizes}.find(regions.firstColumn);
    regions.secondCount = Strip{small, half, half, sizes}.find(regions.secondColumn);
  } else {
    support::tally::count(wide ? "one column: no clear gutter" : "one column: narrow");
    regions.firstCount = Strip{small, 0, small.cols, sizes}.find(regions.firstColumn);
  }
  return 1;
}

}  // namespace reference
