// How what the engine was given and what it wrote is shown to who writes a host: in the answers of `tavimo call` and the
// lines of `tavimo --trace`. It reads memory and calls nothing of the engine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tavimo::host {

// GBK as UTF-8; control characters are made visible.
[[nodiscard]] std::string ShownText(const std::string& gbk);

// "320, 3120, …": the first twenty at most.
[[nodiscard]] std::string ShownNumbers(std::span<const std::int32_t> numbers);
[[nodiscard]] std::string ShownNumbers(std::span<const std::uint32_t> numbers);

// "3cf00000…": two digits a byte, the first thirty-two bytes at most.
[[nodiscard]] std::string ShownBytes(std::span<const std::byte> bytes);

}  // namespace tavimo::host
