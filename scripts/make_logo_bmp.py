#!/usr/bin/env python3
"""Writes examples/logo.bmp: the sample receipt's logo, a 1-bit Windows BMP.

A framed "CAFE" in a 5x7 block font drawn four times larger, 128 x 40 pixels.
Palette entry 0 is black and 1 white; a 0 bit prints, as the receipt printers expect.
Rows are stored bottom-up and padded to four bytes, with the image size filled in.

    python3 scripts/make_logo_bmp.py [OUTPUT]     (default: examples/logo.bmp)
"""
import os
import struct
import sys

WIDTH, HEIGHT, SCALE = 128, 40, 4

FONT = {  # 5 columns x 7 rows, '#' is ink
    "C": [" ####", "#    ", "#    ", "#    ", "#    ", "#    ", " ####"],
    "A": [" ### ", "#   #", "#   #", "#####", "#   #", "#   #", "#   #"],
    "F": ["#####", "#    ", "#    ", "#### ", "#    ", "#    ", "#    "],
    "E": ["#####", "#    ", "#    ", "#### ", "#    ", "#    ", "#####"],
}


def draw():
    ink = [[False] * WIDTH for _ in range(HEIGHT)]
    for x in range(WIDTH):  # frame, two pixels thick
        for y in (0, 1, HEIGHT - 2, HEIGHT - 1):
            ink[y][x] = True
    for y in range(HEIGHT):
        for x in (0, 1, WIDTH - 2, WIDTH - 1):
            ink[y][x] = True
    text = "CAFE"
    advance = 6 * SCALE
    left = (WIDTH - (len(text) * advance - SCALE)) // 2
    top = (HEIGHT - 7 * SCALE) // 2
    for i, letter in enumerate(text):
        for row, line in enumerate(FONT[letter]):
            for col, cell in enumerate(line):
                if cell != "#":
                    continue
                for dy in range(SCALE):
                    for dx in range(SCALE):
                        ink[top + row * SCALE + dy][left + i * advance + col * SCALE + dx] = True
    return ink


def bmp(ink):
    stride = ((WIDTH + 31) // 32) * 4
    rows = []
    for y in reversed(range(HEIGHT)):  # bottom-up
        row = bytearray(stride)
        for x in range(WIDTH):
            if not ink[y][x]:  # white pixels are 1 bits
                row[x // 8] |= 0x80 >> (x % 8)
        rows.append(bytes(row))
    pixels = b"".join(rows)
    palette = bytes([0, 0, 0, 0, 255, 255, 255, 0])
    offset = 14 + 40 + len(palette)
    header = struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 1, 0, len(pixels), 2835, 2835, 2, 2)
    return header + info + palette + pixels


def main():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    output = sys.argv[1] if len(sys.argv) > 1 else os.path.join(root, "examples", "logo.bmp")
    with open(output, "wb") as f:
        f.write(bmp(draw()))


if __name__ == "__main__":
    main()
