#include "script_session.h"

#include <algorithm>
#include <iostream>

#include "content_hash.h"
#include "marked_words.h"
#include "new_file.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

std::string HashOf(const std::string& bytes) { return ContentHash(bytes.data(), bytes.size()); }

std::optional<fs::file_time_type> TimeOf(const fs::path& file) {
  std::error_code error;
  const fs::file_time_type time = LastWriteTime(file, error);
  return error ? std::nullopt : std::optional(time);
}

void WriteFile(const fs::path& path, const void* bytes, std::size_t byteCount) {
  NewFile file(path);
  file.Write(bytes, byteCount);
  file.PutInPlace();
}

void MakePageFile(const PageCanvas& canvas, PageArea area, const fs::path& copy, const fs::path& file) {
  StopIfInterrupted();
  UsePageArea(canvas, area);
  const int result =
      vcGenPageFile(0, EnginePath(copy).value().c_str(), EnginePath(file).value().c_str(), canvas.picture.get());
  if (result == -1) throw Refusal("its pages could not be written in " + Readable(fs::current_path()));
}

int OpenInEngine(const PagesFolder& pages) {
  std::int32_t slots = 0;
  return vcOpenScript(EnginePath(pages.Copy()).value().c_str(), EnginePath(pages.Pages()).value().c_str(),
                      EnginePath(pages.Marks()).value().c_str(), &slots);
}

// A text with its pages in a new folder, none of its words marked.
PagedText MakePages(const PagesFolder& folder, const PageCanvas& canvas, const BuiltPages& built,
                    const std::string& text) {
  WriteFile(folder.Copy(), text.data(), text.size());
  MakePageFile(canvas, PageArea::Whole, folder.Copy(), folder.Pages());
  MakePageFile(canvas, PageArea::OneLine, folder.Copy(), folder.Lines());
  PagedText paged = folder.ReadPaged(text);
  if (!paged.IsSound()) {
    throw Refusal("page " + std::to_string(std::max<std::size_t>(paged.pages.size(), 2) - 1) +
                  " would hold more than the 4988 bytes there is room for; make the pages smaller or the font larger");
  }
  WriteBuiltPages(folder.Settings(), built);
  if (OpenInEngine(folder) < 1) throw Refusal("its marks cannot be written in " + Readable(fs::current_path()));
  vcCloseScript();
  return paged;
}

void WriteMarks(const PagesFolder& folder, const Marks& marks) {
  const auto time = TimeOf(folder.Copy());
  NewFile file(folder.Marks());
  file.Write(marks.data(), marks.size());
  if (time) file.SetTime(*time);  // by which the engine knows that the marks belong to the text
  file.PutInPlace();
}

// The marked words of the current pages. Where the highlight file is damaged, shorter than a new one, or its numbers mean
// nothing for lack of sound pages, those that the learner marked.
Places PlacesToKeep(const std::string& text, std::size_t byteCount) {
  const PagesFolder current = CurrentPages();
  const PagedText old = current.ReadPaged(text);
  const Marks marks = current.ReadMarks();
  const Places own = current.ReadOwn();
  const bool isWhole = old.IsSound() && marks.size() >= byteCount;
  return isWhole ? PlacesOf(MarkedWords(old, marks, own)) : own;
}

// Takes the marks of the current pages over to new ones of the same text.
MovedMarks CarryMarks(const PagesFolder& folder, const PagedText& paged) {
  const std::size_t byteCount = folder.ReadMarks().size();
  MovedMarks moved = MoveMarks(PlacesToKeep(paged.text, byteCount), paged, byteCount);
  folder.WriteOwn(moved.places);
  WriteMarks(folder, moved.marks);
  return moved;
}

bool HasAny(const Marks& marks) {
  return std::any_of(marks.begin(), marks.end(), [](std::uint8_t byte) { return byte != 0; });
}

}  // namespace

