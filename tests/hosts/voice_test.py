"""The learner's voice through the command-line host: takes recorded from a wave file in the microphone's place, what ends
them, what a kill or a full disk leaves of them, and their comparison with the sentence."""

import os
import random
import signal
import struct
import subprocess
import time
import unittest

import program
from program import FOUR_SENTENCES, ProgramTest, tones, wave

BLOCK_BYTES = 1256  # of captured sound
BYTES_PER_SECOND = 16000

# Every sample is its own number, so that a lost, doubled or moved block shows.
COUNTED = struct.pack("<30000h", *range(30000))


class VoiceTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("a.wav", tones(FOUR_SENTENCES))
        self.write("counted.wav", wave(COUNTED))
        self.write("spoken.wav", tones([(300, 0), (900, 1), (2000, 0)]))
        self.succeed("cut", "a.wav")

    def record(self, *words, mic="counted.wav", sentence=1):
        return self.succeed("record", "a.wav", "--sentence", str(sentence), "--device", "file:" + mic, *words)

    def start(self, sentence):
        command = [program.PROGRAM, "record", "a.wav", "--sentence", str(sentence), "--seconds", "9"]
        command += ["--device", "file:counted.wav", "--home", self.home]
        return subprocess.Popen(command, cwd=self.root, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)

    def takes(self, sentence=1):
        return sorted(self.home.glob(f"lessons/*/takes/{sentence:03}/*.wav"), key=lambda take: take.stat().st_mtime_ns)

    def sound_of(self, path):
        """The sound of a tape whose sizes are those of the file."""
        content = path.read_bytes()
        self.assertEqual(content[:4] + content[8:16], b"RIFFWAVEfmt ")
        self.assertEqual(struct.unpack("<I", content[4:8])[0], len(content) - 8)
        self.assertEqual(content[38:42], b"data")
        self.assertEqual(struct.unpack("<I", content[42:46])[0], len(content) - 46)
        return content[46:]


