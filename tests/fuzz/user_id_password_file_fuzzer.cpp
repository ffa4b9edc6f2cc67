// Reads the input as a file of user IDs and passwords; finds, saves and removes those of
// one site.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/record_session.h"
#include "records/user_id_password_file.h"

namespace quorrix {
namespace {

using test::cutAt;
using test::Field;
using test::padded;
using test::RecordBytes;
using test::require;
using test::Session;
using test::Task;
using test::taskFrom;
using test::textOf;

constexpr std::size_t kRecord = 360;
constexpr Field kPassword{300, 30};
constexpr Field kUserID{330, 30};

class Operations {
 public:
  explicit Operations(Task task)
      : task_(std::move(task)), session_(&WorkingPaths::currentUserIDPasswordFile, task_.file) {}

  void run() {
    read();
    save({.userID = task_.part(0, 2), .password = task_.part(1, 2)});
    if (const std::optional<UserIDPassword> entered = read()) {
      const std::string before = session_.expected.bytes();
      save(*entered);
      const bool hasBlanksInside = task_.text.find(' ') != std::string::npos;
      require(hasBlanksInside || session_.expected.bytes() == before,
              "what is saved as read stays");
    }
    remove();
    read();
  }

 private:
  std::optional<UserIDPassword> read() {
    const std::size_t number = session_.expected.find(task_.siteKey);
    std::optional<UserIDPassword> found;
    const bool succeeded = session_.succeeds([&] {
      const auto stored = file_.read(task_.siteKey);
      if (stored) found = {.userID = stored->userID(), .password = stored->password()};
    });
    require(found.has_value() == (succeeded && number != 0), "what there is is found");
    if (number == 0) {
      require(succeeded, "a site without a record can be read");
      return std::nullopt;
    }
    const std::string record = session_.expected.record(number);
    const auto userID = cutAt(textOf(record, kUserID), ' ');
    const auto password = cutAt(textOf(record, kPassword), ' ');
    require(succeeded == (userID && password), "a field without a blank fails");
    if (!found) return std::nullopt;
    require(found->userID == *userID && found->password == *password, "each is cut at its blank");
    return found;
  }

  void save(const UserIDPassword& entered) {
    RecordBytes& expected = session_.expected;
    const std::size_t number = expected.find(task_.siteKey);
    const std::string fields =
        padded(entered.password, kPassword.width) + padded(entered.userID, kUserID.width);
    if (number != 0) expected.putBehindKey(number, fields);
    if (number == 0) expected.append(task_.siteKey, fields);
    require(session_.succeeds([&] { file_.save(task_.siteKey, entered); }), "both can be saved");
  }

  void remove() {
    session_.expected.blank(session_.expected.find(task_.siteKey));
    require(session_.succeeds([&] { file_.remove(task_.siteKey); }), "both can be removed");
  }

  Task task_;
  Session session_;
  UserIDPasswordFile file_{session_.files, session_.paths};
};

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  quorrix::Operations(quorrix::test::taskFrom(bytes, quorrix::kRecord, quorrix::kPassword)).run();
  return 0;
}
