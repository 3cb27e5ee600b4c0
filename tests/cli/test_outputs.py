"""Where results go, and that nobody ever loses a file."""

import os
import shutil
import signal
import subprocess
import time

import pytest
from PIL import Image

import scans
from conftest import TOOL, tool_environment

pytestmark = pytest.mark.usefixtures("leftovers")


def is_card(path):
    with Image.open(path) as image:
        return abs(image.width - 630) <= 3 and abs(image.height - 396) <= 3


# Names.


def test_folder_gets_the_names_of_the_inputs(tool, scan, tmp_path):
    out = tmp_path / "out"
    out.mkdir()
    shutil.copy(scan, tmp_path / "other.PNG")
    Image.open(scan).save(tmp_path / "third.tif")
    tool("clip", scan, tmp_path / "other.PNG", tmp_path / "third.tif", "-o", out, ok=True)
    assert sorted(p.name for p in out.iterdir()) == ["other.PNG", "scan.png", "third.tif"]
    assert all(is_card(p) for p in out.iterdir())
    with Image.open(out / "third.tif") as image:
        assert image.format == "TIFF"


def test_one_input_into_a_folder(tool, scan, tmp_path):
    (tmp_path / "out").mkdir()
    for folder in ("out", "out/"):
        tool("clip", scan, "-o", f"{tmp_path}/{folder}", "--force", ok=True)
    assert [p.name for p in (tmp_path / "out").iterdir()] == ["scan.png"]


@pytest.mark.parametrize("name, format, ending", [("tiff", "TIFF", "tif"), ("JPEG", "JPEG", "jpg"), ("pnm", "PPM", "pnm")])
def test_format_of_files_in_a_folder(tool, scan, tmp_path, name, format, ending):
    (tmp_path / "out").mkdir()
    tool("clip", scan, "-o", tmp_path / "out", "--format", name, ok=True)
    with Image.open(tmp_path / "out" / f"scan.{ending}") as image:
        assert image.format == format


def test_input_without_a_known_ending_becomes_png(tool, scan, tmp_path):
    (tmp_path / "out").mkdir()
    shutil.copy(scan, tmp_path / "page.scan")
    tool("clip", tmp_path / "page.scan", "-o", tmp_path / "out", ok=True)
    with Image.open(tmp_path / "out" / "page.png") as image:
        assert image.format == "PNG"


def test_overlays_in_a_folder(tool, scan, tmp_path):
    (tmp_path / "out").mkdir()
    shutil.copy(scan, tmp_path / "b.png")
    tool("clip", scan, tmp_path / "b.png", "-o", tmp_path / "out", "--overlay", tmp_path / "out", ok=True)
    names = sorted(p.name for p in (tmp_path / "out").iterdir())
    assert names == ["b-overlay.png", "b.png", "scan-overlay.png", "scan.png"]


def test_second_input_of_the_same_name_is_an_error(tool, scan, tmp_path):
    out = tmp_path / "out"
    for folder in ("a", "b", "out"):
        (tmp_path / folder).mkdir()
    shutil.copy(scan, tmp_path / "a" / "card.png")
    shutil.copy(scan, tmp_path / "b" / "card.png")
    for force in ([], ["--force"]):
        result = tool("clip", tmp_path / "a" / "card.png", tmp_path / "b" / "card.png", "-o", out, "--json", *force)
        assert result.code == 1
        first, second = result.json
        assert first["outcome"] in ("done", "likely") and second["outcome"] == "failed"
        assert "is written for" in second["error"] and "a/card.png" in second["error"]
        (out / "card.png").unlink()


def test_overlay_and_picture_of_the_same_name_is_an_error(tool, scan, tmp_path):
    result = tool("clip", scan, "-o", tmp_path / "c.png", "--overlay", tmp_path / "." / "c.png")
    result.fails_with("c.png", "is written for")
    assert not (tmp_path / "c.png").exists()


# Existing files.


def test_existing_output_is_kept_unless_forced(tool, scan, tmp_path):
    out = tmp_path / "c.png"
    out.write_bytes(b"precious")
    tool("clip", scan, "-o", out).fails_with(scan, out, "exists already")
    assert out.read_bytes() == b"precious"
    tool("clip", scan, "-o", out, "--force", ok=True)
    assert is_card(out)


def test_existing_overlay_is_kept_unless_forced(tool, scan, tmp_path):
    overlay = tmp_path / "v.png"
    overlay.write_bytes(b"precious")
    tool("clip", scan, "-o", tmp_path / "c.png", "--overlay", overlay).fails_with(overlay, "exists already")
    assert overlay.read_bytes() == b"precious" and not (tmp_path / "c.png").exists()
    tool("clip", scan, "-o", tmp_path / "c.png", "--overlay", overlay, "--force", ok=True)


def test_forced_output_keeps_its_permissions(tool, scan, tmp_path):
    out = tmp_path / "c.png"
    out.write_bytes(b"old")
    out.chmod(0o640)
    tool("clip", scan, "-o", out, "--force", ok=True)
    assert out.stat().st_mode & 0o777 == 0o640


