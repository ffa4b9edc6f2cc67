#include "sitetree/site_deletion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "platform/real_file_system.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"
#include "support/temporary_folder.h"

namespace quorrix {
namespace {

using namespace std::string_literals;
using test::failureNumberOf;
using test::FileCall;
using test::kFileFailures;

struct File {
  Path path;
  std::size_t length;  // of a record
};

// In the order in which a deletion processes them.
const File kNodes{"Data/nodes.dat", 322};
const File kPurchases{"Data/purchases.dat", 542};
const File kNotes{"Data/notes.dat", 1324};
const File kInfo{"Data/info.dat", 360};
const File kFiles[] = {kNodes, kPurchases, kNotes, kInfo};

// An address field, followed by something that must not be mistaken for blank.
std::string record(const File& file, std::string address) {
  address.resize(300, ' ');
  return address + std::string(file.length - 300, 'x');
}

std::string blank(const File& file) { return std::string(file.length, ' '); }

class SiteDeletionTest : public testing::Test {
 protected:
  using Keys = std::vector<std::string_view>;

  SiteDeletionTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  void given(const File& file, std::string bytes) {
    memory_.givenAFile(file.path, std::move(bytes));
  }

  // The bytes of a file with one record for each address.
  static std::string recordsOf(const File& file, const std::vector<std::string>& addresses) {
    std::string bytes;
    for (const std::string& address : addresses) bytes += record(file, address);
    return bytes;
  }

  void givenRecordsEverywhere(const std::vector<std::string>& addresses) {
    for (const File& file : kFiles) given(file, recordsOf(file, addresses));
  }

  void deleteSites(const Keys& keys) { deleteSiteRecords(files_, paths_, keys); }
  void deleteAll() { deleteAllRecords(files_, paths_); }

  const std::string& bytesOf(const File& file) { return memory_.bytesOf(file.path); }

  std::vector<std::string> allBytes() {
    std::vector<std::string> bytes;
    for (const File& file : kFiles) {
      bytes.push_back(memory_.holdsFile(file.path) ? bytesOf(file) : "missing");
    }
    return bytes;
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
};

TEST_F(SiteDeletionTest, BlanksTheSitesRecordInEveryFile) {
  givenRecordsEverywhere({"a.a.a", "b.b.b/page", "c.c.c"});
  deleteSites({"b.b.b/page"});
  for (const File& file : kFiles) {
    EXPECT_EQ(bytesOf(file), record(file, "a.a.a") + blank(file) + record(file, "c.c.c"));
  }
}

TEST_F(SiteDeletionTest, WritesBlanksOverEveryByteOfTheRecord) {
  const std::string fifty = "                                                  ";
  given(kNodes, record(kNodes, "a.a.a"));
  given(kInfo, record(kInfo, "a.a.a"));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNodes),
            fifty + fifty + fifty + fifty + fifty + fifty + "                      ");
  EXPECT_EQ(bytesOf(kInfo), fifty + fifty + fifty + fifty + fifty + fifty + fifty + "          ");
}

TEST_F(SiteDeletionTest, BlanksAHostsRecordsAndThoseOfItsSubSites) {
  givenRecordsEverywhere({"a.a.a/x", "b.b.b", "a.a.a", "a.a.a/x/y", "a.a.ab"});
  deleteSites({"a.a.a", "a.a.a/x", "a.a.a/x/y"});
  for (const File& file : kFiles) {
    EXPECT_EQ(bytesOf(file), blank(file) + record(file, "b.b.b") + blank(file) + blank(file) +
                                 record(file, "a.a.ab"));
  }
}

TEST_F(SiteDeletionTest, BlanksNoSubSiteThatIsNotListed) {
  givenRecordsEverywhere({"a.a.a/x", "a.a.a"});
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "a.a.a/x") + blank(kNotes));
}

TEST_F(SiteDeletionTest, LeavesTheSecondOfTwoRecordsOfOneSite) {
  given(kPurchases, record(kPurchases, "a.a.a") + record(kPurchases, "a.a.a"));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kPurchases), blank(kPurchases) + record(kPurchases, "a.a.a"));
}

TEST_F(SiteDeletionTest, TellsLetterCaseApart) {
  givenRecordsEverywhere({"a.a.a/Page", "a.a.a/page"});
  deleteSites({"a.a.a/page", "A.a.a/Page"});
  EXPECT_EQ(bytesOf(kNodes), record(kNodes, "a.a.a/Page") + blank(kNodes));
}

