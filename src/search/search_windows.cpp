#include "search/search_windows.h"

#include <memory>

#include "shell/bring_up.h"
#include "shell/guarded.h"
#include "shell/keep_in_front.h"

namespace quorrix {
namespace {

constexpr QSize kResultsSize{511, 220};  // pixels, including the frame

// Hides the dialog now and deletes it later, because one of its own handlers may call
// this.
template <typename Dialog>
void unload(QPointer<Dialog>& dialog) {
  if (dialog.isNull()) return;
  dialog->hide();
  dialog->deleteLater();
  dialog.clear();
}

}  // namespace

SearchWindows::~SearchWindows() {
  delete search_.data();
  delete results_.data();
}

void SearchWindows::openSearch() {
  guarded(parts_.mainWindow, parts_.messageBox, FailureFamily::OpenSearch, [this] {
    if (search_.isNull()) loadSearch();
    bringUp(*search_);
  });
}

void SearchWindows::unloadAll() {
  unload(search_);
  unload(results_);
}

void SearchWindows::loadSearch() {
  auto dialog = std::make_unique<SearchDialog>(SearchDialog::Parts{
      .clock = parts_.clock,
      .messageBox = parts_.messageBox,
      .mainWindow = parts_.mainWindow,
      .search = parts_.search,
      .unloadResults = [this] { unload(results_); },
      .showResults =
          [this](const SearchCriteria& criteria, const std::vector<std::string>& addresses) {
            showResults(criteria, addresses);
          }});
  dialog->Form_Load();
  keepInFront(*dialog);
  // The dialog is unloaded however it is closed.
  QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [this] { unload(search_); });
  search_ = dialog.release();
}

void SearchWindows::loadResults(const SearchCriteria& criteria,
                                const std::vector<std::string>& addresses) {
  auto dialog = std::make_unique<SearchResultsDialog>(
      SearchResultsDialog::Parts{.codePage = parts_.codePage,
                                 .tree = parts_.tree,
                                 .messageBox = parts_.messageBox,
                                 .mainWindow = parts_.mainWindow,
                                 .locate = parts_.locate,
                                 .describe = parts_.describe,
                                 .withScheme = parts_.withScheme,
                                 .newSearch = [this] { newSearch(); }});
  dialog->Form_Load(criteria, addresses);
  QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [this] { unload(results_); });
  results_ = dialog.release();
}

void SearchWindows::showResults(const SearchCriteria& criteria,
                                const std::vector<std::string>& addresses) {
  loadResults(criteria, addresses);
  results_->placeInCorner(kResultsSize);
  unload(search_);
  results_->show();
}

void SearchWindows::newSearch() {
  results_->hide();
  openSearch();
}

}  // namespace quorrix
