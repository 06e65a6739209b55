"""Kavex3_Inspect end to end: its VTK files read back by meshio (an independent reader), the body
report on the corpus's STL files, and bad input.

usage: inspect_test.py KAVEX3_INSPECT SHARED_DATA EXAMPLE_RUN_DIR
"""
import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

import meshio
import numpy as np

EXE, DATA, EXAMPLE_RUN = sys.argv[1:4]


def inspect(run_dir, project, *options):
    return subprocess.run([EXE, run_dir, project, *options], capture_output=True, text=True)


def write_grid(path, axis, cells):
    """A grid file as a finished run leaves it: offsets line, counts, coordinates, cell list."""
    n = len(axis)
    xs = " ".join(f"{axis[i]:.5f}" for k in range(n) for j in range(n) for i in range(n))
    ys = " ".join(f"{axis[j]:.5f}" for k in range(n) for j in range(n) for i in range(n))
    zs = " ".join(f"{axis[k]:.5f}" for k in range(n) for j in range(n) for i in range(n))
    tail = "".join(f"{i}, {j}, {k}\n" for i, j, k in cells)
    with open(path, "w") as f:
        f.write(f"# 0.25 0 0\n{n} {n} {n}\n {xs} {ys} {zs}\n# Num. of Body Cells: \n{len(cells)}\n"
                f"# Body Cells ({{I-index, J-index, K-index}} of the cells)\n{tail}")


def write_project(path, bodies):
    with open(path, "w") as f:
        f.write("Start Options\n  Conversion Factor: (2.0, 2.0, 2.0)\nEnd Options\n")
        for name in bodies:
            f.write(f"  type: STL\n  Points File: {DATA}/stl/{name}\n  used in solver: True\n")


def snapshot(folder):
    return sorted((e.name, e.stat().st_size, e.stat().st_mtime_ns) for e in os.scandir(folder))


class StlRun(unittest.TestCase):
    """A hand-made run of 10 cells a side, -4 to 4 with the zero-width end cells, holding the
    corpus's cube (closed), bunny (117 open edges) and soup (300 open edges), scaled by 2 and
    moved by 0.25 in X."""

    @classmethod
    def setUpClass(cls):
        cls.tmp = tempfile.TemporaryDirectory()
        cls.run_dir = os.path.join(cls.tmp.name, "run")
        os.mkdir(cls.run_dir)
        cls.cells = [(5, 5, 5), (6, 5, 5), (6, 6, 7)]
        write_grid(os.path.join(cls.run_dir, "KX3.grid.dat"), [-4, -4, -3, -2, -1, 0, 1, 2, 3, 4, 4], cls.cells)
        with open(os.path.join(cls.run_dir, "Lcl2Gbl.dat"), "w") as f:
            f.write("0.250000 0.000000 0.000000 \n")
        cls.project = os.path.join(cls.tmp.name, "bodies.Grid")
        write_project(cls.project, ["unit_cube.STL", "bunny.stl", "soup.stl"])
        cls.before = snapshot(cls.run_dir)
        cls.result = inspect(cls.run_dir, cls.project)
        cls.out = cls.run_dir + "_inspect"

    def test_runs_and_leaves_the_run_directory_alone(self):
        self.assertEqual(self.result.returncode, 0, self.result.stderr)
        self.assertEqual(snapshot(self.run_dir), self.before)

    def test_report_on_the_corpus(self):
        with open(os.path.join(self.out, "bodies.txt")) as f:
            report = f.read().split("\nBody ")[1:]
        expected = [("unit_cube.STL", "12 triangles, 8 vertices, 1 part(s)", "0 open edges, 0 non-manifold edges: closed"),
                    ("bunny.stl", "9999 triangles, 5055 vertices, 1 part(s)", "117 open edges, 0 non-manifold edges: OPEN"),
                    ("soup.stl", "100 triangles, 300 vertices, 100 part(s)", "300 open edges, 0 non-manifold edges: OPEN")]
        for body, (name, counts, edges) in zip(report, expected):
            with self.subTest(name):
                self.assertIn(name, body.splitlines()[0])
                self.assertIn(counts, body)
                self.assertIn(edges, body)
                self.assertEqual("WARNING" in body, "OPEN" in edges)
        self.assertIn("117 open edges, 0 non-manifold edges: OPEN, the fill can get inside it", self.result.stdout)

    def test_blocked_cells_read_back(self):
        blocked = meshio.read(os.path.join(self.out, "blocked.vtu"))
        self.assertEqual(len(blocked.cells[0].data), len(self.cells))
        self.assertEqual(len(blocked.points), 8 * len(self.cells))
        ijk = np.stack([blocked.cell_data[n][0] for n in "IJK"], axis=1)
        self.assertEqual(sorted(map(tuple, ijk)), sorted(self.cells))
        # The grid: 10 cells a side, "blocked" set on exactly the listed cells (i fastest).
        grid = ET.parse(os.path.join(self.out, "grid.vtr")).getroot()
        self.assertEqual(grid.find("RectilinearGrid").get("WholeExtent"), "0 10 0 10 0 10")
        flags = np.array(grid.find(".//CellData/DataArray").text.split(), dtype=int)
        self.assertEqual(flags.size, 1000)
        self.assertEqual(sorted(np.flatnonzero(flags)), sorted((k - 1) * 100 + (j - 1) * 10 + i - 1 for i, j, k in self.cells))

    def test_bodies_read_back_placed(self):
        cube = meshio.read(os.path.join(self.out, "body1_unit_cube.vtu"))
        self.assertEqual(len(cube.points), 8)
        self.assertEqual(len(cube.cells[0].data), 12)
        # Cube -0.5..0.5: scaled by 2, then X moved by 0.25.
        np.testing.assert_array_equal(cube.points.min(axis=0), [-0.75, -1, -1])
        np.testing.assert_array_equal(cube.points.max(axis=0), [1.25, 1, 1])
        self.assertEqual(len(meshio.read(os.path.join(self.out, "body2_bunny.vtu")).points), 5055)
        vtm = ET.parse(os.path.join(self.out, "run.vtm")).getroot()
        for ds in vtm.iter("DataSet"):
            self.assertTrue(os.path.isfile(os.path.join(self.out, ds.get("file"))), ds.get("file"))


