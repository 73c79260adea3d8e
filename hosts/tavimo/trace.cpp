#include "trace.h"

#include <initializer_list>
#include <iostream>
#include <string>
#include <type_traits>

#include "system.h"
#include "tavimo.h"
#include "text.h"

namespace tavimo::host {

namespace {

bool isTracing = false;

std::string Traced(const char* gbk) {
  if (gbk == nullptr) return "null";
  return '"' + ReadableText(Utf8FromEncoding(gbk, "GB18030").value_or(gbk)) + '"';
}
std::string Traced(const void* pointer) { return pointer == nullptr ? "null" : "…"; }
std::string Traced(char*) { return "…"; }  // a buffer: what the engine writes is not there before the call
template <typename Number>
requires std::is_arithmetic_v<Number> std::string Traced(Number number) { return std::to_string(number); }

void TraceCall(const char* name, std::initializer_list<std::string> arguments, const std::string& result) {
  if (!isTracing) return;
  std::cerr << name << '(';
  const char* separator = "";
  for (const std::string& argument : arguments) {
    std::cerr << separator << argument;
    separator = ", ";
  }
  std::cerr << ')' << (result.empty() ? "" : " = ") << result << '\n';
}

}  // namespace

extern "C" {
#include "engine_wrappers.inc"
}

void TraceCalls() { isTracing = true; }

}  // namespace tavimo::host
