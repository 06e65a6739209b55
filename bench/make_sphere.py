#!/usr/bin/env python3
"""Writes a closed UV sphere as binary STL: make_sphere.py OUT.stl [RADIUS] [LON] [BANDS].
It has 2 * LON * (BANDS - 1) facets; the defaults (1.0, 1000, 501) give a million."""
import math
import struct
import sys

out = sys.argv[1]
r = float(sys.argv[2]) if len(sys.argv) > 2 else 1.0
lon = int(sys.argv[3]) if len(sys.argv) > 3 else 1000
bands = int(sys.argv[4]) if len(sys.argv) > 4 else 501


def at(i, j):
    if i == 0 or i == bands:
        return (0.0, 0.0, r if i == 0 else -r)
    p, a = math.pi * i / bands, 2 * math.pi * (j % lon) / lon
    return (r * math.sin(p) * math.cos(a), r * math.sin(p) * math.sin(a), r * math.cos(p))


facets = []
for i in range(bands):
    for j in range(lon):
        if i > 0:
            facets.append((at(i, j), at(i + 1, j), at(i, j + 1)))
        if i < bands - 1:
            facets.append((at(i, j + 1), at(i + 1, j), at(i + 1, j + 1)))
with open(out, "wb") as f:
    f.write(b"\0" * 80 + struct.pack("<I", len(facets)))
    for a, b, c in facets:
        f.write(struct.pack("<12fH", 0, 0, 0, *a, *b, *c, 0))
