"""A report of the parts of a file, a table with pictures: report.py FILE FOLDER"""

import html
import pathlib
import sys
import warnings

import qd

PAGE = """<!DOCTYPE html>
<html><head><meta charset="utf-8"><title>{title}</title>
<style>body {{ font-family: sans-serif }} td, th {{ padding: .3em 1em; text-align: left }} img {{ height: 6em }}</style>
</head><body><h1>{title}</h1><p>{total}</p>
<table><tr><th></th><th>Part</th><th>Kind</th><th>Volume</th><th>Area</th><th>Box</th></tr>
{rows}
</table></body></html>
"""


def row_of(doc, part, folder):
    picture = f"part{part.id}.png"
    doc.hide(doc.parts)
    doc.show(part)
    doc.screenshot(folder / picture, size=(240, 180), view="iso")
    least, greatest = doc.info(part)["box"]
    size = " × ".join(f"{b - a:.5g}" for a, b in zip(least, greatest))
    cells = [html.escape(part.name), part.kind, f"{part.volume:.6g}", f"{part.area:.6g}", size]
    return f"<tr><td><img src=\"{picture}\" alt=\"\"></td>" + "".join(f"<td>{cell}</td>" for cell in cells) + "</tr>"


def main(source, folder):
    warnings.simplefilter("ignore", qd.Note)
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    with qd.open(source) as doc:
        info = doc.info()
        total = f"{len(doc.parts)} parts, volume {info['volume']:.6g}, area {info['area']:.6g}, in {doc.units}"
        rows = "\n".join(row_of(doc, part, folder) for part in doc.parts)
    title = html.escape(pathlib.Path(source).name)
    (folder / "report.html").write_text(PAGE.format(title=title, total=total, rows=rows), encoding="utf-8")
    print(folder / "report.html")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
