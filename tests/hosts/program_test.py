"""The command-line host as a person and a shell script meet it: refusals, names, formats, what it keeps."""

import csv
import itertools
import json
import os
import re
import signal
import struct
import subprocess
import time
import unittest

import program
from program import FOUR_SENTENCES, FOUR_STARTS, ProgramTest, chunk, format_record, riff, tones, wave

BOOKMARKS = struct.pack("<I12s", 1500, b"here") + bytes(19 * 16)


class RecordingTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.recording = self.write("a.wav", tones(FOUR_SENTENCES))


class Usage(RecordingTest):
    def test_a_misspelled_word_is_answered_with_the_nearest_one(self):
        for words, meant in [
            (["ct", "a.wav"], "cut"),
            (["lessons", "a.wav"], "lesson"),
            (["cut", "--thresold", "3", "a.wav"], "--threshold"),
            (["cut", "--silence-ms=400", "a.wav"], "--silence"),
            (["info", "--hom", "x", "a.wav"], "--home"),
        ]:
            result = self.refused(*words, code=2, saying=f"did you mean {meant}?")
            self.assertEqual(result.stdout, "")

    def test_wrong_values_are_usage_errors_and_nothing_is_made(self):
        for words, part in [
            ([], "info, digest, cut, wave, lesson"),
            (["cut"], "FILE"),
            (["cut", "a.wav", "a.wav"], "one file too many"),
            (["cut", "--threshold", "129", "a.wav"], "--threshold"),
            (["cut", "--silence", "39", "a.wav"], "--silence"),
            (["cut", "--silence", "41000", "a.wav"], "--silence"),
            (["cut", "--exact", "--peak", "a.wav"], "excludes"),
            (["wave", "a.wav", "-o", "x.png", "--style", "round"], "half,full,bars"),
            (["wave", "a.wav", "-o", "x.png", "--from", "1:xx"], "1:xx"),
            (["wave", "a.wav", "-o", "x.png", "--from", "5", "--to", "4.9"], "--to"),
            (["wave", "a.wav", "-o", "x.png", "--width", "4000"], "--width"),
        ]:
            self.refused(*words, code=2, saying=part)
        self.assertEqual(sorted(os.listdir(self.root)), ["a.wav"])

    def test_help_and_version_are_no_errors(self):
        self.assertRegex(self.succeed("--version"), r"^tavimo \d+\.\d+\.\d+\n$")
        for command in ["info", "digest", "cut", "wave", "lesson"]:
            self.assertIn(command, self.succeed("--help"))
            self.assertIn("FILE", self.succeed(command, "--help"))

    def test_output_that_cannot_be_written_is_an_error(self):
        reader, closed_pipe = os.pipe()
        os.close(reader)
        for output in [os.open("/dev/full", os.O_WRONLY), closed_pipe]:
            result = subprocess.run([program.PROGRAM, "info", "a.wav"], cwd=self.root, stdout=output, stderr=subprocess.PIPE)
            os.close(output)
            self.assertEqual(result.returncode, 1)
            self.assertIn(b"could not be written", result.stderr)


