"""Fits the judgement of the finder: see scripts/fit-finder."""
