"""The lesson's page in a real browser: it plays, checks, obeys the keyboard and speaks the system's language."""

import json
import re
import shutil
import socket
import struct
import subprocess
import sys
import time
import unittest
import urllib.error
import urllib.request

import program
from program import FOUR_SENTENCES, ProgramTest, chunk, format_record, riff, tones

LESSON = program.SOURCE / "lessons/first-day"
ELEMENT = "element-6066-11e4-a52e-4f735466cecf"  # how WebDriver (W3C) names an element
KEYS = {"down": "\ue015", "escape": "\ue00c", "enter": "\ue007"}


class Browser:
    """A headless Chromium behind its WebDriver, spoken to in plain HTTP."""

    def __init__(self, profile, language="en-US", width=1000, dark=False):
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            self.port = probe.getsockname()[1]
        quiet = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self.driver = subprocess.Popen(["chromedriver", f"--port={self.port}"], **quiet)
        arguments = ["--headless", "--no-sandbox", "--disable-gpu", "--no-first-run", "--mute-audio",
                     "--disable-background-networking", "--disable-component-update", "--disable-sync",
                     "--autoplay-policy=no-user-gesture-required", f"--accept-lang={language}",
                     f"--window-size={width},900", f"--user-data-dir={profile}"]
        options = {"args": arguments + (["--force-dark-mode"] if dark else [])}
        self.session = ""
        wanted = {"alwaysMatch": {"goog:chromeOptions": options, "goog:loggingPrefs": {"browser": "ALL"}}}
        until = time.monotonic() + 10
        while not self.session:
            try:
                self.session = "/session/" + self.ask("POST", "/session", {"capabilities": wanted})["sessionId"]
            except OSError:
                assert time.monotonic() < until, "the browser does not start"
                time.sleep(0.1)

    def ask(self, method, path, body=None):
        data = None if body is None else json.dumps(body).encode()
        url = f"http://127.0.0.1:{self.port}{self.session}{path}"
        try:
            with urllib.request.urlopen(urllib.request.Request(url, data, method=method), timeout=60) as answer:
                return json.load(answer)["value"]
        except urllib.error.HTTPError as error:
            raise AssertionError(error.read().decode()[:500]) from error

    def close(self):
        self.ask("DELETE", "")
        self.driver.terminate()
        self.driver.wait()

    def open(self, page):
        self.ask("POST", "/url", {"url": page.as_uri()})

    def run(self, script):
        return self.ask("POST", "/execute/sync", {"script": script, "args": []})

    def click(self, selector):
        self.run(f"document.querySelector({json.dumps(selector)}).scrollIntoView({{block: 'center'}})")
        element = self.ask("POST", "/element", {"using": "css selector", "value": selector})[ELEMENT]
        self.ask("POST", f"/element/{element}/click", {})

    def press(self, *keys):
        actions = []
        for key in keys:
            value = KEYS.get(key, key)
            actions += [{"type": "keyDown", "value": value}, {"type": "keyUp", "value": value}]
        self.ask("POST", "/actions", {"actions": [{"type": "key", "id": "keyboard", "actions": actions}]})

    def wait_for(self, script):
        until = time.monotonic() + 15
        while not self.run("return " + script):
            assert time.monotonic() < until, script
            time.sleep(0.05)

    def complaints(self):
        return [entry for entry in self.ask("POST", "/se/log", {"type": "browser"}) if entry["level"] == "SEVERE"]


