#include "host/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "host/number.h"

namespace scanhost {
namespace {
constexpr std::size_t kBufferSize = 65536;
}

Trace::Trace(const TraceSpec& spec, const std::vector<const double*>& sources,
             const std::string& path, Flush flush_mode)
    : sources_(sources),
      path_(path),
      every_(spec.every),
      mode_(flush_mode),
      row_size_(kTimeSize + spec.columns.size() * (1 + kNumberSize) + 1) {
  // To open a pipe that nobody reads would wait for ever.
  file_ = path == "-"
              ? dup(STDOUT_FILENO)
              : open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
  if (file_ < 0) throw Failure("trace " + path + ": " + std::strerror(errno));
  if (path != "-") fcntl(file_, F_SETFL, fcntl(file_, F_GETFL) & ~O_NONBLOCK);
  buffer_ = "time";
  for (const TraceSpec::Column& column : spec.columns) buffer_ += "," + column.name;
  buffer_ += "\n";
  flush();
  buffer_.reserve(kBufferSize + row_size_);
}

Trace::~Trace() {
  flush();
  close(file_);
}

void Trace::record(const Moment& moment) {
  if (moment.elapsed < next_ || failed_) return;
  next_ += every_ * ((moment.elapsed - next_) / every_ + 1);
  std::size_t end = buffer_.size();
  buffer_.resize(end + row_size_);
  end += format_time(moment.now, &buffer_[end]);
  for (const double* source : sources_) {
    buffer_[end++] = ',';
    end += format_number(*source, &buffer_[end]);
  }
  buffer_[end++] = '\n';
  buffer_.resize(end);
  if (mode_ == Flush::kEachRow || buffer_.size() >= kBufferSize) flush();
}

void Trace::flush() {
  std::size_t done = 0;
  while (done < buffer_.size() && !failed_) {
    const ssize_t count = write(file_, buffer_.data() + done, buffer_.size() - done);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      const int error = errno;
      failed_ = true;
      cut_row(done);
      std::fprintf(stderr, "trace %s: %s; the trace ends here, the scan goes on\n", path_.c_str(),
                   std::strerror(error));
    }
  }
  buffer_.clear();
}

// A full disk takes a part of a row, which no reader understands.
void Trace::cut_row(std::size_t done) {
  const std::size_t whole = done == 0 ? 0 : buffer_.rfind('\n', done - 1) + 1;
  if (done == whole) return;
  const off_t end = lseek(file_, 0, SEEK_CUR);  // fails for a pipe
  if (end >= 0 && ftruncate(file_, end - static_cast<off_t>(done - whole)) < 0) return;
}

}  // namespace scanhost
