"""Question scripts through the program: the check against the engine's compiler, encodings, and the quiz in a pipe."""

import itertools
import os
import random
import re
import struct
import subprocess
import unittest

from program import FOUR_SENTENCES, PROGRAM, ProgramTest, tones

SCRIPT = """##N1T1
她说“你好”？
##XZ
A. yes
B. no
$$B
##N1T3
Tom is here.
$$
##N2T2
Where is Tom?
##XZ
A. here
B. there
$$a
##NT1
Who?
##XZ
A. you
$$A
"""


class Lint(ProgramTest):
    def test_every_fault_is_told_at_its_place_in_one_run(self):
        faulty = [
            ("##N1T1\nq\n##XZ\na\n$$A\n\n##N2T1\nq\n##XZ\na\n$$?\n", ["6:1: an empty line", "11:3: the letter"]),
            ("##N5T1\nq\n##xz\n$$A\n##N2T9\nq\n##XZ\n$$B\n",
             ["1:4: the number is 1", "3:1: the line", "5:6: the type is"]),
            ("##N1T1\nq\n$$A\n##N2T1\nq\n##XZ\na\n##N3T1\n## q\n##XZ\n$$A",
             ["3:1: ##XZ is", "8:1: in front", "9:1: only"]),
            ("##N0T3\nq\n##XZ\n$$\n$$A\n##XZ\nq\n$$A\n", ["3:1: a passage has no", "5:1: an answer", "6:1: choices"]),
            ("text\n##N1T1\nq\n$$\n##1T1\n##XZ\n##XZ\n$$B\n##NT3\n",
             ["1:1: a record", "4:1: a question has", "5:3: an N", "5:4: the number is 2", "7:1: the choices",
              "9:1: the script ends within"]),
            ("##N1T2\n" + "丁" * 4000 + "\n##XZ\n\0\n$$A\n",
             ["1:1: note: no passage", "2:4000: note: the line is", "4:1: note"]),
        ]
        for number, (script, expected) in enumerate(faulty):
            self.write("s.scr", script.encode("gbk"))
            result = self.run_program("questions", "lint", "s.scr")
            *lines, verdict = result.stdout.splitlines()
            places = [line[len(f"{self.root.resolve()}/s.scr:") :] for line in lines]
            self.assertEqual([place[: len(start)] for place, start in zip(places, expected)], expected, number)
            self.assertEqual(len(places), len(expected), (number, places))
            self.assertEqual(result.returncode, int("note" not in expected[0]), number)
            self.assertIn("not accepted" if result.returncode else "accepted", verdict)

    def mutated(self, dice):
        """A script of a few records with up to three things wrong, or none."""
        lines = []
        for number in range(1, dice.randint(1, 5)):
            shape = dice.choice(["##N%dT1|q|##XZ|A. 好|$$A", "##nt3|t|$$", "##N%dT2|##XZ|a|$$z", "##N0T1|q|q|##XZ|$$B"])
            lines += (shape % number if "%d" in shape else shape).split("|")
        for _ in range(dice.choice([0, 1, 1, 2, 3])):
            place = dice.randrange(len(lines) + 1)
            other = dice.choice(lines) if lines else ""
            odd = ["", "$$", "##", "##XZ", "##xz", "$$1", "##N1T", "##N9T1", "##N99999999999T1", "##T1", other,
                   "k" * 8001]
            action = dice.randrange(4)
            if action == 0:
                del lines[place : place + 1]
            elif action == 1 or place == len(lines) or not lines[place].isascii():
                lines.insert(place, dice.choice(odd))
            else:
                line = lines[place]
                at = dice.randrange(len(line) + 1)
                lines[place] = line[:at] + dice.choice("#$NXZT0137a \0") + line[at + (action == 2) :]
        end = dice.choice(["\n", "\r\n"])
        return (end.join(lines) + dice.choice([end, end, ""])).encode("gbk")

    def lint_all(self, names, *words):
        """For each script: how many records, whether accepted, the line of the first fault, whether lines were cut."""
        out = self.run_program("questions", "lint", *names, *words).stdout
        found, first, cut = [], None, False
        for line in out.splitlines():
            if verdict := re.fullmatch(r"s\d+\.scr: (no|\d+) records?, .*; (not )?accepted", line):
                found.append((int(verdict[1].replace("no", "0")), not verdict[2], first, cut))
                first, cut = None, False
                continue
            cut = cut or "longer than" in line
            fault = re.search(r"\.scr:(\d+):\d+: (?!note)", line)
            first = first or (fault and int(fault[1]))
        self.assertEqual(len(found), len(names))
        return found

    def engine_all(self, names, counts):
        """For each script: whether the engine's compiler takes it, and what it says."""
        for count in set(counts):
            self.write(f"{count}.zud", bytes(320 + 4 * count))
        calls = [["vcConvertScrToTstWz", f"{count}.zud", name, "+"] for name, count in zip(names, counts)]
        words = [PROGRAM, "--home", self.home, "call", *itertools.chain(*calls)]
        run = subprocess.run(words, cwd=self.root, capture_output=True, encoding="utf-8")
        messages = iter(run.stderr.splitlines())  # one for each script that is not taken
        results = re.findall("vcConvertScrToTstWz = (0|-1)\n", run.stdout)
        said = [(result == "0", "" if result == "0" else next(messages)) for result in results]
        self.assertEqual((len(said), next(messages, None)), (len(names), None))
        return said

    def test_the_verdict_is_always_that_of_the_compiler(self):
        dice = random.Random(7)
        (self.root / "temp").mkdir()
        names = [self.write(f"s{i}.scr", self.mutated(dice)).name for i in range(1200)]
        for words in [[], ["--sentences", "0"], ["--sentences", "3"]]:
            found = self.lint_all(names, *words)
            counts = [int(words[1])] * len(names) if words else [records for records, *_ in found]
            for name, (_, accepted, line, cut), said in zip(names, found, self.engine_all(names, counts)):
                self.assertEqual(accepted, said[0], (name, words, said, (self.root / name).read_bytes()))
                told = re.search(r"的第(\d+)行", said[1])
                if told and not cut:
                    self.assertEqual(line, int(told[1]), (self.root / name).read_bytes())
            accepted = sum(accepted for _, accepted, *_ in found)
            self.assertTrue(accepted == 1200 if "0" in words else 100 < accepted < 1000, accepted)


