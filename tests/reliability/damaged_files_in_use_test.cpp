// A damaged site file is searched, and visits are recorded in it.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#include "datafiles/working_folder.h"
#include "reliability/kept_data.h"
#include "search/site_search.h"
#include "sitetree/site_file.h"
#include "support/code_pages.h"
#include "support/failure_number.h"
#include "support/fake_clock.h"
#include "support/memory_file_system.h"
#include "support/site_record_bytes.h"

namespace quorrix {
namespace {

using test::MemoryFileSystem;

class DamagedFilesInUse : public testing::Test {
 protected:
  // Expects that all commands work that do not need the damaged record. `canBeSearched`
  // is false if a stamp cannot be read, which ends every search.
  template <typename IsIntact>
  void expectToBeUsed(const std::string& bytes, bool canBeSearched, IsIntact isIntact) {
    ++cases_;
    std::vector<std::size_t> intact;
    for (std::size_t i = 0; i < test::kAddresses.size(); ++i) {
      if (isIntact(i)) intact.push_back(i);
    }
    expectSearch(bytes, canBeSearched, intact);
    expectVisitToANewSite(bytes, intact);
    for (const std::size_t i : intact) expectVisit(bytes, i);
  }

  ~DamagedFilesInUse() override {
    std::cout << "measured: " << cases_ << " damaged site files searched and written to\n";
  }

  const std::string whole_ = test::keptData().front().bytes();

 private:
  // A data folder in memory with this site file.
  struct Stage {
    explicit Stage(const std::string& bytes) {
      paths.setFolder("Data");
      memory.givenAFile("Data/nodes.dat", bytes);
    }

    [[nodiscard]] std::string bytes() const { return memory.bytesOf("Data/nodes.dat"); }

    MemoryFileSystem memory;
    WorkingPaths paths;
    test::FakeClock clock;
    SiteFile sites{memory, clock, paths};
  };

  static void expectSearch(const std::string& bytes, bool canBeSearched,
                           const std::vector<std::size_t>& intact) {
    Stage stage(bytes);
    std::vector<std::string> found;
    const int failed = test::failureNumberOf([&] {
      found = searchSiteFile(stage.memory, stage.paths, test::westernCodePage(),
                             {UserSearchType::Url, "e", ""});
    });
    if (failed != 0) {
      EXPECT_EQ(failed, failure::kTypeMismatch);
      EXPECT_FALSE(canBeSearched);
    } else {
      for (const std::size_t i : intact) {
        EXPECT_EQ(std::ranges::count(found, test::kAddresses[i]), 1) << test::kAddresses[i];
      }
    }
    EXPECT_EQ(stage.bytes(), bytes);
  }

  static void expectVisitToANewSite(const std::string& bytes,
                                    const std::vector<std::size_t>& intact) {
    Stage stage(bytes);
    stage.sites.appendSiteRecord("www.one.example", 'N');
    const std::string after = stage.bytes();
    EXPECT_EQ(after.size() % kLength, 0U);
    EXPECT_TRUE(after.ends_with(test::siteRecord("www.one.example", 'N', kNow)));
    const std::size_t before = after.size() - kLength;
    EXPECT_EQ(after.substr(0, std::min(before, bytes.size())), bytes.substr(0, before));
    SiteTree tree;
    stage.sites.loadNodes(tree);
    EXPECT_NE(tree.find("www.one.example"), kNoNode);
    for (const std::size_t i : intact) EXPECT_NE(tree.find(test::kAddresses[i]), kNoNode);
  }

  static void expectVisit(const std::string& bytes, std::size_t site) {
    Stage stage(bytes);
    EXPECT_EQ(stage.sites.updateSiteRecord(test::kAddresses[site], 'N'), site + 1);
    std::string expected = bytes;
    expected.replace(site * kLength, kLength, test::siteRecord(test::kAddresses[site], 'N', kNow));
    EXPECT_EQ(stage.bytes(), expected);
  }

  static constexpr std::size_t kLength = 322;
  static constexpr const char* kNow = "7/9/26 3:04:05 PM~";  // of the clock
  int cases_ = 0;
};

TEST_F(DamagedFilesInUse, ThatAreTruncatedAtAnyLengthAreSearchedAndWrittenTo) {
  for (std::size_t length = 0; length <= whole_.size(); ++length) {
    SCOPED_TRACE(length);
    expectToBeUsed(whole_.substr(0, length), length % 322 == 0,
                   [&](std::size_t i) { return (i + 1) * 322 <= length; });
  }
}

TEST_F(DamagedFilesInUse, WithAnyByteFlippedAreSearchedAndWrittenTo) {
  for (std::size_t at = 0; at < whole_.size(); ++at) {
    for (const int flipped : {0xFF, 0x20}) {
      SCOPED_TRACE(at);
      std::string bytes = whole_;
      bytes[at] = static_cast<char>(bytes[at] ^ flipped);
      const bool isOfTheStamp = at % 322 > 300;
      expectToBeUsed(bytes, !isOfTheStamp, [&](std::size_t i) { return i != at / 322; });
    }
  }
}

}  // namespace
}  // namespace quorrix
