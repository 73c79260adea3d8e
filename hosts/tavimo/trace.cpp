#include "trace.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <map>
#include <span>
#include <string>

#include "shown_values.h"
#include "tavimo.h"
#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

bool isTracing = false;

std::string Quoted(const std::string& text) { return '"' + text + '"'; }
std::string TracedText(const char* gbk) { return gbk == nullptr ? "null" : Quoted(ShownText(gbk)); }
std::string TracedUtf8(const char* utf8) { return utf8 == nullptr ? "null" : Quoted(ReadableText(utf8)); }
std::string TracedOpaque(bool isNull) { return isNull ? "null" : "…"; }

// "window1", "dc2": each kind counted in the order of appearance.
std::string TracedHandle(const std::string& kind, const void* handle) {
  static std::map<std::string, std::map<const void*, std::size_t>> known;
  if (handle == nullptr) return "null";
  auto& ofKind = known[kind];
  return kind + std::to_string(ofKind.try_emplace(handle, ofKind.size() + 1).first->second);
}

std::string TracedNumbers(std::span<const std::int32_t> numbers) { return ShownNumbers(numbers); }
std::string TracedNumbers(std::span<const std::uint32_t> numbers) { return ShownNumbers(numbers); }
std::string TracedNumbers(std::span<const std::byte> bytes) { return ShownBytes(bytes); }

template <typename Value>
std::string TracedArray(const Value* values, std::int64_t count) {
  if (values == nullptr) return "null";
  return '{' + TracedNumbers(std::span(values, static_cast<std::size_t>(std::max<std::int64_t>(count, 0)))) + '}';
}
std::string TracedArray(const void* bytes, std::int64_t count) {
  return TracedArray(static_cast<const std::byte*>(bytes), count);
}
std::string TracedArray(const VcPageIndexEntry* entries, std::int64_t count) {
  return TracedArray(reinterpret_cast<const std::uint32_t*>(entries), 2 * count);
}

template <typename Show>
std::string Out(bool isFailure, Show show) {
  return "→" + (isFailure ? std::string("…") : show());
}

// Writes lines, equal ones in a row once.
class TraceLines {
 public:
  void Write(const std::string& line) {
    if (line == last_) {
      ++repetitions_;
      return;
    }
    Finish();
    std::cerr << line << '\n';
    last_ = line;
  }

  void Finish() {
    if (repetitions_ > 0) std::cerr << "  (and " << repetitions_ << " more)\n";
    repetitions_ = 0;
    last_.clear();
  }

 private:
  std::string last_;
  std::size_t repetitions_ = 0;
};

TraceLines& Lines() {
  static TraceLines lines;
  return lines;
}

void TraceCall(const char* name, std::initializer_list<std::string> arguments, const std::string& result) {
  std::string line = std::string(name) + '(';
  const char* separator = "";
  for (const std::string& argument : arguments) {
    line += separator + argument;
    separator = ", ";
  }
  Lines().Write(line + ')' + (result.empty() ? "" : " = ") + result);
}

}  // namespace

extern "C" {
#include "engine_wrappers.inc"
}

void TraceCalls() {
  isTracing = true;
  Lines();  // before the function that ends it
  std::atexit([] { Lines().Finish(); });
}

void TraceNote(const std::string& sentence) {
  if (isTracing) Lines().Write('(' + sentence + ')');
}

}  // namespace tavimo::host
