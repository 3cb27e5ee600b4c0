#include <benchmark/benchmark.h>

#include "scans.h"
#include "vantrel_cards.h"

namespace {

/** A card on dark glass at 150, 300 and 600 dots per inch. */
void scan_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height", "dpi"})
      ->Args({650, 450, 150})
      ->Args({1300, 900, 300})
      ->Args({2600, 1800, 600})
      ->Unit(benchmark::kMillisecond);
}

/** A drawn scan, its rows from the bottom as they lie in its block. */
class Scan {
 public:
  Scan(const benchmark::State& state, int bit_count, const benchmark_scans::Ground& ground)
      : block_(benchmark_scans::card_scan(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), bit_count,
                                          ground)) {
    image = {block_.row(block_.height() - 1),
             block_.width(),
             block_.height(),
             -block_.stride(),
             bit_count == 8 ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_BGR,
             static_cast<double>(state.range(2))};
  }

  vantrel_image image;

 private:
  support::Image block_;
};

vantrel_find_options only(const vantrel_method& method) {
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = &method;
  options.method_count = 1;
  return options;
}

void find_card(benchmark::State& state, int bit_count, vantrel_method method, const benchmark_scans::Ground& ground) {
  const Scan scan(state, bit_count, ground);
  const vantrel_find_options options = only(method);
  std::size_t found = 0;
  for (auto _ : state) {
    vantrel_cards* cards = nullptr;
    if (vantrel_find(&scan.image, &options, &cards) != VANTREL_OK) state.SkipWithError("not searched");
    found = vantrel_cards_count(cards);
    vantrel_cards_release(cards);
  }
  state.counters["cards"] = static_cast<double>(found);
  state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
}

void cut_card(benchmark::State& state, int bit_count) {
  const Scan scan(state, bit_count, benchmark_scans::kDarkGlass);
  const double width = scan.image.width;
  const double height = scan.image.height;
  const vantrel_quad corners = {{width / 16, height / 8},
                                {15 * width / 16, height / 10},
                                {14 * width / 16, 9 * height / 10},
                                {width / 18, 7 * height / 8}};
  std::int64_t pixels = 0;
  for (auto _ : state) {
    vantrel_picture picture = VANTREL_PICTURE_INIT;
    if (vantrel_cut(&scan.image, &corners, VANTREL_MARGIN_TIGHT, &picture) != VANTREL_OK)
      state.SkipWithError("not cut");
    benchmark::DoNotOptimize(picture.data);
    pixels = std::int64_t{picture.width} * picture.height;
    vantrel_picture_release(&picture);
  }
  state.SetItemsProcessed(state.iterations() * pixels);
}

template <class Make>
void make_picture(benchmark::State& state, int bit_count, Make make) {
  const Scan scan(state, bit_count, benchmark_scans::kDarkGlass);
  for (auto _ : state) {
    vantrel_picture picture = VANTREL_PICTURE_INIT;
    if (make(scan.image, picture) != VANTREL_OK) state.SkipWithError("not made");
    benchmark::DoNotOptimize(picture.data);
    vantrel_picture_release(&picture);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0) * state.range(1));
}

void reduce_scan(benchmark::State& state, int bit_count, int times) {
  make_picture(state, bit_count, [times](const vantrel_image& image, vantrel_picture& picture) {
    return vantrel_reduce(&image, times, &picture);
  });
}

void convert_scan(benchmark::State& state, vantrel_format format) {
  make_picture(state, 24, [format](const vantrel_image& image, vantrel_picture& picture) {
    picture.format = format;
    return vantrel_convert(&image, &picture);
  });
}

}  // namespace

BENCHMARK_CAPTURE(find_card, dark_glass_gray, 8, VANTREL_METHOD_DARK_GLASS, benchmark_scans::kDarkGlass)
    ->Apply(scan_sizes);
BENCHMARK_CAPTURE(find_card, dark_glass_colour, 24, VANTREL_METHOD_DARK_GLASS, benchmark_scans::kDarkGlass)
    ->Apply(scan_sizes);
BENCHMARK_CAPTURE(find_card, flat_light_gray, 8, VANTREL_METHOD_FLAT_LIGHT, benchmark_scans::kFlatGround)
    ->Apply(scan_sizes);
BENCHMARK_CAPTURE(find_card, flat_light_colour, 24, VANTREL_METHOD_FLAT_LIGHT, benchmark_scans::kFlatGround)
    ->Apply(scan_sizes);
BENCHMARK_CAPTURE(cut_card, gray, 8)->Apply(scan_sizes);
BENCHMARK_CAPTURE(cut_card, colour, 24)->Apply(scan_sizes);
BENCHMARK_CAPTURE(reduce_scan, gray_by_2, 8, 2)->Apply(scan_sizes);
BENCHMARK_CAPTURE(reduce_scan, colour_by_2, 24, 2)->Apply(scan_sizes);
BENCHMARK_CAPTURE(reduce_scan, colour_by_3, 24, 3)->Apply(scan_sizes);
BENCHMARK_CAPTURE(convert_scan, to_gray, VANTREL_FORMAT_GRAY)->Apply(scan_sizes);
BENCHMARK_CAPTURE(convert_scan, to_rgba, VANTREL_FORMAT_RGBA)->Apply(scan_sizes);
