#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>

#include "reference/cardcut_finders.h"
#include "reference/cardcut_lines.h"
#include "support/tally.h"

namespace reference {

int color_diff(int r1, int g1, int b1, int r2, int g2, int b2) {
  const int dr = r2 - r1;
  const int dg = g2 - g1;
  const int db = b2 - b1;
  const int magnitude = static_cast<int>(std::sqrt(static_cast<double>(dr * dr + dg * dg + db * db)));
  return dr + dg + db < 0 ? -magnitude : magnitude;
}

namespace {

/** One call of the finder. Pixels are named by their row and the byte of the row at which they begin. */
struct ColourFinder {
  const Picture& picture;
  int W = picture.cols;
  int H = picture.rows;
  int left = 10;
  int top = H - 30;
  int right = W - 10;
  int bottom = 50;

  bool inside(int byte, int y) const { return byte >= 0 && byte + 2 < 3 * W && y >= 0 && y < H; }

  std::optional<int> difference(int byte1, int y1, int byte2, int y2) const {
    if (!inside(byte1, y1) || !inside(byte2, y2)) return std::nullopt;
    return color_diff(picture.at(y1, byte1 + 2), picture.at(y1, byte1 + 1), picture.at(y1, byte1),
                      picture.at(y2, byte2 + 2), picture.at(y2, byte2 + 1), picture.at(y2, byte2));
  }
  std::optional<int> CV(int byte, int y) const { return difference(byte, y + 2, byte, y - 2); }
  std::optional<int> CN(int byte, int y) const { return difference(byte + 3, y, byte - 3, y); }
  std::optional<int> CG(int byte, int y) const { return difference(byte + 6, y, byte - 6, y); }

  bool strong(int x, int y) const {
    const std::optional<int> v = CV(3 * x, y);
    return v && std::abs(*v) > 20;
  }
  int excess(int byte, int y) const {
    const std::optional<int> v = CV(byte, y);
    const std::optional<int> n = CN(byte, y);
    return v && n ? std::abs(*v) - std::abs(*n) : 0;
  }

  /** Columns from..to (inclusive) vote by the pixels that begin at `byte`, three bytes a column. */
  CutVotes lower_votes(int from, int to, int byte) const {
    CutVotes votes(W, H);
    for (int y = 50; y < H / 4; ++y) {
      for (int x = from; x <= to; ++x) {
        if (excess(byte + 3 * (x - from), y) > 20) votes.cast(x, y, 0, 20);
      }
    }
    return votes;
  }

  std::optional<CutLine> checked(const CutVotes& votes, int from, int to, int factor, const char* name) const {
    const std::optional<CutLine> line = votes.lowest();
    if (!line) return std::nullopt;
    int count = 0;
    for (int x = from; x <= to; ++x) {
      const int y = cut_row(*line, x, W);
      if (y > 1 && strong(x, y)) ++count;
    }
    if (factor * count > W) return line;
    support::tally::count(std::string(name) + " candidate fails its check");
    return std::nullopt;
  }

  void find_borders_and_corners() {
    const std::optional<CutLine> a = checked(lower_votes(3, W / 3 - 1, 9), 0, W / 3 - 1, 4, "left");
    const std::optional<CutLine> b = checked(lower_votes(2 * W / 3, W - 4, 2 * W), 2 * W / 3, W - 1, 4, "right");
    if (a && b) {
      join(*a, *b);
    } else if (a) {
      bottom = cut_centre_row(*a);
      support::tally::count("left line only");
    } else if (b) {
      bottom = cut_centre_row(*b);
      support::tally::count("right line only");
    } else {
      find_middle_line();
    }
    if (bottom > H / 5) {
      bottom = H / 6;
      support::tally::count("bottom clamped");
    } else {
      support::tally::count("bottom not clamped");
    }
    find_left_corner(a.value_or(CutLine{0, 10}));
    find_right_corner(b.value_or(CutLine{0, 10}));
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
  }

  void find_middle_line() {
    const std::optional<CutLine> c = checked(lower_votes(W / 3, 2 * W / 3, 2 * W / 3), W / 3, 2 * W / 3, 5, "middle");
    bottom = c ? cut_centre_row(*c) : 50;
    support::tally::count(c ? "middle line only" : "no lower border");
  }

  void find_left_corner(CutLine line) {
    int found = 0;
    for (int x = W / 10; x > 9; --x) {
      if (measure(x, corner_row(line, x), 1) >= 10001) {
        left = x;
        ++found;
      }
    }
    support::tally::count(found == 0 ? "left corner not found" : "left corner found");
    if (found > 1) support::tally::count("left corner found more than once");
  }

  void find_right_corner(CutLine line) {
    int found = 0;
    for (int x = 9 * W / 10; x <= W - 11; ++x) {
      if (measure(x, corner_row(line, x), -1) >= 10001) {
        right = x;
        ++found;
      }
    }
    support::tally::count(found == 0 ? "right corner not found" : "right corner found");
    if (found > 1) support::tally::count("right corner found more than once");
  }

  int corner_row(CutLine line, int x) const {
    int y = cut_row(line, x, W);
    if (y <= 8) y = bottom + 10;
    if (y <= 17) y = 17;
    return y;
  }

  std::int64_t measure(int x, int y, int sign) const {
    std::int64_t xx = 0;
    std::int64_t xy = 0;
    std::int64_t yy = 0;
    for (int v = y - 8; v <= y + 8; ++v) {
      for (int u = x - 8; u <= x + 8; ++u) {
        const std::optional<int> gx = CG(3 * u, v);
        const std::optional<int> gy = CV(3 * u, v);
        if (!gx || !gy) continue;
        if (std::abs(*gx) <= 20 && std::abs(*gy) <= 20) continue;
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

  bool vote_upper_row(int y, CutVotes& votes) const {
    int sum = 0;
    int count = 0;
    for (int x = W / 8; x <= 7 * W / 8; ++x) {
      const int d = excess(3 * W / 8 + 3 * (x - W / 8), y);
      if (d > 20) votes.cast(x, y, 3, 15);
      if (d < -20) {
        sum -= d;
        ++count;
      }
    }
    return count > 7 && sum / count > 59;
  }

  void find_upper_border() {
    CutVotes votes(W, H);
    for (int y = 18 * H / 20; y > 3 * H / 4; --y) {
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

bool cut_card24(const Picture& image, MYRECT& rect) {
  if (image.bits != 24 || image.cols < 128 || image.rows < 128) return false;
  ColourFinder finder{image};
  finder.find_borders_and_corners();
  finder.find_upper_border();
  rect.left = static_cast<std::int16_t>(finder.left);
  rect.top = static_cast<std::int16_t>(finder.top);
  rect.right = static_cast<std::int16_t>(finder.right);
  rect.bottom = static_cast<std::int16_t>(finder.bottom);
  return true;
}

}  // namespace reference
