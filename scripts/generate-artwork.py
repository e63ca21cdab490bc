#!/usr/bin/env python3
"""Draws Orvalen's icons and bitmaps into resources/art/.

Everything is drawn from code with the standard library only, so the pictures
can be regenerated anywhere. The generated files are kept in the repository;
the build uses them as they are and never runs this script.

    python3 scripts/generate-artwork.py [output-directory]

Motifs: a red desk telephone whose dial is a clock (time on the line), a
desktop modem with its row of lights, and the name on a dot-matrix display.
"""

import math
import os
import struct
import sys

# --------------------------------------------------------------------------
# Canvas and shapes
# --------------------------------------------------------------------------

# What the pictures call the program, the same on each of them.
TAGLINE = "DIAL-UP MONITOR"

SUPERSAMPLE = 4  # samples per pixel side for anti-aliased edges


class Canvas:
    """RGBA picture with straight alpha; colours are 0-255, alpha 0-1."""

    def __init__(self, width, height, background=None, antialias=True):
        self.width = width
        self.height = height
        self.antialias = antialias
        bg = (0.0, 0.0, 0.0, 0.0) if background is None else tuple(background[:3]) + (1.0,)
        self.px = [list(bg) for _ in range(width * height)]

    def blend(self, x, y, rgb, alpha):
        if alpha <= 0.0 or not (0 <= x < self.width and 0 <= y < self.height):
            return
        alpha = min(alpha, 1.0)
        p = self.px[y * self.width + x]
        da = p[3]
        oa = alpha + da * (1.0 - alpha)
        if oa <= 0.0:
            return
        for i in range(3):
            p[i] = (rgb[i] * alpha + p[i] * da * (1.0 - alpha)) / oa
        p[3] = oa

    def get(self, x, y):
        return self.px[y * self.width + x]

    def fill(self, shape, colour, opacity=1.0):
        """Fills a shape; colour is (r, g, b[, a]) or a function of (x, y)."""
        x0, y0, x1, y1 = shape.bbox()
        x0 = max(0, int(math.floor(x0)))
        y0 = max(0, int(math.floor(y0)))
        x1 = min(self.width, int(math.ceil(x1)))
        y1 = min(self.height, int(math.ceil(y1)))
        n = SUPERSAMPLE if self.antialias else 1
        offsets = [(i + 0.5) / n for i in range(n)]
        for y in range(y0, y1):
            for x in range(x0, x1):
                hits = 0
                for oy in offsets:
                    for ox in offsets:
                        if shape.contains(x + ox, y + oy):
                            hits += 1
                if not hits:
                    continue
                cover = hits / (n * n)
                c = colour(x + 0.5, y + 0.5) if callable(colour) else colour
                a = c[3] if len(c) > 3 else 1.0
                self.blend(x, y, c, cover * a * opacity)

    def pixel(self, x, y, colour):
        a = colour[3] if len(colour) > 3 else 1.0
        self.blend(int(x), int(y), colour, a)


class Shape:
    """A region of the plane: bbox() bounds it, contains(x, y) tests a point."""


class Rect(Shape):
    def __init__(self, x0, y0, x1, y1):
        self.r = (x0, y0, x1, y1)

    def bbox(self):
        return self.r

    def contains(self, x, y):
        x0, y0, x1, y1 = self.r
        return x0 <= x < x1 and y0 <= y < y1


class RoundRect(Shape):
    def __init__(self, x0, y0, x1, y1, radius):
        self.r = (x0, y0, x1, y1)
        self.radius = radius

    def bbox(self):
        return self.r

    def contains(self, x, y):
        x0, y0, x1, y1 = self.r
        if not (x0 <= x < x1 and y0 <= y < y1):
            return False
        rad = self.radius
        cx = min(max(x, x0 + rad), x1 - rad)
        cy = min(max(y, y0 + rad), y1 - rad)
        return (x - cx) ** 2 + (y - cy) ** 2 <= rad * rad


class Ellipse(Shape):
    def __init__(self, cx, cy, rx, ry=None, angle=0.0):
        self.c = (cx, cy)
        self.rx = rx
        self.ry = rx if ry is None else ry
        self.cos = math.cos(math.radians(angle))
        self.sin = math.sin(math.radians(angle))

    def bbox(self):
        m = max(self.rx, self.ry)
        return (self.c[0] - m, self.c[1] - m, self.c[0] + m, self.c[1] + m)

    def contains(self, x, y):
        dx, dy = x - self.c[0], y - self.c[1]
        u = dx * self.cos + dy * self.sin
        v = -dx * self.sin + dy * self.cos
        return (u / self.rx) ** 2 + (v / self.ry) ** 2 <= 1.0


def Circle(cx, cy, r):
    return Ellipse(cx, cy, r, r)


class Capsule(Shape):
    """A thick line with round ends."""

    def __init__(self, x0, y0, x1, y1, radius):
        self.p = (x0, y0, x1, y1)
        self.radius = radius

    def bbox(self):
        x0, y0, x1, y1 = self.p
        r = self.radius
        return (min(x0, x1) - r, min(y0, y1) - r, max(x0, x1) + r, max(y0, y1) + r)

    def contains(self, x, y):
        x0, y0, x1, y1 = self.p
        dx, dy = x1 - x0, y1 - y0
        length2 = dx * dx + dy * dy
        t = 0.0 if length2 == 0 else max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / length2))
        px, py = x0 + t * dx - x, y0 + t * dy - y
        return px * px + py * py <= self.radius * self.radius


