"""Large batches: folders, pages, runs that go on, lines of JSON, the review; and names that are no text."""

import json
import os
import shutil
import signal
import subprocess
from html.parser import HTMLParser

import pytest
from PIL import Image

import scans
from conftest import TOOL
from sample_scans import SAMPLES

pytestmark = pytest.mark.usefixtures("leftovers")


@pytest.fixture
def folder(drawn, tmp_path):
    """Scans on two levels, with what is no picture among them."""
    top = tmp_path / "scans"
    (top / "more").mkdir(parents=True)
    for name in ("b.png", "a.png", "more/c.png"):
        shutil.copy(drawn[2], top / name)
    (top / "notes.txt").write_text("no picture")
    (top / ".vantrel-Ab12Cd").write_bytes(b"what a killed run left")
    (top / ".hidden.png").write_bytes(b"no picture either")
    yield top
    (top / ".vantrel-Ab12Cd").unlink()


def names(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if path.is_file())


def test_folder_stands_for_its_pictures(tool, folder, tmp_path):
    result = tool(folder, "-o", tmp_path / "out", ok=True)  # which is made
    assert [line.split(": ")[0] for line in result.text.splitlines()] == [str(folder / "a.png"), str(folder / "b.png")]
    assert names(tmp_path / "out") == ["a.png", "b.png"]


def test_recursive_keeps_the_folders(tool, folder, tmp_path):
    tool("clip", "-r", folder, "-o", tmp_path / "out", "-q", ok=True)
    assert names(tmp_path / "out") == ["a.png", "b.png", "more/c.png"]


def test_folder_without_pictures_is_wrong_usage(tool, tmp_path):
    tool(tmp_path, "-o", tmp_path / "out").fails_with("no pictures", "--recursive", code=2)
    assert names(tmp_path) == []


def test_a_picture_is_no_folder_to_be_made(tool, folder, tmp_path):
    tool(folder, "-o", tmp_path / "card.png").fails_with("no such folder", code=2)


def test_all_pages(tool, drawn, tmp_path):
    page = Image.open(drawn[2])
    page.save(tmp_path / "s.tif", save_all=True, append_images=[page, page])
    result = tool(tmp_path / "s.tif", "--page", "all", "-o", tmp_path / "out", "--json", ok=True)
    assert [(report["page"], report["pages"]) for report in result.json] == [(1, 3), (2, 3), (3, 3)]
    assert names(tmp_path / "out") == ["s-page1.tif", "s-page2.tif", "s-page3.tif"]
    tool("-", "--page", "all", "-o", tmp_path).fails_with("--page all", code=2)


def test_a_run_goes_on_where_it_ended(tool, folder, tmp_path):
    out = tmp_path / "out"
    tool(folder / "a.png", "-o", f"{out}/", ok=True)
    before = (out / "a.png").stat().st_mtime_ns
    result = tool(folder, "-o", out, "--skip-existing", "--json", ok=True)
    assert [report["outcome"] == "skipped" for report in result.json] == [True, False]
    assert (out / "a.png").stat().st_mtime_ns == before and "1 of them skipped" in result.err
    tool(folder, "-o", out, "--skip-existing", "--force").fails_with("--skip-existing", code=2)


def test_first_of_several_cards_says_that_all_are_there(tool, tmp_path):
    sheet = SAMPLES / "sheets" / "dark-strip.jpg"
    (tmp_path / "dark-strip-2.jpg").write_bytes(b"precious")
    result = tool(sheet, "-o", tmp_path)
    assert result.code == 1 and names(tmp_path) == ["dark-strip-2.jpg", "dark-strip-3.jpg"]
    (tmp_path / "dark-strip-2.jpg").unlink()
    tool(sheet, "-o", tmp_path, "--skip-existing").fails_with("dark-strip-3.jpg", "exists already")
    (tmp_path / "dark-strip-3.jpg").unlink()
    tool(sheet, "-o", tmp_path, ok=True)
    assert "skipped" in tool(sheet, "-o", tmp_path, "--skip-existing", ok=True).text


def test_dry_run_writes_nothing(tool, folder, tmp_path):
    result = tool("clip", folder, "-o", tmp_path / "out", "--dry-run", ok=True)
    assert result.text.splitlines() == [f"{folder}/{name} -> {tmp_path}/out/{name}" for name in ("a.png", "b.png")]
    assert not (tmp_path / "out").exists()


