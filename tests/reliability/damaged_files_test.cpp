// Data files with any damage: the program never crashes on them, and shows what is
// intact, in the damaged file and in the others.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "reliability/kept_data.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::DataFile;
using test::MemoryFileSystem;

const std::string kFolder = "Data/";
const std::string kArchive = "/Quorrix/Archives/May";

class DamagedFiles : public testing::Test {
 protected:
  ~DamagedFiles() override {
    std::cout << "measured: " << cases_ << " damaged files read, " << facts_
              << " intact texts expected and shown\n";
  }

  // Reads a data folder in which the file with this name has these bytes. Expects that
  // every fact is shown that depends only on the other files, or on one of the damaged
  // file's records that `isIntact`.
  template <typename IsIntact>
  std::set<std::string> expectIntactShown(const std::string& name, const std::string& bytes,
                                          IsIntact isIntact) {
    MemoryFileSystem memory;
    memory.givenAFile(kFolder + "load.txt", kArchive + "\r\n");
    for (const DataFile& file : kept_) memory.givenAFile(kFolder + file.name, file.bytes());
    memory.givenAFile(kFolder + name, bytes);
    std::set<std::string> shown = test::ShownData(memory, "").read();
    ++cases_;
    for (const DataFile& file : kept_) {
      for (std::size_t i = 0; i < file.facts.size(); ++i) {
        if (file.name == name && !isIntact(i)) continue;
        EXPECT_TRUE(shown.contains(file.facts[i])) << file.facts[i];
        ++facts_;
      }
    }
    EXPECT_TRUE(name == "load.txt" || shown.contains("load.txt: " + kArchive));
    return shown;
  }

  std::set<std::string> expectOthersShown(const std::string& name, const std::string& bytes) {
    return expectIntactShown(name, bytes, [](std::size_t) { return false; });
  }

  const std::vector<DataFile> kept_ = test::keptData();

 private:
  int cases_ = 0;
  int facts_ = 0;
};

TEST_F(DamagedFiles, ThatAreWholeShowEverything) {
  for (const DataFile& file : kept_) {
    expectIntactShown(file.name, file.bytes(), [](std::size_t) { return true; });
  }
}

TEST_F(DamagedFiles, ThatAreTruncatedAtAnyLengthShowTheirWholeRecords) {
  for (const DataFile& file : kept_) {
    for (std::size_t length = 0; length <= file.bytes().size(); ++length) {
      SCOPED_TRACE(std::string(file.name) + " of " + std::to_string(length) + " bytes");
      expectIntactShown(file.name, file.bytes().substr(0, length),
                        [&](std::size_t i) { return (i + 1) * file.recordLength <= length; });
    }
  }
}

TEST_F(DamagedFiles, WithAnyByteFlippedShowTheirOtherRecords) {
  for (const DataFile& file : kept_) {
    for (std::size_t at = 0; at < file.bytes().size(); ++at) {
      for (const int flipped : {0xFF, 0x20}) {  // all bits; NUL for a blank
        SCOPED_TRACE(std::string(file.name) + " at byte " + std::to_string(at));
        std::string bytes = file.bytes();
        bytes[at] = static_cast<char>(bytes[at] ^ flipped);
        expectIntactShown(file.name, bytes,
                          [&](std::size_t i) { return i != at / file.recordLength; });
      }
    }
  }
}

TEST_F(DamagedFiles, OfRandomBytesDoNotKeepTheOthersFromBeingShown) {
  constexpr int kRounds = 300;
  std::mt19937 random(1);
  for (const DataFile& file : kept_) {
    for (int round = 0; round < kRounds; ++round) {
      SCOPED_TRACE(std::string(file.name) + " in round " + std::to_string(round));
      std::string bytes(random() % 5000, '\0');
      std::ranges::generate(bytes, [&] { return static_cast<char>(random()); });
      expectOthersShown(file.name, bytes);
    }
  }
}

TEST_F(DamagedFiles, WithRandomBytesAfterTheRecordsShowTheRecords) {
  std::mt19937 random(2);
  for (const DataFile& file : kept_) {
    for (int round = 0; round < 100; ++round) {
      std::string rest(random() % 5000, '\0');
      std::ranges::generate(rest, [&] { return static_cast<char>(random()); });
      expectIntactShown(file.name, file.bytes() + rest, [](std::size_t) { return true; });
    }
  }
}

TEST_F(DamagedFiles, WithTenMillionBlanksOrNulsAfterTheRecordsShowTheRecords) {
  for (const DataFile& file : kept_) {
    for (const char filler : {' ', '\0'}) {
      expectIntactShown(file.name, file.bytes() + std::string(10'000'000, filler),
                        [](std::size_t) { return true; });
    }
  }
}

TEST_F(DamagedFiles, OfTenMillionBlanksOrNulsShowNothing) {
  for (const DataFile& file : kept_) {
    for (const char filler : {' ', '\0'}) {
      const auto shown = expectOthersShown(file.name, std::string(10'000'000, filler));
      for (const std::string& fact : file.facts) EXPECT_FALSE(shown.contains(fact)) << fact;
    }
  }
}

TEST_F(DamagedFiles, NamedLoadTxtShowTheFirstLineThatIsLeft) {
  const std::string line = kArchive + "\r\n";
  for (std::size_t length = 0; length <= line.size(); ++length) {
    const std::string left = kArchive.substr(0, length);
    EXPECT_TRUE(expectOthersShown("load.txt", line.substr(0, length)).contains("load.txt: " + left))
        << length;
  }
  for (std::size_t at = 0; at < line.size(); ++at) {
    for (const int flipped : {0xFF, 0x20}) {
      std::string bytes = line;
      bytes[at] = static_cast<char>(bytes[at] ^ flipped);
      const std::string left = bytes.substr(0, bytes.find_first_of("\r\n"));
      EXPECT_TRUE(expectOthersShown("load.txt", bytes).contains("load.txt: " + left)) << at;
    }
  }
}

}  // namespace
}  // namespace quorrix
