#include "script_pages.h"

#include "page_lines.h"
#include "refusal.h"
#include "script_session.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPageFile = "page.png";
constexpr std::uint32_t kWhite = 0xFFFFFF;

// The runs of a line that goes on with the one before.
void Append(std::vector<std::string>& runs, const std::vector<std::string>& more) {
  const bool endsMarked = runs.size() % 2 == 0;
  if (!endsMarked) runs.back() += more.front();
  runs.insert(runs.end(), more.begin() + (endsMarked ? 0 : 1), more.end());
}

std::vector<std::vector<std::string>> DrawPage(ScriptSession& session, int page) {
  const std::vector<PageLine> lines = ReadPageLines(session, page);
  const Marks marks = session.ReadMarks();
  VcDc picture = session.Canvas().picture.get();
  const PageSetup setup = session.Setup();
  tvFill(picture, 0, 0, setup.width, setup.height, kWhite);
  if (vcDisplayPage(picture) <= 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be drawn");
  SavePicture(picture, fs::absolute(kPageFile));
  std::vector<std::vector<std::string>> texts;
  bool goesOn = false;
  for (const PageLine& line : lines) {
    std::vector<std::string> runs = RunsOf(session.Paged().text, line, marks);
    if (goesOn) {
      Append(texts.back(), runs);
    } else {
      texts.push_back(std::move(runs));
    }
    goesOn = !line.hasLineEnd;
  }
  return texts;
}

}  // namespace

void DrawScriptPages(const fs::path& home, const fs::path& script, const std::function<void(const ScriptPage&)>& take) {
  ScriptSession session(home, script);
  session.OpenOrBuild();
  for (int page = 0; page < session.PageCount(); ++page) {
    StopIfInterrupted();
    const auto lines = DrawPage(session, page);
    take({fs::absolute(kPageFile), lines});
  }
  std::error_code ignored;
  fs::remove(kPageFile, ignored);
}

}  // namespace tavimo::host
