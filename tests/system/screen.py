"""What the screen shows, as pixels."""

import subprocess
from dataclasses import dataclass


@dataclass(frozen=True)
class Area:
    x: int
    y: int
    width: int
    height: int
    share: float  # of its pixels that have the colour


class Screen:
    """One picture of the whole screen."""

    def __init__(self, session):
        done = subprocess.run(["import", "-silent", "-window", "root", "-depth", "8", "ppm:-"],
                              env=session.environment, check=True, capture_output=True)
        magic, size, depth, self._pixels = done.stdout.split(b"\n", 3)
        assert magic == b"P6" and depth == b"255", done.stdout[:20]
        self.width, self.height = map(int, size.split())

    def _row(self, y):
        start = 3 * self.width * y
        return self._pixels[start:start + 3 * self.width]

    def area_of(self, colour, window=None, tolerance=10):
        """The smallest area that holds every pixel of about that colour (red, green, blue), on the
        screen or within a window; None when there is none."""
        left, top, right, bottom, count = self.width, self.height, -1, -1, 0
        columns = range(self.width)
        rows = range(self.height)
        if window:
            columns = range(max(0, window.x), min(self.width, window.x + window.width))
            rows = range(max(0, window.y), min(self.height, window.y + window.height))
        for y in rows:
            row = self._row(y)
            for x in columns:
                if all(abs(row[3 * x + i] - colour[i]) <= tolerance for i in range(3)):
                    left, right = min(left, x), max(right, x)
                    top, bottom = min(top, y), max(bottom, y)
                    count += 1
        if not count:
            return None
        width, height = right - left + 1, bottom - top + 1
        return Area(left, top, width, height, count / (width * height))
