#include <chrono>
#include <cstdio>
#include <string_view>

#include "contest.h"
#include "kernels/form.h"

namespace {

/** Runs the one entry that takes part once, and prints its nanoseconds a unit. */
int run_cold() {
  for (const contest::Entry& entry : contest::entries) {
    if (entry.name != contest::only) continue;
    const auto start = std::chrono::steady_clock::now();
    const bool done = entry.run();
    const std::chrono::duration<double, std::nano> taken = std::chrono::steady_clock::now() - start;
    std::printf("%.6g\n", taken.count() / static_cast<double>(entry.units));
    return done ? 0 : 1;
  }
  return 1;
}

}  // namespace

/** `--cold ROW/SIZE/CONTENDER` runs that entry alone, once. */
int main(int argc, char** argv) {
  const bool cold = argc == 3 && std::string_view(argv[1]) == "--cold";
  if (cold) contest::only = argv[2];
#ifdef WITH_OPENCV
  cv::setNumThreads(1);
  benchmark::AddCustomContext("opencv", CV_VERSION);
#endif
  benchmark::AddCustomContext("kernels", vantrel::kernels::chosen().name);
  contest::enter_image_rows();
  contest::enter_line_rows();
  contest::enter_warp_rows();
  contest::enter_scale_rows();
  contest::enter_card_rows();
  if (cold) return run_cold();
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