TEST_F(SiteDeletionTest, ReadsAnAddressUpToItsFirstNulOrBlank) {
  givenRecordsEverywhere({"a.a.a\0left over"s, "b.b.b left over", "c.c.c"});
  deleteSites({"a.a.a", "b.b.b"});
  EXPECT_EQ(bytesOf(kNodes), blank(kNodes) + blank(kNodes) + record(kNodes, "c.c.c"));
}

TEST_F(SiteDeletionTest, BlanksAnAddressOf300Characters) {
  const std::string address = "one.two.three/" + std::string(286, 'x');
  const std::string shorter = address.substr(0, 299);
  const std::string longer = address + "x";
  givenRecordsEverywhere({shorter, address});
  deleteSites({longer, address});
  EXPECT_EQ(bytesOf(kNodes), record(kNodes, shorter) + blank(kNodes));
}

TEST_F(SiteDeletionTest, NeverMatchesARecordWithoutAnAddress) {
  const std::vector<std::string> addresses{"", " a.a.a", "\0a.a.a"s};
  givenRecordsEverywhere(addresses);
  deleteSites({"", " ", "a.a.a", " a.a.a"});
  for (const File& file : kFiles) EXPECT_EQ(bytesOf(file), recordsOf(file, addresses));
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
}

TEST_F(SiteDeletionTest, DeletesFromEachFileWhatThatFileHas) {
  given(kNodes, record(kNodes, "a.a.a") + record(kNodes, "b.b.b"));
  given(kPurchases, "");
  given(kNotes, record(kNotes, "b.b.b"));
  given(kInfo, record(kInfo, "c.c.c") + record(kInfo, "a.a.a"));
  deleteSites({"a.a.a", "b.b.b"});
  EXPECT_EQ(bytesOf(kNodes), blank(kNodes) + blank(kNodes));
  EXPECT_EQ(bytesOf(kPurchases), "");
  EXPECT_EQ(bytesOf(kNotes), blank(kNotes));
  EXPECT_EQ(bytesOf(kInfo), record(kInfo, "c.c.c") + blank(kInfo));
}

TEST_F(SiteDeletionTest, MakesAWholeRecordOfATrailingPartRecordThatCounts) {
  const std::string whole = record(kNotes, "a.a.a");
  given(kNotes, record(kNotes, "b.b.b") + "a.a.a" + std::string(658, '\0'));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "b.b.b") + blank(kNotes));
  given(kNotes, record(kNotes, "b.b.b") + whole.substr(0, 662));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "b.b.b") + blank(kNotes));
}

TEST_F(SiteDeletionTest, PassesOverATrailingPartRecordThatDoesNotCount) {
  const std::string less = record(kNotes, "a.a.a").substr(0, 661);
  given(kNotes, record(kNotes, "b.b.b") + less);
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "b.b.b") + less);
  const std::string half = record(kNotes, "a.a.a").substr(0, 662);
  given(kNotes, half);
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kNotes), half);
}

TEST_F(SiteDeletionTest, BlanksARecordThatHasNo16BitNumber) {
  std::string bytes(std::size_t{32'768} * 360, ' ');
  given(kInfo, bytes + record(kInfo, "a.a.a"));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kInfo), bytes + blank(kInfo));
}

