"""What a run of the tool takes, and compressed nothing by the gigabyte that makes it take much."""

import os
import subprocess
import sys
import zlib

from conftest import TOOL

SANITIZED = bool(os.environ.get("VANTREL_PRELOAD"))

# Run by a small process: what a process has taken counts for those that it starts.
MEASURE = """
import os, sys
_, status, usage = os.wait4(os.posix_spawn(sys.argv[2], sys.argv[2:], os.environ), 0)
figures = os.waitstatus_to_exitcode(status), usage.ru_utime + usage.ru_stime, usage.ru_maxrss
os.write(int(sys.argv[1]), b"%d %f %d" % figures)
"""


class Cost:
    """A run within a second of processor time and 100 MB, however it ends: what it said, and with what status."""

    def __init__(self, *arguments):
        reading, writing = os.pipe()
        command = [sys.executable, "-S", "-c", MEASURE, str(writing), TOOL, *map(str, arguments)]
        self.said = subprocess.run(command, capture_output=True, pass_fds=[writing], text=True, check=True).stderr
        os.close(writing)
        with os.fdopen(reading) as report:
            code, self.seconds, self.kilobytes = map(float, report.read().split())
        self.code = int(code)
        assert self.seconds < 1, (arguments, self.said)
        assert self.kilobytes < 100 << 10, (arguments, self.said)


def looked_at(path):
    """What is said of a file that nothing comes of, and what that took."""
    cost = Cost("clip", path, "--detect-only", "-j", "1")
    assert cost.code == 1, (path, cost.said)
    return cost


def repeated(piece, megabytes, before=b""):
    """Compressed, by the same bytes for each megabyte: this takes no memory for them."""
    packer = zlib.compressobj(9)
    first = packer.compress(before) + packer.flush(zlib.Z_FULL_FLUSH)
    each = packer.compress(piece * ((1 << 20) // len(piece))) + packer.flush(zlib.Z_FULL_FLUSH)
    return first + megabytes * each + packer.flush()
