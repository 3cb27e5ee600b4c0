"""How well cards are found on scans of known truth: scripts/evaluate-finder runs it, docs/finder.md tells of it.

Points are (x, y), x to the right and y down from the outer corner of the top left pixel. Quadrilaterals are four
points, clockwise from the top left as the card lies; side i runs from corner i to corner i + 1: top, right, bottom,
left.
"""
