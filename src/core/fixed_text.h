// A zero-terminated byte string of fixed room, for paths and labels: text that does not fit is refused, never cut.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace tavimo::core {

// A null pointer counts as the empty text.
inline std::string_view TextOf(const char* text) noexcept { return text == nullptr ? std::string_view{} : text; }

template <std::size_t Room>  // bytes of text, without the terminating zero
class FixedText {
 public:
  static constexpr std::size_t kRoom = Room;

  // False, and the text is then empty, when the parts together do not fit.
  template <typename... Parts>
  [[nodiscard]] bool Assign(const Parts&... parts) noexcept {
    length_ = 0;
    const bool fits = (Append(parts) && ...);
    if (!fits) length_ = 0;
    bytes_[length_] = '\0';
    return fits;
  }

  [[nodiscard]] const char* CString() const noexcept { return bytes_.data(); }
  [[nodiscard]] std::string_view View() const noexcept { return {bytes_.data(), length_}; }
  [[nodiscard]] bool IsEmpty() const noexcept { return length_ == 0; }

 private:
  bool Append(std::string_view part) noexcept {
    if (part.size() > Room - length_) return false;
    if (!part.empty()) std::memcpy(bytes_.data() + length_, part.data(), part.size());
    length_ += part.size();
    return true;
  }

  std::array<char, Room + 1> bytes_{};
  std::size_t length_ = 0;
};

}  // namespace tavimo::core
