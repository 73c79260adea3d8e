"""Scripts page by page: built, shown, marked and listed; marks kept as long as the text is the same."""

import itertools
import json
import os
import random
import unittest

from program import SOURCE, ProgramTest, read_png

SCRIPT = """The dog
@@"Look at the dog," says Mr. Brown. It is 3.5 years old.
@@“狗（dog）很大。”它在跑。
It runs after
the DOG-cart, but the doghouse is empty.
"""
BUILD = ("--size", "16", "--page", "316x136")
RED, BLACK, WHITE = (255, 0, 0), (0, 0, 0), (255, 255, 255)


class PagesTest(ProgramTest):
    def build(self, text, *words, encoding="utf-8"):
        self.script = self.write("s.txt", text if isinstance(text, bytes) else text.encode(encoding))
        return self.succeed("pages", "build", "s.txt", *(words or BUILD))

    def pages(self):
        return int(self.succeed("pages", "show", "s.txt").split("\n")[0].split()[-1])

    def text(self):
        return [self.succeed("pages", "show", "s.txt", str(n + 1)).splitlines()[1:] for n in range(self.pages())]

    def words(self):
        return [(row["page"], row["word"]) for row in json.loads(self.succeed("pages", "words", "s.txt", "--json"))["words"]]

    def refused(self, *words, code=1):
        result = self.run_program("pages", *words)
        self.assertEqual((result.returncode, result.stdout), (code, ""), words)
        return result.stderr


