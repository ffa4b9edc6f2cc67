// Reads the input as a notes file; finds, saves and removes the notes of one site.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/record_session.h"
#include "records/notes_file.h"

namespace quorrix {
namespace {

using test::Field;
using test::padded;
using test::RecordBytes;
using test::require;
using test::Session;
using test::Task;
using test::taskFrom;
using test::textOf;

constexpr std::size_t kRecord = 1324;
constexpr Field kNotes{300, 1024};

class Operations {
 public:
  explicit Operations(Task task)
      : task_(std::move(task)), session_(&WorkingPaths::currentURLNotesFile, task_.file) {}

  void run() {
    if (const std::optional<std::string> notes = read()) {
      const std::string before = session_.expected.bytes();
      save(*notes);
      require(session_.expected.bytes().starts_with(before), "what is saved as read stays");
    }
    save(task_.text);
    read();
    remove();
    read();
  }

 private:
  std::optional<std::string> read() {
    const std::size_t number = session_.expected.find(task_.siteKey);
    std::optional<std::string> notes;
    require(session_.succeeds([&] { notes = file_.read(task_.siteKey); }), "notes can be read");
    require(notes.has_value() == (number != 0), "notes are found where they are");
    if (notes) {
      require(*notes == textOf(session_.expected.record(number), kNotes), "notes are a field");
    }
    return notes;
  }

  void save(const std::string& notes) {
    RecordBytes& expected = session_.expected;
    const std::size_t number = expected.find(task_.siteKey);
    const std::string field = padded(notes, kNotes.width);
    if (number != 0) expected.putBehindKey(number, field);
    if (number == 0) expected.append(task_.siteKey, field);
    require(session_.succeeds([&] { file_.save(task_.siteKey, notes); }), "notes can be saved");
  }

  void remove() {
    session_.expected.blank(session_.expected.find(task_.siteKey));
    require(session_.succeeds([&] { file_.remove(task_.siteKey); }), "notes can be removed");
  }

  Task task_;
  Session session_;
  NotesFile file_{session_.files, session_.paths};
};

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  quorrix::Operations(quorrix::test::taskFrom(bytes, quorrix::kRecord, quorrix::kNotes)).run();
  return 0;
}
