// Picture files of the host kit: any native name, whole or not at all.
#include <cairo/cairo.h>
#include <fontconfig/fontconfig.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>

#include "support/engine_test.h"

namespace tavimo::tests {
namespace {

using Names = std::vector<std::string>;

// A leak checker cannot follow the addresses that Fontconfig keeps in its cache.
class FontLibraries : public ::testing::Environment {
 public:
  void TearDown() override {
    cairo_debug_reset_static_data();
    FcFini();
  }
};
[[maybe_unused]] const auto* const kFontLibraries = ::testing::AddGlobalTestEnvironment(new FontLibraries);

class PngTest : public ::testing::Test {
 protected:
  PngTest() {
    tvFill(dc, 0, 0, 1, 1, 0x332211);
    tvFill(dc, 1, 1, 1, 1, 0x0000FF);
  }

  ~PngTest() override { tvDestroyDc(dc); }

  // The pixels of a file as 0x00RRGGBB, by the drawing library's own reader.
  static std::vector<std::uint32_t> Decode(const char* path) {
    cairo_surface_t* surface = cairo_image_surface_create_from_png(path);
    std::vector<std::uint32_t> pixels;
    const auto* rows = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface));
    const int rowPixels = cairo_image_surface_get_stride(surface) / 4;
    for (int y = 0; y < cairo_image_surface_get_height(surface); ++y) {
      for (int x = 0; x < cairo_image_surface_get_width(surface); ++x) {
        pixels.push_back(rows[y * rowPixels + x] & 0xFFFFFF);
      }
    }
    cairo_surface_destroy(surface);
    return pixels;
  }

  ScratchFolder scratch;
  VcDc dc = tvCreateDc(3, 2);
  const std::vector<std::uint32_t> pixels{0x112233, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFF0000, 0xFFFFFF};
};

TEST_F(PngTest, IsWrittenUnderAnyNativeName) {
  const std::string absolute = (scratch.Root() / "temp/picture.png").string();
  for (const char* path : {"out.png", "Out.png", "波形 🎵 a\\b.png", absolute.c_str()}) {
    EXPECT_EQ(tvSavePng(dc, path), 0) << path;
    EXPECT_EQ(Decode(path), pixels) << path;
  }
  tvFill(dc, 0, 0, 3, 2, 0);
  std::filesystem::create_symlink(absolute, "link.png");
  EXPECT_EQ(tvSavePng(dc, "link.png"), 0);
  EXPECT_TRUE(std::filesystem::is_symlink("link.png"));
  EXPECT_EQ(Decode(absolute.c_str()), std::vector<std::uint32_t>(6, 0));
  EXPECT_EQ(NamesIn("."), (Names{"Out.png", "link.png", "out.png", "temp", "tmpwav", "zud", "波形 🎵 a\\b.png"}));
}

TEST_F(PngTest, LeavesEverythingAsItWasWhenItCannotBeWritten) {
  WriteText("kept.png", "old");
  WriteText("readonly.png", "old");
  chmod("readonly.png", 0444);
  mkfifo("pipe", 0600);
  const Names before = NamesIn(".");
  for (const char* path : {"", "missing/a.png", "temp", "kept.png/a.png", "readonly.png", "pipe"}) {
    EXPECT_EQ(tvSavePng(dc, path), -1) << path;
  }
  EXPECT_EQ(tvSavePng(dc, nullptr), -1);
  EXPECT_TRUE(std::filesystem::is_fifo("pipe")) << "no device may give way to a picture";

  VcDc noise = tvCreateDc(200, 200);  // a picture that does not fit
  for (int i = 0; i < 200 * 200; ++i)
    tvFill(noise, i % 200, i / 200, 1, 1, static_cast<std::uint32_t>(i) * 2654435761u);
  const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{1000, limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(tvSavePng(noise, "kept.png"), -1);
  setrlimit(RLIMIT_FSIZE, &limit);
  tvDestroyDc(noise);
  std::signal(SIGXFSZ, previousHandler);

  EXPECT_EQ(NamesIn("."), before);
  for (const char* path : {"kept.png", "readonly.png"}) EXPECT_EQ(ReadBytes(path), (Bytes{'o', 'l', 'd'}));
}

}  // namespace
}  // namespace tavimo::tests
