"""Kavex3_Inspect end to end: real runs of the worker on the corpus and on made bodies, judged
closed, open and sealed, or open and leaked; every file written read back by VTK's own Python
reader; bad input.

usage: inspect_test.py KAVEX3_INSPECT KAVEX3_GRIDGEN TEST_DATA EXAMPLE_RUN_DIR
"""
import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

import numpy as np
import vtk
from vtk.util.numpy_support import vtk_to_numpy

EXE, WORKER, DATA, EXAMPLE_RUN = sys.argv[1:5]


def inspect(run_dir, project, *options):
    return subprocess.run([EXE, run_dir, project, *options], capture_output=True, text=True)


def project_text(stl, start, core=40):
    """One STL body, core cells an axis over its box, 6 growing cells on each side; the grid's
    first corner at start (None: the origin)."""
    spec = ""
    for a in "XYZ":
        spec += (f"Body {a}-GridSpec\n New GridSpec\n from: B L-0.5\n to: B L0.0\n number of Grids: 6\n"
                 f" GP Ratio: -1.1\n #\n New GridSpec\n in: B\n number of Grids: {core}\n GP Ratio: 1.0\n #\n"
                 f" New GridSpec\n from: B L1.0\n to: B L1.5\n number of Grids: 6\n GP Ratio: 1.1\n #\n"
                 f"End {a}-Grid Spec\n")
    start = f" Grid Start Point: ({start}, {start}, {start})\n" if start is not None else ""
    return ("Start Options\n Debug Level: 0\n" + start + " Solver Input File: SolverGdInp.dat\n Conversion Factor: (1.0, 1.0, 1.0)\n"
            f"End Options\nStart Body Definitions\n New Body\n name: B\n type: STL\n Points File: {stl}\n"
            " used in solver: True\n #\nEnd Body Definitions\n" + spec)


def run_worker(run_dir, stl, start):
    os.makedirs(run_dir)
    with open(os.path.join(run_dir, "p.Grid"), "w") as f:
        f.write(project_text(stl, start))
    with open(os.path.join(run_dir, "p.SlvrRot"), "w") as f:
        f.write("0\n")
    result = subprocess.run([WORKER, "-Grid", run_dir + "/p.Grid", "-SlvrRot", run_dir + "/p.SlvrRot",
                             "-pth", run_dir], capture_output=True, text=True)
    assert result.returncode == 0, result.stderr
    return os.path.join(run_dir, "p.Grid")


def write_ascii_stl(path, triangles):
    with open(path, "w") as f:
        f.write("solid made\n")
        for tri in triangles:
            f.write(" facet normal 0 0 0\n  outer loop\n")
            f.writelines(f"   vertex {x!r} {y!r} {z!r}\n" for x, y, z in tri)
            f.write("  endloop\n endfacet\n")
        f.write("endsolid made\n")


def box_without_top():
    """The box 0..1 cubed, outward, without the two triangles of its facet z = 1."""
    quads = [((0, 0, 0), (0, 1, 0), (1, 1, 0), (1, 0, 0)), ((0, 0, 0), (1, 0, 0), (1, 0, 1), (0, 0, 1)),
             ((1, 0, 0), (1, 1, 0), (1, 1, 1), (1, 0, 1)), ((1, 1, 0), (0, 1, 0), (0, 1, 1), (1, 1, 1)),
             ((0, 1, 0), (0, 0, 0), (0, 0, 1), (0, 1, 1))]
    return [t for a, b, c, d in quads for t in ((a, b, c), (a, c, d))]


def uv_sphere(centre, radius, nlon=60, nbands=40):
    """Closed and outward: 2 * nlon * (nbands - 1) triangles, 4,680 by default."""
    def p(l, m):
        th, ph = math.pi * l / nbands, 2 * math.pi * (m % nlon) / nlon
        return tuple(c + radius * v for c, v in zip(centre, (math.sin(th) * math.cos(ph),
                                                              math.sin(th) * math.sin(ph), math.cos(th))))
    tris = []
    for m in range(nlon):
        tris.append((p(0, 0), p(1, m), p(1, m + 1)))
        for l in range(1, nbands - 1):
            tris += [(p(l, m), p(l + 1, m), p(l + 1, m + 1)), (p(l, m), p(l + 1, m + 1), p(l, m + 1))]
        tris.append((p(nbands, 0), p(nbands - 1, m + 1), p(nbands - 1, m)))
    return tris


def read(path):
    reader = (vtk.vtkXMLRectilinearGridReader if path.endswith(".vtr") else vtk.vtkXMLUnstructuredGridReader)()
    reader.SetFileName(path)
    reader.Update()
    return reader.GetOutput()