class Refusals(RecordingTest):
    BAD = {
        "empty.wav": (b"", "empty"),
        "text.wav": (b"Good morning, everyone.", "not a wave file"),
        "tagged.mp3": (b"ID3\x03\0\0\0\0\0\0\0\0\0\0", "MP3"),
        "big.wav": (b"RF64\xff\xff\xff\xffWAVEds64" + bytes(40), "RF64"),
        "bare.wav": (riff(), "no format chunk"),
        "short.wav": (riff(chunk(b"fmt ", format_record()[:14])), "cut short"),
        "silent.wav": (riff(chunk(b"fmt ", format_record())), "no data chunk"),
        "backwards.wav": (riff(chunk(b"data", b"\0\0"), chunk(b"fmt ", format_record())), "no data chunk"),
        "nothing.wav": (wave(b""), "no sound"),
        "24.wav": (wave(bytes(6000), bits=24), "24 bits"),
        "float.wav": (wave(bytes(8000), tag=3, bits=32), "floating point"),
        "adpcm.wav": (wave(bytes(8000), tag=2, bits=4), "ADPCM"),
        "extensible.wav": (wave(bytes(8000), tag=0xFFFE), "extensible"),
        "three.wav": (wave(bytes(6000), channels=3), "3 channels"),
        "none.wav": (wave(bytes(6000), channels=0), "0 channels"),
        "slow.wav": (wave(bytes(6000), rate=24), "24 Hz"),
        "stream.wav": (wave(bytes(6000), data_size=0xFFFFFFFF), "2 GiB"),
        "outside.wav": (b"RIFF\x1c\0\0\0" + wave(bytes(800))[8:], "no data chunk"),
    }

    IMPORTED = ("24.wav", "float.wav", "three.wav", "stream.wav", "outside.wav")  # by lesson, as it does with an MP3

    def test_a_file_that_cannot_be_used_costs_one_sentence_and_leaves_nothing(self):
        for name, (content, reason) in self.BAD.items():
            self.write(name, content)
        (self.root / "folder.wav").mkdir()
        before = sorted(os.listdir(self.root))
        reasons = {name: reason for name, (_, reason) in self.BAD.items()}
        reasons |= {"folder.wav": "a folder", "missing.wav": "no such file"}
        for command in ["lesson", "info"]:
            refused = [name for name in reasons if command == "info" or name not in self.IMPORTED]
            result = self.run_program(command, *refused)
            lines = (result.stderr or result.stdout).splitlines()
            self.assertEqual((result.returncode, len(lines)), (1, len(refused)), lines)
            for line, name in zip(lines, refused):
                self.assertRegex(line, f"{re.escape(name)}:.*{reasons[name]}")
        for command in [["digest"], ["cut"], ["wave", "-o", "x.png"]]:
            self.refused(*command, "24.wav")
        self.assertEqual(sorted(os.listdir(self.root)), before)

    def test_one_bad_file_does_not_keep_lesson_from_the_others(self):
        self.write("bad.wav", b"")
        result = self.run_program("lesson", "bad.wav", "a.wav")
        self.assertEqual(result.returncode, 1)
        self.assertIn("4 sentences", result.stdout)
        self.assertTrue((self.root / "a-wave.png").exists())

    def test_a_recording_cut_off_in_its_sound_is_used_as_far_as_it_goes(self):
        os.truncate(self.recording, 44 + 16 * 8000)
        self.assertIn("as far as it goes", self.succeed("info", "a.wav"))
        self.assertEqual(self.starts("a.wav"), FOUR_STARTS[:3])

    def test_a_picture_that_cannot_be_saved_leaves_the_old_one(self):
        (self.root / "taken.png").mkdir()
        for words in [["nowhere/x.png"], ["taken.png"], ["x.png", "--from", "1:00"]]:
            result = self.run_program("wave", "a.wav", "-o", *words)
            self.assertEqual(result.returncode, 1)
        self.assertIn("0:12.400", result.stderr)


class Formats(ProgramTest):
    def test_every_usual_format_is_cut_alike(self):
        for rate, bits, channels in itertools.product([8000, 11025, 16000, 22050, 32000, 44100, 48000], [8, 16], [1, 2]):
            name = f"{rate}-{bits}-{channels}.wav"
            self.write(name, tones(FOUR_SENTENCES, channels, rate, bits))
            self.assertEqual(self.starts(name), FOUR_STARTS, name)

    def test_the_peak_digest_holds_the_loudest_sample_and_the_exact_one_the_last(self):
        # 8000 Hz: 320 frames a level. The last block is 2 frames and half a sample long.
        first = struct.pack("<320h", *[0] * 5, -12800, *[0] * 313, 513)
        second = struct.pack("<320h", *[32767] * 319, -1)
        third = struct.pack("<320h", -32768, *[255] * 319)
        self.write("a.wav", wave(first + second + third + struct.pack("<2h", -257, 256) + b"\x7f"))
        self.write("b.wav", wave(bytes([128] * 319 + [3, 255] + [128] * 319 + [128, 0, 127]), bits=8))
        self.write("c.wav", wave(first + b"\x7f"))
        for name, option, levels in [
            ("c.wav", "--peak", [50, 0]),
            ("a.wav", "--peak", [50, 127, 128, 2]),
            ("a.wav", "--exact", [2, 1, 0, 1]),
            ("b.wav", "--peak", [125, 127, 128]),
        ]:
            self.succeed("digest", option, name)
            digest = next(path for path in self.kept(".tmp") if path.stem == name[0])
            self.assertEqual(list(digest.read_bytes()), levels, (name, option))


class LessonTruth(ProgramTest):
    def test_every_sentence_of_the_sample_lesson_is_found_close_before_its_first_sound(self):
        lesson = program.SOURCE / "lessons/first-day"
        with open(lesson / "first-day.truth.tsv", encoding="utf-8", newline="") as table:
            truth = [int(row["start_ms"]) for row in csv.DictReader(table, delimiter="\t", quoting=csv.QUOTE_NONE)]
        found = self.starts(lesson / "first-day.wav")
        self.assertGreaterEqual(len(truth), 14)
        self.assertEqual(len(found), len(truth))
        for number, (start, true_start) in enumerate(zip(found, truth), 1):
            self.assertTrue(-240 <= start - true_start <= 40, f"sentence {number}: {start}, truly {true_start}")


