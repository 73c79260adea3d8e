#include "engine_call.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>
#include <span>
#include <sstream>
#include <type_traits>

#include "nearest_name.h"
#include "refusal.h"
#include "shown_values.h"
#include "tavimo.h"
#include "text.h"

namespace tavimo::host {

namespace {

// One argument, whatever its kind: a number, a handle, or the bytes that a pointer points to.
struct Value {
  std::int64_t number = 0;
  double fraction = 0;
  void* handle = nullptr;
  std::vector<char> bytes;
};

class Arguments {
 public:
  explicit Arguments(std::vector<Value> values) : values_(std::move(values)) {}

  template <typename Type>
  Type As(std::size_t index) {
    Value& value = values_[index];
    if constexpr (std::is_same_v<Type, VcWindow> || std::is_same_v<Type, VcDc>) {
      return static_cast<Type>(value.handle);
    } else if constexpr (std::is_pointer_v<Type>) {
      return reinterpret_cast<Type>(value.bytes.data());
    } else if constexpr (std::is_same_v<Type, double>) {
      return value.fraction;
    } else {
      return static_cast<Type>(value.number);
    }
  }

  [[nodiscard]] const Value& At(std::size_t index) const { return values_[index]; }

 private:
  std::vector<Value> values_;
};

std::string Result() { return {}; }
std::string Result(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}
template <typename Integer>
requires std::is_integral_v<Integer> std::string Result(Integer value) { return std::to_string(value); }

#include "engine_calls.inc"  // kExports

const ExportRow& Find(const std::string& name) {
  const auto row = std::find_if(kExports.begin(), kExports.end(), [&](const ExportRow& r) { return name == r.name; });
  if (row == kExports.end()) {
    throw Refusal("the engine has no export " + ReadableText(name) + "; did you mean " +
                  NearestName(name, ExportNames()) + "?");
  }
  return *row;
}

bool TakesWord(const ArgumentRow& row) { return row.flow != Flow::Out; }

template <typename Number>
std::optional<Number> Parse(const std::string& word) {
  Number number{};
  const auto [stop, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  if (error != std::errc() || stop != word.data() + word.size() || word.empty()) return {};
  return number;
}

double Fraction(const std::string& word, const ArgumentRow& row) {
  if (const auto number = Parse<double>(word)) return *number;
  throw Refusal(std::string(row.name) + " is a number; '" + ReadableText(word) + "' is none");
}

struct Range {
  std::int64_t least;
  std::int64_t most;
};

template <typename Number>
constexpr Range kRangeOf{std::numeric_limits<Number>::min(), std::numeric_limits<Number>::max()};

// A number that the argument cannot hold would silently become another one.
std::int64_t WholeNumber(const std::string& word, const ArgumentRow& row) {
  const Range range = row.kind == Kind::Int32    ? kRangeOf<std::int32_t>
                      : row.kind == Kind::Uint32 ? kRangeOf<std::uint32_t>
                                                 : kRangeOf<std::int64_t>;
  const auto number = Parse<std::int64_t>(word);
  if (number && *number >= range.least && *number <= range.most) return *number;
  throw Refusal(std::string(row.name) + " is a whole number from " + std::to_string(range.least) + " to " +
                std::to_string(range.most) + "; '" + ReadableText(word) + "' is none");
}

std::string Gbk(const std::string& utf8) {
  if (auto gbk = GbkFromUtf8(utf8)) return std::move(*gbk);
  throw Refusal("'" + ReadableText(utf8) + "' has a character that GBK lacks");
}

// A path that is written the system's way; the engine's own has backslashes already.
bool IsNativePath(const ArgumentRow& row, const std::string& word) {
  const std::string_view name = row.name;
  const bool isPath = name.ends_with("path") || name.ends_with("folder");
  return isPath && word.find('\\') == std::string::npos && !word.empty();
}

std::string TextFor(const ArgumentRow& row, const std::string& word) {
  if (!IsNativePath(row, word)) return Gbk(word);
  const auto path = EnginePath(PathFromUtf8(word));
  if (!path) throw Refusal("'" + ReadableText(word) + "' has a character that GBK lacks");
  return *path;
}

std::vector<char> Array(const ArgumentRow& row, const std::string& word) {
  std::vector<char> bytes;
  std::istringstream parts(word);
  for (std::string part; std::getline(parts, part, ',');) {
    const auto number = static_cast<std::uint32_t>(WholeNumber(part, row));
    std::array<char, sizeof number> raw{};
    std::memcpy(raw.data(), &number, raw.size());
    bytes.insert(bytes.end(), raw.begin(), raw.end());
  }
  return bytes;
}

std::vector<char> Hexadecimal(const ArgumentRow& row, const std::string& word) {
  std::vector<char> bytes;
  for (std::size_t at = 0; at < word.size(); at += 2) {
    int byte = 0;
    const char* end = word.data() + std::min(at + 2, word.size());
    const auto [stop, error] = std::from_chars(word.data() + at, end, byte, 16);
    if (error != std::errc() || stop != end || end - word.data() - static_cast<std::ptrdiff_t>(at) != 2) {
      throw Refusal(std::string(row.name) + " is bytes as hexadecimal digits, two for each");
    }
    bytes.push_back(static_cast<char>(byte));
  }
  return bytes;
}

std::size_t SizeOf(Kind kind) {
  if (kind == Kind::Text || kind == Kind::Bytes) return 1;
  return kind == Kind::Pages ? sizeof(VcPageIndexEntry) : sizeof(std::int32_t);
}

Value ValueFor(const ArgumentRow& row, const std::string& word, CallObjects& objects) {
  Value value;
  if (row.kind == Kind::Window) {
    value.handle = objects.Window(word);
  } else if (row.kind == Kind::Dc) {
    value.handle = objects.DeviceContext(word);
  } else if (row.kind == Kind::Double) {
    value.fraction = Fraction(word, row);
  } else if (row.kind == Kind::Text) {
    const std::string text = TextFor(row, word);
    objects.NoteFile(word);
    value.bytes.assign(text.c_str(), text.c_str() + text.size() + 1);
  } else if (row.kind == Kind::Bytes) {
    value.bytes = Hexadecimal(row, word);
  } else if (row.flow == Flow::Value) {
    value.number = WholeNumber(word, row);
  } else {
    value.bytes = Array(row, word);
  }
  return value;
}

constexpr std::int64_t kMostRoom = 64'000'000;  // values of one argument; a number beyond is a slip

// How many values the argument has: a number, or what the argument of that name says.
std::size_t RoomFor(const ArgumentRow& row, const ExportRow& exported, const std::vector<Value>& values) {
  std::int64_t room = 0;
  if (const auto number = Parse<std::int64_t>(row.room)) room = *number;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (std::strcmp(exported.arguments[i].name, row.room) == 0) room = values[i].number;
  }
  return static_cast<std::size_t>(std::clamp<std::int64_t>(room, 0, kMostRoom));
}

bool IsArray(const ArgumentRow& row) { return row.flow != Flow::Value && row.kind != Kind::Text; }

// The engine reads as many values as the other arguments say, however few were given.
void CheckLength(const ArgumentRow& row, std::size_t given, std::size_t wanted) {
  if (given == wanted) return;
  const std::string what = row.kind == Kind::Bytes ? " bytes" : " numbers";
  throw Refusal(std::string(row.name) + " is " + std::to_string(wanted) + what + "; " + std::to_string(given) +
                (given == 1 ? " is given" : " are given"));
}

// What stands in a buffer before the call, so that what the engine left alone can be told from what it wrote.
constexpr char kUntouched = '\xA5';

// Whatever was given, there is the room that the engine may write to, and a zero behind it.
void MakeRoom(const ExportRow& exported, std::vector<Value>& values, std::size_t largestFile) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ArgumentRow& row = exported.arguments[i];
    if (row.flow == Flow::Value) continue;
    std::vector<char>& bytes = values[i].bytes;
    const std::size_t room = RoomFor(row, exported, values);
    if (IsArray(row) && row.flow != Flow::Out) CheckLength(row, bytes.size() / SizeOf(row.kind), room);
    const bool isGuess = row.flow == Flow::Out && std::string_view(row.room).size() > 1 &&
                         row.room[0] <= '9';  // a number, and no argument that says it
    bytes.resize(std::max({bytes.size(), room * SizeOf(row.kind), isGuess ? largestFile : 0}), kUntouched);
    bytes.push_back('\0');
  }
}

