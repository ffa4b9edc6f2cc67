#include "reliability/power_cut.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quorrix::test {
namespace {

constexpr std::size_t kBlock = 512;  // bytes that a disk writes as a whole

// Up to this number of blocks, every subset of them is tried; beyond it, every beginning
// and every end.
constexpr std::size_t kBlocksInAnyOrder = 6;

// The program syncs so soon that few steps are open at any time.
constexpr std::size_t kMostCombinations = 20'000;

bool isOnNames(const DiskStep& step) {
  return step.kind == DiskStep::Create || step.kind == DiskStep::Rename ||
         step.kind == DiskStep::Unlink || step.kind == DiskStep::MakeFolder;
}

bool isOnBytes(const DiskStep& step) {
  return step.kind == DiskStep::Write || step.kind == DiskStep::Truncate;
}

using Range = std::pair<std::size_t, std::size_t>;

std::vector<Range> blocksOf(const DiskStep& write) {
  std::vector<Range> blocks;
  const std::size_t end = write.offset + write.bytes.size();
  for (std::size_t begin = write.offset; begin < end;) {
    const std::size_t next = std::min(end, (begin / kBlock + 1) * kBlock);
    blocks.emplace_back(begin, next);
    begin = next;
  }
  return blocks;
}

std::vector<std::vector<Range>> subsetsOf(const std::vector<Range>& blocks) {
  std::vector<std::vector<Range>> subsets;
  if (blocks.size() > kBlocksInAnyOrder) {
    for (std::size_t count = 0; count <= blocks.size(); ++count) {
      const auto cut = static_cast<std::ptrdiff_t>(count);
      subsets.emplace_back(blocks.begin(), blocks.begin() + cut);
      subsets.emplace_back(blocks.begin() + cut, blocks.end());
    }
    return subsets;
  }
  for (std::size_t mask = 0; mask < (std::size_t{1} << blocks.size()); ++mask) {
    std::vector<Range> subset;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      if ((mask >> i & 1U) != 0) subset.push_back(blocks[i]);
    }
    subsets.push_back(std::move(subset));
  }
  return subsets;
}

}  // namespace

std::set<PowerCut::State> PowerCut::statesAfter(std::size_t count) const {
  std::size_t combinations = 1;
  for (std::size_t i = 0; i < count; ++i) {
    if (!isDurable(i, count)) combinations *= possiblePartsOf(steps_[i]).size();
    if (combinations > kMostCombinations) throw std::length_error("too little is synced");
  }
  std::set<State> states;
  Parts chosen;
  addStates(chosen, count, states);
  return states;
}

PowerCut::State PowerCut::seenAfter(std::size_t count) const {
  Parts whole;
  for (std::size_t i = 0; i < count; ++i) whole.push_back(wholeOf(steps_[i]));
  return stateOf(whole);
}

void PowerCut::addStates(Parts& chosen, std::size_t count, std::set<State>& states) const {
  if (chosen.size() == count) {
    states.insert(stateOf(chosen));
    return;
  }
  const std::size_t next = chosen.size();
  const Parts possible =
      isDurable(next, count) ? Parts{wholeOf(steps_[next])} : possiblePartsOf(steps_[next]);
  for (const Part& part : possible) {
    chosen.push_back(part);
    addStates(chosen, count, states);
    chosen.pop_back();
  }
}

bool PowerCut::isDurable(std::size_t step, std::size_t count) const {
  const DiskStep& made = steps_[step];
  for (std::size_t i = step + 1; i < count; ++i) {
    const DiskStep& later = steps_[i];
    if (isOnBytes(made) && later.kind == DiskStep::SyncFile && later.file == made.file) return true;
    if (isOnNames(made) && later.kind == DiskStep::SyncFolder &&
        later.path == made.path.parent_path()) {
      return true;
    }
  }
  return !isOnBytes(made) && !isOnNames(made);
}

PowerCut::Part PowerCut::wholeOf(const DiskStep& step) {
  if (step.kind != DiskStep::Write) return {};
  return {.blocks = blocksOf(step), .end = step.offset + step.bytes.size()};
}

// The length of a file may reach the disk before its bytes. These then read as NULs.
PowerCut::Parts PowerCut::possiblePartsOf(const DiskStep& step) {
  Parts parts{{.isThere = false}};
  if (step.kind != DiskStep::Write) {
    parts.push_back({});
    return parts;
  }
  for (const std::vector<Range>& blocks : subsetsOf(blocksOf(step))) {
    parts.push_back({.blocks = blocks, .end = step.offset + step.bytes.size()});
    if (!blocks.empty()) parts.push_back({.blocks = blocks, .end = blocks.back().second});
  }
  return parts;
}

PowerCut::State PowerCut::stateOf(const Parts& parts) const {
  DiskContents disk = before_;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const DiskStep& step = steps_[i];
    const Part& part = parts[i];
    if (!part.isThere) continue;
    std::string& bytes = disk.bytes[step.file];
    switch (step.kind) {
      case DiskStep::Create:
        disk.names[step.path.string()] = step.file;
        break;
      case DiskStep::Write:
        if (bytes.size() < part.end) bytes.resize(part.end);
        for (const auto& [begin, end] : part.blocks) {
          std::copy(step.bytes.begin() + static_cast<std::ptrdiff_t>(begin - step.offset),
                    step.bytes.begin() + static_cast<std::ptrdiff_t>(end - step.offset),
                    bytes.begin() + static_cast<std::ptrdiff_t>(begin));
        }
        break;
      case DiskStep::Truncate:
        bytes.resize(step.offset);
        break;
      case DiskStep::Rename:
        disk.names[step.to.string()] = step.file;
        disk.names.erase(step.path.string());
        break;
      case DiskStep::Unlink:
        disk.names.erase(step.path.string());
        break;
      case DiskStep::MakeFolder:
        disk.folders.insert(step.path.string());
        break;
      case DiskStep::SyncFile:
      case DiskStep::SyncFolder:
        break;
    }
  }
  return reachableIn(disk);
}

// A name that reached the disk is lost with its folder.
PowerCut::State PowerCut::reachableIn(DiskContents& disk) const {
  const auto folderOf = [](const std::string& path) { return Path(path).parent_path().string(); };
  State state;
  for (const std::string& folder : disk.folders) {
    const bool isOld = before_.folders.contains(folder);
    if (isOld || state.contains(folderOf(folder) + "/")) state[folder + "/"] = "";
  }
  for (const auto& [path, file] : disk.names) {
    if (state.contains(folderOf(path) + "/")) state[path] = disk.bytes[file];
  }
  return state;
}

}  // namespace quorrix::test
