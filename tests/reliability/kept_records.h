// What must be on the disk: the texts of all records, in the data folder and in archives,
// how each step of a user changes them, and which of them a program that was killed in
// the middle of a step may leave.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/file_system.h"

namespace quorrix::test {

// One step of the user. `site` is an address, empty for the root; `text` is what is saved,
// the name of the archive's folder, or the minute and second of a visit, such as "04:05".
struct UserStep {
  enum class Kind : char {
    Visit = 'v',
    Notes = 'n',
    Password = 'p',
    Purchase = 'b',
    Delete = 'd',
    Archive = 'a',
  };
  Kind kind;
  std::string site;
  std::string text;
};

// On July 9, 2026, after three in the afternoon.
[[nodiscard]] LocalDateTime timeOfVisit(const std::string& minuteAndSecond);

// Each record is a line such as "notes www.a.example: text".
using Records = std::multiset<std::string>;

class KeptRecords {
 public:
  // Reads the folder `Data` and every folder in `Archives`. A record that no step writes
  // becomes a line that begins with "broken".
  static KeptRecords onDisk(const Path& programFolder);

  // The state after the step.
  [[nodiscard]] KeptRecords after(const UserStep& step) const;

  // What is wrong with a disk that was found after this state, one sentence each.
  // `interrupted` is the step that the program was killed in.
  [[nodiscard]] std::vector<std::string> faultsOf(const KeptRecords& found,
                                                  const std::optional<UserStep>& interrupted) const;

  [[nodiscard]] const Records& current() const { return current_; }
  [[nodiscard]] const std::map<std::string, Records>& archives() const { return archives_; }

  // The addresses of the recorded sites.
  [[nodiscard]] std::vector<std::string> sites() const;
  [[nodiscard]] bool hasPurchase(const std::string& site) const;

 private:
  Records current_;
  std::map<std::string, Records> archives_;
};

}  // namespace quorrix::test
