// The menus of the main window as a table, and the menu bar made from it.
#pragma once

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

struct MenuItem {
  MenuItemKind kind;
  const char* name;
  const char* caption;
  void (MainForm::*handler)();  // null: not there yet, shown disabled
};

// Every action is named after its item, and an entry calls its handler. The first
// item is a menu.
void fillMenuBar(QMenuBar& bar, MainForm& form, std::span<const MenuItem> items);

}  // namespace quorrix
