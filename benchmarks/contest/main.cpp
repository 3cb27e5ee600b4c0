#include <cstdio>

#include "contest.h"
#include "kernels/form.h"

int main(int argc, char** argv) {
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
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
