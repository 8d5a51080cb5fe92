#include "frame/state_file.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/resource.h>
#include <unistd.h>

namespace scanblocks {
namespace {

// O_NOATIME spares the kernel the access time of a file that every call changes anyhow. Only the
// owner may ask for that: for others the kernel refuses, and the file is opened without.
int open_file(const char* path, int flags) {
  for (;;) {
    const int file = open(path, flags | O_CLOEXEC, 0666);
    if (file >= 0) return file;
    if (errno == EPERM && (flags & O_NOATIME) != 0)
      flags &= ~O_NOATIME;
    else if (errno != EINTR)
      return file;
  }
}

// Appends a header text to a path that has room for the longest: copying that many bytes always
// costs less than asking for the length first.
char* append(char* end, const Pin& pin) {
  constexpr std::size_t kLimit = sizeof pin.Text - 1;
  memcpy(end, pin.Text, kLimit);
  return end + strnlen(pin.Text, kLimit);
}

void parse_value(const char* text, const KeySlot& key, void* members) {
  switch (key.kind) {
    case Kind::kNumber:
      set<Number>(members, key.offset, parse_fixed(text));
      break;
    case Kind::kSingle:
      set<float>(members, key.offset, to_single(parse_fixed(text)));
      break;
    case Kind::kFlag:
    case Kind::kExactFlag:
      set<Flag>(members, key.offset, {parse_int32(text) != 0});
      break;
    case Kind::kInteger:
    case Kind::kState:
    case Kind::kCount:
      set<std::int32_t>(members, key.offset, parse_int32(text));
      break;
    case Kind::kUnsigned:
      set<std::uint32_t>(members, key.offset, static_cast<std::uint32_t>(parse_int64(text)));
      break;
    case Kind::kUnsigned64:
    case Kind::kSigned64:
      set<std::int64_t>(members, key.offset, parse_int64(text));
      break;
  }
}

void format_value(const KeySlot& key, const void* members, char* text) {
  switch (key.kind) {
    case Kind::kNumber:
      format_fixed(get<Number>(members, key.offset).value, text);
      break;
    case Kind::kSingle:
      format_fixed(to_double(get<float>(members, key.offset)), text);
      break;
    case Kind::kFlag:
    case Kind::kExactFlag:
      *text = get<Flag>(members, key.offset) ? '1' : '0';
      break;
    case Kind::kInteger:
    case Kind::kState:
      format_signed(get<std::int32_t>(members, key.offset), text);
      break;
    case Kind::kCount:
    case Kind::kUnsigned:
      format_unsigned(get<std::uint32_t>(members, key.offset), text);
      break;
    case Kind::kUnsigned64:
    case Kind::kSigned64:
      format_unsigned(get<std::uint64_t>(members, key.offset), text);
      break;
  }
}

// The slot of a record's key, which may lack its NUL or have anything behind it. `expected` is the
// place of the slot in a file written by this block, padded with zeros like the slot's name.
const KeySlot* find(const char* record, std::span<const KeySlot> keys, std::size_t expected) {
  constexpr std::size_t kHead = 16;  // compared apart: both pieces are words, not calls of memcmp
  constexpr std::size_t kTail = sizeof(KeySlot::name) - kHead;
  if (expected < keys.size() && memcmp(record, keys[expected].name, kHead) == 0 &&
      memcmp(record + kHead, keys[expected].name + kHead, kTail) == 0)
    return &keys[expected];
  for (const KeySlot& key : keys)
    if (strncmp(record, key.name, kKeySize) == 0) return &key;
  return nullptr;
}

void parse_records(const char* bytes, std::size_t size, std::span<const KeySlot> keys,
                   void* members) {
  for (std::size_t i = 0; (i + 1) * kRecordSize <= size; ++i) {
    const char* record = bytes + i * kRecordSize;
    const KeySlot* key = find(record, keys, i);
    if (key != nullptr && key->read_back) parse_value(record + kKeySize, *key, members);
  }
}

// The file may not grow to `size`: writing behind the limit would raise SIGXFSZ.
bool beyond_limit(std::size_t size) {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) == 0 && size > limit.rlim_cur;
}

// Writes all bytes at a place of the file; returns how many went in before an error, if any.
std::size_t write_at(int file, const char* bytes, std::size_t size, std::size_t place) {
  std::size_t written = 0;
  while (written < size) {
    const ssize_t count =
        pwrite(file, bytes + written, size - written, static_cast<off_t>(place + written));
    if (count > 0) {
      written += static_cast<std::size_t>(count);
      // A file-size limit shows as a short write.
      if (written < size && beyond_limit(place + size)) break;
    } else if (count == 0 || errno != EINTR) {
      break;
    }
  }
  return written;
}

// Nothing can be done where this fails.
void cut(int file, std::size_t size) {
  while (ftruncate(file, static_cast<off_t>(size)) < 0 && errno == EINTR) {
  }
}

}  // namespace

