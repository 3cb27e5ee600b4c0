"""How exact corners become where refinement begins at the true ones: what a better judgement can hardly exceed."""

import subprocess
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass


@dataclass(frozen=True)
class Corner:
    """A corner with two visible sides, after refinement."""

    error: float  # pixels of the scan
    contrast: float  # levels, the lesser of its two sides'


def measure(program, shares, jobs):
    """set -> its corners; `shares` are those of sources.drawn."""
    def work_off(share):
        command = [str(program), share.set, str(share.first), str(share.count)]
        printed = subprocess.run(command, check=True, capture_output=True, text=True).stdout
        return [Corner(*map(float, line.split())) for line in printed.splitlines()]

    corners = {}
    with ThreadPoolExecutor(jobs) as pool:
        for share, part in zip(shares, pool.map(work_off, shares)):
            corners.setdefault(share.set, []).extend(part)
    return {name: tuple(found) for name, found in corners.items() if found}