def cell_field(data, name):
    return vtk_to_numpy(data.GetCellData().GetArray(name))


def listed_cells(grid_file):
    """The body cells that the run listed at the end of its grid file, 1-based."""
    with open(grid_file) as f:
        tail = f.read().split("# Num. of Body Cells:")[1].splitlines()
    return [tuple(map(int, line.split(","))) for line in tail[3:3 + int(tail[1])]]


CELL = re.compile(r"\((\d+), (\d+), (\d+)\)")


class CorpusRuns(unittest.TestCase):
    """Worker runs of 40 core cells an axis, each inspected."""

    # A ball far from the origin in a grid that stays there: the coordinate tolerance at 100
    # (about 0.013) merges the corners of its finer triangles, and the run drops those.
    CASES = [  # name, STL (None: made here), status on the terminal, triangles dropped, grid start
        ("unit_sphere", "unit_sphere.STL", "closed", 0, None),
        ("teapot", "teapot.stl", "open, sealed", 0, None),
        ("bunny", "bunny.stl", "open, leaked", 0, None),
        ("box_without_top", None, "open, leaked", 0, None),
        ("far_ball", None, "open, leaked", 1360, 99.85),  # radius 0.3: the caps' triangles go
        ("far_small_ball", None, "vanished", 4680, 99.85),  # radius 0.1: all of them go
    ]

    @classmethod
    def setUpClass(cls):
        cls.tmp = tempfile.TemporaryDirectory()
        write_ascii_stl(os.path.join(cls.tmp.name, "box_without_top.stl"), box_without_top())
        write_ascii_stl(os.path.join(cls.tmp.name, "far_ball.stl"), uv_sphere((100, 100, 100), 0.3))
        write_ascii_stl(os.path.join(cls.tmp.name, "far_small_ball.stl"), uv_sphere((100, 100, 100), 0.1))
        cls.runs, cls.stls = {}, {}
        for name, stl, _, _, start in cls.CASES:
            stl = os.path.join(DATA, "stl", stl) if stl else os.path.join(cls.tmp.name, name + ".stl")
            cls.stls[name] = stl
            run_dir = os.path.join(cls.tmp.name, name)
            project = run_worker(run_dir, stl, start)
            before = snapshot(run_dir)
            result = inspect(run_dir, project, "--no-pictures")
            assert snapshot(run_dir) == before, "the inspector changed the run directory"
            with open(run_dir + "_inspect/bodies.txt") as f:
                cls.runs[name] = (run_dir, result, f.read())

    def test_status_of_each_body(self):
        for name, _, status, dropped, _ in self.CASES:
            with self.subTest(name):
                run_dir, result, report = self.runs[name]
                self.assertEqual(result.returncode, 0, result.stderr)
                verdict = result.stdout.splitlines()[0].split("non-manifold edges: ")[1]
                verdict = re.sub(r" \(\d+ cells\)$", "", verdict)
                self.assertEqual(verdict, f"{dropped} triangles dropped, {status}" if dropped else status)
                self.assertEqual("Leak path" in report, "leaked" in status)

    def test_files_read_back_by_vtk(self):
        for name, _, status, _, _ in self.CASES:
            with self.subTest(name):
                run_dir, result, report = self.runs[name]
                out = run_dir + "_inspect"
                cells = listed_cells(os.path.join(run_dir, "KX3.grid.dat"))
                grid = read(os.path.join(out, "grid.vtr"))
                dims = grid.GetDimensions()
                self.assertEqual(grid.GetNumberOfCells(), (dims[0] - 1) * (dims[1] - 1) * (dims[2] - 1))
                flags = cell_field(grid, "blocked").reshape(dims[2] - 1, dims[1] - 1, dims[0] - 1)
                self.assertEqual(sorted(zip(*[a + 1 for a in np.nonzero(flags)[::-1]])), sorted(cells))
                blocked = read(os.path.join(out, "blocked.vtu"))
                self.assertEqual((blocked.GetNumberOfCells(), blocked.GetNumberOfPoints()),
                                 (len(cells), 8 * len(cells)))
                stem = os.path.splitext(os.path.basename(self.stls[name]))[0]
                body = read(os.path.join(out, f"body1_{stem}.vtu"))
                counts = re.search(r"(\d+) triangles, (\d+) vertices", report).groups()
                self.assertEqual((body.GetNumberOfCells(), body.GetNumberOfPoints()), tuple(map(int, counts)))
                mb = vtk.vtkXMLMultiBlockDataReader()
                mb.SetFileName(os.path.join(out, os.path.basename(run_dir) + ".vtm"))
                mb.Update()
                expected = 3 + 2 * ("leaked" in status)
                self.assertEqual(mb.GetOutput().GetNumberOfBlocks(), expected)
                if "leaked" not in status:
                    continue
                leaked = read(os.path.join(out, "body1_leaked.vtu"))
                count = int(re.search(r"leaked \((\d+) cells\)", result.stdout).group(1))
                self.assertEqual((leaked.GetNumberOfCells(), leaked.GetNumberOfPoints()), (count, 8 * count))
                path = read(os.path.join(out, "body1_leak_path.vtu"))
                length = int(re.search(r"Leak path, (\d+) unblocked cells", report).group(1))
                self.assertEqual(path.GetNumberOfCells(), length)
                self.assertEqual(list(cell_field(path, "step")), list(range(1, length + 1)))

    def path_and_hole(self, name):
        """The leak path's cells (1-based) and the cells of the hole's edges, from the report."""
        report = self.runs[name][2]
        text = report.split("Leak path")[1].split("It enters")[0]
        path = [tuple(map(int, c)) for c in CELL.findall(text.split(":", 1)[1])]
        hole = [tuple(map(int, c)) for line in report.split("the hole to mend")[1].splitlines()[1:]
                for c in CELL.findall(line.split("cell", 1)[1])]
        return path, hole

    def test_bunny_path_ends_at_an_open_edge(self):
        path, hole = self.path_and_hole("bunny")
        self.assertTrue(hole)
        # The path starts on the grid's boundary and ends next to a cell holding an open edge.
        self.assertIn(1, path[0])
        self.assertLessEqual(min(max(abs(p - h) for p, h in zip(path[-1], cell)) for cell in hole), 1)

    def test_box_leaks_through_its_missing_facet(self):
        # 40 core cells over the box, after 7 cells below it: its top is the top of cell K 47.
        path, hole = self.path_and_hole("box_without_top")
        self.assertEqual((path[-2][2], path[-1][2]), (48, 47))
        for i, j, _ in path[-2:]:
            self.assertTrue(8 <= i <= 47 and 8 <= j <= 47, path[-2:])
        self.assertTrue(all(k == 48 for _, _, k in hole), hole)


