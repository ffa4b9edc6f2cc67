// Two programs on one folder at the same time, without the claim that keeps a second one
// away: only the locks of single operations keep their records apart.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <iostream>
#include <map>

#include "archives/folder_list.h"
#include "platform/linux/posix_file_system.h"
#include "records/record_file_stage.h"
#include "reliability/program_folder.h"
#include "reliability/user.h"
#include "support/site_record_bytes.h"

namespace quorrix {
namespace {

constexpr int kSites = 120;  // of each program
constexpr int kArchives = 30;

constexpr int kToldOfAFailure = 3;

std::string siteOf(char program, int number) {
  return std::string(1, program) + std::to_string(number) + ".two.three/page";
}

std::string notesOf(char program, int number) {
  return std::string(900, program) + std::to_string(number);
}

std::string archiveOf(int number) { return "Archives/" + std::to_string(number); }

bool keepsNotes(int number) { return number % 3 == 0; }
bool keepsUserID(int number) { return number % 4 == 0; }

// A file that the other program uses is tried again, as a user would.
template <typename Command>
bool succeedsInTheEnd(test::User& user, Command command) {
  for (int attempt = 0; attempt < 20; ++attempt) {
    user.messageBox().sentences.clear();
    command();
    if (user.messageBox().sentences.empty()) return true;
  }
  return false;
}

void saveIn(test::User& user, const char* entry, const std::string& text) {
  user.popUp(entry, [&text](QDialog& dialog) {
    test::User::type(dialog, "Text1", text);
    test::User::press(dialog, "OKButton");
  });
}

// Visits a site, and keeps notes and a user ID for some.
bool browseTo(test::User& user, char program, int number) {
  const std::string site = siteOf(program, number);
  if (!succeedsInTheEnd(user, [&] { user.visit("http://" + site); })) return false;
  user.select(site);
  const auto keep = [&](const char* entry, const std::string& text) {
    return succeedsInTheEnd(user, [&] { saveIn(user, entry, text); });
  };
  return (!keepsNotes(number) || keep("PopUpNotes", notesOf(program, number))) &&
         (!keepsUserID(number) || keep("PopUpPasswords", site.substr(0, 20)));
}

int browse(const Path& folder, char program) {
  PosixFileSystem files;
  test::User user(files, folder);
  if (!user.start()) return 1;
  for (int number = 0; number < kSites; ++number) {
    if (!browseTo(user, program, number)) return kToldOfAFailure;
  }
  return 0;
}

bool isArchived(test::User& user, const Path& archive) {
  user.messageBox().sentences.clear();
  user.choose("FileArchive", [&archive](QDialog& dialog) {
    test::control<FolderList>(dialog, "Dir1").setPath(archive);
    test::User::press(dialog, "OKButton");
  });
  return user.messageBox().sentences.empty();
}

// Archives into one folder after the other. A lock of the other program is waited for,
// because an archive that failed in the middle is not tried again.
int browseAndArchive(const Path& folder, char program) {
  PosixFileSystem files(std::chrono::minutes(1));
  test::User user(files, folder);
  if (!user.start()) return 1;
  for (int number = 0; number < kSites; ++number) {
    if (!browseTo(user, program, number)) return kToldOfAFailure;
    const bool isDue = number % (kSites / kArchives) == 0;
    if (isDue && !isArchived(user, folder / archiveOf(number / (kSites / kArchives)))) {
      return kToldOfAFailure;
    }
  }
  return 0;
}

class TwoPrograms : public testing::Test {
 protected:
  // Runs both programs at the same time until both have ended.
  static void runTogether(const std::function<int()>& one, const std::function<int()>& other) {
    std::vector<pid_t> children;
    for (const auto* const program : {&one, &other}) {
      const pid_t child = ::fork();
      if (child == 0) ::_exit((*program)());
      children.push_back(child);
    }
    for (const pid_t child : children) {
      int status = -1;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      ASSERT_TRUE(WIFEXITED(status));
      EXPECT_EQ(WEXITSTATUS(status), 0);
    }
  }

  void givenAnEmptyProgram() {
    test::Files files{{"Data/nodes.dat", ""},
                      {"Data/notes.dat", ""},
                      {"Data/info.dat", ""},
                      {"Data/purchases.dat", ""},
                      {"Data/load.txt", "none\r\n"}};
    for (int number = 0; number < kArchives; ++number) files[archiveOf(number) + "/"] = "";
    folder_.give(files);
  }

  // Expects the records of these programs in the files with these names, each exactly once.
  void expectRecordsOf(const std::vector<char>& programs) const {
    Records expected;
    for (const char program : programs) addRecordsOf(program, expected);
    Records found;
    for (const auto& [path, bytes] : folder_.state()) {
      const std::string name = Path(path).filename().string();
      const auto length = kRecordLengths.find(name);
      if (length != kRecordLengths.end()) addRecordsIn(bytes, length->second, found[name]);
    }
    for (const char* const name : {"nodes.dat", "notes.dat", "info.dat"}) {
      EXPECT_TRUE(found[name] == expected[name])
          << name << " has " << found[name].size() << " of " << expected[name].size();
    }
    std::cout << "measured: of two programs at once there are " << found["nodes.dat"].size()
              << " sites, " << found["notes.dat"].size() << " notes and "
              << found["info.dat"].size() << " user IDs\n";
  }

  test::ProgramFolder folder_;

 private:
  // How often each record is there, by the name of the file.
  using Records = std::map<std::string, std::map<std::string, int>>;

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
    }
  }

  static void addRecordsIn(const std::string& bytes, std::size_t length,
                           std::map<std::string, int>& records) {
    EXPECT_EQ(bytes.size() % length, 0U) << "half a record";
    for (std::size_t at = 0; at < bytes.size(); at += length) ++records[bytes.substr(at, length)];
  }

  inline static const std::map<std::string, std::size_t> kRecordLengths = {
      {"nodes.dat", 322}, {"notes.dat", 1324}, {"info.dat", 360}};
};

TEST_F(TwoPrograms, KeepEveryRecordOfBoth) {
  givenAnEmptyProgram();
  runTogether([this] { return browse(folder_.path(), 'a'); },
              [this] { return browse(folder_.path(), 'b'); });
  expectRecordsOf({'a', 'b'});
}

// What one of them archives includes the records of the other.
TEST_F(TwoPrograms, KeepEveryRecordWhileOneArchives) {
  givenAnEmptyProgram();
  runTogether([this] { return browse(folder_.path(), 'a'); },
              [this] { return browseAndArchive(folder_.path(), 'b'); });
  expectRecordsOf({'a', 'b'});
}

}  // namespace
}  // namespace quorrix