class Pages(PagesTest):
    def test_a_script_is_shown_in_the_lines_of_its_pages_with_its_marks(self):
        self.build(SCRIPT)
        first = ["The dog", '  "Look at the dog," says Mr. Brown. ', "It is 3.5 years old."]
        second = ["  “狗（dog）很大。”它在跑。", "It runs after", "the DOG-cart, but the doghouse is "]
        self.assertEqual(self.text(), [first, second, ["empty."]])
        self.assertEqual(len(self.succeed("pages", "mark", "s.txt", "dog").splitlines()), 4)
        self.succeed("pages", "mark", "s.txt", "Dog", "--page", "1", "--number", "2")
        self.assertEqual(self.words(), [(1, "dog"), (2, "dog"), (2, "DOG")])
        self.assertEqual(self.text()[1][0], "  “狗（[dog]）很大。”它在跑。")
        table = "page\tword\tsentence\n1\tdog\tThe dog\n2\tdog\t“狗（dog）很大。”\n"
        table += "2\tDOG\tIt runs after the DOG-cart, but the doghouse is empty.\n"
        self.assertEqual(self.succeed("pages", "words", "s.txt", "--tsv"), table)
        self.succeed("pages", "mark", "s.txt", "BROWN")
        self.assertIn('"Look at the dog," says Mr. Brown.\n', self.succeed("pages", "words", "s.txt"))

    def test_only_the_pixels_of_marked_words_are_red(self):
        self.build(SCRIPT)
        self.succeed("pages", "show", "s.txt", "2", "-o", "plain.png")
        self.succeed("pages", "mark", "s.txt", "runs")
        for name in ("marked.png", "again.png"):
            self.succeed("pages", "show", "s.txt", "2", "-o", name)
        self.assertEqual((self.root / "marked.png").read_bytes(), (self.root / "again.png").read_bytes())
        width, height, plain = read_png(self.root / "plain.png")
        _, _, marked = read_png(self.root / "marked.png")
        self.assertEqual((width, height), (316, 136))
        places = [(x, y) for y in range(height) for x in range(width)]
        red = {(x, y) for x, y in places if marked[y][x] == RED}
        self.assertEqual({(x, y) for x, y in places if marked[y][x] != plain[y][x]}, red)
        self.assertTrue(all(plain[y][x] == BLACK for x, y in red))
        self.assertTrue(all(colour in (BLACK, WHITE) for row in plain for colour in row))
        # The second line of the page, behind "It ".
        left, right, top, bottom = 24 + 9, 24 + 60, 24 + 25, 24 + 50
        self.assertTrue(red and all(left < x < right and top <= y < bottom for x, y in red), red)
        x, y = min(red)
        self.assertIn("runs no longer", self.succeed("pages", "mark", "s.txt", "--page", "2", "--at", f"{x},{y}"))
        self.assertEqual(self.words(), [])

    def test_marks_stay_with_the_text_and_go_with_it(self):
        self.build(SCRIPT)
        self.succeed("pages", "mark", "s.txt", "dog")
        marks = self.words()
        os.utime(self.script, (1, 1))
        self.assertEqual(self.words(), marks)
        for size, extension, content in (("13", ".hlt", b""), ("16", ".pag", bytes(16))):
            for path in self.kept(extension):
                path.write_bytes(content)
            self.succeed("pages", "build", "s.txt", "--size", size, "--page", "316x136")
            self.assertEqual([word for _, word in self.words()], [word for _, word in marks], extension)
        for path in self.kept("pages.ini"):
            path.write_text("")
        self.assertEqual([word for _, word in self.words()], [word for _, word in marks], "pages of the usual size again")
        self.succeed("pages", "build", "s.txt", *BUILD)
        for path in self.kept("") + self.kept(".txt") + self.kept(".hlt"):
            os.utime(path, (5 if path.suffix == ".hlt" else 9,) * 2)
        self.assertEqual(self.words(), marks, "a home brought back from a copy without its file times")
        self.build(SCRIPT.replace("\n", "\r"), *BUILD, encoding="utf-16")
        self.assertEqual(self.words(), marks)
        self.script.write_text(SCRIPT + "The end.")
        result = self.run_program("pages", "words", "s.txt")
        self.assertEqual(result.stderr, "tavimo: s.txt: its text changed, so its words are no longer marked\n")
        self.assertEqual(self.words(), [])
        self.assertEqual(self.text()[2], ["empty.", "The end."])

    def test_each_word_has_a_mark_of_its_own_on_pages_that_cut_words(self):
        # The engine gives two words at a page's end one number, and so one colour.
        words = ["beginning" + a + b for a in "abcdefgh" for b in "abcde"]
        choose = random.Random(4)
        marked = set()
        for size in ("16", "13", "11", "16", "14"):
            self.write("s.txt", ("学习中".join(words) + "\n" + "so " * 99).encode())
            said = self.run_program("pages", "build", "s.txt", "--size", size, "--page", "246x236").stderr
            lost = int((said.split("s.txt: ") + ["0"])[1].split()[0])
            self.assertEqual(len(marked - {word for _, word in self.words()}), lost, said)
            marked = {word for _, word in self.words()}
            for word in choose.sample(words, 8):
                result = self.run_program("pages", "mark", "s.txt", word)
                if "cannot be marked" not in result.stderr:
                    marked ^= {word}
                self.assertEqual({word for _, word in self.words()}, marked, (size, word))
        cut = next(word for page, word in self.words() if page == 1)
        self.assertIn("page 1", self.succeed("pages", "mark", "s.txt", cut, "--page", "1"))

    def test_words_beyond_the_width_of_the_page_are_marked_too(self):
        # An indented line is measured with blanks and set with the wider '@': its last word may stand where no click goes.
        script = (SOURCE / "lessons/first-day/first-day.txt").read_bytes()
        self.build(script, "--size", "16", "--page", "300x200")
        self.assertEqual(len(self.succeed("pages", "mark", "s.txt", "a").splitlines()), 7)
        self.assertEqual(len(self.words()), 7)

    def test_a_word_without_room_for_its_mark_is_told(self):
        # More pieces than the engine's highlight file has bytes for: each line cuts a word, which it counts once.
        words = ["dagcbdccg" + a + b for a in "abcdef" for b in "abcdefghij"]
        self.build("学习" + "中".join(words), "--size", "16", "--page", "120x400")
        message = self.refused("mark", "s.txt", words[-1])
        self.assertIn(f"{words[-1]} cannot be marked; its page has more pieces", message)
        self.succeed("pages", "mark", "s.txt", words[0])
        self.assertEqual(self.words(), [(1, words[0])])

    def test_ten_thousand_words_without_a_line_end_are_marked_in_a_moment(self):
        self.build("the cat sat on the mat " * 60_000)
        lines = self.succeed("pages", "mark", "s.txt", "cat").splitlines()
        self.assertEqual(len(lines), 60_000)
        self.assertLess(max(map(len, lines)), 500)
        self.assertEqual(len(self.words()), 60_000)
        self.assertIn("60000 marked words kept", self.build(self.script.read_bytes(), "--size", "11"))

    def test_any_encoding_and_line_end_gives_the_same_pages(self):
        self.build(SCRIPT)
        expected = self.text()
        for encoding, line_end in itertools.product(("gbk", "utf-8-sig", "utf-16", "gb18030"), ("\n", "\r\n", "\r")):
            self.build(SCRIPT.replace("\n", line_end), encoding=encoding)
            self.assertEqual(self.text(), expected, (encoding, line_end))

    def test_characters_that_gbk_lacks_are_told_and_replaced_only_when_asked(self):
        self.write("lost.txt", "好\nok 한 🙂\n".encode())
        message = self.refused("build", "lost.txt")
        self.assertIn("lost.txt:2:4: GBK has no '한'", message)
        self.assertIn("lost.txt:2:6: ", message)
        self.assertEqual(list(self.home.rglob("*.*")), [])
        result = self.run_program("pages", "build", "lost.txt", "--replace")
        self.assertEqual((result.returncode, result.stderr.count("GBK has no")), (0, 2))
        self.assertEqual(self.succeed("pages", "show", "lost.txt").splitlines()[1:], ["好", "ok ? ?"])

    def test_what_cannot_be_done_is_refused_and_leaves_nothing(self):
        for name, content in (("a", b"a b"), ("empty", b""), ("zero", b"a\nb\0c"), ("broken", b"\xff\xfe\xd8")):
            self.write(name + ".txt", content)
        for words, code, message in (
            (("build", "a.txt", "--font", "No Such Font"), 1, "WenQuanYi Zen Hei"),
            (("build", "a.txt", "--page", "60x480"), 1, "no room for a line of two characters"),
            (("build", "a.txt", "--page", "640x40"), 1, "no room for a line"),
            (("build", "a.txt", "--size", "0"), 2, "--size"),
            (("build", "a.txt", "--encoding", "latin"), 2, "--encoding"),
            (("build", "empty.txt"), 1, "no text"),
            (("build", "zero.txt"), 1, "line 2 has a zero byte"),
            (("build", "broken.txt"), 1, "not all of it is"),
            (("show", "a.txt"), 1, "tavimo pages build"),
            (("mark", "a.txt"), 2, "a word, or --page and --at"),
        ):
            self.assertIn(message, self.refused(*words, code=code))
        self.assertEqual([path for path in self.home.rglob("*") if path.is_file()], [])

        self.build("one two 3")
        for words, message in (
            (("show", "s.txt", "2"), "no page 2; it has 1"),
            (("show", "s.txt", "-o", "s.txt"), "would replace it"),
            (("mark", "s.txt", "four"), "no word 'four'"),
            (("mark", "s.txt", "one", "--number", "2"), "1 times"),
            (("mark", "s.txt", "don't"), "not one word"),
            (("mark", "s.txt", "--page", "1", "--at", "1,1"), "no word at 1,1"),
            (("build", "s.txt", "--page", "30x30"), "no room"),
        ):
            self.assertIn(message, self.refused(*words))
        self.assertEqual(self.text(), [["one two 3"]], "what was built stays")

    def test_scripts_of_any_bytes_are_shown_or_refused(self):
        self.build(b"x" * 300_000)
        self.assertEqual(set("".join(self.succeed("pages", "show", "s.txt").splitlines()[1:])), {"x"})
        self.write("high.txt", b"\xb0\xa1" * 20_000)
        self.assertEqual(self.run_program("pages", "build", "high.txt").returncode, 0)
        self.assertIn("4988", self.refused("build", "high.txt", "--size", "6", "--page", "4096x4096"))
        self.assertIn("啊啊", self.succeed("pages", "show", "high.txt", "2"))
        for path in self.home.rglob("script.*"):
            path.write_bytes(path.read_bytes()[:9])
        self.assertIn("啊啊", self.succeed("pages", "show", "high.txt", "2"), "damaged files are made again")


