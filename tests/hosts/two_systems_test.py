#!/usr/bin/env python3
"""The same lesson on two systems: the program for Linux and, under Wine, the one for Windows take it down the same road. What
they say and every file they leave must be the same to the byte. Pictures of text alone may differ in a pixel here and there,
as each system draws letters in its own way; where each letter stands is in the page files, which are compared.

    two_systems_test.py LINUX-PROGRAM WINDOWS-PROGRAM LESSON-FOLDER    (inside tools/with_wine.sh)
"""

import base64
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

from program import PROGRAM, chunk, format_record, read_png, riff, tones

WINDOWS_PROGRAM, LESSON = (pathlib.Path(word).resolve() for word in (sys.argv.pop(1), sys.argv.pop(1)))
SYSTEMS = {"linux": [PROGRAM], "windows": ["wine", WINDOWS_PROGRAM]}

# What a learner and an author do one after another, and what they type at it.
ROAD = [
    (["info", "first-day.wav", "stereo.wav", "float.wav"], ""),
    (["lesson", "--output", "pages", "first-day.wav"], ""),
    (["cut", "--json", "first-day.wav"], ""),
    (["digest", "--exact", "stereo.wav"], ""),
    (["cut", "stereo.wav"], ""),
    (["wave", "stereo.wav", "--style", "bars", "-o", "bars.png"], ""),
    (["wave", "first-day.wav", "--style", "full", "--from", "0:03", "--to", "0:20", "-o", "full.png"], ""),
    (["bookmarks", "add", "first-day.wav", "--time", "0:12.5", "--label", "困难"], ""),
    (["bookmarks", "list", "first-day.wav"], ""),
    (["questions", "lint", "first-day.scr", "--recording", "first-day.wav"], ""),
    (["questions", "show", "first-day.wav", "3"], ""),
    (["questions", "quiz", "first-day.wav", "--silent"], "a\nb\n\nc\n"),
    (["pages", "build", "first-day.txt"], ""),
    (["pages", "mark", "first-day.txt", "the"], ""),
    (["pages", "show", "first-day.txt", "1"], ""),
    (["pages", "words", "--json", "first-day.txt"], ""),
    (["extract", "first-day.wav", "--sentence", "2", "-o", "second.wav"], ""),
    (["mono", "stereo.wav", "-o", "mono.wav"], ""),
    (["import", "float.wav", "-o", "imported.wav"], ""),
    (["lesson", "--output", "chinese", "第一课.wav"], ""),
    (["record", "第一课.wav", "--sentence", "2", "--device", "file:voice.wav", "--seconds", "2"], ""),
    (["takes", "list", "第一课.wav"], ""),
    (["compare", "第一课.wav", "--sentence", "2", "-o", "compare.png"], ""),
    (["delete", "stereo.wav", "--sentence", "2"], ""),
    (["undo", "stereo.wav"], ""),
    (["info", "missing.wav"], ""),
    (["delete", "stereo.wav", "--sentence", "99"], ""),
    (["call", "vcIsWaveFile", "first-day.wav"], ""),
]

OTHER_DISK = pathlib.Path("/dev/shm")

SOUND = [(400, 0), (2000, 1), (800, 0), (2400, 1), (800, 0), (2400, 1), (800, 0), (1600, 1), (1200, 0)]


def make_ground(folder):
    shutil.copytree(LESSON, folder)
    for output in ("pages", "chinese"):
        (folder / output).mkdir()
    # A busy machine would lose some of a voice of many bytes a second, as it would of a microphone's.
    (folder / "first-day.learner.wav").unlink()
    (folder / "voice.wav").write_bytes(tones([(300, 0), (900, 1), (400, 0), (800, 1)], bits=8))
    (folder / "stereo.wav").write_bytes(tones(SOUND, channels=2, rate=22050))
    (folder / "第一课.wav").write_bytes(tones(SOUND, bits=8))
    floats = [((i * 7919) % 2001 - 1000) / 1000 for i in range(30000)]
    sound = struct.pack(f"<{len(floats)}f", *floats)
    (folder / "float.wav").write_bytes(riff(chunk(b"fmt ", format_record(tag=3, bits=32)), chunk(b"data", sound)))


def size_of_picture(found):
    width, height = struct.unpack(">II", base64.b64decode(found[1])[16:24])
    return f"a text of {width} x {height} pixels"


