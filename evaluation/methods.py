"""The methods that are compared, each called in the same way: pixels and dots per inch in, an Answer out."""

import time
from dataclasses import dataclass
from functools import lru_cache

import library as binding  # of tests/support, which the script puts on the path

from evaluation.records import Answer, Found, points

OURS = {"anywhere": binding.ANYWHERE, "dark-glass": binding.DARK_GLASS}
RECIPES = ("canny", "otsu")
NAMES = (*OURS, *RECIPES)
SAYS = {
    "anywhere": "the method of this page",
    "dark-glass": "the method for dark glass",
    "canny": "gray, blurred, Canny's edges on a copy of 500 px height, closed; the largest contour of four corners",
    "otsu": "gray, blurred, Otsu's threshold; the smallest rectangle around the largest part, bright or dark, "
            "whichever lies less on the frame",
}


@dataclass(frozen=True)
class Contender:
    """A method, and the library that has it; `label` tells it from others of the same method."""

    method: str
    library: str = ""
    label: str = ""

    @property
    def name(self):
        return self.label or self.method


@lru_cache(maxsize=None)
def loaded(path):
    return binding.Library(path)


def found_of(card, alternatives=()):
    """A record of the interface, whose sides come as top, bottom, left, right."""
    shares = tuple(card.side[index].confidence for index in (0, 3, 1, 2))
    corners = points((card.quad[2 * i], card.quad[2 * i + 1]) for i in range(4))
    return Found(corners, shares, card.confidence, tuple(map(found_of, alternatives)))


def timed(call):
    """What a call returns, and the processor's time that it took."""
    begun = time.process_time_ns()
    result = call()
    return result, time.process_time_ns() - begun


def ours(contender, pixels, dpi):
    library = loaded(contender.library)
    method = OURS[contender.method]
    view = library.view(pixels, dpi)
    findings, nanoseconds = timed(lambda: library.findings(view, method))
    with findings:
        cards = findings.cards()
        told = range(len(cards)) if method == binding.ANYWHERE else ()  # others have no alternatives
        alternatives = [findings.alternatives(index) for index in told] or [()] * len(cards)
    found = tuple(map(found_of, cards, alternatives))
    return Answer(tuple(sorted(found, key=lambda card: -card.confidence)), nanoseconds)


def recipe(contender, pixels):
    from evaluation import recipes  # only those who compare need OpenCV

    found, nanoseconds = timed(lambda: getattr(recipes, contender.method)(pixels))
    return Answer(found, nanoseconds)


def ask(contender, pixels, dpi):
    """What a method says of a picture of gray or RGB pixels."""
    return ours(contender, pixels, dpi) if contender.method in OURS else recipe(contender, pixels)
