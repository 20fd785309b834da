#!/usr/bin/env python3
"""Lets programs that are not ours read and solve what the workbench writes.

Usage: oracles.py WORKBENCH GMSH_COUNTS [TEST...]. Ends with 77, which means skipped, where a program is missing.
"""
import math
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

try:
    import meshio
    import numpy
except ImportError:
    print("skipped: python3-meshio is not there")
    sys.exit(77)
if shutil.which("ccx") is None:
    print("skipped: calculix-ccx is not there")
    sys.exit(77)

from meshes import CORNERS, Mesh  # noqa: E402

WORKBENCH, GMSH_COUNTS = sys.argv[1:3]
MESHIO_KINDS = {"C3D4": "tetra", "C3D10": "tetra10", "C3D8": "hexahedron", "C3D20": "hexahedron20", "C3D6": "wedge",
                "C3D15": "wedge15", "S4": "quad", "S8R": "quad8", "S3": "triangle", "S6": "triangle6", "B31": "line",
                "B32": "line3"}
GMSH_KINDS = {"B31": 1, "S3": 2, "S4": 3, "C3D4": 4, "C3D8": 5, "C3D6": 6, "B32": 8, "S6": 9, "C3D10": 11, "S8R": 16,
              "C3D20": 17, "C3D15": 18}


class Folder:
    def __init__(self):
        self.path = tempfile.mkdtemp()

    def remove(self):
        shutil.rmtree(self.path)

    def write(self, name, text):
        path = os.path.join(self.path, name)
        with open(path, "w") as file:
            file.write(text)
        return path

    def export(self, name, *sources, **settings):
        """The file that the workbench writes of others, and what it says of it."""
        path = os.path.join(self.path, name)
        environment = {key: value for key, value in os.environ.items() if key not in ("DISPLAY", "WAYLAND_DISPLAY")}
        environment.update(settings)
        run = subprocess.run([WORKBENCH, "--export", path, *sources], env=environment, capture_output=True, text=True,
                             timeout=120)
        if run.returncode != 0:
            raise AssertionError("the export ended with %d: %s" % (run.returncode, run.stderr))
        return path, run.stderr

    def solve(self, path):
        """Displacements and forces of a deck by node, and counts of stress lines by set; fails on any warning."""
        name = os.path.splitext(os.path.basename(path))[0]
        run = subprocess.run(["ccx", "-i", name], cwd=self.path, capture_output=True, text=True, timeout=120,
                             env={**os.environ, "OMP_NUM_THREADS": "1"})
        if run.returncode != 0 or "*ERROR" in run.stdout or "*WARNING" in run.stdout:
            raise AssertionError("the solver says of %s: %s" % (name, run.stdout[-2000:]))
        results = {}
        with open(os.path.join(self.path, name + ".dat")) as file:
            table = None
            for line in file:
                if " for set " in line:
                    words = line.split()
                    table = results.setdefault((words[0], words[words.index("set") + 1]), [])
                elif line.strip() and table is not None:
                    # Stresses may name the system that they are in behind the numbers.
                    table.append([float(word) for word in line.split() if not re.match("[A-Z_]", word)])
        return results


def mixed():
    """Groups of several kinds and depths."""
    mesh = Mesh()
    mesh.beam("C3D8", "HEXES", (0, 0, 0), 3)
    mesh.beam("C3D4", "TETS", (3, 0, 0), 2)
    mesh.beam("C3D10", "SECOND", (10, 0, 0), 2)
    mesh.beam("C3D20", "BRICKS", (10, 5, 0), 2)
    mesh.beam("C3D6", "WEDGES", (10, 10, 0), 2)
    mesh.beam("S4", "PLATE", (0, 20, 0), 3)
    mesh.beam("S3", "PLATE", (3, 20, 0), 2)
    mesh.beam("S8R", "SHELL-2", (0, 30, 0), 2)
    mesh.beam("C3D8", "BODY", (0, 0, 1), 2)
    mesh.nest("BODY", ["HEXES", "TETS"])
    mesh.nest("EALL", ["BODY", "SECOND"])
    return mesh


def key(points, nodes):
    return tuple(sorted(tuple(round(float(value), 6) for value in points[node]) for node in nodes))