def test_new_output_has_the_usual_permissions(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "c.png", ok=True, umask=0o027)
    assert (tmp_path / "c.png").stat().st_mode & 0o777 == 0o640


def test_failure_leaves_a_forced_output_alone(tool, blank, tmp_path):
    out = tmp_path / "c.png"
    out.write_bytes(b"precious")
    assert tool("clip", blank, "-o", out, "--force").code == 1
    assert out.read_bytes() == b"precious"


# Inputs are never overwritten.


def other_names(scan):
    """The same file by other names."""
    folder = scan.parent
    os.symlink(scan, folder / "symlink.png")
    os.link(scan, folder / "hardlink.png")
    os.symlink("symlink.png", folder / "twice.png")
    (folder / "sub").mkdir()
    os.symlink(folder, folder / "sub" / "back")
    return [scan, folder / "symlink.png", folder / "hardlink.png", folder / "twice.png", folder / "sub" / ".." / "scan.png",
            folder / "sub" / "back" / "scan.png"]


@pytest.mark.parametrize("option", ["-o", "--overlay"])
def test_input_is_never_overwritten(tool, scan, tmp_path, option):
    content = scan.read_bytes()
    others = [] if option == "-o" else ["-o", tmp_path / "c.png"]
    for name in other_names(scan):
        result = tool("clip", scan, option, name, *others, "--force")
        result.fails_with(name, "is an input")
        assert scan.read_bytes() == content and os.path.samefile(name, scan)
    assert not (tmp_path / "c.png").exists()


def test_input_read_through_a_link_is_not_overwritten(tool, scan, tmp_path):
    content = scan.read_bytes()
    for name in other_names(scan)[1:]:
        tool("clip", name, "-o", scan, "--force").fails_with("is an input")
        assert scan.read_bytes() == content


def test_folder_of_the_inputs_as_output(tool, scan, tmp_path):
    shutil.copy(scan, tmp_path / "b.png")
    content = scan.read_bytes()
    result = tool("clip", scan, tmp_path / "b.png", "-o", tmp_path, "--force")
    assert result.code == 1 and result.err.count("is an input") == 2
    assert scan.read_bytes() == content == (tmp_path / "b.png").read_bytes()


def test_another_input_is_not_overwritten(tool, scan, tmp_path):
    (tmp_path / "in").mkdir()
    shutil.copy(scan, tmp_path / "in" / "scan.png")
    content = scan.read_bytes()
    result = tool("clip", tmp_path / "in" / "scan.png", scan, "-o", tmp_path, "--force")
    assert result.code == 1 and "is an input" in result.err
    assert scan.read_bytes() == content


def test_analysed_scan_is_not_overwritten(tool, tmp_path):
    pixels, _ = scans.draw_scan(1400, 880, 2, seed=5)
    path, small = scans.save(pixels, tmp_path / "s.png"), scans.save(pixels[::2, ::2], tmp_path / "r.png")
    content = small.read_bytes()
    tool("clip", path, "-o", small, "--force", "--scale", 2, "--analyse", small).fails_with(small, "is an input")
    assert small.read_bytes() == content


def test_link_to_an_earlier_output_stays_a_link(tool, scan, tmp_path):
    (tmp_path / "real.png").write_bytes(b"old")
    os.symlink("real.png", tmp_path / "link.png")
    tool("clip", scan, "-o", tmp_path / "link.png").fails_with("exists already")
    tool("clip", scan, "-o", tmp_path / "link.png", "--force", ok=True)
    assert (tmp_path / "link.png").is_symlink() and is_card(tmp_path / "real.png")


# Targets that cannot be written.


def test_missing_folder(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "missing" / "c.png").fails_with(scan, "missing/c.png", "No such file or directory")
    tool("clip", scan, scan, "-o", tmp_path / "missing.png").fails_with("missing.png", "no such folder", code=2)
    tool("clip", scan, "-o", f"{tmp_path}/made/", "--overlay", f"{tmp_path}/drawn/", ok=True)
    assert (tmp_path / "made" / scan.name).exists() and len(list((tmp_path / "drawn").iterdir())) == 1


def test_file_in_place_of_a_folder(tool, scan, tmp_path):
    (tmp_path / "file").write_bytes(b"x")
    tool("clip", scan, scan, "-o", tmp_path / "file").fails_with("is not a folder", code=2)
    tool("clip", scan, "-o", tmp_path / "file" / "c.png").fails_with(scan, "Not a directory")


@pytest.mark.parametrize("device", ["/dev/null", "/dev/full"])
def test_devices_are_not_replaced(tool, scan, tmp_path, device):
    os.symlink(device, tmp_path / "device.png")
    tool("clip", scan, "-o", tmp_path / "device.png", "--force").fails_with("not a regular file")
    assert not os.path.isfile(device)


