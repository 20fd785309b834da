"""The examples for scripts, run as users run them."""

import os
import pathlib
import re
import shutil
import subprocess
import tempfile
import unittest

PROGRAMS = pathlib.Path(os.environ["QD_PROGRAMS"])
SOURCES = pathlib.Path(os.environ["QD_SOURCES"])


class Examples(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.place = pathlib.Path(self.folder.name)
        self.files = self.place / "files"
        self.files.mkdir()
        subprocess.run([PROGRAMS / "qd_make_models", "pump", self.files / "pump.step"], check=True)
        shutil.copy(SOURCES / "examples/bracket.inp", self.files)
        (self.files / "broken.step").write_text("ISO-10303-21;")

    def tearDown(self):
        self.folder.cleanup()

    def run_example(self, name, *arguments, status=0):
        command = [PROGRAMS / "workbench", "--script", SOURCES / "examples/python" / name, *map(str, arguments)]
        ended = subprocess.run(command, capture_output=True, text=True)
        self.assertEqual(ended.returncode, status, ended.stderr + ended.stdout)
        return ended

    def test_convert_folder(self):
        ended = self.run_example("convert_folder.py", self.files, self.place / "out", ".msh", status=1)
        self.assertIn("broken.step", ended.stderr)
        self.assertEqual(sorted(path.name for path in (self.place / "out").iterdir()), ["bracket.msh", "pump.msh"])

    def test_colour_by_volume(self):
        ended = self.run_example("colour_by_volume.py", self.files / "pump.step", self.place / "p.png")
        colours = re.findall("#[0-9A-F]{6}", ended.stdout)
        self.assertEqual((len(colours), colours[0], colours[-1]), (9, "#3D3DF2", "#F23D3D"))
        self.assertEqual((self.place / "p.png").read_bytes()[1:4], b"PNG")

    def test_solve_assembly(self):
        ended = self.run_example("solve_assembly.py", self.files / "pump.step", self.place / "ccx", 8)
        self.assertIn("Shaft", ended.stdout)

    def test_report(self):
        self.run_example("report.py", self.files / "pump.step", self.place / "report")
        page = (self.place / "report/report.html").read_text()
        pictures = re.findall('src="(.*?)"', page)
        self.assertEqual(len({(self.place / "report" / name).read_bytes() for name in pictures[:3]}), 3)
        self.assertIn("Shaft", page)

    def test_check_folder(self):
        ended = self.run_example("check_folder.py", self.files, 7)
        self.assertEqual(ended.stdout.count(": sound"), 2)


if __name__ == "__main__":
    unittest.main()