class ExampleRun(unittest.TestCase):
    """The cut-body example's run: its grid file lists no cells, its solver input file does."""

    def test_blocked_count_and_body(self):
        tmp = tempfile.TemporaryDirectory()
        out = os.path.join(tmp.name, "out")
        result = inspect(EXAMPLE_RUN, os.path.join(EXAMPLE_RUN, "block.Grid"), "--out", out, "--plane", "z=1.5")
        self.assertEqual(result.returncode, 0, result.stderr)
        with open(os.path.join(EXAMPLE_RUN, "SolverGdInp.dat")) as f:
            lines = f.read().splitlines()
        listed = int(lines[lines.index("# Num. of Body Cells:") + 1])
        blocked = meshio.read(os.path.join(out, "blocked.vtu"))
        self.assertEqual(len(blocked.cells[0].data), listed)
        self.assertEqual(len(meshio.read(os.path.join(out, "body1_1-x.vtu")).points), 8)
        self.assertTrue(os.path.isfile(os.path.join(out, "slice_K10.png")))


    def test_cut_body_repeating_its_first_point_is_closed(self):
        # The box written for a surface body: a centre point, the ring (closed by repeating its
        # first point) at X = 2 and at X = 4, and the centre point again.
        tmp = tempfile.TemporaryDirectory()
        run = os.path.join(tmp.name, "run")
        shutil.copytree(EXAMPLE_RUN, run)
        ring = "0.5  0.5\n0.5  1.5\n1.5  1.5\n1.5  0.5\n0.5  0.5\n"
        with open(os.path.join(run, "1-x.cut"), "w") as f:
            f.write("4  5\n2\n" + "1  1\n" * 5 + "2\n" + ring + "4\n" + ring + "4\n" + "1  1\n" * 5)
        result = inspect(run, os.path.join(run, "block.Grid"), "--no-pictures")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("16 triangles, 0 open edges, 0 non-manifold edges: closed", result.stdout)


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


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
