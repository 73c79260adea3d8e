#include "engine_text.h"

#include <algorithm>
#include <iostream>

#include "refusal.h"

namespace tavimo::host {

namespace {

// Neither byte is ever the second one of a character.
void AppendWithLineEnds(const std::string& source, EngineText& text) {
  text.gbk.reserve(source.size() + source.size() / 16);
  for (std::size_t i = 0; i < source.size(); ++i) {
    const char byte = source[i];
    if (byte != '\r' && byte != '\n') {
      text.gbk += byte;
      continue;
    }
    const bool isWhole = byte == '\r' && i + 1 < source.size() && source[i + 1] == '\n';
    if (isWhole) ++i;
    text.mendedLineEnds += isWhole ? 0 : 1;
    text.gbk += "\r\n";
    ++text.lineCount;
  }
  if (!text.gbk.empty() && text.gbk.back() != '\n') ++text.lineCount;
}

void RefuseZeroBytes(const std::string& gbk) {
  const std::size_t zero = gbk.find('\0');
  if (zero == std::string::npos) return;
  const auto linesBefore = std::count(gbk.begin(), gbk.begin() + static_cast<std::ptrdiff_t>(zero), '\n');
  throw Refusal("line " + std::to_string(linesBefore + 1) + " has a zero byte, and no text behind one can be shown");
}

}  // namespace

EngineText ReadEngineText(const std::filesystem::path& script, const PageSetup& setup) {
  const ScriptText source = ReadScriptText(script, setup.encoding);
  if (!source.lost.empty() && setup.lost == LostText::Refuse) {
    std::cerr << DescribeLost(script, source);
    throw Refusal("GBK has not all of its characters; --replace makes question marks of them");
  }
  EngineText text;
  text.encoding = source.encoding;
  text.lost = DescribeLost(script, source);
  AppendWithLineEnds(source.gbk, text);
  if (text.gbk.empty()) throw Refusal("there is no text in it");
  RefuseZeroBytes(text.gbk);
  return text;
}

}  // namespace tavimo::host
