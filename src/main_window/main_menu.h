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

// What a command works with.
enum class MenuItemNeeds {
  Nothing,
  Data,  // the recorded sites or their files, which are there once the start-up is over
};

struct MenuItem {
  MenuItemKind kind;
  const char* name;
  const char* caption;
  void (MainForm::*handler)();  // null: not there yet, shown disabled
  MenuItemNeeds needs = MenuItemNeeds::Nothing;
  QKeyCombination keys = {};  // that choose it too while the window is in use; Key_unknown: none
};

// Every action is named after its item, and an entry runs its handler as a command of
// the form. The first item is a menu.
void fillMenuBar(QMenuBar& bar, MainForm& form, std::span<const MenuItem> items);

// Enables or disables the entries that need the data.
void enableDataEntries(QMenuBar& bar, std::span<const MenuItem> items, bool isEnabled);

}  // namespace quorrix