TEST_F(SiteDeletionTest, ReadsEachFileOnceHoweverManyKeysThereAre) {
  std::vector<std::string> addresses;
  for (int i = 0; i < 1'000; ++i) addresses.push_back("a.a.a/" + std::to_string(i));
  givenRecordsEverywhere(addresses);
  deleteSites(Keys(addresses.begin(), addresses.end()));
  EXPECT_LT(files_.callsOf(FileCall::ReadAt), 20);
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 4'000);
  EXPECT_EQ(bytesOf(kNodes), std::string(322'000, ' '));
}

TEST_F(SiteDeletionTest, WritesEachRecordOnceAndSyncsEachFileOnce) {
  givenRecordsEverywhere({"a.a.a", "b.b.b"});
  deleteSites({"a.a.a", "b.b.b"});
  const std::vector<FileCall> perFile{FileCall::OpenAsPermitted, FileCall::Length,
                                      FileCall::ReadAt,          FileCall::WriteAt,
                                      FileCall::WriteAt,         FileCall::Sync};
  std::vector<FileCall> expected;
  for (int i = 0; i < 4; ++i) expected.insert(expected.end(), perFile.begin(), perFile.end());
  EXPECT_EQ(files_.calls(), expected);
  for (const File& file : kFiles) EXPECT_TRUE(memory_.isSynced(file.path));
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteDeletionTest, NeitherWritesNorSyncsWhereNothingIsFound) {
  givenRecordsEverywhere({"a.a.a"});
  deleteSites({"b.b.b"});
  deleteSites({});
  for (const File& file : kFiles) EXPECT_EQ(bytesOf(file), record(file, "a.a.a"));
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
  EXPECT_EQ(files_.callsOf(FileCall::Sync), 0);
}

TEST_F(SiteDeletionTest, CreatesMissingFiles) {
  deleteSites({"a.a.a"});
  for (const File& file : kFiles) EXPECT_EQ(bytesOf(file), "");
}

TEST_F(SiteDeletionTest, StopsAtAFileThatMayNotBeWritten) {
  givenRecordsEverywhere({"a.a.a"});
  memory_.givenAReadOnlyFile(kPurchases.path, record(kPurchases, "a.a.a"));
  EXPECT_EQ(failureNumberOf([this] { deleteSites({"a.a.a"}); }), 75);
  EXPECT_EQ(bytesOf(kNodes), blank(kNodes));
  EXPECT_EQ(bytesOf(kPurchases), record(kPurchases, "a.a.a"));
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "a.a.a"));
  EXPECT_EQ(bytesOf(kInfo), record(kInfo, "a.a.a"));
}

TEST_F(SiteDeletionTest, PassesAReadOnlyFileThatHasNothingToBlank) {
  givenRecordsEverywhere({"a.a.a"});
  memory_.givenAReadOnlyFile(kPurchases.path, record(kPurchases, "b.b.b"));
  deleteSites({"a.a.a"});
  EXPECT_EQ(bytesOf(kInfo), blank(kInfo));
}

TEST_F(SiteDeletionTest, FailsInAMissingFolder) {
  paths_.setFolder("Nowhere");
  EXPECT_EQ(failureNumberOf([this] { deleteSites({"a.a.a"}); }), 76);
}

TEST_F(SiteDeletionTest, BlanksNothingInAFileThatCannotBeReadToItsEnd) {
  givenRecordsEverywhere({"a.a.a", "b.b.b"});
  // Beyond the end of every file except the notes.
  files_.spoilBytes(1'400, 1, 57);
  EXPECT_EQ(failureNumberOf([this] { deleteSites({"a.a.a"}); }), 57);
  EXPECT_EQ(bytesOf(kNodes), blank(kNodes) + record(kNodes, "b.b.b"));
  EXPECT_EQ(bytesOf(kPurchases), blank(kPurchases) + record(kPurchases, "b.b.b"));
  EXPECT_EQ(bytesOf(kNotes), record(kNotes, "a.a.a") + record(kNotes, "b.b.b"));
  EXPECT_EQ(bytesOf(kInfo), record(kInfo, "a.a.a") + record(kInfo, "b.b.b"));
}

TEST_F(SiteDeletionTest, StopsWithTheNumberOfWhateverCallFailsAndKeepsWhatIsBlanked) {
  // The writes in order, as {file, record}: in each file, key by key.
  const std::pair<int, int> writes[] = {{0, 2}, {0, 1}, {1, 1}, {1, 2}, {2, 2}, {3, 1}};
  const auto givenTheFiles = [this] {
    given(kNodes, recordsOf(kNodes, {"x.x.x", "b.b.b", "a.a.a"}));
    given(kPurchases, recordsOf(kPurchases, {"x.x.x", "a.a.a", "b.b.b"}));
    given(kNotes, recordsOf(kNotes, {"x.x.x", "x.x.x", "a.a.a"}));
    given(kInfo, recordsOf(kInfo, {"x.x.x", "b.b.b", "x.x.x"}));
  };
  givenTheFiles();
  std::vector<std::vector<std::string>> states{allBytes()};
  for (const auto& [file, index] : writes) {
    states.push_back(states.back());
    const std::size_t length = kFiles[file].length;
    states.back()[static_cast<std::size_t>(file)].replace(static_cast<std::size_t>(index) * length,
                                                          length, std::string(length, ' '));
  }
  deleteSites({"a.a.a", "b.b.b"});
  ASSERT_EQ(allBytes(), states.back());
  const std::vector<FileCall> calls = files_.calls();
  ASSERT_EQ(calls.size(), 22U);  // open, length, read, sync of each file, and the writes

  std::size_t written = 0;
  for (int call = 1; call <= 22; ++call) {
    for (const int number : kFileFailures) {
      givenTheFiles();
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { deleteSites({"a.a.a", "b.b.b"}); }), number);
      EXPECT_EQ(allBytes(), states[written]) << "call " << call << ", failure " << number;
      EXPECT_EQ(memory_.openFiles(), 0);
    }
    if (calls[static_cast<std::size_t>(call) - 1] == FileCall::WriteAt) ++written;
  }
}

