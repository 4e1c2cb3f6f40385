// SPDX-License-Identifier: MIT
#include "gui/wx_reporter.h"

#include <wx/translation.h>
#include <wx/utils.h>

#include <memory>

#include "app/reporter.h"
#include "tests/gui/gui_support.h"

namespace tarvel::testing {

namespace {

using Boxes = std::vector<BoxRecorder::ShownBox>;

/// Knows one text in German.
class OneTextLoader final : public wxTranslationsLoader {
 public:
  wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString& /*language*/) override {
    // A catalogue of one entry, "Done!", in the format of gettext's .mo files.
    static constexpr unsigned char kCatalogue[] = {
        0xDE, 0x12, 0x04, 0x95, 0,   0,   0,   0,   2,   0,   0,   0,   28,  0,
        0,    0,    44,   0,    0,   0,   0,   0,   0,   0,   60,  0,   0,   0,  // no hash table
        0,    0,    0,    0,    60,  0,   0,   0,                                // "" at 60
        5,    0,    0,    0,    61,  0,   0,   0,                                // "Done!" at 61
        39,   0,    0,    0,    67,  0,   0,   0,  // the catalogue's header at 67
        7,    0,    0,    0,    107, 0,   0,   0,  // "Fertig!" at 107
        0,    'D',  'o',  'n',  'e', '!', 0,   'C', 'o', 'n', 't', 'e', 'n', 't',
        '-',  'T',  'y',  'p',  'e', ':', ' ', 't', 'e', 'x', 't', '/', 'p', 'l',
        'a',  'i',  'n',  ';',  ' ', 'c', 'h', 'a', 'r', 's', 'e', 't', '=', 'U',
        'T',  'F',  '-',  '8',  0,   'F', 'e', 'r', 't', 'i', 'g', '!', 0};
    return wxMsgCatalog::CreateFromData(
        wxScopedCharBuffer::CreateNonOwned(
            static_cast<const char*>(static_cast<const void*>(kCatalogue)), sizeof kCatalogue),
        domain);
  }
  wxArrayString GetAvailableTranslations(const wxString& /*domain*/) const override {
    wxArrayString languages;
    languages.Add(wxString::FromAscii("de"));
    return languages;
  }
};

}  // namespace

class WxReporterTest : public GuiTest {};

TEST_F(WxReporterTest, ShowsTheCaptionAndTheMessageAsTheyAre) {
  ShowBox("50 % & <b>_x_</b>\n\nEnd\n", "BibTeX file ?");
  EXPECT_EQ(recorder.boxes, (Boxes{{"BibTeX file ?", "50 % & <b>_x_</b>\n\nEnd\n"}}));
  EXPECT_EQ(recorder.styles, std::vector<long>{wxOK | wxCENTRE});
}

TEST_F(WxReporterTest, NeverShowsAnEmptyBoxForBytesThatAreNotUtf8) {
  ShowBox("caf\xE9.bib", "\xE9");
  EXPECT_EQ(recorder.boxes, (Boxes{{"\xC3\xA9", "caf\xC3\xA9.bib"}}));
}

TEST_F(WxReporterTest, LooksTheCaptionUpInTheTranslations) {
  auto* translations = new wxTranslations;
  translations->SetLoader(new OneTextLoader);
  translations->SetLanguage(wxString::FromAscii("de"));
  wxTranslations::Set(translations);  // owns it
  translations->AddCatalog(wxString::FromAscii("tarvel"));
  ShowBox("Done!", "Done!");
  ShowBox("Done!", "Note!");
  wxTranslations::Set(nullptr);
  EXPECT_EQ(recorder.boxes, (Boxes{{"Fertig!", "Done!"}, {"Note!", "Done!"}}));
}

TEST_F(WxReporterTest, PutsTheBusyCursorAwayWhileABoxIsOpen) {
  wxBeginBusyCursor();
  wxBeginBusyCursor();
  ShowBox("m", "c");
  EXPECT_EQ(recorder.busy, std::vector<bool>{false});
  EXPECT_TRUE(wxIsBusy());
  wxEndBusyCursor();
  EXPECT_TRUE(wxIsBusy());
  wxEndBusyCursor();
  EXPECT_FALSE(wxIsBusy());
}

TEST_F(WxReporterTest, PrintsOnStandardOutputAtOnceAndWarnsOnStandardError) {
  ::testing::internal::CaptureStdout();
  ::testing::internal::CaptureStderr();
  EXPECT_EQ(GlobalReporter().Print(std::string_view("a%s\0b", 5)), 5);
  GlobalReporter().Warn("warning: passed over");
  EXPECT_EQ(::testing::internal::GetCapturedStdout(), std::string("a%s\0b", 5));
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "tarvel: warning: passed over\n");
}

}  // namespace tarvel::testing