def test_quiet_is_quiet(tool, folder, tmp_path):
    result = tool(folder, "-o", tmp_path / "out", "-q", ok=True)
    assert result.out == b"" and result.err == ""
    tool("-q", folder / "notes.txt", "--detect-only").fails_with("notes.txt")


def test_output_that_was_meant(tool, folder, tmp_path):
    tool(folder / "a.png", tmp_path / "card.png").fails_with("did you mean -o", "card.png", code=2)


# Lines of JSON.


def test_lines_of_json_are_the_reports(tool, folder):
    whole = tool(folder, "--detect-only", "--json", ok=True).json
    lines = [json.loads(line) for line in tool(folder, "--detect-only", "--json-lines", ok=True).text.splitlines()]
    for report in (*whole, *lines):
        report.pop("milliseconds")
    assert sorted(lines, key=lambda report: report["file"]) == whole


def test_lines_of_json_outlive_an_interruption(drawn, tmp_path):
    many = [str(drawn[2])] * 400
    process = subprocess.Popen([TOOL, "clip", *many, "--detect-only", "--json-lines", "-j", "1"], stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL)
    first = process.stdout.readline()
    process.send_signal(signal.SIGINT)
    rest = process.stdout.read().splitlines()
    assert process.wait(60) == -signal.SIGINT
    assert len(rest) < 399
    for line in (first, *rest):
        assert json.loads(line)["version"] == 1


# Names.


def test_name_that_is_no_text_can_be_mapped_back(drawn, tmp_path):
    path = os.fsencode(tmp_path) + b"/sc\xe4n.png"
    shutil.copy(drawn[2], path)
    process = subprocess.run([TOOL, path, b"-o", os.fsencode(tmp_path) + b"/out/", b"--json-lines"], capture_output=True)
    report = json.loads(process.stdout)
    assert bytes.fromhex(report["file_bytes"]) == path
    assert os.path.exists(bytes.fromhex(report["outputs"][0]["path_bytes"]))
    shown = subprocess.run([TOOL, path, b"--detect-only"], capture_output=True).stdout
    assert b"sc\\xe4n.png: " in shown


@pytest.mark.parametrize("name", ["a\x1b[31mb.png", "a\nb.png", "a\x7fb.png", "a\u009bb.png"])
def test_escape_characters_are_not_shown(tool, drawn, tmp_path, name):
    shutil.copy(drawn[2], tmp_path / name)
    (tmp_path / ("x" + name)).write_bytes(b"no picture")
    for result in (tool(tmp_path / name, "--detect-only"), tool(tmp_path / ("x" + name), "--detect-only"),
                   tool(tmp_path / name, "-o", f"{tmp_path}/no\x1b"), tool(f"--x{name}", tmp_path)):
        shown = (result.text + result.err).replace("\n", "")
        assert all(character.isprintable() for character in shown)
    assert tool(tmp_path / name, "--detect-only", "--json", ok=True).json[0]["file_bytes"] is None


# The review.


class Page(HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.links = []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.links += [(tag, value) for name, value in attributes if name in ("src", "href")]


def test_review_shows_what_is_doubtful(tool, tmp_path):
    files = [SAMPLES / "anywhere" / name for name in ("portrait.jpg", "cut-off.jpg", "empty-lid.jpg")]
    broken = tmp_path / "<i>&.png"
    broken.write_bytes(b"no picture")
    review = tmp_path / "review"
    result = tool(*files, broken, "-o", tmp_path / "out", "--review", review)
    assert result.code == 1
    text = (review / "index.html").read_text()
    assert "3 of 4 scans" in text and "cut-off.jpg" in text and "empty-lid.jpg" in text and "portrait.jpg" not in text
    assert "&lt;i&gt;&amp;.png" in text and "<i>" not in text
    pictures = [link for tag, link in Page(text).links if tag == "img"]
    assert len(pictures) == 2 and names(review) == sorted(["index.html", *pictures])
    for picture in pictures:
        with Image.open(review / picture) as image:
            assert image.format == "JPEG"
    everything = tmp_path / "all"
    tool(files[0], "--detect-only", "--review", everything, "--review-below", 1.01, ok=True)
    assert "1 of 1 scans" in (everything / "index.html").read_text()
    assert all("//" not in link for _, link in Page(text).links)
