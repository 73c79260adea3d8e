#!/usr/bin/env python3
"""Real capture on Windows, under Wine: the system's own wave input fills the blocks, reports them as messages, and the tape
holds them. Once from a device that gives silence, and once from a sound server whose microphone is a pipe, so that every byte
on the tape must be one that was written into the pipe, in order.

    wine_capture_test.py WINDOWS-PROGRAM    (inside tools/with_wine.sh)
"""

import os
import random
import shutil
import subprocess
import threading
import time
import unittest

from program import FOUR_SENTENCES, PROGRAM, ProgramTest, tones

RATE = 22050
HEADER_BYTES = 46
BLOCK_BYTES = 1256


class WineCapture(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("lesson.wav", tones(FOUR_SENTENCES, rate=RATE, bits=8))
        self.run_wine("cut", "lesson.wav")

    def run_wine(self, *words, **environment):
        result = subprocess.run(["wine", PROGRAM, "--home", "home", *words], cwd=self.root, capture_output=True,
                                encoding="utf-8", timeout=60, env=dict(os.environ, **environment))
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def recorded(self, seconds, **environment):
        """The sound of a take."""
        self.run_wine("record", "lesson.wav", "--sentence", "1", "--seconds", str(seconds), **environment)
        (take,) = self.home.glob("lessons/*/takes/001/*.wav")
        sound = take.read_bytes()[HEADER_BYTES:]
        self.assertGreaterEqual(len(sound), seconds * RATE)
        self.assertLess(len(sound), seconds * RATE + 8 * BLOCK_BYTES)
        self.assertEqual(len(sound) % BLOCK_BYTES, 0)
        return sound

    def test_blocks_of_a_silent_device_arrive_and_are_kept(self):
        self.assertEqual(set(self.recorded(1)), {0x80})

    def test_the_tape_holds_the_bytes_that_the_microphone_gave(self):
        if shutil.which("pulseaudio") is None:
            self.skipTest("no sound server here: the program pulseaudio is not installed")
        with Microphone(self.root / "sound") as microphone:
            sound = self.recorded(2, PULSE_SERVER=microphone.server)
            self.assertIn("input   ", self.run_wine("devices", PULSE_SERVER=microphone.server))
        # The server may begin in the middle of a piece and go on with a later one; from then on nothing may be missing.
        steady = sound[2 * BLOCK_BYTES :]
        self.assertIn(steady, microphone.written)


class Microphone:
    """A sound server of its own whose one microphone is a pipe, and somebody who speaks into it: numbers that do not come
    again, at the pace of the format."""

    def __init__(self, folder):
        folder.mkdir()
        self.folder = folder
        self.server = f"unix:{folder}/socket"
        self.written = random.Random(1).randbytes(60 * RATE)
        self.is_over = threading.Event()

    def __enter__(self):
        script = self.folder / "script"
        script.write_text(
            ".fail\n"
            f"load-module module-native-protocol-unix auth-anonymous=1 socket={self.folder}/socket\n"
            f"load-module module-null-sink sink_name=loudspeaker rate={RATE}\n"
            f"load-module module-pipe-source source_name=microphone file={self.folder}/pipe format=u8 rate={RATE} channels=1\n"
            "set-default-source microphone\n"
        )
        environment = dict(os.environ, HOME=str(self.folder), XDG_RUNTIME_DIR=str(self.folder))
        self.process = subprocess.Popen(
            ["pulseaudio", "-n", "-F", script, "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
             "--disable-shm=yes"],
            env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 10
        while not (self.folder / "pipe").exists() and time.monotonic() < end:
            time.sleep(0.05)
        self.speaker = threading.Thread(target=self.speak)
        self.speaker.start()
        return self

    def speak(self):
        piece = RATE // 50
        start = time.monotonic()
        with open(self.folder / "pipe", "wb", buffering=0) as pipe:
            for at in range(0, len(self.written), piece):
                if self.is_over.is_set():
                    return
                try:
                    pipe.write(self.written[at : at + piece])
                except BrokenPipeError:
                    return
                time.sleep(max(0.0, start + at / RATE - time.monotonic()))

    def __exit__(self, *_):
        self.is_over.set()
        self.speaker.join(timeout=5)
        self.process.terminate()
        self.process.wait(timeout=10)


if __name__ == "__main__":
    unittest.main()