class Polygon(Shape):
    def __init__(self, points):
        self.points = points

    def bbox(self):
        xs = [p[0] for p in self.points]
        ys = [p[1] for p in self.points]
        return (min(xs), min(ys), max(xs), max(ys))

    def contains(self, x, y):
        inside = False
        pts = self.points
        j = len(pts) - 1
        for i in range(len(pts)):
            xi, yi = pts[i]
            xj, yj = pts[j]
            if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
                inside = not inside
            j = i
        return inside


class Sector(Shape):
    """Part of a ring between two angles (degrees, clockwise from 3 o'clock)."""

    def __init__(self, cx, cy, r_outer, r_inner, a0, a1):
        self.c = (cx, cy)
        self.ro, self.ri = r_outer, r_inner
        self.a0, self.a1 = a0 % 360, a1 % 360

    def bbox(self):
        return (self.c[0] - self.ro, self.c[1] - self.ro, self.c[0] + self.ro, self.c[1] + self.ro)

    def contains(self, x, y):
        dx, dy = x - self.c[0], y - self.c[1]
        d2 = dx * dx + dy * dy
        if not (self.ri * self.ri <= d2 <= self.ro * self.ro):
            return False
        a = math.degrees(math.atan2(dy, dx)) % 360
        if self.a0 <= self.a1:
            return self.a0 <= a <= self.a1
        return a >= self.a0 or a <= self.a1


class Union(Shape):
    def __init__(self, *shapes):
        self.shapes = shapes

    def bbox(self):
        boxes = [s.bbox() for s in self.shapes]
        return (min(b[0] for b in boxes), min(b[1] for b in boxes),
                max(b[2] for b in boxes), max(b[3] for b in boxes))

    def contains(self, x, y):
        return any(s.contains(x, y) for s in self.shapes)


def polyline(points, radius):
    return Union(*[Capsule(x0, y0, x1, y1, radius)
                   for (x0, y0), (x1, y1) in zip(points, points[1:])])


# --------------------------------------------------------------------------
# Colours
# --------------------------------------------------------------------------

def mix(a, b, t):
    t = max(0.0, min(1.0, t))
    return tuple(a[i] + (b[i] - a[i]) * t for i in range(3))


def vertical_gradient(y0, y1, top, bottom):
    return lambda x, y: mix(top, bottom, (y - y0) / float(max(1e-6, y1 - y0)))


def radial_gradient(cx, cy, radius, inner, outer):
    return lambda x, y: mix(inner, outer, math.hypot(x - cx, y - cy) / radius)


# The sixteen colours of the standard Windows palette, in palette order.
VGA16 = [
    (0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0),
    (0, 0, 128), (128, 0, 128), (0, 128, 128), (192, 192, 192),
    (128, 128, 128), (255, 0, 0), (0, 255, 0), (255, 255, 0),
    (0, 0, 255), (255, 0, 255), (0, 255, 255), (255, 255, 255),
]
BLACK, MAROON, GREEN, OLIVE, NAVY, PURPLE, TEAL, SILVER = VGA16[:8]
GREY, RED, LIME, YELLOW, BLUE, FUCHSIA, AQUA, WHITE = VGA16[8:]
DIALOG_GREY = SILVER  # what the dialogs paint behind every picture

# --------------------------------------------------------------------------
# Pixel font: 5 x 7 glyphs, '#' lit
# --------------------------------------------------------------------------

