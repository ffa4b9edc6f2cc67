// Search Display: the dialog in which the user enters what to search for. Not modal.
#pragma once

#include <QDialog>
#include <functional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/message_box.h"
#include "search/search_criteria.h"

class QLayout;
class QLineEdit;
class QRadioButton;

namespace quorrix {

// Returns the matching addresses in the order found; throws Failure.
using SiteSearch = std::function<std::vector<std::string>(const SearchCriteria&)>;

class SearchDialog final : public QDialog {
  Q_OBJECT

 public:
  // All must outlive the dialog.
  struct Parts {
    Clock& clock;
    MessageBox& messageBox;
    QWidget& mainWindow;
    SiteSearch search;
    // Called after each search, to close the results of the previous one.
    std::function<void()> unloadResults;
    // Called if the search found something, to replace this dialog by the results. If it
    // throws, this dialog stays.
    std::function<void(const SearchCriteria&, const std::vector<std::string>&)> showResults;
  };

  explicit SearchDialog(Parts parts);

  // Must be called before the dialog is shown. Throws Failure.
  void Form_Load();

 private:
  void OKButton_Click();
  void CancelButton_Click();

  [[nodiscard]] QRadioButton* makeOption(const char* name, const QString& caption);
  [[nodiscard]] QLineEdit* makeDateBox(const char* name, const QString& label, int digits);
  [[nodiscard]] QLayout* rowOfDateBoxes();
  void focusWrongDatePart(const std::string& date);
  [[nodiscard]] std::vector<std::string> matchesOf(const SearchCriteria& criteria);
  [[nodiscard]] UserSearchType userSearchType() const;
  [[nodiscard]] std::string searchDate() const;

  Parts parts_;
  QRadioButton* Option1_;  // by address
  QRadioButton* Option2_;  // by date
  QRadioButton* Option3_;  // by both
  QLineEdit* Text3_;       // part of the address
  QLineEdit* Text2_;       // month
  QLineEdit* Text1_;       // day
  QLineEdit* Text4_;       // year
  QWidget* date_;          // the boxes of the date with their labels and arrows
};

}  // namespace quorrix