class Reading(unittest.TestCase):
    """Nodes, elements and groups as other programs read them."""

    def setUp(self):
        self.folder = Folder()
        self.addCleanup(self.folder.remove)
        self.mesh = mixed()
        self.source = self.folder.write("source.inp", self.mesh.deck())

    def wanted(self, numbers):
        return sorted((MESHIO_KINDS[self.mesh.elements[number][0]], key(self.mesh.nodes, self.mesh.elements[number][1]))
                      for number in numbers)

    def compare(self, read, groups, group_of):
        """`groups` are what was read, place by place in each block of cells."""
        self.assertEqual(len(read.points), len(self.mesh.nodes))
        self.assertEqual(sorted(key(read.points, [i]) for i in range(len(read.points))),
                         sorted(key(self.mesh.nodes, [number]) for number in self.mesh.nodes))
        cells = [(block.type, [key(read.points, cell) for cell in block.data]) for block in read.cells]
        self.assertEqual(sorted((kind, cell) for kind, block in cells for cell in block),
                         self.wanted(self.mesh.elements))
        for name in self.mesh.groups:
            wanted = group_of(name)
            if not wanted:
                self.assertNotIn(name, groups)
                continue
            members = [(kind, block[place]) for (kind, block), places in zip(cells, groups[name])
                       for place in places]
            self.assertEqual(sorted(members), self.wanted(wanted), name)

    def test_decks_are_read_back_whole(self):
        path, said = self.folder.export("mixed.inp", self.source)
        read = meshio.read(path)
        self.compare(read, read.cell_sets, lambda name: self.mesh.groups[name])
        self.assertIn("groups: %d" % len(read.cell_sets), said)

    def test_mesh_files_are_read_back_with_flat_groups(self):
        path, said = self.folder.export("mixed.msh", self.source)
        read = meshio.read(path)
        numbers = read.cell_data["gmsh:physical"]
        groups = {name: [numpy.flatnonzero(block == number) for block in numbers]
                  for name, (number, _) in read.field_data.items()}
        self.compare(read, groups, self.mesh.own)
        self.assertIn("groups: %d" % len(read.field_data), said)
        for name in ("EALL/BODY", "BODY/HEXES", "EALL/SECOND"):
            self.assertIn(name, said)

    def test_universal_files_are_read_by_the_mesh_library(self):
        path, said = self.folder.export("mixed.unv", self.source)
        out = subprocess.run([GMSH_COUNTS, path], capture_output=True, text=True, check=True, timeout=60).stdout
        lines = [line.split(" ", 2) for line in out.splitlines()]
        nodes = [line[1:] for line in lines if line[0] == "nodes"][0]
        self.assertEqual(int(nodes[0]), len(self.mesh.nodes))
        sums = [sum(at[axis] for at in self.mesh.nodes.values()) for axis in range(3)]
        for text, wanted in zip(nodes[1].split(), sums):
            self.assertAlmostEqual(float(text), wanted, places=5)
        kinds = {int(line[1]): int(line[2]) for line in lines if line[0] == "kind"}
        wanted = {}
        for kind, _ in self.mesh.elements.values():
            wanted[GMSH_KINDS[kind]] = wanted.get(GMSH_KINDS[kind], 0) + 1
        self.assertEqual(kinds, wanted)
        groups = {line[2]: int(line[1]) for line in lines if line[0] == "group"}
        self.assertEqual(groups, {name: len(self.mesh.own(name)) for name in self.mesh.groups if self.mesh.own(name)})
        self.assertIn("groups: %d" % len(groups), said)

    def test_numbers_have_points_where_people_write_commas(self):
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", os.path.join(self.folder.path, "de_DE.UTF-8")],
                       check=True, capture_output=True)
        for ending in ("inp", "msh", "unv", "bdf", "stl"):
            with open(self.folder.export("points." + ending, self.source)[0]) as file:
                wanted = file.read()
            with open(self.folder.export("points." + ending, self.source, LOCPATH=self.folder.path,
                                         LC_ALL="de_DE.UTF-8")[0]) as file:
                self.assertEqual(file.read(), wanted, ending)

    def test_bulk_data_is_read_as_geometry(self):
        path, said = self.folder.export("mixed.bdf", self.source)
        read = meshio.read(path)
        self.assertEqual(len(read.points), len(self.mesh.nodes))
        cells = sorted((block.type, key(read.points, cell)) for block in read.cells for cell in block.data)
        self.assertEqual(cells, self.wanted(self.mesh.elements))
        self.assertIn("HEXES", said)

    def test_facets_close_the_body(self):
        mesh = Mesh()
        mesh.beam("C3D8", "BAR", (0, 0, 0), 3)
        path, said = self.folder.export("bar.stl", self.folder.write("bar.inp", mesh.deck()))
        read = meshio.read(path)
        triangles = read.points[read.cells[0].data]
        normals = numpy.cross(triangles[:, 1] - triangles[:, 0], triangles[:, 2] - triangles[:, 0])
        self.assertAlmostEqual(float(numpy.linalg.norm(normals, axis=1).sum() / 2), 14.0)
        self.assertAlmostEqual(float(numpy.einsum("ij,ij->", normals, triangles[:, 0]) / 6), 3.0)  # volume
        self.assertIn("elements: %d" % len(triangles), said)


