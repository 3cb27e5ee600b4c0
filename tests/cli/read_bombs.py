"""Small files of the formats that are only read, which ask for far more memory or time than there is.

Each has a name that tells what is too large, and the end of what is said of it.
"""

import io
import struct
import zlib

from PIL import Image

from cost import repeated
from heic_files import coarse, grid, heic, in_front, kinds_of_their_own, layers, overlay, places_in_pieces, shared

SIDE = 30000
ZEROS = zlib.compress(bytes(4 << 20), 9)


PIXELS = "are more than 300 megapixels (--most-megapixels allows more)"
BYTES = "bits a pixel take more than 500 megabytes (--most-megabytes allows more)"
WORK = "to draw the page takes the work of more than 500 megabytes (--most-megabytes allows more)"
MEMORY = "reading it takes more memory than a picture of its size needs (--most-megabytes allows more)"
TIME = " seconds of the processor (--most-seconds allows more)"
PARTS = "a picture made from far more pixels than it has"
TURNS = "a picture turned or cut more than once"
DAMAGED = "data is truncated or damaged"


def bombs():
    yield "head.jp2", PIXELS, jpeg2000((SIDE, SIDE))
    yield "below.jp2", PIXELS, jpeg2000((SIDE, SIDE), told=(64, 64))  # in the code stream alone
    yield "most.jp2", PIXELS, jpeg2000((0xFFFFFFFF, 0xFFFFFFFF))
    yield "tiles.jp2", BYTES, jpeg2000((4000, 4000), tile=(16, 16))
    yield "precincts.jp2", BYTES, jpeg2000((6000, 6000), precincts=True)
    yield "samples.jp2", "more than four samples a pixel", jpeg2000((4000, 4000), samples=16384)
    yield "size.heic", PIXELS, heic(told=(SIDE, SIDE))
    yield "grid.heic", PIXELS, heic(grid=grid(SIDE, SIDE))
    yield "outside-grid.heic", PIXELS, heic(grid=grid(SIDE, SIDE), outside=True)
    yield "long-grid.heic", PIXELS, heic(grid=grid(SIDE, SIDE, long=True), outside=True)
    yield "wide-grid.heic", DAMAGED, heic(grid=grid(17000, 48))
    yield "tiles.heic", DAMAGED, heic(grid=grid(64, 48, rows=256, columns=256))
    yield "overlay.heic", PIXELS, heic(grid=overlay(SIDE, SIDE), kind=b"iovl", outside=True)
    yield "nested.heic", "put together from such as are so themselves", heic(part=2)
    yield "coded.heic", PARTS, heic(coded=8192)
    yield "coded-layers.heic", PARTS, heic(coded=8192, layers=2)
    yield "coarse.heic", PARTS, coarse(64, 64, told=64)
    yield "sharing.heic", DAMAGED, shared(coarse(1, 1, data=bytes(600000)), 5000)
    yield "twice-placed.heic", DAMAGED, shared(heic(), 1, number=1)
    yield "inner-parameters.heic", "says its size among its data", coarse(1, 1, parameters=True)
    yield "other-coding.heic", "its coding", heic(coding=b"av01")
    yield "turned.heic", TURNS, heic(turns=[b"irot", b"irot"])
    yield "mirrored.heic", TURNS, heic(turns=[b"imir"] * 100)
    yield "cut.heic", TURNS, heic(turns=[b"irot", b"clap", b"clap"])
    yield "layers.heic", "more than 256 pictures over each other", heic(kind=b"iovl", grid=layers(257), outside=True, parts=257)
    yield "large-layers.heic", PARTS, heic(kind=b"iovl", grid=layers(5), outside=True, parts=5, tile=(1000, 1000))
    yield "large-tile.heic", PARTS, heic(tile=(2100, 2100))
    yield "pieces.heic", DAMAGED, in_front(places_in_pieces(), heic())
    yield "missing-part.heic", DAMAGED, heic(part=33)
    yield "unlisted-part.heic", DAMAGED, heic(part=33) + kinds_of_their_own(33)
    yield "page.pdf", PIXELS, pdf(box=b"0 0 14400 14400")
    yield "image.pdf", PIXELS, pdf(image=(SIDE, SIDE, 8, b"/DeviceGray"))
    yield "bits.pdf", PIXELS, pdf(image=(4 * SIDE, SIDE, 1, b"/DeviceGray"))
    yield "deep.pdf", BYTES, pdf(image=(9000, 9000, 16, b"/DeviceCMYK"))
    yield "often.pdf", WORK, pdf(drawing=b"q /X0 Do Q " * 1000, image=(4000, 4000, 8, b"/DeviceGray"))
    for number, sides in enumerate(SIDES_OF_IMAGES):
        yield f"inline-{number}.pdf", PIXELS, pdf(drawing=b"BI /BPC 8 /CS /G " + sides + bytes(99) + b" EI")
    for number, uses in enumerate(USES_OF_IMAGES):
        yield f"often-{number}.pdf", WORK, pdf(drawing=uses * 1000, image=(4000, 4000, 8, b"/DeviceGray"))
    yield "long-name.pdf", WORK, pdf(drawing=b"q %s0 Do Q " % LONG_NAME * 1000, image=(4000, 4000, 8, b"/DeviceGray"), name=LONG_NAME)
    for name, sides in (("real", b"/W 30000.0 /Height 30000.0"), ("short", b"/W 30000     /H 30000     ")):
        file = pdf(image=(SIDE, SIDE, 8, b"/DeviceGray"))
        yield f"{name}.pdf", PIXELS, file.replace(b"/Width 30000 /Height 30000", sides)
    yield "long.pdf", WORK, pdf(drawing=repeated(b" ", 60), filter=b"/Filter /FlateDecode")
    yield "nested.pdf", WORK, pdf(forms=10)
    yield "outer.pdf", WORK, pdf(forms=10, own=False)
    yield "pattern.pdf", WORK, pdf(drawing=b"/Pattern cs /P scn 0 0 99 99 re f", others=pattern(0.01))
    yield "letters.pdf", WORK, pdf(drawing=b"BT /F 10 Tf (" + b"a" * 9000 + b") Tj ET", others=FONT)
    for number, text in enumerate(TEXTS):
        yield f"letters-{number}.pdf", WORK, pdf(drawing=text % (b"a" * 9000), others=FONT)
    yield "drawn-letters.pdf", WORK, pdf(drawing=b"BT /F 10 Tf (" + b"a" * 9000 + b") Tj ET", image=(2000, 2000, 8, b"/DeviceGray"), others=FONT_OF_PICTURES)
    yield "lent-letters.pdf", WORK, pdf(drawing=b"BT /E 9 Tf /F 9 Tf (" + b"a" * 9000 + b") Tj ET", image=(2000, 2000, 8, b"/DeviceGray"), others=FONTS_OF_A_LETTER)
    yield "fills.pdf", TIME, fills()
    yield "gradient.pdf", TIME, pdf(drawing=b"q 99 0 0 99 0 0 cm /S sh Q " * 100, others=GRADIENT)
    yield "unpacked.pdf", TIME, pdf(drawing=zlib.compress(repeated(b" ", 2000), 9), filter=b"/Filter [/FlateDecode /FlateDecode /ASCIIHexDecode]")
    yield "names.pdf", WORK, pdf(drawing=repeated(b"/ gs ", 43), filter=b"/Filter /FlateDecode")
    yield "comments.pdf", WORK, pdf(drawing=b"".join(b"%%/%d\n" % i for i in range(100000)))
    yield "long-comments.pdf", WORK, pdf(drawing=zlib.compress(b"/" + b"L" * 2000000 + b" %\n" * 1000000), filter=b"/Filter /FlateDecode")
    yield "parts.pdf", WORK, pdf(others=(b">> /Contents [%s] /Unused <<" % (b"4 0 R " * 160000), b""))
    yield "objects.pdf", MEMORY, pdf_of_hidden_objects()


