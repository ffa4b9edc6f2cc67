// Reads the input as a purchases file; lists, finds, saves and removes the purchases of
// one site.
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz/record_session.h"
#include "records/purchases_file.h"

namespace quorrix {
namespace {

using test::cutAt;
using test::Field;
using test::padded;
using test::RecordBytes;
using test::require;
using test::Session;
using test::Task;
using test::taskFrom;
using test::textOf;

constexpr std::size_t kRecord = 542;
constexpr Field kDate{300, 25};
constexpr Field kPrice{325, 12};
constexpr Field kPayment{337, 50};
constexpr Field kItem{387, 50};
constexpr Field kDescription{437, 100};
constexpr Field kQuantity{537, 5};

class Operations {
 public:
  explicit Operations(Task task)
      : task_(std::move(task)), session_(&WorkingPaths::currentPurchasesFile, task_.file) {}

  void run() {
    list();
    save({.item = task_.part(0, 5),
          .price = task_.part(1, 5),
          .quantity = task_.part(2, 5),
          .paymentMethod = task_.part(3, 5),
          .description = task_.part(4, 5),
          .dateStamp = task_.dateStamp});
    list();
    if (const std::optional<Purchase> found = read()) save(*found);
    remove();
    read();
    list();
  }

 private:
  // The first counted record of the site with this date, or 0. Returns nullopt if the
  // search meets a date of the site without its end mark first.
  [[nodiscard]] std::optional<std::size_t> find(const std::string& dateStamp) const {
    const RecordBytes& expected = session_.expected;
    for (std::size_t number = 1; number <= expected.counted(); ++number) {
      if (!expected.belongs(number, task_.siteKey)) continue;
      const auto date = cutAt(textOf(expected.record(number), kDate), '~');
      if (!date) return std::nullopt;
      if (*date == dateStamp) return number;
    }
    return 0;
  }

  static std::string viewed(const std::string& record, Field field) {
    const std::string text = textOf(record, field);
    if (const auto cut = cutAt(text, '~')) return std::string(*cut);
    return text.substr(0, text.find_last_not_of(std::string_view(" \0", 2)) + 1);
  }

  void list() {
    const RecordBytes& expected = session_.expected;
    std::vector<PurchaseSummary> listed;
    const bool succeeded = session_.succeeds([&] {
      file_.list(task_.siteKey,
                 [&listed](const PurchaseSummary& purchase) { listed.push_back(purchase); });
    });
    bool marked = true;
    std::size_t place = 0;
    for (std::size_t number = 1; marked && number <= expected.begun(); ++number) {
      if (!expected.belongs(number, task_.siteKey)) continue;
      const std::string record = expected.record(number);
      const auto date = cutAt(textOf(record, kDate), '~');
      marked = date.has_value();
      if (!marked) break;
      require(place < listed.size(), "every purchase before a date without its mark is listed");
      require(listed[place].item == viewed(record, kItem) &&
                  listed[place].price == viewed(record, kPrice) && listed[place].dateStamp == *date,
              "purchases are listed in file order");
      ++place;
    }
    require(succeeded == marked, "a date without its mark fails the list");
    require(place == listed.size(), "nothing else is listed");
  }

  std::optional<Purchase> read() {
    const auto number = find(task_.dateStamp);
    std::optional<Purchase> found;
    const bool succeeded =
        session_.succeeds([&] { found = file_.read(task_.siteKey, task_.dateStamp); });
    if (!number || *number == 0) {
      require(succeeded == number.has_value() && !found, "only what there is is found");
      return std::nullopt;
    }
    const std::string record = session_.expected.record(*number);
    require(succeeded && found.has_value(), "what there is is found");
    const std::array texts{viewed(record, kItem),        viewed(record, kPrice),
                           viewed(record, kQuantity),    viewed(record, kPayment),
                           viewed(record, kDescription), viewed(record, kDate)};
    const std::array read{found->item,          found->price,       found->quantity,
                          found->paymentMethod, found->description, found->dateStamp};
    for (std::size_t i = 0; i < read.size(); ++i) {
      require(read[i] == texts[i], "each text is cut at its mark, or whole without one");
    }
    return found;
  }

  // Always appends a record, unless the site has a date without its end mark. find()
  // cannot find a date that consists of marks, so here it only checks the dates of the
  // site.
  void save(const Purchase& purchase) {
    const bool marked = find(std::string(kDate.width, '~')).has_value();
    if (marked) {
      session_.expected.append(task_.siteKey,
                               padded(purchase.dateStamp + '~', kDate.width) +
                                   padded(purchase.price + '~', kPrice.width) +
                                   padded(purchase.paymentMethod + '~', kPayment.width) +
                                   padded(purchase.item + '~', kItem.width) +
                                   padded(purchase.description + '~', kDescription.width) +
                                   padded(purchase.quantity + '~', kQuantity.width));
    }
    const bool succeeded = session_.succeeds([&] { file_.save(task_.siteKey, purchase); });
    require(succeeded == marked, "only a date without its mark keeps a purchase out");
  }

  void remove() {
    const auto number = find(task_.dateStamp);
    if (number) session_.expected.blank(*number);
    const bool succeeded = session_.succeeds([&] { file_.remove(task_.siteKey, task_.dateStamp); });
    require(succeeded == number.has_value(), "only a date without its mark fails the removal");
  }

  Task task_;
  Session session_;
  PurchasesFile file_{session_.files, session_.paths};
};

}  // namespace
}  // namespace quorrix

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  quorrix::Operations(quorrix::test::taskFrom(bytes, quorrix::kRecord, quorrix::kDate)).run();
  return 0;
}
