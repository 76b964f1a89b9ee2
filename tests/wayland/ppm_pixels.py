"""Pixels of a binary PPM picture, as grim -t ppm writes it.

Usage: ppm_pixels.py FILE X,Y...        six hex digits for each point, one a line
       ppm_pixels.py FILE --count RRGGBB   how many pixels have that colour
"""
import sys

data = open(sys.argv[1], "rb").read()
fields, at = [], 0
while len(fields) < 4:
    while data[at:at + 1].isspace():
        at += 1
    start = at
    while not data[at:at + 1].isspace():
        at += 1
    fields.append(data[start:at])
width, pixels = int(fields[1]), data[at + 1:]
if sys.argv[2] == "--count":
    colour = bytes.fromhex(sys.argv[3])
    print(sum(1 for i in range(0, len(pixels), 3) if pixels[i:i + 3] == colour))
else:
    for point in sys.argv[2:]:
        x, y = map(int, point.split(","))
        offset = (y * width + x) * 3
        print(pixels[offset:offset + 3].hex().upper())
