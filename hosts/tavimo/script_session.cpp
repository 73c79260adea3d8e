#include "script_session.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>

#include "content_hash.h"
#include "lesson_lock.h"
#include "new_file.h"
#include "refusal.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kSettings = "pages.ini";
constexpr const char* kCopy = "pages/script.txt";
constexpr const char* kPages = "pages/script.pag";
constexpr const char* kLines = "pages/script.lin";
constexpr const char* kMarks = "pages/script.hlt";

// Files that become the pages when all of them are right, and leave nothing when they are not.
struct Draft {
  Draft() = default;
  Draft(const Draft&) = delete;
  Draft& operator=(const Draft&) = delete;
  ~Draft() {
    std::error_code ignored;
    for (const char* file : {copy, pages, lines}) fs::remove(file, ignored);
  }
  const char* copy = "pages/new.txt";
  const char* pages = "pages/new.pag";
  const char* lines = "pages/new.lin";
};

std::string ReadBytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::string HashOf(const std::string& bytes) { return ContentHash(bytes.data(), bytes.size()); }

std::optional<fs::file_time_type> TimeOf(const fs::path& file) {
  std::error_code error;
  const fs::file_time_type time = fs::last_write_time(file, error);
  return error ? std::nullopt : std::optional(time);
}

std::uint32_t Number(const std::string& bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
  return number;
}

std::vector<VcPageIndexEntry> ReadEntries(const fs::path& file) {
  const std::string bytes = ReadBytes(file);
  std::vector<VcPageIndexEntry> entries;
  for (std::size_t at = 0; at + 8 <= bytes.size(); at += 8)
    entries.push_back({Number(bytes, at), Number(bytes, at + 4)});
  return entries;
}

// Bounds that rise from the text's start to its end; anything else is a damaged file.
bool AreBoundsOf(const std::vector<VcPageIndexEntry>& entries, std::size_t textBytes) {
  const auto isBefore = [](const auto& left, const auto& right) { return left.text_offset < right.text_offset; };
  return entries.size() >= 2 && entries.front().text_offset == 0 && entries.back().text_offset == textBytes &&
         std::is_sorted(entries.begin(), entries.end(), isBefore);
}

void MakePageFile(const PageCanvas& canvas, PageArea area, const char* copy, const char* file, std::size_t textBytes) {
  UsePageArea(canvas, area);
  const int result =
      vcGenPageFile(0, EnginePath(copy).value().c_str(), EnginePath(file).value().c_str(), canvas.picture.get());
  if (result == -1) throw Refusal("its pages could not be written in " + Readable(fs::current_path()));
  const auto entries = ReadEntries(file);
  if (entries.empty() || entries.back().text_offset != textBytes) {
    throw Refusal("page " + std::to_string(std::max<std::size_t>(entries.size(), 2) - 1) +
                  " would hold more than the 4988 bytes there is room for; make the pages smaller or the font larger");
  }
}

bool HasMarks(const std::string& bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char byte) { return byte != 0; });
}

}  // namespace

ScriptSession::ScriptSession(const fs::path& home, const fs::path& script)
    : script_(IdentityOf(script)),
      folder_(home, script_, WorkingFolder::Kind::Script),
      built_(ReadBuiltPages(kSettings)) {}

ScriptSession::~ScriptSession() { vcCloseScript(); }

void ScriptSession::Build(const PageSetup& setup, const EngineText& text) {
  canvas_.emplace(MakePageCanvas(setup));
  const BuiltPages now{setup, HashOf(text.gbk), HashOf(*canvas_)};
  const LessonLock lock("pages.lock", kChangingElsewhere);
  vcCloseScript();
  const bool isSameText = built_ && built_->textHash == now.textHash;
  if (!isSameText && HasMarks(ReadBytes(kMarks))) {
    std::cerr << "tavimo: " << Readable(script_.filename())
              << ": its text changed, so its words are no longer marked\n";
  }
  MakePages(text, now, isSameText ? TimeOf(kMarks) : std::nullopt);
  built_ = now;
  OpenFiles(text.gbk);
}

void ScriptSession::MakePages(const EngineText& text, const BuiltPages& now,
                              const std::optional<fs::file_time_type>& marksTime) {
  const Draft draft;
  NewFile copy(draft.copy);
  copy.Write(text.gbk.data(), text.gbk.size());
  if (marksTime) copy.SetTime(*marksTime);
  copy.PutInPlace();
  MakePageFile(*canvas_, PageArea::OneLine, draft.copy, draft.lines, text.gbk.size());
  MakePageFile(*canvas_, PageArea::Whole, draft.copy, draft.pages, text.gbk.size());
  // In this order a kill leaves files that the next command knows to be out of date.
  std::error_code ignored;
  fs::remove(kPages, ignored);
  PlaceFile(draft.copy, kCopy);
  if (!marksTime) fs::remove(kMarks, ignored);
  WriteBuiltPages(kSettings, now);
  PlaceFile(draft.lines, kLines);
  PlaceFile(draft.pages, kPages);
}

bool ScriptSession::IsCurrent(const std::string& text, const BuiltPages& built) const {
  const auto time = TimeOf(kCopy);
  if (!time || TimeOf(kPages) != time || TimeOf(kLines) != time || TimeOf(kMarks).value_or(*time) != *time)
    return false;
  return built.fontHash == HashOf(*canvas_) && ReadBytes(kCopy) == text &&
         AreBoundsOf(ReadEntries(kPages), text.size()) && AreBoundsOf(ReadEntries(kLines), text.size());
}

void ScriptSession::Open() {
  if (!built_ && fs::exists(script_)) throw Refusal("it has no pages yet; tavimo pages build makes them");
  const PageSetup setup = built_.value_or(BuiltPages{}).setup;
  const EngineText text = ReadEngineText(script_, setup);
  if (!OpenEarlier(text)) Build(setup, text);
}

bool ScriptSession::OpenEarlier(const EngineText& text) {
  if (!built_) return false;
  canvas_.emplace(MakePageCanvas(built_->setup));
  if (!IsCurrent(text.gbk, *built_)) return false;
  OpenFiles(text.gbk);
  return true;
}

void ScriptSession::OpenFiles(const std::string& text) {
  text_ = text;
  lines_ = ReadEntries(kLines);
  UsePageArea(*canvas_, PageArea::Whole);
  std::int32_t slots = 0;
  const std::int32_t pageCount = vcOpenScript(EnginePath(kCopy).value().c_str(), EnginePath(kPages).value().c_str(),
                                              EnginePath(kMarks).value().c_str(), &slots);
  if (pageCount < 1) throw Refusal("its pages or its marks cannot be opened in " + Readable(fs::current_path()));
  pages_.resize(static_cast<std::size_t>(pageCount) + 1);
  vcReadBookPageIdx(pageCount + 1, pages_.data());
}

std::vector<std::uint8_t> ScriptSession::ReadMarks() const {
  const std::string bytes = ReadBytes(kMarks);
  return {bytes.begin(), bytes.end()};
}

int ScriptSession::LayOutPage(int page) {
  if (page < 0 || page >= PageCount()) {
    throw Refusal("there is no page " + std::to_string(page + 1) + "; it has " + std::to_string(PageCount()));
  }
  if (vcReadPage(0, page) < 0) throw Refusal("page " + std::to_string(page + 1) + " cannot be read");
  return vcCountPage(canvas_->picture.get());
}

}  // namespace tavimo::host
