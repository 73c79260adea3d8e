// Where profiles without a folder lie: in the user's folder of settings, behind the one in the current folder.
#include "support/engine_test.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

class Settings : public EngineTest {};

TEST_F(Settings, HoldTitlesThatTheCurrentFolderLacks) {
  const ScopedVariable settings("XDG_CONFIG_HOME", scratch.Root().c_str());
  std::filesystem::create_directory("tavimo");
  for (const auto& [file, expected] : {std::pair{"tavimo/article.txt", "Settings"}, {"article.txt", "Here"}}) {
    WriteText(file, std::string("[unit1]\n1=").append(expected));
    char title[150];
    vcGetArticleTitle("unit1", 1, title);
    EXPECT_STREQ(title, expected);
  }
}

}  // namespace
}  // namespace tavimo::tests
