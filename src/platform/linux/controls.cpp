// Implements controls.h with the platform's message numbers and results.
#include "platform/linux/controls.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/common/guarded.h"
#include "tavimo_host.h"

namespace tavimo::platform {

namespace {

constexpr std::intptr_t kListError = -1;       // LB_ERR
constexpr std::intptr_t kListErrorSpace = -2;  // LB_ERRSPACE

// lParam carries addresses in some messages.
template <class T>
T* PointerIn(std::intptr_t lparam) noexcept {
  return reinterpret_cast<T*>(lparam);
}

}  // namespace

std::intptr_t ListBox::Handle(std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept {
  switch (message) {
    case TV_LB_ADDSTRING:
      return Add(PointerIn<const char>(lparam));
    case TV_LB_RESETCONTENT:
      end_ = 0;
      starts_.clear();
      return 0;
    case TV_LB_GETCOUNT:
      return static_cast<std::intptr_t>(starts_.size());
    case TV_LB_GETTEXT:
      return CopyTo(wparam, PointerIn<char>(lparam));
    case TV_LB_GETTEXTLEN:
      return Length(wparam);
    default:
      return 0;
  }
}

std::intptr_t ListBox::Add(const char* text) noexcept {
  return Guarded<std::intptr_t>(kListErrorSpace, [&] {
    const char* const line = text ? text : "";
    const std::size_t byteCount = std::strlen(line) + 1;
    if (!MakeRoom(byteCount)) return kListErrorSpace;
    starts_.push_back(static_cast<std::uint32_t>(end_));
    std::memcpy(text_.data() + end_, line, byteCount);
    end_ += byteCount;
    return static_cast<std::intptr_t>(starts_.size() - 1);
  });
}

void ListBox::Append(const ListLines& lines) noexcept {
  if (lines.starts.empty()) return;
  Guarded(false, [&] {
    if (!MakeRoom(lines.byteCount)) return false;
    const std::size_t count = starts_.size();
    starts_.insert(starts_.end(), lines.starts.begin(), lines.starts.end());
    for (std::size_t i = count; i < starts_.size(); ++i) starts_[i] += static_cast<std::uint32_t>(end_);
    std::memcpy(text_.data() + end_, lines.text, lines.byteCount);
    end_ += lines.byteCount;
    return true;
  });
}

bool ListBox::MakeRoom(std::size_t byteCount) {
  constexpr std::size_t kLeastRoom = 1024;
  if (text_.size() - end_ >= byteCount) return true;
  if (byteCount > std::numeric_limits<std::uint32_t>::max() - end_) return false;
  text_.resize(std::max({2 * text_.size(), end_ + byteCount, kLeastRoom}));
  return true;
}

std::intptr_t ListBox::Length(std::uintptr_t index) const noexcept {
  return index < starts_.size() ? static_cast<std::intptr_t>(std::strlen(text_.data() + starts_[index])) : kListError;
}

std::intptr_t ListBox::CopyTo(std::uintptr_t index, char* text) const noexcept {
  const std::intptr_t length = Length(index);
  if (length >= 0 && text) std::memcpy(text, text_.data() + starts_[index], static_cast<std::size_t>(length) + 1);
  return length;
}

std::intptr_t ProgressBar::Handle(std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) noexcept {
  switch (message) {
    case TV_PBM_SETRANGE:
      return SetRange(static_cast<std::uint32_t>(lparam));
    case TV_PBM_SETPOS:
      return SetPosition(static_cast<std::int32_t>(wparam));
    case TV_PBM_GETPOS:
      return position_;
    case TV_PBM_GETRANGE:
      return Range(wparam != 0, PointerIn<std::int32_t>(lparam));
    default:
      return 0;
  }
}

// Limits travel as low | high << 16.
std::intptr_t ProgressBar::SetRange(std::uint32_t limits) noexcept {
  const std::intptr_t previous = low_ | high_ << 16;
  low_ = static_cast<std::int32_t>(limits & 0xFFFF);
  high_ = static_cast<std::int32_t>(limits >> 16);
  SetPosition(position_);
  return previous;
}

std::intptr_t ProgressBar::SetPosition(std::int32_t position) noexcept {
  const std::intptr_t previous = position_;
  position_ = std::max(low_, std::min(position, high_));  // low_ may be the greater one
  return previous;
}

std::intptr_t ProgressBar::Range(bool wantsLow, std::int32_t* bothLimits) const noexcept {
  if (bothLimits) {
    bothLimits[0] = low_;
    bothLimits[1] = high_;
  }
  return wantsLow ? low_ : high_;
}

}  // namespace tavimo::platform
