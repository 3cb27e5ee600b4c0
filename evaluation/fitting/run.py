"""The whole fit: draw and measure, fit the first model, measure the finalists with it, fit what judges them, calibrate."""

import os
import subprocess
import time
from concurrent.futures import ProcessPoolExecutor, ThreadPoolExecutor
from pathlib import Path

import numpy as np

from evaluation import building
from evaluation.fitting import additive, calibration, competitions, constants, forest, leads, listwise, tables

# What is drawn to fit on, from seed 1 on. The evaluation's seeds begin at 1000001.
COUNTS = {"singles": 2000, "white": 1000, "photos": 1200, "receipts": 1200, "several": 500, "bare": 150, "strips": 300,
          "pages": 250}
SHARE = 100  # scans in one process
HELD_OUT = 5  # every fifth seed is not fitted on, and tells how well it went
# Jaccard indices above which a candidate of the copy is right and below which it is wrong: it is exact to a pixel.
FIRST_LABELS = (0.9, 0.8)
STRENGTH = 2.0  # of the penalty on rough curves
CLAIM_STRENGTH = 5.0
NEAR, ALMOST = 0.02, 0.97  # a claim is right with all corners this near, of the diagonal, or such a Jaccard index

FIRST_FEATURES = building.ROOT / "src" / "anywhere" / "features.h"
FINAL_FEATURES = building.ROOT / "src" / "anywhere" / "rivalry.h"
DUEL_OWN, CLAIM_OWN = 4, 2  # what a duel and a claim are asked about before the features
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


def measure(program, kind, read, features, folder, counts, jobs):
    """The candidates of every set, measured in `jobs` processes."""
    shares = [(name, first, min(SHARE, count - first + 1)) for name, count in counts.items()
              for first in range(1, count + 1, SHARE)]

    def one(share):
        name, first, count = share
        path = Path(folder) / f"{kind}-{name}-{first}.bin"
        with path.open("wb") as out:
            subprocess.run([program, kind, name, str(first), str(count)], check=True, stdout=out)
        table = read(path, features, name)
        path.unlink()
        return table

    with ThreadPoolExecutor(jobs) as pool:
        return tables.joined(list(pool.map(one, shares)))


def split(table):
    """What is fitted on, and what is held out."""
    held = table.seeds % HELD_OUT == 0
    return table.rows(~held), table.rows(held)


def fit_first(table):
    index, lists = competitions.compete(table, *FIRST_LABELS)
    return additive.fit(table.features[index], lists, strength=STRENGTH)


def fit_forest(table, features):
    index, lists = competitions.compete(table, competitions.RIGHT, competitions.RIGHT, competitions.by_exactness)
    return forest.fit(features[index], lists)


def _fit_and_score(fitted, features, scored):
    return fit_forest(fitted, features)(scored)


def scores_of_others(table, features, jobs):
    """Each row's score by trees that were fitted without its scan: on its own they would know it by heart."""
    score = np.empty(len(table.scan))
    with ProcessPoolExecutor(jobs) as pool:
        folds = []
        for fold in range(1, HELD_OUT):
            others = table.seeds % HELD_OUT != fold
            of_others = others[table.scan]
            folds.append((~of_others, pool.submit(_fit_and_score, table.rows(others), features[of_others],
                                                  features[~of_others])))
        for rows, scored in folds:
            score[rows] = scored.result()
    return score


def report(title, table, score):
    print(f"\n{title}: share of cards whose right candidate is the first, among the first 5, 24, there at all; cards")
    for name, (*shares, count) in competitions.shares_right(table, score).items():
        print(f"  {name:10}", *(f"{100 * share:6.1f} %" for share in shares), f"{count:6}")


def claims_of(table, score):
    """What would be claimed: the lead, the score and the features of each claim, and whether it is right."""
    rows = leads.claims(table, score)
    own = np.column_stack([leads.leads(table, score), score]).astype(np.float32)
    right = (table.distance[rows] < NEAR) | (table.jaccard[rows] > ALMOST)
    return np.column_stack([own, table.features])[rows], right.astype(float)


def fit_claims(features, right):
    """How sure a claim is: each competes with "it is not there" alone."""
    alone = listwise.Lists(np.arange(len(right)), right, np.ones(len(right)))
    return additive.fit(features, alone, strength=CLAIM_STRENGTH)


def report_calibration(curve, score, right):
    confidence = np.interp(score, *curve)
    print("\nconfidence: claims, and the share of them that is right")
    for low, high in ((0.0, 0.1), (0.1, 0.5), (0.5, 0.8), (0.8, 0.9), (0.9, 0.95), (0.95, 0.98), (0.98, 1.01)):
        chosen = (confidence >= low) & (confidence < high)
        if chosen.any():
            print(f"  {low:.2f} to {min(high, 1):.2f} {int(chosen.sum()):6} {100 * right[chosen].mean():6.1f} %")


def judge(table, jobs, note):
    """Fits what judges finalists: by themselves, beside their best rivals, and how sure a claim is."""
    fitted, held = split(table)
    note(f"fitting the final model on {len(fitted.seeds)} scans")
    final = fit_forest(fitted, fitted.features)
    held_score = final(held.features)
    report("final model, held out", held, held_score)
    duels, held_duels = leads.duels(fitted, scores_of_others(fitted, fitted.features, jobs)), leads.duels(held, held_score)
    note("fitting the duel's model")
    duel = fit_forest(fitted, duels)
    held_score = duel(held_duels)
    report("beside the best rival, held out", held, held_score)
    note("fitting the confidence")
    claim = fit_claims(*claims_of(fitted, scores_of_others(fitted, duels, jobs)))
    claimed, right = claims_of(held, held_score)
    curve = calibration.confidence_curve(claim(claimed), right)
    report_calibration(curve, claim(claimed), right)
    return final, duel, claim, curve


def run(folder, scale=1.0, jobs=os.cpu_count()):
    """Fits everything and writes the model's source. `scale` draws more or fewer scans."""
    counts = {name: max(SHARE // 4, round(count * scale)) for name, count in COUNTS.items()}
    first_count, final_count = feature_counts()
    start = time.monotonic()

    def note(text):
        print(f"[{time.monotonic() - start:6.0f} s] {text}", flush=True)

    note("measuring candidates")
    table = measure(building.candidates_program(), "first", tables.read, first_count, folder, counts, jobs)
    fitted, held = split(table)
    note(f"fitting the first model on {len(fitted.seeds)} scans")
    first = fit_first(fitted)
    report("first model, held out", held, first(held.features))
    MODEL.write_text(constants.source(first, forest.nothing(final_count), forest.nothing(DUEL_OWN + 2 * final_count),
                                      additive.flat(CLAIM_OWN + final_count), calibration.NOTHING))

    note("measuring finalists")
    table = measure(building.candidates_program(), "final", tables.read_finalists, final_count, folder, counts, jobs)
    MODEL.write_text(constants.source(first, *judge(table, jobs, note)))
    note(f"wrote {MODEL.relative_to(building.ROOT)}")
