#include "workspaces/preferences/PaneBinder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QSignalBlocker>
#include <QSpinBox>

namespace kro {

QCheckBox* PaneBinder::check(const QString& text, std::function<bool()> read, std::function<void(bool)> write) {
    auto* box = new QCheckBox(text, pane_);
    box->setAccessibleName(QString(text).remove('&'));
    QObject::connect(box, &QCheckBox::toggled, box, [write](bool on) { write(on); });
    readers_.push_back([box, read] {
        const QSignalBlocker hold(box);
        box->setChecked(read());
    });
    return box;
}

QComboBox* PaneBinder::choice(const QString& accessible, const QStringList& items, std::function<int()> read,
                              std::function<void(int)> write) {
    auto* menu = new QComboBox(pane_);
    menu->addItems(items);
    menu->setAccessibleName(accessible);
    QObject::connect(menu, &QComboBox::activated, menu, [write](int index) { write(index); });
    readers_.push_back([menu, read] {
        const QSignalBlocker hold(menu);
        menu->setCurrentIndex(read());
    });
    return menu;
}

QSpinBox* PaneBinder::number(const QString& accessible, int minimum, int maximum, int step, std::function<int()> read,
                             std::function<void(int)> write) {
    auto* field = new QSpinBox(pane_);
    field->setRange(minimum, maximum);
    field->setSingleStep(step);
    field->setKeyboardTracking(false);
    field->setAccessibleName(accessible);
    QObject::connect(field, &QSpinBox::valueChanged, field, [write](int value) { write(value); });
    readers_.push_back([field, read] {
        const QSignalBlocker hold(field);
        field->setValue(read());
    });
    return field;
}

void PaneBinder::refreshOn(std::initializer_list<const char*> names) {
    observers_.on(names, [this] { refresh(); });
}

void PaneBinder::refresh() {
    for (const auto& read : readers_) read();
}

}  // namespace kro
