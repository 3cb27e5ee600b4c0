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


@pytest.mark.parametrize("option", ["-V", "--version"])
def test_each_subcommand_tells_the_version(tool, option):
    told = tool("--version", ok=True).text
    for words in [(), *((name,) for name in subcommands(tool)), ("scan.png", "-o", "card.png"), ("-q",)]:
        result = tool(*words, option, ok=True)
        assert (result.text, result.err) == (told, ""), words


def test_flags_take_no_value(tool, scan, tmp_path):
    """Neither what would be true nor what would be false is taken for the flag."""
    flag = re.compile(r"^  (?:-\w,)?(--[\w-]+)(?!.*[ ,](?:N|X|OUT|FILE|FOLDER|FORMAT|L,T,R,B|\S+\|\S+)(?: |$)) ", re.M)
    for name in subcommands(tool):
        flags = flag.findall(tool(name, "--help", ok=True).text)
        assert {"--json", "--recursive", "--help", "--version"} <= set(flags)
        for option in flags:
            for value in ("3", "false", "true", ""):
                told = f"{option} takes no value (see vantrel {name} --help)"
                tool(name, scan, f"{option}={value}").fails_with(told, code=2)
    tool(scan, "-q=1", "--detect-only").fails_with("-q takes no value (see vantrel auto --help)", code=2)
    # What follows an option is its value, whatever it looks like.
    tool("clip", scan, "-o", "--json=3.png", "--dry-run", ok=True, cwd=tmp_path)


def test_short_options_take_their_values_without_a_sign(tool, scan, tmp_path):
    tool("clip", scan, "-o=card.png", cwd=tmp_path).fails_with("-o takes its value without '='", code=2)
    tool("clip", scan, "-ocard.png", ok=True, cwd=tmp_path)
    assert sorted(path.name for path in tmp_path.iterdir()) == ["card.png", "scan.png"]


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


def test_help_has_no_word_of_the_parser(tool):
    foreign = re.compile(r":INT|:FLOAT|:POSITIVE|TEXT|INT in|\[\d|\{|\}|REQUIRED|Excludes:|Needs:|Positionals|UINT|Env:|=\[|SUBCOMMANDS")
    for words in [("--help",), *((name, "--help") for name in subcommands(tool))]:
        text = tool(*words, ok=True).text
        assert not foreign.search(text), (words, foreign.search(text))
        assert max(len(line) for line in text.splitlines()) <= 120
    text = re.sub(r"\s+", " ", tool("clip", "--help", ok=True).text)
    for told in ["N Work on N scans at a time (default: the number of processors) (1 to 1024)", "(not with --json-lines)",
                 "(needs --scale; not with --second)", "(0 to 1)", "--rotate 0|90|180|270 Turn cards clockwise (not with",
                 "Usage: vantrel clip [OPTIONS] INPUT... -o OUT"]:
        assert told in text, told
    assert "(is needed)" in tool("crop", "--help", ok=True).text


def test_errors_have_no_word_of_the_parser(tool, scan):
    for words, told in [
        (("--output", "b.png"), "--output is given more than once"),
        (("--dpi", "0x10"), "--dpi: '0x10' is no number from 1 to 100000"),
        (("--jobs", ""), "--jobs: '' is no number from 1 to 1024"),
        (("--min-confidence", "nan"), "--min-confidence: 'nan' is no number from 0 to 1"),
        (("--min-confidence", "1.5"), "--min-confidence: '1.5' is no number from 0 to 1"),
        (("--rotate", "45"), "--rotate: '45' is none of 0,90,180,270"),
        (("--detect-only",), "--output and --detect-only do not go together"),
        (("--page", "x"), "--page: 'x' is neither a page nor 'all'"),
    ]:
        result = tool("clip", scan, "-o", "a.png", *words)
        assert (result.code, result.err) == (2, f"vantrel: {told} (see vantrel clip --help)\n")
    result = tool("crop", scan, "--rect", "1,2", "-o", "a.png")
    assert (result.code, result.err) == (2, "vantrel: --rect: '1,2' is not L,T,R,B, four whole numbers (see vantrel crop --help)\n")


def test_leading_zero_is_no_other_base(tool, scan, tmp_path):
    report = tool("clip", scan, "--dpi", "0300", "--detect-only", "--json", ok=True).json[0]
    assert report["scan"]["dpi"] == [300, 300]


@pytest.mark.parametrize("option", ["-h", "--help"])
def test_help_needs_nothing_else(tool, option):
    result = tool("clip", option, ok=True)
    assert "Usage: vantrel clip" in result.text and result.err == ""


def test_short_options_do_what_the_long_ones_do(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "a.png", "-j", 1, ok=True)
    tool("clip", scan, "--output", tmp_path / "b.png", "--jobs", 1, ok=True)
    assert (tmp_path / "a.png").read_bytes() == (tmp_path / "b.png").read_bytes()


def test_each_subcommand_has_a_page(tool):
    folder = Path(os.environ.get("VANTREL_MAN_PAGES", "/nowhere"))
    if not (folder / "vantrel.1").exists():
        pytest.skip("scdoc was not there when the pages would have been built")
    for name in subcommands(tool):
        page = (folder / f"vantrel-{name}.1").read_text()
        assert f'.TH "vantrel-{name}" "1"' in page and "SEE ALSO" in page
        for option in re.findall(r"^\*(--[\w-]+)\*", section(name), re.M):
            assert option.replace("-", "\\-") in page or option in page


def test_every_member_of_the_json_is_described(tool, scan, tmp_path):
    """Whatever a program reads is in the page's section on JSON."""
    samples = Path(__file__).resolve().parents[2] / "samples"
    text = PLAIN_MANUAL[PLAIN_MANUAL.index("# JSON OUTPUT") : PLAIN_MANUAL.index("# EXIT STATUS")].lower()

    def members(value):
        if isinstance(value, dict):
            yield from value
        for inner in value.values() if isinstance(value, dict) else value if isinstance(value, list) else ():
            yield from members(inner)

    sheet = samples / "sheets" / "two-columns.png"
    commands = [
        ("auto", scan), ("auto", sheet), ("clip", scan, "--alternatives", 5), ("clip", scan, "--method", "dark-glass"), ("cut", scan),
        ("split", sheet, "--method", "sheet"), ("split", scan), ("detect", scan), ("crop", "--rect", "0,0,9,9", scan),
        ("enlarge", scan),
    ]
    for number, (name, *arguments) in enumerate(commands):
        output = () if name == "detect" else ("-o", f"{tmp_path}/{number}/")
        report = tool(name, *arguments, *output, "--json").json[0]
        assert report["version"] == 1
        named = set(members(report))
        assert named and not [member for member in named if not re.search(rf"\b{member}\b", text)], name
