#!/usr/bin/env python3
"""Draws the sixteen toolbox bitmaps of the control server (16 x 15 pixels,
4 bits per pixel, the classic 16-colour palette, button-face background) and
writes them as .bmp files into activex/res/ (the .rc embeds them as resources
30000-30015 in the order of the class table).

Run: tools/toolbox_bitmaps.py [output folder]"""
import os
import struct
import sys

# The classic 16-colour palette (RGB).
PALETTE = [
    (0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128), (0, 128, 128),
    (192, 192, 192), (128, 128, 128), (255, 0, 0), (0, 255, 0), (255, 255, 0), (0, 0, 255),
    (255, 0, 255), (0, 255, 255), (255, 255, 255),
]
# One character per pixel.
INK = {'k': 0, 'R': 1, 'G': 2, 'o': 3, 'b': 4, 'p': 5, 't': 6, '.': 7, 'g': 8, 'r': 9, 'L': 10,
       'y': 11, 'B': 12, 'f': 13, 'a': 14, 'w': 15}

# Each image: 15 rows of 16 pixels, in the order of the class table.
IMAGES = [
    ("toolbar", [
        "................",
        "................",
        "wwwwwwwwwwwwwwwg",
        "w..............g",
        "w.wwwg.wwwg.wwwg",
        "w.wrrg.wBBg.wLLg",
        "w.wrrg.wBBg.wLLg",
        "w.gggg.gggg.gggg",
        "w..............g",
        "wggggggggggggggg",
        "................",
        "................",
        "................",
        "................",
        "................"]),
    ("color", [
        "................",
        "................",
        "gggggggggggggggg",
        "gkkkkkkkkkkkkkkw",
        "gkrrrrrrrrkwwwgw",
        "gkrrrrrrrrkw.wgw",
        "gkrrrrrrrrkwkkkw",
        "gkrrrrrrrrkw.kgw",
        "gkrrrrrrrrkwwwgw",
        "gkkkkkkkkkkggggw",
        "gwwwwwwwwwwwwwww",
        "................",
        "................",
        "................",
        "................"]),
    ("spin", [
        "................",
        "................",
        "gggggggggggggggg",
        "gkkkkkkkkkwwwwwg",
        "gkwwwwwwwkw.k.gg",
        "gkwkkwkkwkwkkkgg",
        "gkwwkwwkwkgggggg",
        "gkwwkwkkwkwwwwwg",
        "gkwwkwkwwkwkkkgg",
        "gkwkkkkkwkw.k.gg",
        "gkwwwwwwwkgggggg",
        "gwwwwwwwwwwwwwww",
        "................",
        "................",
        "................"]),
    ("option", [
        "................",
        ".gggggggggggggg.",
        ".gw...........gw",
        ".gw.ggg.......gw",
        ".gw.gwkw.kkkk.gw",
        ".gw.gkkw......gw",
        ".gw.www.......gw",
        ".gw.ggg.......gw",
        ".gw.gw.w.kkk..gw",
        ".gw.g..w......gw",
        ".gw.www.......gw",
        ".gw...........gw",
        ".gwwwwwwwwwwwwgw",
        ".wwwwwwwwwwwwwww",
        "................"]),
    ("tray", [
        "................",
        "................",
        "................",
        "................",
        "................",
        "................",
        "gggggggggggggggg",
        "gwwwwwwwwwwwwwwg",
        "gw.....rr..yy.gg",
        "gw..k.rrrr.yy.gg",
        "gw.kkk.rr.....gg",
        "gw..k.........gg",
        "gggggggggggggggg",
        "................",
        "................"]),
    ("dialog", [
        "................",
        "bbbbbbbbbbbbbbb.",
        "bwbbbbbbbbbbwbbk",
        "bbbbbbbbbbbbbbbk",
        "w..............k",
        "w.kkkkkkk......k",
        "w..............k",
        "w.wwwwwwwwwww..k",
        "w.wkkkkkkkkkg..k",
        "w.wgggggggggg..k",
        "w.......wwwwg..k",
        "w.......w...g..k",
        "w.......ggggg..k",
        "kkkkkkkkkkkkkkkk",
        "................"]),
    ("link", [
        "................",
        "................",
        "................",
        "................",
        "BB...........BB.",
        "BB.BB.BBB..B.BB.",
        "BB....BB.B.B.BBB",
        "BB.BB.BB.B.B.BB.",
        "BB.BB.BB.B.B.BB.",
        "BB.BB.BB.B.BBBB.",
        "BBBBBBBBBBBBBBBB",
        "................",
        "................",
        "................",
        "................"]),
    ("joystick", [
        "................",
        ".......rr.......",
        "......rrrr......",
        "......rrrr......",
        ".......rr.......",
        ".......kk.......",
        ".......kk.......",
        ".......kk.......",
        "...gggggkggggg..",
        "..gwwwwwwwwwwwgk",
        "..gw.r.......wgk",
        "..gwwwwwwwwwwwgk",
        "..ggggggggggggkk",
        "...kkkkkkkkkkkk.",
        "................"]),
    ("status", [
        "................",
        "................",
        "................",
        "................",
        "................",
        "wwwwwwwwwwwwwwww",
        "w...............",
        "w.ggggggg.ggggg.",
        "w.gkk.kk.w.kk.w.",
        "w.gwwwwwww.wwww.",
        "w.......g.g..g.g",
        "w.......g..g.g..",
        "ggggggggggggggg.",
        "................",
        "................"]),
    ("tab", [
        "................",
        "................",
        "................",
        "................",
        ".wwwwg..........",
        "w....gwwwwg.....",
        "w.kk.gw...gwwwwg",
        "w....gw.kkg...kg",
        "w....wwwwwwwwwww",
        "w..............g",
        "w..............g",
        "w..............g",
        "w..............g",
        "gggggggggggggggg",
        "................"]),
    ("animation", [
        "................",
        "kkkkkkkkkkkkkkkk",
        "kwkwkwkwkwkwkwkk",
        "kkkkkkkkkkkkkkkk",
        "k..........bb..k",
        "k.........b..b.k",
        "k..yy.....b..b.k",
        "k.yyyy.....bb..k",
        "k..yy.....GGGG.k",
        "k.GGGG...GGGGGGk",
        "kGGGGGGGGGGGGGGk",
        "kkkkkkkkkkkkkkkk",
        "kwkwkwkwkwkwkwkk",
        "kkkkkkkkkkkkkkkk",
        "................"]),
    ("resize", [
        "................",
        "gggggggggggggggg",
        "gwwwwwwgwgwwwwwg",
        "gw....wgwgw....g",
        "gw.k..wgwgw.k..g",
        "gw....wgwgw....g",
        "gw...kwgwgwk...g",
        "gw..kkkgwgkkk..g",
        "gw...kwgwgwk...g",
        "gw....wgwgw....g",
        "gw....wgwgw....g",
        "gw....wgwgw....g",
        "gwwwwwwgwgwwwwwg",
        "gggggggggggggggg",
        "................"]),
    ("bar", [
        "................",
        "................",
        "................",
        "................",
        "gggggggggggggggg",
        "gbbbbbgggg.....w",
        "gbbbbbgggg.....w",
        "gbbbbbgggg.....w",
        "gbbbbbgggg.....w",
        "gbbbbbgggg.....w",
        "wwwwwwwwwwwwwwww",
        "................",
        "................",
        "................",
        "................"]),
    ("divider", [
        "................",
        "................",
        "................",
        "................",
        "................",
        "................",
        "gg.kk.k.k.gggggg",
        "ww.k..kk..wwwwww",
        "...kk.k.k.......",
        "................",
        "................",
        "................",
        "................",
        "................",
        "................"]),
    ("browsebox", [
        "................",
        "................",
        "................",
        "gggggggggggggggg",
        "gkkkkkkkkkwwwwwk",
        "gkwwwwwwwkw...gk",
        "gkwkkkkwwkw...gk",
        "gkwwwwwwwkwk.kgk",
        "gkwwwwwwwkw...gk",
        "gkkkkkkkkkggggkk",
        "wwwwwwwwwwkkkkkk",
        "................",
        "................",
        "................",
        "................"]),
    ("minislider", [
        "................",
        "................",
        "................",
        "................",
        "................",
        "kkkkkkkkkkkkkkkk",
        "kbbbbbbbbb.....k",
        "kbbbbbbbbb.....k",
        "kbbbbbbbbb.....k",
        "kkkkkkkkkkkkkkkk",
        "................",
        "................",
        "................",
        "................",
        "................"]),
]

WIDTH, HEIGHT = 16, 15


def bmp_bytes(rows):
    assert len(rows) == HEIGHT and all(len(r) == WIDTH for r in rows), rows
    stride = ((WIDTH * 4 + 31) // 32) * 4
    pixels = b""
    for row in reversed(rows):  # bottom-up
        line = bytearray()
        for x in range(0, WIDTH, 2):
            line.append(INK[row[x]] << 4 | INK[row[x + 1]])
        line += b"\0" * (stride - len(line))
        pixels += bytes(line)
    palette = b"".join(struct.pack("<BBBB", b, g, r, 0) for (r, g, b) in PALETTE)
    info = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 4, 0, len(pixels), 2835, 2835, 16, 0)
    offset = 14 + len(info) + len(palette)
    header = struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset)
    return header + info + palette + pixels


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "activex", "res")
    os.makedirs(out, exist_ok=True)
    for name, rows in IMAGES:
        with open(os.path.join(out, name + ".bmp"), "wb") as f:
            f.write(bmp_bytes(rows))
    print(f"{len(IMAGES)} bitmaps written to {out}")


if __name__ == "__main__":
    main()
