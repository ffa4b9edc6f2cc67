#include "records/purchases_file.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/failure_number.h"
#include "support/faulty_file_system.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::failureNumberOf;

std::string padded(std::string text, std::size_t width) {
  text.resize(width, ' ');
  return text;
}

// A record as stored in the file; only its date and its item are not empty.
std::string record(const std::string& key, const std::string& date, const std::string& item) {
  return padded(key, 300) + padded(date, 25) + "~           " + padded("~", 50) + padded(item, 50) +
         padded("~", 100) + "~    ";
}

Purchase purchaseOf(std::string item, std::string dateStamp) {
  Purchase purchase;
  purchase.item = std::move(item);
  purchase.dateStamp = std::move(dateStamp);
  return purchase;
}

class PurchasesFileTest : public testing::Test {
 protected:
  PurchasesFileTest() {
    paths_.setFolder("Data");
    memory_.givenAFolder("Data");
  }

  void givenTheFile(std::string bytes) {
    memory_.givenAFile("Data/purchases.dat", std::move(bytes));
  }

  const std::string& file() { return memory_.bytesOf("Data/purchases.dat"); }

  // What the list shows for "a.b.c", one line per purchase.
  std::string listed() {
    std::string lines;
    purchases_.list("a.b.c", [&lines](const PurchaseSummary& purchase) {
      lines += purchase.item + '|' + purchase.price + '|' + purchase.dateStamp + '\n';
    });
    return lines;
  }

  test::MemoryFileSystem memory_;
  test::FaultyFileSystem files_{memory_};
  WorkingPaths paths_;
  PurchasesFile purchases_{files_, paths_};
};

TEST_F(PurchasesFileTest, CreatesAMissingFileEmptyOnListing) {
  EXPECT_EQ(listed(), "");
  EXPECT_EQ(file(), "");
}

TEST_F(PurchasesFileTest, EndsEveryTextWithATilde) {
  purchases_.save("a.b.c", {.item = "Lamp",
                            .price = "12.50",
                            .quantity = "2",
                            .paymentMethod = "Card",
                            .description = "red\r\nblue",
                            .dateStamp = "7/9/26 3:04:05 PM"});
  EXPECT_EQ(file(), "a.b.c" + std::string(295, ' ') +
                        "7/9/26 3:04:05 PM~       "
                        "12.50~      "
                        "Card~" +
                        std::string(45, ' ') + "Lamp~" + std::string(45, ' ') + "red\r\nblue~" +
                        std::string(90, ' ') + "2~   ");
  EXPECT_TRUE(memory_.isSynced("Data/purchases.dat"));
}

TEST_F(PurchasesFileTest, SavesEmptyTextsAsTildes) {
  purchases_.save("a.b.c", {});
  EXPECT_EQ(file(), record("a.b.c", "~", "~"));
  EXPECT_EQ(listed(), "||\n");
}

TEST_F(PurchasesFileTest, AddsARecordEvenUnderADateThatIsThere) {
  givenTheFile(record("a.b.c", "d~", "first~"));
  purchases_.save("a.b.c", purchaseOf("second", "d"));
  EXPECT_EQ(file(), record("a.b.c", "d~", "first~") + record("a.b.c", "d~", "second~"));
}

TEST_F(PurchasesFileTest, ReadsTheTextsOfOnePurchase) {
  givenTheFile(record("d.e.f", "d~", "other~") + padded("a.b.c", 300) + padded("d~", 25) +
               padded("9~", 12) + padded("cash~", 50) + padded("two words~", 50) +
               padded("x\r\ny~", 100) + "1~   ");
  const auto purchase = purchases_.read("a.b.c", "d");
  ASSERT_TRUE(purchase.has_value());
  EXPECT_EQ(purchase->item, "two words");
  EXPECT_EQ(purchase->price, "9");
  EXPECT_EQ(purchase->quantity, "1");
  EXPECT_EQ(purchase->paymentMethod, "cash");
  EXPECT_EQ(purchase->description, "x\r\ny");
  EXPECT_EQ(purchase->dateStamp, "d");
}

TEST_F(PurchasesFileTest, CutsATextAtTheTildeInsideIt) {
  purchases_.save("a.b.c", purchaseOf("a~b", "d~e"));
  EXPECT_EQ(file(), record("a.b.c", "d~e~", "a~b~"));
  EXPECT_EQ(listed(), "a||d\n");
  EXPECT_TRUE(purchases_.read("a.b.c", "d").has_value());
  EXPECT_FALSE(purchases_.read("a.b.c", "d~e").has_value());
}

TEST_F(PurchasesFileTest, ReadsAndRemovesTheFirstOfEqualDates) {
  const std::string second = record("a.b.c", "d~", "second~");
  givenTheFile(record("a.b.c", "d~", "first~") + second);
  EXPECT_EQ(listed(), "first||d\nsecond||d\n");
  EXPECT_EQ(purchases_.read("a.b.c", "d").value().item, "first");
  purchases_.remove("a.b.c", "d");
  EXPECT_EQ(file(), std::string(542, ' ') + second);
  EXPECT_EQ(purchases_.read("a.b.c", "d").value().item, "second");
}

TEST_F(PurchasesFileTest, ListsTheSitesOwnInFileOrder) {
  givenTheFile(record("a.b.c", "2~", "z~") + record("a.b.c/1", "3~", "no~") +
               std::string(542, ' ') + record("A.b.c", "4~", "no~") + record("a.b.c", "1~", "a~"));
  EXPECT_EQ(listed(), "z||2\na||1\n");
}

