"""Areas, overlaps and distances of plain polygons, each a list of (x, y)."""

from math import hypot, inf


def signed_area(polygon):
    """Positive where the points run clockwise as one sees them, with y down."""
    return sum(a[0] * b[1] - a[1] * b[0] for a, b in edges(polygon)) / 2


def area(polygon):
    return abs(signed_area(polygon))


def edges(polygon):
    """Each point with the next one."""
    return zip(polygon, [*polygon[1:], *polygon[:1]])


def clockwise(polygon):
    """The same polygon, beginning with the same point, clockwise."""
    points = [(float(x), float(y)) for x, y in polygon]
    return points if signed_area(points) >= 0 else [points[0], *points[:0:-1]]


def frame_of(size):
    """The scan itself as a polygon."""
    width, height = size
    return [(0.0, 0.0), (float(width), 0.0), (float(width), float(height)), (0.0, float(height))]


def side_of(edge, point):
    """Positive to the inside of a clockwise polygon's edge."""
    (ax, ay), (bx, by) = edge
    return (bx - ax) * (point[1] - ay) - (by - ay) * (point[0] - ax)


def cut(polygon, window):
    """The part of a polygon within a convex one (I. Sutherland and G. Hodgman, CACM 17, 1974). Where the polygon is not
    convex the parts may be joined by edges without area."""
    rest = list(polygon)
    for edge in edges(clockwise(window)):
        kept = []
        for a, b in edges(rest):
            at_a, at_b = side_of(edge, a), side_of(edge, b)
            if at_a >= 0:
                kept.append(a)
            if (at_a > 0) != (at_b > 0) and at_a != at_b:
                part = at_a / (at_a - at_b)
                if 0 < part < 1:
                    kept.append((a[0] + (b[0] - a[0]) * part, a[1] + (b[1] - a[1]) * part))
        rest = kept
    return rest


def jaccard(truth, found, size):
    """The share of two quadrilaterals' union that is common to both, both cut to the frame of the scan."""
    frame = frame_of(size)
    true_part, found_part = cut(clockwise(truth), frame), cut(clockwise(found), frame)
    if not true_part or not found_part:
        return 0.0
    common = area(cut(found_part, true_part))
    union = area(true_part) + area(found_part) - common
    return min(common / union, 1.0) if union > 0 else 0.0


def distance(a, b):
    return hypot(a[0] - b[0], a[1] - b[1])


def distance_to_line(point, a, b):
    """How far a point lies from the line through a and b, which goes on beyond them."""
    length = distance(a, b)
    return abs(side_of((a, b), point)) / length if length > 0 else distance(point, a)


def distance_to_segment(point, a, b):
    length_squared = (b[0] - a[0]) ** 2 + (b[1] - a[1]) ** 2
    if length_squared == 0:
        return distance(point, a)
    part = ((point[0] - a[0]) * (b[0] - a[0]) + (point[1] - a[1]) * (b[1] - a[1])) / length_squared
    part = min(max(part, 0.0), 1.0)
    return distance(point, (a[0] + (b[0] - a[0]) * part, a[1] + (b[1] - a[1]) * part))


def reach(polygon, other):
    """How far a polygon reaches out of another, convex one: the largest distance of its points to the other."""
    if not polygon or not other:
        return inf
    walls = list(edges(clockwise(other)))
    outside = [point for point in polygon if any(side_of(wall, point) < 0 for wall in walls)]
    return max((min(distance_to_segment(point, *wall) for wall in walls) for point in outside), default=0.0)


def diameter(polygon):
    """The largest distance of two points: of a rectangle, its diagonal."""
    return max((distance(a, b) for a in polygon for b in polygon), default=0.0)


def within(point, size):
    return 0 <= point[0] <= size[0] and 0 <= point[1] <= size[1]


def segment_within(a, b, size):
    """The part of a segment within the frame, or None."""
    first, last = 0.0, 1.0
    for axis in (0, 1):
        way = b[axis] - a[axis]
        for bound, sign in ((0.0, -1), (float(size[axis]), 1)):
            room = (bound - a[axis]) * sign
            if way * sign > 0:
                last = min(last, room / (way * sign))
            elif way * sign < 0:
                first = max(first, room / (way * sign))
            elif room < 0:
                return None
    if first >= last:
        return None
    return tuple((a[0] + (b[0] - a[0]) * part, a[1] + (b[1] - a[1]) * part) for part in (first, last))
