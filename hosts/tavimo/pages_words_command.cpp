// `tavimo pages words`: the marked words of a script with the sentences they stand in.
#include <algorithm>
#include <iomanip>
#include <iostream>

#include "marked_words.h"
#include "options.h"
#include "script_session.h"
#include "system.h"
#include "text.h"
#include "text_sentences.h"

namespace tavimo::host {

namespace {

struct Row {
  int page;
  std::string word;
  std::string sentence;
};

std::vector<Row> ReadRows(const ScriptSession& session) {
  const std::string& text = session.Paged().text;
  SentenceReader sentences(text);
  std::vector<Row> rows;
  for (const ScriptWord& word : MarkedWords(session.Paged(), session.ReadMarks(), CurrentPages().ReadOwn())) {
    StopIfInterrupted();
    rows.push_back({word.page + 1, text.substr(word.start, word.length), sentences.Around(word.start)});
  }
  return rows;
}

void PrintTable(const std::vector<Row>& rows) {
  if (rows.empty()) {
    std::cout << "no word is marked yet; tavimo pages mark marks one\n";
    return;
  }
  std::size_t width = 4;
  for (const Row& row : rows) width = std::max(width, row.word.size());
  const auto column = static_cast<int>(width) + 2;
  std::cout << "page  " << std::left << std::setw(column) << "word"
            << "sentence\n";
  for (const Row& row : rows) {
    std::cout << std::right << std::setw(4) << row.page << "  " << std::left << std::setw(column) << row.word
              << row.sentence << '\n';
  }
}

void PrintTabSeparated(const std::vector<Row>& rows) {
  std::cout << "page\tword\tsentence\n";
  for (const Row& row : rows) std::cout << row.page << '\t' << row.word << '\t' << row.sentence << '\n';
}

void PrintJson(const std::filesystem::path& script, const std::vector<Row>& rows) {
  std::cout << "{\"script\": " << Quoted(Readable(script)) << ", \"words\": [";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    std::cout << (i == 0 ? "" : ", ") << "{\"page\": " << rows[i].page << ", \"word\": " << Quoted(rows[i].word)
              << ", \"sentence\": " << Quoted(rows[i].sentence) << '}';
  }
  std::cout << "]}\n";
}

}  // namespace

int RunPagesWords(const Options& options) {
  ScriptSession session(options.home, options.files.front());
  session.Open();
  const std::vector<Row> rows = ReadRows(session);
  if (options.wordsForm == WordsForm::Table) PrintTable(rows);
  if (options.wordsForm == WordsForm::TabSeparated) PrintTabSeparated(rows);
  if (options.wordsForm == WordsForm::Json) PrintJson(options.files.front(), rows);
  return kDone;
}

}  // namespace tavimo::host
