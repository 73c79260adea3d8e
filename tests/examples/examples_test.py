"""Installs the engine into a folder of its own and builds outside programs against it: the examples, once through the CMake
package and once through pkg-config, and the Python one over the generated binding."""

import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest

BUILD, CMAKE, COMPILER, FLAGS = sys.argv[1:5]
del sys.argv[1:]
SOURCE = pathlib.Path(__file__).resolve().parent.parent.parent
LESSON = SOURCE / "lessons/first-day/first-day.wav"

PROJECT = """cmake_minimum_required(VERSION 3.16)
project(outside C)
find_package(tavimo REQUIRED)
add_executable(host ${EXAMPLES}/host.c)
target_link_libraries(host PRIVATE tavimo::tavimo)
"""


# Bytes of Python never change, so the engine must not write into them.
WRITTEN_TEXTS = """import ctypes, sys, tavimo
engine = tavimo.load(sys.argv[1])
path = ctypes.create_string_buffer(tavimo.path("temp/a.tst"), 260)
assert engine.vcOpenWzFile(path) == -1 and path.value == rb"temp\\a.wz"
for call in [lambda: engine.vcOpenWzFile(b"temp\\\\a.tst"), lambda: engine.vcGetDragFile(b"x" * 298),
             lambda: engine.vcReadSoundFilePara(b"a.par", b"x" * 20)]:
    try:
        call()
    except ctypes.ArgumentError:
        continue
    sys.exit("bytes were taken")
"""


def run(*words, **more):
    words = [str(word) for word in words]
    result = subprocess.run(words, capture_output=True, encoding="utf-8", timeout=100, **more)
    assert result.returncode == 0, (words, result.stdout, result.stderr)
    return result.stdout


class OutsidePrograms(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="tavimo-outside-")
        cls.root = pathlib.Path(cls.folder.name)
        cls.prefix = cls.root / "prefix"
        run(CMAKE, "--install", BUILD, "--prefix", cls.prefix)
        cls.library = next(cls.prefix.rglob("libtavimo.so"))
        cls.examples = cls.prefix / "share/tavimo/examples"
        for folder in ["temp", "tmpwav", "zud"]:
            (cls.root / folder).mkdir()
        (cls.root / "lesson.wav").write_bytes(LESSON.read_bytes())

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def environment(self, **more):
        return dict(os.environ, LD_LIBRARY_PATH=str(self.library.parent), **more)

    def test_the_cmake_package_builds_a_host_that_cuts_and_draws(self):
        (self.root / "CMakeLists.txt").write_text(PROJECT)
        build = self.root / "build"
        run(CMAKE, "-S", self.root, "-B", build, f"-DCMAKE_PREFIX_PATH={self.prefix}", f"-DEXAMPLES={self.examples}",
            f"-DCMAKE_C_COMPILER={COMPILER}", f"-DCMAKE_C_FLAGS={FLAGS} -std=c99 -Wall -Wextra -Werror")
        run(CMAKE, "--build", build)
        said = run(build / "host", "lesson.wav", cwd=self.root)
        self.assertTrue(said.startswith("74 seconds\nsentence 1 at "), said)
        self.assertIn("\nsentence 19 at ", said)
        self.assertTrue((self.root / "wave.png").read_bytes().startswith(b"\x89PNG"))
        self.assertEqual(run(build / "host", "lesson.wav", cwd=self.root), said)  # from the study file this time

    def test_pkg_config_builds_a_host_that_records(self):
        where = self.environment(PKG_CONFIG_PATH=str(self.library.parent / "pkgconfig"))
        flags = run("pkg-config", "--cflags", "--libs", "tavimo", env=where).split()
        program = self.root / "record"
        warnings = ["-Wall", "-Wextra", "-Werror"]
        run(COMPILER, *FLAGS.split(), "-std=c99", *warnings, self.examples / "record.c", *flags, "-o", program)
        said = run(program, f"file:{LESSON}", "kept.wav", cwd=self.root, env=where)
        self.assertRegex(said, r"\n30\d\d ms\n")
        self.assertGreaterEqual((self.root / "kept.wav").stat().st_size, 46 + 3 * 44100)

    @unittest.skipIf("-fsanitize" in FLAGS, "the sanitizer's run time would have to be in the interpreter")
    def test_the_python_binding_drives_the_engine(self):
        where = self.environment(PYTHONPATH=str(self.prefix / "share/tavimo/python"))
        said = run(sys.executable, "-B", self.examples / "host.py", self.library, "lesson.wav", cwd=self.root, env=where)
        self.assertTrue(said.startswith("74 seconds\nsentence 1 at "), said)
        run(sys.executable, "-B", "-c", WRITTEN_TEXTS, self.library, cwd=self.root, env=where)

    def test_the_reader_of_side_files_reads_what_the_formats_page_shows(self):
        files = {
            "a.tmp": bytes.fromhex("000000323200000000 3C0000"),
            "a.zud": bytes.fromhex("3CF00000C4E3BAC30000000000000000") + bytes(304) + bytes.fromhex("2800000018010000"),
            "tmp.sen": bytes.fromhex("2800000018010000"),
            "a.par": bytes(range(20)),
            "a.tst": struct.pack("<5i32x5i32x", 2, 0, 0, 4, 0, 3, 1, 4, 12, 0),
            "a.wz": b"Hi.\nWho?\n\0A.\nB.\n",
            "a.pag": bytes.fromhex("0000000000000000 0600000002000000 0B00000004000000"),
            "a.hlt": bytes.fromhex("100100"),
        }
        for name, content in files.items():
            (self.root / name).write_bytes(content)
        shown = [name for name in files if name != "a.wz"]
        said = run(sys.executable, "-B", self.examples / "read_files.py", *shown, cwd=self.root).splitlines()
        self.assertEqual(said, [
            "a.tmp: 12 levels, 480 ms, the loudest 60",
            "a.zud: bookmarks [(61500, '你好')], sentences at [40, 280]",
            "tmp.sen: starts at [40, 280]",
            f"a.par: the host's 20 bytes {bytes(range(20)).hex()}",
            "a.tst:",
            "  type 2, answer A, passage 0: 'Hi.\\n'",
            "  type 3, answer B, passage 0: 'Who?\\nA.\\nB.\\n'",
            "a.pag: pages and words from [(0, 0), (6, 2), (11, 4)]",
            "a.hlt: marked words [1, 7]",
        ])


if __name__ == "__main__":
    unittest.main()
