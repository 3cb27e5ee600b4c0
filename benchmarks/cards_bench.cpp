#include <benchmark/benchmark.h>

#include <cstdint>
#include <utility>

#include "measure.h"
#include "scans.h"
#include "vantrel_cards.h"

namespace {

using benchmark_scans::kDarkGlass;
using benchmark_scans::kFlatGround;
using benchmark_scans::measure;
using benchmark_scans::Work;

/** A card at 75, 150, 300 and 600 dots per inch. */
void sizes_at_resolutions(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height", "dpi"})
      ->Args({320, 220, 75})
      ->Args({650, 450, 150})
      ->Args({1300, 900, 300})
      ->Args({2600, 1800, 600})
      ->Unit(benchmark::kMillisecond);
}

/** Those that can be enlarged. */
void enlarged_sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"width", "height", "dpi"})
      ->Args({180, 110, 50})
      ->Args({720, 440, 200})
      ->Args({1440, 880, 400})
      ->Unit(benchmark::kMillisecond);
}

constexpr vantrel_format format_of(int bit_count) {
  return bit_count == 1 ? VANTREL_FORMAT_BILEVEL : bit_count == 8 ? VANTREL_FORMAT_GRAY : VANTREL_FORMAT_BGR;
}

/** A drawn scan, its rows from the bottom as they lie in its block. */
class Scan {
 public:
  Scan(support::Image block, double dpi)
      : image{block.row(block.height() - 1),
              block.width(),
              block.height(),
              -block.stride(),
              format_of(block.header().biBitCount),
              dpi},
        block_(std::move(block)) {}
  Scan(const benchmark::State& state, int bit_count, const benchmark_scans::Ground& ground = kDarkGlass)
      : Scan(benchmark_scans::card_scan(state, bit_count, ground), static_cast<double>(state.range(2))) {}

  Work work() const { return benchmark_scans::work_on(block_); }

  vantrel_image image;

 private:
  support::Image block_;
};

void find_cards(benchmark::State& state, const Scan& scan, vantrel_method method, std::size_t cards) {
  vantrel_find_options options = VANTREL_FIND_OPTIONS_INIT;
  options.methods = &method;
  options.method_count = 1;
  measure(state, scan.work(), [&] {
    vantrel_cards* found = nullptr;
    const bool done = vantrel_find(&scan.image, &options, &found) == VANTREL_OK && vantrel_cards_count(found) == cards;
    vantrel_cards_release(found);
    return done;
  });
}

template <int bit_count>
void find_on_dark_glass(benchmark::State& state) {
  find_cards(state, Scan(state, bit_count), VANTREL_METHOD_DARK_GLASS, 1);
}

template <int bit_count>
void find_on_flat_light(benchmark::State& state) {
  find_cards(state, Scan(state, bit_count, kFlatGround), VANTREL_METHOD_FLAT_LIGHT, 1);
}

template <int bit_count>
void find_anywhere(benchmark::State& state) {
  find_cards(state, Scan(state, bit_count), VANTREL_METHOD_ANYWHERE, 1);
}

template <int bit_count>
void find_on_sheet(benchmark::State& state) {
  find_cards(state, Scan(benchmark_scans::sheet_of_cards(bit_count), 300), VANTREL_METHOD_SHEET, 8);
}

/** Times the making of a picture in a block of the library's. */
template <class Make>
void make_picture(benchmark::State& state, const Scan& scan, const Work& work, Make make) {
  measure(state, work, [&] {
    vantrel_picture picture = VANTREL_PICTURE_INIT;
    const bool done = make(&scan.image, &picture) == VANTREL_OK && picture.width > 0;
    vantrel_picture_release(&picture);
    return done;
  });
}

/** Pixels and bytes are those of the picture. */
template <int bit_count>
void cut_card(benchmark::State& state) {
  const Scan scan(state, bit_count);
  const double width = scan.image.width;
  const double height = scan.image.height;
  const vantrel_quad corners = {{width / 16, height / 8},
                                {15 * width / 16, height / 10},
                                {14 * width / 16, 9 * height / 10},
                                {width / 18, 7 * height / 8}};
  std::int32_t cols = 0;
  std::int32_t rows = 0;
  vantrel_cut_size(&corners, VANTREL_MARGIN_TIGHT, &cols, &rows);
  const std::int64_t pixels = std::int64_t{cols} * rows;
  const Work work{pixels, pixels * bit_count / 8};
  make_picture(state, scan, work, [&](const vantrel_image* image, vantrel_picture* picture) {
    return vantrel_cut(image, &corners, VANTREL_MARGIN_TIGHT, picture);
  });
}

/** All but one column at the left, so that in black and white no byte begins where one of the scan does. */
template <int bit_count>
void crop_scan(benchmark::State& state) {
  const Scan scan(state, bit_count);
  const vantrel_rect part{1, 0, scan.image.width, scan.image.height};
  make_picture(state, scan, scan.work(), [&](const vantrel_image* image, vantrel_picture* picture) {
    return vantrel_crop(image, &part, picture);
  });
}

