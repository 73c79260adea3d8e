// The host kit's picture files: a PNG is written under a name of its own beside the final one and renamed when it is
// whole. Not through files.h: a native path may have characters that no engine path can hold, and means exactly one
// file, whatever the case of others.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "platform/common/guarded.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/memory_dc.h"
#include "platform/linux/posix_calls.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;

// A link keeps its place and what it points to is replaced. Empty when the name is taken by anything but a file that
// may be written: a device, say, must not give way to a picture.
std::string FinalPath(const char* nativePath) {
  struct stat status {};
  if (::stat(nativePath, &status) != 0) return nativePath;
  if (!S_ISREG(status.st_mode) || platform::IsReadOnly(status)) return {};
  const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(nativePath, nullptr), &std::free);
  return resolved ? resolved.get() : "";
}

// In the folder of the final path; its length does not depend on the final name's.
std::string TemporaryPath(const std::string& finalPath) {
  const std::size_t slash = finalPath.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : finalPath.substr(0, slash + 1);
  return folder + ".tavimo-" + std::to_string(::getpid()) + ".png.new";
}

bool WriteAll(void* descriptor, const unsigned char* bytes, unsigned int byteCount) {
  const int file = *static_cast<const int*>(descriptor);
  while (byteCount > 0) {
    const ssize_t written = platform::Uninterrupted([&] { return ::write(file, bytes, byteCount); });
    if (written <= 0) return false;
    bytes += written;
    byteCount -= static_cast<unsigned int>(written);
  }
  return true;
}

bool SavePng(platform::MemoryDc& memoryDc, const char* nativePath) {
  const std::string finalPath = FinalPath(nativePath);
  if (finalPath.empty()) return false;
  const std::string temporaryPath = TemporaryPath(finalPath);
  ::unlink(temporaryPath.c_str());  // a killed process of the same number may have left one
  platform::Descriptor file(::open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  if (!file.IsOpen()) return false;
  int descriptor = file.Get();
  bool isWhole = memoryDc.WritePng(&WriteAll, &descriptor);
  isWhole = file.Close() && isWhole;
  if (isWhole && std::rename(temporaryPath.c_str(), finalPath.c_str()) == 0) return true;
  ::unlink(temporaryPath.c_str());
  return false;
}

}  // namespace

extern "C" int tvSavePng(VcDc dc, const char* native_path) VC_NOEXCEPT {
  platform::MemoryDc* memoryDc = platform::FindDc(dc);
  if (!memoryDc || !native_path || !*native_path) return -1;
  return platform::Guarded(-1, [&] { return SavePng(*memoryDc, native_path) ? 0 : -1; });
}
