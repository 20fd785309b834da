"""Meshes an assembly and lets CalculiX find how it bears its own weight: solve_assembly.py FILE.step FOLDER [SIZE]

Each part becomes a set of elements under its name, and stands on its lowest nodes. These must bear what weighs on all
others.
"""

import pathlib
import re
import subprocess
import sys
import warnings

import numpy as np

import qd

GRAVITY = 9810.0  # mm/s^2
STEEL = {"youngs_modulus": 210e3, "poissons_ratio": 0.3, "density": 7.85e-9}  # MPa, t/mm^3


def lines_of(numbers):
    return "\n".join(", ".join(map(str, numbers[i:i + 8])) for i in range(0, len(numbers), 8))


def weight_on(mesh, lowest, density):
    """The weight of linear tetrahedra, a quarter of each on each of its nodes, but for that on the lowest nodes."""
    weight = 0.0
    for block in mesh.blocks:
        corners = mesh.coordinates[np.searchsorted(mesh.node_ids, block.node_ids)]
        a, b, c = (corners[:, i] - corners[:, 0] for i in (1, 2, 3))
        volumes = np.abs(np.einsum("ij,ij->i", a, np.cross(b, c))) / 6
        free = np.count_nonzero(~np.isin(block.node_ids, lowest), axis=1)
        weight += density * GRAVITY * (volumes * free / 4).sum()
    return weight


def write_deck(doc, sets, folder):
    """The mesh as the workbench writes it, and around it what is to be solved."""
    with doc.act("Names for the solver"):
        for number, one in enumerate(sets, 1):
            one.name = f"{re.sub('[^A-Za-z0-9]', '_', one.name)}_{number}"
    names = [one.name for one in sets]
    doc.export(folder / "mesh.inp", records=sets)
    lowest = []
    for one in sets:
        heights = one.coordinates[:, 2]
        lowest += one.node_ids[heights <= heights.min() + 1e-6 * np.ptp(heights)].tolist()
    steel = doc.materials[0]
    sections = "\n".join(f"*SOLID SECTION, ELSET={name}, MATERIAL=STEEL" for name in names)
    weights = "\n".join(f"{name}, GRAV, {GRAVITY}, 0, 0, -1" for name in names)
    (folder / "weight.inp").write_text(f"""*INCLUDE, INPUT=mesh.inp
*NSET, NSET=STANDS
{lines_of(lowest)}
*MATERIAL, NAME=STEEL
*ELASTIC
{steel.youngs_modulus}, {steel.poissons_ratio}
*DENSITY
{steel.density}
{sections}
*BOUNDARY
STANDS, 1, 3
*STEP
*STATIC
*DLOAD
{weights}
*NODE PRINT, NSET=STANDS, TOTALS=ONLY
RF
*END STEP
""")
    return names, lowest


def main(source, folder, size=0.0):
    warnings.simplefilter("ignore", qd.Note)
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    with qd.open(source) as doc:
        with doc.act("Make of steel"):
            steel = doc.material("Steel", **STEEL)
            for part in doc.parts:
                part.material = steel
        sets = doc.mesh(doc.find("type:solid"), size=float(size))
        names, lowest = write_deck(doc, sets, folder)
        weight = sum(weight_on(one, lowest, steel.density) for one in sets)
    solver = subprocess.run(["ccx", "weight"], cwd=folder, capture_output=True, text=True)
    if solver.returncode != 0 or "Job finished" not in solver.stdout:
        sys.exit(solver.stdout[-2000:])
    bears = float((folder / "weight.dat").read_text().split()[-1])
    print(f"{len(names)} sets: {', '.join(names)}\nweight {weight:.5g} N, borne {bears:.5g} N")
    return 0 if abs(bears - weight) < 1e-3 * weight else 1


if __name__ == "__main__":
    if len(sys.argv) not in (3, 4):
        sys.exit(__doc__)
    sys.exit(main(*sys.argv[1:]))
