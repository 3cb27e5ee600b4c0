"""--help, --version and the manual page say the same."""

import os
import re
from pathlib import Path

import pytest

MANUAL = Path(os.environ["VANTREL_MAN_PAGE"]).read_text()
# The page marks options with asterisks and escapes nothing in them.
PLAIN_MANUAL = MANUAL.replace("*", "")


def subcommands(tool):
    text = tool("--help", ok=True).text
    return re.findall(r"^  (\w+) ", text[text.index("Subcommands:") :], re.M)


def options_of(text):
    return {option for line in re.findall(r"^  (-\S+)", text, re.M) for option in line.split(",")}


def section(name):
    """The text of a section of the manual; those of subcommands bear their names."""
    match = re.search(rf"^## {re.escape(name)}\n(.*?)(?=^#)", MANUAL, re.M | re.S)
    assert match, f"the manual has no section {name}"
    return match.group(1)


def test_version(tool):
    result = tool("--version", ok=True)
    assert result.text == f"vantrel {os.environ['VANTREL_VERSION']}\n" and result.err == ""


def test_help_lists_every_subcommand(tool):
    names = subcommands(tool)
    assert "clip" in names
    for name in names:
        section(name)
        assert re.search(rf"^\*vantrel\* \*{name}\*", MANUAL, re.M)


def test_every_option_of_help_is_in_the_manual(tool):
    documented = set(re.findall(r"(?<![\w-])--?[a-zA-Z][\w-]*", PLAIN_MANUAL))
    for name in subcommands(tool):
        options = options_of(tool(name, "--help", ok=True).text)
        assert len(options) > 5
        assert options <= documented, (name, options - documented)
    assert options_of(tool("--help", ok=True).text) <= documented


def test_own_options_of_each_subcommand_are_in_its_section(tool):
    shared = set(re.findall(r"--[\w-]+", PLAIN_MANUAL[PLAIN_MANUAL.index("# OPTIONS") : PLAIN_MANUAL.index("## clip")]))
    for name in subcommands(tool):
        text = section(name)
        for option in options_of(tool(name, "--help", ok=True).text) - shared:
            if option.startswith("--"):
                assert f"*{option}*" in text, (name, option)


def test_manual_describes_no_option_that_is_not_there(tool):
    known = options_of(tool("--help", ok=True).text)
    for name in subcommands(tool):
        known |= options_of(tool(name, "--help", ok=True).text)
    described = {option for line in re.findall(r"^\*-.*", MANUAL, re.M) for option in re.findall(r"--?[a-zA-Z][\w-]*", line)}
    assert described <= known, described - known


@pytest.mark.parametrize("option", ["-h", "--help"])
def test_help_needs_nothing_else(tool, option):
    result = tool("clip", option, ok=True)
    assert "Usage: vantrel clip" in result.text and result.err == ""


def test_short_options_do_what_the_long_ones_do(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "a.png", "-j", 1, ok=True)
    tool("clip", scan, "--output", tmp_path / "b.png", "--jobs", 1, ok=True)
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()
