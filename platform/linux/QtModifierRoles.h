#pragma once
// Qt's keyboard modifiers as the role flags the stored hot keys use (see picker/HotKey.h).
#include <Qt>

namespace kro {

inline int modifierRoleFlags(Qt::KeyboardModifiers modifiers) {
    int flags = 0;
    if (modifiers & Qt::ShiftModifier) flags |= 0x20000;
    if (modifiers & Qt::MetaModifier) flags |= 0x40000;
    if (modifiers & Qt::AltModifier) flags |= 0x80000;
    if (modifiers & Qt::ControlModifier) flags |= 0x100000;
    return flags;
}

}  // namespace kro
