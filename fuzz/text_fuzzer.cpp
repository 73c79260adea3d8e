// Two texts of any bytes: compared, converted, and taken for paths by whatever takes one.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/fuzz_ground.h"
#include "tavimo.h"
#include "tavimo_host.h"

using namespace tavimo;

namespace {

int Sign(std::int32_t number) { return (number > 0) - (number < 0); }

void Compare(const std::string& left, const std::string& right) {
  const std::int32_t order = vcStrcmp(left.c_str(), right.c_str());
  fuzz::Check(Sign(order) == -Sign(vcStrcmp(right.c_str(), left.c_str())), "an order has two sides");
  fuzz::Check(vcStrcmp(left.c_str(), left.c_str()) == 0, "a text equals itself");
}

void Convert(const std::string& text, int room) {
  fuzz::ExactRoom out(static_cast<std::size_t>(room));
  fuzz::ExactRoom back(text.size() + 1);
  fuzz::ExactRoom utf8(4 * text.size() + 1);
  for (const auto convert : {tvGbkFromUtf8, tvUtf8FromGbk, tvEnginePath, tvNativePath}) {
    const int byteCount = convert(text.c_str(), out.Data(), room);
    fuzz::Check(byteCount == -1 || (byteCount >= 1 && byteCount <= room), "a text and its zero fit");
    fuzz::Check(std::strlen(out.Data()) + 1 == static_cast<std::size_t>(std::max(byteCount, 1)), "or it is empty");
  }
  const std::string whole = text.c_str();  // up to its first zero
  if (tvUtf8FromGbk(whole.c_str(), utf8.Data(), static_cast<int>(4 * text.size() + 1)) > 0) {
    const int byteCount = tvGbkFromUtf8(utf8.Data(), back.Data(), static_cast<int>(text.size() + 1));
    fuzz::Check(byteCount > 0 && whole == back.Data(), "GBK comes back from UTF-8 as it was");
  }
}

void AskAbout(const char* path) {
  vcIsWaveFile(path);
  vcIsMp3File(path);
  // Half a character counts as two.
  const std::int32_t slash = vcFindLastSlash(path);
  fuzz::Check(slash >= -1 && slash <= static_cast<std::int32_t>(std::strlen(path)) + 1, "a slash lies in the path");
  vcGetCdRomDrive(path);
  fuzz::ExactRoom found(std::strlen(path) + 5);
  vcIfTxtGraphExist(path, found.Data());
  vcGetWzFile(path, found.Data());
  fuzz::ExactRoom both(std::strlen(path) + 5);
  std::strcpy(both.Data(), path);
  vcGetWzFile(both.Data(), both.Data());
  fuzz::ExactRoom own(path);
  vcOpenWzFile(own.Data());
  vcIfDigestFileExist(path);
  vcIfSoundParaFileExist(path);
  vcOpenSentenceFile(path);
}

// Every export that makes a file makes it under this name.
void WriteUnder(const char* path, const char* other) {
  const std::uint32_t values[] = {0, 40, 80};
  const std::uint8_t record[20] = {1};
  vcWriteMarkIdx(path, values, 3);
  vcWriteParaFile(path, 1, 2, 3);
  vcWriteSoundFilePara(other, path, record);
  vcWriteExtraFileData(path, values, 3);
  vcSimpleMakeDigestFile(other, "a.wav", path, nullptr);
  vcSteroToMono("a.wav", path);
  vcNewTapeFile(8000, 8, 1, path);
  vcCloseWaveFile(3);
  vcSaveTapeFile(path, other);
  vcStrongCopyFile(path, other, "temp\\");
  vcStrongCopyFile("temp\\", path, other);
  vcConvertScrToTstWz(path, other);
  vcDeleteFile(path);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Prepare();
  FuzzedDataProvider input(data, size);
  const int room = input.ConsumeIntegralInRange<int>(1, 300);
  const std::string left = input.ConsumeRandomLengthString(400);
  const std::string right = input.ConsumeRemainingBytesAsString();
  Compare(left, right);
  Convert(left, room);
  const std::uint8_t stereo[] = {'R', 'I', 'F', 'F', 40,  0,   0,   0,   'W',  'A', 'V', 'E', 'f', 'm', 't', ' ',
                                 16,  0,   0,   0,   1,   0,   2,   0,   0x40, 31,  0,   0,   0,   0,   0,   0,
                                 2,   0,   8,   0,   'd', 'a', 't', 'a', 4,    0,   0,   0,   1,   2,   3,   4};
  fuzz::WriteFile("a.wav", stereo, sizeof stereo);
  fuzz::WriteFile("temp/a.tmp", stereo, sizeof stereo);
  const std::string path = fuzz::HarmlessPath(left);
  AskAbout(path.c_str());
  WriteUnder(path.c_str(), fuzz::HarmlessPath(right).c_str());
  fuzz::CheckNothingIsLeft();
  return 0;
}
