// Two programs on one folder at the same time, without the claim that keeps a second one
// away: only the locks of single operations keep their records apart.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <iostream>
#include <map>
#include <stdexcept>

#include "archives/folder_list.h"
#include "platform/linux/posix_file_system.h"
#include "platform/lock_patience.h"
#include "records/record_file_stage.h"
#include "reliability/program_folder.h"
#include "reliability/user.h"
#include "support/site_record_bytes.h"

namespace quorrix {
namespace {

constexpr int kSites = 120;  // of each program
constexpr int kArchives = 30;

constexpr int kToldOfAFailure = 3;  // the exit status

std::string siteOf(char program, int number) {
  return std::string(1, program) + std::to_string(number) + ".two.three/page";
}

std::string notesOf(char program, int number) {
  return std::string(900, program) + std::to_string(number);
}

std::string purchaseRecord(const std::string& site, const std::string& item) {
  return test::purchaseRecord(site, {.dateStamp = "7/9/26 3:04:05 PM~",
                                     .price = "~",
                                     .paymentMethod = "~",
                                     .item = item + "~",
                                     .description = "~",
                                     .quantity = "~"});
}

std::string archiveOf(char program, int number) {
  return std::string("Archives/") + program + std::to_string(number);
}

bool keepsNotes(int number) { return number % 3 == 0; }
bool keepsUserID(int number) { return number % 4 == 0; }
bool keepsAPurchase(int number) { return number % 5 == 0; }
bool archivesAfter(int number) { return number % (kSites / kArchives) == 0; }

// Where programs wait until all of them have started.
class StartingLine {
 public:
  StartingLine() {
    if (::pipe(arrivals_) != 0 || ::pipe(departure_) != 0) throw std::runtime_error("no pipe");
  }

  // In a child process.
  void waitForAll() const {
    char byte = 0;
    ::close(departure_[1]);
    if (::write(arrivals_[1], &byte, 1) != 1) ::_exit(1);
    ::close(arrivals_[1]);
    if (::read(departure_[0], &byte, 1) != 0) ::_exit(1);
  }

  // In the parent process. Returns how many arrived; the others have ended.
  [[nodiscard]] int letGo() const {
    ::close(arrivals_[1]);
    int arrived = 0;
    for (char byte = 0; ::read(arrivals_[0], &byte, 1) == 1;) ++arrived;
    ::close(arrivals_[0]);
    ::close(departure_[0]);
    ::close(departure_[1]);
    return arrived;
  }

 private:
  int arrivals_[2];
  int departure_[2];
};

// A program in a process of its own, and its user.
class Browsing {
 public:
  Browsing(const Path& folder, char program, std::chrono::milliseconds lockPatience)
      : files_(lockPatience), user_(files_, folder), program_(program) {}

  ~Browsing() {
    std::cout << "measured: program " << program_ << " tried " << retries_
              << " commands again, and " << failedArchives_ << " archives failed" << std::endl;
  }
  Browsing(const Browsing&) = delete;
  Browsing& operator=(const Browsing&) = delete;

  [[nodiscard]] bool start() { return user_.start(); }

  // Visits a site, and keeps notes, a user ID and a purchase for some.
  [[nodiscard]] bool browseTo(int number) {
    const std::string site = siteOf(program_, number);
    if (!succeedsInTheEnd([&] { user_.visit("http://" + site); })) return false;
    user_.select(site);
    return (!keepsNotes(number) || keep("PopUpNotes", notesOf(program_, number))) &&
           (!keepsUserID(number) || keep("PopUpPasswords", site.substr(0, 20))) &&
           (!keepsAPurchase(number) || keep("PopUpNewPurchase", site.substr(0, 20)));
  }

  // An archive that fails in the middle is not whole, and cannot be tried again.
  [[nodiscard]] bool archiveTo(const Path& archive) {
    user_.messageBox().sentences.clear();
    user_.choose("FileArchive", [&archive](QDialog& dialog) {
      test::control<FolderList>(dialog, "Dir1").setPath(archive);
      test::User::press(dialog, "OKButton");
    });
    const bool isDone = user_.messageBox().sentences.empty();
    if (!isDone) ++failedArchives_;
    return isDone;
  }

 private:
  [[nodiscard]] bool keep(const char* entry, const std::string& text) {
    return succeedsInTheEnd([&] {
      user_.popUp(entry, [&text](QDialog& dialog) {
        test::User::type(dialog, "Text1", text);
        test::User::press(dialog, "OKButton");
      });
    });
  }

  // A file that the other program uses is tried again, as a user would.
  [[nodiscard]] bool succeedsInTheEnd(const std::function<void()>& command) {
    for (int attempt = 0; attempt < 20; ++attempt) {
      if (attempt > 0) ++retries_;
      user_.messageBox().sentences.clear();
      command();
      if (user_.messageBox().sentences.empty()) return true;
    }
    return false;
  }

  PosixFileSystem files_;
  test::User user_;
  char program_;
  int retries_ = 0;
  int failedArchives_ = 0;
};

enum class Archives { None, MustSucceed, MayFail };

class TwoPrograms : public testing::Test {
 protected:
  // Runs both programs at the same time until both have ended.
  void runTogether(Archives ofA, Archives ofB) const {
    const StartingLine line;
    std::cout.flush();
    std::vector<pid_t> children;
    for (const auto& [program, archives] : {std::pair{'a', ofA}, std::pair{'b', ofB}}) {
      const pid_t child = ::fork();
      if (child == 0) ::_exit(browse(program, archives, line));
      children.push_back(child);
    }
    EXPECT_EQ(line.letGo(), 2);
    for (const pid_t child : children) {
      int status = -1;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      ASSERT_TRUE(WIFEXITED(status));
      EXPECT_EQ(WEXITSTATUS(status), 0);
    }
  }