class PagesWithFaults(PagesTest):
    """Every call that changes a file while other pages are made is, in turn, the last one, or fails as on a full disk."""

    def test_the_marks_stay_on_their_words(self):
        # At each size the ends of lines and pages cut other words, and so give the words other numbers.
        self.build(("学习中" + "ecccceacf" + "中" + "fecdddgae") * 20, "--size", "16", "--page", "146x136")
        self.succeed("pages", "mark", "s.txt", "ecccceacf", "--number", "7")
        self.succeed("pages", "mark", "s.txt", "fecdddgae", "--number", "15")
        marked = [word for _, word in self.words()]
        for fault, size in (("TAVIMO_DIE_AT", 13), ("TAVIMO_FAIL_AT", 16)):
            other = ("pages", "build", "s.txt", "--page", "146x136", "--size")
            calls = self.calls_of(*other, str(size))
            self.assertGreater(calls, 10)
            for call in range(1, calls + 1):
                self.succeed(*other, str(29 - size))
                result = self.run_with_fault({fault: str(call)}, *other, str(size))
                self.assertNotEqual(result.returncode == 0, bool(result.stderr) or fault == "TAVIMO_DIE_AT", call)
                self.assertEqual([word for _, word in self.words()], marked, (fault, call, result.stderr))


if __name__ == "__main__":
    unittest.main()