StateFile::StateFile(const Pin* pins, std::string_view prefix) {
  char* end = append(path_, pins[SCANBLOCKS_STATE_DIR]);
  memcpy(end, prefix.data(), prefix.size());
  end = append(end + prefix.size(), pins[SCANBLOCKS_GROUP_TAG]);
  *end++ = '_';
  end = append(end, pins[SCANBLOCKS_INSTANCE_TAG]);
  memcpy(end, ".dat", sizeof ".dat");

  file_ = open_file(path_, O_RDWR | O_NOATIME);
  if (file_ >= 0) {
    writable_ = true;
  } else if (errno == ENOENT) {
    absent_ = true;
  } else {  // a read-only file or file system, a directory, ...
    file_ = open_file(path_, O_RDONLY | O_NOATIME);
  }
}

StateFile::~StateFile() {
  if (file_ >= 0) close(file_);
}

void StateFile::load(std::span<const KeySlot> keys, void* members) {
  const std::size_t usual = keys.size() * kRecordSize;
  char* chunk = old_;  // the first chunk is kept; later ones, of a longer file, pass through new_
  std::size_t held = 0;
  for (;;) {
    const ssize_t count = read(file_, chunk + held, kCapacity - held);
    if (count < 0) {
      if (errno == EINTR) continue;
      writable_ = false;
      break;
    }
    held += static_cast<std::size_t>(count);
    size_ += static_cast<std::size_t>(count);
    // A file that one reading finds to hold just the usual records ends there: a reading that
    // falls short of the end of a file does not stop at just this place.
    if (count == 0 || (size_ == usual && static_cast<std::size_t>(count) == usual)) break;
    if (held == kCapacity) {
      parse_records(chunk, held, keys, members);
      chunk = new_;
      held = 0;
    }
  }
  parse_records(chunk, held, keys, members);
}

void StateFile::save(std::span<const KeySlot> keys, const void* members) {
  if (absent_) {
    file_ = open_file(path_, O_WRONLY | O_CREAT);
    writable_ = file_ >= 0;
  }
  if (!writable_) return;

  const std::size_t usual = keys.size() * kRecordSize;
  // One write within a page of the file is done whole or not at all when the process is killed. The
  // end of a longer file goes with it, as empty records, so that it does not count before it is cut
  // off.
  const std::size_t length = size_ <= usual ? usual : size_ < kCapacity ? size_ : kCapacity;
  memset(new_, 0, length);
  char* record = new_;
  for (const KeySlot& key : keys) {
    memcpy(record, key.name, sizeof key.name);
    format_value(key, members, record + kKeySize);
    record += kRecordSize;
  }

  if (size_ > length && !write_behind(usual)) return;
  const std::size_t written = write_at(file_, new_, length, 0);
  if (written == length) {
    if (size_ > usual) cut(file_, usual);
  } else if (size_ <= length) {
    undo(written);
  }
}

// Puts the records behind a file that is too long to be overwritten in one write: being the last,
// they count whatever becomes of those before.
bool StateFile::write_behind(std::size_t usual) {
  constexpr std::size_t kPage = 4096;
  std::size_t place = (size_ + kRecordSize - 1) / kRecordSize * kRecordSize;
  if (place % kPage + usual > kPage)  // the next record that begins in the next page
    place += (kPage - place % kPage + kRecordSize - 1) / kRecordSize * kRecordSize;
  if (beyond_limit(place + usual)) return false;
  const bool whole = write_at(file_, new_, usual, place) == usual;
  if (!whole) cut(file_, size_);
  return whole;
}

// Brings back what a write that failed half way has overwritten.
void StateFile::undo(std::size_t written) {
  if (absent_) {
    unlink(path_);
  } else if (written > 0) {
    write_at(file_, old_, written < size_ ? written : size_, 0);
    if (written > size_) cut(file_, size_);
  }
}

}  // namespace scanblocks
