"""What the tests of the command-line host share: running the built program in a folder of its own, wave files written
out byte by byte, and a reader for the program's pictures. The program's path is the tests' first argument."""

import ctypes
import json
import os
import pathlib
import resource
import signal
import struct
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve() if len(sys.argv) > 1 else pathlib.Path("tavimo")


def chunk(name, content, size=None):
    stored = len(content) if size is None else size
    return name + struct.pack("<I", stored) + content + b"\0" * (len(content) % 2)


def format_record(tag=1, channels=1, rate=8000, bits=16):
    return struct.pack("<HHIIHH", tag, channels, rate, rate * channels * bits // 8, channels * bits // 8, bits)


def riff(*chunks):
    return chunk(b"RIFF", b"WAVE" + b"".join(chunks))


def wave(sound, data_size=None, **form):
    return riff(chunk(b"fmt ", format_record(**form)), chunk(b"data", sound, data_size))


def tones(pattern, channels=1, rate=8000, bits=16):
    """A wave file of (milliseconds, loud) stretches; loud ones are a square wave of half the full scale, in stereo on
    the first channel alone."""
    silent, high, low = (b"\x80", b"\xc0", b"\x40") if bits == 8 else (b"\0\0", b"\x00\x40", b"\x00\xc0")
    rest = silent * (channels - 1)
    sound = b""
    for length_ms, loud in pattern:
        frames = rate * length_ms // 1000
        sound += (high + rest + low + rest) * (frames // 2) if loud else silent * channels * frames
    return wave(sound, channels=channels, rate=rate, bits=bits)


# Sound begins at 400, 3200, 6400 and 9600 ms, each time on the first sample of a level.
FOUR_SENTENCES = [(400, 0), (2000, 1), (800, 0), (2400, 1), (800, 0), (2400, 1), (800, 0), (1600, 1), (1200, 0)]
# A sentence starts two levels before its first sound.
FOUR_STARTS = [320, 3120, 6320, 9520]


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory(prefix="tavimo-host-")
        self.addCleanup(self.folder.cleanup)
        self.root = pathlib.Path(self.folder.name)
        self.home = self.root / "home"

    def write(self, name, content):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)
        return path

    def run_program(self, *words, **more):
        """Runs the program in the test's folder; the result has text streams."""
        command = [PROGRAM, "--home", self.home, *words]
        return subprocess.run(command, cwd=self.root, capture_output=True, encoding="utf-8", timeout=60, **more)

    def succeed(self, *words):
        result = self.run_program(*words)
        self.assertEqual((result.returncode, result.stderr), (0, ""), words)
        return result.stdout

    def refused(self, *words, code=1, saying=""):
        """Runs it and expects the exit code of a refusal, and that part of a sentence among what is told."""
        result = self.run_program(*words)
        self.assertEqual(result.returncode, code, words)
        self.assertIn(saying, result.stderr, words)
        return result

    def run_on_full_disk(self, byte_count, *words):
        """Runs it where a write past that size fails, as one on a full disk does."""

        def limit_files():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (byte_count, byte_count))

        return self.run_program(*words, preexec_fn=limit_files, restore_signals=False)

    def run_with_fault(self, fault, *words):
        """Runs it with one of the faults that failing_calls.c knows."""
        environment = dict(os.environ, LD_PRELOAD=os.environ["TAVIMO_FAILING_CALLS"], **fault)
        return self.run_program(*words, env=environment)

    def calls_of(self, *words):
        """How many calls change a file."""
        counted = self.root / "calls.txt"
        self.assertEqual(self.run_with_fault({"TAVIMO_CALLS": str(counted)}, *words).returncode, 0)
        return int(counted.read_text())

    def starts(self, *words):
        return [sentence["start_ms"] for sentence in json.loads(self.succeed("cut", "--json", *words))["sentences"]]

    def kept(self, extension):
        """The files of that extension in the program's working folders."""
        return sorted(path for path in self.home.rglob("*" + extension) if not path.is_symlink())


def read_png(path):
    """Width, height and rows of (red, green, blue), by the reader of the library that the engine draws with."""
    cairo = ctypes.CDLL("libcairo.so.2")
    cairo.cairo_image_surface_create_from_png.restype = cairo.cairo_image_surface_get_data.restype = ctypes.c_void_p
    surface = ctypes.c_void_p(cairo.cairo_image_surface_create_from_png(os.fsencode(path)))
    assert cairo.cairo_surface_status(surface) == 0, path
    width, height, stride = (getattr(cairo, "cairo_image_surface_get_" + size)(surface) for size in ("width", "height", "stride"))
    data = ctypes.string_at(cairo.cairo_image_surface_get_data(surface), height * stride)
    cairo.cairo_surface_destroy(surface)
    return width, height, [[(data[x + 2], data[x + 1], data[x]) for x in range(y, y + 4 * width, 4)]
                           for y in range(0, height * stride, stride)]
