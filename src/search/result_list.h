// The addresses that a search found, as a list from which the user chooses one. However
// many there are, the first rows show and every key is answered at once: all rows are of
// one size, and an address that is longer than its row is cut in the middle.
#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>
#include <string>
#include <vector>

namespace quorrix {

class ResultListModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  using QAbstractListModel::QAbstractListModel;

  void setAddresses(std::vector<std::string> addresses);

  // What the tool tip of an address says; must not throw.
  void describeBy(std::function<QString(const std::string&)> describe) {
    describe_ = std::move(describe);
  }

  [[nodiscard]] const std::string& address(int row) const {
    return addresses_[static_cast<std::size_t>(row)];
  }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

  // The base class makes a string of every address, again for each key that the user types
  // to find one. This compares them as they are.
  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value,
                                      int hits, Qt::MatchFlags flags) const override;

 private:
  std::vector<std::string> addresses_;
  std::function<QString(const std::string&)> describe_;
};

class ResultList final : public QListView {
  Q_OBJECT

 public:
  explicit ResultList(QWidget* parent);

  // What the tool tip of an address says; must not throw.
  void describeBy(std::function<QString(const std::string&)> describe) {
    model_.describeBy(std::move(describe));
  }

  // What is copied of an address; must not throw.
  void copyBy(std::function<QString(const std::string&)> copied) { copied_ = std::move(copied); }

  void showAddresses(std::vector<std::string> addresses) {
    model_.setAddresses(std::move(addresses));
  }

  // -1 for none. Nothing is selected at first.
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
