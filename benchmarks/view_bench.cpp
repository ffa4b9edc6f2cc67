#include <QApplication>
#include <QKeyEvent>
#include <QtGlobal>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

#include "benchmarks.h"
#include "search/result_list.h"
#include "sitetree/site_file.h"
#include "sitetree/site_tree_view.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kNodes = sized(100'000);
constexpr std::size_t kSites = sized(200'000);
constexpr std::size_t kResults = sized(1'000'000);

// Qt without a display, created by the first benchmark that needs it.
class OffscreenApplication {
 public:
  OffscreenApplication() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application_ = std::make_unique<QApplication>(argc_, argv_.data());
  }

 private:
  int argc_ = 1;
  std::array<char, 14> name_{"quorrix_bench"};
  std::array<char*, 2> argv_{name_.data(), nullptr};
  std::unique_ptr<QApplication> application_;
};

// Adds addresses of all depths until the tree has at least kNodes nodes.
void fillWithPages(SiteTree& tree, BenchData& data) {
  const AddressList& addresses = data.addresses(kNodes);
  for (std::size_t i = 0; tree.size() < kNodes; ++i)
    tree.addMissingLevels(addressLevels(addresses[i]), 'N');
}

// Adds all nodes directly below the root: the most rows that expanding one node can show.
void fillWithHosts(SiteTree& tree, BenchData&) {
  for (std::size_t i = 1; tree.size() < kNodes; ++i) {
    tree.addMissingLevels(addressLevels("www.host-" + std::to_string(i) + ".com"), 'N');
  }
}

// Measures the time until a new, collapsed view is expanded by `expand` and painted.
void measureExpanding(benchmark::State& state, SiteTree& tree,
                      const std::function<void(SiteTreeView&)>& expand) {
  for ([[maybe_unused]] auto _ : state) {
    SiteTreeView view(tree, westernCodePage());
    view.resize(800, 600);
    view.show();
    QApplication::processEvents();
    const auto start = std::chrono::steady_clock::now();
    expand(view);
    QApplication::processEvents();
    view.viewport()->repaint();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(taken.count());
  }
  state.counters["nodes"] = static_cast<double>(tree.size());
}

using Fill = void (*)(SiteTree&, BenchData&);

template <typename Expand>
void registerOne(const std::string& name, BenchData& data, Fill fill, Expand expand,
                 const std::shared_ptr<std::unique_ptr<OffscreenApplication>>& application) {
  benchmark::RegisterBenchmark(
      nameOf(name, kNodes).c_str(),
      [&data, fill, expand, application](benchmark::State& state) {
        if (!*application) {
          *application = std::make_unique<OffscreenApplication>();
        }
        SiteTree tree;
        tree.addRoot();
        fill(tree, data);
        measureExpanding(state, tree, [&](SiteTreeView& view) { expand(view, tree.root()); });
      })
      ->Unit(benchmark::kMillisecond)
      ->UseManualTime()
      ->Repetitions(kRepetitions)
      ->ReportAggregatesOnly(true);
}

// The seconds that the user waits: for `act`, and until `painted` is painted after it.
double timeUntilPainted(QWidget& painted, const std::function<void()>& act) {
  const auto start = std::chrono::steady_clock::now();
  act();
  QApplication::processEvents();
  painted.repaint();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void pressKey(QWidget& widget, int key, const QString& text) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
  QApplication::sendEvent(&widget, &press);
}

template <typename Run>
void registerRun(const std::string& name, Run run, int repetitions) {
  benchmark::RegisterBenchmark(name.c_str(), run)
      ->Unit(benchmark::kMillisecond)
      ->UseManualTime()
      ->Iterations(1)
      ->Repetitions(timed(repetitions))
      ->ReportAggregatesOnly(true);
}

