// SPDX-License-Identifier: MIT
#include "core/file_sink.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <string>

#include "tests/support/failing_calls.h"

namespace tarvel {
namespace {

TEST(FileSink, WritesAllBytesOfPartialWrites) {
  int ends[2] = {};
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    close(ends[0]);
    FileSink sink{Descriptor(ends[1])};
    const bool good = sink.Write(std::string(300000, 'x')).empty() && sink.Close().empty();
    _exit(good ? 0 : 1);
  }
  close(ends[1]);
  std::size_t got = 0;
  std::string buffer(1000, ' ');
  for (ssize_t size = 1; size > 0; got += static_cast<std::size_t>(size)) {
    size = read(ends[0], buffer.data(), buffer.size());
    ASSERT_GE(size, 0);
  }
  close(ends[0]);
  EXPECT_EQ(got, 300000U);
}

TEST(FileSink, GivesTheReasonOfAFailure) {
  FileSink full(Descriptor(open("/dev/full", O_WRONLY)));
  EXPECT_EQ(full.Write(""), "");
  EXPECT_EQ(full.Write("x"), "No space left on device");
  FileSink readable(Descriptor(open("/dev/null", O_RDONLY)));
  EXPECT_EQ(readable.Write("x"), "Bad file descriptor");
  EXPECT_EQ(readable.Close(), "");
}

TEST(FileSink, GoesOnAfterASignalAndNotAfterAFailure) {
  using testing::FailingCall;
  FileSink sink(Descriptor(open("/dev/null", O_WRONLY)));
  {
    const FailingCall broken_off("write", EINTR);
    EXPECT_EQ(sink.Write("x"), "");
    EXPECT_TRUE(broken_off.Failed());
  }
  {
    const FailingCall nothing_taken("write", 0);
    EXPECT_EQ(sink.Write("x"), "Input/output error") << "it would never end";
  }
  {
    const FailingCall broken_off("close", EINTR);
    EXPECT_EQ(sink.Close(), "");
  }
  FileSink other(Descriptor(open("/dev/null", O_WRONLY)));
  const FailingCall full("close", ENOSPC);
  EXPECT_EQ(other.Close(), "No space left on device");
}

}  // namespace
}  // namespace tarvel
