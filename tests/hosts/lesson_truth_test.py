"""The sample lesson against the truth that was written down when it was made: the program finds every sentence by
itself, one for one, each start close before the first sound. The second argument is the lesson's folder."""

import csv
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

PROGRAM, LESSON = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])


class LessonTruth(unittest.TestCase):
    def test_every_sentence_is_found_one_for_one(self):
        with open(LESSON / "first-day.truth.tsv", encoding="utf-8", newline="") as table:
            truth = [int(row["start_ms"]) for row in csv.DictReader(table, delimiter="\t", quoting=csv.QUOTE_NONE)]
        with tempfile.TemporaryDirectory() as home:
            command = [PROGRAM, "cut", "--json", LESSON / "first-day.wav", "--home", home]
            answer = json.loads(subprocess.run(command, capture_output=True, check=True, timeout=60).stdout)
        found = [sentence["start_ms"] for sentence in answer["sentences"]]
        self.assertGreaterEqual(len(truth), 14)
        self.assertEqual(len(found), len(truth))
        for number, (start, true_start) in enumerate(zip(found, truth), 1):
            self.assertTrue(-240 <= start - true_start <= 40, f"sentence {number}: {start}, truly {true_start}")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
