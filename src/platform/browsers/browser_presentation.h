// Decides what a browser's window shows to the scan: the text of its address bar,
// and whether this is the one pass in which its status bar reports a visit. Pure
// logic; a window system feeds it what it read about one window per pass.
//
// A visit is detected when the presented web address differs from the one before (a page
// was committed, or a tab or window with another address was selected), or when the same
// address comes with another document. Browsers create a new document for every load, so
// the latter is a reload, or another tab on the same page.
//
//   what happens in the browser        what is read                       visit
//   link, waiting for the server       old document, old address          no
//   the page is committed              new document, new address          yes
//   its body is slow                   new address, document incomplete   after a second
//   then the document is complete      same address, new document         no, seen already
//   redirect                           only the last address              yes, once
//   reload                             perhaps an incomplete document,
//                                      then a new one, same address       once it is stable
//   load stopped, or a download        same document, same address        no
//   pushState, another fragment        same document, new address         after a second
//   replaceState many times            same document, many addresses      the last, once
//   tab selected                       another document                   yes
//   tab selected that awaits a page    its old address, then the new one  twice
//   a browser's own page, an error     not a web address                  no
//   back from there to the page        same as before                     yes
//   window selected                    as for a tab                       as for a tab
//   document unknown (not loaded
//   yet, browser late)                 nothing                            no
//   a tab is moved to a new window     same document                      no
//   the window is closed and another
//   one opens on the same page         new document                       yes
//   the bus went away and came back    same page, all identities are new  no
//   a browser wakes up, or restores
//   a tab                              the document is replaced at once   once
//   a page is being left               the old address in a new document
//                                      or briefly no page                 no
//
// The presented address follows the visits: an address that has not been stable for long
// enough is not presented yet.
#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace quorrix {

struct PageReading {
  std::string document;     // its identity, different for every load; not empty
  std::string address;      // under which the page was committed, UTF-8
  bool isComplete = false;  // false while the browser is still making the document
  bool isLoading = false;   // the browser says that it is fetching something for it

  // The document was loaded under another address: a script has changed the address, or
  // the document is about to be replaced by that of the page just committed.
  bool isAddressNewer = false;
};

struct Presented {
  std::string address;  // empty when there is no web address to show
  bool isVisit = false;
};

class BrowserPresentation {
 public:
  // How long something must last before it is presented: an address without a new
  // document, the absence of a web page, and a new document on the same address. Any of
  // these may appear for a moment while a page is being left.
  static constexpr std::chrono::milliseconds kAddressStands{1000};
  static constexpr std::chrono::milliseconds kNoPageStands{300};
  static constexpr std::chrono::milliseconds kReloadStands{250};

  // How long after a visit a new document on the same address still belongs to it: a
  // browser may create a document twice when it wakes up or restores a tab.
  static constexpr std::chrono::milliseconds kLoadSettles{150};

  // `reading` is what this pass read about the window `frame`; nullopt if its document is
  // unknown, and the window then keeps showing what it showed before. `now` is the time
  // on a clock that never goes back.
  [[nodiscard]] Presented present(const std::string& frame,
                                  const std::optional<PageReading>& reading,
                                  std::chrono::milliseconds now);

  void forgetFrame(const std::string& frame) { pages_.erase(frame); }

  // To be called when all frames and documents get new identities.
  void forgetIdentities();

 private:
  struct Page {
    std::string address;                   // what is presented; empty for no web page
    unsigned load = 0;                     // new each time something is presented; 0 before that
    std::string document;                  // the last complete one that was read
    bool awaitsDocument = false;           // the presented load has yet to bring another document
    std::chrono::milliseconds loadedAt{};  // when a load, not just an address, was presented
    std::optional<std::string> candidate;  // an address that is not stable yet
    std::chrono::milliseconds candidateSince{};
    std::string replacement;  // a complete document on the same address, likewise
    std::chrono::milliseconds replacementSince{};
  };

  void take(Page& page, const PageReading& reading, std::chrono::milliseconds now);
  void takeDocument(Page& page, const PageReading& reading, std::chrono::milliseconds now);
  void settle(Page& page, const PageReading& reading, std::chrono::milliseconds now);

  std::map<std::string, Page> pages_;  // by frame
  std::string lastAddress_;            // presented last, in any frame
  std::string lastDocument_;
  unsigned lastLoad_ = 0;  // 0 if its identity can no longer be compared
  unsigned loads_ = 0;
};

}  // namespace quorrix
