#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "components/exports.h"
#include "faults/routes.h"
#include "lines/exports.h"
#include "segment/exports.h"

namespace faults {
namespace {

using support::append;

constexpr int kRows = 160;
constexpr int kCols = 200;

/** Points of one level or upright border on a scan of 200 x 160 pixels, and what a search for it is given. */
struct Border {
  explicit Border(int dir_class) {
    for (std::size_t t = 0; t < 180; ++t) {
      sines[t] = std::sin(static_cast<double>(t) * M_PI / 180);
      cosines[t] = std::cos(static_cast<double>(t) * M_PI / 180);
    }
    for (int i = 0; i < 150; ++i) {
      const int row = dir_class == 0 ? 150 : i;
      const int col = dir_class == 0 ? i : 10;
      points.push_back({static_cast<float>(row), static_cast<float>(col)});
      edge[static_cast<std::size_t>(row * kCols + col)] = 0;
    }
  }

  int count() const { return static_cast<int>(points.size()); }

  std::array<double, 180> sines{}, cosines{};
  std::vector<typePoint> points;
  std::vector<unsigned char> edge = std::vector<unsigned char>(kRows * kCols, 255);
  std::array<double, 8> normal{};
  std::array<double, 4> distance{};
  _BNODE line{};
};

void add_line_searches(std::vector<Route>& routes, Scans& s) {
  for (const int dir_class : {0, 2}) {
    const std::string direction = ", direction " + std::to_string(dir_class);
    routes.push_back({"Compute_Hough_Angle" + direction, {0}, {}, [dir_class] {
                        Border b(dir_class);
                        return Answer{
                            Compute_Hough_Angle(b.normal.data(), b.distance.data(), b.points.data(), kRows, kCols,
                                                b.count(), dir_class, b.sines.data(), b.cosines.data()),
                            {}};
                      }});
    for (const auto search : {Compute_Hough_Angle2, Compute_Hough_Angle3}) {
      const std::string name = search == Compute_Hough_Angle2 ? "Compute_Hough_Angle2" : "Compute_Hough_Angle3";
      routes.push_back({name + direction, {0, 2}, {&s.gray}, [&s, dir_class, search] {
                          Border b(dir_class);
                          const int code = search(s.gray.ptr()->pBits, &b.line, b.edge.data(), b.normal.data(),
                                                  b.distance.data(), b.points.data(), kRows, kCols, b.count(),
                                                  dir_class, b.sines.data(), b.cosines.data(), dir_class, 0);
                          return Answer{code, {}};
                        }});
    }
  }
}

/** Two full rows: the second one is preferred, and the first one is a border. */
void add_verifiers(std::vector<Route>& routes) {
  std::vector<unsigned char> edge(100 * 100, 255);
  for (const int row : {25, 60}) std::fill_n(edge.begin() + row * 100, 100, static_cast<unsigned char>(0));
  routes.push_back({"VerifyCorrectLineV_0", {0}, {}, [edge]() mutable {
                      return Answer{VerifyCorrectLineV_0(edge.data(), nullptr, nullptr, 20, 60, 100, 100, 0), {}};
                    }});
  routes.push_back({"VerifyCorrectLineV_1", {0}, {}, [edge]() mutable {
                      return Answer{VerifyCorrectLineV_1(edge.data(), nullptr, nullptr, 50, 100, 100, 1), {}};
                    }});
}

void add_components(std::vector<Route>& routes, Scans& s) {
  routes.push_back({"_BLIST::Constructor", {0}, {}, [] {
                      _BLIST list{};
                      const int code = list.Constructor(500, 100) ? 1 : 0;
                      EXPECT_EQ(list.pool == nullptr, code == 0);
                      list.Destructor();
                      return Answer{code, {}};
                    }});
  routes.push_back({"Extract_Eight_Connected_Components", {0}, {&s.bits}, [&s] {
                      _BLIST list{};
                      if (!list.Constructor(500, 100)) return Answer{};
                      const int code = Extract_Eight_Connected_Components(*s.bits.ptr(), list);
                      list.Destructor();
                      return Answer{code, {}};
                    }});
  routes.push_back({"Gray2Bin", {0}, {}, [] {
                      std::vector<unsigned char> edge(16 * 16, 255);
                      edge[5 * 16 + 5] = 0;
                      _BLIST list{};
                      if (!list.Constructor(500, 100)) return Answer{};
                      const int code = Gray2Bin(edge.data(), list, 16, 16) ? 1 : 0;
                      list.Destructor();
                      return Answer{code, {}};
                    }});
}

}  // namespace

void add_pieces(std::vector<Route>& routes, Scans& scans) {
  add_line_searches(routes, scans);
  add_verifiers(routes);
  add_components(routes, scans);
  routes.push_back({"MakeMatrix", {0}, {}, [] {
                      double** const matrix = MakeMatrix(3, 4);
                      const Answer answer{matrix != nullptr ? 1 : 0, {}};
                      if (matrix != nullptr) FreeMatrix(matrix);
                      return answer;
                    }});
  routes.push_back({"Moving_Average", {0}, {}, [] {
                      std::array<unsigned char, 64> pixels{};
                      pixels.fill(100);
                      Answer answer{Moving_Average(pixels.data(), 8, 8, 8) ? 1 : 0, {}};
                      append(answer, pixels);
                      return answer;
                    }});
}

}  // namespace faults
