"""Several inputs: order, failures, numbers of threads, progress; and wrong usage."""

import os
import pty
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

import pytest

import scans
from conftest import TOOL


@pytest.fixture(scope="module")
def many(tmp_path_factory):
    """Scans of different sizes and tilts, with a blank one, a text and a missing file among them."""
    folder = tmp_path_factory.mktemp("many")
    files = []
    for i in range(8):
        pixels, _ = scans.draw_scan(500 + 40 * (i % 3), 320, (i % 5) - 2, seed=i)
        files.append(scans.save(pixels, folder / f"scan{i}.png"))
    files.insert(2, scans.save(scans.blank_scan(), folder / "blank.png"))
    (folder / "text.png").write_text("not a picture")
    files.insert(5, folder / "text.png")
    files.insert(7, folder / "missing.png")
    return files


BAD = {"blank.png": "blank", "text.png": "not an image", "missing.png": "No such file or directory"}


def without_times(reports, folder):
    for report in reports:
        report.pop("milliseconds")
        for output in report["outputs"]:
            output["path"] = output["path"].replace(str(folder), "")
    return reports


def test_failure_does_not_stop_the_rest(tool, many, tmp_path):
    result = tool("clip", *many, "-o", tmp_path)
    assert result.code == 1
    good = [path for path in many if path.name not in BAD]
    assert sorted(p.name for p in tmp_path.iterdir()) == sorted(path.name for path in good)
    # One line for each good input, in order; on standard error one for each bad one and the summary.
    assert [line.split(": ")[0] for line in result.text.splitlines()] == [str(path) for path in good]
    errors = result.err.splitlines()
    for line, (name, reason) in zip(errors, BAD.items()):
        assert line.startswith("vantrel: ") and name in line and reason in line
    assert re.fullmatch(r"vantrel: 11 inputs: 8 done( \(\d of them likely\))?, 3 failed", errors[3])


def test_all_done_is_status_0(tool, many, tmp_path):
    good = [path for path in many if path.name not in BAD]
    result = tool("clip", *good, "-o", tmp_path, ok=True)
    assert re.fullmatch(r"vantrel: 8 inputs: 8 done( \(\d of them likely\))?, 0 failed\n", result.err)


def test_jobs_change_nothing(tool, many, tmp_path):
    answers = []
    for jobs in (1, 2, 7, 64):
        out = tmp_path / str(jobs)
        out.mkdir()
        result = tool("clip", *many, "-o", out, "-j", jobs, "--json")
        files = {p.name: p.read_bytes() for p in out.iterdir()}
        answers.append((result.code, without_times(result.json, out), result.err, files))
    assert len(answers[0][3]) == 8
    assert all(answer == answers[0] for answer in answers[1:])


def test_long_option_for_jobs(tool, many):
    assert tool("clip", many[0], "--detect-only", "--jobs", 3, ok=True)


def test_text_keeps_the_order_of_the_inputs(tool, many):
    good = [path for path in many if path.name not in BAD]
    result = tool("clip", *reversed(good), "--detect-only", "-j", 4, ok=True)
    assert [line.split(": ")[0] for line in result.text.splitlines()] == [str(path) for path in reversed(good)]


def test_json_is_one_document_for_any_number_of_inputs(tool, many):
    assert len(tool("clip", many[0], "--detect-only", "--json", ok=True).json) == 1
    reports = tool("clip", *many, "--detect-only", "--json").json
    assert [report["file"] for report in reports] == [str(path) for path in many]
    failed = [report for report in reports if report["outcome"] == "failed"]
    assert [Path(report["file"]).name for report in failed] == ["text.png", "missing.png"]
    for report in failed:
        assert report["error"] and report["scan"] is None and report["outputs"] == []


def test_file_name_that_is_not_utf8(tool, many, tmp_path):
    path = os.fsencode(tmp_path) + b"/sc\xe4n.png"
    shutil.copy(many[0], path)
    process = subprocess.run([TOOL, b"clip", path, b"--detect-only", b"--json"], capture_output=True)
    assert process.returncode == 0
    process.stdout.decode("utf-8")


# Progress.


def run_on_terminal(*arguments):
    """Runs the tool with a terminal as standard error; returns what appeared there."""
    ours, its = pty.openpty()
    process = subprocess.Popen([TOOL, *map(str, arguments)], stdout=subprocess.DEVNULL, stderr=its)
    os.close(its)
    shown = b""
    while True:
        try:
            chunk = os.read(ours, 4096)
        except OSError:
            break
        if not chunk:
            break
        shown += chunk
    os.close(ours)
    process.wait(60)
    return shown.decode()


