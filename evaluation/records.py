"""What is known of a scan, and what a method says of it."""

from dataclasses import asdict, dataclass, field

SIDES = ("top", "right", "bottom", "left")


@dataclass(frozen=True)
class TrueCard:
    """A card as it was laid."""

    corners: tuple
    visible: tuple = (True,) * 4  # by side: on the scan, and of some contrast


@dataclass(frozen=True)
class Scan:
    """A scan and its truth."""

    picture: str
    set: str
    seed: int
    width: int
    height: int
    dpi: float = 0.0
    ground: str = ""
    card: str = ""
    place: str = ""
    effects: tuple = ()
    cards: tuple = ()

    @property
    def size(self):
        return self.width, self.height

    @classmethod
    def read(cls, truth):
        """From an object of a drawn set's truth."""
        cards = tuple(TrueCard(points(card["corners"]), tuple(map(bool, card["visible"]))) for card in truth["cards"])
        plain = {name: truth[name] for name in ("picture", "set", "seed", "width", "height", "dpi", "ground", "card",
                                                "place")}
        return cls(**plain, effects=tuple(truth["effects"]), cards=cards)


@dataclass(frozen=True)
class Found:
    """A quadrilateral that a method reports. A method that knows no shares or no confidence says 1."""

    corners: tuple
    shares: tuple = (1.0,) * 4
    confidence: float = 1.0
    alternatives: tuple = ()

    @classmethod
    def read(cls, found):
        return cls(points(found["corners"]), tuple(found["shares"]), found["confidence"],
                   tuple(cls.read(other) for other in found["alternatives"]))

    def numbers(self):
        """Every number in it, in a fixed order."""
        for x, y in self.corners:
            yield from (x, y)
        yield from self.shares
        yield self.confidence
        for other in self.alternatives:
            yield from other.numbers()


@dataclass(frozen=True)
class Answer:
    """What a method says of one scan, the surest card first."""

    found: tuple
    nanoseconds: int = field(default=0)  # of the processor


def points(corners):
    return tuple((float(x), float(y)) for x, y in corners)


def as_json(record):
    return asdict(record)
