#!/usr/bin/env python3
"""Write the larger benchmark logos beside this file: 576 x 400 and 832 x 600 dots,
1-bit Windows BMP (BITMAPINFOHEADER, bottom-up rows padded to 4 bytes, palette entry 0
black). The picture is the reference logo's, scaled to the size: a 3-dot frame,
concentric rings in a disc, a checkerboard and diagonal stripes, so that the converters
see the same mix of runs and edges at every size. Standard library only.

    python3 bench/make_logos.py

The 384 x 120 logo is the reference one (logo384x120.bmp, copied, not generated).
"""
import os
import struct

SIZES = [(576, 400), (832, 600)]


def black(x: int, y: int, w: int, h: int) -> bool:
    if x < 3 or x >= w - 3 or y < 3 or y >= h - 3:
        return True
    radius = min(h // 2 - 10, w // 7)
    cx, cy = radius + 10, h // 2
    dx, dy = x - cx, y - cy
    r2 = dx * dx + dy * dy
    if r2 <= radius * radius:
        return (r2 // 150) % 2 == 0
    third = (w - 2 * cx) // 2
    if 2 * cx + 10 <= x < 2 * cx + third and h // 6 <= y < h - h // 6:
        return ((x // 10) + (y // 10)) % 2 == 0
    if 2 * cx + third + 10 <= x < w - 14 and h // 8 <= y < h - h // 8:
        return ((x + y) // 6) % 2 == 0
    return False


def bmp_bytes(w: int, h: int) -> bytes:
    stride = ((w + 31) // 32) * 4
    image_size = stride * h
    offset = 14 + 40 + 8
    rows = []
    for y in range(h - 1, -1, -1):  # bottom row first
        row = bytearray(stride)
        for x in range(w):
            if not black(x, y, w, h):  # bit 1 = palette 1 = white
                row[x >> 3] |= 0x80 >> (x & 7)
        rows.append(bytes(row))
    file_header = struct.pack('<2sIHHI', b'BM', offset + image_size, 0, 0, offset)
    info_header = struct.pack('<IiiHHIIiiII', 40, w, h, 1, 1, 0, image_size, 8000, 8000, 2, 2)
    palette = bytes([0, 0, 0, 0, 255, 255, 255, 0])
    return file_header + info_header + palette + b''.join(rows)


def main() -> None:
    here = os.path.dirname(os.path.abspath(__file__))
    for w, h in SIZES:
        path = os.path.join(here, f'logo{w}x{h}.bmp')
        data = bmp_bytes(w, h)
        with open(path, 'wb') as f:
            f.write(data)
        print(f'{path}: {len(data)} bytes')


if __name__ == '__main__':
    main()
