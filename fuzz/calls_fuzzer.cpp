// Sequences of calls of every export, in any order and with any arguments that the header does not forbid: a buffer has the
// room it asks for, and everything else is open. Between the calls, and in the messages and boxes that the engine sends, the
// host does what hosts do: it speaks, plays, drops files, writes files of its own and calls the engine again.
#include <array>
#include <cmath>
#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "support/fuzz_ground.h"
#include "support/host_values.h"
#include "support/lesson_files.h"
#include "tavimo_host.h"

using namespace tavimo;

namespace {

// One argument, whatever its kind: a number, a handle, or a host's buffer.
struct Value {
  std::int64_t number = 0;
  double fraction = 0;
  void* handle = nullptr;
  std::unique_ptr<fuzz::ExactRoom> buffer;
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
      return reinterpret_cast<Type>(value.buffer ? value.buffer->Data() : nullptr);
    } else if constexpr (std::is_same_v<Type, double>) {
      return value.fraction;
    } else {
      return static_cast<Type>(value.number);
    }
  }

 private:
  std::vector<Value> values_;
};

template <typename... Answer>
std::string Result(Answer...) {
  return {};
}

#include "engine_calls.inc"  // kExports

// More than any file of a run holds, and quick to make.
constexpr std::int64_t kMostValues = 20'000;
constexpr std::int64_t kMostCounted = 300;

std::intptr_t VC_CALL HostProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam);

// The host of one input.
class Session {
 public:
  explicit Session(FuzzedDataProvider& input);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  void Step();
  void StepWithin();  // in a message or a box of the engine's

  // Messages that a call of HidedWndProcIn makes up: their values are no pointers.
  bool isMadeUp = false;

 private:
  static constexpr int kDeepest = 2;
  static constexpr std::size_t kHostDeeds = 8;

  void Call(const ExportRow& exported);
  void DoHostDeed(std::size_t deed);
  std::vector<Value> ValuesFor(const ExportRow& exported);
  Value PlainValue(const ArgumentRow& row);
  std::unique_ptr<fuzz::ExactRoom> Buffer(const ArgumentRow& row, std::int64_t room);
  VcWindow AnyWindow();

  FuzzedDataProvider& input_;
  std::array<VcWindow, 5> windows_{};
  int depth_ = 0;
};

Session* session = nullptr;

std::intptr_t VC_CALL HostProc(VcWindow window, std::uint32_t message, std::uintptr_t wparam, std::intptr_t lparam) {
  if (session == nullptr || session->isMadeUp) return 0;
  const std::intptr_t result = tvDefaultProc(window, message, wparam, lparam);
  session->StepWithin();
  return result;
}

Session::Session(FuzzedDataProvider& input) : input_(input) {
  const int kinds[] = {TV_WINDOW, TV_WINDOW, TV_LIST_BOX, TV_PROGRESS_BAR, TV_WINDOW};
  for (std::size_t i = 0; i < windows_.size(); ++i) windows_[i] = tvCreateWindow(kinds[i], nullptr, HostProc);
  tvDestroyWindow(windows_.back());
  session = this;
  tvSetMessageBoxHandler(
      [](const char* text, const char* caption, void*) {
        fuzz::LookAtMessage(text, caption);
        session->StepWithin();
      },
      nullptr);
}

Session::~Session() {
  session = nullptr;
  tvSetMessageBoxHandler(nullptr, nullptr);
  for (const VcWindow window : windows_) tvDestroyWindow(window);
}

void Session::Step() {
  const std::size_t choice = input_.ConsumeIntegralInRange<std::size_t>(0, kExports.size() + kHostDeeds - 1);
  ++depth_;
  if (choice < kExports.size()) {
    Call(kExports[choice]);
  } else {
    DoHostDeed(choice - kExports.size());
  }
  --depth_;
}

void Session::StepWithin() {
  if (depth_ <= kDeepest && input_.remaining_bytes() > 0 && input_.ConsumeIntegralInRange<int>(0, 3) == 0) Step();
}

void Session::Call(const ExportRow& exported) {
  Arguments arguments(ValuesFor(exported));
  const bool wasMadeUp = isMadeUp;
  isMadeUp = exported.call == Call_HidedWndProcIn;
  exported.call(arguments);
  isMadeUp = wasMadeUp;
}

