"""Files of HEIC put together by hand from one that is coded: their boxes say what is asked for, true or not."""

import base64
import struct

from test_read_only_formats import HEIC

# A tile of 1024 x 1024 in one colour, and the parameters of its coding.
PARAMETERS = base64.b64decode(
    "AQNwAAAAAAAAAAAAePAA/P34+AAADwMgAAEAGEABDAH//wNwAAADAJAAAAMAAAMAeLoCQCEAAQAtQgEBA3AAAAMAkAAAAwAAAwB4oAIAgBAFlupJKa5u"
    "BAQMCAAAAwAIAAADAAhAIgABAAdEAcFysGJA"
)
TILE = base64.b64decode(
    "AAABNCgBrwQQgaFRJJFFA8888888+Px5OOv/0Rn4TJ7zBG/sE5nR3AphYmYAAAMAAAMAAAMAB1yn6O4GYMU9AAADAAADAAADAAADAbeTDTTAAAADAAAD"
    "AAADAAADAAQ8hwAAAwAAAwAAAwAAAwAAAwARMAAAAwAAAwAAAwAAAwAAAwAD0gAAAwAAAwAAAwAAAwAAAwBLwAAAAwAAAwAAAwAAAwAAAwFpAAADAAAD"
    "AAADAAADAAAEjAAAAwAAAwAAAwAAAwAACegAAAMAAAMAAAMAAAMAAA7YAAADAAADAAADAAADAAAZEAAAAwAAAwAAAwAAAwAAJuAAAAMAAAMAAAMAAAMA"
    "ADIgAAADAAADAAADAAADAABKwAAAAwAAAwAAAwAAAwAAYsAAAAMAAAMAAAMAAAMAAIWA"
)

# 64 x 48: red on the left, blue on the right, seen in the upper half only; with the profile of profiles.wide_rgb().
HALF_SEEN = base64.b64decode(
    "AAAAHGZ0eXBoZWljAAAAAG1pZjFoZWljbWlhZgAABPVtZXRhAAAAAAAAACFoZGxyAAAAAAAAAABwaWN0AAAAAAAAAAAAAAAAAAAAAA5waXRtAAAAAAACAAAA"
    "GGlkYXQAAAAAAEAAMAAAAAAAQAAwAAAAYGlsb2MBAAAAREAABAABAAAAAAAABRkAAQAAAAAAAAAkAAIAAQAAAAAAAAABAAAAAAAAAAgAAwAAAAAAAAU9AAEA"
    "AAAAAAAAHQAEAAEAAAAAAAAAAQAAAAgAAAAIAAAAYmlpbmYAAAAAAAQAAAAVaW5mZQIAAAEAAQAAaHZjMQAAAAAVaW5mZQIAAAAAAgAAZ3JpZAAAAAAVaW5m"
    "ZQIAAAEAAwAAaHZjMQAAAAAVaW5mZQIAAAAABAAAZ3JpZAAAAAOqaXBycAAAA3xpcGNvAAAAdmh2Y0MBA3AAAAAAAAAAAAAe8AD8/fj4AAAPAyAAAQAYQAEM"
    "Af//A3AAAAMAkAAAAwAAAwAeugJAIQABACpCAQEDcAAAAwCQAAADAAADAB6gIIEFlurkprm4EBAwIAAAAwAgAAADACEiAAEABkQBwXPAiQAAABRpc3BlAAAA"
    "AAAAAEAAAABAAAAAFGlzcGUAAAAAAAAAQAAAADAAAAH4Y29scnByb2YAAAHsbGNtcwJAAABtbnRyUkdCIFhZWiAAAAAAAAAAAAAAAABhY3NwAAAAAAAAAAAA"
    "AAAAAAAAAAAAAAAAAAAAAAAAAAAA9tYAAQAAAADTLQAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAlkZXNjAAAA"
    "8AAAAGxjcHJ0AAABXAAAABB3dHB0AAABbAAAABRyWFlaAAABgAAAABRnWFlaAAABlAAAABRiWFlaAAABqAAAABRyVFJDAAABvAAAABBnVFJDAAABzAAAABBi"
    "VFJDAAAB3AAAABBkZXNjAAAAAAAAABBtYWRlIGZvciBhIHRlc3QAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA"
    "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAB0ZXh0AAAAAG5vbmUAAAAAWFlaIAAAAAAAAPbWAAEAAAAA0y1YWVogAAAAAAAAnBgAAE+lAAAE/FhZWiAA"
    "AAAAAAA0jQAAoCwAAA+VWFlaIAAAAAAAACYxAAAQLwAAvpxjdXJ2AAAAAAAAAAECMwAAY3VydgAAAAAAAAABAjMAAGN1cnYAAAAAAAAAAQIzAAAAAAAQcGl4"
    "aQAAAAADCAgIAAAAcWh2Y0MBBAgAAAAAAAAAAAAe8AD8/Pj4AAAPAyAAAQAXQAEMAf//BAgAAAMAn/gAAAMAAB66AkAhAAEAJkIBAQQIAAADAJ/4AAADAAAe"
    "wIIEFlurkprmwIAAAAMAgAAAAwCEIgABAAZEAcFzwIkAAAAUaXNwZQAAAAAAAABAAAAAQAAAABRpc3BlAAAAAAAAAEAAAAAwAAAADnBpeGkAAAAAAQgAAAAn"
    "YXV4QwAAAAB1cm46bXBlZzpoZXZjOjIwMTU6YXV4aWQ6MQAAAAAmaXBtYQAAAAAAAAAEAAECgQIAAgMDhIUAAwKGBwAEAwiJigAAADZpcmVmAAAAAAAAAA5k"
    "aW1nAAIAAQABAAAADmRpbWcABAABAAMAAAAOYXV4bAAEAAEAAgAAAEltZGF0AAAAICgBrxmA70mlv/+nlf+WHL/W7IX/+pEnfOLp/uHSNtbwAAAAGSgBrjPi"
    "6e052xOwt/7BlkXF990jU+/Rp4A="
)


