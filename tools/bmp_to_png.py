#!/usr/bin/env python3
"""Writes BMP files as PNG files into a folder, and prints their names and sizes.

    tools/bmp_to_png.py FOLDER FILE.bmp...
"""

import pathlib
import struct
import sys
import zlib


def read_bmp(file):
    """The rows of an 8-bit gray or 24-bit BMP file, the top row first, and the bytes of a pixel."""
    data = file.read_bytes()
    offset, = struct.unpack_from("<I", data, 10)
    width, height = struct.unpack_from("<ii", data, 18)
    channels = struct.unpack_from("<H", data, 28)[0] // 8
    stride = (width * channels + 3) // 4 * 4
    starts = range(offset + (height - 1) * stride, offset - 1, -stride)
    return [data[start:start + width * channels] for start in starts], channels


def with_palette(rows):
    """24-bit rows as rows of palette entries, and the palette. With more than 256 colours, those that differ
    only in their lowest bits become one. None if there are still too many."""
    for mask in (255, 254):
        pixels = [[bytes(v & mask for v in row[i:i + 3]) for i in range(0, len(row), 3)] for row in rows]
        colours = sorted(set().union(*pixels), key=lambda c: (sum(c), c))
        if len(colours) <= 256:
            entries = {colour: i for i, colour in enumerate(colours)}
            rows = [bytes(entries[pixel] for pixel in row) for row in pixels]
            return rows, b"".join(colour[::-1] for colour in colours)
    return None


def filtered(row, above, step, kind):
    """A row as PNG filters it: 0 as it is, 1 minus the pixel at the left, 2 minus the one above, 4 minus one
    of those two or the pixel above the left one, whichever is nearest to left + above - corner."""
    left = bytes(step) + row[:-step]
    corner = bytes(step) + above[:-step]

    def nearest(a, b, c):
        return min((a, b, c), key=lambda v: abs(a + b - c - v))

    guess = {0: bytes(len(row)), 1: left, 2: above, 4: map(nearest, left, above, corner)}[kind]
    return bytes((v - g) & 255 for v, g in zip(row, guess))


def chunk(name, data):
    return struct.pack(">I", len(data)) + name + data + struct.pack(">I", zlib.crc32(name + data))


def png(rows, channels):
    """The bytes of a PNG file: gray, by a palette, or 24-bit, with the filter that makes it smallest."""
    kind, palette = (2 if channels == 3 else 0), b""
    if channels == 3:
        found = with_palette(rows)
        if found:
            kind, (rows, colours) = 3, found
            palette = chunk(b"PLTE", colours)
        else:
            rows = [bytes(row[i + 2 - 2 * (i % 3)] for i in range(len(row))) for row in rows]
    step = 3 if kind == 2 else 1
    above = [bytes(len(rows[0]))] + rows[:-1]
    candidates = (b"".join(bytes([f]) + filtered(row, up, step, f) for row, up in zip(rows, above))
                  for f in (0, 1, 2, 4))
    data = min((zlib.compress(candidate, 9) for candidate in candidates), key=len)
    header = struct.pack(">IIBBBBB", len(rows[0]) // step, len(rows), 8, kind, 0, 0, 0)
    chunks = chunk(b"IHDR", header) + palette + chunk(b"IDAT", data) + chunk(b"IEND", b"")
    return b"\x89PNG\r\n\x1a\n" + chunks


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for file in map(pathlib.Path, sys.argv[2:]):
        target = folder / file.with_suffix(".png").name
        target.write_bytes(png(*read_bmp(file)))
        print(f"{target}: {target.stat().st_size} bytes")


if __name__ == "__main__":
    main()
