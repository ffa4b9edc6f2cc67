// Keeps the toolkit away from message buses that accept connections and never answer. Qt
// waits for the session bus before it creates a menu bar, and for the accessibility bus
// before the first accessible name, both without a time limit, so no window would appear.
//
// The constructor asks both buses. If one does not answer, the environment names an
// address without a bus instead of its address until restore() is called. Accessibility
// counts as silent, too, if the service that knows the bus does not answer. To be used
// before the toolkit starts, while the program has one thread.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace quorrix {

class SilentBuses {
 public:
  // A working bus answers within milliseconds, but a desktop that is still starting may
  // take longer.
  static constexpr std::chrono::milliseconds kPatience{2000};

  // Waits for the session bus, and after that for accessibility, this long at most.
  explicit SilentBuses(std::chrono::milliseconds patience = kPatience);
  ~SilentBuses() { restore(); }
  SilentBuses(const SilentBuses&) = delete;
  SilentBuses& operator=(const SilentBuses&) = delete;

  [[nodiscard]] bool areHidden() const { return !hidden_.empty(); }

  // Gives the environment its addresses back: tracking finds the buses once they answer,
  // and programs that are started inherit them. To be called after the toolkit has tried
  // to connect; it tries only once.
  void restore();

 private:
  struct Variable {
    const char* name;
    std::optional<std::string> value;
  };

  void hide(const char* name);

  std::vector<Variable> hidden_;
};

}  // namespace quorrix
