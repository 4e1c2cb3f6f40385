// SPDX-License-Identifier: MIT
#include "ops/references/reference_format.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <random>
#include <vector>

namespace tarvel {
namespace {

using namespace std::string_view_literals;

std::string Format(std::string_view format) {
  constexpr std::array values{"one"sv, "two"sv, ""sv, "{four}"sv};
  return FormatReference(format, values);
}

struct Case {
  std::string_view format;
  std::string_view result;
  std::string_view says;
};

constexpr Case kCases[] = {
    {"", "", "nothing gives nothing"},
    {"plain text", "plain text", "text stands"},
    {"%s, %s.", "one, two.", "values come in their order"},
    {"%s%s%s%s", "onetwo{four}", "empty values too"},
    {"%s|%s|%s|%s|%s|%5s|", "one|two||{four}|||", "a placeholder beyond the values prints nothing"},
    {"100%% of %s", "100% of one", "%% is a percent sign"},
    {"%5s|%-5s|", "  one|two  |", "a width pads to the left, with '-' to the right"},
    {"%2s", "one", "a width does not cut"},
    {"%.2s|%.0s|%.s|%.9s", "on|||{four}", "a precision cuts, none means 0"},
    {"%5.1s|%-5.1s|", "    o|t    |", "width and precision together"},
    {"%05s|%+5s|% 5s|%#5s", "  one|  two|     |{four}", "flags for numbers mean nothing"},
    {"%-0+ #'5s|", "one  |", "flags in a row"},
    {"%", "%", "a percent sign at the end stands"},
    {"%s %", "one %", "and after a placeholder"},
    {"%d %n %x %c %p %f", "%d %n %x %c %p %f", "other sequences stand and take no value"},
    {"%n%s", "%none", "the value after one is the next"},
    {"%ls %hs %*s %.*s %1$s", "%ls %hs %*s %.*s %1$s", "so do longer ones"},
    {"%5", "%5", "one that is cut off"},
    {"%5.", "%5.", "one that is cut off after its point"},
    {"%.-3s|%s", "%.-3s|one", "a negative precision is none"},
    {"50% %s", "50% one", "a percent sign before a placeholder"},
    {"%%s %%%s", "%s %one", "pairs are read from the left"},
    {"%s\0%s"sv, "one\0two"sv, "a zero byte is a byte"},
    {"%1000001s|%s", "%1000001s|one", "wider than any page: no placeholder"},
    {"%99999999999999999999999s", "%99999999999999999999999s", "however wide"},
    {"%.99999999999999999999999s", "one", "a large precision cuts nothing"},
    {"\xFF%s\xFE", "\xFFone\xFE", "bytes above 127 stand"},
};

TEST(FormatReference, ReplacesPlaceholdersAndNothingElse) {
  for (const Case& c : kCases) EXPECT_EQ(Format(c.format), c.result) << c.says;
}

TEST(FormatReference, PadsToWidthsThatPrintfWouldPadTo) {
  const std::string wide = Format("%9999s|");
  EXPECT_EQ(wide.size(), 10000U);
  EXPECT_EQ(wide.substr(9990), "      one|");
  EXPECT_EQ(Format("%10000s").size(), 10000U);
  EXPECT_EQ(Format("%10001s"), "%10001s") << "wider than any text needs: no placeholder";
}

TEST(FormatReference, CountsBytesOfLongValuesExactly) {
  const std::string value(2'500'000, 'x');
  const std::array values{std::string_view(value), std::string_view(value)};
  EXPECT_EQ(FormatReference("%.2000000s|%s", values).size(), 4'500'001U);
}

/// Formats that are safe to hand to printf must come out as printf has them.
TEST(FormatReference, AgreesWithPrintfOnRandomPlaceholders) {
  std::mt19937 random(7);
  const auto number = [&](std::size_t below) { return random() % below; };
  constexpr std::string_view flags = "-+ #0";
  for (int i = 0; i < 5000; ++i) {
    std::string format = "%";
    for (std::size_t n = number(3); n > 0; --n) format += flags[number(5)];
    if (number(2) != 0) format += std::to_string(number(12));
    if (number(2) != 0) format += "." + (number(4) != 0 ? std::to_string(number(9)) : "");
    format += "s";
    const std::string value(number(10), 'v');
    std::array<char, 64> expected{};
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    std::snprintf(expected.data(), expected.size(), format.c_str(), value.c_str());
#pragma GCC diagnostic pop
    const std::array values{std::string_view(value)};
    ASSERT_EQ(FormatReference(format, values), expected.data()) << format << " of " << value;
  }
}

TEST(FormatReference, ReportsWhichValuesItShows) {
  const std::array<std::string_view, 4> values{"a", "", "c", "d"};
  std::uint64_t shown = 0;
  EXPECT_EQ(FormatReference("%s%s%.0s %.1s %s %%", values, &shown), "a d  %");
  EXPECT_EQ(shown, 0b1011U) << "a precision of 0 passes a value over";
}

}  // namespace
}  // namespace tarvel
