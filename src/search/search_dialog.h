// Search Display: what the user searches the recorded sites for. Not modal.
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

// The matching addresses in the order found; throws Failure.
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
    // A search has run: its predecessor's results are to go.
    std::function<void()> unloadResults;
    // Something was found: this dialog is to give way to the results. When this
    // throws, it stays.
    std::function<void(const SearchCriteria&, const std::vector<std::string>&)> showResults;
  };

  explicit SearchDialog(Parts parts);

  // Before the dialog is shown; throws Failure.
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
  QWidget* date_;          // the boxes of the date with what belongs to them
};

}  // namespace quorrix
