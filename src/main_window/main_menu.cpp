#include "main_window/main_menu.h"

#include <QMenu>
#include <QMenuBar>

#include "main_window/main_form.h"

namespace quorrix {
namespace {

QMenu* named(QMenu* menu, const char* name) {
  menu->setObjectName(QString::fromLatin1(name));
  menu->menuAction()->setObjectName(QString::fromLatin1(name));
  return menu;
}

}  // namespace

void fillMenuBar(QMenuBar& bar, MainForm& form, std::span<const MenuItem> items) {
  QMenu* menu = named(bar.addMenu(QString::fromLatin1(items.front().caption)), items.front().name);
  QMenu* inside = menu;
  for (const MenuItem& item : items.subspan(1)) {
    const QString caption = QString::fromLatin1(item.caption);
    switch (item.kind) {
      case MenuItemKind::Menu:
        menu = inside = named(bar.addMenu(caption), item.name);
        break;
      case MenuItemKind::Submenu:
        inside = named(menu->addMenu(caption), item.name);
        break;
      case MenuItemKind::SubmenuEnd:
        inside = menu;
        break;
      case MenuItemKind::Separator:
        inside->addSeparator()->setObjectName(QString::fromLatin1(item.name));
        break;
      case MenuItemKind::Entry: {
        QAction* const action = inside->addAction(caption);
        action->setObjectName(QString::fromLatin1(item.name));
        if (item.keys != QKeyCombination()) action->setShortcut(item.keys);
        QObject::connect(action, &QAction::triggered, &form, [&form, handler = item.handler] {
          form.runCommand([&form, handler] { (form.*handler)(); });
        });
        break;
      }
    }
  }
}

void enableDataEntries(QMenuBar& bar, std::span<const MenuItem> items, bool isEnabled) {
  for (const MenuItem& item : items) {
    if (item.needs != MenuItemNeeds::Data) continue;
    bar.findChild<QAction*>(QString::fromLatin1(item.name))->setEnabled(isEnabled);
  }
}

}  // namespace quorrix
