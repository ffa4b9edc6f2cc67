#include "search/result_list.h"

#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <algorithm>

#include "shell/plain_text.h"
#include "shell/select_first.h"
#include "shell/single_line.h"

namespace quorrix {
namespace {

// Makes every row as wide as the list, whatever its text is.
class NarrowDelegate final : public AddressDelegate {
 public:
  using AddressDelegate::AddressDelegate;

  [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                               const QModelIndex& index) const override {
    return {1, AddressDelegate::sizeHint(option, index).height()};
  }
};

}  // namespace

void ResultListModel::setAddresses(std::vector<std::string> addresses) {
  beginResetModel();
  addresses_ = std::move(addresses);
  endResetModel();
}

int ResultListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(addresses_.size());
}

QVariant ResultListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  if (role == Qt::DisplayRole) return toQString(codePage_, address(index.row()));
  if (role == Qt::ToolTipRole && describe_) return asToolTip(describe_(address(index.row())));
  return {};
}

QModelIndexList ResultListModel::match(const QModelIndex& start, int role, const QVariant& value,
                                       int hits, Qt::MatchFlags flags) const {
  if (role != Qt::DisplayRole || hits != 1 || flags != (Qt::MatchStartsWith | Qt::MatchWrap)) {
    return QAbstractListModel::match(start, role, value, hits, flags);
  }
  const auto text = codePage_.exactFromUtf8(value.toString().toStdString());
  if (!text) return {};
  const auto first = addresses_.begin() + start.row();
  const auto isMatch = [this, &text](const std::string& address) {
    return codePage_.beginsWithIgnoringCase(address, *text);
  };
  auto found = std::find_if(first, addresses_.end(), isMatch);
  if (found == addresses_.end()) {
    found = std::find_if(addresses_.begin(), first, isMatch);
    if (found == first) return {};
  }
  return {index(static_cast<int>(found - addresses_.begin()))};
}

ResultList::ResultList(const CodePage& codePage, QWidget* parent)
    : QListView(parent), model_(codePage) {
  setModel(&model_);
  setItemDelegate(new NarrowDelegate(this));
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideMiddle);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setEditTriggers(NoEditTriggers);
}

int ResultList::selectedRow() const {
  const QModelIndexList selected = selectionModel()->selectedIndexes();
  return selected.isEmpty() ? -1 : selected.first().row();
}

// Qt would copy the current row, selected or not.
void ResultList::copyAddress() const {
  const int row = selectedRow();
  if (row >= 0) QApplication::clipboard()->setText(copied_(address(row)));
}

void ResultList::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) return copyAddress();
  if (!selectByFirstMove(*this, *event)) QListView::keyPressEvent(event);
}

}  // namespace quorrix
