#!/usr/bin/env python3
"""Draws the 16 x 16 command bitmaps of the extension and writes them as
character art into ../detail/CommandBitmapArt.h, where the library expands them
to 24-bit pixels at compile time. Run it again after changing a drawing:

    python3 src/extension/tools/draw_command_bitmaps.py
"""
import math
import os

SIZE = 16

# Character -> (red, green, blue). "." is the background: the button-face grey
# that hosts treat as transparent in toolbar bitmaps.
PALETTE = {
    ".": (0xC0, 0xC0, 0xC0),
    "k": (0x00, 0x00, 0x00),
    "w": (0xFF, 0xFF, 0xFF),
    "d": (0x60, 0x60, 0x60),
    "r": (0xD0, 0x10, 0x10),
    "g": (0x10, 0x80, 0x20),
    "G": (0x90, 0xE0, 0x90),
    "b": (0x10, 0x30, 0xC0),
    "l": (0x80, 0xC0, 0xFF),
    "c": (0x00, 0xA0, 0xC0),
    "y": (0xFF, 0xD0, 0x00),
    "o": (0xFF, 0x80, 0x00),
    "p": (0x80, 0x20, 0x90),
    "n": (0x8B, 0x5A, 0x2B),
}


class Canvas:
    def __init__(self):
        self.px = [["."] * SIZE for _ in range(SIZE)]

    def set(self, x, y, c):
        if 0 <= x < SIZE and 0 <= y < SIZE:
            self.px[y][x] = c

    def line(self, x0, y0, x1, y1, c):
        dx, dy = abs(x1 - x0), -abs(y1 - y0)
        sx, sy = (1 if x0 < x1 else -1), (1 if y0 < y1 else -1)
        err = dx + dy
        while True:
            self.set(x0, y0, c)
            if x0 == x1 and y0 == y1:
                return
            e2 = 2 * err
            if e2 >= dy:
                err += dy
                x0 += sx
            if e2 <= dx:
                err += dx
                y0 += sy

    def polyline(self, pts, c, closed=False):
        seq = pts + [pts[0]] if closed else pts
        for (a, b) in zip(seq, seq[1:]):
            self.line(a[0], a[1], b[0], b[1], c)

    def fill_polygon(self, pts, c):
        # Pixel centres inside the ring (even-odd rule).
        for y in range(SIZE):
            for x in range(SIZE):
                px, py, inside = x + 0.5, y + 0.5, False
                for i in range(len(pts)):
                    (x0, y0), (x1, y1) = pts[i], pts[i - 1]
                    if (y0 > py) != (y1 > py):
                        xc = x0 + (py - y0) * (x1 - x0) / (y1 - y0)
                        if px < xc:
                            inside = not inside
                if inside:
                    self.set(x, y, c)

    def polygon(self, pts, fill, edge):
        self.fill_polygon(pts, fill)
        self.polyline(pts, edge, closed=True)

    def rect(self, x0, y0, x1, y1, fill, edge):
        for y in range(y0, y1 + 1):
            for x in range(x0, x1 + 1):
                on_edge = x in (x0, x1) or y in (y0, y1)
                if on_edge and edge:
                    self.set(x, y, edge)
                elif not on_edge and fill:
                    self.set(x, y, fill)

    def ellipse(self, cx, cy, rx, ry, fill, edge):
        for y in range(SIZE):
            for x in range(SIZE):
                d = ((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2
                if fill and d <= 1.0:
                    self.set(x, y, fill)
        if edge:
            steps = 96
            for i in range(steps):
                a = 2 * math.pi * i / steps
                self.set(round(cx + rx * math.cos(a)), round(cy + ry * math.sin(a)), edge)

    def dot(self, x, y, c):
        for dx in (0, 1):
            for dy in (0, 1):
                self.set(x + dx, y + dy, c)

    def handle(self, x, y):
        self.set(x, y, "c")

    def arrow_right(self, x0, x1, y, c):
        self.line(x0, y, x1, y, c)
        self.line(x1 - 2, y - 2, x1, y, c)
        self.line(x1 - 2, y + 2, x1, y, c)

    def arrow_left(self, x0, x1, y, c):
        self.line(x0, y, x1, y, c)
        self.line(x0 + 2, y - 2, x0, y, c)
        self.line(x0 + 2, y + 2, x0, y, c)

    def rows(self):
        return ["".join(r) for r in self.px]


def shapes(cv):
    """Three small graphic elements: a square, a disc and a triangle."""
    cv.rect(1, 2, 5, 6, "y", "k")
    cv.ellipse(11.5, 4.5, 2.6, 2.6, "G", "g")
    cv.polygon([(4, 14), (8, 8), (12, 14)], "l", "b")


def selection_box(cv, x0, y0, x1, y1):
    for (x, y) in [(x0, y0), (x1, y0), (x0, y1), (x1, y1),
                   ((x0 + x1) // 2, y0), ((x0 + x1) // 2, y1), (x0, (y0 + y1) // 2), (x1, (y0 + y1) // 2)]:
        cv.handle(x, y)


def pointer(cv, x, y):
    pts = [(x, y), (x, y + 8), (x + 2, y + 6), (x + 4, y + 9), (x + 5, y + 8), (x + 3, y + 5), (x + 6, y + 5)]
    cv.polygon(pts, "w", "k")


def globe(cv, fill="l"):
    cv.ellipse(7.5, 7.5, 6.5, 6.5, fill, "b")
    cv.ellipse(7.5, 7.5, 2.8, 6.5, None, "b")
    cv.line(1, 7, 14, 7, "b")


def draw_101(cv):  # graphic elements to shapes: a new data file with a shape on it
    cv.polygon([(2, 1), (10, 1), (13, 4), (13, 14), (2, 14)], "w", "k")
    cv.polyline([(10, 1), (10, 4), (13, 4)], "k")
    cv.polygon([(4, 12), (6, 6), (11, 8), (10, 12)], "G", "g")


def draw_103(cv):  # select all
    shapes(cv)
    selection_box(cv, 0, 0, 15, 15)


def draw_104(cv):  # unselect all
    shapes(cv)
    cv.line(1, 14, 14, 1, "r")
    cv.line(2, 14, 14, 2, "r")


def draw_105(cv):  # zoom to selected
    cv.rect(1, 1, 6, 6, "y", "k")
    selection_box(cv, 0, 0, 7, 7)
    cv.ellipse(9.5, 9.5, 3.6, 3.6, "w", "k")
    cv.line(12, 12, 15, 15, "n")
    cv.line(12, 13, 14, 15, "n")


def draw_106(cv):  # select by type
    cv.rect(6, 1, 11, 6, "y", "k")
    cv.ellipse(12, 11.5, 2.6, 2.6, "G", "g")
    pointer(cv, 1, 5)


def draw_107(cv):  # flip the selection
    cv.rect(1, 1, 5, 5, "y", "k")
    selection_box(cv, 0, 0, 6, 6)
    cv.ellipse(12, 12, 2.6, 2.6, "G", "g")
    cv.arrow_right(3, 13, 8, "r")
    cv.line(9, 3, 12, 3, "r")
    cv.line(12, 3, 12, 7, "r")
    cv.line(3, 13, 3, 9, "r")
    cv.line(3, 13, 7, 13, "r")


def draw_108(cv):  # name graphic elements: a tag
    cv.polygon([(1, 5), (5, 1), (14, 1), (14, 9), (5, 9)], "y", "k")
    cv.dot(3, 4, "k")
    cv.line(7, 4, 12, 4, "k")
    cv.line(7, 6, 11, 6, "k")
    cv.ellipse(6, 12.5, 2.5, 2.5, "G", "g")


def draw_109(cv):  # shapes to vertices
    ring = [(2, 12), (4, 3), (11, 2), (14, 9), (8, 14)]
    cv.polyline(ring, "d", closed=True)
    for (x, y) in ring:
        cv.dot(x - 1 if x > 12 else x, y - 1 if y > 12 else y, "r")


def draw_110(cv):  # polygons to polylines
    cv.polygon([(1, 8), (3, 2), (7, 3), (6, 9)], "G", "g")
    cv.arrow_right(5, 11, 12, "k")
    cv.polyline([(9, 3), (12, 2), (14, 6), (12, 9)], "b")


def draw_111(cv):  # polylines to polygons
    cv.polyline([(1, 8), (3, 2), (7, 3), (6, 9)], "b")
    cv.arrow_right(4, 10, 12, "k")
    cv.polygon([(9, 6), (11, 2), (14, 3), (14, 8)], "G", "g")


def draw_112(cv):  # label points
    cv.polygon([(1, 13), (2, 3), (8, 1), (14, 5), (12, 14)], "w", "g")
    cv.dot(7, 7, "r")


def draw_113(cv):  # centroids
    cv.polygon([(1, 13), (2, 3), (8, 1), (14, 5), (12, 14)], "G", "g")
    cv.line(7, 5, 7, 10, "r")
    cv.line(5, 7, 10, 7, "r")


def draw_115(cv):  # split multipart
    cv.polygon([(1, 2), (6, 1), (6, 7), (1, 6)], "G", "g")
    cv.polygon([(9, 9), (14, 8), (14, 14), (9, 14)], "G", "g")
    for i in range(0, 16, 2):
        cv.set(15 - i, i, "r")


def draw_116(cv):  # combine features
    cv.polygon([(1, 2), (6, 1), (6, 6), (1, 6)], "G", "g")
    cv.polygon([(9, 9), (14, 9), (14, 14), (9, 14)], "G", "g")
    cv.polyline([(7, 4), (11, 4), (11, 8)], "b")
    cv.polyline([(4, 7), (4, 11), (8, 11)], "b")


def draw_117(cv):  # calculate geometry: a ruler over a field
    cv.rect(1, 9, 14, 14, "w", "k")
    cv.line(1, 11, 14, 11, "d")
    cv.rect(0, 2, 15, 6, "y", "k")
    for x in range(2, 15, 2):
        cv.line(x, 3, x, 3 if x % 4 else 4, "k")


def draw_119(cv):  # spherical centroids
    globe(cv)
    cv.dot(7, 7, "r")


def draw_120(cv):  # about
    cv.ellipse(7.5, 7.5, 7.0, 7.0, "b", "b")
    cv.dot(7, 3, "w")
    cv.line(7, 6, 7, 12, "w")
    cv.line(8, 6, 8, 12, "w")
    cv.line(6, 12, 9, 12, "w")


def draw_121(cv):  # build polygons from polylines
    cv.fill_polygon([(4, 4), (11, 4), (11, 11), (4, 11)], "G")
    cv.line(0, 4, 15, 4, "b")
    cv.line(0, 11, 15, 11, "b")
    cv.line(4, 0, 4, 15, "b")
    cv.line(11, 0, 11, 15, "b")


def draw_122(cv):  # planetocentric to planetographic: centre line, then normal line
    cv.ellipse(7.5, 8, 7.0, 5.5, "l", "b")
    cv.line(7, 8, 13, 4, "r")
    cv.dot(7, 8, "k")
    cv.arrow_right(1, 6, 1, "g")


def draw_123(cv):  # planetographic to planetocentric
    cv.ellipse(7.5, 8, 7.0, 5.5, "l", "b")
    cv.line(13, 4, 9, 10, "o")
    cv.dot(7, 8, "k")
    cv.arrow_left(9, 14, 1, "g")


def draw_124(cv):  # wrap to boundary
    globe(cv, fill="w")
    cv.polyline([(2, 15), (13, 15)], "r")
    cv.line(13, 15, 11, 13, "r")
    cv.line(0, 0, 0, 14, "r")


DRAWINGS = [
    (101, draw_101), (103, draw_103), (104, draw_104), (105, draw_105), (106, draw_106),
    (107, draw_107), (108, draw_108), (109, draw_109), (110, draw_110), (111, draw_111),
    (112, draw_112), (113, draw_113), (115, draw_115), (116, draw_116), (117, draw_117),
    (119, draw_119), (120, draw_120), (121, draw_121), (122, draw_122), (123, draw_123),
    (124, draw_124),
]


def main():
    out = []
    out.append("#pragma once")
    out.append("// Generated by tools/draw_command_bitmaps.py: edit the drawings there and run it again.")
    out.append("// The command bitmaps as character art, one character per pixel, rows top first.")
    out.append("")
    out.append("#include <cstdint>")
    out.append("")
    out.append("namespace tess::detail {")
    out.append("")
    out.append("struct BitmapColour {")
    out.append("    char Key;")
    out.append("    std::uint8_t Red, Green, Blue;")
    out.append("};")
    out.append("")
    out.append("inline constexpr int kBitmapArtSize = %d; // pixels on a side" % SIZE)
    out.append("")
    out.append("inline constexpr BitmapColour kBitmapPalette[] = {")
    for key, (r, g, b) in PALETTE.items():
        out.append("    {'%s', 0x%02X, 0x%02X, 0x%02X}," % (key, r, g, b))
    out.append("};")
    out.append("")
    out.append("struct BitmapArt {")
    out.append("    std::int32_t Id;")
    out.append("    const char* Rows[kBitmapArtSize];")
    out.append("};")
    out.append("")
    out.append("inline constexpr BitmapArt kCommandBitmapArt[] = {")
    for ident, draw in DRAWINGS:
        cv = Canvas()
        draw(cv)
        out.append("    {%d," % ident)
        out.append("     {")
        for row in cv.rows():
            out.append('         "%s",' % row)
        out.append("     }},")
    out.append("};")
    out.append("")
    out.append("} // namespace tess::detail")
    here = os.path.dirname(os.path.abspath(__file__))
    target = os.path.join(here, "..", "detail", "CommandBitmapArt.h")
    with open(target, "w") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main()
