#include "platform/folder_claim.h"

#include <gtest/gtest.h>

#include <array>
#include <future>

#include "support/eventually.h"
#include "support/temporary_folder.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <poll.h>
#endif

namespace quorrix {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using test::eventually;
using test::TemporaryFolder;

constexpr milliseconds kNoPatience{20};
constexpr seconds kPatience{20};

struct Asked {
  ClaimResult result;
  std::optional<std::string> token;  // that was passed to the first program
};

// Starts a second program while the first one looks for requests.
Asked askWhileItAnswers(FolderClaim& first, const Path& folder) {
  auto result = std::async(std::launch::async, [&] {
    FolderClaim second;
    return second.claim(folder, "", kPatience);
  });
  Asked asked{};
  EXPECT_TRUE(eventually([&] { return (asked.token = first.takeRequest()).has_value(); }));
  asked.result = result.get();
  return asked;
}

// Whether a later start waits for the answer of the program that has the folder.
bool isAsked(const FolderClaim& claim) {
#ifdef _WIN32
  return ::WaitForSingleObject(reinterpret_cast<HANDLE>(claim.signal()), 0) == WAIT_OBJECT_0;
#else
  pollfd request{.fd = static_cast<int>(claim.signal()), .events = POLLIN, .revents = 0};
  return ::poll(&request, 1, 0) == 1;
#endif
}

TEST(FolderClaim, IsGrantedToTheFirstProgram) {
  const TemporaryFolder folder;
  FolderClaim first;
  EXPECT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  EXPECT_EQ(first.takeRequest(), std::nullopt);
}

TEST(FolderClaim, LetsALaterStartAskTheFirstProgram) {
  const TemporaryFolder folder;
  FolderClaim first;
  ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  for (int start = 0; start < 3; ++start) {
    const Asked asked = askWhileItAnswers(first, folder.path());
    EXPECT_EQ(asked.result, ClaimResult::Answered);
    EXPECT_EQ(asked.token, "");
    EXPECT_EQ(first.takeRequest(), std::nullopt);
  }
}

TEST(FolderClaim, SaysThatTheFirstProgramDoesNotAnswer) {
  const TemporaryFolder folder;
  FolderClaim first;
  ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  for (int start = 0; start < 20; ++start) {
    FolderClaim second;
    EXPECT_EQ(second.claim(folder.path(), "", kNoPatience), ClaimResult::Unanswered);
  }
}

TEST(FolderClaim, IsAnsweredAfterAStartThatDidNotWait) {
  const TemporaryFolder folder;
  FolderClaim first;
  ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  {
    FolderClaim second;
    ASSERT_EQ(second.claim(folder.path(), "", kNoPatience), ClaimResult::Unanswered);
  }
  EXPECT_NE(first.takeRequest(), std::nullopt);
  FolderClaim third;
  EXPECT_EQ(third.claim(folder.path(), "", kNoPatience), ClaimResult::Unanswered);
}

TEST(FolderClaim, EndsWithTheProgramThatHasIt) {
  const TemporaryFolder folder;
  {
    FolderClaim first;
    ASSERT_EQ(first.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  }
  FolderClaim second;
  EXPECT_EQ(second.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
}

TEST(FolderClaim, IsTakenOverFromAProgramThatEndsInsteadOfAnswering) {
  const TemporaryFolder folder;
  auto first = std::make_unique<FolderClaim>();
  ASSERT_EQ(first->claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  FolderClaim second;
  auto result =
      std::async(std::launch::async, [&] { return second.claim(folder.path(), "", seconds(2)); });
  EXPECT_TRUE(eventually([&] { return isAsked(*first); }));
  first.reset();
  EXPECT_EQ(result.get(), ClaimResult::Claimed);
}

// However their starts interleave.
TEST(FolderClaim, IsGrantedToOneOfSeveralProgramsThatStartTogether) {
  const TemporaryFolder folder;
  for (int round = 0; round < 20; ++round) {
    std::array<FolderClaim, 4> programs;
    std::array<std::future<ClaimResult>, 4> results;
    for (std::size_t i = 0; i < programs.size(); ++i) {
      results[i] = std::async(std::launch::async, [&folder, &program = programs[i]] {
        return program.claim(folder.path(), "", milliseconds(100));
      });
    }
    int claimed = 0;
    for (auto& result : results) {
      const ClaimResult got = result.get();
      if (got == ClaimResult::Claimed) ++claimed;
      EXPECT_NE(got, ClaimResult::Unavailable);
    }
    EXPECT_EQ(claimed, 1);
  }
}

TEST(FolderClaim, HoldsForItsFolderOnly) {
  const TemporaryFolder one;
  const TemporaryFolder other;
  FolderClaim first;
  FolderClaim second;
  EXPECT_EQ(first.claim(one.path(), "", kNoPatience), ClaimResult::Claimed);
  EXPECT_EQ(second.claim(other.path(), "", kNoPatience), ClaimResult::Claimed);
}

TEST(FolderClaim, IsUnavailableWithoutTheFolder) {
  const TemporaryFolder folder;
  FolderClaim claim;
  EXPECT_EQ(claim.claim(folder / "missing", "", kNoPatience), ClaimResult::Unavailable);
}

TEST(FolderClaim, LeavesNothingInTheFolder) {
  const TemporaryFolder folder;
  FolderClaim claim;
  ASSERT_EQ(claim.claim(folder.path(), "", kNoPatience), ClaimResult::Claimed);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

}  // namespace
}  // namespace quorrix
