// `tavimo pages show`: a page as text in the terminal, or as the picture that the engine draws.
#include <iostream>

#include "new_file.h"
#include "options.h"
#include "page_lines.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace {

struct Highlight {
  const char* begin;
  const char* end;
};
constexpr Highlight kRed{"\x1b[31m", "\x1b[0m"};
constexpr Highlight kBrackets{"[", "]"};

std::string Joined(const std::vector<std::string>& runs, const Highlight& highlight) {
  std::string shown;
  for (std::size_t i = 0; i < runs.size(); ++i) {
    shown += i % 2 == 0 ? runs[i] : highlight.begin + runs[i] + highlight.end;
  }
  return shown;
}

void DrawPage(ScriptSession& session, int page, const std::filesystem::path& file) {
  session.LayOutPage(page);
  VcDc picture = session.Canvas().picture.get();
  if (vcDisplayPage(picture) <= 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be drawn");
  SavePicture(picture, file);
}

}  // namespace

int RunPagesShow(const Options& options) {
  ScriptSession session(options.home, options.files.front());
  session.Open();
  const int page = options.page.value_or(1) - 1;
  const std::string title = "page " + std::to_string(page + 1) + " of " + std::to_string(session.PageCount());
  if (options.hasOutput) {
    CheckOutput(options.files.front(), options.output, Existing::Replace);
    DrawPage(session, page, options.output);
    std::cout << Readable(options.output) << ": " << title << '\n';
    return kDone;
  }
  const std::vector<PageLine> lines = ReadPageLines(session, page);
  const Marks marks = session.ReadMarks();
  std::cout << title << '\n';
  const Highlight& highlight = OutputGoesToTerminal() ? kRed : kBrackets;
  for (const PageLine& line : lines) std::cout << Joined(RunsOf(session.Paged().text, line, marks), highlight) << '\n';
  return kDone;
}

}  // namespace tavimo::host
