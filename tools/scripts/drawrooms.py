#!/usr/bin/env python3
"""Draws the rooms of src/CMakeLists.txt as an SVG on standard output: one box for each room, lowest
at the bottom, grouped by library, with an arrow to each room that it names behind USES."""
import pathlib
import re
import textwrap
from html import escape

ROOT = pathlib.Path(__file__).resolve().parents[2]
CALL = re.compile(r"^# --- \w+: (.*?)\nroom\((\w+) LIBRARY (\w+)(?: USES ([\w ]+?))? FILES$",
                  re.M | re.S)
WIDTH, HEIGHT, GAP, LEFT = 380, 78, 24, 140
COLOURS = {"morvane_base": "#efe7d3", "morvane_core": "#dfe9dc", "morvane_ui": "#dbe4ef",
           "morvane": "#eadbe6"}

rooms = []
for doc, name, library, uses in CALL.findall((ROOT / "src/CMakeLists.txt").read_text()):
    rooms.append((name, re.sub(r"\s*#?\s+", " ", doc), library, uses.split()))

# Rooms that name the same one stand side by side.
rows, place = [], {}
for room in rooms:
    if rows and all(other[3] == room[3] for other in rows[-1]):
        rows[-1].append(room)
    else:
        rows.append([room])
height = len(rows) * (HEIGHT + GAP) + GAP
for level, row in enumerate(rows):
    for column, room in enumerate(row):
        x = LEFT + (WIDTH + GAP) * column + (0 if len(row) > 1 else (WIDTH + GAP) // 2)
        place[room[0]] = (x, height - (level + 1) * (HEIGHT + GAP))

print(f'<svg xmlns="http://www.w3.org/2000/svg" width="{LEFT + 2 * WIDTH + 3 * GAP}"'
      f' height="{height}" font-family="sans-serif" font-size="15">')
print('<defs><marker id="tip" markerWidth="9" markerHeight="9" refX="8" refY="4.5" orient="auto">'
      '<path d="M0 0L9 4.5L0 9z" fill="#555"/></marker></defs>')
print('<rect width="100%" height="100%" fill="#fff"/>')
told = set()
for name, doc, library, uses in rooms:
    x, y = place[name]
    print(f'<rect x="{x}" y="{y}" width="{WIDTH}" height="{HEIGHT}" rx="6"'
          f' fill="{COLOURS[library]}" stroke="#777"/>'
          f'<text x="{x + 12}" y="{y + 20}" font-weight="bold">{name}</text>')
    for number, line in enumerate(textwrap.wrap(doc, 58)):
        print(f'<text x="{x + 12}" y="{y + 37 + 15 * number}" font-size="12">{escape(line)}</text>')
    if library not in told:
        told.add(library)
        print(f'<text x="12" y="{y + 36}" fill="#555">{library}</text>')
    for used in uses:
        ux, uy = place[used]
        print(f'<line x1="{x + WIDTH // 2}" y1="{y + HEIGHT}" x2="{ux + WIDTH // 2}" y2="{uy}"'
              ' stroke="#555" stroke-width="1.5" marker-end="url(#tip)"/>')
print("</svg>")
