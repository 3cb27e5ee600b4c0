"""The check of the benchmarks notices what it is there for."""

import os
from pathlib import Path

import check_benchmarks

EXPORT_MAP = os.environ["EXPORT_MAP"]
EXPORTS = {"CutCard", "CutCard24", "ColorDiff"}
BENCHMARKS = ["CutCard/gray/width:300", "CutCard24/width:300"]


def complaints(exports=EXPORTS, benchmarks=BENCHMARKS, others=frozenset({"ColorDiff"})):
    return check_benchmarks.complaints_about(set(exports), benchmarks, set(others))


def test_a_benchmark_for_each_operation_passes():
    assert complaints() == []


def test_an_operation_without_a_benchmark_is_noticed():
    assert complaints(benchmarks=BENCHMARKS[:1]) == ["no benchmark: CutCard24"]


def test_a_longer_name_does_not_stand_for_a_shorter_one():
    assert complaints(benchmarks=BENCHMARKS[1:]) == ["no benchmark: CutCard"]


def test_a_benchmark_of_nothing_exported_is_noticed():
    assert complaints(benchmarks=BENCHMARKS + ["find_card/gray"]) == ["a benchmark of no export: find_card"]


def test_a_list_that_says_too_much_is_noticed():
    assert complaints(others={"ColorDiff", "CutCard24"}) == [
        "measured, but listed as not working on pixels: CutCard24"]
    assert complaints(others={"ColorDiff", "Gone"}) == ["listed as not working on pixels, but not exported: Gone"]


def program_listing(folder, names):
    program = folder / "benchmarks"
    program.write_text("#!/bin/sh\ncat <<END\n" + "\n".join(names) + "\nEND\n")
    program.chmod(0o755)
    return str(program)


def test_the_list_of_exports_and_a_program_are_read(tmp_path, capsys):
    exports = check_benchmarks.bare_names(check_benchmarks.check_exports.listed_exports(Path(EXPORT_MAP).read_text()))
    measured = sorted(exports - check_benchmarks.other_exports())
    assert {"CutCard", "BiLinear", "vantrel_find"} <= set(measured)
    assert check_benchmarks.main(program_listing(tmp_path, [f"{name}/gray" for name in measured]), EXPORT_MAP) == 0
    assert check_benchmarks.main(program_listing(tmp_path, measured[1:]), EXPORT_MAP) == 1
    assert f"no benchmark: {measured[0]}\n" in capsys.readouterr().out