/** Pixels and bytes are those of the picture. */
template <vantrel_enlargement method, int bit_count>
void enlarge_scan(benchmark::State& state) {
  const Scan scan(state, bit_count);
  make_picture(
      state, scan, {4 * scan.work().items, 4 * scan.work().bytes},
      [](const vantrel_image* image, vantrel_picture* picture) { return vantrel_enlarge(image, method, picture); });
}

template <int bit_count, int times>
void reduce_scan(benchmark::State& state) {
  const Scan scan(state, bit_count);
  make_picture(state, scan, scan.work(), [](const vantrel_image* image, vantrel_picture* picture) {
    return vantrel_reduce(image, times, picture);
  });
}

template <int bit_count, vantrel_format format>
void convert_scan(benchmark::State& state) {
  const Scan scan(state, bit_count);
  make_picture(state, scan, scan.work(), [](const vantrel_image* image, vantrel_picture* picture) {
    picture->format = format;
    return vantrel_convert(image, picture);
  });
}

}  // namespace

BENCHMARK(find_on_dark_glass<8>)->Name("vantrel_find/dark_glass_gray")->Apply(sizes_at_resolutions);
BENCHMARK(find_on_dark_glass<24>)->Name("vantrel_find/dark_glass_colour")->Apply(sizes_at_resolutions);
BENCHMARK(find_on_flat_light<8>)->Name("vantrel_find/flat_light_gray")->Apply(sizes_at_resolutions);
BENCHMARK(find_on_flat_light<24>)->Name("vantrel_find/flat_light_colour")->Apply(sizes_at_resolutions);
BENCHMARK(find_anywhere<8>)->Name("vantrel_find/anywhere_gray")->Apply(sizes_at_resolutions);
BENCHMARK(find_anywhere<24>)->Name("vantrel_find/anywhere_colour")->Apply(sizes_at_resolutions);
BENCHMARK(find_on_sheet<1>)->Name("vantrel_find/sheet_bilevel")->Unit(benchmark::kMillisecond);
BENCHMARK(find_on_sheet<8>)->Name("vantrel_find/sheet_gray")->Unit(benchmark::kMillisecond);
BENCHMARK(find_on_sheet<24>)->Name("vantrel_find/sheet_colour")->Unit(benchmark::kMillisecond);
BENCHMARK(cut_card<8>)->Name("vantrel_cut/gray")->Apply(sizes_at_resolutions);
BENCHMARK(cut_card<24>)->Name("vantrel_cut/colour")->Apply(sizes_at_resolutions);
BENCHMARK(crop_scan<1>)->Name("vantrel_crop/bilevel")->Apply(sizes_at_resolutions);
BENCHMARK(crop_scan<8>)->Name("vantrel_crop/gray")->Apply(sizes_at_resolutions);
BENCHMARK(crop_scan<24>)->Name("vantrel_crop/colour")->Apply(sizes_at_resolutions);
BENCHMARK(enlarge_scan<VANTREL_ENLARGE_LINEAR, 8>)->Name("vantrel_enlarge/linear_gray")->Apply(enlarged_sizes);
BENCHMARK(enlarge_scan<VANTREL_ENLARGE_LINEAR, 24>)->Name("vantrel_enlarge/linear_colour")->Apply(enlarged_sizes);
BENCHMARK(enlarge_scan<VANTREL_ENLARGE_CUBIC, 8>)->Name("vantrel_enlarge/cubic_gray")->Apply(enlarged_sizes);
BENCHMARK(enlarge_scan<VANTREL_ENLARGE_CUBIC, 24>)->Name("vantrel_enlarge/cubic_colour")->Apply(enlarged_sizes);
BENCHMARK(reduce_scan<8, 2>)->Name("vantrel_reduce/gray_by_2")->Apply(sizes_at_resolutions);
BENCHMARK(reduce_scan<24, 2>)->Name("vantrel_reduce/colour_by_2")->Apply(sizes_at_resolutions);
BENCHMARK(reduce_scan<24, 3>)->Name("vantrel_reduce/colour_by_3")->Apply(sizes_at_resolutions);
BENCHMARK(convert_scan<1, VANTREL_FORMAT_GRAY>)->Name("vantrel_convert/bilevel_to_gray")->Apply(sizes_at_resolutions);
BENCHMARK(convert_scan<24, VANTREL_FORMAT_GRAY>)->Name("vantrel_convert/colour_to_gray")->Apply(sizes_at_resolutions);
BENCHMARK(convert_scan<24, VANTREL_FORMAT_RGBA>)->Name("vantrel_convert/colour_to_rgba")->Apply(sizes_at_resolutions);
BENCHMARK(convert_scan<8, VANTREL_FORMAT_RGB>)->Name("vantrel_convert/gray_to_colour")->Apply(sizes_at_resolutions);
