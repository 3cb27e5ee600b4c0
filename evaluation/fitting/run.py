"""The whole fit: draw and measure, fit the first model, measure the finalists with it, fit the final one, calibrate."""

import os
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np

from evaluation import building
from evaluation.fitting import additive, calibration, competitions, constants, leads, tables

# What is drawn to fit on, from seed 1 on. The evaluation's seeds begin at 1000001.
COUNTS = {"singles": 2000, "white": 1000, "photos": 1200, "receipts": 1200, "several": 500, "bare": 150, "strips": 300,
          "pages": 250}
SHARE = 100  # scans in one process
HELD_OUT = 5  # every fifth seed is not fitted on, and tells how well it went
# Jaccard indices above which a quadrilateral is right and below which it is wrong, for either model: a candidate of the
# copy is exact to a pixel of the copy, a finalist lies on the scan's borders.
FIRST_LABELS = (0.9, 0.8)
FINAL_LABELS = (0.95, 0.9)
STRENGTH = 2.0  # of the penalty on rough curves
CLAIM_STRENGTH = 5.0
NEAR, ALMOST = 0.02, 0.97  # a claim is right with all corners this near, of the diagonal, or such a Jaccard index

FIRST_FEATURES = building.ROOT / "src" / "anywhere" / "features.h"
FINAL_FEATURES = building.ROOT / "src" / "anywhere" / "rivalry.h"
MODEL = building.ROOT / "src" / "anywhere" / "model.cpp"


def _count_of(path, enumeration):
    """The enumerators before the count, whose names begin with k, in the header's enumeration of features."""
    body = path.read_text().split(f"enum {enumeration}")[1].split("};")[0]
    names = [line.strip() for line in body.splitlines() if line.strip().startswith("k")]
    return len(names) - 1


def feature_counts():
    """How many features the first and the final model have."""
    first = _count_of(FIRST_FEATURES, "Feature ")
    own = _count_of(FINAL_FEATURES, "FinalFeature ") - 1  # kFinalOnly and kFinalFeatures are counts
    return first, own + first


def measure(program, kind, features, folder, counts, jobs):
    """The candidates of every set, measured in `jobs` processes."""
    shares = [(name, first, min(SHARE, count - first + 1)) for name, count in counts.items()
              for first in range(1, count + 1, SHARE)]

    def one(share):
        name, first, count = share
        path = Path(folder) / f"{kind}-{name}-{first}.bin"
        with path.open("wb") as out:
            subprocess.run([program, kind, name, str(first), str(count)], check=True, stdout=out)
        table = tables.read(path, features, name)
        path.unlink()
        return table

    with ThreadPoolExecutor(jobs) as pool:
        return tables.joined(list(pool.map(one, shares)))


def split(table):
    """What is fitted on, and what is held out."""
    held = table.seeds % HELD_OUT == 0
    return table.rows(~held), table.rows(held)


def fit_model(table, labels):
    index, lists = competitions.compete(table, *labels)
    return additive.fit(table.features[index], lists, strength=STRENGTH)


def report(title, table, model):
    print(f"\n{title}: share of cards whose right candidate is the first, among the first 5, 24, there at all; cards")
    for name, (*shares, count) in competitions.shares_right(table, model(table.features)).items():
        print(f"  {name:10}", *(f"{100 * share:6.1f} %" for share in shares), f"{count:6}")


def claims_of(model, table):
    """What would be claimed: the lead and the features of each claim, and whether it is right."""
    picked = list(leads.claims(table, model(table.features)))
    rows = np.array([row for row, _ in picked])
    lead = np.array([value for _, value in picked], dtype=np.float32)
    right = (table.distance[rows] < NEAR) | (table.jaccard[rows] > ALMOST)
    return np.column_stack([lead, table.features[rows]]), right.astype(float)


def fit_claims(features, right):
    """How sure a claim is: each competes with "it is not there" alone."""
    alone = additive.Lists(np.arange(len(right)), right, np.ones(len(right)))
    return additive.fit(features, alone, strength=CLAIM_STRENGTH)


def report_calibration(curve, score, right):
    confidence = np.interp(score, *curve)
    print("\nconfidence: claims, and the share of them that is right")
    for low, high in ((0.0, 0.1), (0.1, 0.5), (0.5, 0.8), (0.8, 0.9), (0.9, 0.95), (0.95, 0.98), (0.98, 1.01)):
        chosen = (confidence >= low) & (confidence < high)
        if chosen.any():
            print(f"  {low:.2f} to {min(high, 1):.2f} {int(chosen.sum()):6} {100 * right[chosen].mean():6.1f} %")


def run(folder, scale=1.0, jobs=os.cpu_count()):
    """Fits everything and writes the model's source. `scale` draws more or fewer scans."""
    counts = {name: max(SHARE // 4, round(count * scale)) for name, count in COUNTS.items()}
    first_count, final_count = feature_counts()
    start = time.monotonic()

    def note(text):
        print(f"[{time.monotonic() - start:6.0f} s] {text}", flush=True)

    note("measuring candidates")
    table = measure(building.candidates_program(), "first", first_count, folder, counts, jobs)
    fitted, held = split(table)
    note(f"fitting the first model on {len(fitted.seeds)} scans")
    first = fit_model(fitted, FIRST_LABELS)
    report("first model, held out", held, first)
    MODEL.write_text(constants.source(first, additive.flat(final_count), additive.flat(final_count + 1),
                                      calibration.NOTHING))

    note("measuring finalists")
    table = measure(building.candidates_program(), "final", final_count, folder, counts, jobs)
    fitted, held = split(table)
    note(f"fitting the final model on {len(fitted.seeds)} scans")
    final = fit_model(fitted, FINAL_LABELS)
    report("final model, held out", held, final)
    claim = fit_claims(*claims_of(final, fitted))
    claimed, right = claims_of(final, held)
    curve = calibration.confidence_curve(claim(claimed), right)
    report_calibration(curve, claim(claimed), right)
    MODEL.write_text(constants.source(first, final, claim, curve))
    note(f"wrote {MODEL.relative_to(building.ROOT)}")