def jpeg2000(size, told=None, tile=None, samples=None, precincts=False):
    """The file says one size, its code stream another."""
    buffer = io.BytesIO()
    options = {"precinct_size": (64, 64), "codeblock_size": (4, 4), "num_resolutions": 2} if precincts else {}
    Image.new("RGB", (64, 64), (90, 120, 200)).save(buffer, "JPEG2000", **options)
    file = bytearray(buffer.getvalue())
    head = file.index(b"ihdr") + 4
    file[head : head + 8] = struct.pack(">II", *reversed(told or size))
    stream = file.index(b"\xff\x4f\xff\x51") + 8
    file[stream : stream + 8] = struct.pack(">II", *size)
    file[stream + 16 : stream + 24] = struct.pack(">II", *(tile or size))
    if precincts:
        sizes = file.index(b"\xff\x52") + 14
        file[sizes : sizes + 2] = b"\x00\x11"  # of one sample in the smallest form, of two by two in the next
    if samples:
        marker = stream - 4
        length = struct.unpack(">H", file[marker : marker + 2])[0]
        file[marker : marker + length] = (
            struct.pack(">H", 38 + 3 * samples) + file[marker + 2 : marker + 36] + struct.pack(">H", samples) + b"\7\1\1" * samples
        )
    return bytes(file)