void Session::DoHostDeed(std::size_t deed) {
  const std::vector<std::uint8_t> sound(1256 * 5, input_.ConsumeIntegral<std::uint8_t>());
  const std::string path = fuzz::LessonPath(input_);
  const char* dropped = path.c_str();
  switch (deed) {
    case 0:
      tvFeedWaveInput(sound.data(), input_.ConsumeIntegralInRange<int>(0, static_cast<int>(sound.size())));
      break;
    case 1:
      tvAdvanceWaveOutput(input_.ConsumeIntegral<std::uint32_t>());
      break;
    case 2:
      tvDropFiles(AnyWindow(), &dropped, 1);
      break;
    case 3: {
      std::string native = path;
      for (char& byte : native) byte = byte == '\\' ? '/' : byte;
      const auto bytes = input_.ConsumeBytes<std::uint8_t>(input_.ConsumeIntegral<std::uint8_t>());
      fuzz::WriteFile(native.c_str(), fuzz::Stretched(bytes.data(), bytes.size()));
      break;
    }
    case 4:
      tvSetKeyDown(TV_VK_CONTROL, 1);
      break;
    default:  // what a host does most
      tvDispatchMessages(0);
      break;
  }
}

VcWindow Session::AnyWindow() {
  const std::size_t choice = input_.ConsumeIntegralInRange<std::size_t>(0, windows_.size());
  return choice < windows_.size() ? windows_[choice] : nullptr;
}

Value Session::PlainValue(const ArgumentRow& row) {
  Value value;
  switch (row.kind) {
    case Kind::Window:
      value.handle = AnyWindow();
      break;
    case Kind::Dc:
      value.handle =
          input_.PickValueInArray({fuzz::PaneWithFont(), fuzz::PaneWithoutFont(), fuzz::DeadPane(), VcDc{nullptr}});
      break;
    case Kind::Text:
      if (input_.ConsumeIntegralInRange<int>(0, 30) != 0) {
        value.buffer = std::make_unique<fuzz::ExactRoom>(fuzz::AnyText(input_));
      }
      break;
    case Kind::Double:
      value.fraction = fuzz::AnyFraction(input_);
      break;
    default:
      value.number = fuzz::AnyNumber(input_);
      break;
  }
  return value;
}

std::size_t SizeOf(Kind kind) {
  switch (kind) {
    case Kind::Text:
    case Kind::Bytes:
      return 1;
    case Kind::Pages:
      return sizeof(VcPageIndexEntry);
    default:
      return sizeof(std::int32_t);
  }
}

std::unique_ptr<fuzz::ExactRoom> Session::Buffer(const ArgumentRow& row, std::int64_t room) {
  if (row.kind == Kind::Text && row.flow == Flow::InOut) {
    return std::make_unique<fuzz::ExactRoom>(fuzz::AnyText(input_));
  }
  const std::size_t byteCount = static_cast<std::size_t>(room) * SizeOf(row.kind);
  auto buffer = std::make_unique<fuzz::ExactRoom>(byteCount);
  if (row.flow == Flow::Out) return buffer;
  const std::size_t given = input_.ConsumeData(buffer->Data(), byteCount);
  std::fill(buffer->Data() + given, buffer->Data() + byteCount, '\0');
  // Tables of starts rise as a rule; one that does not is refused at once.
  if (SizeOf(row.kind) == sizeof(std::int32_t) && input_.ConsumeBool()) {
    auto* values = reinterpret_cast<std::uint32_t*>(buffer->Data());
    for (std::int64_t i = 0; i < room; ++i) values[i] = values[i] % 300 + (i > 0 ? values[i - 1] : 0);
  }
  return buffer;
}

// How much room an array needs: a number, or an argument that is then held to what can be made.
std::int64_t RoomFor(const ArgumentRow& row, std::span<const ArgumentRow> rows, std::vector<Value>& values) {
  if (row.room[0] >= '0' && row.room[0] <= '9') {
    const std::int64_t room = std::stoll(row.room);
    return row.kind == Kind::Text || row.kind == Kind::Bytes ? room : std::min(room, kMostValues);
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (std::string_view(rows[i].name) != row.room) continue;
    const auto count = static_cast<std::int32_t>(values[i].number);
    if (count > kMostCounted) values[i].number = kMostCounted;
    return std::clamp<std::int64_t>(count, 0, kMostCounted);
  }
  fuzz::Check(false, "the table of exports tells a buffer's room");
  return 0;
}

std::vector<Value> Session::ValuesFor(const ExportRow& exported) {
  std::vector<Value> values;
  values.reserve(exported.arguments.size());
  for (const ArgumentRow& row : exported.arguments) {
    values.push_back(row.flow == Flow::Value ? PlainValue(row) : Value{});
  }
  for (std::size_t i = 0; i < values.size(); ++i) {
    const ArgumentRow& row = exported.arguments[i];
    if (row.flow == Flow::Value || input_.ConsumeIntegralInRange<int>(0, 30) == 0) continue;
    values[i].buffer = Buffer(row, RoomFor(row, exported.arguments, values));
  }
  return values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr int kMostSteps = 100;
  fuzz::Prepare();
  tests::WriteLesson();
  FuzzedDataProvider input(data, size);
  {
    Session host(input);
    for (int i = 0; i < kMostSteps && input.remaining_bytes() > 0; ++i) host.Step();
  }
  fuzz::CheckNothingIsLeft();
  return 0;
}
