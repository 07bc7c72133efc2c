#!/usr/bin/env python3
"""Writes the raster resources of resources/ (run from anywhere):
res/arrowTop.png, res/arrowBottom.png (tree arrows) and
Image/Velostra/loading-YFAUpdata.gif (the loading animation).
Standard library only; the output is deterministic, so the files are committed."""
import math
import os
import struct
import zlib

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "resources")
SS = 4  # supersampling per axis


def dist_to_segment(px, py, ax, ay, bx, by):
    dx, dy = bx - ax, by - ay
    t = max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy)))
    return math.hypot(px - (ax + t * dx), py - (ay + t * dy))


def coverage(size, inside):
    """Per-pixel coverage in [0, 1] of the shape `inside(x, y)`."""
    cov = []
    for y in range(size):
        row = []
        for x in range(size):
            hits = sum(inside(x + (i + 0.5) / SS, y + (j + 0.5) / SS) for i in range(SS) for j in range(SS))
            row.append(hits / (SS * SS))
        cov.append(row)
    return cov


def write_png(path, size, rgb, cov):
    raw = b"".join(b"\x00" + b"".join(struct.pack("BBBB", *rgb, round(255 * c)) for c in row) for row in cov)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data) & 0xFFFFFFFF)

    png = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
    png += chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b"")
    with open(path, "wb") as f:
        f.write(png)


def chevron(points, width):
    segments = list(zip(points, points[1:]))
    return lambda x, y: any(dist_to_segment(x, y, *a, *b) <= width / 2 for a, b in segments)


def lzw(indices, min_size):
    clear, eoi = 1 << min_size, (1 << min_size) + 1
    table = {bytes([i]): i for i in range(clear)}
    next_code, size = eoi + 1, min_size + 1
    bits, nbits, out = 0, 0, bytearray()

    def emit(code):
        nonlocal bits, nbits
        bits |= code << nbits
        nbits += size
        while nbits >= 8:
            out.append(bits & 0xFF)
            bits >>= 8
            nbits -= 8

    emit(clear)
    word = b""
    for value in indices:
        grown = word + bytes([value])
        if grown in table:
            word = grown
            continue
        emit(table[word])
        table[grown] = next_code
        next_code += 1
        # The decoder widens its codes one entry later than the encoder adds them.
        if next_code > (1 << size) and size < 12:
            size += 1
        word = bytes([value])
    emit(table[word])
    emit(eoi)
    if nbits:
        out.append(bits & 0xFF)
    return bytes(out)


def sub_blocks(data):
    return b"".join(bytes([len(data[i:i + 255])]) + data[i:i + 255] for i in range(0, len(data), 255)) + b"\x00"


def write_spinner(path, size=32, frames=12, dots=8):
    blue, pale, ground = (0x33, 0x70, 0xFF), (0xD6, 0xE2, 0xFF), (0xF5, 0xF7, 0xF9)
    levels, edges = 8, 4
    palette = [ground]  # index 0: transparent
    for lv in range(levels):
        t = lv / (levels - 1)
        tone = tuple(round(p + (b - p) * t) for p, b in zip(pale, blue))
        for e in range(1, edges + 1):
            a = e / edges
            palette.append(tuple(round(g + (c - g) * a) for g, c in zip(ground, tone)))
    palette += [(0, 0, 0)] * (64 - len(palette))
    centre, radius, dot = size / 2, size * 0.34, size * 0.09
    out = bytearray(b"GIF89a" + struct.pack("<HHBBB", size, size, 0xF5, 0, 0))
    out += b"".join(bytes(c) for c in palette)
    out += b"\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00"
    for f in range(frames):
        pixels = [0] * (size * size)
        for d in range(dots):
            angle = 2 * math.pi * d / dots - math.pi / 2
            cx, cy = centre + radius * math.cos(angle), centre + radius * math.sin(angle)
            # The head runs clockwise; the dots behind it fade.
            age = (f * dots / frames - d) % dots
            level = max(0, levels - 1 - int(age * levels / dots))
            cov = coverage(size, lambda x, y: math.hypot(x - cx, y - cy) <= dot)
            for y in range(size):
                for x in range(size):
                    if cov[y][x] >= 0.3:
                        pixels[y * size + x] = 1 + level * edges + min(edges, math.ceil(cov[y][x] * edges)) - 1
        out += b"\x21\xF9\x04\x09" + struct.pack("<H", 8) + b"\x00\x00"  # restore to background, transparent 0
        out += b"\x2C" + struct.pack("<HHHHB", 0, 0, size, size, 0)
        out += b"\x06" + sub_blocks(lzw(pixels, 6))
    out += b"\x3B"
    with open(path, "wb") as f:
        f.write(out)


def main():
    os.makedirs(os.path.join(ROOT, "res"), exist_ok=True)
    grey, size = (0x64, 0x6A, 0x73), 12
    write_png(os.path.join(ROOT, "res", "arrowBottom.png"), size, grey,
              coverage(size, chevron([(3, 4.5), (6, 7.5), (9, 4.5)], 1.6)))
    write_png(os.path.join(ROOT, "res", "arrowTop.png"), size, grey,
              coverage(size, chevron([(3, 7.5), (6, 4.5), (9, 7.5)], 1.6)))
    write_spinner(os.path.join(ROOT, "Image", "Velostra", "loading-YFAUpdata.gif"))


if __name__ == "__main__":
    main()