def stream(dictionary, data):
    return b"<< %s /Length %d >> stream\n%s\nendstream" % (dictionary, len(data), data)


def pdf(box=b"0 0 99 99", image=(8, 8, 8, b"/DeviceGray"), drawing=b"99 0 0 99 0 0 cm /X0 Do", filter=b"", forms=0, own=True, others=(b"", b""), name=b"/X"):
    """A page, the image that it shows, and forms of which each draws the next ten times, the last one the image.

    The forms know each other by resources of their own, or by those of the page.
    """
    head = b"/Type /XObject /Subtype /Image /Width %d /Height %d /BitsPerComponent %d /ColorSpace %s /Filter /FlateDecode" % image
    names = b" ".join(b"%s%d %d 0 R" % (name, i, 5 + i) for i in range(forms + 1))
    resources = b"/Resources << /XObject << %s >> %s >>" % (names, others[0])
    form = b"/Type /XObject /Subtype /Form /BBox [0 0 99 99] " + (resources if own else b"/Resources << >>")
    if forms:
        drawing = b"/X%d Do " % forms
    objects = [
        b"<< /Type /Catalog /Pages 2 0 R >>",
        b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        b"<< /Type /Page /Parent 2 0 R /MediaBox [%s] /Contents 4 0 R %s >>" % (box, resources),
        stream(filter, drawing),
        stream(head, ZEROS),
        *(stream(form, b"/X%d Do " % i * 10) for i in range(forms)),
        others[1],
    ]
    file, table = b"%PDF-1.4\n", b"xref\n0 %d\n0000000000 65535 f \n" % (len(objects) + 1)
    for number, content in enumerate(objects, 1):
        table += b"%010d 00000 n \n" % len(file)
        file += b"%d 0 obj %s endobj\n" % (number, content)
    return file + table + b"trailer << /Size %d /Root 1 0 R >>\nstartxref\n%d\n%%%%EOF\n" % (len(objects) + 1, len(file))


# An image in a drawing, the numbers of its sides as readers of PDF bear them.
SIDES_OF_IMAGES = [
    b"/W 30000 /H 30000 ID ",
    b"/W 30000.5 /H +30000 ID ",
    b"/W 30000-1 /H 000000000030000ID ",
    b"/Width %a\n30000 /Height % /W 1 5\r30000 ID ",
    b"/#57 30000 /H#65ight 30000 ID ",
    b"/W 30000 /H 30000 /X (/W 1 /H 1 BI) ID ",
    b"/W 30000 % /H 1 ID\n/H 30000 ID ",
]

