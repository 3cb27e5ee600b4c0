"""Every method on every scan, in several processes."""

import hashlib
import sys
from concurrent.futures import ProcessPoolExecutor
from dataclasses import dataclass, field
from functools import partial

from evaluation import methods
from evaluation.judging import judge
from evaluation.records import Answer, Found, Scan, as_json


@dataclass(frozen=True)
class Result:
    """A scan, and by the contender's name what each says of it."""

    scan: Scan
    answers: dict
    _judged: dict = field(default_factory=dict, compare=False, repr=False)

    def judged(self, name):
        if name not in self._judged:
            self._judged[name] = judge(self.scan, self.answers[name].found)
        return self._judged[name]

    def json(self):
        return {"scan": as_json(self.scan), "answers": {name: as_json(answer) for name, answer in self.answers.items()}}

    @classmethod
    def read(cls, record):
        answers = {name: Answer(tuple(map(Found.read, answer["found"])), answer["nanoseconds"])
                   for name, answer in record["answers"].items()}
        return cls(Scan.read(record["scan"]), answers)


def work_off(source, contenders):
    """The results of one source of scans."""
    return [Result(scan, {one.name: methods.ask(one, pixels, scan.dpi) for one in contenders})
            for scan, pixels in source]


def run(sources, contenders, jobs):
    """Results in the order of the sources, whichever is ready first."""
    results = []
    with ProcessPoolExecutor(jobs) as pool:
        for index, part in enumerate(pool.map(partial(work_off, contenders=tuple(contenders)), sources), 1):
            results += part
            progress(index, len(sources), len(results))
    return results


def progress(done, shares, scans):
    """On a terminal, how far it is; in a log only the end."""
    terminal, last = sys.stderr.isatty(), done == shares
    if terminal or last:
        print(f"{scans} scans, {done / shares:.0%}", end="\r" if terminal and not last else "\n", file=sys.stderr)


def checksum(results, name):
    """SHA-256 over every number of a contender's answers, bit by bit: times are left out."""
    digest = hashlib.sha256()
    for result in results:
        numbers = [number for card in result.answers[name].found for number in card.numbers()]
        text = " ".join(float(number).hex() for number in numbers)
        digest.update(f"{result.scan.set} {result.scan.seed}: {text}\n".encode())
    return digest.hexdigest()
