"""Completion by bash, and by zsh and fish where they are installed (scripts/setup does that)."""

import os
import shutil
import subprocess
from pathlib import Path

import pytest

from conftest import TOOL

SCRIPTS = Path(__file__).resolve().parents[2] / "cli" / "completions"
SUBCOMMANDS = {"auto", "clip", "cut", "split", "enlarge", "crop", "detect"}


def by_bash(*words):
    """What bash offers for the last word."""
    line = ' '.join(f"'{word}'" for word in ("vantrel", *words))
    before = words[-2] if len(words) > 1 else "vantrel"
    script = (f"source '{SCRIPTS}/vantrel.bash'; COMP_WORDS=({line}); COMP_CWORD={len(words)}; "
              f"_vantrel '{TOOL}' '{words[-1]}' '{before}'; printf '%s\\n' \"${{COMPREPLY[@]}}\"")
    done = subprocess.run(["bash", "-c", script], capture_output=True, text=True, check=True, cwd=SCRIPTS)
    assert done.stderr == ""
    return set(done.stdout.split())


def test_bash_offers_subcommands_options_values_and_files():
    assert SUBCOMMANDS <= by_bash("")
    assert by_bash("sp") == {"split"}
    assert {"--output", "-o", "--min-sides", "--review"} <= by_bash("clip", "-")
    assert "--rect" in by_bash("crop", "--re") and "--rect" not in by_bash("clip", "--re")
    assert "--review" in by_bash("scan.png", "--re")  # as of auto
    assert by_bash("clip", "--method", "") == {"auto", "anywhere", "dark-glass", "flat"}
    assert by_bash("split", "--cards", "") == {"all"}
    assert by_bash("clip", "vantrel.") == {"vantrel.bash", "vantrel.fish"}
    assert SUBCOMMANDS <= by_bash("help", "")


@pytest.fixture
def path(tmp_path):
    (tmp_path / "vantrel").symlink_to(TOOL)
    return f"{tmp_path}:{os.environ['PATH']}"


@pytest.mark.skipif(not shutil.which("fish"), reason="fish is not installed")
def test_fish_offers_the_same(path):
    def offered(line):
        script = f"source '{SCRIPTS}/vantrel.fish'; complete -C '{line}'"
        done = subprocess.run(["fish", "--no-config", "-c", script], capture_output=True, text=True,
                              env={**os.environ, "PATH": path}, cwd=SCRIPTS)
        assert done.returncode == 0 and done.stderr == ""
        return {entry.split("\t")[0] for entry in done.stdout.splitlines()}

    assert SUBCOMMANDS <= offered("vantrel ")
    assert {"--min-sides", "--review"} <= offered("vantrel clip --")
    assert {"anywhere", "dark-glass"} <= offered("vantrel clip --method ")


# What zsh's own functions would show is printed.
ZSH = """
compadd() { print -l -- ${(P)2} }
_describe() { print -l -- ${${(P)2}%%:*} }
_files() { print FILES }
words=(vantrel %s) CURRENT=$#words PREFIX=$words[-1]
source '%s'
"""


@pytest.mark.skipif(not shutil.which("zsh"), reason="zsh is not installed")
def test_zsh_offers_the_same(path):
    assert (SCRIPTS / "_vantrel").read_text().startswith("#compdef vantrel\n")

    def offered(*typed):
        script = ZSH % (" ".join(f"'{word}'" for word in typed), SCRIPTS / "_vantrel")
        done = subprocess.run(["zsh", "-f", "-c", script], capture_output=True, text=True, env={**os.environ, "PATH": path})
        assert done.returncode == 0 and done.stderr == "", done.stderr
        return set(done.stdout.split())

    assert SUBCOMMANDS | {"FILES"} <= offered("")
    assert {"--output", "-o", "--min-sides", "--review"} <= offered("clip", "-")
    assert "--rect" in offered("crop", "--re") and "--rect" not in offered("clip", "--re")
    assert "--review" in offered("scan.png", "--re")  # as of auto
    assert offered("clip", "--method", "") == {"auto", "anywhere", "dark-glass", "flat"}
    assert offered("split", "--cards", "") == {"all"}
    assert offered("clip", "--overlay", "") == {"FILES"}
    assert SUBCOMMANDS <= offered("help", "")
