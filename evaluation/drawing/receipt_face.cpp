// A receipt as tills print it: dots on thermal paper, dashes between the parts, a logo, codes.
#include <algorithm>
#include <cmath>

#include "drawing/artwork.h"
#include "drawing/faces.h"
#include "drawing/lettering.h"

namespace vantrel::drawing {
namespace {

class Till {
 public:
  Till(Canvas& canvas, Random& random, Colour paper)
      : canvas_(canvas),
        random_(random),
        paper_(paper),
        // Thermal print is a faded gray as often as black.
        ink_(mixed(paper, gray(random.uniform(15, 60)), random.uniform(0.55, 1))),
        print_(random, std::min(random.uniform(1.8, 3), canvas.width() / 16), random.uniform(0.12, 0.2)),
        margin_(canvas.width() * random.uniform(0.04, 0.1)),
        width_(canvas.width() - 2 * margin_),
        line_(print_.height() * random.uniform(1.4, 2)) {}

  void print_all() {
    if (random_.chance(0.3)) show_through();
    y_ = canvas_.width() * random_.uniform(0.03, 0.12);
    if (random_.chance(0.75)) head();
    const double foot = random_.chance(0.7) ? std::min(width_ * 0.75, canvas_.height() * 0.3) : 0;
    while (y_ < canvas_.height() - foot - 3 * line_) part(canvas_.height() - foot - 3 * line_);
    if (foot > 0) codes({margin_, y_ + line_, width_, canvas_.height() - y_ - 2 * line_});
    dot();
  }

 private:
  // The back's print, or a stamp, as it shines through.
  void show_through() {
    const Colour pale = paper_ * random_.uniform(0.9, 0.97);
    Lettering back = heading(random_, random_.uniform(3, 8));
    back.paragraph(canvas_, random_, canvas_.box().inset(margin_ / 2), back.height() * random_.uniform(1.5, 4), pale);
    if (random_.chance(0.5)) canvas_.frame(canvas_.box().inset(margin_ * random_.uniform(0.5, 2)), 1, pale);
  }

  void head() {
    const double height = std::min(width_ * random_.uniform(0.2, 0.55), canvas_.height() * 0.2);
    const double width = std::min(width_, height * random_.uniform(1, 3));
    const Box box{canvas_.width() / 2 - width / 2, y_, width, height};
    const double kind = random_.uniform();
    if (kind < 0.4) {
      canvas_.fill(box, ink_);
      heading(random_, height * 0.4)
          .write_centred(canvas_, random_, {canvas_.width() / 2, y_ + height * 0.3}, width * 0.8, paper_);
    } else if (kind < 0.6) {
      canvas_.ellipse(box, ink_);
      canvas_.ellipse(box.inset(height * 0.08), paper_);
      heading(random_, height * 0.3)
          .write_centred(canvas_, random_, {canvas_.width() / 2, y_ + height * 0.35}, width * 0.7, ink_);
    } else if (kind < 0.8) {
      heading(random_, height * 0.6).write_centred(canvas_, random_, {canvas_.width() / 2, y_}, width_, ink_);
    } else {
      draw_logo(canvas_, random_, box);
    }
    y_ += height + line_;
  }

  void dashes() {
    const double dash = random_.uniform(0.8, 2.5);
    for (double x = margin_; x < margin_ + width_; x += 1.8 * dash)
      canvas_.fill({x, y_ + line_ * 0.4, dash, 0.35}, ink_);
    y_ += line_;
  }

  void total() {  // large, often in a box
    const double height = print_.height() * 2;
    if (random_.chance(0.5)) canvas_.frame({margin_, y_, width_, height * 2}, random_.uniform(0.2, 0.6), ink_);
    Lettering large = heading(random_, height);
    large.write(canvas_, random_, {margin_ + 1.5, y_ + height * 0.5}, width_ * 0.45, ink_);
    large.write_to_right(canvas_, random_, {margin_ + width_ - 1.5, y_ + height * 0.5}, width_ * 0.4, ink_);
    y_ += height * 2 + line_;
  }

  void part(double end) {
    const bool centred = random_.chance(0.25);
    for (int lines = random_.integer(2, 10); lines > 0 && y_ < end; --lines, y_ += line_) {
      if (centred) {
        print_.write_centred(canvas_, random_, {canvas_.width() / 2, y_}, width_ * random_.uniform(0.3, 0.9), ink_);
      } else {
        print_.write(canvas_, random_, {margin_, y_}, width_ * random_.uniform(0.3, 0.65), ink_);
        print_.write_to_right(canvas_, random_, {margin_ + width_, y_}, width_ * 0.2, ink_);
      }
    }
    dashes();
    if (random_.chance(0.2) && y_ + 6 * print_.height() < end) total();
  }

  void codes(const Box& box) {
    const double size = std::min(box.width * random_.uniform(0.3, 0.6), box.height * 0.6);
    if (size < 4) return;
    const bool square = random_.chance(0.6);
    double y = box.top;
    if (square) {
      draw_square_code(canvas_, random_, {canvas_.width() / 2 - size / 2, y, size, size}, ink_);
      y += size + line_;
    }
    const double height = std::min(box.bottom() - y, 16.0);
    if (height > 4 && (!square || random_.chance(0.7))) {
      const double width = box.width * random_.uniform(0.5, 0.95);
      draw_bars(canvas_, random_, {canvas_.width() / 2 - width / 2, y, width, height}, ink_);
    }
  }

  // Rows of dots that the head left out or burnt weakly.
  void dot() {
    if (random_.chance(0.5)) {
      const double pitch = random_.uniform(0.35, 0.6), opacity = random_.uniform(0.2, 0.6);
      for (double y = 0; y < canvas_.height(); y += pitch)
        canvas_.fill({0, y, canvas_.width(), pitch * 0.3}, paper_, opacity);
    }
    for (int dead = random_.chance(0.2) ? random_.integer(1, 3) : 0; dead > 0; --dead)
      canvas_.fill({random_.uniform(0, canvas_.width()), 0, 0.2, canvas_.height()}, paper_, 0.9);
  }

  Canvas& canvas_;
  Random& random_;
  Colour paper_, ink_;
  Lettering print_;
  double margin_, width_, line_, y_ = 0;
};

}  // namespace

void draw_thermal(Canvas& canvas, Random& random, Colour paper) { Till(canvas, random, paper).print_all(); }

}  // namespace vantrel::drawing
