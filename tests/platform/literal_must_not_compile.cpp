// Compiled by a test that expects it to fail: U+30FB, a dot that looks like the one GBK has, has no GBK form.
#include "platform/gbk_literal.h"

const char* MessageNobodyCouldRead() {
  using namespace tavimo::platform::literals;
  return u8"一・二"_gbk;
}
