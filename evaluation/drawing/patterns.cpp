// Grounds that repeat: woven, printed, strewn.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/faces.h"
#include "drawing/ground.h"
#include "drawing/jpeg.h"
#include "drawing/noise_field.h"

namespace vantrel::drawing {
namespace {

constexpr int kSize = 512;

template <class Level>
Texture from_levels(Colour base, Colour other, Level level) {
  Texture texture(kSize, kSize, base);
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      texture.row(y)[x] = packed(mixed(base, other, level(x, y)));
    }
  }
  return texture;
}

}  // namespace

// Threads over and under each other, each of a slightly different tone.
Pattern draw_weave(Random& random) {
  const double thread = random.uniform(5, 14), millimetres = random.between(0.3, 1.4),
               relief = random.uniform(0.1, 0.5);
  const Colour base = tint(random, random.uniform(25, 230), random.uniform(0, 45));
  const Colour other = random.chance(0.6) ? base * random.uniform(0.4, 0.8) : tint(random, random.uniform(25, 230), 30);
  const float* deviates = normal_deviates() + random.bits() % kDeviates;
  const int twill = random.integer(1, 3);
  return {from_levels(base, other,
                      [&](int x, int y) {
                        const auto column = static_cast<int>(x / thread), line = static_cast<int>(y / thread);
                        const double u = x / thread - column - 0.5, v = y / thread - line - 0.5;
                        const bool over = (column + line * twill) % (twill + 1) == 0;
                        const double bow = over ? 4 * u * u * 0.6 + v * v : 4 * v * v * 0.6 + u * u;
                        const double tone = static_cast<double>(deviates[over ? column : 300 + line]) * 0.12;
                        return std::clamp(0.4 + tone + relief * (bow * 1.4 - 0.5) + (over ? -0.1 : 0.1), 0.0, 1.0);
                      }),
          thread / millimetres};
}

Pattern draw_terrazzo(Random& random) {
  const double scale = random.uniform(3, 8);
  const Colour base = tint(random, random.uniform(40, 235), random.uniform(0, 15));
  Canvas canvas(kSize / scale, kSize / scale, scale, base);
  const double largest = random.between(1, 9), contrast = random.uniform(0.2, 1);
  for (int i = random.integer(150, 900); i > 0; --i) {
    const double size = largest * random.between(0.1, 1), angle = random.uniform(0, 6.3);
    const Point middle{random.uniform(0, canvas.width()), random.uniform(0, canvas.height())};
    std::vector<Point> chip;
    for (int corner = 0; corner < 5; ++corner) {
      chip.push_back(middle + unit(angle + corner * 1.2566) * (size * random.uniform(0.45, 0.6)));
    }
    canvas.polygon(chip, mixed(base, tint(random, random.uniform(15, 245), 25), contrast));
  }
  return {std::move(canvas.texture()), scale};
}

// Grains as soft cells with dark furrows.
Pattern draw_leather(Random& random) {
  FractalField field;
  field.add_octaves(random, kSize, kSize, random.uniform(6, 14), 3, 1, 0.6);
  const Colour base = tint(random, random.uniform(20, 170), random.uniform(0, 35));
  std::vector<float> row(kSize);
  Texture texture(kSize, kSize, base);
  for (int y = 0; y < kSize; ++y) {
    field.draw(y, row);
    for (std::size_t x = 0; x < row.size(); ++x) {
      const double furrow = std::exp(-6 * static_cast<double>(row[x] * row[x]));
      texture.row(y)[x] = packed(base * (1.05 - 0.35 * furrow));
    }
  }
  return {std::move(texture), random.uniform(6, 14)};
}

Pattern draw_carpet(Random& random) {
  FractalField field;
  field.add_octaves(random, kSize, kSize, random.uniform(3, 9), 3, 1, random.uniform(0.6, 0.9));
  field.add_octaves(random, kSize, kSize, 80, 1, random.uniform(0, 1));
  const Colour base = tint(random, random.uniform(30, 200), random.uniform(0, 50));
  const double relief = random.uniform(8, 35);
  std::vector<float> row(kSize);
  Texture texture(kSize, kSize, base);
  for (int y = 0; y < kSize; ++y) {
    field.draw(y, row);
    for (std::size_t x = 0; x < row.size(); ++x) {
      texture.row(y)[x] = packed(base + static_cast<double>(row[x]) * relief * 0.6);
    }
  }
  return {std::move(texture), random.uniform(4, 9)};
}

Pattern draw_print(Random& random) {
  const double scale = 4;
  Canvas canvas(220, 220, scale, tint(random, random.uniform(170, 245), random.uniform(0, 15)));
  draw_page(canvas, random, canvas.box().inset(-5), ink(random));
  return {std::move(canvas.texture()), scale};
}

Pattern draw_cloth(Random& random) {
  const double scale = 4, period = random.between(4, 40);
  const Colour base = tint(random, random.uniform(60, 245), random.uniform(0, 40));
  const Colour other = tint(random, random.uniform(30, 230), random.uniform(10, 70));
  const double stripe = period * random.uniform(0.1, 0.6), opacity = random.uniform(0.3, 1);
  const int repeats = std::max(2, static_cast<int>(130 / period));
  const double size = repeats * period;
  Canvas canvas(size, size, scale, base);
  const int kind = random.integer(0, 2);  // stripes, checks, dots
  for (int i = 0; i < repeats; ++i) {
    if (kind < 2) canvas.fill({i * period, 0, stripe, size}, other, opacity);
    if (kind == 1) canvas.fill({0, i * period, size, stripe}, other, opacity);
    for (int j = 0; kind == 2 && j < repeats; ++j)
      canvas.ellipse({i * period, j * period, stripe, stripe}, other, opacity);
  }
  canvas.grain(random, random.uniform(0, 6));
  return {std::move(canvas.texture()), scale};
}

Pattern draw_keys(Random& random) {
  const double scale = 4, key = random.uniform(12, 30), gap = random.uniform(1, 4);
  const int count = static_cast<int>(180 / key);
  const Colour rim = tint(random, random.uniform(10, 210), 8), face = tint(random, random.uniform(10, 245), 10);
  Canvas canvas(count * key, count * key, scale, rim);
  for (int y = 0; y < count; ++y) {
    for (int x = 0; x < count; ++x) {
      const Box box = Box{x * key, y * key, key, key}.inset(gap / 2);
      canvas.fill(box, face + random.normal() * 4);
      if (key < 20) canvas.frame(box.inset(key * 0.35), 0.8, rim);
    }
  }
  return {std::move(canvas.texture()), scale};
}

// The project's own scans of bare glass, at 300 dpi: mostly a piece from the middle, as a lid's edge shows at their
// borders.
Pattern real_glass(Random& random) {
  static const std::array<Texture, 2> kScans{read_jpeg(VANTREL_SAMPLE_FOLDER "/glass/black-glass.jpg"),
                                             read_jpeg(VANTREL_SAMPLE_FOLDER "/glass/violet-glass.jpg")};
  const Texture& scan = random.pick(kScans);
  if (random.chance(0.25)) return {scan, 300 / 25.4};
  const int rim = random.integer(90, 150);
  Texture piece(scan.width() - 2 * rim, scan.height() - 2 * rim, gray(0));
  for (int y = 0; y < piece.height(); ++y) {
    std::copy_n(scan.row(y + rim) + rim, piece.width(), piece.row(y));
  }
  return {std::move(piece), 300 / 25.4};
}

}  // namespace vantrel::drawing