class PlacedBodies(unittest.TestCase):
    """A hand-made run of 10 cells a side, -4 to 4 with zero-width end cells, holding the corpus's
    cube, scaled by 2 and moved by 0.25 in X, and three blocked cells."""

    def test_bodies_and_cells_read_back_placed(self):
        tmp = tempfile.TemporaryDirectory()
        run_dir = os.path.join(tmp.name, "run")
        os.mkdir(run_dir)
        axis, cells = [-4, -4, -3, -2, -1, 0, 1, 2, 3, 4, 4], [(5, 5, 5), (6, 5, 5), (6, 6, 7)]
        n = len(axis)
        coords = " ".join(f"{axis[(m // n ** a) % n]:.5f}" for a in range(3) for m in range(n ** 3))
        with open(os.path.join(run_dir, "KX3.grid.dat"), "w") as f:
            f.write(f"# 0.25 0 0\n{n} {n} {n}\n {coords}\n# Num. of Body Cells: \n{len(cells)}\n# Body Cells\n"
                    + "".join(f"{i}, {j}, {k}\n" for i, j, k in cells))
        with open(os.path.join(run_dir, "Lcl2Gbl.dat"), "w") as f:
            f.write("0.250000 0.000000 0.000000 \n")
        project = os.path.join(tmp.name, "bodies.Grid")
        with open(project, "w") as f:
            f.write(f"Start Options\n  Conversion Factor: (2.0, 2.0, 2.0)\nEnd Options\n  type: STL\n"
                    f"  Points File: {DATA}/stl/unit_cube.STL\n  used in solver: True\n")
        result = inspect(run_dir, project, "--no-pictures")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("12 triangles, 0 open edges, 0 non-manifold edges: closed", result.stdout)
        blocked = read(run_dir + "_inspect/blocked.vtu")
        ijk = np.stack([cell_field(blocked, c) for c in "IJK"], axis=1)
        self.assertEqual(sorted(map(tuple, ijk)), cells)
        # Cube -0.5..0.5: scaled by 2, then X moved by 0.25.
        cube = read(run_dir + "_inspect/body1_unit_cube.vtu")
        bounds = cube.GetBounds()
        self.assertEqual(bounds, (-0.75, 1.25, -1, 1, -1, 1))
        self.assertEqual(list(cell_field(cube, "kept")), [1] * 12)

    def test_cut_body_repeating_its_first_point_is_closed(self):
        # The box written for a surface body: a centre point, the ring (closed by repeating its
        # first point) at X = 2 and at X = 4, and the centre point again.
        tmp = tempfile.TemporaryDirectory()
        run = os.path.join(tmp.name, "run")
        shutil.copytree(EXAMPLE_RUN, run)
        ring = "0.5  0.5\n0.5  1.5\n1.5  1.5\n1.5  0.5\n0.5  0.5\n"
        with open(os.path.join(run, "1-x.cut"), "w") as f:
            f.write("4  5\n2\n" + "1  1\n" * 5 + "2\n" + ring + "4\n" + ring + "4\n" + "1  1\n" * 5)
        result = inspect(run, os.path.join(run, "block.Grid"), "--plane", "z=1.5")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("16 triangles, 0 open edges, 0 non-manifold edges: closed", result.stdout)
        with open(os.path.join(EXAMPLE_RUN, "SolverGdInp.dat")) as f:
            lines = f.read().splitlines()
        listed = int(lines[lines.index("# Num. of Body Cells:") + 1])
        self.assertEqual(read(run + "_inspect/blocked.vtu").GetNumberOfCells(), listed)
        self.assertTrue(os.path.isfile(os.path.join(run + "_inspect", "slice_K10.png")))


