#include "script_pages.h"

#include "refusal.h"
#include "script_session.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPageFile = "pages/page.png";
constexpr std::uint32_t kWhite = 0xFFFFFF;

// The pages of the last build, or of a first one.
void OpenPages(ScriptSession& session, const fs::path& script) {
  if (session.IsBuilt()) {
    session.Open();
  } else {
    session.Build(PageSetup{}, ReadEngineText(script, PageSetup{}));
  }
}

void DrawPage(ScriptSession& session, int page) {
  session.LayOutPage(page);
  VcDc picture = session.Canvas().picture.get();
  const PageSetup setup = session.Setup();
  tvFill(picture, 0, 0, setup.width, setup.height, kWhite);
  if (vcDisplayPage(picture) <= 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be drawn");
  SavePicture(picture, fs::absolute(kPageFile));
}

}  // namespace

void DrawScriptPages(const fs::path& home, const fs::path& script, const std::function<void(const fs::path&)>& take) {
  ScriptSession session(home, script);
  OpenPages(session, script);
  for (int page = 0; page < session.PageCount(); ++page) {
    DrawPage(session, page);
    take(fs::absolute(kPageFile));
  }
  std::error_code ignored;
  fs::remove(kPageFile, ignored);
}

}  // namespace tavimo::host
