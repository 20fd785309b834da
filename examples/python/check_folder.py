"""Does random things to all files of a folder and looks whether that held: check_folder.py FOLDER [SEED [ACTS]]

Whatever is done can be taken back, a kept document is the same when it is read again, and a mesh that is written has
all of its elements when it is read again.
"""

import pathlib
import random
import sys
import tempfile
import warnings

import qd


def do_something(doc, chance):
    """One random act on random records; a refusal is none."""
    records = [*doc.parts, *doc.mesh_sets, *doc.groups]
    if not records:
        return
    some = chance.sample(records, chance.randint(1, min(5, len(records))))
    try:
        with doc.act("Something"):
            for record in some:
                what = chance.randrange(4)
                if what == 0:
                    record.name = "".join(chance.choices("aZ9 -_äß漢😀\"'", k=chance.randint(0, 80)))
                elif what == 1 and hasattr(record, "colour"):
                    record.colour = tuple(chance.random() for _ in range(3))
                elif what == 2:
                    doc.group(f"group {chance.random()}", doc.find(f"id:{record.id} type:part"))
                elif chance.random() < 0.3:
                    record.delete()
    except (qd.Error, UnicodeError):
        pass


def rows(doc):
    """What the trees show, but for the document's own name. What has come back stands behind the others."""
    return sorted(doc.tree().replace(doc.name, "").split("\n"))


def check(source, chance, acts, folder):
    doc = qd.open(source)
    elements = doc.info()["elements"]
    if elements:
        doc.export(folder / "again.inp")
        again = qd.open(folder / "again.inp").info()["elements"]
        assert again == elements, f"{source}: {elements} elements are written, {again} are read"
    before = rows(doc)
    first = doc.undo_title
    for _ in range(acts):
        do_something(doc, chance)
    doc.save(folder / "kept.qdw")
    assert rows(qd.open(folder / "kept.qdw")) == rows(doc), f"{source}: the kept document differs"
    while doc.undo_title == "Something":
        doc.undo()
    assert (rows(doc), doc.undo_title) == (before, first), f"{source}: not all was taken back"


def main(folder, seed=None, acts=30):
    warnings.simplefilter("ignore", qd.Note)
    seed = int(seed) if seed is not None else random.randrange(10**9)
    failed = 0
    with tempfile.TemporaryDirectory() as place:
        for source in sorted(pathlib.Path(folder).iterdir()):
            if not source.is_file():
                continue
            try:
                check(source, random.Random(f"{seed} {source.name}"), int(acts), pathlib.Path(place))
                print(f"{source.name}: sound")
            except qd.Error as error:
                print(f"{source.name}: not read: {error}")
            except AssertionError as error:
                print(f"seed {seed}: {error}", file=sys.stderr)
                failed = 1
    return failed


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3, 4):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
