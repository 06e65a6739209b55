#!/usr/bin/env python3
"""Cuts a hole in a binary STL: leaves out the triangles whose three corners all lie above a height.

  python3 bench/cut_hole.py IN.stl OUT.stl [AXIS=2] [ABOVE=0.995]

On bench/make_cases.py's sphere1m.stl the defaults take off a cap of radius about 0.1 at the top
(some 2,000 triangles): an open million-triangle body for Kavex3_Inspect's leak check.
"""
import struct
import sys


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    axis = int(sys.argv[3]) if len(sys.argv) > 3 else 2
    above = float(sys.argv[4]) if len(sys.argv) > 4 else 0.995
    with open(sys.argv[1], "rb") as f:
        data = f.read()
    count = struct.unpack_from("<I", data, 80)[0]
    kept = []
    for n in range(count):
        record = data[84 + 50 * n:134 + 50 * n]
        corners = struct.unpack_from("<9f", record, 12)
        if min(corners[axis::3]) <= above:
            kept.append(record)
    with open(sys.argv[2], "wb") as f:
        f.write(data[:80] + struct.pack("<I", len(kept)) + b"".join(kept))
    print(f"{sys.argv[2]}: {len(kept)} of {count} triangles kept")


if __name__ == "__main__":
    main()
