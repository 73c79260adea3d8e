// The door of the host utilities.
#include <cstring>

#include "core/core_state.h"
#include "core/fixed_text.h"
#include "core/text_compare.h"
#include "hostutil/file_utilities.h"
#include "hostutil/gbk_char_count.h"
#include "hostutil/program_family.h"
#include "platform/files.h"
#include "platform/windows.h"
#include "tavimo.h"

using namespace tavimo;

extern "C" {

std::int32_t VC_CALL vcCanRun(std::int32_t program) noexcept {
  const char* reason =
      hostutil::ReasonNotToRun(program, [](const char* title) { return platform::WindowTitleExists(title); });
  if (reason == nullptr) return 1;
  platform::ShowMessageBox(reason, "Tavimo");
  return 0;
}

std::int32_t VC_CALL vcGetCdRomDrive(const char* relative_path) noexcept {
  return hostutil::FindCdRomDrive(relative_path);
}

std::int32_t VC_CALL vcStrongCopyFile(const char* to_folder, const char* pattern, const char* from_folder) noexcept {
  return hostutil::StrongCopyFile(to_folder, pattern, from_folder);
}

std::int32_t VC_CALL vcStrcmp(const char* left, const char* right) noexcept {
  return core::CompareIgnoringCase(core::TextOf(left), core::TextOf(right));
}

std::int32_t VC_CALL vcDeleteFile(const char* path) noexcept { return platform::RemoveFile(path) ? 0 : -1; }

std::int32_t VC_CALL vcFindLastSlash(const char* path) noexcept { return hostutil::FindLastSlash(core::TextOf(path)); }

std::int32_t VC_CALL vcGetDragFile(char* path) noexcept {
  const auto& dropped = core::State().dropBuffer;
  if (path != nullptr) std::memcpy(path, dropped.data(), std::strlen(dropped.data()) + 1);
  return hostutil::GbkCharCount(dropped.data());
}

}  // extern "C"
