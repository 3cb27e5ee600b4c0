"""The tables of docs/finder.md, as Markdown."""

from math import isinf

from evaluation import summary
from evaluation.methods import SAYS
from evaluation.sources import SETS


def table(heads, rows):
    lines = ["| " + " | ".join(str(cell) for cell in row) + " |" for row in (heads, *rows)]
    return "\n".join([lines[0], "|" + " --- |" * len(heads), *lines[1:]]) + "\n"


def percent(value):
    return "-" if value is None else f"{100 * value:.1f}"


def number(value, digits=2):
    return "-" if value is None else f"{value:.{digits}f}"


def one_in(trust):
    if trust.one_in is None:
        return "-"
    if isinf(trust.one_in):
        return f"none in {trust.claims}"
    return f"1 in {trust.one_in:.{1 if trust.one_in < 10 else 0}f}"


def per_set(results):
    """(set, its results), those that there are, in a fixed order."""
    names = {result.scan.set for result in results}
    known = [name for name in SETS if name in names]
    return [(name, [result for result in results if result.scan.set == name])
            for name in (*known, *sorted(names - set(known)))]


def cards_of(results, name):
    return [card for result in results for card in result.judged(name).cards]


def with_cards(results):
    return [result for result in results if result.scan.cards]


def without_cards(results):
    return [result for result in results if not result.scan.cards]


OVERLAP_HEADS = ("cards", "mean Jaccard, %", *(f"> {least:g}, %" for least in summary.JACCARD_SHARES),
                 "right or an alternative, %")
CORNER_HEADS = ("corners", "of cards found", "median, px", "90 %, px",
                *(f"<= {most:g} px of found, %" for most in summary.CORNER_SHARES),
                *(f"<= {most:g} px of all, %" for most in summary.CORNER_SHARES))


def overlap_cells(cards):
    found = summary.overlap(cards)
    return [found.cards, percent(found.mean), *map(percent, found.above), percent(found.reachable)]


def corner_cells(cards):
    exact = summary.corners(cards)
    return [exact.count, exact.found, number(exact.median), number(exact.ninetieth),
            *map(percent, exact.within_found), *map(percent, exact.within_all)]


def by_set(results, names, heads, cells):
    """A row for each set with cards and each method."""
    rows = [[title, name, *cells(cards_of(part, name))] for title, part in per_set(with_cards(results))
            for name in names]
    return table(["set", "method", *heads], rows)


def classes(results):
    """(kind of class, class, its results); a scan is in the class of each of its effects."""
    for kind in ("ground", "card", "place"):
        for value in sorted({getattr(result.scan, kind) for result in results} - {""}):
            yield kind, value, [result for result in results if getattr(result.scan, kind) == value]
    for value in sorted({effect for result in results for effect in result.scan.effects}):
        yield "effect", value, [result for result in results if value in result.scan.effects]


def by_class(results, name):
    rows = []
    for kind, value, part in classes(with_cards(results)):
        cards = cards_of(part, name)
        exact, trust = summary.corners(cards), trust_of(part, name)
        rows.append([kind, value, *overlap_cells(cards), number(exact.median), number(exact.ninetieth),
                     *map(percent, exact.within_all), trust.claims, trust.off])
    heads = ["class", "", *OVERLAP_HEADS, "median, px", "90 %, px",
             *(f"<= {most:g} px of all, %" for most in summary.CORNER_SHARES), *TRUST_HEADS]
    return table(heads, rows)


def alarms_by_class(results, name):
    rows = []
    for kind, value, part in classes(without_cards(results)):
        rows.append([kind, value, *alarm_cells(part, name)])
    return table(["class", "", *ALARM_HEADS], rows)


def beside(results, names):
    rows = [[title, name, sum(len(result.scan.cards) for result in part),
             summary.beside([result.judged(name) for result in part])]
            for title, part in per_set(with_cards(results)) for name in names]
    return table(["set", "method", "true cards", "reported beside them"], rows)


ALARM_HEADS = ("scans", f"confidence >= {summary.LIKELY:g}", f"confidence >= {summary.HIGH:g}")


def alarm_cells(results, name):
    judged = [result.judged(name) for result in results]
    return [len(results), *(summary.false_alarms(judged, least) for least in (summary.LIKELY, summary.HIGH))]


def alarms(results, names):
    rows = [[title, name, *alarm_cells(part, name)] for title, part in per_set(without_cards(results))
            for name in names]
    return table(["set", "method", *ALARM_HEADS], rows)


def confidences(results, name):
    claims = [claim for result in with_cards(results) for claim in result.judged(name).claims]
    others = [claim for result in without_cards(results) for claim in result.judged(name).claims]
    empty = summary.confidence_bins(others)
    rows = [[f"{part.least:g} to {part.most:g}", len(part.values), number(mean, 3), percent(right), len(none.values)]
            for (part, mean, right), (none, _, _) in zip(summary.confidence_bins(claims), empty)]
    return table(["confidence", "cards reported", "mean confidence", "right, %", "on scans without a card"], rows)


TRUST_HEADS = (f"confidence >= {summary.HIGH:g}", "of these off")


def trust_of(results, name):
    return summary.trust([claim for result in results for claim in result.judged(name).claims])


def trusted(results, name):
    """What comes of cutting without asking, by set and over all sets with cards."""
    rows = []
    for title, part in (*per_set(with_cards(results)), ("all of these", with_cards(results))):
        trust = trust_of(part, name)
        rows.append([title, sum(len(result.scan.cards) for result in part), trust.claims, trust.off, one_in(trust)])
    return table(["set", "true cards", *TRUST_HEADS, ""], rows)


