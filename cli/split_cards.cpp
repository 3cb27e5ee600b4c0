#include "split_cards.h"

#include <algorithm>
#include <cmath>

#include "library.h"
#include "print_evidence.h"
#include "rectangle.h"
#include "words.h"

namespace tool {
namespace {

std::string count_of(std::size_t cards) { return std::to_string(cards) + (cards == 1 ? " card" : " cards"); }

vantrel_point middle_of(const vantrel_quad& q) {
  return {(q.top_left.x + q.bottom_right.x) / 2, (q.top_left.y + q.bottom_right.y) / 2};
}

bool holds(const vantrel_rect& r, const vantrel_point& p) {
  return r.left <= p.x && p.x < r.right && r.top <= p.y && p.y < r.bottom;
}

/** Whether a point lies on the right of every side, as one goes round clockwise. */
bool holds(const vantrel_quad& q, const vantrel_point& p) {
  const auto right_of = [&](const vantrel_point& a, const vantrel_point& b) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x) >= 0;
  };
  return right_of(q.top_left, q.top_right) && right_of(q.top_right, q.bottom_right) &&
         right_of(q.bottom_right, q.bottom_left) && right_of(q.bottom_left, q.top_left);
}

/** Whether a card by its marks and one by its borders are the same one, or one lies on the other. */
bool are_same(const SheetCard& marks, const vantrel_quad& borders) {
  const vantrel_rect& r = marks.seen.place;
  return holds(r, middle_of(borders)) || holds(borders, {(r.left + r.right) / 2.0, (r.top + r.bottom) / 2.0});
}

/** Whether a place is as large as the cards that the segmentation looks for; what the frame cuts off is not. */
bool has_card_size(const vantrel_rect& place, const Bitmap& scan) {
  constexpr double kWidth = 3.55;  // inches
  constexpr double kHeight = 2.2;
  constexpr double kLeast = 0.9;
  constexpr double kMost = 1.15;  // a card askew takes a little more
  const double dpi = scan.view().dpi;
  const auto fits = [&](int pixels, double inches) {
    return pixels >= kLeast * inches * dpi && pixels <= kMost * inches * dpi;
  };
  return fits(place.right - place.left, kWidth) && fits(place.bottom - place.top, kHeight);
}

/** Whether the corners of a card are those of a place, as nearly as the segmentation sees a card askew. */
bool is_card_of(const vantrel_rect& place, const vantrel_quad& q) {
  constexpr double kSlack = 0.12;
  const double slack = kSlack * (place.right - place.left);
  const auto near = [&](const vantrel_point& p, int x, int y) {
    return std::abs(p.x - x) <= slack && std::abs(p.y - y) <= slack;
  };
  return near(q.top_left, place.left, place.top) && near(q.top_right, place.right, place.top) &&
         near(q.bottom_right, place.right, place.bottom) && near(q.bottom_left, place.left, place.bottom);
}

/** Whether a card lies on a place: its borders do, or nothing contradicts the print on it. */
bool is_evident(const SheetCard& marks, const CardSearch& anywhere, const GrayCopy& copy) {
  if (marks.seen.straightened != 0) return true;
  bool contradicted = false;
  for (const FoundCard& found : anywhere.cards) {
    if (!found.claimed() || !are_same(marks, found.card.corners)) continue;
    if (is_card_of(marks.seen.place, found.card.corners)) return true;
    contradicted = contradicted || found.judgement.certainty >= Certainty::kLikely;
  }
  return !contradicted && has_print(copy, marks.seen.place);
}

/** @param cut whether the cards were cut, and so straightened or not. */
Json json_of_split(const SplitCards& found, bool cut) {
  const Sheet& sheet = found.sheet;
  Json json = json_of(sheet);
  json["method"] = sheet.cards.empty() ? Json() : Json("sheet");
  json["without_evidence"] = found.without_evidence;
  for (std::size_t i = 0; cut && i < sheet.cards.size(); ++i) {
    json["cards"][i]["straightened"] = sheet.cards[i].seen.straightened != 0;
  }
  return json;
}

std::string words_of_left_out(int places) {
  if (places == 0) return "";
  return ", " + std::to_string(places) + (places == 1 ? " place" : " places") +
         " left out, whose size, print or borders are not a card's";
}

/** The cards by their borders, each straightened. */
Finding borders_finding(const CardSearch& search, const SplitRequest& request, const Orientation& orientation,
                        const Bitmap& scan) {
  Finding finding;
  finding.found = search.claimed_cards() > 0;
  finding.certainty = search.certainty();
  finding.confidence = search.confidence();
  finding.advice = advice_of(search);
  finding.message = finding.found ? count_of(search.claimed_cards()) : words_of(search);
  const std::string guesses = words_of_guesses(search);
  if (finding.found && !guesses.empty()) finding.message += ", " + guesses;
  finding.details = [search] {
    Json json = {{"result", 1}, {"cards", json_of_cards(search)}, {"method", Json()}, {"without_evidence", 0}};
    if (search.claimed_cards() > 0) json["method"] = "anywhere";
    return json;
  };
  finding.draw = [search](Canvas& canvas) { draw_cards(search, canvas); };
  if (!request.cut) return finding;
  for (const FoundCard& found : search.cards) {
    if (found.claimed()) finding.pictures.push_back(oriented(cut(scan, found.card.corners), orientation));
  }
  return finding;
}