ANALYSIS = """*BOUNDARY
FIXED, 1, 3
*STEP
*STATIC
*DLOAD
%(load)s
*NODE PRINT, NSET=NALL
U, RF
*EL PRINT, ELSET=%(printed)s
S
*END STEP
"""


def sets_of_nodes(mesh):
    fixed = [number for number, at in mesh.nodes.items() if at[0] == 0]
    return ("*NSET, NSET=NALL\n" + "".join("%d,\n" % number for number in sorted(mesh.nodes)) + "*NSET, NSET=FIXED\n" +
            "".join("%d,\n" % number for number in sorted(fixed)))


STEEL = "*MATERIAL, NAME=STEEL\n*ELASTIC\n210000., .3\n*DENSITY\n7.8E-9\n"
BRASS = "*MATERIAL, NAME=BRASS\n*ELASTIC\n90000., .34\n*DENSITY\n8.4E-9\n"


class Shapes(unittest.TestCase):
    """What is written of shapes holds for the mesh library what the file held that they came from."""

    def setUp(self):
        self.folder = Folder()

    def tearDown(self):
        self.folder.remove()

    def look(self, path):
        """Solids, their volume, and the box around them."""
        run = subprocess.run([GMSH_COUNTS, path], capture_output=True, text=True, check=True, timeout=60)
        found = [line.split()[1:] for line in run.stdout.splitlines() if line.startswith("solids ")]
        return int(found[0][0]), [float(number) for number in found[0][1:]]

    def test_solids_volumes_and_places(self):
        pump = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples", "pump.step")
        count, sizes = self.look(pump)
        self.assertEqual(count, 9)
        for name in ("pump.step", "pump.brep"):
            with self.subTest(name):
                path, said = self.folder.export(name, pump)
                self.assertIn("parts: 9", said)
                written, found = self.look(path)
                self.assertEqual(written, count)
                for is_now, was in zip(found, sizes):
                    self.assertAlmostEqual(is_now, was, delta=1e-3 * (1 + abs(was)))


