"""Nothing is lost: whatever ends the tool, inputs stay as they are and outputs are complete or absent.

All of it with files that have no name before they are complete, and with temporary files, as on systems without those.
VANTREL_KILLS says how many runs are killed.
"""

import os
import random
import resource
import shutil
import signal
import subprocess
import time

import numpy as np
import pytest
from PIL import Image

import scans
from conftest import TOOL, tool_environment

KILLS = int(os.environ.get("VANTREL_KILLS", "24"))
NAMED = os.environ.get("VANTREL_NAMED_TEMPORARIES")
GIVING_UP = os.environ.get("VANTREL_GIVING_UP")
AS_ROOT = os.geteuid() == 0
NOBODY = 65534


@pytest.fixture(params=["unnamed", "named"])
def environment(request, tmp_path_factory):
    environment = tool_environment(tmp_path_factory.mktemp("sanitizer") / "log")
    if request.param == "named":
        if not NAMED:
            pytest.skip("a sanitizer wants to be loaded first")
        environment["LD_PRELOAD"] = NAMED
    environment["UNNAMED"] = "yes" if request.param == "unnamed" else ""
    return environment


@pytest.fixture(scope="module")
def inputs(tmp_path_factory):
    """Scans with a card each, and their bytes."""
    folder = tmp_path_factory.mktemp("inputs")
    for i in range(8):
        scans.save(scans.draw_scan(360, 240, tilt=i - 4, seed=i)[0], folder / f"{i}.png")
    return {path: path.read_bytes() for path in sorted(folder.iterdir())}


def run(environment, *arguments, **options):
    return subprocess.run([TOOL, *map(str, arguments)], capture_output=True, env=environment, timeout=120, **options)


def is_complete(path):
    with Image.open(path) as image:
        return np.asarray(image).size > 0


def open_files(process):
    folder = f"/proc/{process.pid}/fd"
    links = []
    for name in os.listdir(folder):
        try:
            links.append(os.readlink(f"{folder}/{name}"))
        except OSError:
            pass
    return links


def wait_for_output(process, folder, environment):
    """Until the tool has made the file that its output grows in."""
    deadline = time.monotonic() + 20
    while time.monotonic() < deadline:
        if environment["UNNAMED"] and any(link.startswith(f"{folder}/") and "deleted" in link for link in open_files(process)):
            assert not list(folder.glob(".vantrel-*"))
            return
        if not environment["UNNAMED"] and list(folder.glob(".vantrel-*")):
            return
        time.sleep(0.01)
    raise AssertionError("no output was begun")


# Ended from within.


@pytest.mark.skipif(not GIVING_UP, reason="a sanitizer wants to be loaded first")
@pytest.mark.parametrize("place", ["", "GIVING_UP_IN_A_THREAD"])
def test_a_library_that_gives_up_ends_the_tool_in_good_order(tmp_path, place):
    pixels = scans.blank_scan(120, 100)
    names = ["a.png", "b\n\u00e9.webp", "c.png"]
    for name in names:
        scans.save(pixels, tmp_path / name)
    environment = dict(os.environ, LD_PRELOAD=GIVING_UP, **({place: "1"} if place else {}))
    command = [TOOL, "crop", *names, "--rect", "0,0,49,49", "-o", "out", "-j", "1"]
    process = subprocess.run(command, cwd=tmp_path, env=environment, capture_output=True, text=True)
    assert process.returncode == 1
    assert process.stderr == "vantrel: b\\x0a\u00e9.webp: a library that works on it gave up (is the file damaged?)\n"
    assert [path.name for path in (tmp_path / "out").iterdir()] == ["a.png"]
    assert scans.load(tmp_path / "out" / "a.png").shape == (50, 50, 3)


# Ended from outside.


