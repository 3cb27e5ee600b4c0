// What a program makes of a scan that reads and writes by OpenCV: to be measured beside the tool.
//
//     opencv_crop crop LEFT TOP WIDTH HEIGHT OUT_FOLDER FILE...
//     opencv_crop blank OUT.png FILE       writes the whole picture, as an overlay
#include <cstdlib>
#include <filesystem>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <string_view>

int main(int argc, char** argv) {
  cv::setNumThreads(1);
  if (argc == 4 && std::string_view(argv[1]) == "blank") return cv::imwrite(argv[2], cv::imread(argv[3])) ? 0 : 1;
  if (argc < 8) return 2;
  const cv::Rect part(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]));
  for (int i = 7; i < argc; ++i) {
    const std::filesystem::path input(argv[i]);
    if (!cv::imwrite(std::filesystem::path(argv[6]) / input.filename(), cv::imread(input)(part))) return 1;
  }
  return 0;
}