# An image shown; comments that are one or look like one stand between its name and the operator.
USES_OF_IMAGES = [
    b"q /X0 %a\nDo Q ",
    b"q (%) /X0 %/Y\nDo Q ",
    b"q /X0 % Do\n%/Z\rDo Q ",
]
LONG_NAME = b"/" + b"L" * 200

# Letters, in text or what is drawn as such.
TEXTS = [
    b"BT /F 10Tf (%s) Tj ET",
    b"/F 10 Tf (%s) Tj",
    b"BT /F %%a\n10 Tf (ET) Tj (%s) Tj ET",
    b"BT /F 10 Tf (\\)%s) Tj ET",
    b"BT /F 10 Tf %%)\n[(ET) -5 (%s)] TJ ET",
]


def pattern(step):
    """As a resource and as the sixth object: tiles so close to each other."""
    cell = b"/Type /Pattern /PatternType 1 /PaintType 1 /TilingType 1 /BBox [0 0 1 1] /XStep %g /YStep %g /Resources << >>"
    return b"/Pattern << /P 6 0 R >>", stream(cell % (step, step), b"0 0 1 rg 0 0 .5 .5 re f")


def font(name, shown=None):
    """Its letter is the sixth object, and its resources have an object to show."""
    resources = b"/Resources << /XObject << /I %d 0 R >> >>" % shown if shown else b""
    return (
        b"/%s << /Type /Font /Subtype /Type3 /FontBBox [0 0 1 1] /FontMatrix [1 0 0 1 0 0] /FirstChar 97 /LastChar 97 /Widths [0]"
        b" /Encoding << /Differences [97 /a] >> %s /CharProcs << /a 6 0 R >> >>" % (name, resources)
    )


# The letter is a long drawing; or it shows the image; or there is another font, too, which has nothing to show with it.
FONT = b"/Font << %s >>" % font(b"F"), stream(b"", b"1 0 d0 " + b"0 0 1 1 re f " * 2000)
FONT_OF_PICTURES = b"/Font << %s >>" % font(b"F", 5), stream(b"", b"1 0 d0 /I Do")
FONTS_OF_A_LETTER = b"/Font << %s %s >>" % (font(b"E", 2), font(b"F", 5)), FONT_OF_PICTURES[1]


# A colour at each place of the page comes of ten thousand steps.
STEPS = b"{ pop " + b"dup mul sqrt " * 5000 + b"dup dup }"
GRADIENT = (
    b"/Shading << /S << /ShadingType 1 /ColorSpace /DeviceRGB /Function 6 0 R >> >>",
    stream(b"/FunctionType 4 /Domain [0 1 0 1] /Range [0 1 0 1 0 1] /Filter /FlateDecode", zlib.compress(STEPS)),
)


def fills(count=300000):
    """The whole page, over and over."""
    return pdf(drawing=zlib.compress(b"0 0 99 99 re f " * count), filter=b"/Filter /FlateDecode")


def pdf_of_hidden_objects():
    """The objects are in a compressed stream, whose blanks are far longer than they are."""
    hidden = b"1 0 2 40 " + b"<< /Type /Catalog /Pages 2 0 R >>".ljust(40) + b"<< /Type /Pages /Kids [3 0 R] /Count 1 >>"
    objects = {
        3: b"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 99 99] >>",
        4: stream(b"/Type /ObjStm /N 2 /First 9 /Filter /FlateDecode", repeated(b" ", 200, hidden)),
    }
    file, places = b"%PDF-1.5\n", {}
    for number, content in objects.items():
        places[number] = len(file)
        file += b"%d 0 obj %s endobj\n" % (number, content)
    places[5] = len(file)
    rows = [(0, 0, 0), (2, 4, 0), (2, 4, 1), *((1, places[number], 0) for number in (3, 4, 5))]
    table = b"".join(struct.pack(">BIH", *row) for row in rows)
    file += b"5 0 obj %s endobj\n" % stream(b"/Type /XRef /Size 6 /W [1 4 2] /Root 1 0 R", table)
    return file + b"startxref\n%d\n%%%%EOF\n" % places[5]
