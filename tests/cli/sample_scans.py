"""The repository's sample scans, and what is true of them."""

import json
from pathlib import Path

SAMPLES = Path(__file__).resolve().parents[2] / "samples"
TRUTH = json.loads((SAMPLES / "truth.json").read_text())["scans"]


def box_of(rectangle):
    """A rectangle of the tool as Pillow has it: the right and lower bounds excluded."""
    return rectangle["left"], rectangle["top"], rectangle["right"] + 1, rectangle["bottom"] + 1
