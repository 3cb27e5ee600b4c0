#include <cstdint>
#include <cstdlib>
#include <optional>

#include "reference/cardcut_finders.h"
#include "reference/cardcut_lines.h"
#include "support/tally.h"

namespace reference {
namespace {

Picture gray_copy(const Picture& image) {
  if (image.bits == 8) return image;
  Picture gray(image.cols, image.rows, 8, 255);
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const int sum = 2 * image.at(y, 3 * x) + 9 * image.at(y, 3 * x + 1) + 5 * image.at(y, 3 * x + 2);
      gray.at(y, x) = static_cast<unsigned char>(sum / 16);
    }
  }
  return gray;
}

/** One call of the finder: the gray picture and the bounds as they stand. */
struct GrayFinder {
  Picture picture;
  int W = picture.cols;
  int H = picture.rows;
  int left = 0;
  int top = H - 1;
  int right = W - 1;
  int bottom = 0;

  bool inside(int x, int y) const { return x >= 0 && x < W && y >= 0 && y < H; }

  /** I(x1, y1) - I(x2, y2), or nothing outside the picture. */
  std::optional<int> difference(int x1, int y1, int x2, int y2) const {
    if (!inside(x1, y1) || !inside(x2, y2)) return std::nullopt;
    return picture.at(y1, x1) - picture.at(y2, x2);
  }
  std::optional<int> V(int x, int y) const { return difference(x, y + 2, x, y - 2); }
  std::optional<int> N(int x, int y) const { return difference(x + 1, y, x - 1, y); }
  std::optional<int> G(int x, int y) const { return difference(x + 2, y, x - 2, y); }

  bool strong(int x, int y) const {
    const std::optional<int> v = V(x, y);
    return v && std::abs(*v) > 10;
  }
  /** |V| - |N|, 0 outside. */
  int excess(int x, int y) const {
    const std::optional<int> v = V(x, y);
    const std::optional<int> n = N(x, y);
    return v && n ? std::abs(*v) - std::abs(*n) : 0;
  }

  int on_line(CutLine line, int from, int to) const {
    int count = 0;
    for (int x = from; x < to; ++x) {
      const int y = cut_row(line, x, W);
      if (y > 0 && strong(x, y)) ++count;
    }
    return count;
  }

  std::optional<CutLine> side_line(int vote_from, int vote_to, int check_from, int check_to, const char* name,
                                   int& count) const {
    CutVotes votes(W, H);
    for (int y = 5; y < H / 3; ++y) {
      for (int x = vote_from; x < vote_to; ++x) {
        if (strong(x, y)) votes.cast(x, y, 0, 20);
      }
    }
    const std::optional<CutLine> line = votes.lowest();
    if (!line) return std::nullopt;
    count = on_line(*line, check_from, check_to);
    if (4 * count > W) return line;
    support::tally::count(std::string(name) + " candidate fails its check");
    return std::nullopt;
  }

  void find_left_corner(CutLine line) {
    for (int x = 10; x < W / 8; ++x) {
      const int y = cut_row(line, x, W);
      if (y <= 8) {
        support::tally::count("left corner: line too low");
        return;
      }
      if (measure(x, y, 1) > 5) {
        left = x;
        support::tally::count("left corner found");
        return;
      }
      if (strong(x, y)) {
        support::tally::count("left corner: border reached");
        return;
      }
    }
    support::tally::count("left corner: columns run out");
  }

  void find_right_corner(CutLine line) {
    for (int x = W - 20; x > 7 * W / 8; --x) {
      const int y = cut_row(line, x, W);
      if (y <= 8) {
        support::tally::count("right corner: line too low");
        return;
      }
      if (measure(x, y, -1) > 5) {
        right = x;
        support::tally::count("right corner found");
        return;
      }
      if (strong(x, y)) {
        support::tally::count("right corner: border reached");
        return;
      }
    }
    support::tally::count("right corner: columns run out");
  }

