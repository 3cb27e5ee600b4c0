"""The face of a fictitious company's business card, flat and free of noise."""

from dataclasses import dataclass, field

from PIL import Image, ImageDraw, ImageFont

CARD_MM = (85.0, 55.0)  # the European format
CARD_US_MM = (90.17, 55.88)  # 3.55 x 2.2 inches, the format that the sheet segmentation expects
DOTS_PER_MM = 24
FONTS = "/usr/share/fonts/truetype/dejavu/"  # Debian's fonts-dejavu-core


@dataclass(frozen=True)
class Face:
    """What is printed on a card."""

    name: str = "Ada Quillfeather"
    role: str = "Keeper of Instruments"
    colour: tuple = (20, 96, 112)
    accent: tuple = (214, 132, 40)
    paper: tuple = (244, 242, 236)
    ink: tuple = (38, 38, 42)
    size_mm: tuple = field(default=CARD_MM)


PEOPLE = (
    Face(),
    Face("Bram Oystercatch", "Lens Grinding", (120, 40, 60), (60, 120, 150)),
    Face("Cosima Fernhollow", "Survey Desk", (50, 90, 50), (200, 160, 40)),
    Face("Dario Pumblewick", "Brass and Dials", (60, 60, 120), (210, 110, 90)),
    Face("Elin Stormglass", "Field Repairs", (20, 20, 24), (190, 40, 40)),
    Face("Fergus Lanternby", "Accounts", (90, 60, 30), (40, 130, 110)),
    Face("Greta Mosswhistle", "Night Watch", (30, 70, 130), (230, 170, 60)),
    Face("Hugo Thimblerigg", "Weather Tables", (110, 30, 110), (90, 150, 60)),
)


def _font(name, height_mm):
    return ImageFont.truetype(FONTS + name, round(height_mm * DOTS_PER_MM))


def _logo(draw, left, top, size, face):
    """A compass rose: a ring, a four-pointed star and a hub. Lengths in millimetres."""

    def dots(*values):
        return [round(value * DOTS_PER_MM) for value in values]

    middle_x, middle_y, half = left + size / 2, top + size / 2, size / 2
    draw.ellipse(dots(left, top, left + size, top + size), outline=face.colour, width=round(0.9 * DOTS_PER_MM))
    star = []
    for dx, dy in ((0, -0.82), (0.16, -0.16), (0.82, 0), (0.16, 0.16), (0, 0.82), (-0.16, 0.16), (-0.82, 0),
                   (-0.16, -0.16)):
        star.append(tuple(dots(middle_x + dx * half, middle_y + dy * half)))
    draw.polygon(star, fill=face.accent)
    hub = 0.09 * size
    draw.ellipse(dots(middle_x - hub, middle_y - hub, middle_x + hub, middle_y + hub), fill=face.colour)


def draw_card(face=Face()):
    """The card's face as an RGB picture of DOTS_PER_MM."""
    width, height = face.size_mm
    art = Image.new("RGB", (round(width * DOTS_PER_MM), round(height * DOTS_PER_MM)), face.paper)
    draw = ImageDraw.Draw(art)
    _logo(draw, 7, 7, 15, face)

    def write(x, y, text, font, colour):
        draw.text((x * DOTS_PER_MM, y * DOTS_PER_MM), text, font=font, fill=colour)

    write(26, 7.5, "Larkspur & Gale", _font("DejaVuSerif-Bold.ttf", 5.4), face.colour)
    write(26.2, 15.2, "INSTRUMENTS FOR WEATHER AND SEA", _font("DejaVuSans.ttf", 2.2), face.accent)
    write(7, 28.0, face.name, _font("DejaVuSans-Bold.ttf", 4.0), face.ink)
    write(7, 33.2, face.role, _font("DejaVuSerif.ttf", 3.0), face.ink)
    draw.rectangle([round(7 * DOTS_PER_MM), round(38.2 * DOTS_PER_MM), round((width - 7) * DOTS_PER_MM),
                    round(38.5 * DOTS_PER_MM)], fill=face.accent)
    small = _font("DejaVuSans.ttf", 2.5)
    mailbox = face.name.split()[0].lower()
    write(7, 40.6, "3 Barometer Row, Farhaven", small, face.ink)
    write(7, 44.4, "+00 555 01 44 72", small, face.ink)
    write(48, 40.6, mailbox + "@larkspur.example", small, face.ink)
    write(48, 44.4, "www.larkspur.example", small, face.ink)
    return art
