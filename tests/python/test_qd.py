"""The module for scripts, over real files. Run by CTest, which says where the module and the programs are."""

import inspect
import os
import pathlib
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import warnings

import numpy as np

import qd

PROGRAMS = pathlib.Path(os.environ["QD_PROGRAMS"])
SOURCES = pathlib.Path(os.environ["QD_SOURCES"])


def children():
    """Programs that this one has started and that have not ended."""
    return subprocess.run(["ps", "--ppid", str(os.getpid()), "-o", "comm="], capture_output=True,
                          text=True).stdout.split()


class Scripts(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.place = pathlib.Path(cls.folder.name)
        cls.pump = cls.place / "pump.step"
        subprocess.run([PROGRAMS / "qd_make_models", "pump", cls.pump], check=True)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def setUp(self):
        warnings.simplefilter("ignore", qd.Note)
        self.doc = qd.open(self.pump)

    def part(self, name):
        return next(part for part in self.doc.parts if part.name == name)

    def test_acts_are_one_step_or_none(self):
        shaft = self.part("Shaft")
        with self.doc.act("Tidy up") as doc:
            shaft.name = "Axle"
            shaft.colour = "#FF8000"
            group = doc.group("Turning", [shaft])
            shaft.material = doc.material("Steel", youngs_modulus=210e3, density=7.85e-9)
        self.assertEqual((shaft.name, shaft.colour, shaft.group, shaft.material.name),
                         ("Axle", "#FF8000", group, "Steel"))
        self.assertEqual(self.doc.undo_title, "Tidy up")
        self.doc.undo()
        self.assertEqual(shaft.name, "Shaft")
        self.assertFalse(group.exists)
        with self.assertRaises(qd.GoneError):
            group.name
        self.doc.redo()
        self.assertEqual(group.parts, [shaft])
        before = self.doc.tree()
        with self.assertRaises(ZeroDivisionError), self.doc.act("Fails"):
            shaft.name = "Never"
            1 / 0
        self.assertEqual(self.doc.tree(), before)
        with self.doc.act("Open"), self.assertRaises(qd.Error), self.doc.act("Inner"):
            pass
        with self.assertRaises(qd.Error):  # what has failed in an act fails all of it
            with self.doc.act("Two"):
                shaft.name = "Never"
                try:
                    shaft.name = "\u200b"
                except qd.Error:
                    pass
        self.assertEqual(self.doc.tree(), before)
        shaft.name = "Shaft"  # nothing was left open

    def test_shapes_are_worked_on_and_new_records_made(self):
        shaft, cover = self.part("Shaft"), self.part("Cover")
        lowest, volume = shaft.points[:, 0].min(), shaft.volume
        self.doc.translate(shaft, (100, 0, 0))
        self.assertAlmostEqual(shaft.points[:, 0].min(), lowest + 100, 3)
        self.doc.scale([shaft], (0, 0, 0), 2)
        self.assertAlmostEqual(shaft.volume / volume, 8, 4)
        taken = self.doc.take_out([(cover, "face", tuple(map(float, cover.points[0])), "Top")])
        self.assertEqual([(part.name, part.kind) for part in taken], [("Top", "surface")])
        empty = self.doc.mesh_set("Empty")
        node = self.doc.add_node((1, 2, 3), empty)
        self.assertEqual(empty.node_ids.tolist(), [node])
        self.doc.mirror(empty, (0, 0, 0), (0, 0, 5))
        self.assertEqual(empty.coordinates.tolist(), [[1, 2, -3]])
        system = self.doc.coordinate_system("Axle", "cylindrical", origin=(1, 0, 0))
        with self.assertRaises(qd.Error):
            system.place(x_axis=(0, 1, 0))  # along the other one
        system.place(x_axis=(0, 1, 0), xy_plane=(1, 0, 0))
        self.assertEqual((system.kind, system.x_axis, system.parent.id), ("cylindrical", (0, 1, 0), 1))
        for wrong in (lambda: self.doc.scale(shaft, (0, 0, 0), 0), lambda: self.doc.mirror(shaft, (0, 0, 0), (0, 0, 0)),
                      lambda: self.doc.mesh_set("A", [1]), lambda: self.doc.colour_meshes("set", 0, 1),
                      lambda: setattr(shaft, "opacity", 2), lambda: setattr(shaft, "mode", "free_faces"),
                      lambda: self.doc.mesh(shaft, size=-1), lambda: self.doc.mesh(shaft, size=float("nan")),
                      lambda: self.doc.mesh(shaft, size=float("inf")), lambda: self.doc.check(limit=float("nan")),
                      lambda: self.doc.check("duplicate_nodes", tolerance=-1)):
            self.assertRaises(ValueError, wrong)

    def test_menus_of_rows_are_of_windows(self):
        self.assertFalse(qd.menu("Weigh", print, ["part"]))
        for wrong in (lambda: qd.menu(" ", print), lambda: qd.menu("A" * 101, print),
                      lambda: qd.menu("A", print, ["nonsense"])):
            self.assertRaises(ValueError, wrong)
        self.assertRaises(TypeError, lambda: qd.menu("A", 1))

    def test_what_is_shown_is_one_step_each(self):
        shaft, cover = self.part("Shaft"), self.part("Cover")
        self.doc.isolate([shaft])
        self.assertEqual((shaft.shown, cover.shown), (True, False))
        self.doc.leave_isolation()
        self.assertTrue(cover.shown)
        shaft.mode, shaft.opacity, shaft.flexible = "wireframe", 0.5, False
        self.assertEqual((shaft.mode, shaft.opacity, shaft.flexible), ("wireframe", 0.5, False))
        for _ in range(2):
            self.doc.undo()
        self.assertEqual((shaft.mode, shaft.opacity), ("wireframe", 1))
        some = self.doc.mesh_set("Some")
        self.doc.mark_all({"nodes"})
        some.marks = {"element_ids"}
        self.assertEqual(some.marks, {"element_ids"})
        self.assertEqual(self.doc.mesh_set("Other").marks, {"nodes"})
        group = self.doc.group("New", [])
        self.doc.current_group = group
        self.assertEqual(self.doc.current_group, group)

    def test_refusals_are_the_sentences_of_the_program(self):
        group = self.doc.group("One", [])
        with self.assertRaisesRegex(qd.Error, "One"):
            self.doc.group("One", [])
        with self.assertRaises(qd.Error):
            self.part("Shaft").name = ""
        with self.assertRaises(ValueError):
            self.part("Shaft").colour = "red"
        with self.assertRaises(ValueError):
            self.doc.delete([qd.open(self.pump).parts[0]])
        with self.assertRaisesRegex(qd.Error, "none.step: the file does not exist"):
            qd.open(self.place / "none.step")
        with self.assertRaises(qd.Error):
            self.doc.find("nothing:1")
        self.doc.close()
        with self.assertRaises(qd.GoneError):
            group.name

    def test_queries_and_trees_follow(self):
        self.assertEqual([part.name for part in self.doc.find("type:part shaft")], ["Shaft"])
        self.part("Shaft").name = "Axle"
        self.assertEqual(self.doc.find("shaft"), [])
        axle, = self.doc.find("axle")
        self.assertIn((2, "Axle", axle), [row for row in self.doc.walk() if row[2] == axle])
        self.doc.hide(axle)
        self.assertFalse(axle.shown)
        self.assertEqual(self.doc.find("hidden: type:part"), [axle])
        axle.delete()
        self.assertEqual(self.doc.find("axle"), [])

    def test_meshes_are_arrays_that_outlive_their_records(self):
        shaft = self.part("Shaft")
        mesh, = self.doc.mesh(shaft, size=6)
        self.assertEqual((mesh.part, shaft.mesh), (shaft, mesh))
        nodes, places = mesh.node_ids, mesh.coordinates
        self.assertEqual(places.shape, (mesh.node_count, 3))
        self.assertEqual(np.shares_memory(places, mesh.coordinates), True)
        with self.assertRaises(ValueError):
            places[0, 0] = 1
        block = mesh.blocks[0]
        self.assertTrue(np.isin(block.node_ids, nodes).all())
        corners = places[np.searchsorted(nodes, block.node_ids)]
        volume = np.einsum("ij,ij->i", corners[:, 1] - corners[:, 0],
                           np.cross(corners[:, 2] - corners[:, 0], corners[:, 3] - corners[:, 0])).sum() / 6
        self.assertAlmostEqual(volume, self.doc.info(mesh)["volume"], delta=volume * 1e-9)
        bad = self.doc.check(measure="aspect_ratio", limit=1.01)
        self.assertEqual(len(bad.elements), bad.found)
        some = self.doc.mesh_set("Bad", bad.elements[:5], beside=mesh)
        self.assertEqual((some.name, some.element_count), ("Bad", 5))
        total = places.sum()
        self.doc.delete([mesh, some])
        self.doc.close()
        self.assertEqual(places.sum(), total)
        self.assertEqual(len(block.element_ids), len(block))

    def test_what_is_written_can_be_read(self):
        self.doc.mesh(self.doc.find("type:solid"), size=8)
        self.part("Shaft").shown = False
        self.doc.save(self.place / "kept.qdw")
        again = qd.open(self.place / "kept.qdw")
        self.assertEqual(again.tree().replace(again.name, ""), self.doc.tree().replace(self.doc.name, ""))
        written = self.doc.export(self.place / "shaft.inp", records=self.part("Shaft"), units="m")
        read = qd.open(self.place / "shaft.inp").info()
        self.assertEqual((read["elements"], read["nodes"]), (written["elements"], written["nodes"]))
        self.assertAlmostEqual(read["volume"] * 1e9 / self.doc.info(self.part("Shaft").mesh)["volume"], 1, places=6)
        with self.assertWarns(qd.Note):
            warnings.simplefilter("always", qd.Note)
            self.doc.export(self.place / "parts.inp")
        with self.assertRaises(qd.Error):
            self.doc.export(self.place / "parts.xyz")

    def test_pictures_show_what_is_shown(self):
        self.doc.hide(self.doc.parts)
        pictures = []
        for parts in ([], [self.part("Shaft")]):
            self.doc.show(parts)
            self.doc.screenshot(self.place / "p.png", size=(160, 120), view="front")
            pictures.append((self.place / "p.png").read_bytes())
        self.assertNotEqual(*pictures)
        with self.assertRaisesRegex(qd.Error, "upside"):
            self.doc.screenshot(self.place / "p.png", view="upside")
        self.assertEqual(children(), ["ps"])

    def test_long_work_shows_progress_and_is_interrupted(self):
        seen = []
        self.doc.mesh(size=6, progress=seen.append)
        self.assertTrue(seen and all(0 <= done <= 1 for done in seen))

        def stop(done):
            raise LookupError
        before = self.doc.tree()
        with self.assertRaises(LookupError):
            self.doc.mesh(size=0.5, progress=stop)
        timer = threading.Timer(0.3, os.kill, (os.getpid(), signal.SIGINT))
        timer.start()
        with self.assertRaises(KeyboardInterrupt):
            self.doc.mesh(size=0.4)
            time.sleep(5)  # where the machine was quicker
        self.assertEqual(self.doc.tree(), before)
        self.assertEqual(children(), ["ps"])

    def test_stubs_and_manual_name_all_there_is(self):
        stubs = (SOURCES / "workbench/python/qd.pyi").read_text()
        manual = (SOURCES / "docs/manual/python.md").read_text()
        for name, thing in inspect.getmembers(qd):
            if name.startswith("__"):
                continue
            self.assertRegex(stubs, rf"\b(class|def) {name}\b")
            members = vars(thing) if inspect.isclass(thing) and not issubclass(thing, Exception) else {}
            body = re.search(rf"^class {name}\b.*?(?=^\S|\Z)", stubs, re.M | re.S)
            for member, value in members.items():
                if member.startswith("_"):
                    continue
                self.assertRegex(body[0], rf"\b{member}\b", f"{name}.{member} in the stubs")
                self.assertIn(f"`{member}", manual, f"{name}.{member} in the manual")
                self.assertTrue(value.__doc__, f"{name}.{member}")


if __name__ == "__main__":
    unittest.main()
