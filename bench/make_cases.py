#!/usr/bin/env python3
"""Writes the benchmarks' surfaces and grids, deterministically, when they are missing.

  sphere1m.stl    UV sphere, radius 1, 1,000,000 triangles (the whole-worker benchmark's body)
  torus.stl       torus R 1, r 0.35, tilted 25 degrees about x, 65,536 triangles
  <shape>_<N>.grid  a rectilinear grid of N^3 cells around the shape: first line the corner counts,
                  then all x, all y and all z values, one a line. A uniform core over the body's box
                  with margins of 3.1 % and 4.7 % (3/4 of the cells on the longest axis, the same
                  spacing on the others), then cells growing by 1.05 outwards.

Both are closed and oriented outwards, binary STL, standard library only:
  python3 bench/make_cases.py OUT_DIR [N ...]      (default N: 256)
"""
import math
import os
import struct
import sys

RATIO = 1.05
CORE_FRACTION = 0.75
OFFSET = (0.0123, -0.0071, 0.0049)  # no symmetry of the body lines up with a grid plane


def sphere(nlon=1000, nbands=501, c=OFFSET):
    def p(l, m):
        th, ph = math.pi * l / nbands, 2.0 * math.pi * (m % nlon) / nlon
        return (c[0] + math.sin(th) * math.cos(ph), c[1] + math.sin(th) * math.sin(ph),
                c[2] + math.cos(th))
    north, south = (c[0], c[1], c[2] + 1.0), (c[0], c[1], c[2] - 1.0)
    rows = [[p(l, m) for m in range(nlon)] for l in range(1, nbands)]
    for m in range(nlon):
        m1 = (m + 1) % nlon
        yield (north, rows[0][m], rows[0][m1])
        for a, b in zip(rows, rows[1:]):
            yield (a[m], b[m], b[m1])
            yield (a[m], b[m1], a[m1])
        yield (south, rows[-1][m1], rows[-1][m])


def torus(nu=256, nv=128, R=1.0, r=0.35, tilt_deg=25.0, c=OFFSET):
    ct, st = math.cos(math.radians(tilt_deg)), math.sin(math.radians(tilt_deg))

    def p(i, j):
        u, v = 2.0 * math.pi * (i % nu) / nu, 2.0 * math.pi * (j % nv) / nv
        x, y, z = (R + r * math.cos(v)) * math.cos(u), (R + r * math.cos(v)) * math.sin(u), r * math.sin(v)
        return (c[0] + x, c[1] + ct * y - st * z, c[2] + st * y + ct * z)
    pts = [[p(i, j) for j in range(nv)] for i in range(nu)]
    for i in range(nu):
        for j in range(nv):
            a, b = pts[i][j], pts[(i + 1) % nu][j]
            cc, d = pts[(i + 1) % nu][(j + 1) % nv], pts[i][(j + 1) % nv]
            yield (a, b, cc)
            yield (a, cc, d)


def write_stl(path, tris):
    """Binary STL with zero normals (the readers do not use them); returns the vertices' box."""
    lo, hi = [math.inf] * 3, [-math.inf] * 3
    rec = struct.Struct("<12fH")
    out = []
    for a, b, c in tris:
        out.append(rec.pack(0.0, 0.0, 0.0, *a, *b, *c, 0))
        for v in (a, b, c):
            for k in range(3):
                lo[k], hi[k] = min(lo[k], v[k]), max(hi[k], v[k])
    with open(path + ".part", "wb") as f:
        f.write(b"benchmark case".ljust(80, b" ") + struct.pack("<I", len(out)))
        f.write(b"".join(out))
    os.replace(path + ".part", path)
    return lo, hi


def graded_axis(lo, hi, h_target, n_total):
    n_core = min(max(4, int(round((hi - lo) / h_target))), n_total)
    h = (hi - lo) / n_core
    pad_lo = (n_total - n_core) // 2
    pad_hi = n_total - n_core - pad_lo

    def grow(x, sign, count):
        out, w = [], h
        for _ in range(count):
            w *= RATIO
            x += sign * w
            out.append(x)
        return out
    return grow(lo, -1, pad_lo)[::-1] + [lo + h * i for i in range(n_core)] + [hi] + grow(hi, 1, pad_hi)


def write_grid(path, lo, hi, n):
    e = max(hi[k] - lo[k] for k in range(3))
    clo = [lo[k] - 0.031 * e for k in range(3)]
    chi = [hi[k] + 0.047 * e for k in range(3)]
    h = max(chi[k] - clo[k] for k in range(3)) / int(round(CORE_FRACTION * n))
    axes = [graded_axis(clo[k], chi[k], h, n) for k in range(3)]
    with open(path, "w") as f:
        f.write("%d %d %d\n" % tuple(len(a) for a in axes))
        f.writelines("%.17g\n" % v for a in axes for v in a)


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    out, sizes = sys.argv[1], [int(n) for n in sys.argv[2:]] or [256]
    os.makedirs(out, exist_ok=True)
    for name, shape in (("sphere1m", sphere), ("torus", torus)):
        stl = os.path.join(out, name + ".stl")
        grids = [os.path.join(out, "%s_%d.grid" % (name, n)) for n in sizes]
        if os.path.exists(stl) and all(map(os.path.exists, grids)):
            continue
        lo, hi = write_stl(stl, shape())
        for n, grid in zip(sizes, grids):
            write_grid(grid, lo, hi, n)
        print("%s: %s" % (name, ", ".join([stl] + grids)))


if __name__ == "__main__":
    main()
