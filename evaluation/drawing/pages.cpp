// Text pages and receipts.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/faces.h"
#include "drawing/lettering.h"

namespace vantrel::drawing {
namespace {

void draw_table(Canvas& canvas, Random& random, const Box& box, Lettering& print, Colour ink) {
  const int columns = random.integer(2, 6);
  const double row = print.height() * random.uniform(1.8, 3), rule = random.uniform(0.1, 0.35);
  const bool upright_rules = random.chance(0.6), shaded = random.chance(0.4);
  if (shaded) canvas.fill({box.left, box.top, box.width, row}, ink, 0.2);
  double y = box.top;
  for (; y + row < box.bottom(); y += row) {
    canvas.fill({box.left, y, box.width, rule}, ink);
    for (int column = 0; column < columns; ++column) {
      print.write(canvas, random, {box.left + box.width * column / columns + 1, y + (row - print.height()) / 2},
                  box.width / columns * random.uniform(0.3, 0.95) - 1, ink);
    }
  }
  canvas.fill({box.left, y, box.width, rule}, ink);
  for (int column = 0; upright_rules && column <= columns; ++column) {
    canvas.fill({box.left + (box.width - rule) * column / columns, box.top, rule, y - box.top}, ink);
  }
}

void draw_figure(Canvas& canvas, Random& random, const Box& box, Colour ink) {
  if (random.chance(0.5)) {
    draw_photograph(canvas, random, box);
    return;
  }
  canvas.frame(box, random.uniform(0.15, 0.6), ink);
  Point last{box.left, box.top + box.height * random.uniform()};
  for (int i = 1; i <= 12; ++i) {
    const Point next{box.left + box.width * i / 12, box.top + box.height * random.uniform(0.1, 0.9)};
    canvas.line(last, next, 0.3, ink);
    last = next;
  }
}

void draw_column(Canvas& canvas, Random& random, const Box& box, Lettering& print, Colour ink) {
  const double line = print.height() * random.uniform(1.5, 2.2);
  for (double y = box.top; y < box.bottom() - 2 * line;) {
    const double height = std::min(random.uniform(15, 70), box.bottom() - y);
    const Box part{box.left, y, box.width, height};
    const double kind = random.uniform();
    if (kind < 0.08) {
      draw_table(canvas, random, part, print, ink);
    } else if (kind < 0.14) {
      draw_figure(canvas, random, part, ink);
    } else if (kind < 0.19) {
      canvas.frame(part, random.uniform(0.15, 0.8), ink);
      print.paragraph(canvas, random, part.inset(3), line, ink);
    } else {
      print.paragraph(canvas, random, part, line, ink);
    }
    y += height + line;
    if (random.chance(0.3) && y + 12 < box.bottom()) {
      Lettering title = heading(random, print.height() * random.uniform(1.2, 2));
      title.write(canvas, random, {box.left, y}, box.width, ink);
      y += title.height() * 2;
    }
  }
}

}  // namespace

void draw_page(Canvas& canvas, Random& random, const Box& box, Colour ink) {
  const double margin = std::min(box.width, box.height) * random.uniform(0.04, 0.13);
  Box area = box.inset(margin);
  Lettering print(random, random.uniform(1.5, 2.6), random.uniform(0.09, 0.16));
  if (random.chance(0.7)) {
    Lettering title = heading(random, std::min(random.uniform(3, 9), box.width / 15));
    title.write(canvas, random, {area.left, area.top}, area.width, ink);
    const double used = title.height() * 2.2;
    if (random.chance(0.4))
      canvas.fill({area.left, area.top + title.height() * 1.6, area.width, random.uniform(0.15, 0.8)}, ink);
    area.top += used, area.height -= used;
  }
  const int columns = box.width > 120 ? random.integer(1, 3) : 1;
  const double gap = 6, width = (area.width - gap * (columns - 1)) / columns;
  for (int column = 0; column < columns; ++column) {
    draw_column(canvas, random, {area.left + (width + gap) * column, area.top, width, area.height}, print, ink);
  }
}

void draw_receipt(Canvas& canvas, Random& random, Colour ink) {
  const double margin = canvas.width() * random.uniform(0.04, 0.12), width = canvas.width() - 2 * margin;
  Lettering print(random, std::min(random.uniform(1.8, 2.8), canvas.width() / 18), random.uniform(0.1, 0.18));
  double y = canvas.width() * random.uniform(0.05, 0.2);
  if (random.chance(0.7)) {
    const double height = std::min(random.uniform(6, 14), canvas.height() * 0.15);
    if (random.chance(0.5)) {
      draw_logo(canvas, random, {canvas.width() / 2 - height, y, 2 * height, height});
    } else {
      heading(random, height * 0.7).write_centred(canvas, random, {canvas.width() / 2, y}, width, ink);
    }
    y += height * 1.3;
  }
  const double line = print.height() * random.uniform(1.5, 2);
  while (y < canvas.height() - 4 * line) {
    const double kind = random.uniform();
    if (kind < 0.06) {
      canvas.fill({margin, y + line / 3, width, random.uniform(0.2, 0.6)}, ink);
    } else if (kind < 0.3) {
      print.write_centred(canvas, random, {canvas.width() / 2, y}, width * random.uniform(0.3, 1), ink);
    } else if (kind < 0.34 && y + 20 < canvas.height()) {
      draw_bars(canvas, random, {margin + width * 0.15, y, width * 0.7, 12}, ink);
      y += 14;
    } else if (kind < 0.4) {
      heading(random, print.height() * 1.5).write(canvas, random, {margin, y}, width, ink);
      y += line;
    } else {
      print.write(canvas, random, {margin, y}, width * 0.65, ink);
      print.write_to_right(canvas, random, {canvas.width() - margin, y}, width * 0.28, ink);
    }
    y += line;
  }
}

}  // namespace vantrel::drawing