def grid(width, height, rows=1, columns=1, long=False):
    return struct.pack(">BBBBII" if long else ">BBBBHH", 0, int(long), rows - 1, columns - 1, width, height)


def overlay(width, height):
    return struct.pack(">BB8xIIii", 0, 1, width, height, 0, 0)


def layers(count):
    """The tile over itself."""
    return struct.pack(">BB8xHH", 0, 0, 64, 48) + bytes(4 * count)


def heic(told=(64, 48), grid=grid(64, 48), outside=False, kind=b"grid", part=1, parts=1, tile=(64, 64), coded=None, layers=0, coding=b"hvc1", turns=()):
    """The file says one size, how it is put together from its tile another, of the tile a third, and the tile a fourth.

    It is put together of it so many times, and the tile is turned.
    """
    file = bytearray(HEIC)
    place = file.index(b"ispe") + 8
    file[place : place + 8] = struct.pack(">II", *tile)
    place = file.index(b"dimg") + 6
    file[place : place + 2] = struct.pack(">H", parts)
    insert(file, place + 4, (parts - 1) * b"\0\1", (b"meta", b"iref", b"dimg"))
    place = file.rindex(b"ispe") + 8
    file[place : place + 8] = struct.pack(">II", *told)
    place = file.index(b"grid")
    file[place : place + 4] = kind
    place = file.index(b"dimg") + 8
    file[place : place + 2] = struct.pack(">H", part)
    if outside:
        place = file.index(b"iloc") + 12 + 20  # behind the first item
        file[place + 2 : place + 20] = struct.pack(">HHIHII", 0, 0, len(file) + 8, 1, 0, len(grid))
        file += struct.pack(">I", 8 + len(grid)) + b"mdat" + grid
    else:
        place = file.index(b"idat") + 4
        file[place : place + 8] = grid
    if coded:
        enlarge_tile(file, coded, layers)
    place = file.index(b"hvc1")
    file[place : place + 4] = coding
    if turns:
        turn_tile(file, turns)
    return bytes(file)


def coarse(rows, columns, told=1024, data=TILE, parameters=False):
    """So many tiles of 1024 x 1024, said to have `told` x `told`; or with their parameters among the data, too."""
    width, height = told * columns, told * rows
    file = bytearray(heic(told=(width, height), grid=grid(width, height, rows, columns), parts=rows * columns, tile=(told, told)))
    place = file.index(b"hvcC") + 4
    length = struct.unpack(">I", file[place - 8 : place - 4])[0] - 8
    insert(file, place, PARAMETERS, (b"meta", b"iprp", b"ipco", b"hvcC"), instead=length)
    if parameters:
        place = PARAMETERS.index(b"\x42\x01\x01\x03")
        length = struct.unpack(">H", PARAMETERS[place - 2 : place])[0]
        data = struct.pack(">I", length) + PARAMETERS[place : place + length] + data
    place = file.index(b"iloc") + 12 + 6
    file[place : place + 14] = struct.pack(">IHII", len(file) + 8, 1, 0, len(data))
    return bytes(file) + struct.pack(">I", 8 + len(data)) + b"mdat" + data


def shared(content, count, number=1000):
    """So many further items, numbered from there on, with the data of the tile."""
    file = bytearray(content)
    kinds = b"".join(struct.pack(">I4sIHH4sx", 21, b"infe", 2 << 24, number + i, 0, b"hvc1") for i in range(count))
    insert(file, file.index(b"infe") - 4, kinds, (b"meta", b"iinf"))
    place = file.index(b"iinf") + 8
    file[place : place + 2] = struct.pack(">H", 3 + count)
    table = file.index(b"iloc") + 12
    insert(file, table + 60, bytes(20 * count), (b"meta", b"iloc"))
    tile = file[table + 2 : table + 20]
    file[table + 60 : table + 60 + 20 * count] = b"".join(struct.pack(">H", number + i) + tile for i in range(count))
    file[table - 2 : table] = struct.pack(">H", 3 + count)
    return bytes(file)


