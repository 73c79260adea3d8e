#include "grammar.h"

#include "script_text.h"
#include "text.h"

namespace tavimo::host {

namespace fs = std::filesystem;

namespace {
constexpr int kHighestNumber = 999'999;
}  // namespace

CLI::App& Grammar::AddCommand(const char* name, const char* about, int (*run)(const Options&)) {
  return AddCommandTo(app, name, about, run);
}

CLI::App& Grammar::AddCommandTo(CLI::App& parent, const char* name, const char* about, int (*run)(const Options&)) {
  CLI::App& command = *parent.add_subcommand(name, about);
  command.callback([this, run] { options.command = run; });
  return command;
}

void Grammar::AddFile(CLI::App& command, const char* about) {
  command.add_option("FILE", words.file, about)->required()->type_name("");
}

void Grammar::AddFiles(CLI::App& command, const char* about) {
  command.add_option("FILE", words.files, about)->required()->type_name("");
}

void Grammar::AddDevice(CLI::App& command, const char* about) {
  command.add_option("--device", options.device, about)->type_name("NAME");
}

void Grammar::AddEncoding(CLI::App& command) {
  command.add_option("--encoding", words.encoding, "What the script is written in, where that is not clear")
      ->check(Quietly(CLI::IsMember(EncodingNames())))
      ->type_name("NAME");
}

void Grammar::AddAction(CLI::App& command, const char* about, const std::vector<std::string>& actions) {
  command.add_option("ACTION", words.action, about)->required()->check(Quietly(CLI::IsMember(actions)))->type_name("");
}

void Grammar::AddDigestKind(CLI::App& command) {
  auto* exact = command.add_flag("--exact", words.exact, "Use the engine's digest: the last sample of every 40 ms");
  command.add_flag("--peak", words.peak, "Use the loudest sample of every 40 ms (default): finer for finding silence")
      ->excludes(exact);
}

void Grammar::AddStretch(CLI::App& command) {
  command.add_option("--from", words.from, "Where to begin: 12.5 or 1:02.5")->check(TimeCheck())->type_name("TIME");
  command.add_option("--to", words.to, "Where to end")->check(TimeCheck())->type_name("TIME");
}

CLI::Option& Grammar::AddSentence(CLI::App& command) {
  return *command.add_option("--sentence", words.sentence, "The sentence, from 1")
              ->check(NumberCheck())
              ->type_name("N");
}

CLI::Option& Grammar::AddOutput(CLI::App& command, const char* about, const char* type) {
  return *command.add_option("-o,--output", words.output, about)->type_name(type);
}

fs::path Absolute(const std::string& path) {
  const fs::path full = fs::absolute(PathFromUtf8(path)).lexically_normal();
  return full.has_filename() ? full : full.parent_path();
}

CLI::Validator Quietly(CLI::Validator check) { return check.description(""); }

CLI::Validator TimeCheck() {
  return {[](const std::string& text) {
            return ParseTime(text) ? std::string() : "'" + text + "' is no time; write 12.5 or 1:02.5";
          },
          ""};
}

CLI::Validator NumberCheck() { return Quietly(CLI::Range(1, kHighestNumber)); }

}  // namespace tavimo::host