  // A program that archives waits for a lock of the other one. Returns its exit status.
  int browse(char program, Archives archives, const StartingLine& line) const {
    const auto patience = archives == Archives::None ? kLockPatience : std::chrono::minutes(1);
    Browsing browsing(folder_.path(), program, patience);
    if (!browsing.start()) return 1;
    line.waitForAll();
    for (int number = 0; number < kSites; ++number) {
      if (!browsing.browseTo(number)) return kToldOfAFailure;
      if (archives == Archives::None || !archivesAfter(number)) continue;
      const int archive = number / (kSites / kArchives);
      const bool isDone = browsing.archiveTo(folder_.path() / archiveOf(program, archive));
      if (!isDone && archives == Archives::MustSucceed) return kToldOfAFailure;
    }
    return 0;
  }

  void givenAnEmptyProgram() {
    test::Files files{{"Data/nodes.dat", ""},
                      {"Data/notes.dat", ""},
                      {"Data/info.dat", ""},
                      {"Data/purchases.dat", ""},
                      {"Data/load.txt", "none\r\n"}};
    for (int number = 0; number < kArchives; ++number) {
      for (const char program : {'a', 'b'}) files[archiveOf(program, number) + "/"] = "";
    }
    folder_.give(files);
  }

  // How often each record is there, by the name of the file.
  using Records = std::map<std::string, std::map<std::string, int>>;

  // In the working folder and in all archives.
  [[nodiscard]] Records found() const {
    Records records;
    for (const auto& [path, bytes] : folder_.state()) {
      const std::string name = Path(path).filename().string();
      const auto length = kRecordLengths.find(name);
      if (length != kRecordLengths.end()) addRecordsIn(bytes, length->second, records[name]);
    }
    return records;
  }

  // Each record of both programs, once.
  static Records expected() {
    Records records;
    for (const char program : {'a', 'b'}) addRecordsOf(program, records);
    return records;
  }

  static void expectOnce(const Records& found) {
    for (const auto& [name, records] : expected()) {
      EXPECT_TRUE(found.at(name) == records)
          << name << " has " << found.at(name).size() << " of " << records.size();
    }
    std::cout << "measured: of two programs at once there are " << found.at("nodes.dat").size()
              << " sites, " << found.at("notes.dat").size() << " notes, "
              << found.at("info.dat").size() << " user IDs and " << found.at("purchases.dat").size()
              << " purchases\n";
  }

  // Expects that the programs wrote at the same time: the sites of one are among those of
  // the other in the file, and in the archives if there are any.
  void expectToAlternate() const {
    int changes = 0;
    for (const auto& [path, bytes] : folder_.state()) {
      if (!path.ends_with("/nodes.dat")) continue;
      for (std::size_t at = 322; at < bytes.size(); at += 322) {
        if (bytes[at] != bytes[at - 322]) ++changes;
      }
    }
    EXPECT_GT(changes, 1) << "one program had ended before the other began";
    std::cout << "measured: the programs took turns " << changes << " times\n";
  }

  test::ProgramFolder folder_;

 private:
  static void addRecordsOf(char program, Records& records) {
    for (int number = 0; number < kSites; ++number) {
      const std::string site = siteOf(program, number);
      records["nodes.dat"][test::siteRecord(site, 'N', "7/9/26 3:04:05 PM~")] = 1;
      if (keepsNotes(number)) {
        records["notes.dat"][test::notesRecord(site, notesOf(program, number))] = 1;
      }
      if (keepsUserID(number)) {
        records["info.dat"][test::userIDPasswordRecord(site, "", site.substr(0, 20))] = 1;
      }
      if (keepsAPurchase(number)) {
        records["purchases.dat"][purchaseRecord(site, site.substr(0, 20))] = 1;
      }
    }
  }

  static void addRecordsIn(const std::string& bytes, std::size_t length,
                           std::map<std::string, int>& records) {
    EXPECT_EQ(bytes.size() % length, 0U) << "half a record";
    for (std::size_t at = 0; at < bytes.size(); at += length) ++records[bytes.substr(at, length)];
  }

  inline static const std::map<std::string, std::size_t> kRecordLengths = {
      {"nodes.dat", 322}, {"notes.dat", 1324}, {"info.dat", 360}, {"purchases.dat", 542}};
};

TEST_F(TwoPrograms, KeepEveryRecordOfBoth) {
  givenAnEmptyProgram();
  runTogether(Archives::None, Archives::None);
  expectOnce(found());
  expectToAlternate();
}

// What one of them archives includes the records of the other.
TEST_F(TwoPrograms, KeepEveryRecordWhileOneArchives) {
  givenAnEmptyProgram();
  runTogether(Archives::None, Archives::MustSucceed);
  expectOnce(found());
  expectToAlternate();
}

// A file that both have copied before one of them deletes it is in both archives, and the
// other's command then fails, because the file is missing. So a record can be there more
// than once, but never less.
TEST_F(TwoPrograms, LoseNoRecordWhileBothArchive) {
  givenAnEmptyProgram();
  runTogether(Archives::MayFail, Archives::MayFail);
  const Records there = found();
  int twice = 0;
  for (const auto& [name, records] : expected()) {
    EXPECT_EQ(there.at(name).size(), records.size()) << name;
    for (const auto& [record, once] : records) {
      EXPECT_TRUE(there.at(name).contains(record)) << "lost: " << record.substr(0, 40);
    }
    for (const auto& [record, times] : there.at(name)) twice += times > 1 ? 1 : 0;
  }
  expectToAlternate();
  std::cout << "measured: " << twice << " records are in more than one archive\n";
}

}  // namespace
}  // namespace quorrix
