// Two programs on one folder at the same time, without the claim that keeps a second one
// away: only the locks of single operations keep their records apart.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <iostream>
#include <map>
#include <set>

#include "platform/linux/posix_file_system.h"
#include "records/record_file_stage.h"
#include "reliability/program_folder.h"
#include "reliability/user.h"
#include "support/site_record_bytes.h"

namespace quorrix {
namespace {

constexpr int kSites = 120;  // of each program

constexpr int kToldOfAFailure = 3;

std::string siteOf(char program, int number) {
  return std::string(1, program) + std::to_string(number) + ".two.three/page";
}

std::string notesOf(char program, int number) {
  return std::string(900, program) + std::to_string(number);
}

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

// One program: visits its own sites and keeps notes and user IDs for some.
int browse(const Path& folder, char program) {
  PosixFileSystem files;
  test::User user(files, folder);
  if (!user.start()) return 1;
  for (int number = 0; number < kSites; ++number) {
    const std::string site = siteOf(program, number);
    if (!succeedsInTheEnd(user, [&] { user.visit("http://" + site); })) return kToldOfAFailure;
    user.select(site);
    const auto keep = [&](const char* entry, const std::string& text) {
      return succeedsInTheEnd(user, [&] { saveIn(user, entry, text); });
    };
    if (keepsNotes(number) && !keep("PopUpNotes", notesOf(program, number))) return kToldOfAFailure;
    if (keepsUserID(number) && !keep("PopUpPasswords", site.substr(0, 20))) return kToldOfAFailure;
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

  // The records of a file, and how often each is there.
  static std::map<std::string, int> recordsIn(const std::string& bytes, std::size_t length) {
    EXPECT_EQ(bytes.size() % length, 0U) << "half a record";
    std::map<std::string, int> records;
    for (std::size_t at = 0; at < bytes.size(); at += length) ++records[bytes.substr(at, length)];
    return records;
  }

  test::ProgramFolder folder_;
};

TEST_F(TwoPrograms, KeepEveryRecordOfBoth) {
  folder_.give({{"Data/nodes.dat", ""},
                {"Data/notes.dat", ""},
                {"Data/info.dat", ""},
                {"Data/purchases.dat", ""},
                {"Data/load.txt", "none\r\n"},
                {"Archives/", ""}});
  runTogether([&] { return browse(folder_.path(), 'a'); },
              [&] { return browse(folder_.path(), 'b'); });

  std::map<std::string, int> sites;
  std::map<std::string, int> notes;
  std::map<std::string, int> userIDs;
  for (const char program : {'a', 'b'}) {
    for (int number = 0; number < kSites; ++number) {
      const std::string site = siteOf(program, number);
      sites[test::siteRecord(site, 'N', "7/9/26 3:04:05 PM~")] = 1;
      if (keepsNotes(number)) notes[test::notesRecord(site, notesOf(program, number))] = 1;
      if (keepsUserID(number)) {
        userIDs[test::userIDPasswordRecord(site, "", site.substr(0, 20))] = 1;
      }
    }
  }
  test::ProgramFolder::State state = folder_.state();
  EXPECT_TRUE(recordsIn(state["Data/nodes.dat"], 322) == sites);
  EXPECT_TRUE(recordsIn(state["Data/notes.dat"], 1324) == notes);
  EXPECT_TRUE(recordsIn(state["Data/info.dat"], 360) == userIDs);
  std::cout << "measured: " << sites.size() + notes.size() + userIDs.size()
            << " records of two programs, none lost\n";
}

}  // namespace
}  // namespace quorrix
