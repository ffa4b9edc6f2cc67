#include "main_window/help_file.h"

#include <gtest/gtest.h>

#include "platform/failure.h"
#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::FaultyFileSystem;
using test::FileCall;
using test::MemoryFileSystem;

const Path kManual = "/Quorrix/Quorrix.hlp";

class HelpFile : public testing::Test {
 protected:
  void givenBytes(std::string bytes) { memory_.givenAFile(kManual, std::move(bytes)); }
  std::string read() { return readHelpFile(files_, kManual); }
  int failure() {
    return test::failureNumberOf([this] { return read(); });
  }

  MemoryFileSystem memory_;
  FaultyFileSystem files_{memory_};
};

TEST_F(HelpFile, IsReadWhole) {
  givenBytes("<h1>Caf\xc3\xa9 \xe2\x80\x93 \xf0\x9f\x90\x8c</h1>\r\n");
  EXPECT_EQ(read(), "<h1>Caf\xc3\xa9 \xe2\x80\x93 \xf0\x9f\x90\x8c</h1>\r\n");
  EXPECT_EQ(memory_.openFiles(), 0);
}

TEST_F(HelpFile, IsOnlyRead) {
  memory_.givenAReadOnlyFile(kManual, "<h1>Help</h1>");
  EXPECT_EQ(read(), "<h1>Help</h1>");
  EXPECT_EQ(files_.callsOf(FileCall::OpenRandomAccess), 0);
  EXPECT_EQ(files_.callsOf(FileCall::WriteAt), 0);
}

TEST_F(HelpFile, CanBeMissingAloneOrWithItsFolder) {
  EXPECT_EQ(failure(), 76);
  memory_.givenAFolder("/Quorrix");
  EXPECT_EQ(failure(), 53);
  EXPECT_FALSE(memory_.holdsFile(kManual));
}

TEST_F(HelpFile, IsNoFolder) {
  memory_.givenAFolder(kManual);
  EXPECT_EQ(failure(), 75);
}

TEST_F(HelpFile, IsNotEmpty) {
  givenBytes("");
  EXPECT_EQ(failure(), 321);
}

TEST_F(HelpFile, IsAtMostFourMegabytes) {
  givenBytes(std::string(4194304, 'x'));
  EXPECT_EQ(read().size(), 4194304U);
  files_.reset();
  givenBytes(std::string(4194305, 'x'));
  EXPECT_EQ(failure(), 321);
  EXPECT_EQ(files_.callsOf(FileCall::ReadAt), 0);
}

struct NoText {
  const char* what;
  std::string bytes;
};

TEST_F(HelpFile, IsUtf8Text) {
  const NoText cases[] = {
      {"a program", std::string("\x7f\x45LF\x02\x01\x01\0\0\0", 10)},
      {"NUL in the middle", std::string("<p>one\0two", 10)},
      {"Windows-1252", "<p>Caf\xe9</p>"},
      {"UTF-16", std::string("\xff\xfe<\0p\0", 6)},
      {"a stray continuation", "a\x80z"},
      {"a character cut at the end", "abc\xe2\x80"},
      {"a character of two bytes cut by a letter", "\xc3z"},
      {"a character of four bytes cut by a letter", "\xf0\x9f\x90z"},
      {"a longer form of a slash", "\xc0\xaf"},
      {"a longer form in three bytes", "\xe0\x80\xaf"},
      {"a longer form in four bytes", "\xf0\x80\x80\xaf"},
      {"half of a pair", "\xed\xa0\x80"},
      {"beyond the last character", "\xf4\x90\x80\x80"},
      {"no first byte at all", "\xf5\x80\x80\x80"},
  };
  for (const NoText& noText : cases) {
    givenBytes(noText.bytes);
    EXPECT_EQ(failure(), 321) << noText.what;
  }
}

TEST_F(HelpFile, MayHoldTheFirstAndTheLastCharacterOfEachLength) {
  const std::string edges =
      "\x01\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf\xee\x80\x80\xef\xbf\xbf"
      "\xf0\x90\x80\x80\xf4\x8f\xbf\xbf";
  givenBytes(edges);
  EXPECT_EQ(read(), edges);
}

TEST_F(HelpFile, CutWhileItIsReadIsNoManual) {
  givenBytes("<h1>Help</h1>");
  files_.cutReadShort(1, 5);
  EXPECT_EQ(failure(), 321);
}

TEST_F(HelpFile, HandsOnWhatTheFileSystemFailsWith) {
  givenBytes("<h1>Help</h1>");
  for (const FileCall call : {FileCall::OpenForReading, FileCall::Length, FileCall::ReadAt}) {
    files_.failAtCall(call, 1, 57);
    EXPECT_EQ(failure(), 57);
    EXPECT_EQ(memory_.openFiles(), 0);
  }
}

}  // namespace
}  // namespace quorrix