def test_progress_bar_on_a_terminal(many):
    shown = run_on_terminal("clip", *many, "--detect-only")
    bars = [int(count) for count in re.findall(r"\r\[[#.]{30}\] (\d+) of 11", shown)]
    assert bars[0] == 0 and bars == sorted(bars) and bars[-1] == 10
    assert re.search(r"vantrel: 11 inputs: 8 done[^,]*, 3 failed$", shown.rstrip())
    # The bar is erased before a line is written.
    assert all("\x1b[K" in line[: line.find("vantrel:")] for line in shown.splitlines() if "[#" in line and "vantrel:" in line)


def test_no_progress_bar_for_one_input_or_into_a_pipe(tool, many):
    assert "[" not in run_on_terminal("clip", many[0], "--detect-only")
    assert "[" not in tool("clip", *many, "--detect-only").err


# Inputs that cannot be read.


def test_folder_as_input(tool, tmp_path):
    tool("clip", tmp_path, "-o", tmp_path / "c.png").fails_with("c.png", code=2)


def test_unreadable_input(drawn):
    folder = Path(tempfile.mkdtemp())
    try:
        folder.chmod(0o777)
        path = folder / "scan.png"
        shutil.copy(drawn[2], path)
        path.chmod(0)
        options = {"user": 65534} if os.geteuid() == 0 else {}
        try:
            process = subprocess.run([TOOL, "clip", path, "-o", folder / "c.png"], capture_output=True, **options)
        except PermissionError:
            pytest.skip("the tool lies where another user may not run it")
        assert process.returncode == 1
        assert process.stderr.decode() == f"vantrel: {path}: Permission denied\n"
        assert not (folder / "c.png").exists()
    finally:
        shutil.rmtree(folder)


# Wrong usage.


@pytest.mark.parametrize(
    "arguments, reason",
    [
        ([], "subcommand"),
        (["bogus"], "unknown subcommand 'bogus'"),
        (["clip"], "INPUT"),
        (["clip", "a.png"], "-o OUT is needed"),
        (["clip", "a.png", "-o"], "--output"),
        (["clip", "a.png", "-o", "c.png", "--bogus"], "--bogus"),
        (["clip", "a.png", "-o", "c.png", "--size", "big"], "--size"),
        (["clip", "a.png", "-o", "c.png", "--format", "gif"], "unknown format 'gif'"),
        (["clip", "a.png", "-o", "c.png", "-j", "0"], "--jobs"),
        (["clip", "a.png", "-o", "c.png", "-j", "many"], "--jobs"),
        (["clip", "a.png", "-o", "c.png", "--page", "0"], "--page"),
        (["clip", "a.png", "-o", "c.png", "--dpi", "0"], "--dpi"),
        (["clip", "a.png", "-o", "c.png", "--dpi", "-300"], "--dpi"),
        (["clip", "a.png", "-o", "c.png", "--scale", "0"], "--scale"),
        (["clip", "a.png", "-o", "c.png", "--analyse", "b.png"], "--scale"),
        (["clip", "a.png", "-o", "c.png", "--analyse", "b.png", "--scale", "1"], "--scale 2"),
        (["clip", "a.png", "-o", "c.png", "--detect-only"], "--detect-only"),
        (["clip", "a.png", "b.png", "-o", "-"], "several inputs"),
        (["clip", "a.png", "b.png", "--detect-only", "--overlay", "-"], "several inputs"),
        (["clip", "-", "-", "--detect-only"], "standard input"),
        (["clip", "-", "-o", "c.png", "--scale", "2", "--analyse", "-"], "standard input"),
        (["clip", "a.png", "-o", "-", "--json"], "--json"),
        (["clip", "a.png", "--detect-only", "--overlay", "-", "--json"], "--json"),
        (["clip", "a.png", "-o", "-", "--overlay", "-"], "--overlay"),
    ],
)
def test_wrong_usage_is_status_2(tool, tmp_path, arguments, reason):
    result = tool(*arguments, cwd=tmp_path)
    result.fails_with(reason, code=2)
    assert result.out == b"" and list(tmp_path.iterdir()) == []


def test_analyse_goes_with_one_input(tool, tmp_path):
    arguments = ("a.png", "b.png", "-o", tmp_path, "--scale", 2, "--analyse", "r.png")
    tool("clip", *arguments, cwd=tmp_path).fails_with("one input", code=2)
