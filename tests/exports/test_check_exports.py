"""The check of the export list notices what it is there for."""

import os
import re
from pathlib import Path

import check_exports

NM, LIBRARY, EXPORT_MAP = (os.environ[name] for name in ("NM", "VANTREL_LIBRARY", "EXPORT_MAP"))
HEADER = str(Path(EXPORT_MAP).parent.parent / "include" / "vantrel.h")


def run(text, tmp_path, *headers):
    changed = tmp_path / "changed.map"
    changed.write_text(text)
    return check_exports.main(NM, LIBRARY, str(changed), *headers)


def test_the_list_as_it_is_passes(tmp_path):
    assert run(Path(EXPORT_MAP).read_text(), tmp_path, HEADER) == 0


def test_a_name_missing_from_the_list_fails(tmp_path):
    text = Path(EXPORT_MAP).read_text()
    assert run(text.replace("    FreeCardImg;\n", ""), tmp_path) == 1
    assert run(text.replace('      "CutCard(BITMAPPTR*, MYRECT&)";\n', ""), tmp_path) == 1


def test_a_name_missing_from_the_library_fails(tmp_path):
    text = Path(EXPORT_MAP).read_text()
    assert run(text.replace("    FreeCardImg;\n", "    FreeCardImg;\n    FreeNothing;\n"), tmp_path) == 1


def test_another_signature_fails(tmp_path):
    text = Path(EXPORT_MAP).read_text()
    assert run(text.replace('"CutCard(BITMAPPTR*, MYRECT&)"', '"CutCard(BITMAPPTR*, MYRECT*)"'), tmp_path) == 1


def test_a_declaration_that_is_not_listed_fails(tmp_path):
    header = tmp_path / "more.h"
    header.write_text("VANTREL_API int Forgotten(int value);\n")
    assert run(Path(EXPORT_MAP).read_text(), tmp_path, str(header)) == 1
    assert "Forgotten" in check_exports.declared_exports([header])


def test_data_and_functions_are_read_from_the_header():
    names = check_exports.declared_exports([HEADER])
    assert {"szPath", "SQUARE_TABLE", "AutoClipRedundantImg", "CardSeg", "vantrel_find_corners"} <= names
    assert not any(re.match("VANTREL", name) for name in names)
