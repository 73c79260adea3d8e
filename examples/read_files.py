"""Reads the engine's side files without the engine, by docs/file-formats.md: digest, study file, sentence starts, sound
parameters, question index with its wz file, page file and highlight file. It knows them by their extensions; mark indexes,
parameter files, page files and highlight files have what name the host gives them.

    python3 read_files.py FILE…
"""
import pathlib
import struct
import sys


def digest(levels):
    return f"{len(levels)} levels, {len(levels) * 40} ms, the loudest {max(levels, default=0)}"


def study(content):
    marks = [struct.unpack("<I12s", content[i * 16 : i * 16 + 16]) for i in range(20)]
    count = ([time for time, _ in marks] + [0]).index(0)  # up to the first empty slot
    named = [(time, label.split(b"\0")[0].decode("gbk", "replace")) for time, label in marks[:count]]
    starts = struct.unpack(f"<{(len(content) - 320) // 4}I", content[320 : 320 + (len(content) - 320) // 4 * 4])
    return f"bookmarks {named}, sentences at {list(starts)}"


def questions(index, texts):
    for at in range(0, len(index) // 52 * 52, 52):
        kind, answer, offset, length, passage = struct.unpack("<5i", index[at : at + 20])
        question, _, choices = texts[offset : offset + length].partition(b"\0")
        yield f"type {kind}, answer {chr(65 + answer % 32)}, passage {passage}: {(question + choices).decode('gbk', 'replace')!r}"


def pages(content):
    return f"pages and words from {[struct.unpack('<2I', content[i : i + 8]) for i in range(0, len(content), 8)]}"


def highlights(content):
    return f"marked words {[4 * k + i for k, byte in enumerate(content) for i in range(4) if byte >> (6 - 2 * i) & 3]}"


def starts(content):
    return f"starts at {[start for start, in struct.iter_unpack('<I', content[: len(content) // 4 * 4])]}"


def parameters(content):
    return f"the host's 20 bytes {content[:20].hex()}"


READERS = {".tmp": digest, ".zud": study, ".sen": starts, ".par": parameters, ".pag": pages, ".hlt": highlights}


def show(path):
    kind = path.suffix.lower()
    if kind == ".tst":
        print(f"{path.name}:", *questions(path.read_bytes(), path.with_suffix(".wz").read_bytes()), sep="\n  ")
    elif kind in READERS:
        print(f"{path.name}: {READERS[kind](path.read_bytes())}")
    else:
        sys.exit(f"{path.name}: the extensions read here are .tst {' '.join(READERS)}")


for name in sys.argv[1:]:
    try:
        show(pathlib.Path(name))
    except OSError as problem:
        sys.exit(f"{problem.filename}: {problem.strerror}")
    except struct.error:
        sys.exit(f"{name} is cut off")
