"""Two recipes that everybody tries first, with OpenCV, to compare with: one card a scan, or none."""

import cv2
import numpy as np

from evaluation.records import Found, points

COPY_HEIGHT = 500

cv2.setNumThreads(1)


def canny(pixels):
    """Edges by Canny on a copy of 500 px height; the largest contour whose outline has four corners."""
    gray = cv2.cvtColor(pixels, cv2.COLOR_RGB2GRAY)
    height, width = gray.shape
    scale = height / COPY_HEIGHT
    copy = cv2.resize(gray, (max(round(width / scale), 1), COPY_HEIGHT), interpolation=cv2.INTER_AREA)
    edges = cv2.Canny(cv2.GaussianBlur(copy, (5, 5), 0), 75, 200)
    closed = cv2.morphologyEx(edges, cv2.MORPH_CLOSE, np.ones((5, 5), np.uint8))
    contours, _ = cv2.findContours(closed, cv2.RETR_LIST, cv2.CHAIN_APPROX_SIMPLE)
    for contour in sorted(contours, key=cv2.contourArea, reverse=True):
        outline = cv2.approxPolyDP(contour, 0.02 * cv2.arcLength(contour, True), True)
        if len(outline) == 4:
            return (Found(points((outline.reshape(4, 2) + 0.5) * (width / copy.shape[1], scale))),)
    return ()


def largest_component(mask):
    """The largest component of a mask as a mask, and the share of the frame's pixels that it covers."""
    count, labels, stats, _ = cv2.connectedComponentsWithStats(mask)
    if count < 2:
        return None, 1.0
    part = labels == 1 + int(np.argmax(stats[1:, cv2.CC_STAT_AREA]))
    frame = np.concatenate([part[0], part[-1], part[:, 0], part[:, -1]])
    return part, float(frame.mean())


def otsu(pixels):
    """Otsu's threshold; of the largest bright and the largest dark part, the one that lies less on the frame; the
    smallest rectangle around it."""
    gray = cv2.GaussianBlur(cv2.cvtColor(pixels, cv2.COLOR_RGB2GRAY), (5, 5), 0)
    _, bright = cv2.threshold(gray, 0, 255, cv2.THRESH_BINARY + cv2.THRESH_OTSU)
    part, _ = min((largest_component(mask) for mask in (bright, 255 - bright)), key=lambda found: found[1])
    if part is None:
        return ()
    contours, _ = cv2.findContours(part.astype(np.uint8), cv2.RETR_EXTERNAL, cv2.CHAIN_APPROX_NONE)
    rectangle = cv2.boxPoints(cv2.minAreaRect(max(contours, key=cv2.contourArea)))
    return (Found(points(rectangle + 0.5)),)
