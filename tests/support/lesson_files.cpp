#include "support/lesson_files.h"

#include "support/scratch_folder.h"
#include "support/wave_bytes.h"

namespace tavimo::tests {

namespace {

// Silence and sound by turns, a second each.
Bytes Sound() {
  Bytes sound(6000, 128);
  for (std::size_t i = 0; i < sound.size(); ++i) {
    if (i / 1000 % 2 == 1) sound[i] = static_cast<std::uint8_t>(i * 7);
  }
  return sound;
}

Bytes StudyFile() {
  Bytes bytes;
  AppendLittleEndian(bytes, 1500, 4);
  AppendText(bytes, "a mark");
  bytes.resize(320);
  AppendLittleEndian(bytes, 0, 4);
  AppendLittleEndian(bytes, 2000, 4);
  return bytes;
}

}  // namespace

void WriteLesson() {
  const Bytes wave = WaveFile({1, 1, 1000, 8}, Sound());
  WriteBytes("a.wav", wave);
  WriteBytes("stereo.wav", WaveFile({1, 2, 1000, 16}, Sound()));
  WriteBytes("tmpwav/tmpmic.wav", wave);
  WriteBytes("temp/a.tmp", {0, 0, 90, 90, 0, 0, 0, 0, 90, 0, 0, 0, 50, 0, 0});
  for (const char* path : {"a.zud", "zud/a.zud"}) WriteBytes(path, StudyFile());
  WriteText("a.scr", "##N1T1\nWho?\n##XZ\nA.\nB.\n$$B\n##N0T3\nA passage.\n$$\n");
  WriteText("a.txt", "@@One two-three four.\r\n\xC4\xE3\xBA\xC3 five.\r\n");
  WriteText("a.par", "12345678901234567890");
  WriteText("article.txt", "[unit1]\r\n1=One\r\n");
}

}  // namespace tavimo::tests
