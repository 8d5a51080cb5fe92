// A call that meets errors of the system sets its outputs, and leaves the state of before or after
// the call, whole.
#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/fault/subject.h"
#include "tests/support/interpose.h"

namespace {

class Fault : public StatefulBlock {
 protected:
  // Calls `run` with every shape of the file.
  void each_shape(const std::function<void(Subject&, Shape)>& run) {
    for (unsigned i = 0; i < 2 * std::size(kShapes); ++i) {
      const Shape shape = kShapes[i / 2];
      SCOPED_TRACE(testing::Message() << "shape " << static_cast<int>(shape));
      Subject subject(*GetParam(), i);
      subject.arrange(shape);
      run(subject, shape);
    }
  }
};

void call(Subject& subject, const std::function<int(Call, std::size_t&)>& meddling) {
  subject.reset();
  meddle = meddling;
  subject.call();
  meddle = nullptr;
}

TEST_P(Fault, OneAtEverySystemCall) {
  each_shape([](Subject& subject, Shape) {
    for (const int error : {EIO, ENOSPC, EMFILE, EINTR, 0, -1}) {
      for (int at = 1;; ++at) {
        int calls = 0;
        Call hit{};
        call(subject, [&](Call call, std::size_t& size) {
          if (++calls != at) return 0;
          hit = call;
          if (error <= 0 && size > 1) size = error == 0 ? 1 : size - size / 3;  // a short one
          return std::max(error, 0);
        });
        if (calls < at) {
          EXPECT_GE(at, 5);  // open, read or open, pwrite, close
          break;
        }
        SCOPED_TRACE(testing::Message() << "call " << at << ", errno " << error);
        EXPECT_TRUE(subject.outputs_set());
        const bool passes = error <= 0 || error == EINTR || hit == Call::kClose;
        const bool blind = !passes && (hit == Call::kOpen || hit == Call::kRead);
        if (!blind) {
          EXPECT_TRUE(subject.outputs_right());
        }
        if (passes)
          EXPECT_TRUE(subject.state() == subject.after);
        else if (blind)
          EXPECT_TRUE(subject.state() == subject.before);
        else
          EXPECT_LE(subject.verdict(), Verdict::kAfter);
      }
    }
  });
}

TEST_P(Fault, EveryCallInterruptedAndInPieces) {
  each_shape([](Subject& subject, Shape) {
    int calls = 0;
    call(subject, [&](Call, std::size_t& size) {
      size = std::min<std::size_t>(size, 1 + static_cast<std::size_t>(calls) % 5);
      return ++calls % 2 == 1 ? EINTR : 0;
    });
    EXPECT_TRUE(subject.outputs_right());
    EXPECT_TRUE(subject.state() == subject.after);
  });
}

TEST_P(Fault, DiskFullAfterAnyByte) {
  each_shape([](Subject& subject, Shape) {
    for (std::size_t bytes = 1; bytes < subject.after->size(); bytes += bytes % 96 < 94 ? 19 : 1) {
      int writes = 0, interrupted = 0;
      call(subject, [&](Call call, std::size_t& size) {
        if (call == Call::kTruncate) return ++interrupted == 1 ? EINTR : 0;
        if (call != Call::kWrite) return 0;
        if (++writes == 1) size = bytes;
        return writes == 2 ? ENOSPC : writes == 3 ? EINTR : 0;
      });
      EXPECT_GE(writes, 2);
      EXPECT_TRUE(subject.outputs_right());
      EXPECT_TRUE(subject.state() == subject.before) << bytes;
    }
  });
}

// The signal of a file that grows beyond the limit would end this program.
TEST_P(Fault, FileSizeLimit) {
  each_shape([](Subject& subject, Shape shape) {
    const std::size_t size = std::max(subject.before.value_or("").size(), subject.after->size());
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    for (std::size_t bytes = 1; bytes < size; bytes += 47) {
      subject.reset();
      const rlimit limit{bytes, old.rlim_max};
      setrlimit(RLIMIT_FSIZE, &limit);
      subject.call();
      setrlimit(RLIMIT_FSIZE, &old);
      EXPECT_TRUE(subject.outputs_right());
      EXPECT_LE(subject.verdict(), Verdict::kAfter) << bytes;
      if (shape == Shape::kUsual) {
        EXPECT_TRUE(subject.state() == subject.before);
      }
    }
  });
}

TEST_P(Fault, AnotherOwnersFile) {
  each_shape([](Subject& subject, Shape) {
    chmod(subject.rig.directory().c_str(), 0755);
    for (const mode_t mode : {0444u, 0000u, 0666u}) {
      subject.reset();
      chmod(subject.rig.file().c_str(), mode);
      EXPECT_EQ(in_child([&] {
                  if (geteuid() == 0 && setuid(65534) != 0) return kSkipped;
                  subject.call();
                  const bool readable = mode != 0 || !subject.before;
                  return !subject.outputs_set() || (readable && !subject.outputs_right()) ? 1 : 0;
                }),
                0);
      const bool writable = mode == 0666 && subject.before;
      EXPECT_TRUE(subject.state() == (writable ? subject.after : subject.before));
    }
  });
}

TEST_P(Fault, DirectoryRemovedAndPutBack) {
  Subject subject(*GetParam(), 7);
  subject.arrange(Shape::kUsual);
  const std::filesystem::path directory = subject.rig.directory(), away = directory.string() + "-";
  subject.reset();
  std::filesystem::rename(directory, away);
  subject.call();
  EXPECT_TRUE(subject.outputs_set());
  EXPECT_FALSE(std::filesystem::exists(directory));
  std::filesystem::rename(away, directory);
  EXPECT_TRUE(subject.state() == subject.before);
  subject.reset();
  subject.call();
  EXPECT_TRUE(subject.outputs_right());
  EXPECT_TRUE(subject.state() == subject.after);
}

// A full file system, and one that is mounted read-only.
int on_small_file_system(Subject& subject) {
  const char* directory = subject.rig.directory().c_str();
  if (unshare(CLONE_NEWNS) != 0 || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, "") != 0 ||
      mount("tmpfs", directory, "tmpfs", 0, "size=64k") != 0)
    return kSkipped;
  subject.reset();
  const std::filesystem::path filler = subject.rig.directory() / "filler";
  const int file = open(filler.c_str(), O_WRONLY | O_CREAT, 0644);
  const std::string page(4096, 'x');
  while (write(file, page.data(), page.size()) > 0) {
  }
  if (errno != ENOSPC) return 1;
  close(file);
  subject.call();
  if (!subject.outputs_right() || subject.verdict() > Verdict::kAfter) return 2;
  if (!subject.before && subject.state()) return 3;
  unlink(filler.c_str());
  subject.reset();
  if (mount("tmpfs", directory, "tmpfs", MS_REMOUNT | MS_RDONLY, "") != 0) return 4;
  subject.call();
  if (!subject.outputs_right() || subject.state() != subject.before) return 5;
  if (mount("tmpfs", directory, "tmpfs", MS_REMOUNT, "") != 0) return 6;
  subject.reset();
  subject.call();
  return subject.outputs_right() && subject.state() == subject.after ? 0 : 7;
}

TEST_P(Fault, FileSystemFullOrReadOnly) {
  int skipped = 0;
  each_shape([&](Subject& subject, Shape) {
    const int result = in_child([&] { return on_small_file_system(subject); });
    if (result == kSkipped)
      ++skipped;
    else
      EXPECT_EQ(result, 0);
  });
  if (skipped > 0) GTEST_SKIP() << "needs the right to mount a file system";
}

FOR_STATEFUL_BLOCKS(Fault);

}  // namespace
