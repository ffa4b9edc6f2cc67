// Reads the input as a site file, loads it, updates one of its records and appends one,
// and compares this with what a simple reading of the same bytes expects.
//
// The input's first byte chooses the address to record: an odd byte takes it from a
// record of the file, an even one takes half as many bytes from the input. The rest is
// the file.
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "sitetree/site_file.h"
#include "support/fake_clock.h"
#include "support/memory_file_system.h"

namespace quorrix {
namespace {

using test::require;

constexpr std::size_t kRecord = 322;
constexpr std::size_t kAddress = 300;
constexpr const char* kStamp = "7/9/26 3:04:05 PM~   ";

std::string recordAt(const std::string& file, std::size_t number) {
  std::string record;
  if ((number - 1) * kRecord < file.size()) record = file.substr((number - 1) * kRecord, kRecord);
  record.resize(kRecord, '\0');
  return record;
}

std::string addressIn(const std::string& record) {
  const std::string field = record.substr(0, kAddress);
  if (field[0] == ' ') return "";
  if (field.find('\0') != std::string::npos) return field.substr(0, field.find('\0'));
  return field.substr(0, field.find(' '));
}

std::size_t countedRecords(const std::string& file) {
  const std::size_t whole = file.size() / kRecord;
  const std::size_t rest = file.size() % kRecord;
  if (rest == 161) return whole + whole % 2;
  return rest > 161 ? whole + 1 : whole;
}

std::size_t begunRecords(const std::string& file) { return (file.size() + 321) / kRecord; }

// Adds the key of every level of one address, or nothing if the address has more than 50.
void addKeys(const std::string& address, std::set<std::string>& keys) {
  std::set<std::string> levels{address};
  std::size_t segments = 1;
  for (std::size_t i = 0; i < address.size(); ++i) {
    if (address[i] != '/') continue;
    levels.insert(address.substr(0, i));
    ++segments;
  }
  if (segments <= 50) keys.merge(levels);
}

class Session {
 public:
  explicit Session(const std::string& bytes) {
    paths_.setFolder("Data");
    memory_.givenAFile(paths_.currentNodesFile, bytes);
  }

  void load() {
    const std::string before = file();
    SiteTree tree;
    siteFile_.loadNodes(tree);
    std::set<std::string> keys{"ROOT"};
    for (std::size_t number = 1; number <= countedRecords(before); ++number) {
      const std::string address = addressIn(recordAt(before, number));
      if (!address.empty()) addKeys(address, keys);
    }
    require(tree.size() == keys.size(), "the tree has a node per key");
    std::size_t children = 0;
    for (NodeId node = 0; node < tree.size(); ++node) {
      require(keys.contains(std::string(tree.key(node))), "every node's key is in the file");
      require(tree.find(tree.key(node)) == node, "every node is found by its key");
      children += tree.childCount(node);
    }
    require(children == tree.size() - 1, "every node but the root is one node's child");
    require(file() == before, "loading changes no byte");
  }

  void update(const std::string& address) {
    std::string expected = file();
    std::size_t found = 0;
    for (std::size_t number = 1; number <= begunRecords(expected) && found == 0; ++number) {
      if (addressIn(recordAt(expected, number)) == address) found = number;
    }
    if (found != 0) put(expected, found, recordAt(expected, found).substr(0, kAddress));
    siteFile_.updateSiteRecord(address, 'S');
    require(file() == expected, "an update changes one record's flag and stamp");
  }

  void append(const std::string& address) {
    std::string expected = file();
    std::string field = address.substr(0, kAddress);
    field.resize(kAddress, ' ');
    put(expected, countedRecords(expected) + 1, field);
    siteFile_.appendSiteRecord(address, 'S');
    require(file() == expected, "a new record follows the last one");
  }

  const std::string& file() const { return memory_.bytesOf(paths_.currentNodesFile); }

 private:
  static void put(std::string& file, std::size_t number, const std::string& address) {
    const std::size_t offset = (number - 1) * kRecord;
    if (file.size() < offset + kRecord) file.resize(offset + kRecord, '\0');
    file.replace(offset, kRecord, address + 'S' + kStamp);
  }

  test::MemoryFileSystem memory_;
  test::FakeClock clock_{
      {.year = 2026, .month = 7, .day = 9, .hour = 15, .minute = 4, .second = 5}};
  WorkingPaths paths_;
  SiteFile siteFile_{memory_, clock_, paths_};
};

void run(std::string_view input) {
  const auto choice = static_cast<unsigned char>(input.front());
  input.remove_prefix(1);
  std::string address;
  if (choice % 2 == 0) {
    address = input.substr(0, choice / 2);
    input.remove_prefix(address.size());
  }
  const std::string file(input);
  if (choice % 2 == 1) address = addressIn(recordAt(file, choice / 2 + 1U));

  Session session(file);
  session.load();
  // The program never records an empty address.
  if (!address.empty()) {
    session.update(address);
    session.append(address);
    session.update(address);
  }
  session.load();
}

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 0) quorrix::run({reinterpret_cast<const char*>(data), size});
  return 0;
}
