// SPDX-License-Identifier: MIT
// The primitives of core, each on the lines of a made library.
#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "app/tags.h"
#include "bench/library_maker.h"
#include "core/line_stream.h"
#include "core/name_matcher.h"
#include "core/text_primitives.h"
#include "core/value_reader.h"

namespace tarvel::bench {
namespace {

const std::string& Library() {
  static const std::string library = FirstLibrary(2000);
  return library;
}

const std::vector<std::string_view>& Lines() {
  static const std::vector<std::string_view> lines = [] {
    static LineStream stream{std::string_view(Library())};
    std::vector<std::string_view> all;
    while (const auto line = stream.ReadLine(limits::kLongLine)) all.push_back(*line);
    return all;
  }();
  return lines;
}

void CountBytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Library().size()));
}

void BM_LineStream(benchmark::State& state) {
  LineStream stream{std::string_view(Library())};
  for (auto _ : state) {
    stream.SetPosition(0);
    while (const auto line = stream.ReadLine(limits::kPairLine)) benchmark::DoNotOptimize(*line);
  }
  CountBytes(state);
}
BENCHMARK(BM_LineStream);

void BM_IsKnownEntry(benchmark::State& state) {
  for (auto _ : state) {
    int count = 0;
    Line line;
    for (const std::string_view text : Lines()) {
      line.Set(text);
      count += IsKnownEntry(line) ? 1 : 0;
    }
    benchmark::DoNotOptimize(count);
  }
  CountBytes(state);
}
BENCHMARK(BM_IsKnownEntry);

void BM_ReadFieldValue(benchmark::State& state) {
  LineStream stream{std::string_view(Library())};
  std::string value;
  for (auto _ : state) {
    stream.SetPosition(0);
    for (Line line; ReadLine(stream, limits::kPairLine, line);) {
      benchmark::DoNotOptimize(ReadFieldValue(line, stream, value));
    }
  }
  CountBytes(state);
}
BENCHMARK(BM_ReadFieldValue);

constexpr std::array<std::string_view, kTagCount> kTagNames = [] {
  std::array<std::string_view, kTagCount> names{};
  for (std::size_t i = 0; i < kTagCount; ++i) names[i] = kTagRules[i].name;
  return names;
}();

template <typename Ask>
void MatchNames(benchmark::State& state, const Ask& ask) {
  const NameMatcher matcher{kTagNames};
  for (auto _ : state) {
    for (const std::string_view line : Lines()) benchmark::DoNotOptimize(ask(matcher, line));
  }
  CountBytes(state);
}
void BM_NameMatcherFind(benchmark::State& state) {
  MatchNames(state,
             [](const NameMatcher& names, std::string_view line) { return names.Find(line); });
}
BENCHMARK(BM_NameMatcherFind);
void BM_NameMatcherAny(benchmark::State& state) {
  MatchNames(state,
             [](const NameMatcher& names, std::string_view line) { return names.Any(line); });
}
BENCHMARK(BM_NameMatcherAny);

void BM_ReplaceString(benchmark::State& state) {
  std::string line;
  for (auto _ : state) {
    for (const std::string_view text : Lines()) {
      line = text;
      benchmark::DoNotOptimize(ReplaceString(line, "--", "-"));
    }
  }
  CountBytes(state);
}
BENCHMARK(BM_ReplaceString);

void BM_ContainsNoCase(benchmark::State& state) {
  for (auto _ : state) {
    for (const std::string_view line : Lines()) {
      benchmark::DoNotOptimize(ContainsNoCase(line, "timestamp"));
    }
  }
  CountBytes(state);
}
BENCHMARK(BM_ContainsNoCase);

}  // namespace
}  // namespace tarvel::bench
