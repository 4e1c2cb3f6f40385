// SPDX-License-Identifier: MIT
#include "gui/line_endings.h"

#include <cerrno>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "app/reporter.h"
#include "core/file_names.h"
#include "core/line_stream.h"
#include "core/output_file.h"
#include "core/run_files.h"
#include "core/text_primitives.h"

namespace tarvel {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 18;
constexpr std::string_view kCopySuffix = "_linux";
constexpr const char* kNoExtension = "its name has no extension";

std::string_view SystemName(int system) {
  switch (system) {
    case kWindowsSystem:
      return "Windows";
    case kMacSystem:
      return "Mac";
    default:
      return "Linux";
  }
}

/// Counts the line breaks of what is read through it.
class CountingSource final : public ByteSource {
 public:
  /// `breaks` must outlive this.
  CountingSource(std::unique_ptr<ByteSource> source, LineBreaks& breaks)
      : source_(std::move(source)), breaks_(breaks) {}

  std::ptrdiff_t Read(char* buffer, std::size_t size) override {
    const std::ptrdiff_t got = source_->Read(buffer, size);
    if (got > 0) CountLineBreaks({buffer, static_cast<std::size_t>(got)}, last_, breaks_);
    return got;
  }
  std::size_t Size() const override { return source_->Size(); }
  std::optional<FileState> State() const override { return source_->State(); }

 private:
  std::unique_ptr<ByteSource> source_;
  LineBreaks& breaks_;
  char last_ = 0;
};

/// Hands a file to `take` piece by piece; false when it cannot be read.
template <typename Take>
bool ReadPieces(ByteSource& source, const Take& take) {
  const auto buffer = std::make_unique_for_overwrite<char[]>(kChunk);
  for (;;) {
    const std::ptrdiff_t got = source.Read(buffer.get(), kChunk);
    if (got <= 0) return got == 0;
    take(std::string_view(buffer.get(), static_cast<std::size_t>(got)));
  }
}

/// Writes a piece of a Windows file: the CR of a CR LF pair goes, a lone CR stays. A CR at the end
/// of a piece waits for what follows it.
void ConvertWindows(std::string_view bytes, bool& waiting_cr, OutputFile& copy) {
  while (!bytes.empty()) {
    if (waiting_cr && bytes.front() != '\n') copy.Write("\r");
    const std::size_t cr = bytes.find('\r');
    waiting_cr = cr != std::string_view::npos;
    copy.Write(bytes.substr(0, cr));
    bytes.remove_prefix(waiting_cr ? cr + 1 : bytes.size());
  }
}

/// Writes a piece of a Mac file: every CR becomes LF.
void ConvertMac(std::string_view bytes, OutputFile& copy) {
  std::string converted(bytes);
  for (char& byte : converted) byte = byte == '\r' ? '\n' : byte;
  copy.Write(converted);
}

/// Stands in for a new file: nothing is written, but what is there must be what would be written.
class ComparingSink final : public ByteSink {
 public:
  explicit ComparingSink(std::unique_ptr<ByteSource> source) : lines_(std::move(source)) {
    readable_ = lines_.LoadAll();
  }
  std::string Write(std::string_view bytes) override {
    const bool same = readable_ && lines_.Bytes().substr(at_).starts_with(bytes);
    at_ += same ? bytes.size() : 0;
    return same ? std::string() : std::string(kDiffers);
  }
  std::string Close() override {
    return at_ == lines_.Bytes().size() ? std::string() : std::string(kDiffers);
  }

