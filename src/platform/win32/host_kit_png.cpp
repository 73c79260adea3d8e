// The host kit's picture files: a PNG is made by the system's own encoder under a name of its own beside the final one
// and renamed when it is whole.
// Each of these needs the one before it.
// clang-format off
#include "platform/win32/system.h"
#include <objidl.h>
#include <gdiplus.h>
// clang-format on

#include <optional>
#include <string>

#include "platform/common/guarded.h"
#include "platform/win32/file_calls.h"
#include "platform/win32/host_pictures.h"
#include "platform/win32/wide_text.h"
#include "tavimo_host.h"

namespace {

namespace platform = tavimo::platform;
namespace flat = Gdiplus::DllExports;

// The encoder of PNG files, by the number the system documents for it.
constexpr CLSID kPngEncoder = {0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

// The encoders may be used while it lives.
class Encoders {
 public:
  Encoders() noexcept {
    const Gdiplus::GdiplusStartupInput input;
    isReady_ = Gdiplus::GdiplusStartup(&token_, &input, nullptr) == Gdiplus::Ok;
  }
  Encoders(const Encoders&) = delete;
  Encoders& operator=(const Encoders&) = delete;
  ~Encoders() {
    if (isReady_) Gdiplus::GdiplusShutdown(token_);
  }
  [[nodiscard]] bool AreReady() const noexcept { return isReady_; }

 private:
  ULONG_PTR token_ = 0;
  bool isReady_ = false;
};

bool Encode(const platform::HostPicture& picture, const std::wstring& path) {
  const Encoders encoders;
  constexpr int kBytesPerPixel = 4;
  Gdiplus::GpBitmap* bitmap = nullptr;
  if (!encoders.AreReady() ||
      flat::GdipCreateBitmapFromScan0(picture.Width(), picture.Height(), picture.Width() * kBytesPerPixel,
                                      PixelFormat32bppRGB, reinterpret_cast<BYTE*>(picture.Pixels()),
                                      &bitmap) != Gdiplus::Ok) {
    return false;
  }
  const bool isWhole = flat::GdipSaveImageToFile(bitmap, path.c_str(), &kPngEncoder, nullptr) == Gdiplus::Ok;
  flat::GdipDisposeImage(bitmap);
  return isWhole;
}

bool SavePng(const platform::HostPicture& picture, const std::wstring& path) {
  if (platform::IsFolderOrReadOnly(path)) return false;
  const std::size_t slash = path.find_last_of(L"\\/");
  const std::wstring folder = slash == std::wstring::npos ? L"" : path.substr(0, slash + 1);
  const std::wstring temporary = folder + L".tavimo-" + std::to_wstring(GetCurrentProcessId()) + L".png.new";
  if (Encode(picture, temporary) && MoveFileExW(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
    return true;
  DeleteFileW(temporary.c_str());
  return false;
}

}  // namespace

extern "C" int tvSavePng(VcDc dc, const char* native_path) VC_NOEXCEPT {
  const platform::HostPicture* picture = platform::FindPicture(dc);
  if (!picture || !native_path || !*native_path) return -1;
  return platform::Guarded(-1, [&] {
    const std::optional<std::wstring> path = platform::WideFromUtf8(native_path);
    return path && SavePng(*picture, *path) ? 0 : -1;
  });
}
