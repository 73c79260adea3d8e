#!/usr/bin/env python3
"""Draws first-day.bmp, the picture of page one: a house, a garden with an apple tree, two children, a dog and a ball.
Needs nothing but Python; always the same bytes."""

import pathlib
import struct

WIDTH, HEIGHT = 320, 200
COLOURS = {"sky": 0xBFE3F7, "grass": 0x6FAE4E, "wall": 0xF3E3BF, "roof": 0xB5482F, "door": 0x7A4A25, "glass": 0x8FB8D8,
           "leaves": 0x3F7F35, "apple": 0xD2232A, "skin": 0xF0C29A, "blue": 0x2E57A5, "yellow": 0xF2C230, "dog": 0x8B5A2B,
           "stone": 0xA8A39A, "dark": 0x30251C, "sun": 0xFFE36B, "white": 0xFFFFFF}
NUMBERS = {name: number for number, name in enumerate(COLOURS)}

rows = [[NUMBERS["sky"]] * WIDTH for _ in range(HEIGHT)]


def draw(colour, x0, y0, x1, y1, inside=lambda x, y: True):
    for y in range(max(y0, 0), min(y1, HEIGHT)):
        for x in range(max(x0, 0), min(x1, WIDTH)):
            if inside(x, y):
                rows[y][x] = NUMBERS[colour]


def disc(colour, x, y, width, height):
    draw(colour, x - width, y - height, x + width, y + height,
         lambda i, j: ((i + 0.5 - x) / width) ** 2 + ((j + 0.5 - y) / height) ** 2 < 1)


def child(x, y, shirt, hair):
    draw(shirt, x - 6, y, x + 6, y + 20)
    for leg in (-5, 2):
        draw("dark", x + leg, y + 20, x + leg + 4, y + 36)
    draw("skin", x - 16, y + 3, x + 16, y + 7)
    disc(hair, x, y - 9, 8, 8)
    disc("skin", x, y - 7, 7, 7)


disc("sun", 290, 28, 16, 16)
draw("grass", 0, 120, WIDTH, HEIGHT)
draw("wall", 24, 66, 134, 140)
draw("roof", 14, 26, 144, 66, lambda x, y: abs(x - 79) < (y - 24) * 1.6)
draw("door", 68, 100, 90, 140)
for window in (36, 102):
    draw("white", window, 82, window + 22, 104)
    draw("glass", window + 2, 84, window + 20, 102)
draw("stone", 144, 108, WIDTH, 124, lambda x, y: (y - 108) % 8 != 7 and (x + (y - 108) // 8 * 8) % 20 != 0)
draw("door", 232, 90, 244, 150)
disc("leaves", 238, 66, 46, 40)
for x, y in ((210, 62), (226, 44), (240, 78), (256, 56), (268, 76), (222, 84)):
    disc("apple", x, y, 4, 4)
child(172, 144, "blue", "dark")
child(288, 140, "yellow", "door")
disc("dog", 222, 172, 16, 7)
disc("dog", 241, 165, 7, 6)
for leg in (210, 217, 228, 234):
    draw("dog", leg, 174, leg + 3, 186)
draw("dog", 200, 160, 208, 170, lambda x, y: abs(x - 200 - (y - 160)) < 3)
disc("dark", 243, 163, 1, 1)
disc("apple", 258, 180, 5, 5)

palette = b"".join(struct.pack("<I", colour) for colour in COLOURS.values())
pixels = b"".join(bytes(high << 4 | low for high, low in zip(row[::2], row[1::2])) for row in reversed(rows))
start = 14 + 40 + len(palette)
content = struct.pack("<2sIHHI", b"BM", start + len(pixels), 0, 0, start)
content += struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 4, 0, len(pixels), 2835, 2835, len(COLOURS), 0)
pathlib.Path(__file__).with_name("first-day.bmp").write_bytes(content + palette + pixels)