class BadInput(unittest.TestCase):
    def test_one_clear_line_and_a_failing_status(self):
        holder = tempfile.TemporaryDirectory()
        tmp = holder.name
        empty_run = os.path.join(tmp, "empty")
        os.mkdir(empty_run)
        missing_body = os.path.join(tmp, "missing.Grid")
        with open(missing_body, "w") as f:
            f.write("  type: STL\n  Points File: /nonexistent/wing.stl\n  used in solver: True\n")
        out = os.path.join(tmp, "out")
        unfinished = {}
        for name, extra in [("stopped", "temp.Grid"), ("failed", "Kavex3_GridGen.err")]:
            unfinished[name] = shutil.copytree(EXAMPLE_RUN, os.path.join(tmp, name))
            with open(os.path.join(unfinished[name], extra), "w") as f:
                f.write("\nError: writing 'KX3.grid.dat': No space left on device\n")
        cases = [(unfinished["stopped"], missing_body, out, {}, "the run did not finish (temp.Grid is still"),
                 (unfinished["failed"], missing_body, out, {}, "(Kavex3_GridGen.err is not empty)"),(os.path.join(tmp, "nothing"), missing_body, out, {}, "nothing: not a run directory"),
                 (empty_run, missing_body, out, {}, "KX3.grid.dat: no grid file"),
                 (EXAMPLE_RUN, missing_body, out, {}, "/nonexistent/wing.stl: body file missing"),
                 (EXAMPLE_RUN, os.path.join(tmp, "none.Grid"), out, {}, "none.Grid: cannot open the project file"),
                 (EXAMPLE_RUN, os.path.join(EXAMPLE_RUN, "block.Grid"), "/dev/null/out", {},
                  "/dev/null/out: cannot create the output folder"),
                 (EXAMPLE_RUN, os.path.join(EXAMPLE_RUN, "block.Grid"), out, {"TMPDIR": "/nonexistent"},
                  "cannot make a scratch copy of the grid file")]
        for run_dir, project, out_dir, env, words in cases:
            with self.subTest(words):
                before = snapshot(EXAMPLE_RUN)
                result = subprocess.run([EXE, run_dir, project, "--out", out_dir], capture_output=True,
                                        text=True, env={**os.environ, **env})
                self.assertEqual(result.returncode, 1)
                self.assertEqual(len(result.stderr.splitlines()), 1)
                self.assertIn(words, result.stderr)
                self.assertEqual(snapshot(EXAMPLE_RUN), before)

    def test_partial_inspects_an_unfinished_run(self):
        holder = tempfile.TemporaryDirectory()
        run_dir = shutil.copytree(EXAMPLE_RUN, os.path.join(holder.name, "stopped"))
        open(os.path.join(run_dir, "temp.SlvrRot"), "w").close()
        result = inspect(run_dir, os.path.join(run_dir, "block.Grid"), "--partial", "--no-pictures")
        self.assertEqual(result.returncode, 0, result.stderr)


def snapshot(folder):
    return sorted((e.name, e.stat().st_size, e.stat().st_mtime_ns) for e in os.scandir(folder))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
