#!/usr/bin/python3
"""usage: check_benchmarks.py BENCHMARK_PROGRAM EXPORT_MAP

Every exported operation that works on pixels has a benchmark, whose name begins with the operation's.
"""

import re
import subprocess
import sys
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parent.parent / "exports"))
import check_exports  # noqa: E402

# The exports that need none, by what they work on instead of pixels.
OTHERS = {
    "the library itself": "vantrel_version vantrel_version_number GetDllPath initializer finalizer szPath",
    "texts and numbers": """vantrel_status_text vantrel_method_name vantrel_reason_text vantrel_format_bits
        vantrel_limit_value SQUARE_TABLE""",
    "records": """vantrel_image_check vantrel_picture_release vantrel_cards_release vantrel_cards_count
        vantrel_cards_get vantrel_cards_alternative vantrel_cards_reason vantrel_cards_dark_glass
        vantrel_cards_flat_light vantrel_cards_sheet FreeCardImg MakeMatrix FreeMatrix""",
    "corners and lines": """vantrel_quad_scale vantrel_cut_size CalcUnknownFun CalIntersectPoint VerifyCorrectLoc
        VerifyCorrectLoc_M comp_ycoord SolveMultiUnknownFunc Get_U Get_V""",
    "the block list": "SortCharacter InitFreeList SetNode",
    "a run, or the boxes of components": """ECC_SetRunComponent VerifyCorrectLineV_2 VerifyCorrectLineV_3
        VerifyCorrectLineV_3_ORVA VerifyCorrectLineH_0""",
    "the levels of one pixel": "ColorDiff BiCubicDir",
}


def bare_names(exports):
    """The names without their parameters, and without the block list's own operations."""
    return {re.sub(r"\(.*", "", name) for name in exports if not name.startswith("_BLIST::")}


def complaints_about(exports, benchmarks, others):
    """What is wrong, given the names of the exports, of the benchmarks and of the exports that need none."""
    measured = {name.split("/")[0] for name in benchmarks}
    found = [f"no benchmark: {name}" for name in sorted(exports - others - measured)]
    found += [f"a benchmark of no export: {name}" for name in sorted(measured - exports)]
    found += [f"measured, but listed as not working on pixels: {name}" for name in sorted(measured & others)]
    return found + [f"listed as not working on pixels, but not exported: {name}" for name in sorted(others - exports)]


def other_exports():
    return {name for names in OTHERS.values() for name in names.split()}


def main(program, export_map):
    exports = bare_names(check_exports.listed_exports(Path(export_map).read_text()))
    listed = subprocess.run([program, "--benchmark_list_tests"], check=True, capture_output=True, text=True).stdout
    complaints = complaints_about(exports, listed.split(), other_exports())
    print("\n".join(complaints) or f"{len(exports - other_exports())} operations work on pixels, all are measured")
    return 1 if complaints or not exports else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