class Names(ProgramTest):
    PLAIN = ["第一课.wav", "new\nline.wav", ".wav", "what?*.wav", "a.b.c", "two  blanks .WAV"]
    BY_LINK = [
        "誠.wav",  # its second GBK byte is a backslash
        "emoji 😀.wav",  # no GBK form
        "cafe\u0301.wav",
        "back\\slash.wav",
        "C:a.wav",
        "x" * 251 + ".wav",  # longer than the engine takes a name
        "d" * 120 + "/" + "e" * 120 + "/lesson.wav",  # and a path
        os.fsdecode(b"\xb5\xda\xd2\xbb\xbf\xce.wav"),  # GBK bytes, as old discs have them
    ]

    def test_any_name_the_system_allows_is_taken_and_found_again(self):
        for number, name in enumerate(self.PLAIN + self.BY_LINK, 1):
            self.write(name, tones(FOUR_SENTENCES))
            by_link = name in self.BY_LINK
            self.assertEqual(", by a link" in self.succeed("info", name), by_link, repr(name))
            result = self.run_program("cut", name)
            self.assertEqual((result.returncode, "by a link" in result.stderr), (0, by_link), repr(name))
            self.assertIn("4 sentences", result.stdout)
            self.assertIn("levels, peak, current:", self.succeed("digest", name), repr(name))
            self.assertIn("(from its study file)", self.succeed("lesson", name), repr(name))
            self.assertEqual(len(self.kept(".zud")), number)

    def test_recordings_of_one_name_keep_their_study_data_apart(self):
        two = [(400, 0), (2000, 1), (2000, 0), (2000, 1), (2000, 0)]
        for name in ["a/unit1.wav", "a/unit1.WAV", "a/unit1.wave"]:
            self.write(name, tones(FOUR_SENTENCES))
            self.assertEqual(self.starts(name), FOUR_STARTS)
        self.write("b/unit1.wav", tones(two))
        self.assertEqual(self.starts("b/unit1.wav"), [320, 4320])
        self.assertIn("4 sentences in 0:12.400 (from its study file)", self.succeed("lesson", "a/unit1.wav"))
        self.assertRegex(self.succeed("lesson", "a/unit1.wav", "b/unit1.wav"), "(?s)unit1-wave.png.*unit1-wave-2.png")

    def test_a_recording_is_the_same_however_its_path_is_spelled(self):
        self.write("a/unit1.wav", tones(FOUR_SENTENCES))
        (self.root / "link").symlink_to("a")
        self.succeed("cut", "a/unit1.wav")
        for spelling in ["./a//unit1.wav", "a/../a/unit1.wav", "link/unit1.wav", self.root / "a" / "unit1.wav"]:
            self.assertIn("(from its study file)", self.succeed("lesson", spelling))

    def test_json_stays_json_whatever_the_name(self):
        for name in ['quo"te.wav', "new\nline.wav", os.fsdecode(b"\xff\xfe.wav")]:
            self.write(name, tones(FOUR_SENTENCES))
            answer = json.loads(self.run_program("cut", "--json", name).stdout)
            self.assertEqual(answer["sentences"][3:], [{"number": 4, "start_ms": 9520, "length_ms": 2880}])