class Quiz(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("第 1.wav", tones(FOUR_SENTENCES))
        self.write("第 1.SCR", SCRIPT.encode())
        self.succeed("cut", "第 1.wav")

    def quiz(self, typed, *words):
        result = self.run_program("questions", "quiz", "第 1.wav", *words, input=typed)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout, result.stderr

    def test_scripts_of_every_encoding_give_the_same_bytes(self):
        texts = ("她说“你好”？\n".encode("gbk") + b"\0A. yes\nB. no\nTom is here.\nWhere is Tom?\n\0A. here\nB. there\n"
                 b"Who?\n\0A. you\n")
        fields = [(0, 1, 0, 29, 0, 0), (2, 0, 29, 13, 0, 0), (3, 0, 42, 32, 1, 1), (0, 0, 74, 13, 0, 2)]
        index = b"".join(struct.pack("<5i16xi12x", *record) for record in fields)
        bom = "\ufeff"
        for name in ["utf-8", "gbk", "gb18030", bom + "utf-8", bom + "utf-16le", bom + "utf-16be", bom + "gb18030"]:
            encoding = name.lstrip(bom)
            self.write("第 1.SCR", ((bom if name[0] == bom else "") + SCRIPT).encode(encoding))
            self.succeed("questions", "compile", "第 1.wav")
            (wz,), (tst,) = self.kept(".wz"), self.kept(".tst")
            self.assertEqual((wz.read_bytes(), tst.read_bytes()), (texts, index), name)

    def test_what_cannot_be_compiled_leaves_the_questions_of_before(self):
        self.succeed("questions", "compile", "第 1.wav")
        (index,) = self.kept(".tst")
        before = index.read_bytes()
        for script, words, reason in [
            (SCRIPT.replace("你好", "好😀ö").encode(), [], "SCR:2:5: GBK has no '😀'"),
            (SCRIPT.encode().replace(b"Tom", b"\xff\xff"), [], "--encoding"),
            (SCRIPT.encode() + b" "[: 1 - len(SCRIPT.encode()) % 2], ["--encoding", "utf-16le"],
             "not all of it is utf-16le"),
            (SCRIPT.replace("##NT1", "##N9T1").encode(), [], "SCR:16:4: the number is 3"),
            (SCRIPT[: SCRIPT.index("##NT1")].encode(), [], "the recording has 4 sentences"),
            (None, ["--script", "x.scr"], "x.scr: there is no such file"),
        ]:
            self.write("第 1.SCR", script or b"")
            result = self.run_program("questions", "compile", "第 1.wav", *words)
            self.assertEqual((result.returncode, index.read_bytes()), (1, before), reason)
            self.assertIn(reason, result.stderr)
        self.write("第 1.SCR", SCRIPT.replace("Who?", "Who else?").encode())
        self.assertIn("Who else?", self.succeed("questions", "show", "第 1.wav", "4"))

    def test_an_index_of_another_script_or_of_other_sentences_is_not_taken(self):
        script = self.root / "第 1.SCR"
        time = (10**18, 10**18)
        os.utime(script, ns=time)
        self.assertIn("Tom is here", self.succeed("questions", "show", "第 1.wav", "3"))
        script.write_bytes(script.read_bytes().replace(b"Tom", b"Kim"))
        os.utime(script, ns=time)  # as the files of one archive have it
        self.assertIn("Kim is here", self.succeed("questions", "show", "第 1.wav", "3"))
        script.rename(self.root / "other.scr")
        self.succeed("questions", "list", "第 1.wav")
        self.succeed("delete", "第 1.wav", "--sentence", "2")
        self.refused("questions", "list", "第 1.wav", saying="--script again")

    def test_an_exercise_is_shown_with_all_that_belongs_to_it(self):
        self.write("Article.TXT", "[第 1]\n1=Tom 在这儿\n".encode())
        self.write("第 1.gif", b"GIF")
        shown = self.succeed("questions", "show", "第 1.wav", "3")
        for part in ["passage 1: Tom 在这儿", "  Tom is here.\n", "  Where is Tom?\n", "  B. there\n", "answer: A\n",
                     f"picture: 第 1.gif in {self.root.resolve()}"]:
            self.assertIn(part, shown)
        self.assertIn('她说 "你好" ？', self.succeed("questions", "show", "第 1.wav", "1"))
        listed = self.succeed("lesson", "第 1.wav").split("第 1.wav: 4 exercises, 3 questions")[1].splitlines()
        numbers = ["1 question 1", "2 passage 1", "3 question 2", "4 question 3"]
        self.assertEqual([" ".join(line.split()[:3]) for line in listed[2:6]], numbers)
        self.write("Article.TXT", b"[1]\n1=\xff\xff\n")
        result = self.run_program("questions", "show", "第 1.wav", "3")
        self.assertIn("passage 1: 文章", result.stdout)
        self.assertIn("Article.TXT, cannot be read and are left out", result.stderr)
        os.remove(self.root / "Article.TXT")
        # A name that the engine cannot take: everything is reached by links.
        for extension in ["wav", "SCR", "gif"]:
            os.rename(self.root / f"第 1.{extension}", self.root / f"😀.{extension}")
        self.run_program("cut", "😀.wav")
        self.assertIn("picture: 😀.gif", self.succeed("questions", "show", "😀.wav", "1"))

    def test_the_quiz_tells_right_from_wrong_and_remembers(self):
        said, _ = self.quiz("a\n maybe \n A\r\n\n", "--silent")
        self.assertRegex(said, r"(?s)wrong; the answer is B.*Tom is here.*one letter.*right.*skipped")
        self.assertIn("score: 1 right, 1 wrong, 1 skipped\n", said)
        said, _ = self.quiz("b", "--only-wrong", "--device", "host")  # the input ends without a line end
        self.assertNotIn("Tom", said)
        self.assertIn("score: 1 right, 0 wrong, 0 skipped; the time before 0 right of the same 1", said)
        self.assertIn("no question was answered wrong", self.quiz("", "--only-wrong")[0])
        said, complaint = self.quiz(".\nq\n", "--device", "none")
        self.assertEqual(complaint.count("without sound"), 1)
        self.assertIn("score: 0 right, 0 wrong, 0 skipped\n", said)
        (scores,) = self.home.rglob("scores.tsv")
        rows = [line.split("\t") for line in scores.read_text().splitlines()]
        kept = ["1 1 A B wrong", "2 3 A A right", "3 4  A skipped", "1 1 B B right"]
        self.assertEqual([" ".join(row[1:6]) for row in rows[1:]], kept)
        self.assertRegex(rows[1][0], r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d$")

        # A question that has changed is another one, and a line that was cut off counts for nothing.
        with open(scores, "a") as file:
            file.write("2026-01-01 00:00:00\t1\t1\tA")
        self.write("第 1.SCR", SCRIPT.replace("A. yes", "A. yes!").encode())
        self.assertIn("score: 0 right, 1 wrong, 0 skipped\n", self.quiz("a\n", "--silent")[0])
        self.assertIn("1 question;", self.quiz("q\n", "--silent", "--only-wrong")[0])


if __name__ == "__main__":
    unittest.main()