std::vector<Value> ValuesFor(const ExportRow& exported, const std::vector<std::string>& words, CallObjects& objects) {
  const auto taking =
      static_cast<std::size_t>(std::count_if(exported.arguments.begin(), exported.arguments.end(), TakesWord));
  if (words.size() != taking) throw Refusal("the call is " + DescribeExport(exported.name));
  std::vector<Value> values;
  std::size_t next = 0;
  for (const ArgumentRow& row : exported.arguments) {
    values.push_back(TakesWord(row) ? ValueFor(row, words[next++], objects) : Value{});
  }
  MakeRoom(exported, values, objects.LargestFile());
  return values;
}

// The part of a buffer that the engine wrote, in whole units: up to the last one that changed.
std::span<const char> WrittenPart(const std::vector<char>& bytes, std::size_t unit) {
  std::span<const char> written(bytes.data(), bytes.size() - 1);
  const auto isUntouched = [](char byte) { return byte == kUntouched; };
  while (!written.empty()) {
    const auto last = written.last(std::min(unit, written.size()));
    if (!std::all_of(last.begin(), last.end(), isUntouched)) break;
    written = written.first(written.size() - last.size());
  }
  return written;
}

template <typename Number>
std::span<const Number> NumbersIn(std::span<const char> bytes) {
  return {reinterpret_cast<const Number*>(bytes.data()), bytes.size() / sizeof(Number)};
}