def neutral(text, folder):
    """Text without what differs by right: where the folder is, how paths are written, the moment, the hash of a path, the
    advances of characters that are on no page, pictures of text."""
    native = str(folder)
    text = text.replace("\\\\", "\\").replace("\\", "/")  # a path in JSON, and one of Windows
    text = text.replace("Z:" + native, "ROOT").replace(native, "ROOT")
    text = re.sub(rf"(Z:)?{OTHER_DISK}/tavimo-systems-\w+", "HOME", text)
    text = re.sub(r"\d{4}-\d\d-\d\d[_ ]\d\d[-:]\d\d[-:]\d\d", "MOMENT", text)
    text = re.sub(r"^advances=[0-9a-f]{16}$", "advances=HASH", text, flags=re.M)
    text = re.sub(r'"data:image/png;base64,([^"]*)"', size_of_picture, text)
    return re.sub(r"-[0-9a-f]{16}\b", "-HASH", text)


def files_of(folder):
    return {neutral(str(path.relative_to(folder)), folder): path for path in sorted(folder.rglob("*")) if path.is_file()}


def difference(left, right):
    at = next((i for i, pair in enumerate(zip(left, right)) if pair[0] != pair[1]), min(len(left), len(right)))
    start = max(at - 40, 0)
    return f"from {at} of {len(left)} and {len(right)} on: {left[start:at + 60]!r} on Linux, {right[start:at + 60]!r} on Windows"


class TwoSystems(unittest.TestCase):
    maxDiff = 4000
    road = ROAD
    home_disk = None

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tavimo-systems-")
        cls.addClassCleanup(cls.folder.cleanup)
        cls.grounds, cls.homes, cls.said = {}, {}, {}
        for system, program in SYSTEMS.items():
            ground = pathlib.Path(cls.folder.name) / system / "ground"
            make_ground(ground)
            cls.grounds[system] = ground
            cls.homes[system] = cls.make_home()
            cls.said[system] = [cls.run_step(program, words, typed, ground, cls.homes[system]) for words, typed in cls.road]

    @classmethod
    def make_home(cls):
        return pathlib.Path("home")

    @classmethod
    def run_step(cls, program, words, typed, ground, home):
        result = subprocess.run([*program, "--home", home, *words], cwd=ground, input=typed.encode(), capture_output=True,
                                timeout=120)
        for number, take in enumerate(sorted(ground.rglob("takes/*/*.wav"))):  # their moments stand in pictures
            take.rename(take.with_stem(f"2026-11-23_12-00-{number:02}"))
        texts = [stream.decode() for stream in (result.stdout, result.stderr)]
        return [result.returncode, *[neutral(text, ground) for text in texts]]

    def test_both_say_the_same(self):
        for (words, _), linux, windows in zip(self.road, self.said["linux"], self.said["windows"]):
            with self.subTest(" ".join(words)):
                self.assertEqual(windows, linux)
                refused = words[0] in ("info", "delete") and words[-1] in ("missing.wav", "99") or "float.wav" in words[:4]
                self.assertEqual(linux[0], 1 if refused and words[0] != "import" else 0, linux[2])

    def test_both_leave_the_same_files(self):
        for roots in (self.grounds, {system: self.grounds[system] / self.homes[system] for system in SYSTEMS}):
            linux, windows = (files_of(roots[system]) for system in SYSTEMS)
            self.assertEqual(list(windows), list(linux))
            for name, path in linux.items():
                with self.subTest(name):
                    self.compare(path, windows[name])

    def test_both_trace_the_same_calls(self):
        called = []
        for system, program in SYSTEMS.items():
            _, _, traced = self.run_step(program, ["--trace", "cut", "first-day.wav"], "", self.grounds[system],
                                         self.homes[system])
            called.append(re.findall(r"^(vc\w+)\(", traced, flags=re.M))
        self.assertEqual(called[1], called[0])
        self.assertIn("vcWriteExtraFileData", called[0])

    def compare(self, linux, windows):
        if linux.suffix == ".png":
            self.assertTrue(read_png(windows) == read_png(linux), "the pictures differ")
            return
        left, right = linux.read_bytes(), windows.read_bytes()
        if linux.suffix in (".html", ".ini", ".tsv") or linux.name in ("edit.txt", "after.txt"):
            left, right = (neutral(content.decode(), ground) for content, ground in zip((left, right), self.grounds.values()))
        self.assertTrue(right == left, difference(left, right))


@unittest.skipUnless(OTHER_DISK.is_dir() and os.stat(OTHER_DISK).st_dev != os.stat(tempfile.gettempdir()).st_dev,
                     "there is one disk alone")
class TwoDisks(TwoSystems):
    """The lesson on one disk and the learner's folder on another, between which no file is renamed and none has two names."""

    road = [(words, typed) for words, typed in ROAD if words[0] in ("lesson", "digest", "cut", "delete", "undo", "record", "takes")]

    @classmethod
    def make_home(cls):
        folder = tempfile.TemporaryDirectory(prefix="tavimo-systems-", dir=OTHER_DISK)
        cls.addClassCleanup(folder.cleanup)
        return pathlib.Path(folder.name)


if __name__ == "__main__":
    unittest.main()
