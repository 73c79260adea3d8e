// What list boxes and progress bars do with messages: the part of the platform's own behaviour that hosts and the engine
// use. Nothing is drawn. Knows nothing of windows.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/list_lines.h"

namespace tavimo::platform {

// Lines of GBK bytes, kept as they come: one behind another, each with its zero, so that a list of many thousand short
// lines fills quickly and takes little.
class ListBox {
 public:
  std::intptr_t Handle(std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept;

  // What TV_LB_ADDSTRING does, for each of the lines; for none when memory runs out.
  void Append(const ListLines& lines) noexcept;

 private:
  std::intptr_t Add(const char* text) noexcept;
  [[nodiscard]] std::intptr_t Length(std::uintptr_t index) const noexcept;
  std::intptr_t CopyTo(std::uintptr_t index, char* text) const noexcept;

  // False beyond what starts can tell.
  [[nodiscard]] bool MakeRoom(std::size_t byteCount);

  std::vector<char> text_;  // with room behind its end
  std::size_t end_ = 0;
  std::vector<std::uint32_t> starts_;  // of the lines in the text, which is full at 4 GiB
};

class ProgressBar {
 public:
  std::intptr_t Handle(std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept;

 private:
  std::intptr_t SetRange(std::uint32_t limits) noexcept;
  std::intptr_t SetPosition(std::int32_t position) noexcept;
  std::intptr_t Range(bool wantsLow, std::int32_t* bothLimits) const noexcept;

  std::int32_t low_ = 0;
  std::int32_t high_ = 100;
  std::int32_t position_ = 0;
};

}  // namespace tavimo::platform
