"""The house: includes run one way, the core knows no door, every room has its namespace, no file grows too long."""

import re
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2] / "src"

# Every room, and those that it may include beside itself.
ROOMS = {
    "geometry": set(),
    "image": {"geometry"},
    "anywhere": {"geometry", "image"},
    "components": {"geometry", "image"},
    "lines": {"geometry", "image", "components"},
    "autoclip": {"geometry", "image", "components", "lines"},
    "cardcut": {"geometry", "image"},
    "scale": {"geometry", "image"},
    "segment": {"geometry", "image"},
    "anywhere": {"geometry", "image"},
    "kernels": {"image", "components", "lines", "autoclip", "cardcut", "scale", "segment"},
    "cards": {"geometry", "image", "autoclip", "lines", "cardcut", "scale", "segment", "anywhere"},
}
# What a room's doors may include beyond that: the records of another room's doors.
DOORS = {"lines": {"components"}, "autoclip": {"lines", "components"}}
MOST_LINES = 400
GENERATED = "anywhere/model.cpp"  # nobody reads it
GIVEN = "vantrel.h"


def is_door(path):
    """Whether a file belongs to the given binary interface: the doors, and the image block that they share."""
    return path.name.startswith("exports") or path.name in ("dib.h", "dib.cpp")


def is_door_header(include):
    return Path(include).name.startswith("exports") or include in (GIVEN, "image/dib.h")


def complaints_about(path, text):
    """What is wrong with a source file, given its path below src."""
    room = path.parts[0]
    found = []
    for include in re.findall(r'^#include "([^"]+)"', text, re.M):
        target = include.split("/")[0]
        if target in ROOMS and target != room and target not in ROOMS[room] | (DOORS.get(room, set()) if is_door(path) else set()):
            found.append(f"{path}: {room} may not include {target}")
        if is_door_header(include) and not is_door(path):
            found.append(f"{path}: the core includes the door {include}")
    if "const_cast" in text and not is_door(path):
        found.append(f"{path}: the core casts const away")
    if re.search(r"\bVANTREL_API\b", text) and not is_door(path):
        found.append(f"{path}: exports something without being a door")
    if path.suffix in (".h", ".cpp") and "namespace" in text and not re.search(rf"namespace vantrel::{room}\b", text):
        if re.search(r"namespace vantrel\b", text):
            found.append(f"{path}: is not in vantrel::{room}")
    if text.count("\n") > MOST_LINES and str(path) != GENERATED:
        found.append(f"{path}: {text.count(chr(10))} lines")
    return found


def sources():
    return [path.relative_to(SOURCES) for path in sorted(SOURCES.rglob("*")) if path.suffix in (".h", ".cpp")]


def names_given_twice(headers):
    """Constants that two headers of a room define: to the linker they are one, whose value is that of either."""
    seen, found = {}, []
    for path, text in headers:
        for name in re.findall(r"^inline constexpr [^=({;]*?\b(k\w+)\b", text, re.M):
            first = seen.setdefault((path.parts[0], name), path)
            if first != path:
                found.append(f"{path}: {name} is also in {first}")
    return found


def test_every_room_is_known():
    assert {path.parts[0] for path in sources()} == set(ROOMS)


def test_the_house_stands():
    assert [line for path in sources() for line in complaints_about(path, (SOURCES / path).read_text())] == []


def test_every_constant_is_defined_once():
    assert names_given_twice((path, (SOURCES / path).read_text()) for path in sources() if path.suffix == ".h") == []


def test_a_constant_of_two_headers_is_seen():
    one, other = "inline constexpr int kMost = 1;\n", "inline constexpr std::size_t kMost = 2;\n"
    assert names_given_twice([(Path("image/a.h"), one), (Path("image/b.h"), other)])
    assert not names_given_twice([(Path("image/a.h"), one), (Path("lines/b.h"), other)])


def test_an_include_against_the_grain_is_seen():
    assert complaints_about(Path("image/gray.cpp"), '#include "lines/hough.h"\n')
    assert complaints_about(Path("cardcut/scene.h"), '#include "segment/groups.h"\n')
    assert not complaints_about(Path("lines/hough.cpp"), '#include "image/view.h"\n')


def test_a_core_that_knows_a_door_is_seen():
    for door in ("image/dib.h", "vantrel.h", "lines/exports.h"):
        assert complaints_about(Path("lines/hough.cpp"), f'#include "{door}"\n')
    assert not complaints_about(Path("lines/exports.cpp"), '#include "image/dib.h"\n')
    assert complaints_about(Path("cardcut/exports.cpp"), '#include "lines/exports.h"\n')


def test_a_cast_a_foreign_namespace_and_a_long_file_are_seen():
    assert complaints_about(Path("lines/hough.cpp"), "const_cast<int*>(p);")
    assert complaints_about(Path("lines/hough.cpp"), "namespace vantrel {\n}")
    assert complaints_about(Path("lines/hough.cpp"), "\n" * 401)