// "  starts_ms = 320, 3120", or that the engine wrote nothing.
std::string Written(const ArgumentRow& row, const std::vector<char>& bytes) {
  const std::string name = "  " + std::string(row.name);
  const auto written = WrittenPart(bytes, IsArray(row) && row.kind != Kind::Bytes ? sizeof(std::int32_t) : 1);
  if (written.empty()) return name + ": not written\n";
  if (row.kind == Kind::Text) return name + " = " + ShownText(bytes.data()) + '\n';
  if (row.kind == Kind::Bytes) return name + " = " + ShownBytes(std::as_bytes(written)) + '\n';
  const bool isSigned = row.kind == Kind::Int32;
  return name + " = " +
         (isSigned ? ShownNumbers(NumbersIn<std::int32_t>(written)) : ShownNumbers(NumbersIn<std::uint32_t>(written))) +
         '\n';
}

std::pair<int, int> SizeIn(const std::string& word) {
  int width = 0;
  int height = 0;
  const auto [cross, first] = std::from_chars(word.data(), word.data() + word.size(), width);
  const char* end = word.data() + word.size();
  const bool isCross = first == std::errc() && cross != end && *cross == 'x';
  if (!isCross || std::from_chars(cross + 1, end, height).ec != std::errc() || width < 1 || height < 1) {
    throw Refusal("a device context is named NAME:WIDTHxHEIGHT the first time");
  }
  return {width, height};
}

void SelectFont(VcDc picture, const std::string& family, const std::string& height) {
  int pixels = 0;
  const auto [stop, error] = std::from_chars(height.data(), height.data() + height.size(), pixels);
  const bool isNumber = error == std::errc() && stop == height.data() + height.size();
  if (!isNumber || tvSelectFont(picture, family.c_str(), pixels) != 0) {
    throw Refusal("there is no font " + ReadableText(family) + " of " + ReadableText(height) + " pixels");
  }
}

