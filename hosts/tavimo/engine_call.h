// Any export of the engine by its name, with arguments as words: what `tavimo call` is made of. The table of exports it
// works from is made from the engine's own (tools/make_bindings.py).
#pragma once

#include <map>
#include <string>
#include <vector>

#include "picture_parts.h"
#include "tavimo_host.h"

namespace tavimo::host {

// What calls of one run share: windows and pictures by the words that name them.
//
// A window is "-" for none, or a name; one that begins with "list" is a list box, with "bar" a progress bar. A device
// context is "-" or a name and its size, "wave:800x200"; a font may follow, "page:600x400:WenQuanYi Zen Hei:20".
class CallObjects {
 public:
  CallObjects() = default;
  CallObjects(const CallObjects&) = delete;
  CallObjects& operator=(const CallObjects&) = delete;
  ~CallObjects();

  [[nodiscard]] VcWindow Window(const std::string& word);
  [[nodiscard]] VcDc DeviceContext(const std::string& word);

  // The largest file that was named in the run, with those beside it of the same name: nothing that an export reads out of
  // one is longer.
  void NoteFile(const std::string& word);
  [[nodiscard]] std::size_t LargestFile() const { return largestFile_; }

  // The lines of every list box, and where every picture was saved: NAME.png in the current directory.
  [[nodiscard]] std::string Describe() const;

 private:
  std::map<std::string, VcWindow> windows_;
  std::map<std::string, Picture> pictures_;
  std::size_t largestFile_ = 0;
};

// Calls an export and returns lines of "NAME = result" and of what it wrote. Arguments that the export only writes have no
// word. Numbers are decimal, arrays numbers with commas between, bytes hexadecimal, text UTF-8; a path may have slashes.
// A Refusal that tells the arguments when they do not fit.
[[nodiscard]] std::string CallEngine(const std::string& name, const std::vector<std::string>& words,
                                     CallObjects& objects);

// "vcTimeToOffset time_ms".
[[nodiscard]] std::string DescribeExport(const std::string& name);

// The names of all exports, in the header's order.
[[nodiscard]] std::vector<std::string> ExportNames();

}  // namespace tavimo::host