  std::int64_t measure(int x, int y, int sign) const {
    std::int64_t xx = 0;
    std::int64_t xy = 0;
    std::int64_t yy = 0;
    for (int v = y - 8; v <= y + 8; ++v) {
      for (int u = x - 8; u <= x + 8; ++u) {
        const std::optional<int> gx = G(u, v);
        const std::optional<int> gy = V(u, v);
        if (!gx || !gy) continue;
        if (std::abs(*gx) <= 10 && std::abs(*gy) <= 10) continue;
        if (*gx * *gy * sign <= 0) continue;
        xx += *gx * *gx;
        xy += *gx * *gy;
        yy += *gy * *gy;
      }
    }
    const std::int64_t a = xx / 289;
    const std::int64_t b = yy / 289;
    const std::int64_t e = xy / 289;
    return a * b - e * e - (a + b) * (a + b) / 10;
  }

  void find_lower_border() {
    int count_a = 0;
    int count_b = 0;
    const std::optional<CutLine> a = side_line(3, W / 3, 0, W / 3, "left", count_a);
    const std::optional<CutLine> b = side_line(2 * W / 3, W - 3, 2 * W / 3, W, "right", count_b);
    if (a && b) {
      join(*a, *b);
    } else if (a) {
      bottom = cut_centre_row(*a);
      support::tally::count("left line only");
    } else if (b) {
      bottom = cut_centre_row(*b);
      support::tally::count("right line only");
    } else {
      find_middle_line(count_b);
    }
  }

  void join(CutLine a, CutLine b) {
    int ya = cut_centre_row(a);
    int yb = cut_centre_row(b);
    const bool agree = std::abs(ya - yb) <= 33;
    support::tally::count(agree ? "lines agree" : "lines disagree");
    if (agree) {
      ya = cut_row(a, W / 4, W);
      yb = cut_row(b, 3 * W / 4, W);
    }
    bottom = (ya + yb) / 2;
    if (agree) {
      find_left_corner(a);
      find_right_corner(b);
    }
  }

  void find_middle_line(int carried) {
    CutVotes votes(W, H);
    for (int y = 5; y < H / 3; ++y) {
      for (int x = W / 3; x < 2 * W / 3; ++x) {
        if (excess(x, y) > 10) votes.cast(x, y, 0, 20);
      }
    }
    const std::optional<CutLine> line = votes.lowest();
    if (!line) {
      support::tally::count("no lower border");
      return;
    }
    const int own = on_line(*line, W / 3, 2 * W / 3);
    if (4 * (carried + own) <= W) {
      support::tally::count("middle candidate fails its check");
      return;
    }
    bottom = cut_centre_row(*line);
    support::tally::count("middle line only");
    if (carried > 0) support::tally::count("middle line with a carried count");
    if (4 * own <= W) support::tally::count("middle line only by the carried count");
  }

  /** Votes for row y; true when the row is full of changes across the columns. */
  bool vote_upper_row(int y, CutVotes& votes) const {
    int sum = 0;
    int count = 0;
    for (int x = W / 8; x <= 7 * W / 8; ++x) {
      const int d = excess(x, y);
      if (d > 10) votes.cast(x, y, 3, 15);
      if (d < -10) {
        sum -= d;
        ++count;
      }
    }
    return count > 7 && sum / count > 29;
  }

  void find_upper_border() {
    CutVotes votes(W, H);
    for (int y = 17 * H / 20; y > 3 * H / 4; --y) {
      if (vote_upper_row(y, votes)) {
        support::tally::count("upper scan stopped");
        break;
      }
    }
    const std::optional<CutLine> line = votes.highest();
    if (!line) {
      support::tally::count("no upper border");
      return;
    }
    int count = 0;
    for (int x = W / 8; x <= 7 * W / 8; ++x) {
      const int y = cut_row(*line, x, W);
      if (y > 0 && y < H - 2 && strong(x, y)) ++count;
    }
    if (3 * count > W) {
      top = cut_centre_row(*line);
      support::tally::count("upper border found");
    } else {
      support::tally::count("upper candidate fails its check");
    }
  }
};

}  // namespace

bool cut_card(const Picture& image, MYRECT& rect) {
  if (image.bits != 8 && image.bits != 24) return false;
  GrayFinder finder{gray_copy(image)};
  finder.find_lower_border();
  finder.find_upper_border();
  rect.left = static_cast<std::int16_t>(finder.left);
  rect.top = static_cast<std::int16_t>(finder.top);
  rect.right = static_cast<std::int16_t>(finder.right);
  rect.bottom = static_cast<std::int16_t>(finder.bottom);
  return true;
}

}  // namespace reference
