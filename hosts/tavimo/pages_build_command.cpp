// `tavimo pages build`: a script broken into pages. Its marks go along where the pages are other ones than before.
#include <iostream>

#include "options.h"
#include "script_session.h"
#include "text.h"

namespace tavimo::host {

int RunPagesBuild(const Options& options) {
  const PageSetup& setup = options.pageSetup;
  ScriptSession session(options.home, options.files.front());
  const EngineText text = ReadEngineText(options.files.front(), setup);
  const std::size_t markedCount = session.Build(setup, text);
  std::cerr << text.lost;
  std::cout << Readable(options.files.front().filename()) << ": " << NameOf(text.encoding) << ", "
            << Counted(text.lineCount, "line");
  if (text.mendedLineEnds > 0) std::cout << " (line ends made CR LF in the working copy)";
  std::cout << '\n'
            << Counted(static_cast<std::size_t>(session.PageCount()), "page") << " of " << setup.width << " x "
            << setup.height << " pixels in " << ReadableText(setup.font) << " " << setup.sizePx << '\n';
  if (markedCount > 0) std::cout << Counted(markedCount, "marked word") << " kept\n";
  return kDone;
}

}  // namespace tavimo::host
