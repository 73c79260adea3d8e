#!/usr/bin/env python3
"""Writes src/platform/common/cp936_table.inc: the characters of code page 936 above ASCII, in the order of Unicode.

Each entry is Unicode << 16 | GBK code. The pairs are Python's "gbk" codec; the code page adds the one-byte euro sign.
Private-use pairs and 0xFF are left out on purpose: what they mean differs from one machine to the next. Not for the
best-fit encodings that some platforms add (an accented letter becoming another): text would change silently.
"""
import argparse
import pathlib

PER_LINE = 10


def code_page():
    codes = {0x20AC: 0x80}
    for lead in range(0x81, 0xFF):
        for trail in range(0x40, 0xFF):
            try:
                text = bytes([lead, trail]).decode("gbk")
            except UnicodeDecodeError:
                continue
            if len(text) == 1 and not 0xE000 <= ord(text) <= 0xF8FF:
                codes[ord(text)] = lead << 8 | trail
    return sorted(codes.items())


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("output", type=pathlib.Path)
    entries = [f"0x{character << 16 | code:X}" for character, code in code_page()]
    lines = [",".join(entries[i:i + PER_LINE]) for i in range(0, len(entries), PER_LINE)]
    head = "// Code page 936 above ASCII, as Unicode << 16 | GBK code. Made by tools/make_cp936_table.py; not for editing.\n"
    parser.parse_args().output.write_text(head + ",\n".join(lines) + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
