#include "drawing/capture.h"

#include <algorithm>
#include <cmath>

#include "drawing/jpeg.h"

namespace vantrel::drawing {
namespace {

using Plane = std::vector<float>;

Plane& plane(Row& row, std::size_t channel) { return channel == 0 ? row.b : channel == 1 ? row.g : row.r; }

// A Gaussian, integrated over each pixel, around `shift`.
std::vector<float> kernel(double deviation, double shift, int reach) {
  std::vector<float> weights;
  double sum = 0;
  const double scale = 1 / (std::sqrt(2.0) * std::max(deviation, 0.05));
  for (int i = -reach; i <= reach; ++i) {
    const double weight = std::erf((i + 0.5 - shift) * scale) - std::erf((i - 0.5 - shift) * scale);
    weights.push_back(static_cast<float>(weight));
    sum += weight;
  }
  for (auto& weight : weights) weight = static_cast<float>(weight / sum);
  return weights;
}

// The rows that the point spread reaches, already blurred along themselves.
class Spread {
 public:
  Spread(const Capture& capture, int width)
      : reach_(std::max(1, static_cast<int>(std::ceil(2.7 * capture.blur + std::abs(capture.fringe))))),
        across_(kernel(capture.blur, 0, reach_)),
        padded_(static_cast<std::size_t>(width + 2 * reach_)) {
    for (double shift : {-capture.fringe, 0.0, capture.fringe}) down_.push_back(kernel(capture.blur, shift, reach_));
    rows_.assign(static_cast<std::size_t>(2 * reach_ + 1), Row(width));
  }
  int reach() const { return reach_; }
  Row& slot(int y) { return rows_[static_cast<std::size_t>(y + 2 * reach_ + 1) % rows_.size()]; }

  void blur_across(Row& row) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      Plane& values = plane(row, channel);
      const auto reach = static_cast<std::size_t>(reach_);
      std::fill(padded_.begin(), padded_.begin() + reach_, values.front());
      std::copy(values.begin(), values.end(), padded_.begin() + reach_);
      std::fill(padded_.end() - reach_, padded_.end(), values.back());
      const float* in = padded_.data() + reach;
      weigh(values, across_, [&](int i) { return in + i; });
    }
  }

  void blur_down(int y, int height, Row& out) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      weigh(plane(out, channel), down_[channel],
            [&](int i) -> const float* { return plane(slot(std::clamp(y + i, 0, height - 1)), channel).data(); });
    }
  }

 private:
  // The weighed sum of lines, a symmetric pair of them in one pass.
  template <class Line>
  void weigh(Plane& out, const std::vector<float>& weights, Line line) const {
    float* to = out.data();
    const std::size_t width = out.size();
    const auto middle = static_cast<std::size_t>(reach_);
    const float* centre = line(0);
    for (std::size_t x = 0; x < width; ++x) to[x] = centre[x] * weights[middle];
    for (int i = 1; i <= reach_; ++i) {
      const float before = weights[middle - static_cast<std::size_t>(i)];
      const float after = weights[middle + static_cast<std::size_t>(i)];
      if (before < 1e-5F && after < 1e-5F) continue;
      const float *first = line(-i), *second = line(i);
      for (std::size_t x = 0; x < width; ++x) to[x] += first[x] * before + second[x] * after;
    }
  }

  int reach_;
  std::vector<float> across_;
  std::vector<std::vector<float>> down_;
  std::vector<Row> rows_;
  Plane padded_;
};

// Gains and noise of the sensor, and the step to bytes.
class Sensor {
 public:
  Sensor(const Capture& capture, Random& random, const DrawnScan& scan)
      : capture_(capture), random_(random), width_(static_cast<std::size_t>(scan.width)), height_(scan.height) {
    // Light is full where it is brightest and falls off from there, so that it burns nothing out.
    full_ = 1 - std::abs(capture.slope_x) - std::abs(capture.slope_y);
    for (std::size_t x = 0; x < width_; ++x) {
      const double u = 2 * (static_cast<double>(x) + 0.5) / scan.width - 1;
      const double gain = capture.stripes * random.normal() * (random.chance(0.1) ? 3 : 1);
      columns_.push_back(static_cast<float>(1 + gain));
      light_.push_back(static_cast<float>(full_ + capture.slope_x * u - capture.vignette * 0.5 * u * u));
    }
    phase_ = random.uniform(0, 6.3);
  }