ScriptSession::ScriptSession(const fs::path& home, const fs::path& script)
    : script_(IdentityOf(script)), folder_(home, script_, WorkingFolder::Kind::Script) {}

ScriptSession::~ScriptSession() { vcCloseScript(); }

void ScriptSession::Lock() {
  if (lock_) return;
  lock_.emplace("pages.lock", kChangingElsewhere, WhenHeld::Wait);
  FinishNewPages();
  built_ = ReadBuiltPages(CurrentPages().Settings());
}

std::size_t ScriptSession::Build(const PageSetup& setup, const EngineText& text) {
  canvas_.emplace(MakePageCanvas(setup));
  Lock();
  vcCloseScript();
  const BuiltPages now{setup, HashOf(text.gbk), HashOf(*canvas_)};
  const PagesFolder folder = BeginNewPages();
  PagedText paged = MakePages(folder, *canvas_, now, text.gbk);
  const bool hadMarks = HasAny(ReadMarks()) || !CurrentPages().ReadOwn().empty();
  // The settings or the copy may be damaged; either will do to tell.
  const bool isSameText = (built_ && built_->textHash == now.textHash) || ReadBytes(CurrentPages().Copy()) == text.gbk;
  const MovedMarks moved = hadMarks && isSameText ? CarryMarks(folder, paged) : MovedMarks{};
  PutInPlace(folder);
  const std::string name = "tavimo: " + Readable(script_.filename());
  if (hadMarks && !isSameText) std::cerr << name << ": its text changed, so its words are no longer marked\n";
  if (moved.lostCount > 0) {
    std::cerr << name << ": " << Counted(moved.lostCount, "word")
              << " no longer marked; these pages have more pieces of words than can be marked\n";
  }
  built_ = now;
  paged_ = std::move(paged);
  OpenPages();
  return moved.places.size();
}

bool ScriptSession::IsCurrent(const std::string& text) const {
  const PagesFolder pages = CurrentPages();
  const auto time = TimeOf(pages.Copy());
  const bool areOfOneTime =
      time && TimeOf(pages.Pages()) == time && TimeOf(pages.Lines()) == time && TimeOf(pages.Marks()) == time;
  return areOfOneTime && built_ && built_->fontHash == HashOf(*canvas_) && ReadBytes(pages.Copy()) == text;
}

void ScriptSession::Open() {
  if (HasPages()) Lock();
  if (!lock_ && fs::exists(script_)) throw Refusal("it has no pages yet; tavimo pages build makes them");
  const PageSetup setup = built_.value_or(BuiltPages{}).setup;
  const EngineText text = ReadEngineText(script_, setup);
  canvas_.emplace(MakePageCanvas(setup));
  paged_ = CurrentPages().ReadPaged(text.gbk);
  if (IsCurrent(text.gbk) && paged_.IsSound()) {
    OpenPages();
  } else {
    Build(setup, text);
  }
}

void ScriptSession::OpenOrBuild() {
  const EngineText text = ReadEngineText(script_, PageSetup{});  // refuses what is no script before anything is made
  Lock();
  if (built_) {
    Open();
  } else {
    Build(PageSetup{}, text);
  }
}

void ScriptSession::ReplaceMarks(const Marks& marks, const Places& own) {
  vcCloseScript();
  CurrentPages().WriteOwn(own);
  WriteMarks(CurrentPages(), marks);
  OpenPages();
}

void ScriptSession::OpenPages() {
  UsePageArea(*canvas_, PageArea::Whole);
  if (OpenInEngine(CurrentPages()) == PageCount()) return;
  throw Refusal("its pages or its marks cannot be opened in " + Readable(fs::current_path()));
}

int ScriptSession::LayOutPage(int page) {
  if (page < 0 || page >= PageCount()) {
    throw Refusal("there is no page " + std::to_string(page + 1) + "; it has " + std::to_string(PageCount()));
  }
  if (vcReadPage(0, page) < 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be read");
  return vcCountPage(canvas_->picture.get());
}

}  // namespace tavimo::host
