"""Every export from the shell, and the calls that a command makes."""

import re
import unittest

from program import FOUR_SENTENCES, FOUR_STARTS, ProgramTest, tones

# A word for each argument by its name; any other number is 1, any other text "a.wav".
WORDS = {"record": "00", "window": "window", "list_box": "list", "progress_bar": "bar", "bar": "bar", "dc": "dc:300x100"}
NUMBERS = re.compile(r"_ms|count|height|width|flag|mode|x$|y$|rate|bits|channels|seconds|index|state|ignored|message|param|"
                     r"levels|from_bottom|clear|first|second|third|spacing|left|top|page$|program|number|scrambled|"
                     r"threshold|buffer_bytes|byte_count|file_offset|stop_mode|values|flags|starts|format")


class Calls(ProgramTest):
    def test_every_export_can_be_called_in_a_row_and_answers(self):
        self.write("a.wav", tones(FOUR_SENTENCES))
        exports = [line.split() for line in self.succeed("call").splitlines()]
        self.assertEqual(len(exports), 104)
        words = []
        for name, *arguments in exports:
            words += [name] + [WORDS.get(a, "1" if NUMBERS.search(a) else "a.wav") for a in arguments] + ["+"]
        result = self.run_program("call", *words)
        self.assertEqual(result.returncode, 0, result.stderr)
        called = re.findall(r"^(\w+)(?: = .*)?$", result.stdout, re.M)
        self.assertEqual(called, [name for name, *_ in exports])

    def test_a_road_of_calls_leaves_what_the_commands_leave(self):
        self.write("a.wav", tones(FOUR_SENTENCES))
        road = ["vcSimpleMakeDigestFile", "a.wav", "a.wav", "temp\\a.tmp", "-", "+", "vcOpenDigestFile", "temp\\a.tmp", "+"]
        road += ["vcSetSilentParam", "10", "480", "+", "vcMakeSentence", "+", "vcReadTmpIdx", "4", "+", "vcTimeToOffset", "-1"]
        said = self.succeed("call", *road)
        self.assertIn("vcMakeSentence = 4\n", said)
        self.assertIn(f"  starts_ms = {', '.join(map(str, FOUR_STARTS))}\n", said)
        for words, reason in [(["vcOpenSentnceFile"], "vcOpenSentenceFile"), (["vcTimeToOffset"], "time_ms")]:
            result = self.run_program("call", *words)
            self.assertEqual(result.returncode, 1)
            self.assertIn(reason, result.stderr)

    def test_a_trace_shows_the_calls_of_a_command_with_their_results(self):
        self.write("a.wav", tones(FOUR_SENTENCES))
        result = self.run_program("--trace", "cut", "a.wav")
        self.assertRegex(result.stderr, r'(?m)^vcIsWaveFile\(".*\\a.wav"\) = 1$')
        self.assertRegex(result.stderr, r"(?m)^vcMakeSentence\(\) = 4$")
        self.assertEqual(result.stdout, self.succeed("cut", "a.wav"))


if __name__ == "__main__":
    unittest.main()
