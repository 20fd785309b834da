"""How long scripts and the command line take beside what they stand on: times.py PROGRAMS [--short]

PROGRAMS is the folder with workbench and qd_read_write. Ends with 1 when work was not done, and, unless it is to be
short, when something is slower than it is meant to be.
"""

import pathlib
import subprocess
import sys
import tempfile
import time
import timeit

import qd


def timed(work, clock):
    start = clock()
    work()
    return clock() - start


def calls(doc):
    """Microseconds of the processor of one call on one record."""
    count = 20_000 if SHORT else 500_000
    record = doc.parts[0] if doc.parts else doc.materials[0]

    def least(statement):
        return min(timeit.repeat(statement, timer=time.process_time, globals={"record": record}, number=count, repeat=3))
    empty = least("pass")
    names = least("record.name")
    return (names - empty) / count * 1e6


def renames(count):
    """Seconds of the processor that renaming so many records in one act takes."""
    doc = qd.Document()
    with doc.act("Make"):
        for place in range(count):
            doc.material(f"material {place}")
    records = doc.materials
    names = [f"renamed {place}" for place in range(count)]

    def work():
        with doc.act("Rename"):
            for record, name in zip(records, names):
                record.name = name
    seconds = timed(work, time.process_time)
    assert doc.materials[-1].name == names[-1]
    doc.undo()
    assert doc.materials[-1].name == f"material {count - 1}"
    return seconds


def export(count):
    """Seconds of workbench --export, and of reading and writing in one process."""
    with tempfile.TemporaryDirectory() as folder:
        place = pathlib.Path(folder)
        subprocess.run([PROGRAMS / "qd_read_write", "make", str(count), place / "in.msh"], check=True)
        plain = ours = 1e9
        for _ in range(1 if SHORT else 3):
            command = [PROGRAMS / "workbench", "--export", place / "ours.unv", place / "in.msh"]
            ours = min(ours, timed(lambda: subprocess.run(command, check=True, capture_output=True), time.perf_counter))
            said = subprocess.run([PROGRAMS / "qd_read_write", place / "in.msh", place / "plain.unv"], check=True,
                                  capture_output=True, text=True)
            plain = min(plain, float(said.stdout))
        assert (place / "ours.unv").stat().st_size >= (place / "plain.unv").stat().st_size
        return ours, plain


PROGRAMS = pathlib.Path(sys.argv[1])
SHORT = "--short" in sys.argv


def main():
    good = True

    def tell(what, value, most):
        nonlocal good
        good = good and value <= most
        print(f"{what}: {value:.3g}, meant to be at most {most}")
    doc = qd.Document()
    doc.material("Steel")
    tell("one call on one record, us", calls(doc), 2)
    count = 2_000 if SHORT else 100_000
    tell(f"{count} renames in one act, s", renames(count), 0.5)
    count = 1_000 if SHORT else 2_000_000
    ours, plain = export(count)
    print(f"--export of {count} elements: {ours:.3g} s, reading and writing {plain:.3g} s")
    tell("--export beside both", ours / plain, 1.5)
    return 0 if good or SHORT else 1


if __name__ == "__main__":
    sys.exit(main())
