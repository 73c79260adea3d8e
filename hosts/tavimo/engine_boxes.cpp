#include "engine_boxes.h"

#include <iostream>

#include "tavimo_host.h"
#include "text.h"

namespace tavimo::host {

namespace {

void ShowAsLine(const char* text, const char* /*caption*/, void* /*user*/) {
  std::cerr << "tavimo: " << ReadableText(Utf8FromGbk(text)) << '\n';
}

}  // namespace

void ShowBoxesAsLines() { tvSetMessageBoxHandler(&ShowAsLine, nullptr); }

CollectedBoxes::CollectedBoxes() { tvSetMessageBoxHandler(&Note, this); }

CollectedBoxes::~CollectedBoxes() { ShowBoxesAsLines(); }

void CollectedBoxes::Note(const char* text, const char* /*caption*/, void* user) {
  std::string& all = static_cast<CollectedBoxes*>(user)->text_;
  if (!all.empty()) all += ' ';
  all += ReadableText(Utf8FromGbk(text));
}

}  // namespace tavimo::host