class WhatIsKept(RecordingTest):
    def study_file(self):
        (study_file,) = self.kept(".zud")
        return study_file

    def test_cutting_keeps_the_bookmarks(self):
        self.succeed("cut", "a.wav")
        self.study_file().write_bytes(BOOKMARKS + struct.pack("<2I", 40, 80))
        self.succeed("cut", "a.wav")
        self.assertEqual(self.study_file().read_bytes(), BOOKMARKS + struct.pack("<4I", *FOUR_STARTS))

    def test_fewer_than_two_sentences_are_said_and_the_study_file_stays(self):
        self.succeed("cut", "a.wav")
        before = self.study_file().read_bytes()
        for words, said in [(["--silence", "4000"], "one sentence"), (["--threshold", "128"], "no sentence")]:
            self.assertIn(said, self.succeed("cut", "a.wav", *words))
            self.assertEqual(self.study_file().read_bytes(), before)

    def test_lesson_takes_the_sentences_that_came_with_the_recording(self):
        for name in ["a.wav", "emoji 😀.wav"]:
            recording = self.write(name, tones(FOUR_SENTENCES))
            recording.with_suffix(".zud").write_bytes(BOOKMARKS + struct.pack("<2I", 1000, 5000))
            said = self.run_program("lesson", name).stdout
            self.assertIn("2 sentences in 0:12.400 (from its study file)", said)

    def test_starts_that_cannot_be_those_of_the_recording_are_cut_anew(self):
        for starts in [[5000, 1000], [1000, 99000], [1000]]:
            content = BOOKMARKS + struct.pack(f"<{len(starts)}I", *starts)
            self.recording.with_suffix(".zud").write_bytes(content)
            self.assertIn("4 sentences", self.succeed("lesson", "a.wav"), starts)
            self.study_file().unlink()

    def test_a_digest_is_made_once_for_each_kind_and_again_when_the_recording_changes(self):
        for kind, current in [("peak", 0), ("peak", 1), ("exact", 0), ("exact", 1), ("peak", 0), ("peak", 1)]:
            said = self.succeed("digest", "--" + kind, "a.wav")
            self.assertEqual(f"levels, {kind}, current:" in said, bool(current), said)
        (digest,) = self.kept(".tmp")
        self.assertEqual(digest.stat().st_mtime_ns, self.recording.stat().st_mtime_ns)
        self.recording.write_bytes(tones([(400, 0), (2000, 1)]))
        self.assertIn(": 60 levels, peak: ", self.succeed("digest", "a.wav"))

    def test_a_digest_beside_the_recording_is_taken_only_where_it_fits(self):
        beside = self.recording.with_suffix(".tmp")
        for content, is_taken in [(bytes([7]) * 310, True), (bytes([7]) * 309, False)]:
            beside.write_bytes(content)
            said = self.succeed("digest", "--exact", "a.wav")
            self.assertEqual("current" in said, is_taken)
            self.assertIn("310 levels, exact", said)

    def test_ctrl_c_ends_the_program_and_leaves_nothing_half_done(self):
        # A file of 2,000,000,000 bytes that takes no room on the disk, and long enough to read.
        header = wave(b"", data_size=2_000_000_000, rate=8000)
        for kind in ["--peak", "--exact"]:
            os.truncate(self.write("long.wav", header), len(header) + 2_000_000_000)
            command = [program.PROGRAM, "digest", kind, "long.wav", "--home", self.home]
            running = subprocess.Popen(command, cwd=self.root, stdout=subprocess.PIPE)
            until = time.monotonic() + 10
            while not list(self.home.rglob("temp")) and time.monotonic() < until:
                time.sleep(0.001)
            time.sleep(0.02)
            running.send_signal(signal.SIGINT)
            running.communicate(timeout=30)
            self.assertEqual(running.returncode, -signal.SIGINT, kind)
            self.assertFalse(self.home.exists(), kind)  # nothing was worth keeping


class Pictures(RecordingTest):
    TICK, RED = (224, 127, 42), (255, 0, 0)
    INK = (28, 90, 154)

    def picture(self, *words):
        self.succeed("wave", "a.wav", "-o", "x.png", *words)
        return program.read_png(self.root / "x.png")

    def setUp(self):
        super().setUp()
        self.succeed("cut", "a.wav")

    def test_the_wave_stands_where_the_sound_is_and_each_sentence_has_its_mark(self):
        # 310 levels and the end mark, three pixels each; 40 rows above the bottom line of the wave are in every tone.
        width, height, rows = self.picture("--width", "1000")
        self.assertEqual((width, height), (933, 240))
        row = rows[240 - 18 - 40]
        loud = {x for x in range(width) if row[x] == self.INK}
        sound = [(400, 2400), (3200, 5600), (6400, 8800), (9600, 11200)]
        self.assertEqual(loud, {x for start, end in sound for x in range(start // 40 * 3, end // 40 * 3)})
        marks = [x for x in range(width) if rows[0][x] == self.TICK]
        self.assertEqual(marks, [start // 40 * 3 for start in FOUR_STARTS])
        self.assertEqual([x for x in range(width) if row[x] == self.RED], [930, 931, 932])

    def test_a_stretch_shows_that_stretch_alone(self):
        for style, options in [("half", []), ("full", ["--height", "300"]), ("bars", [])]:
            width, _, rows = self.picture("--style", style, "--from", "0:03", "--to", "3.4", "--width", "200", *options)
            self.assertEqual(width, 200)  # ten levels of twenty pixels
            self.assertEqual([x for x in range(width) if rows[0][x] == self.TICK], [60], style)
            row = rows[len(rows) // 2 + 40]
            self.assertNotIn(self.INK, row[:90], style)
            self.assertEqual(row[110:190], [self.INK] * 80, style)

    def test_every_size_within_the_bounds_fits_the_whole_recording(self):
        for style, size in itertools.product(["half", "full", "bars"], [(64, 80), (310, 240), (311, 81), (2048, 100)]):
            width, height, _ = self.picture("--style", style, "--width", str(size[0]), "--height", str(size[1]))
            self.assertTrue(size[0] // 2 < width <= size[0] and height == size[1], (style, size, width, height))


if __name__ == "__main__":
    unittest.main()
