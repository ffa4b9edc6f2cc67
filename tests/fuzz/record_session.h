// What the fuzz targets of the record files share: the parts of the input, and a session
// with one file that compares every operation with what a simple reading of the same
// bytes expects.
//
// The input's first byte chooses the site, and the second the date of a purchase. An odd
// byte takes it from a record of the file. An even byte takes it from the input: for the
// site twice as many bytes as its value, for the date half as many. The third byte is a
// quarter of the length of the text to enter. Then come the site, the date and the text;
// the rest is the file.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "datafiles/working_folder.h"
#include "fuzz/record_bytes.h"
#include "fuzz/require.h"
#include "platform/failure.h"
#include "support/memory_file_system.h"

namespace quorrix::test {

// Takes the input apart. Beyond its end, texts are shorter or empty and numbers are 0.
class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  std::size_t number() {
    const std::string byte = text(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte.front());
  }

  std::string text(std::size_t length) {
    const std::string taken(rest_.substr(0, length));
    rest_.remove_prefix(taken.size());
    return taken;
  }

  std::string rest() { return text(rest_.size()); }

 private:
  std::string_view rest_;
};

// The file, the site and the date to work on, and the text to enter.
struct Task {
  std::string siteKey;
  std::string dateStamp;
  std::string text;
  RecordBytes file;

  // Part `k` of the text, divided into this many equal parts.
  [[nodiscard]] std::string part(std::size_t k, std::size_t parts) const {
    const std::size_t length = text.size() / parts;
    return text.substr(k * length, length);
  }
};

// `dateField` is where a record has its date; for a file without dates, any field will
// do.
inline Task taskFrom(std::string_view bytes, std::size_t recordLength, Field dateField) {
  Input input(bytes);
  const std::size_t site = input.number();
  const std::size_t date = input.number();
  const std::size_t textLength = input.number() * 4;
  std::string siteKey = site % 2 == 0 ? input.text(site * 2) : "";
  std::string dateStamp = date % 2 == 0 ? input.text(date / 2) : "";
  std::string text = input.text(textLength);
  RecordBytes file(input.rest(), recordLength);
  if (site % 2 == 1) siteKey = file.key(site / 2 + 1);
  if (date % 2 == 1) {
    const std::string field = textOf(file.record(date / 2 + 1), dateField);
    dateStamp = cutAt(field, '~').value_or(field);
  }
  return {std::move(siteKey), std::move(dateStamp), std::move(text), std::move(file)};
}

// A record file of the program, and the bytes that it should have.
class Session {
 public:
  Session(Path WorkingPaths::*path, RecordBytes file) : expected(std::move(file)) {
    paths.setFolder("Data");
    path_ = paths.*path;
    files.givenAFile(path_, expected.bytes());
  }

  // Returns whether the operation succeeds. The only permitted failure is that of a field
  // without its end mark.
  template <typename Operation>
  [[nodiscard]] bool succeeds(Operation operation) {
    bool succeeded = true;
    try {
      operation();
    } catch (const Failure& raised) {
      require(raised.number() == 5, "only a field without its mark fails, with 5");
      succeeded = false;
    }
    require(files.openFiles() == 0, "every operation closes the file");
    require(files.isSynced(path_), "what is written is synced");
    require(files.bytesOf(path_) == expected.bytes(), "only the record in question changes");
    return succeeded;
  }

  MemoryFileSystem files;
  WorkingPaths paths;
  RecordBytes expected;

 private:
  Path path_;
};

}  // namespace quorrix::test
