// SPDX-License-Identifier: MIT
// tarvel-measure: runs a command several times and prints one line of figures about it.
#include <fcntl.h>
#include <glob.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace tarvel::bench {
namespace {

constexpr char kUsage[] =
    "Usage: tarvel-measure [OPTION]... [--] COMMAND [ARGUMENT]...\n"
    "Runs COMMAND several times, its output going to /dev/null, and prints on one line: the exit\n"
    "status of the last run (124: stopped by the timeout), the medians of CPU and wall seconds,\n"
    "the largest peak memory in KiB, and the median CPU seconds of the floor and of COMMAND with\n"
    "another option, which run in turns with it (0: not asked for).\n"
    "  --runs N          how often (default 5)\n"
    "  --timeout SECONDS stop a run that takes longer; no further run follows\n"
    "  --enough SECONDS  no further run once the runs took this long together\n"
    "  --before COMMAND  a shell command to run, unmeasured, before each run\n"
    "  --reads FILE      a part of the floor: wc -l FILE; may be given several times\n"
    "  --writes PATTERN  another part: cat of the files that match, as COMMAND wrote them, into a\n"
    "                    file in the working directory\n"
    "  --also OPTION     the other option, put before the arguments of COMMAND\n"
    "  --output FILE     where standard output and standard error of the last run go\n";

struct Options {
  std::size_t runs = 5;
  unsigned timeout = 0;
  double enough = 1e9;
  std::string before;
  std::vector<std::string> reads;
  std::string writes;
  std::string also;
  std::string output = "/dev/null";
  std::vector<char*> command;  // ends with a null
};

struct Figures {
  int status = 0;
  double cpu = 0;  // of the program and of the system
  double wall = 0;
  long peak_kib = 0;
};

/// Where a command reads and writes.
struct Streams {
  const char* input = "/dev/null";
  const char* output = "/dev/null";
  const char* errors = "/dev/null";
};

double Seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

double Now() {
  timespec time{};
  clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void Redirect(const char* path, int flags, int descriptor) {
  const int opened = open(path, flags, 0666);
  if (opened < 0 || dup2(opened, descriptor) < 0) _exit(127);
  close(opened);
}

[[noreturn]] void Become(char* const* command, const Streams& streams) {
  setpgid(0, 0);  // so that a timeout can stop what the command started, too
  Redirect(streams.input, O_RDONLY, STDIN_FILENO);
  Redirect(streams.output, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
  Redirect(streams.errors, O_WRONLY | O_CREAT | O_APPEND, STDERR_FILENO);
  execvp(command[0], command);
  _exit(127);
}

pid_t running = 0;
volatile sig_atomic_t timed_out = 0;

void StopRunning(int /*signal*/) {
  timed_out = 1;
  kill(-running, SIGKILL);
}

/// Runs a command once and waits for it.
Figures RunOnce(char* const* command, const Streams& streams, unsigned timeout) {
  const double start = Now();
  running = fork();
  if (running < 0) {
    std::perror("tarvel-measure: fork");
    std::exit(1);
  }
  if (running == 0) Become(command, streams);
  timed_out = 0;
  if (timeout != 0) {
    signal(SIGALRM, StopRunning);
    alarm(timeout);
  }
  int status = 0;
  rusage usage{};
  while (wait4(running, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  alarm(0);
  Figures figures;
  figures.wall = Now() - start;
  figures.cpu = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
  figures.peak_kib = usage.ru_maxrss;
  figures.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  if (timed_out != 0) figures.status = 124;
  return figures;
}

/// CPU seconds of a command that must succeed; null pointers end its words. Its output goes to
/// `output`.
double CpuOf(std::vector<char*> command, const char* output = "/dev/null") {
  Streams streams;
  streams.output = output;
  const Figures figures = RunOnce(command.data(), streams, 0);
  if (figures.status == 0) return figures.cpu;
  std::fprintf(stderr, "tarvel-measure: %s failed\n", command[0]);
  std::exit(1);
}

/// CPU seconds of counting the lines of what is read and of copying what was written into another
/// file: an operation writes files, too.
double RunFloor(Options& options) {
  constexpr const char* kCopy = "tarvel-measure.copy";
  char wc[] = "wc", lines[] = "-l", cat[] = "cat";
  double sum = 0;
  for (std::string& file : options.reads) sum += CpuOf({wc, lines, file.data(), nullptr});
  glob_t written{};
  if (!options.writes.empty() && glob(options.writes.c_str(), GLOB_BRACE, nullptr, &written) == 0) {
    std::vector<char*> command{cat};
    command.insert(command.end(), written.gl_pathv, written.gl_pathv + written.gl_pathc);
    command.push_back(nullptr);
    sum += CpuOf(command, kCopy);
    unlink(kCopy);
  }
  globfree(&written);
  return sum;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

/// Reads the options; false when they are wrong.
bool Parse(int argc, char** argv, Options& options) {
  int next = 1;
  for (; next < argc && argv[next][0] == '-'; next += 2) {
    const std::string_view option = argv[next];
    if (option == "--") {
      ++next;
      break;
    }
    if (next + 1 == argc) return false;
    const char* value = argv[next + 1];
    if (option == "--runs") {
      options.runs = static_cast<std::size_t>(std::max(1, std::atoi(value)));
    } else if (option == "--timeout") {
      options.timeout = static_cast<unsigned>(std::atoi(value));
    } else if (option == "--enough") {
      options.enough = std::atof(value);
    } else if (option == "--before") {
      options.before = value;
    } else if (option == "--reads") {
      options.reads.emplace_back(value);
    } else if (option == "--writes") {
      options.writes = value;
    } else if (option == "--also") {
      options.also = value;
    } else if (option == "--output") {
      options.output = value;
    } else {
      return false;
    }
  }
  options.command.assign(argv + next, argv + argc);
  options.command.push_back(nullptr);
  return next < argc;
}

int Main(int argc, char** argv) {
  Options options;
  if (!Parse(argc, argv, options)) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  setenv("LC_ALL", "C", 1);
  const Streams streams{"/dev/null", options.output.c_str(), options.output.c_str()};
  Figures last;
  std::vector<double> cpu, wall, floor, other;
  std::vector<char*> with_other = options.command;
  with_other.insert(with_other.begin() + 1, options.also.data());
  const auto clear = [&] {
    if (!options.before.empty() && std::system(options.before.c_str()) != 0) std::exit(1);
  };
  long peak = 0;
  double spent = 0;
  while (cpu.size() < options.runs && spent < options.enough && last.status != 124) {
    clear();
    if (!options.also.empty()) {
      other.push_back(RunOnce(with_other.data(), streams, options.timeout).cpu);
      clear();
    }
    last = RunOnce(options.command.data(), streams, options.timeout);
    cpu.push_back(last.cpu);
    wall.push_back(last.wall);
    peak = std::max(peak, last.peak_kib);
    spent += last.wall;
    floor.push_back(RunFloor(options));
  }
  std::printf("%d %.6f %.6f %ld %.6f %.6f\n", last.status, Median(cpu), Median(wall), peak,
              Median(floor), other.empty() ? 0.0 : Median(other));
  return 0;
}

}  // namespace
}  // namespace tarvel::bench

int main(int argc, char** argv) { return tarvel::bench::Main(argc, argv); }
