"""Draws the app's logo: a bell on a rounded tile, in any size."""

import math

from . import png

_TILE, _BELL, _DOT = (31, 58, 95), (255, 255, 255), (240, 138, 36)


def _circle(x, y, centre_x, centre_y, radius):
    return math.hypot(x - centre_x, y - centre_y) - radius


def _box(x, y, centre_x, centre_y, half_width, half_height, rounding):
    across, down = abs(x - centre_x) - half_width + rounding, abs(y - centre_y) - half_height + rounding
    outside = math.hypot(max(across, 0), max(down, 0))
    return outside + min(max(across, down), 0) - rounding


def _bell(x, y):
    dome = _circle(x, y, 0.5, 0.43, 0.17)
    body = _box(x, y, 0.5, 0.53, 0.17, 0.11, 0.01)
    rim = _box(x, y, 0.5, 0.655, 0.24, 0.03, 0.03)
    clapper = _circle(x, y, 0.5, 0.73, 0.055)
    return min(dome, body, rim, clapper)


# Each shape is a distance in the unit square, negative inside, and its colour; later ones cover earlier ones.
_SHAPES = (
    (lambda x, y: _box(x, y, 0.5, 0.5, 0.47, 0.47, 0.12), _TILE),
    (_bell, _BELL),
    (lambda x, y: _circle(x, y, 0.68, 0.3, 0.1), _DOT),
)


def _pixel(side, column, row):
    x, y = (column + 0.5) / side, (row + 0.5) / side
    red, green, blue, alpha = 0.0, 0.0, 0.0, 0.0
    for shape, (over_red, over_green, over_blue) in _SHAPES:
        # How much of the pixel the shape covers, from the distance of its centre to the shape's edge.
        cover = min(max(0.5 - shape(x, y) * side, 0.0), 1.0)
        rest = alpha * (1 - cover)
        total = cover + rest
        if total:
            red = (over_red * cover + red * rest) / total
            green = (over_green * cover + green * rest) / total
            blue = (over_blue * cover + blue * rest) / total
        alpha = total
    return round(red), round(green), round(blue), round(alpha * 255)


def draw(side):
    """The logo as a PNG of that many pixels on each side."""
    return png.write(side, lambda x, y: _pixel(side, x, y))
