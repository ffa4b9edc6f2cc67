// A program that is killed at any moment while it starts, records visits, saves, deletes
// and archives: every record that it reported as saved is there, every file is a whole
// number of records, and the next start works.
//
// QUORRIX_KILL_RUNS sets the number of runs, and QUORRIX_KILL_SEED repeats a run's steps.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/linux/posix_file_system.h"
#include "reliability/busy_user.h"
#include "reliability/kept_records.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using test::KeptRecords;
using test::UserStep;
using Kind = UserStep::Kind;

constexpr int kUsualRuns = 50;
constexpr unsigned kLongestLife = 400'000;    // microseconds after the program is ready
constexpr unsigned kLongestStartUp = 50'000;  // microseconds after the fork
constexpr unsigned kRunsForAnEarlyKill = 10;  // one of so many is killed that soon
constexpr std::size_t kMostArchives = 6;

unsigned numberFrom(const char* variable, unsigned otherwise) {
  const char* const value = std::getenv(variable);
  return value ? static_cast<unsigned>(std::stoul(value)) : otherwise;
}

constexpr const char* kDataFiles[] = {"nodes.dat", "notes.dat", "info.dat", "purchases.dat"};
// No address is a level of another one: a visit to a level that is in the tree already
// writes no record.
constexpr const char* kSites[] = {
    "www.a.example/one",    "www.a.example/two/deep", "www.a.example/two/deeper",
    "www.b.example/x",      "www.b.example/y",        "news.c.example",
    "shop.d.example/bread", "shop.d.example/butter",  "shop.d.example/milk/fresh",
    "mail.e.example/inbox", "mail.e.example/sent",    "mail.e.example/drafts"};

enum class Life { StartOnly, UntilKilled };

// The lines on the pipe: "+" before the first step, a step before it is taken, "." after
// it, and "!" with a sentence if it failed.
class Child {
 public:
  Child(const Path& folder, unsigned seed, KeptRecords kept, int pipe)
      : folder_(folder), random_(seed), kept_(std::move(kept)), pipe_(pipe) {}

  [[noreturn]] void run(Life life) {
    try {
      PosixFileSystem files;
      test::BusyUser user(files, folder_);
      start(user);
      for (int number = 0; life == Life::UntilKilled; ++number) take(user, nextStep(number));
    } catch (const std::exception& reason) {
      fail(std::string("exception: ") + reason.what());
    }
    ::_exit(0);
  }

 private:
  void start(test::BusyUser& user) {
    if (!user.start()) fail("the program does not start");
    for (const std::string& site : kept_.sites()) {
      if (!user.shows(site)) fail("not shown: " + site);
    }
    tell("+");
  }

  void take(test::BusyUser& user, const UserStep& step) {
    tell(std::string(1, static_cast<char>(step.kind)) + '\t' + step.site + '\t' + step.text);
    const auto failures = user.take(step);
    if (!failures.empty()) fail(failures.front());
    kept_ = kept_.after(step);
    tell(".");
  }

  // Mostly visits and saves; nothing can be kept, deleted or archived without a site.
  UserStep nextStep(int number) {
    const std::vector<std::string> sites = kept_.sites();
    const auto dice = sites.empty() ? 0 : random_() % 100;
    if (dice < 35) return {Kind::Visit, kSites[random_() % std::size(kSites)], timeOf(number)};
    const std::string& site = sites[random_() % sites.size()];
    const std::string text = std::to_string(::getpid()) + "-" + std::to_string(number);
    if (dice < 55) return {Kind::Notes, site, text};
    if (dice < 70) return {Kind::Password, site, text};
    // One for each site: of several, deleting the site deletes only the first.
    if (dice < 85 && !kept_.hasPurchase(site)) return {Kind::Purchase, site, text};
    if (dice < 85) return {Kind::Notes, site, text};
    if (dice < 93) return {Kind::Delete, deletedWith(site), ""};
    return {Kind::Archive, "", archiveFor(text)};
  }

  // One second after the other, in an hour that begins anywhere, so that each visit to a
  // known site changes its record.
  [[nodiscard]] std::string timeOf(int number) const {
    const int second = (firstSecond_ + number) % 3600;
    const auto twoDigits = [](int value) {
      return (value < 10 ? "0" : "") + std::to_string(value);
    };
    return twoDigits(second / 60) + ":" + twoDigits(second % 60);
  }

  // The site, its host, or everything.
  std::string deletedWith(const std::string& site) {
    const auto dice = random_() % 8;
    if (dice == 0) return "";
    return dice < 3 ? site.substr(0, site.find('/')) : site;
  }

  // A new folder, or one with a complete archive, which is replaced.
  std::string archiveFor(const std::string& newName) {
    if (random_() % 2 == 0) return newName;
    for (const auto& [name, records] : kept_.archives()) {
      const Path folder = folder_ / "Archives" / name;
      const bool isComplete = std::ranges::all_of(
          kDataFiles, [&](const char* file) { return std::filesystem::exists(folder / file); });
      if (isComplete) return name;
    }
    return newName;
  }

  void tell(const std::string& line) const {
    const std::string ended = line + '\n';
    if (::write(pipe_, ended.data(), ended.size()) < 0) ::_exit(1);
  }

