"""Every sample's answer may only get better; see ratchet.py."""

import warnings

import pytest

from library import Library
from measure import SAMPLES, measure, truths
from ratchet import compare, read_expected


@pytest.fixture(scope="module")
def library():
    return Library()


def test_every_sample_has_an_expectation():
    assert set(read_expected()) == set(SAMPLES)


@pytest.mark.parametrize("path", SAMPLES)
def test_sample(library, path):
    truth = truths()[path]
    worse, better = compare(read_expected()[path], measure(library, path, truth), truth.get("visible", ()))
    assert not worse
    if better:
        warnings.warn(f"{path} got better ({'; '.join(better)}): run tests/samples/ratchet.py --tighten")
