"""Converts all files of a folder: convert_folder.py FOLDER OUT ENDING, such as "parts meshes .msh".

Solids are meshed where the ending is that of a mesh. A file that cannot be read keeps no other from being converted.
"""

import pathlib
import sys
import warnings

import qd

MESHES = {".msh", ".inp", ".bdf", ".unv", ".stl"}


def convert(source, target):
    with qd.open(source) as doc:
        if target.suffix in MESHES and not doc.mesh_sets:
            doc.mesh()
        if target.suffix == ".qdw":
            doc.save(target)
            return "kept"
        return ", ".join(f"{name}: {count}" for name, count in doc.export(target).items() if count)


def main(folder, out, ending):
    warnings.simplefilter("ignore", qd.Note)
    out = pathlib.Path(out)
    out.mkdir(parents=True, exist_ok=True)
    failed = 0
    for source in sorted(pathlib.Path(folder).iterdir()):
        if not source.is_file():
            continue
        try:
            print(f"{source.name}: {convert(source, out / (source.stem + ending))}")
        except qd.Error as error:
            print(error, file=sys.stderr)
            failed = 1
    return failed


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