@unittest.skipUnless(shutil.which("chromedriver"), "there is no browser")
class LessonPage(ProgramTest):
    def setUp(self):
        super().setUp()
        for file in LESSON.iterdir():
            if file.suffix in (".wav", ".scr", ".txt", ".bmp"):
                shutil.copy2(file, self.root / file.name)
        self.succeed("cut", "first-day.wav")
        self.succeed("bookmarks", "add", "first-day.wav", "--sentence", "3", "--label", "图画 <b>")
        self.succeed("pages", "build", "first-day.txt")
        self.succeed("pages", "mark", "first-day.txt", "teacher")
        self.succeed("lesson", str(self.root), "-o", ".")
        self.page = self.root / "lesson.html"

    def browse(self, **how):
        browser = Browser(self.root / "profile", **how)
        self.addCleanup(browser.close)
        browser.open(self.page)
        return browser

    def test_it_plays_checks_and_obeys_the_keyboard(self):
        html = self.page.read_text(encoding="utf-8")
        self.assertEqual(set(re.findall(r"https?://[^\"'\s]+", html)), {"http://www.w3.org/2000/svg"})
        browser = self.browse()
        self.assertEqual(browser.run("return document.querySelectorAll('.sentence').length"), 19)
        self.assertEqual(browser.run("return document.querySelectorAll('.take').length"), 1)
        browser.wait_for("[...document.images].length > 3 && [...document.images].every((i) => i.naturalWidth > 0)")
        self.assertIn("图画 <b>", browser.run("return document.querySelector('.bookmarks').textContent"))

        playing = "[...document.querySelectorAll('.playing')].map((card) => card.id).join()"
        browser.click("#sentence-3 button.main")
        browser.wait_for(f"{playing} === 'sentence-3' && !sound.paused && sound.currentTime * 1000 > lesson.sentences[2].start_ms")
        browser.wait_for(f"{playing} === '' && sound.paused")
        end = browser.run("return sound.currentTime * 1000 - lesson.sentences[2].end_ms")
        self.assertLess(abs(end), 250)

        browser.run("document.querySelector('#sentence-1').focus()")
        browser.press("down", "3")
        browser.wait_for(f"{playing} === 'sentence-2'")
        browser.press("escape")
        browser.wait_for("sound.paused")
        browser.press("t")
        browser.wait_for("[...document.querySelectorAll('audio')].some((audio) => audio !== sound && !audio.paused)")
        browser.press("escape", "s")
        browser.wait_for("!sound.paused && sound.playbackRate === 0.7")

        verdict = "document.querySelector('#sentence-1 .verdict').textContent"
        right = browser.run("return lesson.sentences[0].exercise.answer")
        wrong = "A" if right != "A" else "B"
        check = "#sentence-1 .exercise button"
        browser.click(check)
        self.assertEqual(browser.run("return " + verdict), "Choose an answer first")
        for letter, expected in [(wrong, "Not yet: it is " + right), (right, "Right")]:
            browser.click(f"#sentence-1 input[value={letter}]")
            browser.click(check)
            self.assertEqual(browser.run("return " + verdict), expected)
        self.assertEqual(browser.complaints(), [])

    def test_it_speaks_chinese_fits_a_narrow_window_and_is_dark_at_night(self):
        browser = self.browse(language="zh-CN", width=500, dark=True)
        self.assertEqual(browser.run("return document.querySelector('h2').textContent"), "句子")
        self.assertLessEqual(browser.run("return document.documentElement.scrollWidth - innerWidth"), 0)
        ground = browser.run("return getComputedStyle(document.body).backgroundColor")
        self.assertLess(max(map(int, re.findall(r"\d+", ground))), 60)
        browser.click("#language")
        self.assertEqual(browser.run("return document.querySelector('h2').textContent"), "Sentences")

    def test_quick_keys_leave_the_newest_play_alone(self):
        browser = self.browse()
        browser.run("document.querySelector('#sentence-1').focus()")
        for _ in range(5):
            browser.press(*" 3 s 3 ")
            browser.click("#sentence-4 button.main")
            browser.wait_for("!sound.paused && sound.currentTime * 1000 > lesson.sentences[3].start_ms + 50")
            playing = browser.run("return [...document.querySelectorAll('.playing')].map((card) => card.id).join()")
            self.assertEqual(playing, "sentence-4")
        # Without frames, as in a window behind others, the sentence ends too.
        browser.run("window.requestAnimationFrame = () => 0; document.querySelector('#sentence-6').play(1, 1)")
        browser.wait_for("sound.paused")
        self.assertLess(browser.run("return sound.currentTime * 1000 - lesson.sentences[5].end_ms"), 400)


class LessonFolders(ProgramTest):
    """What lies beside a recording may be anything; the rest of the lesson is made all the same."""

    def lesson(self, *words, code=0):
        result = self.run_program("lesson", *words)
        self.assertEqual(result.returncode, code, result.stderr)
        return result.stderr

    def page(self, name="lesson.html"):
        html = (self.root / name).read_text(encoding="utf-8")
        return json.loads(re.search(r'id="lesson">(.*?)</script>', html, re.DOTALL).group(1))

    def test_what_is_no_use_is_told_and_left_out(self):
        self.write("a.wav", tones(FOUR_SENTENCES))
        self.write("a.learner.wav", b"no sound")
        (self.root / "a.jpg").mkdir()
        self.write("a.scr", b"no script \xff\xff\xff")
        self.write("a.txt", b"a\0b")
        said = self.lesson("a.wav", code=1)
        for line in ("a.learner.wav: it is not a wave file", "a.jpg: ", "a.wav: a.scr: it is neither", "a.txt: line 1"):
            self.assertIn("\ntavimo: " + line, "\n" + said)
        self.assertEqual(len(self.page()["sentences"]), 4)
        shutil.rmtree(self.root / "a.jpg")
        self.write("a.bmp", (LESSON / "first-day.bmp").read_bytes())
        self.lesson("a.wav", code=1)
        self.assertTrue(self.page()["picture"].startswith("data:image/bmp;base64,Qk"), "a picture needs no questions")

    def test_sound_of_other_kinds_keeps_what_lies_beside_it(self):
        sound = [(700, 0), (1000, 1), (900, 0), (1000, 1), (700, 0)]
        self.write("l/wide.wav", riff(chunk(b"fmt ", format_record(tag=3, bits=32)),
                                      chunk(b"data", struct.pack("<16000f", *([0, 0.5] * 8000)))))
        self.write("l/wide.txt", b"Wide words.")
        self.write("l/bad.mp3", b"no sound")
        self.write("l/._good.wav", b"what other systems leave")
        (self.root / "l/loop").symlink_to("loop")
        self.write("l/good.wav", tones(sound))
        self.assertIn("bad.mp3: it is no sound", self.lesson("l", code=1))
        self.assertEqual(self.page("wide-16bit-lesson.html")["pages"][0]["lines"], [["Wide words."]])
        self.assertEqual(len(self.page("wide-16bit-lesson.html")["sentences"]), 1, "too short to cut, and still played")
        self.assertGreater(len(self.page("good-lesson.html")["sentences"]), 1)
        self.write("m/good.wav", tones(sound))
        self.lesson("l/good.wav", "m/good.wav")
        self.assertEqual(self.page("good-lesson-2.html")["title"], "good")
        self.assertIn("there are the folders home, l, m\n", self.lesson(str(self.root), code=1))


if __name__ == "__main__":
    unittest.main()
