"""Running the tool as a process, and the scans that most tests use."""

import json
import os
import subprocess
import sys
from pathlib import Path

import pytest

import scans

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "support"))  # the library's Python binding

TOOL = os.environ["VANTREL_TOOL"]

# A sanitizer that finds something ends the tool with this status, which no test expects.
SANITIZER_STATUS = 99
SANITIZER_OPTIONS = f"exitcode={SANITIZER_STATUS}"


def tool_environment(log):
    """The environment of the tool: sanitizers report into files, since the tool keeps standard error for itself."""
    environment = dict(os.environ)
    for sanitizer in ("ASAN", "UBSAN", "LSAN", "TSAN"):
        environment[f"{sanitizer}_OPTIONS"] = f"{SANITIZER_OPTIONS}:log_path={log}"
    environment["LSAN_OPTIONS"] += f":print_suppressions=0:suppressions={Path(__file__).parent / 'leaks.supp'}"
    return environment


class Result:
    def __init__(self, process, log):
        self.code = process.returncode
        self.out = process.stdout
        self.err = process.stderr.decode(errors="replace")
        reports = [p.read_text() for p in log.parent.glob(log.name + ".*")]
        assert not reports, reports
        assert self.code != SANITIZER_STATUS, self.err
        assert self.code in (0, 1, 2), (self.code, self.err)

    @property
    def text(self):
        return self.out.decode()

    @property
    def json(self):
        return json.loads(self.out)

    def fails_with(self, *parts, code=1):
        """One line on standard error, from the tool itself, that has all these parts."""
        assert self.code == code, (self.code, self.err)
        lines = self.err.splitlines()
        assert len(lines) == 1, self.err
        assert lines[0].startswith("vantrel: "), self.err
        for part in parts:
            assert str(part) in lines[0], self.err
        return self


@pytest.fixture
def tool(tmp_path_factory):
    log = tmp_path_factory.mktemp("sanitizer") / "log"

    def run(*arguments, ok=None, path=TOOL, **options):
        process = subprocess.run(
            [path, *map(str, arguments)],
            capture_output=True,
            timeout=120,
            env=tool_environment(log),
            **options,
        )
        result = Result(process, log)
        if ok is not None:
            assert (result.code == 0) == ok, (result.code, result.err)
        return result

    return run


@pytest.fixture(scope="session")
def drawn(tmp_path_factory):
    """A colour scan: its pixels, the true corners of its card, and a PNG file of it at 300 dots per inch."""
    pixels, corners = scans.draw_scan()
    path = scans.save(pixels, tmp_path_factory.mktemp("drawn") / "scan.png")
    return pixels, corners, path


@pytest.fixture(scope="session")
def blank(tmp_path_factory):
    """A scan on which there is nothing at all."""
    pixels = scans.blank_scan()
    return scans.save(pixels, tmp_path_factory.mktemp("blank") / "blank.png")


@pytest.fixture
def scan(drawn, tmp_path):
    """A copy of the colour scan that the test may destroy."""
    path = tmp_path / "scan.png"
    path.write_bytes(drawn[2].read_bytes())
    return path


@pytest.fixture
def leftovers(tmp_path):
    """At the end of the test no temporary file is left anywhere below its folder."""
    yield
    assert not [p for p in Path(tmp_path).rglob(".vantrel-*")]
