// The words of call and --trace: for who writes a host program.
#include "grammar.h"

namespace tavimo::host {

void AddHostCommands(Grammar& grammar) {
  grammar.app.add_flag("--trace", grammar.options.isTraced, "Show every call of the engine on standard error");
  CLI::App& command = grammar.AddCommand("call", "Call exports of the engine, for who writes a host", RunCall);
  command.footer(
      "\ntavimo call NAME ARGUMENT… [+ NAME ARGUMENT…]…; without a name it lists them all. Arguments that an export "
      "only\n"
      "writes have no word. A window is - or a name (list… and bar… are list boxes and progress bars), a device\n"
      "context - or NAME:WIDTHxHEIGHT[:FONT:PIXELS], saved as NAME.png; arrays have commas, bytes are hexadecimal. "
      "The\n"
      "call wait SECONDS lets messages arrive. The current directory gets the folders temp, tmpwav and zud.\n"
      "\n  tavimo call vcOpenSentenceFile unit1.wav + vcReadSentenceData 3");
  command.prefix_command();  // negative numbers are no options
  command.fallthrough(false);
}

std::string FinishHost(Grammar& grammar) {
  if (grammar.options.command == RunCall) grammar.options.calls = grammar.app.get_subcommand("call")->remaining();
  return {};
}

}  // namespace tavimo::host
