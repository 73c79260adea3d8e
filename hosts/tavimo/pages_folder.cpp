#include "pages_folder.h"

#include <fstream>
#include <iterator>

#include "new_file.h"
#include "refusal.h"
#include "system.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPages = "pages";
constexpr const char* kUnfinished = "pages.new";
constexpr const char* kFinished = "pages.ready";  // only whole ones have this name

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

[[noreturn]] void Refuse(const std::error_code& error) {
  throw Refusal("its pages cannot be written in " + Readable(fs::current_path()) + " (" + ReasonOf(error) + ")");
}

}  // namespace

std::string ReadBytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

PagedText PagesFolder::ReadPaged(std::string text) const {
  return {std::move(text), ReadEntries(Pages()), ReadEntries(Lines())};
}

Marks PagesFolder::ReadMarks() const {
  const std::string bytes = ReadBytes(Marks());
  return {bytes.begin(), bytes.end()};
}

Places PagesFolder::ReadOwn() const {
  Places places;
  std::ifstream stream(Own());
  for (std::size_t place = 0; stream >> place;) places.insert(places.end(), place);
  return places;
}

void PagesFolder::WriteOwn(const Places& places) const {
  std::string lines;
  for (const std::size_t place : places) lines.append(std::to_string(place)).append(1, '\n');
  NewFile file(Own());
  file.Write(lines.data(), lines.size());
  file.PutInPlace();
}

PagesFolder CurrentPages() { return {kPages}; }

bool HasPages() { return fs::exists(CurrentPages().Settings()) || fs::exists(kFinished); }

void FinishNewPages() {
  std::error_code error;
  if (!fs::exists(kFinished, error)) return;
  fs::remove_all(kPages, error);
  if (!error) Rename(kFinished, kPages, error);
  if (error) Refuse(error);
}

PagesFolder BeginNewPages() {
  FinishNewPages();
  std::error_code error;
  fs::remove_all(kUnfinished, error);
  if (!error) fs::create_directory(kUnfinished, error);
  if (error) Refuse(error);
  return {kUnfinished};
}

void PutInPlace(const PagesFolder& newPages) {
  for (const auto& entry : fs::directory_iterator(newPages.path)) FlushToDisk(entry.path());
  std::error_code error;
  Rename(newPages.path, kFinished, error);
  if (error) Refuse(error);
  FinishNewPages();
}

}  // namespace tavimo::host
