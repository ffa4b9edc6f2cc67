// Reads the input as the address that a browser shows, and processes it like a visit:
// checks it, cuts it, splits it into levels and adds it to a tree.
#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "datafiles/site_address.h"
#include "fuzz/require.h"
#include "platform/failure.h"
#include "sitetree/site_tree.h"

namespace quorrix {
namespace {

using test::require;

void checkValidity(std::string_view address, const AddressCheck& check) {
  require(std::string_view("NSFU").find(check.protocolFlag) != std::string_view::npos,
          "the flag is one of four letters");
  require((check.protocolFlag == 'F') == address.starts_with("ftp://"), "F is for ftp alone");
  if (!check.isValid) return;
  require(check.protocolFlag != 'F', "ftp is never valid");
  require(std::count(address.begin(), address.end(), '.') >= 2, "a valid address has two dots");
  require(address.size() >= 3, "a valid address has two dots and something behind");
}

void checkCut(std::string_view address, std::string_view stored) {
  std::size_t length = address.size();
  if (address.ends_with('/')) --length;
  const std::string_view withoutSlash = address.substr(0, length);
  if (address.find("http://") != std::string_view::npos) length -= std::min<std::size_t>(7, length);
  if (address.find("https://") != std::string_view::npos) {
    length -= std::min<std::size_t>(8, length);
  }
  require(stored.size() == length, "the cut takes the schemes' lengths and one slash");
  require(withoutSlash.ends_with(stored), "the cut is made in front and behind only");
}

void checkLevels(std::string_view stored, const AddressLevels& levels) {
  std::string joined;
  for (std::size_t k = 1; k <= levels.count(); ++k) {
    if (k > 1) joined += '/';
    joined += levelText(levels, k);
    require(levelKey(levels, k) == joined, "a key is the segments so far, joined");
    require(levelText(levels, k).find('/') == std::string_view::npos, "no text has a slash");
  }
  require(joined == stored, "the last key is the whole address");
}

void checkTree(const AddressLevels& levels) {
  SiteTree tree;
  tree.addRoot();
  const bool isRoot = levelKey(levels, 1) == "ROOT";
  const NodeId added = tree.addMissingLevels(levels, 'N');
  require(tree.key(added) == levels.address(), "the node is the address's");
  require(tree.size() == 1 + levels.count() - (isRoot ? 1 : 0), "an empty tree lacks every level");
  require(tree.addMissingLevels(levels, 'S') == added, "what was added is found");
  require(tree.size() == 1 + levels.count() - (isRoot ? 1 : 0), "what was added is not missing");
  NodeId parent = tree.root();
  for (std::size_t k = 1; k <= levels.count(); ++k) {
    const NodeId node = tree.find(levelKey(levels, k));
    require(node != kNoNode, "every level is found");
    if (node == tree.root()) continue;
    require(tree.text(node) == levelText(levels, k), "a node's text is its segment");
    require(tree.parent(node) == parent, "a level is below the one before");
    require(tree.tag(node) == 'N', "a node keeps its tag");
    parent = node;
  }
}

void visit(std::string_view address) {
  const AddressCheck check = validateAddress(address);
  checkValidity(address, check);
  const std::string stored = storedAddress(address);
  checkCut(address, stored);
  require(!check.isValid || !stored.empty(), "something is left of a valid address");
  const auto segments = std::count(stored.begin(), stored.end(), '/') + 1;
  try {
    const AddressLevels levels = addressLevels(stored);
    require(segments <= 50, "a 51st segment fails");
    require(static_cast<std::ptrdiff_t>(levels.count()) == segments, "every slash ends a level");
    checkLevels(stored, levels);
    checkTree(levels);
  } catch (const Failure& raised) {
    require(raised.number() == 9 && segments > 50, "only a 51st segment fails, with 9");
  }
}

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  quorrix::visit({reinterpret_cast<const char*>(data), size});
  return 0;
}
