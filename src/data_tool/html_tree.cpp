#include "data_tool/html_tree.h"

#include <set>

#include "data_tool/html_text.h"

namespace quorrix {
namespace {

// Isolates the text, so that its direction and that of the surrounding text do not affect each
// other. The page's style does the same for links.
std::string isolated(std::string_view text) { return "<bdi>" + htmlText(text) + "</bdi>"; }

std::string linkTo(const SiteEntry& site, std::string_view name) {
  return "<a href=\"" + htmlAddress(webAddress(site)) + "\">" + htmlText(name) + "</a>";
}

std::string visitOf(const SiteEntry& site) {
  std::string visit(shownScheme(site));
  if (site.visited) {
    visit += " <time>" + isoTime(*site.visited, ' ') + "</time>";
  } else if (!site.unreadableStamp.empty()) {
    visit += " <bdi>" + htmlText(site.unreadableStamp) + "</bdi>";
  }
  return visit;
}

}  // namespace

bool HtmlTree::write() {
  if (levels_.childCount(levels_.root()) == 0 && tree_.outsiders().empty()) return false;
  output_.write("<ul>\n");
  addLevelsBelow(levels_.root());
  addOutsiders();
  output_.write("</ul>\n");
  return true;
}

void HtmlTree::addLevelsBelow(NodeId above) {
  for (std::size_t row = 0; row < levels_.childCount(above); ++row) {
    const NodeId level = levels_.child(above, row);
    if (levels_.childCount(level) > 0) {
      addBranch(level);
    } else {
      output_.write("<li class=\"site\">");
      addKept(level, nameOf(level));
      output_.write("</li>\n");
    }
  }
}

// The link is not in the summary, because a click there has to fold the branch.
void HtmlTree::addBranch(NodeId level) {
  output_.write("<li><details>\n<summary>" + isolated(nameOf(level)) + " <span>(" +
                std::to_string(tree_.keptInBranch(level)) + ")</span></summary>\n");
  if (tree_.isKept(level)) {
    output_.write("<div class=\"site\">");
    addKept(level, levels_.key(level));
    output_.write("</div>\n");
  }
  output_.write("<ul>\n");
  addLevelsBelow(level);
  output_.write("</ul>\n</details></li>\n");
}

void HtmlTree::addKept(NodeId level, std::string_view name) {
  bool hasSite = false;
  tree_.forEachSite(level, [&](const SiteEntry& site) {
    if (hasSite) output_.write("<br>\n");
    addSite(site, name);
    hasSite = true;
  });
  if (!hasSite) output_.write(isolated(name));
  addDetails(details_.of(levels_.key(level)));
}

void HtmlTree::addOutsiders() {
  std::set<std::string_view> written;
  for (const SiteEntry& site : tree_.outsiders()) {
    output_.write("<li class=\"site\">");
    addSite(site, site.address);
    if (written.insert(site.address).second) addDetails(details_.of(site.address));
    output_.write("</li>\n");
  }
}

void HtmlTree::addSite(const SiteEntry& site, std::string_view name) {
  if (isRecorded(site)) {
    output_.write(linkTo(site, name) + " " + visitOf(site));
  } else {
    output_.write(isolated(name));
  }
}

void HtmlTree::addDetails(const SiteDetails& details) {
  if (details.notes.empty() && details.logins.empty() && details.purchases.empty()) return;
  output_.write("\n<dl>\n");
  for (const std::string& notes : details.notes) addDetail("Notes", notes);
  for (const LoginEntry& login : details.logins) {
    addDetail("User ID", login.userID);
    if (passwords_ == Passwords::Show) addDetail("Password", login.password);
  }
  for (const PurchaseEntry& purchase : details.purchases) addPurchase(purchase);
  output_.write("</dl>");
}

void HtmlTree::addPurchase(const PurchaseEntry& purchase) {
  addDetail("Purchase", purchase.item);
  addDetail("Date", purchase.date);
  addDetail("Price", purchase.price);
  addDetail("Quantity", purchase.quantity);
  addDetail("Payment Method", purchase.paymentMethod);
  addDetail("Description", purchase.description);
}

void HtmlTree::addDetail(const char* name, const std::string& text) {
  output_.write("<dt>" + std::string(name) + "</dt><dd dir=\"auto\">" + htmlLines(text) +
                "</dd>\n");
}

// The text of an empty segment cannot be seen, so the whole key stands for it.
std::string_view HtmlTree::nameOf(NodeId level) const {
  const std::string_view text = levels_.text(level);
  return text.empty() ? levels_.key(level) : text;
}

}  // namespace quorrix
