// SPDX-License-Identifier: MIT
#include "app/globals.h"

#include <cstdio>
#include <cstdlib>

namespace tarvel {

Settings GlobalSettings;

PathBuffer FirstFilePath("first file");
PathBuffer SecondFilePath("second file");
PathBuffer ExecutablePath("executable");
PathBuffer ProgramDir("program directory");

WarningOutputs GlobalWarningOutputs;
Warnings* GlobalWarnings = nullptr;

JournalStyles GlobalJournalStyles;

RunFiles* GlobalRunFiles = nullptr;
FileSystem* GlobalFileSystem = nullptr;
std::string GlobalOutputDirectory;
CitationRules GlobalCitations;
std::vector<std::string> GlobalKeptFiles;

FileSystem& GlobalFiles() { return GlobalFileSystem ? *GlobalFileSystem : RealFileSystem(); }

void PathBuffer::Set(std::string_view path) {
  if (path.size() > kMostBytes) {
    std::fprintf(stderr, "tarvel: the path of the %s is %zu bytes long; %zu are the most\n",
                 std::string(name_).c_str(), path.size(), kMostBytes);
    std::_Exit(1);
  }
  path_ = path;
  unconverted_.clear();
}

}  // namespace tarvel