TEST_F(PurchasesFileTest, FailsAtADateStampWithoutATilde) {
  givenTheFile(record("a.b.c", std::string(25, 'd'), "i~") + record("a.b.c", "d~", "i~"));
  EXPECT_EQ(failureNumberOf([this] { return listed(); }), 5);
  EXPECT_EQ(failureNumberOf([this] { return purchases_.read("a.b.c", "d"); }), 5);
  EXPECT_EQ(failureNumberOf([this] { purchases_.remove("a.b.c", "d"); }), 5);
  EXPECT_EQ(failureNumberOf([this] { purchases_.save("a.b.c", {}); }), 5);
  EXPECT_EQ(file().size(), 1084U);
}

TEST_F(PurchasesFileTest, ReadsAFieldWithoutATildeWhole) {
  givenTheFile(padded("a.b.c", 300) + padded("d~", 25) + std::string(12, '9') +
               padded("two words", 50) + padded("i~", 50) + std::string(100, 'x') + "12345");
  const auto purchase = purchases_.read("a.b.c", "d");
  ASSERT_TRUE(purchase.has_value());
  EXPECT_EQ(purchase->item, "i");
  EXPECT_EQ(purchase->price, "999999999999");
  EXPECT_EQ(purchase->quantity, "12345");
  EXPECT_EQ(purchase->paymentMethod, "two words");
  EXPECT_EQ(purchase->description, std::string(100, 'x'));
  purchases_.remove("a.b.c", "d");
  EXPECT_EQ(file(), std::string(542, ' '));
}

TEST_F(PurchasesFileTest, ListsAnItemAndAPriceWithoutATildeWhole) {
  givenTheFile(padded("a.b.c", 300) + padded("d~", 25) + std::string(12, '9') + padded("~", 50) +
               padded("two words", 50) + padded("~", 100) + "~    " + record("a.b.c", "e~", "i~"));
  EXPECT_EQ(listed(), "two words|999999999999|d\ni||e\n");
}

TEST_F(PurchasesFileTest, ReadsABlankFieldWithoutATildeAsEmpty) {
  givenTheFile(padded("a.b.c", 300) + padded("d~", 25) + padded("~", 12) + padded("~", 50) +
               padded("i~", 50) + std::string(100, ' ') + "~    ");
  EXPECT_EQ(purchases_.read("a.b.c", "d").value().description, "");
}

TEST_F(PurchasesFileTest, ListsWhatStandsBeforeADateStampWithoutATilde) {
  givenTheFile(record("a.b.c", "d~", "i~") + record("a.b.c", std::string(25, 'd'), "i~"));
  std::vector<std::string> items;
  const int failed = failureNumberOf([&] {
    purchases_.list("a.b.c",
                    [&items](const PurchaseSummary& purchase) { items.push_back(purchase.item); });
  });
  EXPECT_EQ(failed, 5);
  EXPECT_EQ(items, std::vector<std::string>{"i"});
}

TEST_F(PurchasesFileTest, PassesOverAnotherSitesDateStampWithoutATilde) {
  givenTheFile(record("d.e.f", std::string(25, 'd'), "i~") + record("a.b.c", "d~", "i~"));
  EXPECT_EQ(listed(), "i||d\n");
}

TEST_F(PurchasesFileTest, ListsATrailingPartRecordOfTheSiteByItsDateStamp) {
  givenTheFile(record("a.b.c", "d~", "i~").substr(0, 310));
  EXPECT_EQ(listed(), "||d\n");
  EXPECT_EQ(purchases_.read("a.b.c", "d").value().item, "");
  givenTheFile(record("a.b.c", "d~", "i~").substr(0, 301));
  EXPECT_EQ(failureNumberOf([this] { return listed(); }), 5);
}

TEST_F(PurchasesFileTest, WritesNothingWhereThereIsNothingToRemove) {
  givenTheFile(record("a.b.c", "d~", "i~"));
  purchases_.remove("a.b.c", "e");
  purchases_.remove("d.e.f", "d");
  EXPECT_EQ(file(), record("a.b.c", "d~", "i~"));
  EXPECT_EQ(files_.callsOf(test::FileCall::WriteAt), 0);
}

TEST_F(PurchasesFileTest, NumbersNoRecordPast32767) {
  const std::string full(std::size_t{542} * 32'767, ' ');
  givenTheFile(full);
  EXPECT_EQ(listed(), "");
  EXPECT_EQ(failureNumberOf([this] { purchases_.save("a.b.c", {}); }), 6);
  EXPECT_TRUE(file() == full);
  givenTheFile(full + record("d.e.f", "d~", "i~"));
  EXPECT_EQ(failureNumberOf([this] { return listed(); }), 6);
}

TEST_F(PurchasesFileTest, ListsAReadOnlyFileAndFailsToChangeIt) {
  memory_.givenAReadOnlyFile("Data/purchases.dat", record("a.b.c", "d~", "i~"));
  EXPECT_EQ(listed(), "i||d\n");
  EXPECT_EQ(failureNumberOf([this] { purchases_.save("a.b.c", {}); }), 75);
  EXPECT_EQ(failureNumberOf([this] { purchases_.remove("a.b.c", "d"); }), 75);
  EXPECT_EQ(file(), record("a.b.c", "d~", "i~"));
}

}  // namespace
}  // namespace quorrix