  [[noreturn]] void fail(const std::string& sentence) const {
    tell("!" + sentence);
    ::_exit(1);
  }

  Path folder_;
  std::mt19937 random_;
  int firstSecond_ = static_cast<int>(random_() % 3600);
  KeptRecords kept_;
  int pipe_;
};

struct Program {
  pid_t process;
  int pipe;  // to read from
};

UserStep stepOf(const std::string& line) {
  const std::size_t tab = line.find('\t', 2);
  return {static_cast<Kind>(line.front()), line.substr(2, tab - 2), line.substr(tab + 1)};
}

class KillTest : public testing::Test {
 protected:
  KillTest() {
    std::filesystem::create_directory(folder_ / "Data");
    std::filesystem::create_directory(folder_ / "Archives");
    folder_.givenAFile("Data/load.txt", "none\r\n");
  }

  [[nodiscard]] Program started(unsigned seed, Life life) const {
    int ends[2];
    if (::pipe(ends) != 0) throw std::runtime_error("no pipe");
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      ::close(ends[0]);
      Child(folder_.path(), seed, kept_, ends[1]).run(life);
    }
    ::close(ends[1]);
    return {child, ends[0]};
  }

  // Waits for the end of the program. Returns what it told, and sets its wait status.
  static std::string tellingsOf(const Program& program, int& status) {
    std::string told;
    char block[4096];
    for (ssize_t count = 0; (count = ::read(program.pipe, block, sizeof block)) > 0;) {
      told.append(block, static_cast<std::size_t>(count));
    }
    ::close(program.pipe);
    EXPECT_EQ(::waitpid(program.process, &status, 0), program.process);
    return told;
  }

  // Starts a program and kills it at a random moment: early, while it starts, and else
  // after it has started. Expects that it did not end by itself. Returns what it told.
  std::string tellingsUntilKilled(unsigned seed, bool isEarly) {
    const Program program = started(seed, Life::UntilKilled);
    pollfd ready{program.pipe, POLLIN, 0};
    if (!isEarly) ::poll(&ready, 1, -1);
    std::mt19937 random(seed);
    std::this_thread::sleep_for(
        std::chrono::microseconds(random() % (isEarly ? kLongestStartUp : kLongestLife)));
    ::kill(program.process, SIGKILL);
    int status = 0;
    std::string told = tellingsOf(program, status);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL)
        << "it ended by itself with status " << status << " after telling\n"
        << told;
    return told;
  }

  // Expects that the program starts and shows every recorded site.
  void expectStart() {
    int status = 0;
    const std::string told = tellingsOf(started(0, Life::StartOnly), status);
    EXPECT_EQ(told, "+\n");
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    const auto faults = kept_.faultsOf(KeptRecords::onDisk(folder_.path()), std::nullopt);
    EXPECT_EQ(faults, std::vector<std::string>{});
  }

  // `told` is empty if the program was killed while it started.
  void expectKept(const std::string& told) {
    std::optional<UserStep> interrupted;
    std::istringstream lines(told);
    std::string first;
    std::getline(lines, first);
    if (told.empty()) {
      ++killedEarly_;
    } else {
      EXPECT_EQ(first, "+") << "the program did not start";
    }
    for (std::string line; std::getline(lines, line);) {
      if (line == ".") {
        kept_ = kept_.after(*interrupted);
        interrupted.reset();
        ++steps_;
      } else if (line.front() == '!') {
        ADD_FAILURE() << line;
      } else {
        interrupted = stepOf(line);
      }
    }
    if (interrupted) ++interrupted_;
    const KeptRecords found = KeptRecords::onDisk(folder_.path());
    for (const std::string& fault : kept_.faultsOf(found, interrupted)) ADD_FAILURE() << fault;
    kept_ = found;
  }

  void removeOldArchives() {
    if (kept_.archives().size() < kMostArchives) return;
    for (const auto& [name, records] : kept_.archives()) {
      std::filesystem::remove_all(folder_ / "Archives" / name);
    }
    kept_ = KeptRecords::onDisk(folder_.path());
  }

  const test::TemporaryFolder folder_;
  KeptRecords kept_;
  int steps_ = 0;
  int interrupted_ = 0;
  int killedEarly_ = 0;
};

TEST_F(KillTest, LosesNoRecordThatWasReportedAsSaved) {
  const unsigned runs = numberFrom("QUORRIX_KILL_RUNS", kUsualRuns);
  const unsigned seed = numberFrom("QUORRIX_KILL_SEED", std::random_device()());
  std::cout << "measured: seed " << seed << std::endl;
  for (unsigned run = 0; run < runs && !HasFailure(); ++run) {
    SCOPED_TRACE("run " + std::to_string(run) + " of seed " + std::to_string(seed));
    const bool isEarly = run % kRunsForAnEarlyKill == kRunsForAnEarlyKill - 1;
    const std::string told = tellingsUntilKilled(seed + run, isEarly);
    EXPECT_TRUE(isEarly || !told.empty()) << "it did not start";
    expectKept(told);
    removeOldArchives();
  }
  if (!HasFailure()) expectStart();
  std::cout << "measured: " << runs << " programs killed, " << steps_ << " steps reported as done, "
            << interrupted_ << " interrupted, " << killedEarly_
            << " killed before they were ready\n";
}

}  // namespace
}  // namespace quorrix