@pytest.mark.parametrize("number", [signal.SIGINT, signal.SIGTERM, signal.SIGHUP])
def test_a_signal_leaves_nothing_behind(environment, tmp_path, number):
    # The tool waits for a scan that never comes.
    process = subprocess.Popen([TOOL, "clip", "-", "-o", tmp_path / "c.png"], stdin=subprocess.PIPE, env=environment)
    wait_for_output(process, tmp_path, environment)
    process.send_signal(number)
    assert process.wait(60) == -number
    assert list(tmp_path.iterdir()) == []


def test_even_being_killed_leaves_nothing_without_a_name(environment, tmp_path):
    process = subprocess.Popen([TOOL, "clip", "-", "-o", tmp_path / "c.png"], stdin=subprocess.PIPE, env=environment)
    wait_for_output(process, tmp_path, environment)
    process.kill()
    process.wait(60)
    left = [path.name for path in tmp_path.iterdir()]
    assert left == [] if environment["UNNAMED"] else all(name.startswith(".vantrel-") for name in left)


def test_killed_at_any_moment(environment, inputs, tmp_path):
    out = tmp_path / "out"
    out.mkdir()
    moments = random.Random(7)
    started = time.monotonic()
    whole = run(environment, "crop", *inputs, "-o", out, "--rect", "5,5,200,150", "-j", 2)
    assert whole.returncode == 0
    lasts = time.monotonic() - started
    complete = {path.name: path.read_bytes() for path in out.iterdir()}
    killed = 0
    for i in range(KILLS):
        force = i % 2 == 1  # over the files of before, or into an empty folder
        if not force:
            shutil.rmtree(out)
            out.mkdir()
        arguments = ["crop", *inputs, "-o", out, "--rect", "5,5,200,150", "-j", "2"] + ["--force"] * force
        process = subprocess.Popen([TOOL, *map(str, arguments)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment)
        time.sleep(moments.uniform(0, 1.2 * lasts))
        process.kill()
        killed += process.wait(60) == -signal.SIGKILL
        for path in out.iterdir():
            if path.name.startswith(".vantrel-"):
                path.unlink()
            else:
                assert path.read_bytes() == complete[path.name]
        assert all(path.read_bytes() == content for path, content in inputs.items())
    assert killed > KILLS // 4


# No room, no permission.


def test_no_room_for_the_output(environment, inputs, tmp_path):
    limit = lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8192, 8192))
    result = run(environment, "enlarge", next(iter(inputs)), "-o", tmp_path / "c.png", preexec_fn=limit)
    assert result.returncode == 1 and b"File too large" in result.stderr, result
    assert list(tmp_path.iterdir()) == []


@pytest.mark.skipif(not AS_ROOT, reason="only root makes file systems")
def test_full_file_system(environment, inputs, tmp_path):
    disk = tmp_path / "disk"
    disk.mkdir()
    if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=256k", "tmpfs", disk], capture_output=True).returncode != 0:
        pytest.skip("nothing can be mounted here")
    try:
        scans.save(scans.blank_scan(8, 8), disk / "old.png")
        old = (disk / "old.png").read_bytes()
        paths = list(inputs)
        result = run(environment, "enlarge", *paths, "-o", disk, "-j", 1)
        assert result.returncode == 1 and b"No space left on device" in result.stderr
        written = [path for path in disk.iterdir() if path.name != "old.png"]
        assert len(written) < len(paths) and all(map(is_complete, written))
        for path in written:
            path.unlink()
        # Nor does a file that is to be replaced get lost.
        (disk / "fill").write_bytes(bytes(240 << 10))
        result = run(environment, "enlarge", paths[0], "-o", disk / "old.png", "--force")
        assert result.returncode == 1 and b"No space left on device" in result.stderr
        assert (disk / "old.png").read_bytes() == old
        assert sorted(path.name for path in disk.iterdir()) == ["fill", "old.png"]
    finally:
        subprocess.run(["umount", disk], check=True)


