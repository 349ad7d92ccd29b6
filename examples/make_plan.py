#!/usr/bin/env python3
"""Makes plan.dxf, the drawing that the example program draws into: a small flat, drawn with ezdxf.

Only needed to make the file anew; the file itself is kept beside this script.
"""
import pathlib

import ezdxf

OUTER = [(0, 0), (9600, 0), (9600, 7200), (0, 7200)]
WALLS = [((4200, 0), (4200, 3000)), ((4200, 3900), (4200, 7200)), ((4200, 4200), (6600, 4200)), ((7500, 4200), (9600, 4200))]
DOORS = [(4200, 3000, 90), (6600, 4200, 0)]
ROOMS = [("Pokój dzienny", 2100, 3600, 28.4), ("Łazienka", 6900, 5700, 15.1), ("Kuchnia", 6900, 2100, 21.7)]


def main():
    drawing = ezdxf.new("R2010")
    drawing.header["$INSUNITS"] = 4
    for name, color in (("ŚCIANY", 7), ("DRZWI", 3), ("OPISY", 5)):
        drawing.layers.add(name, color=color)
    door = drawing.blocks.new("DRZWI_90")
    door.add_line((0, 0), (0, 900))
    door.add_arc((0, 0), 900, 0, 90)
    door.add_attdef("NR", (150, 150), height=150)
    space = drawing.modelspace()
    space.add_lwpolyline(OUTER, close=True, dxfattribs={"layer": "ŚCIANY", "const_width": 300})
    for start, end in WALLS:
        space.add_lwpolyline([start, end], dxfattribs={"layer": "ŚCIANY", "const_width": 120})
    for number, (x, y, turn) in enumerate(DOORS, 1):
        space.add_blockref("DRZWI_90", (x, y), dxfattribs={"layer": "DRZWI", "rotation": turn}).add_auto_attribs({"NR": f"D{number}"})
    for name, x, y, area in ROOMS:
        space.add_text(f"{name} {area} m²", height=220, dxfattribs={"layer": "OPISY"}).set_pos((x, y), align="MIDDLE_CENTER")
    drawing.saveas(pathlib.Path(__file__).with_name("plan.dxf"))


if __name__ == "__main__":
    main()
