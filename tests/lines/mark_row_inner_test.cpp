#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "lines/edges.h"
#include "lines/kernels.h"
#include "support/forms.h"
#include "support/random.h"

namespace {

using vantrel::lines::Direction;
using vantrel::lines::direction_of;
using vantrel::lines::RowTriple;
using Bytes = std::vector<unsigned char>;

struct Rows {
  Bytes before, here, after;

  explicit Rows(std::size_t cols) : before(cols), here(cols), after(cols) {}
  RowTriple triple() const { return {before.data(), here.data(), after.data()}; }
  void add(std::initializer_list<int> column) {
    auto at = column.begin();
    before.push_back(static_cast<unsigned char>(at[0]));
    here.push_back(static_cast<unsigned char>(at[1]));
    after.push_back(static_cast<unsigned char>(at[2]));
  }
};

/** Two bytes whose difference this is; it lies within -255 and 255. */
int minuend(int difference) { return std::max(difference, 0); }
int subtrahend(int difference) { return std::max(-difference, 0); }

/**
 * Adds three columns whose middle pixel has this gradient; false when no bytes have it. With X and Y the differences
 * across the two diagonals and P and Q twice those of the opposite neighbours, the gradient is (P + X + Y, Q + X - Y).
 */
bool add_gradient(Rows& rows, int across_rows, int along_rows) {
  const auto of_corners = [](int component) {
    const int rest = std::max(std::abs(component) - 510, std::abs(component) % 2);
    return component < 0 ? -rest : rest;
  };
  const int sum = of_corners(across_rows), difference = of_corners(along_rows);
  if ((sum + difference) % 2 != 0 || std::abs(sum) + std::abs(difference) > 510) return false;
  const int X = (sum + difference) / 2, Y = (sum - difference) / 2;
  const int P = (across_rows - sum) / 2, Q = (along_rows - difference) / 2;
  rows.add({minuend(Y), subtrahend(Q), subtrahend(X)});
  rows.add({minuend(P), 0, subtrahend(P)});
  rows.add({minuend(X), minuend(Q), subtrahend(Y)});
  return true;
}

TEST(MarkRow, ClassifiesEveryGradientOfBytesAlikeInEveryForm) {
  int gradients = 0;
  for (int across = -1020; across <= 1020; ++across) {
    Rows rows(0);
    std::vector<int> alongs;
    for (int along = -1020; along <= 1020; ++along) {
      if (add_gradient(rows, across, along)) alongs.push_back(along);
    }
    gradients += static_cast<int>(alongs.size());
    const auto cols = static_cast<int>(rows.here.size());
    support::for_each_form([&](const auto& form) {
      Bytes edge(rows.here.size()), direction(rows.here.size());
      form.lines.mark_row(rows.triple(), edge.data(), direction.data(), 1, cols - 1);
      for (std::size_t i = 0; i < alongs.size(); ++i) {
        const bool is_edge = across * across + alongs[i] * alongs[i] >= 201 * 201;
        const auto wanted = is_edge ? direction_of(across, alongs[i]) : Direction::kNone;
        ASSERT_EQ(edge[3 * i + 1], is_edge ? 0 : 255) << across << " " << alongs[i];
        ASSERT_EQ(direction[3 * i + 1], static_cast<int>(wanted)) << across << " " << alongs[i];
      }
    });
  }
  // Pairs of one parity, each within 1020, both together within 1530.
  EXPECT_EQ(gradients, 1'822'741);
}

TEST(MarkRow, NoNeighboursWithinFortyFourLevelsMakeAnEdge) {
  // The squared gradient is convex, so its largest values lie where each neighbour is as low or as high as it can be.
  const auto edges_among = [](int range) {
    int edges = 0;
    for (unsigned low_or_high = 0; low_or_high < 1u << 8; ++low_or_high) {
      const auto level = [&](int neighbour) {
        return static_cast<unsigned char>((low_or_high >> neighbour & 1) != 0 ? 100 + range : 100);
      };
      const Bytes before{level(0), level(1), level(2)}, here{level(3), 100, level(4)},
          after{level(5), level(6), level(7)};
      unsigned char edge[3], direction[3];
      vantrel::lines::plain::mark_row({before.data(), here.data(), after.data()}, edge, direction, 1, 2);
      edges += edge[1] == 0 ? 1 : 0;
    }
    return edges;
  };
  EXPECT_EQ(edges_among(44), 0);
  EXPECT_EQ(edges_among(45), 8);
}

TEST(MarkRow, FindsALoneEdgeWhereverItLiesInEveryForm) {
  // On a ground of one level, so that all around it is passed over; rows begin at every place of a cache's line.
  for (int at = 0; at < 300; ++at) {
    Rows rows(302);
    for (Bytes* row : {&rows.before, &rows.here, &rows.after}) std::fill(row->begin(), row->end(), 90);
    rows.after[static_cast<std::size_t>(at) + 1] = 255;
    rows.before[static_cast<std::size_t>(at) + 1] = at % 2 == 0 ? 0 : 90;
    support::for_each_form([&](const auto& form) {
      Bytes edge(302, 9), direction(302, 9);
      form.lines.mark_row(rows.triple(), edge.data(), direction.data(), 1 + at % 64, 301);
      Bytes wanted_edge(302, 9), wanted_direction(302, 9);
      vantrel::lines::plain::mark_row(rows.triple(), wanted_edge.data(), wanted_direction.data(), 1 + at % 64, 301);
      ASSERT_EQ(edge, wanted_edge) << at;
      ASSERT_EQ(direction, wanted_direction) << at;
    });
  }
}

TEST(MarkRow, StaysWithinItsColumnsInEveryForm) {
  support::Random random(3);
  for (int to = 1; to < 150; ++to) {
    Rows rows(static_cast<std::size_t>(to) + 1);
    for (Bytes* row : {&rows.before, &rows.here, &rows.after}) {
      for (auto& byte : *row) byte = static_cast<unsigned char>(random.pick(0, 255));
    }
    for (const int from : {1, std::max(1, to - 40), to}) {
      Bytes wanted_edge(152, 9), wanted_direction(152, 9);
      vantrel::lines::plain::mark_row(rows.triple(), wanted_edge.data(), wanted_direction.data(), from, to);
      support::for_each_form([&](const auto& form) {
        Bytes edge(152, 9), direction(152, 9);
        form.lines.mark_row(rows.triple(), edge.data(), direction.data(), from, to);
        ASSERT_EQ(edge, wanted_edge) << from << " " << to;
        ASSERT_EQ(direction, wanted_direction) << from << " " << to;
      });
    }
  }
}

}  // namespace