_GLYPHS = """
A .###. #...# #...# ##### #...# #...# #...#
B ####. #...# #...# ####. #...# #...# ####.
C .###. #...# #.... #.... #.... #...# .###.
D ####. #...# #...# #...# #...# #...# ####.
E ##### #.... #.... ####. #.... #.... #####
F ##### #.... #.... ####. #.... #.... #....
G .###. #...# #.... #.### #...# #...# .####
H #...# #...# #...# ##### #...# #...# #...#
I .###. ..#.. ..#.. ..#.. ..#.. ..#.. .###.
J ..### ...#. ...#. ...#. ...#. #..#. .##..
K #...# #..#. #.#.. ##... #.#.. #..#. #...#
L #.... #.... #.... #.... #.... #.... #####
M #...# ##.## #.#.# #.#.# #...# #...# #...#
N #...# #...# ##..# #.#.# #..## #...# #...#
O .###. #...# #...# #...# #...# #...# .###.
P ####. #...# #...# ####. #.... #.... #....
Q .###. #...# #...# #...# #.#.# #..#. .##.#
R ####. #...# #...# ####. #.#.. #..#. #...#
S .#### #.... #.... .###. ....# ....# ####.
T ##### ..#.. ..#.. ..#.. ..#.. ..#.. ..#..
U #...# #...# #...# #...# #...# #...# .###.
V #...# #...# #...# #...# #...# .#.#. ..#..
W #...# #...# #...# #.#.# #.#.# #.#.# .#.#.
X #...# #...# .#.#. ..#.. .#.#. #...# #...#
Y #...# #...# .#.#. ..#.. ..#.. ..#.. ..#..
Z ##### ....# ...#. ..#.. .#... #.... #####
a ..... ..... .###. ....# .#### #...# .####
c ..... ..... .###. #.... #.... #...# .###.
e ..... ..... .###. #...# ##### #.... .###.
i ..#.. ..... .##.. ..#.. ..#.. ..#.. .###.
l .##.. ..#.. ..#.. ..#.. ..#.. ..#.. .###.
n ..... ..... #.##. ##..# #...# #...# #...#
o ..... ..... .###. #...# #...# #...# .###.
r ..... ..... #.##. ##..# #.... #.... #....
t .#... .#... ###.. .#... .#... .#..# ..##.
v ..... ..... #...# #...# #...# .#.#. ..#..
0 .###. #...# #..## #.#.# ##..# #...# .###.
1 ..#.. .##.. ..#.. ..#.. ..#.. ..#.. .###.
2 .###. #...# ....# ...#. ..#.. .#... #####
3 ##### ...#. ..#.. ...#. ....# #...# .###.
4 ...#. ..##. .#.#. #..#. ##### ...#. ...#.
5 ##### #.... ####. ....# ....# #...# .###.
6 ..##. .#... #.... ####. #...# #...# .###.
7 ##### ....# ...#. ..#.. .#... .#... .#...
8 .###. #...# #...# .###. #...# #...# .###.
9 .###. #...# #...# .#### ....# ...#. .##..
. .. .. .. .. .. ## ##
: .. ## ## .. ## ## ..
- .... .... .... #### .... .... ....
/ ....# ...#. ...#. ..#.. .#... .#... #....
& .##.. #..#. #.#.. .#... #.#.# #..#. .##.#
"""

FONT = {}
for _line in _GLYPHS.strip().splitlines():
    _key, *_rows = _line.split()
    FONT[_key] = _rows
FONT[" "] = ["..."] * 7


def text_width(text, scale=1, spacing=1):
    widths = [len(FONT[ch][0]) for ch in text]
    return (sum(widths) + spacing * (len(text) - 1)) * scale


