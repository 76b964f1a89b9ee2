#include "platform/linux/QtPopUpMenu.h"

#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QPixmap>

#include <memory>

#include "platform/linux/X11Screens.h"

namespace kro {

void QtPopUpMenu::popUp(std::vector<PopUpMenuItem> items, ScreenPoint at, std::function<void()> dismissed) {
    auto* menu = new QMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto chosen = std::make_shared<bool>(false);
    for (auto& item : items) {
        if (item.title.empty()) {
            menu->addSeparator();
            continue;
        }
        auto* action = menu->addAction(QString::fromStdString(item.title));
        action->setCheckable(item.checked);
        action->setChecked(item.checked);
        if (QPixmap icon; !item.icon.empty() && icon.loadFromData(QByteArray::fromStdString(item.icon), "PNG")) {
            action->setIcon(QIcon(icon));
        }
        QObject::connect(action, &QAction::triggered, menu, [run = item.action, chosen] {
            *chosen = true;
            if (run) run();
        });
    }
    QObject::connect(menu, &QMenu::aboutToHide, menu, [menu, chosen, dismissed] {
        // A choice arrives after the menu hides; wait a turn before calling it dismissed.
        QMetaObject::invokeMethod(menu, [chosen, dismissed] {
            if (!*chosen && dismissed) dismissed();
        }, Qt::QueuedConnection);
    });
    const auto size = menu->sizeHint();
    const auto point = x11::fromNative({at.x, at.y}).toPoint();
    menu->popup(QPoint(point.x() - size.width() / 2, point.y()));
}

}  // namespace kro
