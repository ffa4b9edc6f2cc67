// check finds no error in anything that Quorrix itself writes.
#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>

#include "data_tool/record_check.h"
#include "data_tool/tool_stage.h"
#include "datafiles/site_address.h"
#include "records/notes_file.h"
#include "records/purchases_file.h"
#include "records/user_id_password_file.h"
#include "sitetree/site_deletion.h"
#include "sitetree/site_file.h"
#include "support/fake_clock.h"

namespace quorrix {
namespace {

// Does what a user may do, in random order, with the program's own classes.
class RandomUser {
 public:
  RandomUser(test::ToolStage& stage, unsigned seed) : stage_(stage), engine_(seed) {
    paths_.setFolder("Quorrix/Data");
  }

  void doSomething() {
    const std::string site = address();
    switch (upTo(6)) {
      case 0:
      case 1:
        clock_.set({.year = 1999 + upTo(60),
                    .month = 1 + upTo(11),
                    .day = 1 + upTo(27),
                    .hour = upTo(23),
                    .minute = upTo(59),
                    .second = upTo(59)});
        if (sites_.updateSiteRecord(site, flag()) == 0) sites_.appendSiteRecord(site, flag());
        return;
      case 2:
        return notes_.save(site, typed(1023, "\r\n\t"));
      case 3:
        return logins_.save(site, {.userID = typed(29, ""), .password = typed(29, "")});
      case 4:
        return purchases_.save(site, {.item = typed(49, ""),
                                      .price = typed(11, ""),
                                      .quantity = typed(4, ""),
                                      .paymentMethod = typed(49, ""),
                                      .description = typed(99, "\r\n"),
                                      .dateStamp = typed(24, "")});
      case 5:
        return notes_.remove(site);
      default: {
        const std::string_view keys[] = {site};
        return deleteSiteRecords(stage_.files, paths_, keys);
      }
    }
  }

 private:
  int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(engine_); }

  char flag() { return upTo(1) == 0 ? 'N' : 'S'; }

  // A few hosts, so that sites are visited again.
  std::string address() {
    std::string address = "www.host" + std::to_string(upTo(3)) + ".example";
    for (int level = upTo(49); level > 0; --level) address += upTo(1) == 0 ? "/a" : "/\xE9?~";
    return address.substr(0, 300);
  }

  std::string typed(int longest, const std::string& others) {
    std::string text;
    for (int i = upTo(longest); i > 0; --i) {
      const int kind = upTo(9);
      if (kind == 0 && !others.empty()) {
        text += others[static_cast<std::size_t>(upTo(static_cast<int>(others.size()) - 1))];
      } else {
        text += static_cast<char>(kind < 8 ? 0x20 + upTo(0x5E) : 0x80 + upTo(0x7F));
      }
    }
    return text;
  }

  test::ToolStage& stage_;
  std::mt19937 engine_;
  WorkingPaths paths_;
  test::FakeClock clock_{
      {.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5}};
  SiteFile sites_{stage_.files, clock_, paths_};
  NotesFile notes_{stage_.files, paths_};
  UserIDPasswordFile logins_{stage_.files, paths_};
  PurchasesFile purchases_{stage_.files, paths_};
};

// A user ID or a password in which the user typed a blank is worth a remark.
std::string withoutTypedBlanks(const std::string& output) {
  std::istringstream lines(output);
  std::string others;
  for (std::string line; std::getline(lines, line);) {
    if (!line.ends_with("contains a blank. Quorrix shows only what is before it.") &&
        !line.ends_with("remark: The user ID and the password are empty.")) {
      others += line + "\n";
    }
  }
  return others;
}

TEST(CheckProperty, FindsNothingInWhatQuorrixWrites) {
  for (unsigned seed = 1; seed <= 30; ++seed) {
    SCOPED_TRACE(seed);
    test::ToolStage stage;
    stage.givenEmptyFiles();
    RandomUser user(stage, seed);
    for (int step = 0; step < 60; ++step) user.doSomething();
    EXPECT_EQ(stage.run({"check"}), 0);
    EXPECT_EQ(withoutTypedBlanks(stage.output).find("byte"), std::string::npos) << stage.output;
    EXPECT_EQ(stage.error, "");
  }
}

// Most have schemes in places where no browser puts them.
TEST(CheckProperty, FindsNoErrorInAnyAddressThatQuorrixRecords) {
  const std::string parts[] = {"http://", "https://", "ftp://", "http:/", "www.", "a.b.c",
                               ".",       "/",        "?u=",    "x",      ":",    "s"};
  std::mt19937 engine(1);
  std::uniform_int_distribution<std::size_t> part(0, std::size(parts) - 1);
  int recorded = 0;
  for (int round = 0; round < 200'000; ++round) {
    std::string address;
    for (std::size_t left = 1 + part(engine); left > 0; --left) address += parts[part(engine)];
    if (!validateAddress(address).isValid) continue;
    const std::string stored = storedAddress(address);
    ++recorded;
    checkSiteRecord(test::siteRecord(stored),
                    [&](FindingKind kind, std::size_t, const std::string& what) {
                      EXPECT_EQ(kind, FindingKind::Remark) << address << ": " << what;
                    });
  }
  EXPECT_GT(recorded, 10'000);
}

}  // namespace
}  // namespace quorrix