class Voice(VoiceTest):
    def test_takes_hold_the_microphones_sound_and_no_take_is_ever_changed(self):
        self.record("--seconds", "0.6")
        (first,) = self.takes()
        sound = self.sound_of(first)
        self.assertIn(len(sound) - 6 * BYTES_PER_SECOND // 10, range(4 * BLOCK_BYTES))
        self.assertEqual(sound, COUNTED[: len(sound)])

        self.record("--append", "--seconds", "0.3")
        second = self.takes()[1]
        longer = self.sound_of(second)
        self.assertGreater(len(longer), len(sound))
        self.assertEqual(longer, sound + COUNTED[: len(longer) - len(sound)])

        self.record("--at", "250", "--seconds", "0.3")
        over = self.sound_of(self.takes()[2])
        self.assertEqual(over, sound[:4000] + COUNTED[: len(over) - 4000])  # 250 ms of 8000 frames a second
        self.assertEqual((self.sound_of(first), self.sound_of(second)), (sound, longer))

        said = self.succeed("takes", "list", "a.wav").splitlines()
        self.assertEqual([line.split()[:2] for line in said[1:]], [["1", "1"], ["1", "2"], ["1", "3"]])
        self.succeed("takes", "play", "a.wav", "--sentence", "1", "--take", "2", "--device", "host")
        self.succeed("takes", "rm", "a.wav", "--sentence", "1", "--take", "2")
        self.assertFalse(second.exists())
        self.assertEqual(len(self.takes()), 2)

    def test_silence_behind_the_words_ends_a_take_and_is_not_waited_for_before_them(self):
        self.record("--silence", "0.4", mic="spoken.wav")
        seconds = len(self.sound_of(self.takes()[0])) / BYTES_PER_SECOND
        self.assertTrue(1.2 + 0.4 - 0.1 <= seconds < 2.2, seconds)

    def test_an_interrupt_keeps_what_was_said(self):
        running = self.start(2)
        time.sleep(0.6)
        running.send_signal(signal.SIGINT)
        _, errors = running.communicate(timeout=10)
        self.assertEqual((running.returncode, errors), (0, b""))
        sound = self.sound_of(self.takes(2)[0])
        self.assertEqual(sound, COUNTED[: len(sound)])
        self.assertFalse(list(self.home.glob("lessons/*/tmpwav/tmpmic.wav")))

    def test_a_full_disk_keeps_what_was_written_and_says_so(self):
        words = ["record", "a.wav", "--sentence", "1", "--device", "file:counted.wav", "--seconds", "3"]
        result = self.run_on_full_disk(9000, *words)
        self.assertEqual(result.returncode, 1)
        self.assertIn("the disk is full", result.stderr)
        sound = self.sound_of(self.takes()[0])
        self.assertGreaterEqual(len(sound), 9000 - 46 - BLOCK_BYTES)
        self.assertEqual(sound, COUNTED[: len(sound)])

    def test_what_cannot_be_recorded_is_refused_with_the_reason_and_nothing_kept(self):
        self.write("uncut.wav", tones(FOUR_SENTENCES))
        self.write("text.txt", b"good morning")
        for words, reason in [
            (["a.wav", "--sentence", "1", "--device", "none"], "no microphone"),
            (["a.wav", "--sentence", "1", "--device", "nosuch device"], ""),
            (["a.wav", "--sentence", "1", "--device", "file:text.txt"], "no PCM wave file"),
            (["a.wav", "--sentence", "1", "--device", "file:missing.wav"], "no sound can be taken"),
            (["a.wav", "--sentence", "5", "--device", "file:counted.wav"], "no sentence 5"),
            (["a.wav", "--sentence", "1", "--append"], "no take of sentence 1"),
            (["uncut.wav", "--sentence", "1"], "cut"),
        ]:
            result = self.refused("record", *words, saying=reason)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.refused("takes", "rm", "a.wav", "--sentence", "1", code=2)
        self.record("--seconds", "0.2")
        self.refused("record", "a.wav", "--sentence", "1", "--at", "60000", saying="ends at")
        self.assertEqual(len(self.takes()), 1)
        self.assertFalse(list(self.home.glob("lessons/*/tmpwav/tmpmic.wav")))


class Recovery(VoiceTest):
    def leave_tape(self, content, start):
        (folder,) = self.home.glob("lessons/*/tmpwav")
        (folder / "tmpmic.wav").write_bytes(content)
        (folder / "tmpmic.txt").write_text(f"sentence 1\nstart {start}\nrecording a.wav\n")
        return folder / "tmpmic.wav"

    def test_every_killed_recording_comes_back_short_of_at_most_one_block(self):
        seed = random.randrange(2**32)
        moments = random.Random(seed)
        recovered = 0
        for _ in range(20):
            running = self.start(3)
            time.sleep(moments.uniform(0.01, 0.5))
            running.kill()
            running.communicate()
            tapes = list(self.home.glob("lessons/*/tmpwav/tmpmic.wav"))
            there = max(tapes[0].stat().st_size - 46, 0) if tapes else 0
            self.succeed("recover")
            if there == 0:
                continue
            recovered += 1
            sound = self.sound_of(self.takes(3)[-1])
            self.assertEqual(sound, COUNTED[:there], f"seed {seed}")
            self.assertEqual(there % BLOCK_BYTES, 0)
        self.assertGreater(recovered, 5)
        self.assertEqual(len(self.takes(3)), recovered)
        self.assertIn("nothing to recover", self.succeed("recover"))

    def test_what_a_tapes_header_says_is_not_believed(self):
        self.record("--seconds", "0.2")
        header = self.takes()[0].read_bytes()[:46]
        for size in [0, 18, 0xFFFFFFFF]:
            left = header[:4] + bytes(4) + header[8:42] + struct.pack("<I", size) + COUNTED[:5001]
            os.utime(self.leave_tape(left, 0), (1_000_000_000, 1_000_000_000))
            self.assertIn("2001-09-09", self.succeed("recover"))
        recovered = [take for take in self.takes() if take.name.startswith("2001-09-09")]
        self.assertEqual([self.sound_of(take) for take in recovered], [COUNTED[:5000]] * 3)

    def test_a_take_that_was_only_copied_to_be_continued_is_no_new_take(self):
        self.record("--seconds", "0.2")
        (take,) = self.takes()
        self.leave_tape(take.read_bytes(), take.stat().st_size)
        self.assertIn("nothing to recover", self.succeed("recover"))
        self.assertEqual(self.takes(), [take])

    def test_the_next_command_recovers_with_one_line_but_never_a_tape_in_use(self):
        running = self.start(2)
        time.sleep(0.5)
        self.assertIn("is recording there", self.succeed("recover"))
        self.refused("record", "a.wav", "--sentence", "1", saying="another tavimo")
        running.kill()
        running.communicate()
        result = self.run_program("takes", "list", "a.wav")
        self.assertEqual(result.returncode, 0)
        self.assertRegex(result.stderr, r"^tavimo: recovered an unsaved recording of a.wav, sentence 2: .*\n$")
        self.assertIn(self.takes(2)[0].name, result.stdout)


class Comparison(VoiceTest):
    INK = (28, 90, 154)

    def test_both_lengths_and_speech_parts_are_told_and_drawn_on_one_scale(self):
        self.record("--silence", "0.4", mic="spoken.wav")
        said = self.succeed("compare", "a.wav", "--sentence", "1", "-o", "c.png").splitlines()
        self.assertEqual(said[0], "sentence 1: 0:02.800 long, 0:02.000 of it speech")
        self.assertRegex(said[1], r"^take 1 of .*: 0:01\.\d+ long, 0:00\.9[0246]0 of it speech$")
        width, height, rows = program.read_png(self.root / "c.png")
        halves = [rows[: height // 2], rows[height // 2 :]]
        spans = [sum(sum(row[x] == self.INK for row in half) > 20 for x in range(width)) for half in halves]
        # 2000 ms of speech above, 900 below.
        self.assertAlmostEqual(spans[1] / spans[0], 0.45, delta=0.05)

    def test_without_a_take_there_is_nothing_to_compare(self):
        result = self.run_program("compare", "a.wav", "--sentence", "1", "-o", "c.png")
        self.assertEqual((result.returncode, (self.root / "c.png").exists()), (1, False))
        self.assertIn("no take", result.stderr)


if __name__ == "__main__":
    unittest.main()