def in_two_pieces(content):
    """The data of the tile, the second half before the first."""
    file = bytearray(content)
    tile = file.index(b"iloc") + 12 + 6
    base, _, offset, length = struct.unpack(">IHII", file[tile : tile + 14])
    data = file[base + offset : base + offset + length]
    half = length // 2
    file[tile + 14 : tile + 14] = bytes(8)
    for box in (b"meta", b"iloc"):
        add(file, file.index(box) - 4, 8)
    add(file, tile + 8 + 2 * 20, 8)  # the metadata behind
    file[tile : tile + 22] = struct.pack(">IHIIII", len(file) + 8, 2, length - half, half, 0, length - half)
    return bytes(file) + struct.pack(">I", 8 + length) + b"mdat" + data[half:] + data[:half]


def turn_tile(file, turns):
    """A property of each kind that is named, and as many associations."""
    kinds = sorted(set(turns))
    # What is cut out is the whole of the tile.
    contents = {b"irot": b"\1", b"imir": b"\1", b"clap": struct.pack(">8I", 64, 1, 64, 1, 0, 1, 0, 1)}
    properties = b"".join(struct.pack(">I4s", 8 + len(contents[kind]), kind) + contents[kind] for kind in kinds)
    insert(file, file.index(b"ipma") - 4, properties, (b"meta", b"iprp", b"ipco"))
    place = file.index(b"ipma") + 14  # how many properties the tile has; four are there
    assert file[place : place + 3] == b"\2\x81\2"
    file[place] += len(turns)
    insert(file, place + 3, bytes(0x85 + kinds.index(kind) for kind in turns), (b"meta", b"iprp", b"ipma"))


def insert(file, place, content, boxes, instead=0):
    """Into boxes around it, before what the places of the file's items point to, instead of so many bytes."""
    file[place : place + instead] = content
    longer = len(content) - instead
    for box in boxes:
        add(file, file.index(box) - 4, longer)
    for item in (0, 2):  # the places of the tile and of the metadata behind
        add(file, file.index(b"iloc") + 12 + 20 * item + 6, longer)


def add(file, place, more):
    """To a number of four bytes."""
    file[place : place + 4] = struct.pack(">I", struct.unpack(">I", file[place : place + 4])[0] + more)


def places_in_pieces():
    """60000 further items of 65535 pieces each, of which no byte is said."""
    items = b"".join(struct.pack(">HHH", item, 0, 65535) for item in range(1000, 1000 + 60000))
    places = struct.pack(">I4sIHH", 16 + len(items), b"iloc", 0, 0, 60000) + items
    return struct.pack(">I4sI", 12 + len(places), b"meta", 0) + places


def in_front(box, content):
    """Behind the kind of the file."""
    length = struct.unpack(">I", content[:4])[0]
    return content[:length] + box + content[length:]


def kinds_of_their_own(number):
    """A further list of items, with one of this number."""
    kind = struct.pack(">I4sIHH4sx", 21, b"infe", 2 << 24, number, 0, b"hvc1")
    kinds = struct.pack(">I4sIH", 14 + len(kind), b"iinf", 0, 1) + kind
    return struct.pack(">I4sI", 12 + len(kinds), b"meta", 0) + kinds


def enlarge_tile(file, side, layers):
    """Another size in the parameters of the tile's sequence of pictures, and profiles and levels of so many layers in time."""
    place = file.index(b"\x42\x01\x01\x03")  # its kind, its number of layers, its profile
    length = struct.unpack(">H", file[place - 2 : place])[0]
    raw = bytes(file[place : place + length])
    plain = raw.replace(b"\0\0\3", b"\0\0")
    bits = "".join(f"{byte:08b}" for byte in plain)
    before = 16 + 8 + 96 + 1 + 3  # and the numbers of this set and of the form of its colours: 1 and 010
    end = before + 2 * 13
    assert bits[before - 4 : end] == "1010" + "0000001000001" * 2, bits[before - 4 : end]
    number = f"{side + 1:b}"
    profiles = before - 4
    told = "11" * layers + "00" * (8 - layers) + layers * "01" * 48 if layers else ""
    head = bits[:20] + f"{layers:03b}" + bits[23:profiles] + told + bits[profiles:before]
    changed = head + 2 * ("0" * (len(number) - 1) + number) + bits[end:]
    changed += "0" * (-len(changed) % 8)
    packed = bytes(int(changed[i : i + 8], 2) for i in range(0, len(changed), 8))
    stuffed = bytearray()
    for byte in packed:
        if stuffed[-2:] == b"\0\0" and byte <= 3:
            stuffed.append(3)
        stuffed.append(byte)
    file[place - 2 : place] = struct.pack(">H", len(stuffed))
    insert(file, place, stuffed, (b"meta", b"iprp", b"ipco", b"hvcC"), instead=length)
