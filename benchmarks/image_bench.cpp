#include <benchmark/benchmark.h>

#include <vector>

#include "image/exports.h"
#include "measure.h"
#include "scans.h"

namespace {

using benchmark_scans::card_scan;
using benchmark_scans::measure;
using benchmark_scans::scan_sizes;
using benchmark_scans::work_on;
using support::Image;

template <int bit_count>
void create(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0));
  const int height = static_cast<int>(state.range(1));
  measure(state, work_on(Image(width, height, bit_count)), [&] {
    Image made;
    return CreateImage(made.ptr(), width, height, bit_count, 11811, 11811) && made.at(height - 1, 0) == 255;
  });
}

template <int bit_count>
void copy(benchmark::State& state) {
  Image scan = card_scan(state, bit_count);
  measure(state, work_on(scan), [&] {
    Image copied;
    return ImageCopy(scan.ptr(), copied.ptr()) && copied.at(0, 0) == scan.at(0, 0);
  });
}

void to_gray(benchmark::State& state) {
  Image scan = card_scan(state, 24);
  const int level = (2 * scan.at(0, 0) + 9 * scan.at(0, 1) + 5 * scan.at(0, 2)) / 16;
  measure(state, work_on(scan), [&] {
    Image gray;
    return Color2Gray(scan.ptr(), gray.ptr()) && gray.at(0, 0) == level;
  });
}

void split(benchmark::State& state) {
  Image scan = card_scan(state, 24);
  const int stride = support::stride_of(scan.width(), 8);
  const int last = scan.width() - 1;
  std::vector<Image> planes(3, Image(scan.width(), scan.height(), 8));
  const auto plane = [&](std::size_t i) { return planes[i].ptr()->pBits; };
  measure(
      state, work_on(scan),
      [&] {
        RawData2RGB(scan.ptr()->pBits, plane(0), plane(1), plane(2), scan.height(), scan.width(), stride,
                    scan.stride());
      },
      [&] {
        return planes[0].at(0, last) == scan.at(0, 3 * last) && planes[2].at(0, last) == scan.at(0, 3 * last + 2);
      });
}

/** A crop that begins within a word, and in black and white within a byte. Pixels and bytes are those of the crop. */
template <int bit_count>
void cut(benchmark::State& state) {
  Image scan = card_scan(state, bit_count);
  const auto part = [](int sixteenths, int of) { return static_cast<std::int16_t>(of * sixteenths / 16); };
  const MYRECT rect{static_cast<std::int16_t>(part(1, scan.width()) | 1), part(14, scan.height()),
                    part(15, scan.width()), part(2, scan.height()), 0};
  Image expected(rect.right - rect.left + 1, rect.top - rect.bottom + 1, bit_count);
  measure(state, work_on(expected), [&] {
    Image out;
    return CutRectImage(scan.ptr(), out.ptr(), rect) == 1 && out.width() == expected.width();
  });
}

}  // namespace

BENCHMARK(create<1>)->Name("CreateImage/bilevel")->Apply(scan_sizes);
BENCHMARK(create<8>)->Name("CreateImage/gray")->Apply(scan_sizes);
BENCHMARK(create<24>)->Name("CreateImage/colour")->Apply(scan_sizes);
BENCHMARK(copy<8>)->Name("ImageCopy/gray")->Apply(scan_sizes);
BENCHMARK(copy<24>)->Name("ImageCopy/colour")->Apply(scan_sizes);
BENCHMARK(to_gray)->Name("Color2Gray")->Apply(scan_sizes);
BENCHMARK(split)->Name("RawData2RGB")->Apply(scan_sizes);
BENCHMARK(cut<1>)->Name("CutRectImage/bilevel")->Apply(scan_sizes);
BENCHMARK(cut<8>)->Name("CutRectImage/gray")->Apply(scan_sizes);
BENCHMARK(cut<24>)->Name("CutRectImage/colour")->Apply(scan_sizes);
