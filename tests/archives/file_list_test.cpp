#include "archives/file_list.h"

#include "archives/archive_stage.h"
#include "support/failure_number.h"

namespace quorrix {
namespace {

using test::failureNumberOf;
using test::Texts;

class FileListTest : public test::ArchiveStage {
 protected:
  FileList list_{files_, "/opt/quorrix/Archives", nullptr};
};

TEST_F(FileListTest, ShowsTheFolderItStartsOn) {
  EXPECT_EQ(rowsOf(list_), Texts{"readme.txt"});
  EXPECT_EQ(list_.names(), std::vector<Path>{"readme.txt"});
}

TEST_F(FileListTest, IsEmptyWhereTheFolderItStartsOnCannotBeRead) {
  const FileList list(files_, "/media/empty", nullptr);
  EXPECT_EQ(list.count(), 0);
  EXPECT_TRUE(list.names().empty());
}

TEST_F(FileListTest, ShowsAllFilesByNameAndNoFolders) {
  disk_.givenAFile("/opt/quorrix/Archives/May/NODES.DAT", "");
  disk_.givenAFile("/opt/quorrix/Archives/May/.hidden", "");
  disk_.givenAFolder("/opt/quorrix/Archives/May/below");
  list_.setPath("/opt/quorrix/Archives/May");
  EXPECT_EQ(rowsOf(list_), (Texts{".hidden", "NODES.DAT", "nodes.dat", "notes.dat"}));
}

TEST_F(FileListTest, StaysWhenAFolderCannotBeRead) {
  list_.setPath("/opt/quorrix/Archives/May");
  EXPECT_EQ(failureNumberOf([&] {
              list_.setPath("/media/empty");
              return 0;
            }),
            71);
  EXPECT_EQ(rowsOf(list_), (Texts{"nodes.dat", "notes.dat"}));
  EXPECT_EQ(list_.names(), (std::vector<Path>{"nodes.dat", "notes.dat"}));
}

TEST_F(FileListTest, ReadsTheSameFolderAnew) {
  list_.setPath("/opt/quorrix/Archives/May");
  disk_.givenAFile("/opt/quorrix/Archives/May/info.dat", "");
  list_.setPath("/opt/quorrix/Archives/May");
  EXPECT_EQ(rowsOf(list_), (Texts{"info.dat", "nodes.dat", "notes.dat"}));
}

TEST_F(FileListTest, ShowsNamesAsTheyAreAndKeepsTheirBytes) {
  disk_.givenAFile("/odd/<b>&A [*]", "");
  disk_.givenAFile("/odd/caf\xE9", "");
  list_.setPath("/odd");
  EXPECT_EQ(rowsOf(list_), (Texts{"<b>&A [*]", "caf\u00e9"}));
  EXPECT_EQ(list_.names(), (std::vector<Path>{"<b>&A [*]", "caf\xE9"}));
}

}  // namespace
}  // namespace quorrix
