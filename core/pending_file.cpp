// SPDX-License-Identifier: MIT
#include "core/pending_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <utility>

#include "core/descriptor.h"
#include "core/file_places.h"
#include "core/file_sink.h"

namespace tarvel {

namespace {

constexpr int kMostNames = 1000;  // of temporary files for one output at a time
constexpr int kStaleNames = 4;    // those that are searched for before a run
constexpr mode_t kModeBits = 07777;
constexpr std::string_view kTemporaryMark = ".tarvel-";
constexpr std::size_t kMostNameBytes = 200;  // that are taken over from the output's name

/// The names that a signal has to remove. A run has fewer outputs than there is room for; what
/// finds none is left to the next run.
std::array<std::atomic<const char*>, 16> temporary_names{};

/// The n-th of the names that a file may have until it gets the one of `path`.
std::string TemporaryName(const std::string& path, int n) {
  const std::size_t slash = path.rfind('/');
  const std::size_t begin = slash == std::string::npos ? 0 : slash + 1;
  return path.substr(0, begin)
      .append(".")
      .append(path.substr(begin, kMostNameBytes))
      .append(kTemporaryMark)
      .append(std::to_string(n));
}

bool IsSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Whether `name` still names the open file.
bool StillNames(const std::string& name, int descriptor) {
  struct stat named {};
  struct stat opened {};
  return lstat(name.c_str(), &named) == 0 && fstat(descriptor, &opened) == 0 &&
         IsSameFile(named, opened);
}

/// Removes a temporary file whose run has died: a living one holds its lock. True when the name is
/// free now.
bool RemoveStale(const std::string& name) {
  const Descriptor file(open(name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!file.IsOpen()) return errno == ENOENT;
  struct stat status {};
  const bool stale = fstat(file.Number(), &status) == 0 && S_ISREG(status.st_mode) &&
                     flock(file.Number(), LOCK_EX | LOCK_NB) == 0;
  // Under the lock nobody renames or removes the file, so that its name cannot become another's.
  return stale && StillNames(name, file.Number()) && unlink(name.c_str()) == 0;
}

/// Calls `take` with one temporary name after the other until it succeeds with a name that was
/// free; returns the name, or an empty one with the reason in errno.
template <typename Take>
std::string TakeName(const std::string& path, const Take& take) {
  for (int n = 0; n < kMostNames; ++n) {
    const std::string name = TemporaryName(path, n);
    for (int tries = 0; tries < 2; ++tries) {
      if (take(name)) return name;
      if (errno != EEXIST) return {};
      if (!RemoveStale(name)) break;
    }
  }
  errno = EEXIST;
  return {};
}

/// Takes a new file's writes, which all fail: there is no room for it.
class FullSink final : public ByteSink {
 public:
  explicit FullSink(int error) : error_(std::strerror(error)) {}
  std::string Write(std::string_view) override { return error_; }
  std::string Close() override { return error_; }

 private:
  std::string error_;
};

class PendingFile final : public FileSink {
 public:
  /// `name` is empty for a file that has none yet.
  PendingFile(Descriptor descriptor, std::string path, std::string name)
      : FileSink(std::move(descriptor)), path_(std::move(path)), name_(std::move(name)) {
    Register(true);
  }
  PendingFile(const PendingFile&) = delete;
  PendingFile& operator=(const PendingFile&) = delete;
  ~PendingFile() override { RemoveName(); }

  /// The descriptor stays open, as it is all that a file without a name is known by. Closing a copy
  /// of it reports what the file system has held back.
  std::string Close() override {
    const int copy = dup(Number());
    return copy < 0 || close(copy) == 0 || errno == EINTR ? std::string() : std::strerror(errno);
  }

  std::string PendingPath() const override { return name_.empty() ? OpenPath() : name_; }

  std::string MakeReady() override {
    if (!name_.empty()) return {};
    const std::string from = OpenPath();
    name_ = TakeName(path_, [&](const std::string& name) {
      return linkat(AT_FDCWD, from.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
    });
    if (name_.empty()) return std::strerror(errno);
    Register(true);
    return {};
  }

  std::string Publish() override {
    if (rename(name_.c_str(), path_.c_str()) != 0) return std::strerror(errno);
    Register(false);
    name_.clear();
    return {};
  }

 private:
  std::string OpenPath() const { return "/proc/self/fd/" + std::to_string(Number()); }

  void RemoveName() {
    if (name_.empty()) return;
    unlink(name_.c_str());
    Register(false);
  }

  /// Notes the name for signals, or takes it out.
  void Register(bool in) {
    if (name_.empty()) return;
    const char* const name = name_.c_str();
    for (auto& slot : temporary_names) {
      const char* expected = in ? nullptr : name;
      if (slot.compare_exchange_strong(expected, in ? name : nullptr)) return;
    }
  }

  std::string path_;
  std::string name_;
};

/// A file that is written under its name. It is truncated at the first write or by `Close`: until
/// then the run may still find that it reads the file, and drop this.
class FileInPlace final : public FileSink {
 public:
  explicit FileInPlace(Descriptor descriptor) : FileSink(std::move(descriptor)) {}
  std::string Write(std::string_view bytes) override {
    std::string error = Truncate();
    return error.empty() ? FileSink::Write(bytes) : error;
  }
  std::string Close() override {
    const std::string error = Truncate();
    const std::string other = FileSink::Close();
    return error.empty() ? other : error;
  }

 private:
  std::string Truncate() {
    struct stat status {};
    if (std::exchange(is_truncated_, true)) return {};
    if (fstat(Number(), &status) == 0 && !S_ISREG(status.st_mode)) return {};
    return ftruncate(Number(), 0) == 0 ? std::string() : std::strerror(errno);
  }

  bool is_truncated_ = false;
};

/// What has to be known of the file that a new one will replace.
struct Target {
  bool exists = false;
  bool in_place = false;  // a rename would change more than its bytes
  struct stat status {};
};

/// Whether the directory lets this user replace a file of this owner: where it has the sticky bit,
/// only the owners of the two may.
bool MayReplace(const struct stat& file, const struct stat& directory) {
  const uid_t user = geteuid();
  return (directory.st_mode & S_ISVTX) == 0 || user == 0 || user == file.st_uid ||
         user == directory.st_uid;
}

Target LookAt(const std::string& path) {
  Target target;
  target.exists = lstat(path.c_str(), &target.status) == 0;
  if (!target.exists) return target;
  struct stat directory {};
  struct statx more {};
  target.in_place =
      !S_ISREG(target.status.st_mode) || target.status.st_nlink != 1 ||
      stat(DirectoryOfFile(path).c_str(), &directory) != 0 ||
      !MayReplace(target.status, directory) ||
      (statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &more) == 0 &&
       (more.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0);
  return target;
}

/// Null for a pipe that nobody reads, too: "w+" would open it, and lose what is written.
std::unique_ptr<ByteSink> CreateInPlace(const std::string& path, int flags) {
  struct stat status {};
  const bool is_pipe = stat(path.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
  if (is_pipe) flags = O_WRONLY | O_NONBLOCK;
  Descriptor file(open(path.c_str(), flags | O_CREAT | O_CLOEXEC, kNewFileMode));
  if (!file.IsOpen()) return nullptr;
  if (is_pipe) (void)fcntl(file.Number(), F_SETFL, O_WRONLY);
  return std::make_unique<FileInPlace>(std::move(file));
}

/// Whether emptying an existing file would work; nothing of it is changed.
bool OpensForWriting(const std::string& path, int flags) {
  return Descriptor(open(path.c_str(), flags | O_CREAT | O_CLOEXEC, kNewFileMode)).IsOpen();
}

/// Gives a new file the owner and the mode of the one that it will replace.
bool TakeOver(int descriptor, const struct stat& target) {
  struct stat made {};
  if (fstat(descriptor, &made) != 0) return false;
  const bool owned = made.st_uid == target.st_uid && made.st_gid == target.st_gid;
  if (!owned && fchown(descriptor, target.st_uid, target.st_gid) != 0) return false;
  return fchmod(descriptor, target.st_mode & kModeBits) == 0;
}

/// An open file without a name, locked; none where the file system has none, or none that could get
/// a name later.
Descriptor OpenUnnamed(const std::string& path, int flags) {
  if (access("/proc/self/fd", X_OK) != 0) return Descriptor();
  Descriptor file(open(DirectoryOfFile(path).c_str(), flags | O_TMPFILE | O_CLOEXEC, kNewFileMode));
  if (file.IsOpen()) flock(file.Number(), LOCK_EX | LOCK_NB);
  return file;
}

/// An open file under a temporary name, which is put into `name`, locked.
Descriptor OpenNamed(const std::string& path, int flags, std::string& name) {
  Descriptor file;
  name = TakeName(path, [&](const std::string& wanted) {
    file = Descriptor(open(wanted.c_str(), flags | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
    if (!file.IsOpen()) return false;
    flock(file.Number(), LOCK_EX);
    // Before it was locked another run may have taken it for stale.
    if (StillNames(wanted, file.Number())) return true;
    errno = EEXIST;
    return false;
  });
  return name.empty() ? Descriptor() : std::move(file);
}

/// Locks what is open, if that is possible within a fifth of a second.
void WaitForLock(int descriptor) {
  constexpr int kTries = 200;
  constexpr useconds_t kPause = 1000;
  for (int i = 0; i < kTries; ++i) {
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) return;
    usleep(kPause);
  }
}

}  // namespace

std::unique_ptr<ByteSink> CreatePendingFile(const std::string& path, CreateMode mode) {
  const int flags = mode == CreateMode::kWriteRead ? O_RDWR : O_WRONLY;
  const Target target = LookAt(path);
  if (!target.exists && errno != ENOENT) return nullptr;
  if (target.in_place) return CreateInPlace(path, flags);
  if (target.exists && !OpensForWriting(path, flags)) return nullptr;

  for (int n = 0; n < kStaleNames; ++n) RemoveStale(TemporaryName(path, n));
  std::string name;
  Descriptor file = OpenUnnamed(path, flags);
  if (!file.IsOpen()) file = OpenNamed(path, flags, name);
  if (!file.IsOpen()) {
    const int error = errno;
    if (!target.exists) return nullptr;
    if (error == ENOSPC || error == EDQUOT) return std::make_unique<FullSink>(error);
    return CreateInPlace(path, flags);
  }
  const int number = file.Number();
  auto pending = std::make_unique<PendingFile>(std::move(file), path, std::move(name));
  if (target.exists && !TakeOver(number, target.status)) return CreateInPlace(path, flags);
  return pending;
}

bool HasTemporaryName(const std::string& path) {
  const std::string name = path.substr(path.rfind('/') + 1);
  const std::size_t mark = name.rfind(kTemporaryMark);
  if (!name.starts_with('.') || mark == std::string::npos) return false;
  const std::string_view number = std::string_view(name).substr(mark + kTemporaryMark.size());
  return !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
}

void RemoveTemporaryFiles() {
  for (auto& slot : temporary_names) {
    if (const char* const name = slot.load()) unlink(name);
  }
}

PublishGuard::PublishGuard() {
  sigset_t ends;
  sigemptyset(&ends);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) sigaddset(&ends, signal);
  pthread_sigmask(SIG_BLOCK, &ends, &signals_);
}

// The destructor runs also if there is no memory for the directories.
PublishGuard::PublishGuard(const std::set<std::string>& directories) : PublishGuard() {
  for (const std::string& directory : directories) {
    Descriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!opened.IsOpen() || fstat(opened.Number(), &status) != 0) continue;
    locked_.try_emplace({status.st_dev, status.st_ino}, std::move(opened));
  }
  for (const auto& [directory, descriptor] : locked_) WaitForLock(descriptor.Number());
}

PublishGuard::~PublishGuard() {
  locked_.clear();
  pthread_sigmask(SIG_SETMASK, &signals_, nullptr);
}

}  // namespace tarvel