TEST_F(SiteDeletionTest, LeavesFourEmptyFiles) {
  givenRecordsEverywhere({"a.a.a", "b.b.b"});
  deleteAll();
  for (const File& file : kFiles) EXPECT_EQ(bytesOf(file), "");
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(SiteDeletionTest, DeletesAllFourFilesBeforeItCreatesOne) {
  givenRecordsEverywhere({"a.a.a"});
  deleteAll();
  EXPECT_EQ(files_.calls(),
            (std::vector{FileCall::DeleteFile, FileCall::DeleteFile, FileCall::DeleteFile,
                         FileCall::DeleteFile, FileCall::OpenRandomAccess, FileCall::Sync,
                         FileCall::OpenRandomAccess, FileCall::Sync, FileCall::OpenRandomAccess,
                         FileCall::Sync, FileCall::OpenRandomAccess, FileCall::Sync}));
}

TEST_F(SiteDeletionTest, DeletesAllUpToAFileThatIsMissing) {
  given(kNodes, "nodes");
  given(kPurchases, "purchases");
  given(kInfo, "info");
  EXPECT_EQ(failureNumberOf([this] { deleteAll(); }), 53);
  EXPECT_EQ(allBytes(), (std::vector{"missing"s, "missing"s, "missing"s, "info"s}));
}

TEST_F(SiteDeletionTest, DeletesAllUpToAFileThatIsReadOnly) {
  givenRecordsEverywhere({});
  memory_.givenAReadOnlyFile(kPurchases.path, "kept");
  EXPECT_EQ(failureNumberOf([this] { deleteAll(); }), 75);
  EXPECT_EQ(allBytes(), (std::vector{"missing"s, "kept"s, ""s, ""s}));
}

TEST_F(SiteDeletionTest, FailsToDeleteAllInAMissingFolder) {
  paths_.setFolder("Nowhere");
  EXPECT_EQ(failureNumberOf([this] { deleteAll(); }), 76);
}

TEST_F(SiteDeletionTest, StopsDeletingAllWithTheNumberOfWhateverCallFails) {
  const std::string no = "missing";
  const std::vector<std::string> states[] = {
      {"n", "p", "u", "i"}, {no, "p", "u", "i"}, {no, no, "u", "i"}, {no, no, no, "i"},
      {no, no, no, no},     {"", no, no, no},    {"", no, no, no},   {"", "", no, no},
      {"", "", no, no},     {"", "", "", no},    {"", "", "", no},   {"", "", "", ""}};
  for (int call = 1; call <= 12; ++call) {
    for (const int number : kFileFailures) {
      given(kNodes, "n");
      given(kPurchases, "p");
      given(kNotes, "u");
      given(kInfo, "i");
      files_.reset();
      files_.failAtCall(call, number);
      EXPECT_EQ(failureNumberOf([this] { deleteAll(); }), number);
      EXPECT_EQ(allBytes(), states[call - 1]) << "call " << call;
      EXPECT_EQ(memory_.openFiles(), 0);
    }
  }
}

TEST_F(SiteDeletionTest, WorksOnRealFiles) {
  const test::TemporaryFolder folder;
  RealFileSystem real;
  paths_.setFolder(folder.path());
  for (const File& file : kFiles) {
    folder.givenAFile(file.path.filename(), recordsOf(file, {"a.a.a", "b.b.b", "a.a.a"}));
  }
  deleteSiteRecords(real, paths_, Keys{"b.b.b", "a.a.a"});
  for (const File& file : kFiles) {
    EXPECT_EQ(folder.bytesOf(file.path.filename()),
              blank(file) + blank(file) + record(file, "a.a.a"));
  }
  deleteAllRecords(real, paths_);
  for (const File& file : kFiles) EXPECT_EQ(folder.bytesOf(file.path.filename()), "");
}

// Deletes key by key and record by record, which is slow but obviously correct.
class PlainDeletion {
 public:
  explicit PlainDeletion(std::size_t writesAllowed) : writesLeft_(writesAllowed) {}

  // False when a write was not allowed.
  bool run(std::vector<std::string>& files, const std::vector<std::string_view>& keys) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      for (const std::string_view key : keys) {
        if (!blankFirst(files[i], kFiles[i].length, key)) return false;
      }
    }
    return true;
  }

 private:
  bool blankFirst(std::string& file, std::size_t length, std::string_view key) {
    const double quotient = static_cast<double>(file.size()) / static_cast<double>(length);
    const auto count = static_cast<std::size_t>(std::nearbyint(quotient));
    for (std::size_t start = 0; start < count * length; start += length) {
      std::string field = file.substr(start, 300);
      field.resize(300, '\0');
      const std::string address = textOf(field);
      if (address.empty() || address != key) continue;
      if (writesLeft_ == 0) return false;
      --writesLeft_;
      file.resize(std::max(file.size(), start + length));
      std::fill_n(file.begin() + static_cast<std::ptrdiff_t>(start), length, ' ');
      return true;
    }
    return true;
  }

  static std::string textOf(const std::string& field) {
    if (field[0] == ' ') return "";
    const bool hasNul = field.find('\0') != std::string::npos;
    std::string text;
    for (const char character : field) {
      if (character == (hasNul ? '\0' : ' ')) break;
      text += character;
    }
    return text;
  }

  std::size_t writesLeft_;
};