def test_folder_in_place_of_a_file(tool, scan, tmp_path):
    (tmp_path / "c.png").mkdir()
    (tmp_path / "c.png" / "scan.png").mkdir()
    tool("clip", scan, "-o", tmp_path / "c.png", "--force").fails_with(scan, "is a folder")


def test_unwritable_folder(tool, scan):
    tool("clip", scan, "-o", "/proc/c.png").fails_with(scan, "/proc/c.png", "cannot be written")


def test_full_disk(tool, scan):
    with open("/dev/full", "wb") as full:
        process = subprocess.run([TOOL, "clip", scan, "-o", "-"], stdout=full, stderr=subprocess.PIPE)
    assert process.returncode == 1 and b"standard output" in process.stderr and b"No space left" in process.stderr


def test_unknown_ending(tool, scan, tmp_path):
    for name in ("c.gif", "c", "c."):
        tool("clip", scan, "-o", tmp_path / name).fails_with(name, "ending names no format", code=2)
    tool("clip", scan, "-o", tmp_path / "c.png", "--format", "tiff").fails_with("--format", code=2)


# Pipes.


def test_pipe_in_and_out(tool, scan, tmp_path):
    tool("clip", scan, "-o", tmp_path / "c.png", ok=True)
    result = tool("clip", "-", "-o", "-", input=scan.read_bytes(), ok=True)
    assert result.out == (tmp_path / "c.png").read_bytes()
    assert result.err.startswith("-: card ") and len(result.err.splitlines()) == 1


@pytest.mark.parametrize("name, start", [("png", b"\x89PNG"), ("jpeg", b"\xff\xd8"), ("tiff", b"II*\0"), ("bmp", b"BM"),
                                         ("pnm", b"P6"), ("webp", b"RIFF")])
def test_format_of_standard_output(tool, scan, name, start):
    assert tool("clip", scan, "-o", "-", "--format", name, ok=True).out.startswith(start)


def test_standard_input_into_a_folder(tool, scan, tmp_path):
    (tmp_path / "out").mkdir()
    tool("clip", "-", "-o", tmp_path / "out", input=scan.read_bytes(), ok=True)
    assert is_card(tmp_path / "out" / "stdin.png")


def test_standard_input_as_the_analysed_scan(tool, tmp_path):
    pixels, _ = scans.draw_scan(1400, 880, 2, seed=5)
    path, small = scans.save(pixels, tmp_path / "s.png"), scans.save(pixels[::2, ::2], tmp_path / "r.png")
    arguments = (path, "-o", tmp_path / "c.png", "--scale", 2, "--analyse", "-")
    tool("clip", *arguments, input=small.read_bytes(), ok=True)


def test_overlay_on_standard_output(tool, scan):
    result = tool("clip", scan, "--detect-only", "--overlay", "-", ok=True)
    assert result.out.startswith(b"\x89PNG") and "4 of 4 sides" in result.err


def test_nothing_found_writes_nothing_to_a_pipe(tool, blank):
    result = tool("clip", "-", "-o", "-", input=blank.read_bytes())
    result.fails_with("-:", "blank")
    assert result.out == b""


def test_empty_standard_input(tool):
    tool("clip", "-", "-o", "-", input=b"").fails_with("-:", "empty")


def test_closed_standard_output(tool, scan):
    reading, writing = os.pipe()
    os.close(reading)
    process = subprocess.run([TOOL, "clip", scan, "-o", "-"], stdout=writing, stderr=subprocess.PIPE)
    os.close(writing)
    assert process.returncode == 1 and b"Broken pipe" in process.stderr


# Interrupts.


def test_interrupt_amid_the_work(scan, tmp_path):
    out = tmp_path / "out"
    out.mkdir()
    inputs = []
    for i in range(40):
        inputs.append(tmp_path / f"{i}.png")
        shutil.copy(scan, inputs[-1])
    for delay in (0.05, 0.15, 0.3):
        process = subprocess.Popen([TOOL, "clip", *inputs, "-o", out, "--force", "-j", "4"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(delay)
        process.terminate()
        assert process.wait(60) in (-signal.SIGTERM, 0)
        assert not list(out.glob(".*"))
        assert all(is_card(path) for path in out.iterdir())


def test_ignored_interrupt_stays_ignored(scan, tmp_path):
    # As for a job that a shell started in the background.
    process = subprocess.Popen([TOOL, "clip", "-", "-o", tmp_path / "c.png"], stdin=subprocess.PIPE,
                               preexec_fn=lambda: signal.signal(signal.SIGINT, signal.SIG_IGN))
    deadline = time.monotonic() + 20
    outputs = lambda: [fd for fd in os.listdir(f"/proc/{process.pid}/fd") if str(tmp_path) in os.readlink(f"/proc/{process.pid}/fd/{fd}")]
    while not outputs() and time.monotonic() < deadline:
        time.sleep(0.02)
    process.send_signal(signal.SIGINT)
    process.communicate(scan.read_bytes(), timeout=60)
    assert process.returncode == 0
    assert is_card(tmp_path / "c.png")
