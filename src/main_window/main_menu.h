// The menus of the main window as a table, and the menu bar made from it.
#pragma once

#include <Qt>
#include <span>

class QMenuBar;

namespace quorrix {

class MainForm;

enum class MenuItemKind {
  Menu,        // opens a menu of the bar; the items that follow are in it
  Submenu,     // opens a submenu; the items that follow are in it
  SubmenuEnd,  // the items that follow are in the menu again
  Entry,
  Separator,
};

// What a command needs.
enum class MenuItemNeeds {
  Nothing,
  Data,  // the recorded sites or their files, which are available after the start-up
};

struct MenuItem {
  MenuItemKind kind;
  const char* name;
  const char* caption;
  void (MainForm::*handler)();  // null unless this is an entry
  MenuItemNeeds needs = MenuItemNeeds::Nothing;
  QKeyCombination keys = {};  // shortcut while the window is active; Key_unknown: none
};

// Every action is named after its item. An entry runs its handler with
// MainForm::runCommand(). The first item must be a menu.
void fillMenuBar(QMenuBar& bar, MainForm& form, std::span<const MenuItem> items);

// Enables or disables the entries that need the data.
void enableDataEntries(QMenuBar& bar, std::span<const MenuItem> items, bool isEnabled);

}  // namespace quorrix