class Solving(unittest.TestCase):
    """The same displacements and forces before import and after export."""

    def setUp(self):
        self.folder = Folder()
        self.addCleanup(self.folder.remove)

    def compare(self, before, after):
        first = self.folder.solve(before)
        second = self.folder.solve(after)
        self.assertEqual(first.keys(), second.keys())
        for table in first:
            a = numpy.array(first[table])
            b = numpy.array(second[table])
            self.assertEqual(a.shape, b.shape, table)
            self.assertGreater(numpy.abs(a[:, 1:]).max(), 0, table)
            self.assertLess(numpy.abs(a - b).max(), 1e-6 * numpy.abs(a[:, 1:]).max(), table)

    def solve_both(self, mesh, sections, load, printed):
        """The mesh with its sections goes through the workbench, alone and with the whole analysis behind it."""
        rest = sets_of_nodes(mesh) + ANALYSIS % {"load": load, "printed": printed}
        model = mesh.deck() + sections
        before = self.folder.write("before.inp", model + rest)
        path, _ = self.folder.export("exported.inp", self.folder.write("model.inp", model))
        with open(path) as file:
            after = self.folder.write("after.inp", file.read() + rest)
        self.compare(before, after)
        whole, said = self.folder.export("whole.inp", before)
        self.assertNotIn("not written", said)
        self.compare(before, whole)

    def test_each_kind_of_element(self):
        for kind in CORNERS:
            if kind.startswith("B"):
                continue
            with self.subTest(kind):
                mesh = Mesh()
                mesh.beam(kind, "BAR", (0, 0, 0), 4)
                section = "*SHELL SECTION, ELSET=BAR, MATERIAL=STEEL\n0.1\n" if kind.startswith("S") else \
                    "*SOLID SECTION, ELSET=BAR, MATERIAL=STEEL\n"
                self.solve_both(mesh, section + STEEL, "BAR, GRAV, 9810., 0., 0., -1.", "BAR")

    def nested(self):
        mesh = Mesh()
        mesh.beam("C3D8", "ROOT", (0, 0, 0), 1)
        mesh.beam("C3D8", "MIDDLE", (1, 0, 0), 2)
        mesh.beam("C3D8", "TIP", (3, 0, 0), 2)
        mesh.nest("MIDDLE", ["TIP"])
        mesh.nest("EALL", ["ROOT", "MIDDLE"])
        return mesh

    def test_a_load_and_a_section_on_nested_sets(self):
        self.solve_both(self.nested(), "*SOLID SECTION, ELSET=EALL, MATERIAL=STEEL\n" + STEEL,
                        "EALL, GRAV, 9810., 0., 0., -1.", "EALL")

    def test_sections_of_a_set_and_of_one_within_it(self):
        mesh = self.nested()
        # The solver takes the last section that names an element.
        sections = ("*SOLID SECTION, ELSET=EALL, MATERIAL=STEEL\n" + "*SOLID SECTION, ELSET=TIP, MATERIAL=BRASS\n" +
                    STEEL + BRASS)
        self.solve_both(mesh, sections, "MIDDLE, GRAV, 9810., 0., 0., -1.", "MIDDLE")

    def test_parts_and_instances_against_a_deck_flattened_by_hand(self):
        mesh = Mesh()
        mesh.beam("C3D8", "BAR", (0, 0, 0), 3)
        count, last = max(mesh.nodes), max(mesh.elements)
        part = sets_of_nodes(mesh)
        parts = ("*PART, NAME=P\n" + mesh.deck() + part + "*SURFACE, NAME=SKIN\nBAR, S2\n*ORIENTATION, NAME=ALONG\n" +
                 "1., 0., 0., 0., 1., 0.\n*SOLID SECTION, ELSET=BAR, MATERIAL=WOOD, ORIENTATION=ALONG\n*END PART\n" +
                 "*ASSEMBLY, NAME=A\n*INSTANCE, NAME=LEFT, PART=P\n*END INSTANCE\n" +
                 "*INSTANCE, NAME=RIGHT, PART=P\n20., 0., 0.\n20., 0., 0., 20., 0., 1., 30.\n*END INSTANCE\n" +
                 "*NSET, NSET=FIXED\nLEFT.FIXED, RIGHT.FIXED\n*NSET, NSET=NALL\nLEFT.NALL, RIGHT.NALL\n" +
                 "*ELSET, ELSET=BOTH\nLEFT.BAR, RIGHT.BAR\n*ELSET, ELSET=ONE, INSTANCE=RIGHT\n%d\n*END ASSEMBLY\n" % last)
        # The other instance, shifted and turned by hand.
        cos, sin = round(math.cos(math.pi / 6), 12), .5
        nodes = dict(mesh.nodes)
        for number, (x, y, z) in mesh.nodes.items():
            nodes[number + count] = (round(20 + cos * x - sin * y, 12), round(sin * x + cos * y, 12), z)
        elements = dict(mesh.elements)
        for number, (kind, corners) in mesh.elements.items():
            elements[number + last] = (kind, [corner + count for corner in corners])
        flat = Mesh()
        flat.nodes, flat.elements = nodes, elements
        flat.groups = {"LEFT": set(mesh.elements), "RIGHT": set(elements) - set(mesh.elements), "BOTH": set(elements),
                       "ONE": {2 * last}}
        fixed = [number for number, at in mesh.nodes.items() if at[0] == 0]
        lists = {"NALL": sorted(nodes), "FIXED": sorted(fixed + [number + count for number in fixed])}
        by_hand = (flat.deck() + "".join("*NSET, NSET=%s\n" % name + "".join("%d,\n" % number for number in numbers)
                                         for name, numbers in lists.items()) +
                   "*SURFACE, NAME=SKIN\nRIGHT, S2\n*ORIENTATION, NAME=A\n1., 0., 0., 0., 1., 0.\n" +
                   "*ORIENTATION, NAME=B\n%r, %r, 0., %r, %r, 0.\n" % (cos, sin, -sin, cos) +
                   "*SOLID SECTION, ELSET=LEFT, MATERIAL=WOOD, ORIENTATION=A\n" +
                   "*SOLID SECTION, ELSET=RIGHT, MATERIAL=WOOD, ORIENTATION=B\n")
        wood = ("*MATERIAL, NAME=WOOD\n*ELASTIC, TYPE=ENGINEERING CONSTANTS\n" +
                "11000., 500., 600., .35, .37, .4, 600., 700.\n60.\n*DENSITY\n5.E-10\n")
        analysis = ("*BOUNDARY\nFIXED, 1, 3\n*STEP\n*STATIC\n*DLOAD\nBOTH, GRAV, 9810., 0., 0., -1.\n*CLOAD\n%s, 2, 1.\n" +
                    "*DSLOAD\n%s, P, .1\n*NODE PRINT, NSET=NALL\nU, RF\n*EL PRINT, ELSET=ONE\nS\n*END STEP\n")
        tip = max(mesh.nodes, key=lambda number: mesh.nodes[number])
        source = self.folder.write("parts.inp", parts + wood + analysis % ("LEFT.%d" % tip, "RIGHT.SKIN"))
        path, said = self.folder.export("flat.inp", source)
        self.assertNotIn("not kept", said)
        self.compare(self.folder.write("by_hand.inp", by_hand + wood + analysis % (tip, "SKIN")), path)


if __name__ == "__main__":
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
