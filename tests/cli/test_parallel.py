"""examples/batch: the tool under GNU parallel, on this machine and on two machines that are folders of it."""

import json
import os
import shutil
import subprocess
from pathlib import Path

import pytest

from conftest import TOOL
from sample_scans import SAMPLES

WORK = Path(__file__).resolve().parents[2] / "examples" / "batch" / "work"
SCANS = ("portrait.jpg", "free-sheet.jpg", "empty-lid.jpg")
CARDS = ["free-sheet/free-sheet-%d.jpg" % number for number in range(1, 7)] + ["portrait/portrait.jpg"]

# What ssh would do, in a folder called like the machine: it sets SHELL, with which parallel runs the command there.
SSH = """#!/bin/bash
while [[ $1 == -* ]]; do case $1 in -l|-p|-o|-i|-S) shift 2 ;; *) shift ;; esac; done
machine=$1; shift
[ "$1" = -- ] && shift
cd "$(dirname "$0")/$machine" && echo "$machine" >> ../asked && HOME=$PWD SHELL=/bin/bash exec bash -c "$*"
"""

pytestmark = pytest.mark.skipif(not (shutil.which("parallel") and shutil.which("rsync")),
                                reason="GNU parallel and rsync are not installed")


@pytest.fixture
def place(tmp_path):
    (tmp_path / "scans").mkdir()
    for name in SCANS:
        shutil.copy(SAMPLES / "anywhere" / name, tmp_path / "scans")
    for machine in ("one", "two"):
        (tmp_path / machine).mkdir()
    ssh = tmp_path / "ssh"
    ssh.write_text(SSH)
    ssh.chmod(0o755)
    return tmp_path


def work(place, *arguments, **environment):
    environment = {**os.environ, "HOME": str(place), "VANTREL": TOOL, **environment}
    return subprocess.run([WORK, "scans", "cards", *arguments], cwd=place, env=environment, capture_output=True, timeout=120)


def outcomes(place):
    lines = (place / "cards" / "cards.jsonl").read_text().splitlines()
    return sorted((Path(report["file"]).name, report["outcome"]) for report in map(json.loads, lines))


def check(place):
    assert [name for name, _ in outcomes(place)] == sorted(SCANS)
    assert dict(outcomes(place))["empty-lid.jpg"] == "nothing-found"
    written = sorted(str(path.relative_to(place / "cards")) for path in (place / "cards").rglob("*.jpg"))
    assert written == CARDS


def test_here_and_again(place):
    done = work(place)
    assert done.returncode == 1 and b"blank" in done.stderr  # one input failed
    check(place)
    again = work(place)
    assert again.returncode == 0
    check(place)


def test_on_two_machines(place):
    done = work(place, "1/one,1/two", REMOTE=f"--ssh {place}/ssh")
    assert done.returncode == 1, done.stderr
    check(place)
    assert {"one", "two"} == set((place / "asked").read_text().split())
    assert not [path for machine in ("one", "two") for path in (place / machine).rglob("*.jpg")]