def test_read_only_folder(environment, inputs, tmp_path):
    folder = tmp_path / "folder"
    folder.mkdir(mode=0o555)
    # Root may write anywhere, and nobody may read the inputs in root's folder.
    scan = next(iter(inputs.values()))
    user = {"user": NOBODY} if AS_ROOT else {}
    reachable = tmp_path
    while AS_ROOT and reachable != reachable.parent:
        reachable.chmod(reachable.stat().st_mode | 0o011)
        reachable = reachable.parent
    result = run(environment, "crop", "-", "--rect", "0,0,9,9", "-o", folder / "c.png", input=scan, **user)
    assert result.returncode == 1 and b"Permission denied" in result.stderr, result
    assert list(folder.iterdir()) == []


# Names.


def test_links_in_a_circle(environment, inputs, tmp_path):
    os.symlink("b.png", tmp_path / "a.png")
    os.symlink("a.png", tmp_path / "b.png")
    scan = next(iter(inputs))
    for arguments in ((tmp_path / "a.png", "-o", tmp_path / "c.png"), (scan, "-o", tmp_path / "a.png", "--force")):
        result = run(environment, "crop", "--rect", "0,0,9,9", *arguments)
        assert result.returncode == 1 and b"symbolic links" in result.stderr, result
    assert sorted(path.name for path in tmp_path.iterdir()) == ["a.png", "b.png"]


def test_a_file_that_appears_meanwhile_is_left_alone(environment, inputs, tmp_path):
    process = subprocess.Popen([TOOL, "crop", "-", "--rect", "0,0,9,9", "-o", tmp_path / "c.png"], stdin=subprocess.PIPE,
                               stderr=subprocess.PIPE, env=environment)
    wait_for_output(process, tmp_path, environment)
    (tmp_path / "c.png").write_bytes(b"another's")
    _, said = process.communicate(next(iter(inputs.values())), timeout=60)
    assert process.returncode == 1 and b"exists already" in said
    assert (tmp_path / "c.png").read_bytes() == b"another's" and len(list(tmp_path.iterdir())) == 1


def test_permissions_of_outputs(environment, inputs, tmp_path):
    scan = next(iter(inputs))
    for mask, mode in ((0o022, 0o644), (0o077, 0o600)):
        path = tmp_path / f"{mask}.png"
        run(environment, "crop", scan, "--rect", "0,0,9,9", "-o", path, preexec_fn=lambda mask=mask: os.umask(mask))
        assert path.stat().st_mode & 0o777 == mode
    path.chmod(0o640)
    run(environment, "crop", scan, "--rect", "0,0,9,9", "-o", path, "--force")
    assert path.stat().st_mode & 0o777 == 0o640


@pytest.mark.parametrize("force", [False, True])
def test_two_tools_write_to_one_folder(environment, inputs, tmp_path, force):
    alone = tmp_path / "alone"
    both = tmp_path / "both"
    alone.mkdir()
    both.mkdir()
    arguments = [*map(str, inputs), "--rect", "5,5,200,150", "-j", "2"]
    run(environment, "crop", *arguments, "-o", alone)
    command = [TOOL, "crop", *arguments, "-o", str(both)] + ["--force"] * force
    tools = [subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, env=environment) for _ in range(3)]
    said = [process.communicate(timeout=60)[1].decode() for process in tools]
    assert {path.name: path.read_bytes() for path in both.iterdir()} == {path.name: path.read_bytes() for path in alone.iterdir()}
    if force:
        assert all(process.returncode == 0 for process in tools), said
    else:
        # Each file was written by one of them, and the others say so.
        assert sum(text.count("exists already") for text in said) == 2 * len(inputs)


def test_a_reader_that_goes_away(environment, inputs, tmp_path):
    big = scans.save(np.random.default_rng(1).integers(0, 256, (700, 900, 3), np.uint8), tmp_path / "big.png")
    process = subprocess.Popen([TOOL, "crop", big, "--rect", "0,0,899,699", "-o", "-"], stdout=subprocess.PIPE,
                               stderr=subprocess.PIPE, env=environment)
    process.stdout.read(10)
    process.stdout.close()
    said = process.stderr.read()
    assert process.wait(60) == 1 and b"Broken pipe" in said
