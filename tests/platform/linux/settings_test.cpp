// Where profiles without a folder lie: in the user's folder of settings, behind the one in the current folder.
#include "support/engine_test.h"
#include "support/system.h"

namespace tavimo::tests {
namespace {

class Settings : public EngineTest {
 protected:
  Settings() { SetVariable("XDG_CONFIG_HOME", scratch.Root().c_str()); }
  ~Settings() override { SetVariable("XDG_CONFIG_HOME", nullptr); }

  static std::string Title() {
    char title[150];
    vcGetArticleTitle("unit1", 1, title);
    return title;
  }
};

TEST_F(Settings, HoldTitlesThatTheCurrentFolderLacks) {
  std::filesystem::create_directory("tavimo");
  WriteText("tavimo/article.txt", "[unit1]\n1=Settings\n");
  EXPECT_EQ(Title(), "Settings");
  WriteText("article.txt", "[unit1]\n1=Here\n");
  EXPECT_EQ(Title(), "Here");
}

}  // namespace
}  // namespace tavimo::tests