def draw_text(canvas, x, y, text, colour, scale=1, spacing=1, shadow=None):
    """Crisp pixel text; scale multiplies each font pixel."""
    if shadow is not None:
        draw_text(canvas, x + max(1, scale // 2), y + max(1, scale // 2), text, shadow, scale, spacing)
    cx = x
    for ch in text:
        rows = FONT[ch]
        for ry, row in enumerate(rows):
            for rx, bit in enumerate(row):
                if bit != "#":
                    continue
                for sy in range(scale):
                    for sx in range(scale):
                        px, py = cx + rx * scale + sx, y + ry * scale + sy
                        c = colour(px, py) if callable(colour) else colour
                        canvas.pixel(px, py, c)
        cx += (len(rows[0]) + spacing) * scale
    return cx


def draw_led_text(canvas, x, y, text, pitch, lit, unlit, radius=None, glow=True):
    """The text on a dot-matrix display: every dot of each 5 x 7 cell is drawn,
    lit dots bright with a soft halo, the others dim."""
    radius = pitch * 0.42 if radius is None else radius
    cx = x
    for ch in text:
        rows = FONT[ch]
        for ry, row in enumerate(rows):
            for rx, bit in enumerate(row):
                px = cx + rx * pitch + pitch / 2.0
                py = y + ry * pitch + pitch / 2.0
                if bit == "#":
                    if glow:
                        canvas.fill(Circle(px, py, radius * 1.9), lit, opacity=0.22)
                    canvas.fill(Circle(px, py, radius), lit)
                    canvas.fill(Circle(px - radius * 0.3, py - radius * 0.3, radius * 0.35), (255, 255, 255), 0.55)
                elif unlit is not None:
                    canvas.fill(Circle(px, py, radius * 0.85), unlit)
        cx += (len(rows[0]) + 1) * pitch
    return cx


# --------------------------------------------------------------------------
# Motifs
# --------------------------------------------------------------------------

def draw_clock(c, cx, cy, r, rim=(20, 40, 120), face=(255, 255, 250), hands=(20, 20, 30),
               second=(200, 30, 30), hour=10, minute=9, ticks=True, bezel=True):
    """A round wall clock showing hour:minute."""
    if bezel:
        c.fill(Circle(cx + r * 0.08, cy + r * 0.1, r), (0, 0, 0), opacity=0.3)  # shadow
        c.fill(Circle(cx, cy, r), radial_gradient(cx - r * 0.4, cy - r * 0.4, r * 2.0,
                                                   mix(rim, (255, 255, 255), 0.5), rim))
        inner = r * 0.82
    else:
        inner = r
    c.fill(Circle(cx, cy, inner), radial_gradient(cx - inner * 0.3, cy - inner * 0.3, inner * 2.2,
                                                   face, mix(face, (150, 160, 180), 0.6)))
    if ticks:
        for k in range(12):
            a = math.radians(k * 30)
            major = k % 3 == 0
            r0 = inner * (0.72 if major else 0.8)
            r1 = inner * 0.92
            c.fill(Capsule(cx + r0 * math.sin(a), cy - r0 * math.cos(a),
                           cx + r1 * math.sin(a), cy - r1 * math.cos(a),
                           max(0.45, inner * (0.06 if major else 0.035))), hands)
    ha = math.radians((hour % 12) * 30 + minute * 0.5)
    ma = math.radians(minute * 6)
    c.fill(Capsule(cx, cy, cx + inner * 0.5 * math.sin(ha), cy - inner * 0.5 * math.cos(ha),
                   max(0.5, inner * 0.08)), hands)
    c.fill(Capsule(cx, cy, cx + inner * 0.78 * math.sin(ma), cy - inner * 0.78 * math.cos(ma),
                   max(0.4, inner * 0.055)), hands)
    if second is not None:
        sa = math.radians(200)
        c.fill(Capsule(cx - inner * 0.15 * math.sin(sa), cy + inner * 0.15 * math.cos(sa),
                       cx + inner * 0.85 * math.sin(sa), cy - inner * 0.85 * math.cos(sa),
                       max(0.35, inner * 0.022)), second)
    c.fill(Circle(cx, cy, max(0.5, inner * 0.07)), second if second is not None else hands)


class Grown(Shape):
    """The shape widened by d pixels all round (for outlines)."""

    def __init__(self, shape, d):
        self.shape, self.d = shape, d
        k = 0.7071 * d
        self.offsets = [(0, 0), (d, 0), (-d, 0), (0, d), (0, -d), (k, k), (k, -k), (-k, k), (-k, -k)]

    def bbox(self):
        x0, y0, x1, y1 = self.shape.bbox()
        return (x0 - self.d, y0 - self.d, x1 + self.d, y1 + self.d)

    def contains(self, x, y):
        return any(self.shape.contains(x + ox, y + oy) for ox, oy in self.offsets)


def draw_desk_phone(c, cx, cy, size, body=(200, 30, 30), outline=(60, 0, 0), hour=10, minute=9,
                    detail=True):
    """A desk telephone whose dial is a clock face: the program's emblem.
    size is the full width; (cx, cy) the middle of the whole phone."""
    k = size / 2.0

    def at(u, v):
        return (cx + u * k, cy + v * k)

    def box(u0, v0, u1, v1, r):
        (x0, y0), (x1, y1) = at(u0, v0), at(u1, v1)
        return RoundRect(x0, y0, x1, y1, r * k)

    trapezoid = [at(-0.50, -0.18), at(0.50, -0.18), at(0.86, 0.76), at(-0.86, 0.76)]
    base = Union(Polygon(trapezoid), polyline(trapezoid + trapezoid[:1], 0.12 * k))
    handset = Union(box(-0.92, -0.78, 0.92, -0.50, 0.14),
                    box(-1.0, -0.62, -0.52, -0.28, 0.14),
                    box(0.52, -0.62, 1.0, -0.28, 0.14))
    prongs = Union(box(-0.40, -0.36, -0.26, -0.12, 0.03), box(0.26, -0.36, 0.40, -0.12, 0.03))
    d = max(0.8, size / 32.0)
    c.fill(Grown(Union(base, handset, prongs), d), outline)
    c.fill(prongs, mix(outline, body, 0.4))
    bx0, by0, bx1, by1 = base.bbox()
    c.fill(base, vertical_gradient(by0, by1, mix(body, (255, 255, 255), 0.25), mix(body, (0, 0, 0), 0.3)))
    hx0, hy0, hx1, hy1 = handset.bbox()
    c.fill(handset, vertical_gradient(hy0, hy1, mix(body, (255, 255, 255), 0.45), mix(body, (0, 0, 0), 0.2)))
    if detail:
        c.fill(box(-0.80, -0.75, 0.80, -0.68, 0.03), (255, 255, 255), opacity=0.35)  # shine
    dial_x, dial_y = at(0.0, 0.30)
    c.fill(Circle(dial_x, dial_y, 0.47 * k), outline)
    draw_clock(c, dial_x, dial_y, 0.43 * k, rim=(235, 235, 235), hour=hour, minute=minute,
               ticks=0.43 * k > 9, second=(200, 30, 30) if detail else None, bezel=detail)


def draw_modem(c, x, y, w, h, lights=True):
    """A desktop modem seen from the front: a beige case with its lights."""
    c.fill(RoundRect(x + 2, y + 2, x + w + 2, y + h + 2, h * 0.25), (0, 0, 0), opacity=0.35)
    c.fill(RoundRect(x, y, x + w, y + h, h * 0.25), vertical_gradient(y, y + h, (236, 230, 214), (150, 142, 124)))
    c.fill(Rect(x + h * 0.2, y + h * 0.1, x + w - h * 0.2, y + h * 0.22), (255, 255, 250), opacity=0.6)
    # The dark front strip with the lights.
    py0, py1 = y + h * 0.5, y + h * 0.82
    c.fill(RoundRect(x + w * 0.08, py0, x + w * 0.92, py1, (py1 - py0) * 0.3), (40, 40, 48))
    if lights:
        colours = [(255, 40, 40), (255, 200, 0), (60, 255, 60), (60, 255, 60), (255, 200, 0),
                   (60, 255, 60), (255, 40, 40), (60, 255, 60)]
        lit = [1, 1, 1, 0, 1, 1, 0, 1]
        n = len(colours)
        rad = min((py1 - py0) * 0.28, w * 0.8 / n * 0.3)
        for k in range(n):
            lx = x + w * 0.14 + (w * 0.72) * k / (n - 1)
            ly = (py0 + py1) / 2
            if lit[k]:
                c.fill(Circle(lx, ly, rad * 2.2), colours[k], opacity=0.35)
                c.fill(Circle(lx, ly, rad), colours[k])
            else:
                c.fill(Circle(lx, ly, rad), mix(colours[k], (40, 40, 48), 0.7))


def draw_wave(c, x0, x1, cy, amplitude, colour, radius, cycles=6.0, chirp=1.8):
    """The warble of a modem handshake: a sine that quickens along the line."""
    pts = []
    steps = int((x1 - x0) * 2)
    for k in range(steps + 1):
        t = k / steps
        phase = 2 * math.pi * cycles * (t + (chirp - 1) * t * t / 2)
        env = math.sin(math.pi * t) ** 0.5
        pts.append((x0 + (x1 - x0) * t, cy - amplitude * env * math.sin(phase)))
    c.fill(polyline(pts, radius), colour)


def draw_bevel(c, x0, y0, x1, y1, raised=True):
    """The 3-D edge of a Windows 95 panel."""
    light, dark = ((255, 255, 255), (128, 128, 128)) if raised else ((128, 128, 128), (255, 255, 255))
    c.fill(Rect(x0, y0, x1, y0 + 1), light)
    c.fill(Rect(x0, y0, x0 + 1, y1), light)
    c.fill(Rect(x0, y1 - 1, x1, y1), dark)
    c.fill(Rect(x1 - 1, y0, x1, y1), dark)


def draw_alarm_clock(c, cx, cy, r, body, face=(255, 255, 250), ringing=True,
                     hands=(0, 0, 0), outline=(0, 0, 0)):
    """An alarm clock with two bells on top and two feet."""
    # Feet, bells and the hammer behind the body.
    for side in (-1, 1):
        c.fill(Capsule(cx + side * r * 0.55, cy + r * 0.7, cx + side * r * 0.85, cy + r * 1.05, r * 0.12), outline)
        bell_x = cx + side * r * 0.72
        bell_y = cy - r * 0.82
        c.fill(Ellipse(bell_x, bell_y, r * 0.42, r * 0.32, side * 40), outline)
        c.fill(Ellipse(bell_x, bell_y, r * 0.34, r * 0.24, side * 40), body)
    c.fill(Capsule(cx, cy - r * 1.0, cx, cy - r * 1.22, r * 0.1), outline)
    c.fill(Capsule(cx - r * 0.2, cy - r * 1.22, cx + r * 0.2, cy - r * 1.22, r * 0.1), outline)
    c.fill(Circle(cx, cy, r), outline)
    c.fill(Circle(cx, cy, r * 0.86), body)
    c.fill(Circle(cx, cy, r * 0.66), face)
    for k in range(4):
        a = math.radians(k * 90)
        c.fill(Circle(cx + r * 0.52 * math.sin(a), cy - r * 0.52 * math.cos(a), max(0.5, r * 0.06)), hands)
    c.fill(Capsule(cx, cy, cx, cy - r * 0.5, max(0.6, r * 0.07)), hands)
    c.fill(Capsule(cx, cy, cx + r * 0.32, cy + r * 0.12, max(0.6, r * 0.08)), hands)
    if ringing:
        for side in (-1, 1):
            for rr in (1.3, 1.6):
                c.fill(Sector(cx, cy - r * 0.5, r * rr, r * rr - max(1.0, r * 0.1),
                              (-70 if side > 0 else 200), (-20 if side > 0 else 250)), outline)


# --------------------------------------------------------------------------
# Palettes and files
# --------------------------------------------------------------------------

def flatten(canvas, background):
    """Opaque RGB rows with the picture laid over a background colour."""
    rows = []
    for y in range(canvas.height):
        row = []
        for x in range(canvas.width):
            r, g, b, a = canvas.get(x, y)
            row.append(tuple(int(round(background[i] * (1 - a) + (r, g, b)[i] * a)) for i in range(3)))
        rows.append(row)
    return rows


def nearest(colour, palette):
    best, best_d = 0, None
    for i, p in enumerate(palette):
        d = (2 * (colour[0] - p[0]) ** 2 + 4 * (colour[1] - p[1]) ** 2 + 3 * (colour[2] - p[2]) ** 2)
        if best_d is None or d < best_d:
            best, best_d = i, d
    return best


def median_cut(colours, count):
    """A palette of at most count colours for the given list (with repeats)."""
    unique = sorted(set(colours))
    if len(unique) <= count:
        return unique
    boxes = [list(colours)]
    while len(boxes) < count:
        boxes.sort(key=lambda b: max(max(c[i] for c in b) - min(c[i] for c in b) for i in range(3)) * len(set(b)))
        box = boxes.pop()
        if len(set(box)) < 2:
            boxes.append(box)
            break
        axis = max(range(3), key=lambda i: max(c[i] for c in box) - min(c[i] for c in box))
        box.sort(key=lambda c: c[axis])
        mid = len(box) // 2
        boxes += [box[:mid], box[mid:]]
    return [tuple(int(round(sum(c[i] for c in b) / len(b))) for i in range(3)) for b in boxes if b]


def write_bmp24(path, rows):
    height, width = len(rows), len(rows[0])
    stride = (width * 3 + 3) & ~3
    data = bytearray()
    for row in reversed(rows):
        line = bytearray()
        for r, g, b in row:
            line += bytes((b, g, r))
        line += b"\0" * (stride - len(line))
        data += line
    header = struct.pack("<2sIHHI", b"BM", 14 + 40 + len(data), 0, 0, 54)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(data), 2835, 2835, 0, 0)
    with open(path, "wb") as f:
        f.write(header + info + data)


def icon_image(canvas, bpp, palette=None):
    """One image of an icon file: BITMAPINFOHEADER, palette, colour bits and
    the transparency mask. Half-covered edge pixels are laid over the grey
    that taskbars and dialogs use, so they blend in there."""
    w, h = canvas.width, canvas.height
    opaque = [[canvas.get(x, y)[3] >= 0.5 for x in range(w)] for y in range(h)]
    rows = flatten(canvas, DIALOG_GREY)
    if palette is None:
        palette = median_cut([rows[y][x] for y in range(h) for x in range(w) if opaque[y][x]],
                             (1 << bpp) - 1)
        palette = [(0, 0, 0)] + [p for p in palette if p != (0, 0, 0)]  # index 0: transparent black
        palette = palette[: 1 << bpp]
    cache = {}
    indices = []
    for y in range(h):
        line = []
        for x in range(w):
            if not opaque[y][x]:
                line.append(0 if palette[0] == (0, 0, 0) else nearest((0, 0, 0), palette))
                continue
            c = rows[y][x]
            if c not in cache:
                cache[c] = nearest(c, palette)
            line.append(cache[c])
        indices.append(line)
    ncolours = 1 << bpp
    pal = list(palette) + [(0, 0, 0)] * (ncolours - len(palette))
    xor = bytearray()
    xor_stride = ((w * bpp + 31) // 32) * 4
    for line in reversed(indices):
        b = bytearray()
        if bpp == 8:
            b += bytes(line)
        elif bpp == 4:
            for x in range(0, w, 2):
                hi = line[x]
                lo = line[x + 1] if x + 1 < w else 0
                b.append((hi << 4) | lo)
        b += b"\0" * (xor_stride - len(b))
        xor += b
    mask = bytearray()
    mask_stride = ((w + 31) // 32) * 4
    for y in reversed(range(h)):
        b = bytearray(mask_stride)
        for x in range(w):
            if not opaque[y][x]:
                b[x // 8] |= 0x80 >> (x % 8)
        mask += b
    info = struct.pack("<IiiHHIIiiII", 40, w, h * 2, 1, bpp, 0, len(xor) + len(mask), 0, 0, 0, 0)
    palette_bytes = b"".join(bytes((b, g, r, 0)) for r, g, b in pal)
    return (w, h, bpp, info + palette_bytes + bytes(xor) + bytes(mask))


def write_ico(path, images):
    header = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    entries = b""
    blobs = b""
    for w, h, bpp, blob in images:
        colours = (1 << bpp) if bpp < 8 else 0
        entries += struct.pack("<BBBBHHII", w % 256, h % 256, colours, 0, 1, bpp, len(blob), offset)
        offset += len(blob)
        blobs += blob
    with open(path, "wb") as f:
        f.write(header + entries + blobs)


# --------------------------------------------------------------------------
# The pictures
# --------------------------------------------------------------------------

# At 16 x 16 pixels a drawn phone turns to mush, so the small program icon is
# laid out by hand, pixel by pixel.
SMALL_PHONE = """
................
.kkkkkkkkkkkkkk.
khhhhhhhhhhhhhhk
krrrkkkkkkkkrrrk
kkkkk.k..k.kkkkk
.....kkkkkk.....
....khhhhhhk....
...krrwwwwrrk...
...krwwbwwwrk...
..krwwwbwwwwrk..
..krwwwbbbwwrk..
.krrrwwwwwwrrrk.
.krrrrwwwwrrrrk.
krrrrrrrrrrrrrrk
kddddddddddddddk
.kkkkkkkkkkkkkk.
"""
SMALL_PHONE_COLOURS = {
    "k": (70, 0, 0), "h": (235, 95, 95), "r": (200, 30, 30), "d": (130, 15, 15),
    "w": (255, 255, 255), "b": (0, 0, 0),
}


def pixel_map(text, colours):
    rows = text.strip().splitlines()
    c = Canvas(len(rows[0]), len(rows))
    for y, row in enumerate(rows):
        for x, ch in enumerate(row):
            if ch in colours:
                c.pixel(x, y, colours[ch])
    return c


def program_icon(size):
    """Icon 22: the red desk telephone with a clock for its dial."""
    if size <= 16:
        return pixel_map(SMALL_PHONE, SMALL_PHONE_COLOURS)
    c = Canvas(size, size)
    s = size / 32.0
    draw_desk_phone(c, 16 * s, 16.5 * s, 29 * s)
    return c


def alarm_icon(on):
    """Icons 1006 and 1007: the alarm clock ringing, or grey and struck out."""
    c = Canvas(32, 32, antialias=False)
    if on:
        draw_alarm_clock(c, 16, 18, 10, body=YELLOW, face=WHITE, ringing=True, outline=BLACK)
        c.fill(Circle(16, 18, 1.5), RED)
    else:
        draw_alarm_clock(c, 16, 18, 10, body=SILVER, face=WHITE, ringing=False, outline=GREY,
                         hands=GREY)
        c.fill(Capsule(6, 29, 27, 7, 1.6), RED)
    return c


def accounts_icon():
    """Icon 32: a pre-paid Internet card with a stack of coins."""
    c = Canvas(32, 32, antialias=False)
    c.fill(RoundRect(1, 5, 25, 21, 2), BLACK)
    c.fill(RoundRect(2, 6, 24, 20, 2), BLUE)
    c.fill(Rect(2, 9, 24, 12), NAVY)
    c.fill(RoundRect(5, 13, 10, 18, 1), YELLOW)
    c.fill(Rect(5, 15, 10, 16), OLIVE)
    c.fill(Rect(13, 15, 22, 16), AQUA)
    for k in range(4):
        y = 26 - k * 3
        c.fill(Ellipse(23, y + 1, 7, 3), BLACK)
        c.fill(Ellipse(23, y, 7, 3), OLIVE)
        c.fill(Ellipse(23, y - 1, 6, 2), YELLOW)
    return c


def log_page_icon():
    """Icon 34: an open log book with its ruled lines and a pencil."""
    c = Canvas(32, 32, antialias=False)
    c.fill(Rect(4, 4, 27, 30), BLACK)
    c.fill(Rect(5, 5, 26, 29), WHITE)
    c.fill(Rect(26, 6, 28, 31), GREY)
    c.fill(Rect(6, 30, 28, 31), GREY)
    for y in range(10, 28, 3):
        c.fill(Rect(7, y, 24, y + 1), TEAL)
    c.fill(Rect(9, 6, 10, 28), RED)
    for x in range(7, 25, 4):
        c.fill(Rect(x, 2, x + 2, 7), GREY)
        c.fill(Rect(x, 2, x + 1, 6), SILVER)
    c.fill(Polygon([(14, 26), (27, 13), (30, 16), (17, 29), (13, 30)]), BLACK)
    c.fill(Polygon([(15, 26), (27, 14), (29, 16), (17, 28)]), YELLOW)
    c.fill(Polygon([(26, 15), (27, 14), (29, 16), (28, 17)]), RED)
    c.fill(Polygon([(13, 30), (15, 26), (17, 28)]), OLIVE)
    return c


def alarm_page_icon():
    """Icon 36: a red alarm clock ringing."""
    c = Canvas(32, 32, antialias=False)
    draw_alarm_clock(c, 16, 18, 10, body=RED, face=WHITE, ringing=True, outline=BLACK)
    return c


def banner():
    """Bitmap 21, 285 x 42: the head of the main status dialog."""
    w, h = 285, 42
    c = Canvas(w, h, background=(0, 0, 0))
    c.fill(Rect(0, 0, w, h), vertical_gradient(0, h, (8, 24, 84), (0, 70, 110)))
    # Emblem at the left.
    c.fill(Circle(23, 21, 19), (255, 255, 255), opacity=0.08)
    draw_desk_phone(c, 23, 21.5, 38)
    # The name on a dot-matrix display.
    panel_x0, panel_y0 = 47, 3
    led_w = text_width("ORVALEN", 1, 1) * 3
    c.fill(RoundRect(panel_x0, panel_y0, panel_x0 + led_w + 8, panel_y0 + 27, 3), (6, 12, 10))
    draw_bevel(c, panel_x0, panel_y0, panel_x0 + led_w + 8, panel_y0 + 27, raised=False)
    draw_led_text(c, panel_x0 + 4, panel_y0 + 3, "ORVALEN", 3, (80, 255, 120), (20, 50, 30))
    draw_text(c, 48, 33, TAGLINE, (170, 220, 255), shadow=(0, 0, 30))
    # The line signal and the version at the right.
    wx0 = panel_x0 + led_w + 14
    draw_wave(c, wx0, w - 6, 14, 8, (255, 190, 60), 0.8, cycles=7)
    c.fill(Rect(wx0, 14, w - 6, 15), (255, 190, 60), opacity=0.25)
    draw_text(c, w - 6 - text_width("V1.5"), 27, "V1.5", (255, 255, 255), shadow=(0, 0, 30))
    draw_bevel(c, 0, 0, w, h, raised=True)
    return flatten(c, (0, 0, 0))


def splash():
    """Bitmap 23, 146 x 122: the start-up picture."""
    w, h = 146, 122
    c = Canvas(w, h, background=(0, 0, 0))
    c.fill(Rect(0, 0, w, h), vertical_gradient(0, h, (10, 20, 80), (70, 20, 90)))
    for k in range(40):  # a few stars
        x = (k * 53 + 17) % w
        y = (k * 29 + 11) % 70
        c.fill(Circle(x + 0.5, y + 0.5, 0.6 + (k % 3) * 0.2), (255, 255, 230), opacity=0.5)
    led_w = text_width("ORVALEN") * 2
    x0 = (w - led_w) // 2
    c.fill(RoundRect(x0 - 4, 4, x0 + led_w + 4, 23, 3), (6, 12, 10))
    draw_bevel(c, x0 - 4, 4, x0 + led_w + 4, 23, raised=False)
    draw_led_text(c, x0, 7, "ORVALEN", 2, (80, 255, 120), (20, 50, 30))
    # The phone in a soft glow, its cord running down to the modem.
    c.fill(Circle(73, 55, 34), (120, 160, 255), opacity=0.15)
    cord = [(112 + 3 * math.sin(t * 1.2), 70 + t) for t in range(0, 19)]
    c.fill(polyline([(100, 72)] + cord, 1.0), (20, 20, 20))
    draw_desk_phone(c, 73, 55, 66)
    draw_modem(c, 18, 88, 110, 20)
    draw_text(c, (w - text_width(TAGLINE)) // 2, 112, TAGLINE, (255, 220, 120), shadow=(0, 0, 0))
    return flatten(c, (0, 0, 0))


def logo():
    """Bitmap 250, 100 x 40: the name for the About and Welcome dialogs."""
    w, h = 100, 40
    c = Canvas(w, h, background=DIALOG_GREY)
    c.fill(Rect(1, 1, w - 1, h - 1), vertical_gradient(0, h, (250, 252, 255), (190, 205, 235)))
    name = "Orvalen"
    tw = text_width(name, 2)
    x0 = (w - tw) // 2
    ink = vertical_gradient(4, 18, (30, 70, 200), (10, 20, 90))
    draw_text(c, x0, 4, name, ink, scale=2, shadow=(150, 160, 200))
    c.fill(Rect(8, 21, w - 8, 22), (200, 40, 40))
    c.fill(Rect(8, 22, w - 8, 23), (255, 255, 255), opacity=0.7)
    draw_text(c, (w - text_width(TAGLINE)) // 2, 27, TAGLINE, (60, 60, 90))
    draw_bevel(c, 0, 0, w, h, raised=True)
    return flatten(c, DIALOG_GREY)


def side_picture():
    """Bitmap 102, 80 x 216: the tall strip beside the About and Welcome texts
    (53 x 133 dialog units of "Helv" 8)."""
    w, h = 80, 216
    c = Canvas(w, h, background=(0, 0, 0))
    c.fill(Rect(0, 0, w, h), vertical_gradient(0, h, (12, 30, 100), (0, 90, 120)))
    c.fill(Circle(40, 36, 32), (140, 180, 255), opacity=0.15)
    draw_desk_phone(c, 40, 36, 64)
    # A phone cord winding down past the name.
    cord = [(14 + 5 * math.sin(t * 0.45), 70 + t) for t in range(0, 128)]
    c.fill(polyline(cord, 1.0), (20, 20, 20))
    c.fill(polyline([(x + 0.6, y - 0.6) for x, y in cord], 0.4), (120, 120, 120))
    # The name, one letter under the other on a dot-matrix strip.
    c.fill(RoundRect(28, 70, 58, 196, 3), (6, 12, 10))
    draw_bevel(c, 28, 70, 58, 196, raised=False)
    for k, ch in enumerate("ORVALEN"):
        draw_led_text(c, 33, 74 + k * 17, ch, 2, (80, 255, 120), (20, 50, 30))
    draw_modem(c, 6, 198, 68, 14, lights=True)
    draw_bevel(c, 0, 0, w, h, raised=True)
    return flatten(c, (0, 0, 0))


def alarm_notice_picture():
    """Bitmap 45, 64 x 64: the ringing alarm clock of the reminder."""
    w, h = 64, 64
    c = Canvas(w, h, background=DIALOG_GREY)
    draw_alarm_clock(c, 32, 37, 17, body=(220, 40, 40), face=(255, 255, 245), ringing=True,
                     outline=(30, 20, 20))
    c.fill(Circle(32, 37, 1.8), (220, 40, 40))
    return flatten(c, DIALOG_GREY)


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(root, "resources", "art")
    os.makedirs(out, exist_ok=True)

    write_ico(os.path.join(out, "program.ico"),
              [icon_image(program_icon(32), 8), icon_image(program_icon(16), 8)])
    write_ico(os.path.join(out, "alarm_on.ico"), [icon_image(alarm_icon(True), 4, VGA16)])
    write_ico(os.path.join(out, "alarm_off.ico"), [icon_image(alarm_icon(False), 4, VGA16)])
    write_ico(os.path.join(out, "accounts.ico"), [icon_image(accounts_icon(), 4, VGA16)])
    write_ico(os.path.join(out, "log_page.ico"), [icon_image(log_page_icon(), 4, VGA16)])
    write_ico(os.path.join(out, "alarm_page.ico"), [icon_image(alarm_page_icon(), 4, VGA16)])

    write_bmp24(os.path.join(out, "banner.bmp"), banner())
    write_bmp24(os.path.join(out, "splash.bmp"), splash())
    write_bmp24(os.path.join(out, "logo.bmp"), logo())
    write_bmp24(os.path.join(out, "side_picture.bmp"), side_picture())
    write_bmp24(os.path.join(out, "alarm_notice.bmp"), alarm_notice_picture())
    print("artwork written to", out)


if __name__ == "__main__":
    main()