  void expose(int y, const Row& row, unsigned char* bytes) {
    const double v = 2 * (y + 0.5) / height_ - 1;
    const auto line = static_cast<float>(capture_.slope_y * v - capture_.vignette * 0.5 * v * v +
                                         capture_.banding * std::sin(phase_ + 6.2832 * y / capture_.band));
    gains_.resize(width_);
    for (std::size_t x = 0; x < width_; ++x) gains_[x] = columns_[x] * (light_[x] + line);
    const float* shared = noise();
    const auto strength = static_cast<float>(capture_.noise), chroma = static_cast<float>(capture_.chroma_noise);
    level_.resize(width_);
    const std::array<const Plane*, 3> planes{&row.b, &row.g, &row.r};
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const float *in = planes[channel]->data(), *own = noise();
      for (std::size_t x = 0; x < width_; ++x) {
        const float value = in[x] * gains_[x] + shared[x] * strength + own[x] * chroma + 0.5F;
        level_[x] = static_cast<int>(std::min(std::max(value, 0.0F), 255.0F));
      }
      for (std::size_t x = 0; x < width_; ++x) bytes[3 * x + channel] = static_cast<unsigned char>(level_[x]);
    }
    if (capture_.gray) make_gray(bytes);
  }

 private:
  const float* noise() { return normal_deviates() + random_.bits() % kDeviates; }

  void make_gray(unsigned char* bytes) const {
    for (std::size_t x = 0; x < width_; ++x) {
      unsigned char* p = bytes + 3 * x;
      p[0] = p[1] = p[2] = static_cast<unsigned char>((p[0] * 29 + p[1] * 150 + p[2] * 77 + 128) >> 8);
    }
  }

  const Capture& capture_;
  Random& random_;
  std::size_t width_;
  int height_;
  double phase_, full_;
  Plane columns_, light_, gains_;
  std::vector<int> level_;
};

void add_grain(Random& random, double levels, Row& row) {
  const float* noise = normal_deviates() + random.bits() % kDeviates;
  const auto strength = static_cast<float>(levels);
  for (std::size_t x = 0; x < row.b.size(); ++x) {
    const float change = noise[x] * strength;
    row.b[x] += change, row.g[x] += change, row.r[x] += change;
  }
}

void pick_file(Random& random, Capture& capture, std::vector<std::string>& effects) {
  if (random.chance(0.65)) {
    capture.quality = random.integer(50, 95);
    capture.halved_chroma = random.chance(0.6);
    effects.push_back("jpeg");
  }
  capture.gray = random.chance(0.08);
  if (capture.gray) effects.push_back("gray");
}

}  // namespace

Capture pick_scanner_capture(Random& random, std::vector<std::string>& effects) {
  Capture capture;
  const auto sometimes = [&](double probability, const char* name) {
    if (!random.chance(probability)) return false;
    effects.push_back(name);
    return true;
  };
  capture.blur = random.between(0.4, 1.5);
  capture.noise = random.between(0.5, random.chance(0.2) ? 8 : 3);
  capture.chroma_noise = capture.noise * random.uniform(0, 0.5);
  if (sometimes(0.15, "fringe")) capture.fringe = random.uniform(0.2, 1);
  if (sometimes(0.2, "illumination")) {
    capture.slope_x = random.uniform(-0.06, 0.06), capture.slope_y = random.uniform(-0.06, 0.06);
  }
  if (sometimes(0.12, "stripes")) capture.stripes = random.between(0.003, 0.02);
  if (sometimes(0.12, "banding")) capture.banding = random.between(0.005, 0.03), capture.band = random.between(4, 80);
  pick_file(random, capture, effects);
  return capture;
}

Capture pick_camera_capture(Random& random, std::vector<std::string>& effects) {
  Capture capture;
  capture.blur = random.between(0.6, random.chance(0.15) ? 4 : 2);
  capture.grain = random.between(0.3, 8);
  capture.noise = random.between(0.5, 5);
  capture.chroma_noise = capture.noise * random.uniform(0.2, 0.8);
  if (random.chance(0.7)) {
    effects.push_back("illumination");
    capture.slope_x = random.uniform(-0.13, 0.13), capture.slope_y = random.uniform(-0.13, 0.13);
  }
  if (random.chance(0.6)) {
    effects.push_back("vignette");
    capture.vignette = random.uniform(0.05, 0.45);
  }
  pick_file(random, capture, effects);
  return capture;
}

void develop(const Capture& capture, Random& random, const std::function<void(int, Row&)>& draw, DrawnScan& scan) {
  const auto stride = static_cast<std::size_t>(scan.width) * 3;
  scan.bgr.resize(stride * static_cast<std::size_t>(scan.height));
  Spread spread(capture, scan.width);
  Sensor sensor(capture, random, scan);
  Row blurred(scan.width);
  for (int y = -spread.reach(); y < scan.height; ++y) {
    const int next = y + spread.reach();
    if (next < scan.height) {
      Row& row = spread.slot(next);
      draw(next, row);
      if (capture.grain > 0) add_grain(random, capture.grain, row);
      if (capture.blur > 0) spread.blur_across(row);
    }
    if (y < 0) continue;
    const bool as_it_is = capture.blur == 0 && capture.fringe == 0;
    if (!as_it_is) spread.blur_down(y, scan.height, blurred);
    sensor.expose(y, as_it_is ? spread.slot(y) : blurred, scan.bgr.data() + stride * static_cast<std::size_t>(y));
  }
  if (capture.quality > 0) {
    pass_through_jpeg(scan.bgr, scan.width, scan.height, capture.quality, capture.halved_chroma);
  }
}

}  // namespace vantrel::drawing