def sides(results, name):
    judged = [side for result in results for side in result.judged(name).sides]
    rows = [[f"{part.least:g} to {part.most:g}", len(part.values), percent(right), percent(wrong)]
            for part, right, wrong in reversed(summary.side_bins(judged))]
    return table(["share of places with a border", "sides", f"within {summary.SIDE_RIGHT:g} px, %",
                  f"off by more than {summary.SIDE_WRONG:g} px, %"], rows)


def speeds(results, names):
    rows = []
    for title, part in per_set(results):
        for name in names:
            median, worst = summary.speed([(result.scan, result.answers[name]) for result in part])
            rows.append([title, name, len(part), number(median, 1), number(worst, 1)])
    return table(["set", "method", "scans", "median, ns/px", "worst, ns/px"], rows)


def costs(cost):
    """On A4 at 300 dpi in colour: the processor's time, and for our own methods the memory."""
    rows = [[name, number(one["median_ns"], 1), number(one["worst_ns"], 1), number(one["milliseconds"], 0),
             number(one.get("bytes"), 2)] for name, one in cost.items()]
    return table(["method", "median, ns/px", "worst, ns/px", "median, ms", "most extra memory, bytes/px"], rows)


REFINEMENT_HEADS = ("corners", "median, px", "90 %, px", *(f"<= {most:g} px, %" for most in summary.CORNER_SHARES))


def refinement_cells(corners):
    exact = summary.refined(corners)
    return [exact.count, number(exact.median), number(exact.ninetieth), *map(percent, exact.within_all)]


def refinement(corners):
    """By set, and of all of them by contrast."""
    rows = [[name, *refinement_cells(found)] for name, found in corners.items()]
    everywhere = [corner for found in corners.values() for corner in found]
    rows += [[f"a contrast of {part.least:g} to {part.most:g}", *refinement_cells(part.values)]
             for part in summary.binned(everywhere, summary.CONTRASTS, lambda corner: corner.contrast)]
    return section("Refinement begun at the truth", "The corners of every true card, laid onto the scan as a finalist's "
                   "are: what refinement makes of a start without an error, which a better choice of candidates can "
                   "hardly exceed. The contrast is the lesser of a corner's two sides', in levels.",
                   table(["corners of", *REFINEMENT_HEADS], rows))


def section(title, says, body):
    return f"### {title}\n\n{says}\n\n{body}\n"


def main_sections(results, names):
    yield section("Overlap", "The Jaccard index of the true and the found quadrilateral as plain polygons, both cut to "
                  "the frame of the scan. On a scan of one card the surest one reported is taken.",
                  by_set(results, names, OVERLAP_HEADS, overlap_cells))
    yield section("Corners", "In pixels of the scan, corners with two visible sides. \"Of found\" are those of cards "
                  "found with a Jaccard index above 0.8; \"of all\" counts the others as missed.",
                  by_set(results, names, CORNER_HEADS, corner_cells))
    yield section("Reported beside the true cards", f"With a confidence of {summary.LIKELY:g} or more, and a Jaccard "
                  "index with its true card of 0.9 or less, or with none.", beside(results, names))
    if without_cards(results):
        yield section("False alarms", "Scans without a card on which one is reported.", alarms(results, names))


def own_sections(results, name):
    yield section(f"Confidence of `{name}`", "Right are those with a Jaccard index above 0.9.",
                  confidences(results, name))
    yield section(f"Cut without asking by `{name}`", f"Off are those that miss a corner, or the border within the "
                  f"frame, by more than {100 * summary.OFF:g} % of the card's diagonal.", trusted(results, name))
    yield section(f"Sides of `{name}`", "By the share of places along a side that show a border on its line; the "
                  "largest distance of the true side to the line at 15, 50 and 85 % of its length. Cards found with a "
                  "Jaccard index above 0.8.", sides(results, name))
    yield section(f"Kinds of scans for `{name}`", "A scan counts for each of its effects; where cards of several kinds "
                  "lie on one, `card` names the first.", by_class(results, name))
    if without_cards(results):
        yield section(f"False alarms of `{name}` by kinds of scans", "Scans without a card, as above.",
                      alarms_by_class(results, name))


def introduction(results, names):
    methods = "\n".join(f"- `{name}`: {SAYS[name]}" for name in names)
    sets = ", ".join(f"{len(part)} of `{title}`" for title, part in per_set(results))
    return (f"Scans: {sets}. Methods:\n\n{methods}\n\nThe two recipes report one card at the most, and always with a "
            "confidence of 1.\n")


def page(results, names, own, cost):
    """All tables; those of one method alone for `own`, if it took part."""
    parts = [introduction(results, names), *main_sections(results, names)]
    if own in names:
        parts += own_sections(results, own)
    parts.append(section("Time", "The processor's time of one call, divided by the pixels of the scan.",
                         speeds(results, names)))
    if cost:
        parts.append(section("On A4 at 300 dpi", "Colour, 2480 x 3508 pixels.", costs(cost)))
    return "\n".join(parts)


def checksums(sums):
    rows = [[name, f"`{value}`"] for name, value in sums.items()]
    return section("Checksums", "SHA-256 over every number of the answers: two builds agree when these do.",
                   table(["method", "checksum"], rows))