/** Why nothing is claimed: what the segmentation says, and what may lie there all the same. */
Finding finding_of_none(const SplitCards& found, const SplitRequest& request, const Orientation& orientation,
                        const Bitmap& scan) {
  Finding finding = borders_finding(found.anywhere, request, orientation, scan);
  finding.details = [details = finding.details, found] {
    Json json = details();
    json["result"] = json_of(found.sheet)["result"];
    json["without_evidence"] = found.without_evidence;
    return json;
  };
  if (!found.sheet.cards.empty()) {
    finding.message = "marks of " + count_of(found.sheet.cards.size()) + " only, which may be those of a page";
    finding.advice = "split --method sheet";
    return finding;
  }
  if (found.anywhere.blank || found.without_evidence > 0) return finding;
  finding.message =
      (found.anywhere.cards.empty() ? "" : words_of(found.anywhere) + "; ") + reason_without_cards(found.sheet, scan);
  return finding;
}

CardSearch look_anywhere(const SplitRequest& request, const Bitmap& scan) {
  CardRequest cards = request.cards;
  cards.method = VANTREL_METHOD_ANYWHERE;
  return search_cards(scan, cards);
}

}  // namespace

int keep_evident(Sheet& sheet, const CardSearch& anywhere, const Bitmap& scan) {
  if (sheet.cards.empty()) return 0;
  const GrayCopy copy = gray_copy(scan, kPrintCopySide);
  const auto rest = std::remove_if(sheet.cards.begin(), sheet.cards.end(), [&](const SheetCard& marks) {
    return !has_card_size(marks.seen.place, scan) || !is_evident(marks, anywhere, copy);
  });
  const auto dropped = static_cast<int>(sheet.cards.end() - rest);
  sheet.cards.erase(rest, sheet.cards.end());
  return dropped;
}

bool shows_more(const Sheet& sheet, const CardSearch& anywhere) {
  if (sheet.cards.size() < kFewestByMarks) return false;
  std::vector<bool> counted(anywhere.cards.size());
  std::size_t cards = 0;
  for (const SheetCard& marks : sheet.cards) {
    std::size_t i = 0;
    while (i < counted.size() && !(anywhere.cards[i].claimed() && are_same(marks, anywhere.cards[i].card.corners))) ++i;
    if (i < counted.size() && counted[i]) continue;
    if (i < counted.size()) counted[i] = true;
    ++cards;
  }
  return cards > anywhere.claimed_cards();
}

SplitCards find_split(const Bitmap& scan, const SplitRequest& request) {
  SplitCards found{look_anywhere(request, scan), {}, 0, false};
  if (request.method == VANTREL_METHOD_ANYWHERE) return found;
  const int most_cards = request.cards.most_cards;
  found.sheet = find_sheet_cards(scan, {request.straighten && request.cut, 0});
  found.without_evidence = keep_evident(found.sheet, found.anywhere, scan);
  found.by_marks = request.method == VANTREL_METHOD_SHEET || shows_more(found.sheet, found.anywhere);
  if (most_cards > 0 && found.sheet.cards.size() > static_cast<std::size_t>(most_cards)) {
    found.sheet.cards.resize(static_cast<std::size_t>(most_cards));
  }
  return found;
}

Finding sheet_finding(const SplitCards& found, const SplitRequest& request, const Orientation& orientation,
                      const Bitmap& scan) {
  const Sheet& sheet = found.sheet;
  Finding finding;
  // No side of these cards is seen, and nothing says how sure they are.
  const Demands& demands = request.cards.demands;
  const bool enough = demands.sides == 0 && demands.confidence == 0;
  finding.found = !sheet.cards.empty() && enough;
  finding.certainty = Certainty::kDoubtful;
  finding.confidence = 0;
  const bool only_dropped = sheet.cards.empty() && found.without_evidence > 0;
  const char* const by_marks = sheet.cards.size() == 1 ? " by its marks" : " by their marks";
  finding.message = only_dropped          ? "there are marks, but by their size, print or borders not those of a card"
                    : sheet.cards.empty() ? reason_without_cards(sheet, scan)
                                          : count_of(sheet.cards.size()) + by_marks + ", whose sides are not seen" +
                                                words_of_left_out(found.without_evidence);
  if (!finding.found && found.anywhere.blank) finding.message = words_of(found.anywhere);
  if (!enough && !sheet.cards.empty()) {
    finding.message += ": fewer sides, or less sure, than is asked for";
    finding.advice = kDemandLess;
  } else if (!finding.found) {
    finding.advice = found.anywhere.blank ? "" : advice_for(only_dropped ? VANTREL_REASON_NO_MARKS : sheet.reason);
  }
  finding.details = [found, cut = request.cut] { return json_of_split(found, cut); };
  finding.draw = [sheet](Canvas& canvas) { draw(sheet, canvas, kGreen); };
  int straightened = 0;
  for (const SheetCard& card : sheet.cards) {
    straightened += card.seen.straightened;
    if (request.cut && finding.found) finding.pictures.push_back(oriented(take_card(scan, card), orientation));
  }
  if (finding.found && request.straighten) finding.message += ", " + std::to_string(straightened) + " straightened";
  return finding;
}

Finding split_finding(const SplitCards& found, const SplitRequest& request, const Orientation& orientation,
                      const Bitmap& scan) {
  if (found.by_marks) return sheet_finding(found, request, orientation, scan);
  if (found.anywhere.claimed_cards() > 0 || request.method == VANTREL_METHOD_ANYWHERE) {
    return borders_finding(found.anywhere, request, orientation, scan);
  }
  return finding_of_none(found, request, orientation, scan);
}

}  // namespace tool