std::vector<std::string> Split(const std::string& word) {
  std::vector<std::string> parts;
  std::istringstream stream(word);
  for (std::string part; std::getline(stream, part, ':');) parts.push_back(part);
  return parts;
}

}  // namespace

CallObjects::~CallObjects() {
  for (const auto& [name, window] : windows_) tvDestroyWindow(window);
}

void CallObjects::NoteFile(const std::string& word) {
  if (word.empty()) return;
  std::string native = word;
  std::replace(native.begin(), native.end(), '\\', '/');
  const std::filesystem::path named = std::filesystem::absolute(PathFromUtf8(native));
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(named.parent_path(), error)) {
    if (entry.path().stem() != named.stem() || !entry.is_regular_file(error)) continue;
    const std::uintmax_t byteCount = entry.file_size(error);
    if (!error) largestFile_ = std::max(largestFile_, static_cast<std::size_t>(byteCount));
  }
}

VcWindow CallObjects::Window(const std::string& word) {
  if (word == "-") return nullptr;
  const auto known = windows_.find(word);
  if (known != windows_.end()) return known->second;
  const int kind = word.starts_with("list") ? TV_LIST_BOX : word.starts_with("bar") ? TV_PROGRESS_BAR : TV_WINDOW;
  return windows_[word] = tvCreateWindow(kind, nullptr, nullptr);
}

VcDc CallObjects::DeviceContext(const std::string& word) {
  if (word == "-") return nullptr;
  const std::vector<std::string> parts = Split(word);
  const auto known = pictures_.find(parts.front());
  if (known != pictures_.end()) return known->second.get();
  if (parts.size() < 2) throw Refusal("a device context is named NAME:WIDTHxHEIGHT the first time");
  const auto [width, height] = SizeIn(parts[1]);
  Picture picture = MakePicture(width, height);
  if (parts.size() == 4) SelectFont(picture.get(), parts[2], parts[3]);
  return (pictures_[parts.front()] = std::move(picture)).get();
}

std::string CallObjects::Describe() const {
  std::string text;
  for (const auto& [name, window] : windows_) {
    if (!name.starts_with("list")) continue;
    const intptr_t count = tvSendMessage(window, TV_LB_GETCOUNT, 0, 0);
    for (intptr_t i = 0; i < count; ++i) {
      const auto line = static_cast<std::uintptr_t>(i);
      std::vector<char> gbk(static_cast<std::size_t>(tvSendMessage(window, TV_LB_GETTEXTLEN, line, 0)) + 1);
      tvSendMessage(window, TV_LB_GETTEXT, line, reinterpret_cast<intptr_t>(gbk.data()));
      text += name + ": " + ShownText(gbk.data()) + '\n';
    }
  }
  for (const auto& [name, picture] : pictures_) {
    const std::filesystem::path file = std::filesystem::current_path() / PathFromUtf8(name + ".png");
    SavePicture(picture.get(), file);
    text += name + ": " + Readable(file) + '\n';
  }
  return text;
}

std::vector<std::string> ExportNames() {
  std::vector<std::string> names;
  names.reserve(kExports.size());
  for (const ExportRow& row : kExports) names.emplace_back(row.name);
  return names;
}

std::string DescribeExport(const std::string& name) {
  std::string text = name;
  for (const ArgumentRow& row : Find(name).arguments) {
    if (TakesWord(row)) text += ' ' + std::string(row.name);
  }
  return text;
}

std::string CallEngine(const std::string& name, const std::vector<std::string>& words, CallObjects& objects) {
  const ExportRow& exported = Find(name);
  Arguments arguments(ValuesFor(exported, words, objects));
  const std::string result = exported.call(arguments);
  std::string text = name + (result.empty() ? "" : " = " + result) + '\n';
  for (std::size_t i = 0; i < exported.arguments.size(); ++i) {
    const ArgumentRow& row = exported.arguments[i];
    if (row.flow != Flow::Out && row.flow != Flow::InOut) continue;
    text += Written(row, arguments.At(i).bytes);
  }
  return text;
}

}  // namespace tavimo::host
