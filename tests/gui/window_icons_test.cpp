// SPDX-License-Identifier: MIT
#include "gui/window_icons.h"

#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

#include <filesystem>

#include "gui/wx_text.h"
#include "tests/gui/gui_support.h"

namespace tarvel::testing {

namespace {

std::vector<int> Widths(const wxIconBundle& icons) {
  std::vector<int> widths;
  for (std::size_t i = 0; i < icons.GetIconCount(); ++i) {
    widths.push_back(icons.GetIconByIndex(i).GetWidth());
  }
  return widths;
}

std::string BuildDirectory() {
  return Utf8(wxFileName(wxStandardPaths::Get().GetExecutablePath()).GetPath());
}

/// Keeps what the toolkit would show in a box of its own.
class LogRecorder {
 public:
  LogRecorder() : old_(wxLog::SetActiveTarget(&buffer_)) {}
  LogRecorder(const LogRecorder&) = delete;
  LogRecorder& operator=(const LogRecorder&) = delete;
  ~LogRecorder() { wxLog::SetActiveTarget(old_); }
  std::string Text() const { return Utf8(buffer_.GetBuffer()); }

 private:
  wxLogBuffer buffer_;
  wxLog* old_;
};

}  // namespace

class WindowIconsTest : public MainDialogTest {
 protected:
  std::string NewIcon(const std::string& share, int size, std::string_view bytes) {
    const std::string pixels = std::to_string(size);
    const std::string apps = share + "/icons/hicolor/" + pixels + "x" + pixels + "/apps";
    std::filesystem::create_directories(directory / apps);
    return NewFile(apps + "/org.tarvel.Tarvel.png", bytes);
  }
  std::string Png(int size) const {
    const std::string pixels = std::to_string(size);
    return ReadDiskFile(BuildDirectory() + "/../share/icons/hicolor/" + pixels + "x" + pixels +
                        "/apps/org.tarvel.Tarvel.png");
  }
  wxIconBundle IconsOf(std::string_view program_directory) {
    std::filesystem::create_directories(directory / program_directory);
    return WindowIcons(ToWx(directory / program_directory));
  }

  LogRecorder log;
};

TEST_F(WindowIconsTest, TheMainDialogAndThePreferencesShowThemInTheBuildTree) {
  const std::vector<int> sizes{16, 24, 32, 48, 64, 128, 256};
  EXPECT_EQ(Widths(dialog->GetIcons()), sizes);
  const wxDialog& extract = OpenPreferences("Extract", "Preferences for 'Extract'");
  EXPECT_EQ(Widths(extract.GetIcons()), sizes);
}

TEST_F(WindowIconsTest, AnInstallationKeepsThemInItsTheme) {
  NewIcon("share", 48, Png(48));
  NewIcon("share", 16, Png(16));
  EXPECT_EQ(Widths(IconsOf("lib/tarvel")), (std::vector<int>{16, 48}));
}

TEST_F(WindowIconsTest, MissingAndBrokenOnesAreLeftOutWithoutAWord) {
  EXPECT_TRUE(IconsOf("bin").IsEmpty());
  NewIcon("share", 16, "no picture");
  NewIcon("share", 24, Png(24).substr(0, 60));
  EXPECT_TRUE(IconsOf("bin").IsEmpty());
  NewIcon("share", 32, Png(32));
  EXPECT_EQ(Widths(IconsOf("bin")), std::vector<int>{32});
  EXPECT_EQ(log.Text(), "");
  EXPECT_TRUE(recorder.boxes.empty());
}

}  // namespace tarvel::testing
