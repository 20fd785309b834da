"""Colours parts by their volume, from blue to red, and writes a picture: colour_by_volume.py FILE PICTURE.png"""

import colorsys
import sys

import qd


def main(source, picture):
    with qd.open(source) as doc:
        parts = sorted((part for part in doc.parts if part.volume > 0), key=lambda part: part.volume)
        if not parts:
            sys.exit(f"{source}: there is nothing with a volume")
        with doc.act("Colour by volume"):
            for place, part in enumerate(parts):
                hue = 2 / 3 * (1 - place / max(1, len(parts) - 1))
                part.colour = colorsys.hsv_to_rgb(hue, 0.75, 0.95)
        for part in parts:
            print(f"{part.volume:14.6g} {doc.units}^3  {part.colour}  {part.name}")
        doc.screenshot(picture, size=(1280, 960), view="iso")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
