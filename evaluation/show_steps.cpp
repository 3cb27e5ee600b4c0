/**
 * Tells what the finder saw on a scan, step by step, for whoever draws it.
 *
 *   vantrel_show_steps SCAN.ppm > STEPS.json
 *
 * Coordinates are those of the copy, but for the finalists' "refined", which are the scan's.
 */
#include <cstdio>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "anywhere/finalists.h"

namespace {

using namespace vantrel;

struct Picture {
  int cols = 0;
  int rows = 0;
  std::vector<unsigned char> rgb;
};

bool read_ppm(const char* path, Picture& picture) {
  std::ifstream file(path, std::ios::binary);
  std::string kind;
  int most = 0;
  if (!(file >> kind >> picture.cols >> picture.rows >> most) || kind != "P6" || most != 255) return false;
  file.get();
  picture.rgb.resize(static_cast<std::size_t>(picture.cols) * static_cast<std::size_t>(picture.rows) * 3);
  file.read(reinterpret_cast<char*>(picture.rgb.data()), static_cast<std::streamsize>(picture.rgb.size()));
  return file.good();
}

void print_quad(const anywhere::Quad& quad) {
  for (std::size_t i = 0; i < 4; ++i) std::printf("%s[%.3f,%.3f]", i == 0 ? "[" : ",", quad[i].x, quad[i].y);
  std::printf("]");
}

template <class Range, class Print>
void print_list(const char* name, const Range& range, Print print) {
  std::printf(",\n\"%s\":[", name);
  bool first = true;
  for (const auto& item : range) {
    if (!first) std::printf(",\n");
    first = false;
    print(item);
  }
  std::printf("]");
}

void print_line(const anywhere::SupportedLine& line) {
  std::printf("{\"normal\":[%.6f,%.6f],\"offset\":%.4f,\"votes\":%d,\"frame\":%s}", line.line.normal.x,
              line.line.normal.y, line.line.offset, line.votes, line.is_frame ? "true" : "false");
}

void print_plane(const anywhere::Copy& copy, std::size_t plane) {
  std::printf(",\n\"light\":[");
  for (std::size_t i = 0; i < copy.size(); ++i) std::printf("%s%d", i == 0 ? "" : ",", copy.planes[plane][i]);
  std::printf("],\n");
}

}  // namespace

int main(int count, char** arguments) {
  Picture picture;
  if (count != 2 || !read_ppm(arguments[1], picture)) {
    std::fputs("usage: vantrel_show_steps SCAN.ppm > STEPS.json\n", stderr);
    return 2;
  }
  const anywhere::Scan scan = {{picture.rgb.data(), picture.rows, picture.cols, std::ptrdiff_t{picture.cols} * 3},
                               anywhere::Layout::kRgb};
  anywhere::Analysis analysis;
  anywhere::Finalists finalists;
  if (!anywhere::analyse(scan, analysis) || !anywhere::choose_finalists(scan, analysis, finalists)) return 1;
  std::printf("{\"factor\":%d,\"rows\":%d,\"cols\":%d,\"threshold\":%d", analysis.copy.factor, analysis.copy.rows,
              analysis.copy.cols, analysis.edges.threshold);
  print_plane(analysis.copy, anywhere::kLight);
  std::printf("\"barriers\":[");
  for (std::size_t i = 0; i < analysis.barriers.distances.size(); ++i)
    std::printf("%s%d", i == 0 ? "" : ",", analysis.barriers.distances[i]);
  std::printf("]");
  print_list("edges", analysis.edges.all(),
             [](const anywhere::Edge& e) { std::printf("[%.2f,%.2f,%d,%d]", e.x, e.y, e.magnitude, e.direction); });
  print_list("lines", analysis.lines.all(), print_line);
  print_list("candidates", analysis.candidates.all(), [](const anywhere::Candidate& candidate) {
    std::printf("{\"region\":%s,\"plausibility\":%.4f,\"quad\":", candidate.lines[0] < 0 ? "true" : "false",
                candidate.plausibility);
    print_quad(candidate.quad);
    std::printf("}");
  });
  print_list("finalists", finalists.all(), [](const anywhere::Finalist& one) {
    std::printf("{\"first\":%.4f,\"score\":%.4f,\"confidence\":%.4f,\"shares\":[%.3f,%.3f,%.3f,%.3f],\"quad\":",
                one.first_score, one.score, one.confidence, one.refined.shares[0], one.refined.shares[1],
                one.refined.shares[2], one.refined.shares[3]);
    print_quad(one.quad);
    std::printf(",\"refined\":");
    print_quad(one.refined.quad);
    std::printf("}");
  });
  std::printf("}\n");
  return 0;
}