class RandomSites {
 public:
  explicit RandomSites(unsigned seed) : random_(seed) {}

  std::size_t below(std::size_t bound) { return random_() % bound; }

  // The addresses are short, so many are equal; letter case, NULs and blanks vary.
  std::string address() {
    std::string text;
    for (std::size_t length = below(4); length > 0; --length) text += "aAb/ \0"s[below(6)];
    return below(20) == 0 ? text + std::string(300, 'a') : text;
  }

  std::string fileOf(const File& file) {
    std::string bytes;
    for (std::size_t records = below(40); records > 0; --records) bytes += record(file, address());
    bytes += record(file, address()).substr(0, below(2) == 0 ? 0 : below(file.length));
    if (below(4) == 0) std::replace(bytes.begin(), bytes.end(), ' ', '\0');
    return bytes;
  }

  // Without duplicates, as in the tree.
  std::vector<std::string> keys() {
    std::vector<std::string> keys;
    for (std::size_t count = below(12); count > 0; --count) {
      const std::string key = address();
      if (std::ranges::find(keys, key) == keys.end()) keys.push_back(key);
    }
    return keys;
  }

 private:
  std::mt19937 random_;
};

TEST_F(SiteDeletionTest, DoesWhatGoingThroughTheFilesKeyByKeyDoes) {
  std::size_t blanked = 0;
  int stopped = 0;
  for (unsigned seed = 0; seed < 1'500; ++seed) {
    RandomSites sites(seed);
    std::vector<std::string> expected;
    for (const File& file : kFiles) {
      expected.push_back(sites.fileOf(file));
      given(file, expected.back());
    }
    const std::vector<std::string> keys = sites.keys();
    const Keys views(keys.begin(), keys.end());
    const std::size_t writesAllowed = sites.below(30);
    files_.reset();
    files_.failAtCall(FileCall::WriteAt, static_cast<int>(writesAllowed) + 1, 61);

    const bool isToSucceed = PlainDeletion(writesAllowed).run(expected, views);
    EXPECT_EQ(failureNumberOf([&] { deleteSites(views); }), isToSucceed ? 0 : 61);
    ASSERT_EQ(allBytes(), expected) << "seed " << seed;
    blanked += static_cast<std::size_t>(files_.callsOf(FileCall::WriteAt));
    if (!isToSucceed) ++stopped;
  }
  // Otherwise it would only have compared unchanged files.
  EXPECT_GT(blanked, 3'000U);
  EXPECT_GT(stopped, 50);
}

}  // namespace
}  // namespace quorrix
