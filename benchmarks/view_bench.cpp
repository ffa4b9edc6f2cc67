#include <QApplication>
#include <QtGlobal>
#include <array>
#include <chrono>
#include <functional>
#include <memory>

#include "benchmarks.h"
#include "sitetree/site_file.h"
#include "sitetree/site_tree_view.h"

namespace quorrix::bench {
namespace {

constexpr std::size_t kNodes = sized(100'000);

// Qt without a display; made by the first benchmark that needs it.
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

// Addresses of all depths, until the tree is as large as it should be.
void fillWithPages(SiteTree& tree, BenchData& data) {
  const AddressList& addresses = data.addresses(kNodes);
  for (std::size_t i = 0; tree.size() < kNodes; ++i) addRecordToTree(tree, addresses[i], 'N');
}

// All nodes below the root: the most rows that one expanding can bring.
void fillWithHosts(SiteTree& tree, BenchData&) {
  for (std::size_t i = 1; tree.size() < kNodes; ++i) {
    addRecordToTree(tree, "www.host-" + std::to_string(i) + ".com", 'N');
  }
}

// Expands by `expand` what is collapsed in a new view, until it is painted.
void measureExpanding(benchmark::State& state, SiteTree& tree,
                      const std::function<void(SiteTreeView&)>& expand) {
  for ([[maybe_unused]] auto _ : state) {
    SiteTreeView view(tree);
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

}  // namespace

void registerViewBenchmarks(BenchData& data) {
  const auto application = std::make_shared<std::unique_ptr<OffscreenApplication>>();
  const auto showAll = [](SiteTreeView& view, NodeId root) { view.expandAll(root, false); };
  const auto expandRoot = [](SiteTreeView& view, NodeId) { view.expandDNSNodes(); };
  registerOne("view/show_all", data, fillWithPages, showAll, application);
  registerOne("view/show_all_hosts", data, fillWithHosts, showAll, application);
  registerOne("view/expand_root", data, fillWithHosts, expandRoot, application);
}

}  // namespace quorrix::bench