 private:
  static constexpr std::string_view kDiffers = "it has other contents";
  LineStream lines_;
  bool readable_ = false;
  std::size_t at_ = 0;
};

/// Writes the converted bytes of `source`; returns why that failed, or nothing.
std::string WriteCopy(ByteSource& source, int system, OutputFile& copy) {
  bool waiting_cr = false;
  const bool read = ReadPieces(source, [&](std::string_view bytes) {
    if (system == kWindowsSystem) {
      ConvertWindows(bytes, waiting_cr, copy);
    } else {
      ConvertMac(bytes, copy);
    }
  });
  if (waiting_cr) copy.Write("\r");
  const bool arrived = copy.Close();
  if (!read) return "the picked file could not be read";
  return arrived ? std::string() : copy.Error();
}

int Refuse(std::string_view message) {
  ShowBox(message, "File ?");
  return 0;
}

bool IsPicked(FileSystem& files, const std::string& path) {
  return files.IsSameFile(path, FirstFilePath.Get()) ||
         files.IsSameFile(path, SecondFilePath.Get());
}

/// The path of the converted copy: beside the picked file, or in the directory for new files.
std::optional<std::string> CopyPath(std::string_view picked) {
  if (GlobalOutputDirectory.empty()) return InsertBeforeExtension(picked, kCopySuffix);
  const auto name = InsertBeforeExtension(picked.substr(picked.rfind('/') + 1), kCopySuffix);
  if (!name) return std::nullopt;
  return InDirectory(*name, GlobalOutputDirectory);
}

/// Whether the copy is there already. Another run may have made it, and may be reading it.
bool HasCopy(FileSystem& disk, const std::string& picked, int system, const std::string& path) {
  auto existing = disk.OpenSource(path, ReadMode::kRead);
  auto source = disk.OpenSource(picked, ReadMode::kRead);
  if (!existing || !source) return false;
  OutputFile copy(std::make_unique<ComparingSink>(std::move(existing)), path);
  return WriteCopy(*source, system, copy).empty();
}

/// Makes the converted copy at `path`; returns why that failed, or nothing.
std::string MakeCopy(RunFiles& files, FileSystem& disk, const std::string& picked, int system,
                     const std::string& path) {
  if (files.IsSameFile(path, picked)) return "it is the picked file itself";
  if (HasCopy(disk, picked, system, path)) return {};
  std::string error;
  if (IsPicked(files, path)) {
    error = "it is a picked file with other contents";
  } else {
    auto source = files.OpenSource(picked, ReadMode::kRead);
    auto sink = source ? files.CreateSink(path, CreateMode::kWrite) : nullptr;
    if (!sink) return std::strerror(errno);
    OutputFile copy(std::move(sink), path);
    error = WriteCopy(*source, system, copy);
  }
  if (!error.empty()) {
    PrintError("Could not write the file '" + path + "': " + error);
    return error;
  }
  if (HasCopy(disk, picked, system, path)) return {};  // made meanwhile
  error = files.Publish();
  if (!error.empty()) PrintError(error);
  return error;
}

}  // namespace

void CountLineBreaks(std::string_view bytes, char& last, LineBreaks& breaks) {
  if (bytes.empty()) return;
  std::uint64_t pairs = 0;
  std::uint64_t crs = 0;
  for (std::size_t cr = bytes.find('\r'); cr < bytes.size(); cr = bytes.find('\r', cr + 1)) {
    ++crs;
    pairs += bytes.substr(cr + 1).starts_with('\n') ? 1U : 0U;
  }
  // A CR that ended the piece before was counted as a lone one; the subtraction takes that back.
  if (last == '\r' && bytes.front() == '\n') ++pairs;
  breaks.crlf += pairs;
  breaks.lone_lf += CountByte(bytes, '\n') - pairs;
  breaks.lone_cr += crs - pairs;
  breaks.bytes += bytes.size();
  last = bytes.back();
}

int SystemOf(const LineBreaks& breaks) {
  if (breaks.crlf > breaks.lone_lf && breaks.crlf > breaks.lone_cr) return kWindowsSystem;
  if (breaks.lone_lf > breaks.lone_cr && breaks.lone_lf > breaks.crlf) return kLinuxSystem;
  return kMacSystem;
}

int ConvertLineEndings(PathBuffer& path) { return ConvertLineEndings(path, GlobalFiles()); }

int ConvertLineEndings(PathBuffer& path, FileSystem& disk) {
  RunFiles files(disk);
  const std::string picked = path.Get();
  if (picked.empty()) return Refuse("File ?");
  auto source = files.OpenSource(picked, ReadMode::kRead);
  if (!source) return Refuse("Could not open the file!");

  LineBreaks breaks;
  const std::optional<FileState> state = source->State();
  auto counting = std::make_unique<CountingSource>(std::move(source), breaks);
  std::optional<LineStream> lines;
  if (state && counting->Size() != 0 && counting->Size() <= disk.MostKept()) {
    lines.emplace(std::move(counting));
    if (!lines->LoadAll()) return 0;
  } else if (!ReadPieces(*counting, [](std::string_view) {})) {
    return 0;
  }
  if (breaks.bytes == 0) return 0;

  const int system = SystemOf(breaks);
  if (system == HostSystemCode) {
    // The operation that will read the file need not read it again.
    if (lines) disk.KeepLines(picked, *state, std::move(*lines));
    return 1;
  }
  lines.reset();
  const std::optional<std::string> copy = CopyPath(picked);
  const std::string why = copy ? MakeCopy(files, disk, picked, system, *copy) : kNoExtension;
  if (!why.empty()) {
    path.NoteUnconverted("the line breaks are those of " + std::string(SystemName(system)) +
                         ", and the file is read as it is, as no copy could be written" +
                         (copy ? " to '" + *copy + "'" : std::string()) + ": " + why);
    return copy ? 0 : Refuse("Could not open the file!");
  }
  ShowBox(std::string("It seems that the file was created by a different operating system (")
              .append(SystemName(system))
              .append("). Tarvel created a new ")
              .append(SystemName(HostSystemCode))
              .append(" file for security."),
          "File conversion");
  path.Set(*copy);
  return 1;
}

}  // namespace tarvel
