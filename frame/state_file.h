// The memory of a block instance: one small file of 96-byte records, reread and overwritten in
// place at every call. docs/state-files.md describes the format and what each damage leads to.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "frame/field.h"
#include "frame/text.h"

namespace scanblocks {

inline constexpr std::size_t kKeySize = 32;
inline constexpr std::size_t kRecordSize = kKeySize + kTextSize;
inline constexpr std::size_t kMaxKeys = 13;

// One call's access to the file: open, load, save, close.
class StateFile {
 public:
  // Opens StateDir + prefix + GroupTag + "_" + InstanceTag + ".dat" of the header pins.
  StateFile(const Pin* pins, std::string_view prefix);
  ~StateFile();
  StateFile(const StateFile&) = delete;
  StateFile& operator=(const StateFile&) = delete;

  // False where the file could not be opened for reading: the first call of an instance.
  bool opened() const { return file_ >= 0; }

  // Assigns every known key that the file holds to its member; the last occurrence counts.
  void load(std::span<const KeySlot> keys, void* members);

  // Makes the file exactly the records of `keys`, in their order. What cannot be read or written
  // stays as it was; nothing is reported.
  void save(std::span<const KeySlot> keys, const void* members);

 private:
  // One record more than any block has: a file that holds just its keys is seen to end.
  static constexpr std::size_t kCapacity = (kMaxKeys + 1) * kRecordSize;
  // Three header texts of 63 characters, the longest prefix, "_", ".dat" and a NUL.
  static constexpr std::size_t kPathSize = 3 * (sizeof(Pin::Text) - 1) + 24;

  bool write_behind(std::size_t usual);
  void undo(std::size_t written);

  char path_[kPathSize];
  int file_ = -1;
  bool absent_ = false;             // there is no file: it may be created
  bool writable_ = false;           // what the file held was read whole, and it may be overwritten
  std::size_t size_ = 0;            // bytes in the file
  alignas(8) char old_[kCapacity];  // the head of the file as it was read
  alignas(8) char new_[kCapacity];  // the image to write
};

}  // namespace scanblocks
