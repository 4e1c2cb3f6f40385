// SPDX-License-Identifier: MIT
#include "gui/wx_text.h"

#include <gtest/gtest.h>

namespace tarvel {

TEST(ToWx, TakesUtf8) {
  EXPECT_EQ(ToWx("caf\xC3\xA9"), wxString(L"caf\u00E9"));
  EXPECT_EQ(ToWx(""), wxString());
  EXPECT_EQ(ToWx(std::string_view("a\0b", 3)).length(), 3u);
}

TEST(ToWx, TakesBytesOneByOneWhenTheyAreNotUtf8) {
  EXPECT_EQ(ToWx("caf\xE9.bib"), wxString(L"caf\u00E9.bib"));
  EXPECT_EQ(ToWx("\xC3\xA9/\xE9/\xC3\xA9"), wxString(L"\u00E9/\u00E9/\u00E9"));
  EXPECT_EQ(ToWx("\xC3\xA9\xE2\x82"), wxString(L"\u00E9\u00E2\u0082")) << "a cut character";
}

}  // namespace tarvel
