"""Every export from the shell, and the calls that a command makes."""

import re
import struct
import unittest

from program import FOUR_SENTENCES, ProgramTest, tones

# A word for each argument by its name; any other number is 1, any other text "a.wav".
WORDS = {"record": "00" * 20, "format": "8000,16,1", "window": "window", "list_box": "list", "progress_bar": "bar",
         "bar": "bar", "dc": "dc:300x100"}
NUMBERS = re.compile(r"_ms|count|height|width|flag|mode|x$|y$|rate|bits|channels|seconds|index|state|ignored|message|param|"
                     r"levels|from_bottom|clear|first|second|third|spacing|left|top|page$|program|number|scrambled|"
                     r"threshold|buffer_bytes|byte_count|file_offset|stop_mode|values|flags|starts")


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

    def test_words_that_would_become_other_values_are_refused(self):
        for words, reason in [
            (["vcOpenSentnceFile"], "vcOpenSentenceFile"), (["vcTimeToOffset"], "time_ms"), (["wait"], "wait SECONDS"),
            (["vcTimeToOffset", "2147483648"], "2147483647"), (["vcTimeToOffset", "99999999999"], "2147483647"),
            (["vcAddBookMark", "-1", "a"], "from 0 to 4294967295"), (["vcOffsetToTime", "8000,16", "1"], "3 numbers; 2"),
            (["vcOffsetToTime", "8000,16,1,1", "1"], "3 numbers; 4"), (["vcWriteMarkIdx", "a.idx", "1", "2"], "2 numbers; 1"),
            (["vcWriteSoundFilePara", "a", "b", "00"], "20 bytes; 1"),
        ]:
            with self.subTest(words=words):
                self.refused("call", *words, saying=reason)

    def test_only_what_the_engine_wrote_is_shown(self):
        (self.root / "zud").mkdir()
        self.write("zud/a.zud", bytes(320) + struct.pack("<2I", 40, 0))
        said = self.succeed("call", "vcReadTmpIdx", "2", "+", "vcOpenSentenceFile", "a.wav", "+", "vcReadSentenceData", "9",
                            "+", "vcIsWaveFile", "")
        self.assertEqual(said, "vcReadTmpIdx = -1\n  starts_ms: not written\nvcOpenSentenceFile = 2\n"
                               "vcReadSentenceData = 9\n  starts_ms = 40, 0\nvcIsWaveFile = 0\n")

    def test_a_trace_shows_the_calls_of_a_command_with_their_values(self):
        self.write("a.wav", tones(FOUR_SENTENCES))
        self.write("a.scr", b"##N0T1\nWho?\n##XZ\nA.\nB.\n$$b\n" * 4)
        found = self.run_program("--trace", "cut", "a.wav")
        self.assertIn("\n(the program makes a.tmp itself", found.stderr)
        self.assertEqual(found.stdout, self.succeed("cut", "a.wav"))
        words = ["cut", "a.wav", "--exact", "--threshold", "10", "--silence", "480"]
        cut = self.run_program("--trace", *words).stderr
        asked = self.run_program("--trace", "questions", "show", "a.wav", "1").stderr
        words = ["record", "a.wav", "--sentence", "1", "--device", "file:a.wav", "--seconds", "0.3"]
        recorded = self.run_program("--trace", *words).stderr
        for trace, line in [
            (cut, r'vcIsWaveFile\(".*\\a.wav"\) = 1'), (cut, r"vcMakeSentence\(\) = 4"),
            (cut, r"vcReadTmpIdx\(→\{320, 3120, 6320, 9520\}, 4\) = 0"),
            (asked, r'vcOpenWzFile\("temp\\a.tst"→"temp\\a.wz"\) = 0'), (asked, r"vcReadCurQuestion\(0, →\{1\}\) = 0"),
            (recorded, r'tvUseWaveInput\("file:.*a.wav"\) = 0'), (recorded, r"tvDispatchMessages\(\d+\) = 1"),
            (recorded, r"vcSetMainWnd\(window\d\)"),
        ]:
            with self.subTest(line):
                self.assertRegex(trace, f"(?m)^{line}$")


if __name__ == "__main__":
    unittest.main()
