#include "record_kinds.h"

#include <stdexcept>

#include "datafiles/record_layouts.h"
#include "records/notes_file.h"
#include "records/purchases_file.h"
#include "records/user_id_password_file.h"

namespace quorrix::bench {
namespace {

template <typename Found>
void mustBeFound(const Found& found) {
  if (!found) throw std::runtime_error("the record sought is not found");
}

// A RecordEditor that uses one of the program's file classes.
template <typename File>
class EditorOf final : public RecordEditor {
 public:
  EditorOf(FileSystem& files, const WorkingPaths& paths) : file_(files, paths) {}
  void find(const Row& row) override;
  void save(const Row& row) override;
  void remove(const Row& row) override;

  static std::unique_ptr<RecordEditor> make(FileSystem& files, const WorkingPaths& paths) {
    return std::make_unique<EditorOf>(files, paths);
  }

 private:
  File file_;
};

using NotesEditor = EditorOf<NotesFile>;
using UserIDPasswordEditor = EditorOf<UserIDPasswordFile>;
using PurchaseEditor = EditorOf<PurchasesFile>;

Row notesRow(std::string_view siteKey, std::size_t version) {
  Row row{std::string(siteKey), "Version " + std::to_string(version)};
  while (row[1].size() < 300) row[1] += "\r\nWhat there is to say about this site.";
  return row;
}

template <>
void NotesEditor::find(const Row& row) {
  mustBeFound(file_.read(row[0]));
}

template <>
void NotesEditor::save(const Row& row) {
  file_.save(row[0], row[1]);
}

template <>
void NotesEditor::remove(const Row& row) {
  file_.remove(row[0]);
}

Row userIDPasswordRow(std::string_view siteKey, std::size_t version) {
  return {std::string(siteKey), "secret" + std::to_string(version), "somebody"};
}

template <>
void UserIDPasswordEditor::find(const Row& row) {
  mustBeFound(file_.read(row[0]));
}

template <>
void UserIDPasswordEditor::save(const Row& row) {
  file_.save(row[0], {.userID = row[2], .password = row[1]});
}

template <>
void UserIDPasswordEditor::remove(const Row& row) {
  file_.remove(row[0]);
}

Row purchaseRow(std::string_view siteKey, std::size_t version) {
  return {std::string(siteKey),
          "11/21/25 10:15:00 AM",
          "12.50",
          "Card",
          "Lamp",
          "Brass, number " + std::to_string(version),
          "2"};
}

template <>
void PurchaseEditor::find(const Row& row) {
  mustBeFound(file_.read(row[0], row[1]));
}

template <>
void PurchaseEditor::save(const Row& row) {
  file_.save(row[0], {.item = row[4],
                      .price = row[2],
                      .quantity = row[6],
                      .paymentMethod = row[3],
                      .description = row[5],
                      .dateStamp = row[1]});
}

template <>
void PurchaseEditor::remove(const Row& row) {
  file_.remove(row[0], row[1]);
}

}  // namespace

std::string RecordKind::recordOf(const Row& row) const {
  std::string record(recordLength, ' ');
  for (std::size_t i = 0; i < row.size(); ++i) {
    fillField(record, fields[i], i == 0 ? row[i] : row[i] + std::string(terminator));
  }
  return record;
}

const RecordKind& notesKind() {
  using namespace notes_record;
  static const RecordKind kind{.name = "notes",
                               .path = &WorkingPaths::currentURLNotesFile,
                               .recordLength = kLength,
                               .columns = {{"site_key", "notes_text"}, 1},
                               .fields = {kSiteKey, kNotesText},
                               .terminator = "",
                               .rowOf = notesRow,
                               .edit = NotesEditor::make};
  return kind;
}

const RecordKind& userIDPasswordKind() {
  using namespace user_id_password_record;
  static const RecordKind kind{.name = "user_id_password",
                               .path = &WorkingPaths::currentUserIDPasswordFile,
                               .recordLength = kLength,
                               .columns = {{"site_key", "password", "user_id"}, 1},
                               .fields = {kSiteKey, kPassword, kUserID},
                               .terminator = "",
                               .rowOf = userIDPasswordRow,
                               .edit = UserIDPasswordEditor::make};
  return kind;
}

const RecordKind& purchaseKind() {
  using namespace purchase_record;
  static const RecordKind kind{
      .name = "purchase",
      .path = &WorkingPaths::currentPurchasesFile,
      .recordLength = kLength,
      .columns = {{"site_key", "date_stamp", "price", "payment_method", "item", "description",
                   "quantity"},
                  2},
      .fields = {kSiteKey, kDateStamp, kPrice, kPaymentMethod, kItem, kDescription, kQuantity},
      .terminator = "~",
      .rowOf = purchaseRow,
      .edit = PurchaseEditor::make};
  return kind;
}

}  // namespace quorrix::bench
