// The addresses that a search found, as a list from which the user chooses one. However
// long the list is, its first rows appear at once and keys take effect at once: all rows
// have the same size, and an address that is longer than its row is shortened in the
// middle.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>
#include <string>
#include <vector>

#include "platform/code_page.h"

namespace quorrix {

class ResultListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  // `codePage` must outlive the model.
  explicit ResultListModel(const CodePage& codePage) : codePage_(codePage) {}

  void setAddresses(std::vector<std::string> addresses);

  // Sets the function that returns the tool tip of an address; it must not throw.
  void describeBy(std::function<QString(const std::string&)> describe) {
    describe_ = std::move(describe);
  }

  [[nodiscard]] const std::string& address(int row) const {
    return addresses_[static_cast<std::size_t>(row)];
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  // The base class makes a string of every address for each key that the user types to
  // find one. This compares the addresses as they are stored.
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value,
                                      int hits, Qt::MatchFlags flags) const override;

 private:
  const CodePage& codePage_;
  std::vector<std::string> addresses_;
  std::function<QString(const std::string&)> describe_;
};

class ResultList final : public QListView {
  Q_OBJECT

 public:
  // `codePage` must outlive the list.
  ResultList(const CodePage& codePage, QWidget* parent);

  // Sets the function that returns the tool tip of an address; it must not throw.
  void describeBy(std::function<QString(const std::string&)> describe) {
    model_.describeBy(std::move(describe));
  }

  // Sets the function that returns the text to copy for an address; it must not throw.
  void copyBy(std::function<QString(const std::string&)> copied) { copied_ = std::move(copied); }

  void showAddresses(std::vector<std::string> addresses) {
    model_.setAddresses(std::move(addresses));
  }

  // -1 if nothing is selected. Nothing is selected at first.
  [[nodiscard]] int selectedRow() const;
  [[nodiscard]] const std::string& address(int row) const { return model_.address(row); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void copyAddress() const;

  ResultListModel model_;
  std::function<QString(const std::string&)> copied_;
};

}  // namespace quorrix