// A tree in a view, with every row expanded.
class ExpandedTree {
 public:
  explicit ExpandedTree(BenchData& data) {
    tree_.addRoot();
    const AddressList& addresses = data.addresses(kSites);
    for (std::size_t i = 0; tree_.size() < kSites; ++i)
      tree_.addMissingLevels(addressLevels(addresses[i]), 'N');
    view_ = std::make_unique<SiteTreeView>(tree_, westernCodePage());
    view_->resize(800, 600);
    view_->show();
    view_->expandAll(tree_.root(), false);
    QApplication::processEvents();
  }

  SiteTree& tree() { return tree_; }
  SiteTreeView& view() { return *view_; }

 private:
  SiteTree tree_;
  std::unique_ptr<SiteTreeView> view_;
};

}  // namespace

void registerViewBenchmarks(BenchData& data) {
  const auto application = std::make_shared<std::unique_ptr<OffscreenApplication>>();
  const auto showAll = [](SiteTreeView& view, NodeId root) { view.expandAll(root, false); };
  const auto expandRoot = [](SiteTreeView& view, NodeId) { view.expandDNSNodes(); };
  registerOne("view/show_all", data, fillWithPages, showAll, application);
  registerOne("view/show_all_hosts", data, fillWithHosts, showAll, application);
  registerOne("view/expand_root", data, fillWithHosts, expandRoot, application);

  const auto prepare = [application] {
    if (!*application) *application = std::make_unique<OffscreenApplication>();
  };
  registerRun(
      nameOf("view/delete_host_when_all_is_open", kSites),
      [&data, prepare](benchmark::State& state) {
        prepare();
        ExpandedTree expanded(data);
        SiteTree& tree = expanded.tree();
        for ([[maybe_unused]] auto _ : state) {
          const NodeId host = tree.child(tree.root(), tree.childCount(tree.root()) / 2);
          state.SetIterationTime(
              timeUntilPainted(*expanded.view().viewport(), [&] { tree.remove(host); }));
        }
      },
      kRepetitions);
  registerRun(
      nameOf("view/type_ahead_when_all_is_open", kSites),
      [&data, prepare](benchmark::State& state) {
        prepare();
        ExpandedTree expanded(data);
        for ([[maybe_unused]] auto _ : state) {
          // No address begins with it, so every row is checked.
          state.SetIterationTime(timeUntilPainted(*expanded.view().viewport(), [&] {
            pressKey(expanded.view(), Qt::Key_Bar, QStringLiteral("|"));
          }));
        }
      },
      kRepetitions);
  registerRun(
      nameOf("results/first_rows", kResults),
      [&data, prepare](benchmark::State& state) {
        prepare();
        const AddressList& addresses = data.addresses(kResults);
        std::vector<std::string> found;
        for (std::size_t i = 0; i < kResults; ++i) found.emplace_back(addresses[i]);
        for ([[maybe_unused]] auto _ : state) {
          ResultList list(westernCodePage(), nullptr);
          list.resize(400, 200);
          state.SetIterationTime(timeUntilPainted(*list.viewport(), [&] {
            list.showAddresses(std::move(found));
            list.show();
          }));
        }
      },
      kRepetitions);
  for (const auto& [what, key, text] :
       {std::tuple{"end", Qt::Key_End, ""}, std::tuple{"down", Qt::Key_Down, ""},
        std::tuple{"type_ahead", Qt::Key_Bar, "|"}}) {
    registerRun(
        nameOf(std::string("results/") + what, kResults),
        [&data, prepare, key, text](benchmark::State& state) {
          prepare();
          const AddressList& addresses = data.addresses(kResults);
          std::vector<std::string> found;
          for (std::size_t i = 0; i < kResults; ++i) found.emplace_back(addresses[i]);
          ResultList list(westernCodePage(), nullptr);
          list.resize(400, 200);
          list.showAddresses(std::move(found));
          list.show();
          QApplication::processEvents();
          list.setCurrentIndex(list.model()->index(0, 0));
          for ([[maybe_unused]] auto _ : state) {
            state.SetIterationTime(timeUntilPainted(
                *list.viewport(), [&] { pressKey(list, key, QString::fromLatin1(text)); }));
          }
        },
        kRepetitions);
  }
}

}  // namespace quorrix::bench
