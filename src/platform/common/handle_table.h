// Handles that a host may keep too long, make up or mix up: each is checked, none is ever followed as an address.
//
//   bits   content
//    0-15  slot
//   16-19  kind of handle
//   20-    generation of the slot, from 1, one more after each removal
//
// Not synchronised; who shares a table between threads locks it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace tavimo::platform {

enum class HandleKind : std::uintptr_t { Window = 1, DeviceContext = 2, Drop = 3, AudioInput = 4, AudioOutput = 5 };

template <class T, HandleKind kKind>
class HandleTable {
 public:
  static constexpr std::size_t kCapacity = 0x10000;

  // The new object's handle, or 0 when every slot is taken. May throw std::bad_alloc; nothing has changed then.
  std::uintptr_t Add(std::unique_ptr<T> object) {
    std::size_t index = 0;
    while (index < slots_.size() && slots_[index].object) ++index;
    if (index == kCapacity) return 0;
    if (index == slots_.size()) slots_.emplace_back();
    slots_[index].object = std::move(object);
    return HandleOf(index);
  }

  // Null for a handle that is not alive. The object stays where it is until it is removed.
  [[nodiscard]] T* Find(std::uintptr_t handle) const noexcept {
    const std::size_t index = handle % kCapacity;
    return index < slots_.size() && HandleOf(index) == handle ? slots_[index].object.get() : nullptr;
  }

  // Gives the object back and the handle up for ever.
  std::unique_ptr<T> Remove(std::uintptr_t handle) noexcept {
    if (!Find(handle)) return nullptr;
    Slot& slot = slots_[handle % kCapacity];
    ++slot.generation;
    return std::move(slot.object);
  }

  template <class Visitor>
  void ForEach(Visitor visit) const {
    for (const Slot& slot : slots_) {
      if (slot.object) visit(*slot.object);
    }
  }

  template <class Predicate>
  [[nodiscard]] bool AnyOf(Predicate matches) const {
    for (const Slot& slot : slots_) {
      if (slot.object && matches(*slot.object)) return true;
    }
    return false;
  }

 private:
  struct Slot {
    std::unique_ptr<T> object;
    std::uintptr_t generation = 1;
  };

  [[nodiscard]] std::uintptr_t HandleOf(std::size_t index) const noexcept {
    return slots_[index].generation << 20 | static_cast<std::uintptr_t>(kKind) << 16 | index;
  }

  std::vector<Slot> slots_;
};

}  // namespace tavimo::platform
