// The words of pages: the script of a lesson, page by page, with the words that the learner marks.
#include "grammar.h"

namespace tavimo::host {

namespace {

CLI::Validator PageSizeCheck() {
  return {[](const std::string& text) {
            return ParsePageSize(text) ? std::string() : "'" + text + "' is no page; write 640x480, each 16 to 4096";
          },
          ""};
}

CLI::Validator PointCheck() {
  return {[](const std::string& text) {
            return ParsePagePoint(text) ? std::string() : "'" + text + "' is no place on a page; write 120,45";
          },
          ""};
}

CLI::App& AddPageCommand(Grammar& grammar, CLI::App& pages, const char* name, const char* about,
                         int (*run)(const Options&)) {
  CLI::App& command = grammar.AddCommandTo(pages, name, about, run);
  command.add_option("SCRIPT", grammar.words.file, "The script, a text file")->required()->type_name("");
  return command;
}

void AddBuild(Grammar& grammar, CLI::App& pages) {
  PageSetup& setup = grammar.options.pageSetup;
  CLI::App& command = AddPageCommand(grammar, pages, "build", "Break a script into pages", RunPagesBuild);
  command.footer(
      "\nThe script may be UTF-8, UTF-16, GBK or GB18030 with line ends of any kind; it is only read. Each of its "
      "lines\n"
      "is a paragraph; one that begins with @@ is indented. The other commands use the font and page named here, and\n"
      "make the pages again when the script changed. Marks stay with their words as long as the text is the same.");
  command.add_option("--font", setup.font, "The font's family (default: " + setup.font + ")")->type_name("NAME");
  command.add_option("--size", setup.sizePx, "Its height in pixels (default: " + std::to_string(setup.sizePx) + ")")
      ->check(Quietly(CLI::Range(kSmallestFontPx, kLargestFontPx)))
      ->type_name("PX");
  command.add_option("--page", grammar.words.pageSize, "The page in pixels, margins included (default: 660x500)")
      ->check(PageSizeCheck())
      ->type_name("WxH");
  command.add_option("--spacing", setup.spacing, "Of lines: 0 single, 1 one and a fifth (default), 2 one and a half")
      ->check(Quietly(CLI::Range(0, 2)))
      ->type_name("N");
  grammar.AddEncoding(command);
  command.add_flag("--replace", grammar.words.replace, "Make question marks of the characters that GBK lacks");
}

void AddShow(Grammar& grammar, CLI::App& pages) {
  CLI::App& command =
      AddPageCommand(grammar, pages, "show", "Show a page, in the terminal or as a picture", RunPagesShow);
  command.add_option("N", grammar.words.page, "The page, from 1 (default: the first)")
      ->check(NumberCheck())
      ->type_name("");
  grammar.AddOutput(command, "Draw the page into this picture", "PNG");
}

void AddMark(Grammar& grammar, CLI::App& pages) {
  CLI::App& command =
      AddPageCommand(grammar, pages, "mark", "Mark words, or take their marks away where they have one", RunPagesMark);
  auto* word =
      command.add_option("WORD", grammar.options.word, "Every occurrence of this word, large or small letters")
          ->type_name("");
  command.add_option("--page", grammar.words.page, "On this page only, from 1")->check(NumberCheck())->type_name("N");
  command.add_option("--number", grammar.words.occurrence, "Only this occurrence, from 1")
      ->check(NumberCheck())
      ->type_name("K")
      ->needs(word);
  command.add_option("--at", grammar.words.at, "The word at this place of the page's picture, like a click")
      ->check(PointCheck())
      ->type_name("X,Y")
      ->excludes(word);
}

void AddWords(Grammar& grammar, CLI::App& pages) {
  CLI::App& command =
      AddPageCommand(grammar, pages, "words", "List the marked words with their pages and sentences", RunPagesWords);
  auto* tsv = command.add_flag("--tsv", grammar.words.tsv, "As lines with tabs, for a spreadsheet");
  command.add_flag("--json", grammar.words.json, "As JSON")->excludes(tsv);
}

}  // namespace

void AddPageCommands(Grammar& grammar) {
  CLI::App& pages = *grammar.app.add_subcommand("pages", "Read a lesson's script page by page, and mark its words");
  pages.require_subcommand(0, 1);
  AddBuild(grammar, pages);
  AddShow(grammar, pages);
  AddMark(grammar, pages);
  AddWords(grammar, pages);
}

std::string FinishPages(Grammar& grammar) {
  const Words& words = grammar.words;
  Options& options = grammar.options;
  if (words.page > 0) options.page = words.page;
  if (words.occurrence > 0) options.occurrence = words.occurrence;
  if (!words.at.empty()) options.at = ParsePagePoint(words.at);
  if (!words.encoding.empty()) options.pageSetup.encoding = words.encoding;
  if (words.replace) options.pageSetup.lost = LostText::Replace;
  if (const auto size = ParsePageSize(words.pageSize)) {
    options.pageSetup.width = size->width;
    options.pageSetup.height = size->height;
  }
  options.wordsForm = words.json ? WordsForm::Json : words.tsv ? WordsForm::TabSeparated : WordsForm::Table;
  if (options.pageSetup.font.find('\n') != std::string::npos) return "no font has a line end in its name";
  if (options.command != RunPagesMark) return {};
  if (options.word.empty() && !options.at) return "say what to mark: a word, or --page and --at";
  return options.at && !options.page ? "say on which page with --page" : "";
}

}  // namespace tavimo::host
