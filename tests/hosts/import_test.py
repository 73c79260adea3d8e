"""Importing: sound of other kinds becomes a recording, and what it sounds like stays."""

import array
import math
import os
import struct
import subprocess
import unittest

from program import ProgramTest, chunk, format_record, riff, wave

RATE = 16000


def tone(seconds=1.0, rate=RATE):
    """A tone of 440 Hz that swells to half of full scale and ends after two thirds, without an edge to ring at."""
    loud = int(rate * seconds * 2 / 3)
    swell = [min(i, loud - i, rate // 20) / (rate // 20) if i < loud else 0.0 for i in range(int(rate * seconds))]
    return [0.5 * part * math.sin(2 * math.pi * 440 * i / rate) for i, part in enumerate(swell)]


def int16(values):
    return array.array("h", [round(value * 32767) for value in values]).tobytes()


def samples_of(path):
    content = path.read_bytes()
    assert content[:4] + content[8:16] + content[36:40] == b"RIFFWAVEfmt data", content[:44]
    assert struct.unpack("<I", content[4:8])[0] == len(content) - 8
    assert struct.unpack("<I", content[40:44])[0] == len(content) - 44
    values = array.array("h")
    values.frombytes(content[44:])
    return [value / 32767 for value in values]


def loudness(values):
    return math.sqrt(sum(value * value for value in values) / len(values))


class Import(ProgramTest):
    def setUp(self):
        super().setUp()
        self.sound = tone()
        self.write("plain.wav", wave(int16(self.sound), rate=RATE))

    def sox(self, *words):
        subprocess.run(["sox", *words], cwd=self.root, check=True, capture_output=True)

    def imported(self, source, *words, name=None):
        before = (self.root / source).read_bytes()
        said = self.succeed("import", source, *words)
        self.assertEqual((self.root / source).read_bytes(), before)
        path = self.root / (name or os.path.splitext(source)[0] + ".wav")
        self.assertIn(str(path), said)
        self.assertIn("as it is", self.succeed("import", path.name))
        return samples_of(path)

    def check_sound(self, values, rate=RATE, tolerance=0.02):
        self.assertAlmostEqual(len(values) / rate, 1.0, delta=0.2)
        self.assertAlmostEqual(max(values), 0.5, delta=tolerance)
        loud = values[len(values) // 4 : len(values) // 2]
        self.assertAlmostEqual(loudness(loud), 0.5 / math.sqrt(2), delta=tolerance)
        crossings = sum(a < 0 <= b for a, b in zip(loud, loud[1:]))
        self.assertAlmostEqual(crossings * rate / len(loud), 440, delta=6)
        self.assertLess(loudness(values[-len(values) // 8 :]), 0.005)

    def test_other_formats_keep_their_sound(self):
        for name, tolerance in [("a.mp3", 0.03), ("b.ogg", 0.03), ("c.flac", 0.001), ("d.aiff", 0.001)]:
            self.sox("plain.wav", name)
            self.check_sound(self.imported(name), tolerance=tolerance)

    def test_other_wave_files_keep_their_sound(self):
        wide = b"".join(struct.pack("<i", round(value * 8388607))[:3] for value in self.sound)
        floats = struct.pack(f"<{len(self.sound)}f", *self.sound)
        extensible = format_record(tag=0xFFFE, rate=RATE) + struct.pack("<HHI", 22, 16, 4)
        extensible += bytes.fromhex("0100000000001000800000aa00389b71")
        data = int16(self.sound)
        ds64 = struct.pack("<QQQI", len(data) + 72, len(data), len(self.sound), 0)
        rf64 = b"RF64\xff\xff\xff\xffWAVE" + chunk(b"ds64", ds64) + chunk(b"fmt ", format_record(rate=RATE))
        for name, content in [
            ("24.wav", wave(wide, bits=24, rate=RATE)),
            ("float.wav", wave(floats, tag=3, bits=32, rate=RATE)),
            ("extensible.wav", riff(chunk(b"fmt ", extensible), chunk(b"data", data))),
            ("rf64.wav", rf64 + b"data\xff\xff\xff\xff" + data),
        ]:
            self.write(name, content)
            self.check_sound(self.imported(name, name=name[:-4] + "-16bit.wav"), tolerance=0.001)
        self.assertEqual((self.root / "extensible-16bit.wav").read_bytes()[44:], data)  # nothing is rounded

    def test_rates_and_channels_are_brought_within_what_the_engine_takes(self):
        for source_rate, words, rate in [(96000, [], 48000), (88200, [], 44100), (6000, [], 8000), (16000, ["--rate", "22050"], 22050)]:
            self.write("r.wav", wave(struct.pack(f"<{source_rate}f", *tone(1.0, source_rate)), tag=3, bits=32, rate=source_rate))
            values = self.imported("r.wav", *words, "--force", name="r-16bit.wav")
            self.check_sound(values, rate)
            self.assertLessEqual(abs(len(values) - rate), rate // 1000)
        three = [part for value in self.sound for part in (value, 0, value / 2)]
        self.write("three.wav", wave(int16(three), channels=3, rate=RATE))
        self.assertAlmostEqual(max(self.imported("three.wav", name="three-16bit.wav")), 0.25, delta=0.001)
        both = self.imported("plain.wav", "--channels", "2", "-o", "both.wav", name="both.wav")
        self.assertEqual(both[0::2], both[1::2])

    def test_quiet_sound_is_dithered_and_loud_sound_clipped(self):
        quiet = [0.3 / 32768] * 20000
        self.write("quiet.wav", wave(struct.pack("<20000f", *quiet), tag=3, bits=32, rate=RATE))
        values = [round(value * 32767) for value in self.imported("quiet.wav", name="quiet-16bit.wav")]
        self.assertAlmostEqual(sum(values) / len(values), 0.3, delta=0.03)  # rounding alone would make it all 0
        self.assertLessEqual(set(values), {-1, 0, 1})
        self.write("loud.wav", wave(struct.pack("<4f", 1.5, -1.5, math.nan, math.inf) * 100, tag=3, bits=32, rate=RATE))
        values = [round(value * 32767) for value in self.imported("loud.wav", name="loud-16bit.wav")]
        self.assertEqual((max(values), min(values)), (32767, -32768))

    def test_damaged_sound_is_imported_as_far_as_it_goes_with_a_word(self):
        self.sox("plain.wav", "whole.flac", "repeat", "9")
        whole = (self.root / "whole.flac").read_bytes()
        self.write("cut.flac", whole[: len(whole) // 2])
        result = self.run_program("import", "cut.flac")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stderr, r"cut off: 0:0\d\.\d+ of 0:10.000")

    def test_what_cannot_be_imported_is_refused_and_nothing_is_left(self):
        self.write("text.mp3", b"Good morning, everyone. " * 40)
        self.write("silent.wav", wave(b"", bits=24, rate=RATE))
        self.write("there.wav", b"precious")
        self.sox("plain.wav", "there.flac")
        before = sorted(os.listdir(self.root))
        for words, reason in [
            (["text.mp3"], ""),
            (["silent.wav"], "no sound"),
            (["missing.mp3"], "no such file"),
            (["there.flac"], "--force"),
            (["plain.wav", "-o", "plain.wav", "--force"], "replace it"),
            (["there.flac", "-o", "nowhere/x.wav"], "cannot be written"),
        ]:
            result = self.run_program("import", *words)
            self.assertEqual((result.returncode, len(result.stderr.splitlines())), (1, 1), words)
            self.assertIn(reason, result.stderr)
        self.assertEqual(sorted(os.listdir(self.root)), before)
        self.assertEqual((self.root / "there.wav").read_bytes(), b"precious")


if __name__ == "__main__":
    unittest.main()
