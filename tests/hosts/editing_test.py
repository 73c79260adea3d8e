"""Bookmarks, pieces of recordings, and deleting sentences: what is left after refusals, kills and failures at every call
that changes a file."""

import hashlib
import os
import stat
import struct
import unittest

from program import FOUR_SENTENCES, FOUR_STARTS, ProgramTest, chunk, format_record, riff, tones

HEADER_BYTES = 44
BYTES_PER_MS = 16


def sound(path):
    content = path.read_bytes()
    return content[content.index(b"data") + 8 :]


def hash_of(path):
    return hashlib.sha1(path.read_bytes()).hexdigest()


class EditingTest(ProgramTest):
    def setUp(self):
        super().setUp()
        # Every sample its own number: what was cut out and what moved shows in the bytes.
        shape = tones(FOUR_SENTENCES)
        numbered = struct.pack(f"<{(len(shape) - 44) // 2}h", *[i % 30000 for i in range((len(shape) - 44) // 2)])
        self.recording = self.write("a.wav", shape)
        self.succeed("cut", "a.wav")
        times = (self.recording.stat().st_atime_ns, self.recording.stat().st_mtime_ns)
        self.recording.write_bytes(shape[:HEADER_BYTES] + numbered)
        os.utime(self.recording, ns=times)

    def add_bookmark(self, time, label=""):
        return self.succeed("bookmarks", "add", "a.wav", "--time", time, "--label", label)

    def record(self, sentence):
        self.succeed("record", "a.wav", "--sentence", str(sentence), "--seconds", "0.1", "--device", "file:a.wav")

    def sentences_with_takes(self):
        return sorted(path.parent.name for path in self.home.glob("lessons/*/takes/*/*.wav"))

    def bookmarks(self):
        lines = self.succeed("bookmarks", "list", "a.wav").splitlines()
        return [tuple(line.split()[1:]) for line in lines[1:]]

    def everything(self):
        """Name, content and time of all that belongs to the learner."""
        files = [self.recording] + [path for path in self.home.rglob("*") if path.is_file() and path.suffix != ".lock"]
        return {str(path): (hash_of(path), path.stat().st_mtime_ns) for path in files}


class Bookmarks(EditingTest):
    def test_bookmarks_are_kept_in_the_study_file_beside_the_sentences(self):
        self.add_bookmark("1.5", "here")
        self.succeed("bookmarks", "add", "a.wav", "--sentence", "3", "--label", "第三句话第三句话")
        self.assertEqual(self.bookmarks(), [("0:01.500", "here"), ("0:06.320", "第三句话第")])
        (study,) = self.kept(".zud")
        content = study.read_bytes()
        self.assertEqual(content[:16], struct.pack("<I12s", 1500, b"here"))
        self.assertEqual(content[16:32], struct.pack("<I12s", 6320, "第三句话第".encode("gbk")))
        self.assertEqual(content[320:], struct.pack("<4I", *FOUR_STARTS))
        self.succeed("bookmarks", "rm", "a.wav", "--number", "1")
        self.assertEqual(self.bookmarks(), [("0:06.320", "第三句话第")])
        # Labels of other programs stay as they are, whatever their bytes.
        study.write_bytes(struct.pack("<I12s", 500, b"\xaa\xa1ab\xff") + content[16:])
        self.add_bookmark("2")
        self.assertEqual(study.read_bytes()[4:10], b"\xaa\xa1ab\xff\0")
        (self.root / "a.zud").write_bytes(content)  # one beside the recording does not come back
        self.succeed("bookmarks", "clear", "a.wav")
        self.assertEqual(self.bookmarks(), [])
        self.assertIn("4 sentences", self.succeed("lesson", "a.wav"))

    def test_what_cannot_be_a_bookmark_is_refused_and_the_others_stay(self):
        for i in range(19):
            self.add_bookmark(str(1 + i / 10))
        before = self.everything()
        for words, reason in [
            (["--time", "0"], "beginning"),
            (["--time", "12.4"], "ends at 0:12.400"),
            (["--sentence", "5"], "no sentence 5"),
            (["--time", "1", "--label", "😀"], "GBK"),
        ]:
            self.refused("bookmarks", "add", "a.wav", *words, saying=reason)
        self.refused("bookmarks", "rm", "a.wav", "--number", "20")
        self.assertEqual(self.everything(), before)
        self.add_bookmark("12.399")
        self.refused("bookmarks", "add", "a.wav", "--time", "1", saying="20 bookmarks already")
        for words in [["add", "a.wav"], ["rm", "a.wav"], ["add", "a.wav", "--time", "1", "--sentence", "2"]]:
            self.refused("bookmarks", *words, code=2)


class Pieces(EditingTest):
    def test_an_extract_is_a_whole_recording_of_that_stretch(self):
        whole = sound(self.recording)
        for words, start, end in [(["--sentence", "2"], 3120, 6320), (["--from", "12"], 12000, 12400)]:
            self.succeed("extract", "a.wav", *words, "-o", "第 1.wav", "--force")
            piece = sound(self.root / "第 1.wav")
            self.assertEqual(piece, whole[start * BYTES_PER_MS : end * BYTES_PER_MS])
            self.assertIn("16-bit mono, 8000 Hz", self.succeed("info", "第 1.wav"))

    def test_an_extract_begins_on_a_frame_wherever_the_sound_lies(self):
        frames = b"".join(struct.pack("<hh", i, -i) for i in range(22050))
        content = riff(chunk(b"fmt ", format_record(channels=2, rate=22050) + b"\0\0"), chunk(b"LIST", bytes(3001)), chunk(b"data", frames))
        self.write("b.wav", content)
        self.succeed("extract", "b.wav", "--from", "0.005", "--to", "0.5", "-o", "x.wav")
        self.assertEqual(sound(self.root / "x.wav"), frames[110 * 4 : 11025 * 4])

    def test_mono_is_the_first_channel(self):
        stereo = self.write("stereo.wav", tones(FOUR_SENTENCES, channels=2))
        self.succeed("mono", "stereo.wav", "-o", "m.wav")
        left = sound(stereo)
        self.assertEqual(sound(self.root / "m.wav"), b"".join(left[i : i + 2] for i in range(0, len(left), 4)))

    def test_a_refused_piece_leaves_the_old_file(self):
        old = self.write("old.wav", b"precious")
        for words in [
            ["extract", "a.wav", "--from", "1", "--to", "13", "-o", "old.wav", "--force"],
            ["extract", "a.wav", "--sentence", "9", "-o", "old.wav", "--force"],
            ["extract", "a.wav", "--sentence", "1", "-o", "old.wav"],
            ["extract", "a.wav", "--sentence", "1", "-o", "nowhere/x.wav"],
            ["extract", "a.wav", "--sentence", "1", "-o", "a.wav"],
            ["mono", "a.wav", "-o", "old.wav", "--force"],
            ["wave", "a.wav", "-o", "a.wav"],
            ["wave", "a.wav", "-o", "old.wav"],
        ]:
            before = self.everything()
            self.refused(*words)
            self.assertEqual(self.everything(), before)
        self.assertEqual(old.read_bytes(), b"precious")


class Deleting(EditingTest):
    def test_what_is_deleted_is_gone_and_the_rest_goes_with_its_sentence(self):
        whole = sound(self.recording)
        for time, label in [("0.2", "before"), ("3.5", "second"), ("6.42", "third"), ("12", "fourth")]:
            self.add_bookmark(time, label)
        for sentence in [2, 3]:
            self.record(sentence)
        before = self.everything()
        said = self.succeed("delete", "a.wav", "--sentence", "2,4", "--sentence", "2")
        self.assertIn("2 sentences left, 2 bookmarks gone", said)
        self.assertEqual(sound(self.recording), whole[: 3120 * BYTES_PER_MS] + whole[6320 * 16 : 9520 * BYTES_PER_MS])
        self.assertEqual(self.bookmarks(), [("0:00.200", "before"), ("0:03.220", "third")])
        self.assertIn("2 sentences in 0:06.320 (from its study file)", self.succeed("lesson", "a.wav"))
        self.assertEqual(self.sentences_with_takes(), ["002"])

        self.assertIn("2 sentences back", self.succeed("undo", "a.wav"))
        self.assertEqual(self.everything(), before)
        self.refused("undo", "a.wav", saying="nothing was deleted")

    def test_undo_goes_back_step_by_step_and_never_over_later_work_unasked(self):
        start = self.everything()
        self.succeed("delete", "a.wav", "--sentence", "1")
        self.succeed("delete", "a.wav", "--sentence", "2")
        self.add_bookmark("1", "later")
        self.refused("undo", "a.wav", saying="--force")
        self.assertEqual(self.bookmarks(), [("0:01.000", "later")])
        self.record(2)
        self.succeed("undo", "a.wav", "--force")
        self.succeed("undo", "a.wav")
        after = self.everything()
        self.assertEqual({path: after[path] for path in start}, start)
        # Sentence 4 of the whole recording is the one that was recorded as 2.
        self.assertEqual(self.sentences_with_takes(), ["004"])

    def test_a_recording_reached_by_a_link_is_the_one_that_changes(self):
        other = self.write("emoji 😀.wav", tones(FOUR_SENTENCES))
        self.run_program("cut", other.name)
        whole = other.read_bytes()
        self.succeed("delete", other.name, "--sentence", "1")
        self.assertEqual(len(sound(other)), len(whole) - HEADER_BYTES - 2800 * BYTES_PER_MS)
        self.succeed("undo", other.name)
        self.assertEqual(other.read_bytes(), whole)

    def test_an_undo_without_room_changes_nothing(self):
        self.succeed("delete", "a.wav", "--sentence", "2")
        before = self.everything()

        self.assertEqual(self.run_on_full_disk(100_000, "undo", "a.wav").returncode, 1)
        self.assertEqual(self.everything(), before)
        # A backup that somebody took the recording out of is none.
        (backup,) = self.home.glob("lessons/*/backups/*")
        (backup / "recording.wav").unlink()
        self.refused("undo", "a.wav", "--force")
        self.assertIn("3 sentences", self.succeed("lesson", "a.wav"))

    def test_what_cannot_be_deleted_is_refused_with_nothing_changed(self):
        before = self.everything()
        for words in [["5"], ["1", "2", "3", "4"]]:
            numbers = [word for number in words for word in ["--sentence", number]]
            self.refused("delete", "a.wav", *numbers)
        os.chmod(self.recording, stat.S_IRUSR)
        self.refused("delete", "a.wav", "--sentence", "1", saying="read-only")
        os.chmod(self.recording, stat.S_IRUSR | stat.S_IWUSR)
        self.assertEqual(self.everything(), before)


class DeletingWithFaults(EditingTest):
    """Every call that changes a file is, in turn, the last one before a power cut, or fails as on a full disk."""

    def learners(self):
        """Recording, sentences, bookmarks and takes: all that must be of one piece."""
        study = [hash_of(path) for path in self.home.glob("lessons/*/zud/*.zud")]
        takes = sorted((p.parent.name, p.name) for p in self.home.glob("lessons/*/takes/*/*.wav"))
        return hash_of(self.recording), study, takes

    def backups(self):
        return len(list(self.home.glob("lessons/*/backups/*/recording.wav")))

    def setUp(self):
        super().setUp()
        self.add_bookmark("7", "third")
        self.record(3)
        self.old = self.learners()
        self.deletion = ["delete", "a.wav", "--sentence", "2"]
        self.succeed(*self.deletion)  # a first one makes folders that the others find
        self.succeed("undo", "a.wav")
        self.delete_calls = self.calls_of(*self.deletion)
        self.new = self.learners()
        self.undo_calls = self.calls_of("undo", "a.wav")
        self.assertEqual(self.learners(), self.old)
        self.assertGreater(self.delete_calls, 20)
        self.assertGreater(self.undo_calls, 5)

    def check_either(self, call):
        """After the next command everything is old or everything is new, and an interrupted change was told of."""
        left = list(self.home.glob("lessons/*/editing"))
        said = self.run_program("bookmarks", "list", "a.wav")
        self.assertEqual(said.returncode, 0, (call, said.stderr))
        self.assertEqual("was interrupted" in said.stderr, bool(left), call)
        now = self.learners()
        self.assertIn(now, (self.old, self.new), call)
        self.assertEqual(self.backups(), int(now == self.new), call)
        if now == self.new:
            self.succeed("undo", "a.wav")
        self.assertEqual(self.learners(), self.old, call)
        return now == self.new

    def test_a_power_cut_at_any_call_of_a_deletion_or_its_undoing(self):
        for call in range(1, self.delete_calls + 1):
            self.assertEqual(self.run_with_fault({"TAVIMO_DIE_AT": str(call)}, *self.deletion).returncode, 99)
            self.assertFalse(self.check_either(call))  # the last call is what makes it all new
        for call in range(1, self.undo_calls + 1):
            self.succeed(*self.deletion)
            self.assertEqual(self.run_with_fault({"TAVIMO_DIE_AT": str(call)}, "undo", "a.wav").returncode, 99)
            self.check_either(call)

    def test_a_failure_at_any_call_of_a_deletion(self):
        for call in range(1, self.delete_calls + 1):
            result = self.run_with_fault({"TAVIMO_FAIL_AT": str(call)}, *self.deletion)
            is_done = self.check_either(call)
            self.assertEqual(result.returncode == 0, is_done, (call, result.stderr))
            self.assertEqual(bool(result.stderr), not is_done)


if __name__ == "__main__":
    unittest.main()
