#include "workspaces/common/LibraryModels.h"

#include <QColor>

#include "formats/ColorFormats.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "library/User.h"
#include "workspaces/common/DragData.h"
#include "workspaces/common/LibraryActions.h"
#include "workspaces/common/Swatch.h"

namespace kro {
namespace {

QString qText(const std::string& text) { return QString::fromStdString(text); }

std::string lowercased(std::string text) {
    for (auto& c : text) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
    return text;
}

QString countText(size_t count) {
    return QString::number(count) + (count == 1 ? " color" : " colors");
}

}  // namespace

// ---- palettes ----

PaletteListModel::PaletteListModel(LibraryActions& actions, QObject* parent) : QAbstractListModel(parent), actions_(actions) {
    observers_.on({Notifications::userUpdated, Notifications::userCloudMerged, Notifications::userLoaded}, [this] {
        beginResetModel();
        endResetModel();
    });
}

PaletteRef PaletteListModel::palette(int row) const {
    const auto& user = *User::shared();
    if (row == 0) return user.history;
    if (row < 0 || static_cast<size_t>(row) > user.palettes.size()) return nullptr;
    return user.palettes[static_cast<size_t>(row) - 1];
}

int PaletteListModel::row(const std::string& uuid) const {
    for (int at = 0; at < rowCount(); ++at) {
        if (palette(at)->uuid == uuid) return at;
    }
    return -1;
}

int PaletteListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(User::shared()->palettes.size() + 1);
}

QVariant PaletteListModel::data(const QModelIndex& index, int role) const {
    const auto record = palette(index.row());
    if (!record) return {};
    const auto name = qText(record->name.value_or(""));
    const bool target = User::shared()->target() == record;
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole: return name;
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole:
            return name + ", " + countText(record->colors.size()) + (record->lock ? ", locked" : "") +
                   (target ? ", receives picked colors" : "");
        case UuidRole: return qText(record->uuid);
        case CountRole: return static_cast<qulonglong>(record->colors.size());
        case LockedRole: return record->lock;
        case TargetRole: return target;
        case HistoryRole: return record->isHistory;
        default: return {};
    }
}

Qt::ItemFlags PaletteListModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractListModel::flags(index) | Qt::ItemIsDropEnabled;
    const auto record = palette(index.row());
    if (record && !record->isHistory) flags |= Qt::ItemIsDragEnabled | Qt::ItemIsEditable;
    return flags;
}

bool PaletteListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto record = palette(index.row());
    if (role != Qt::EditRole || !record) return false;
    const auto name = value.toString().trimmed().toStdString();
    return actions_.edit(*record, [&] { return User::shared()->renamePalette(record, name); });
}

QStringList PaletteListModel::mimeTypes() const {
    return {DragData::paletteType, DragData::colorType, "text/uri-list", DragData::qtColorType, "text/plain"};
}

QMimeData* PaletteListModel::mimeData(const QModelIndexList& indexes) const {
    if (indexes.isEmpty()) return nullptr;
    const auto record = palette(indexes.first().row());
    return record ? DragData::palette(*record).release() : nullptr;
}

bool PaletteListModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int row, int, const QModelIndex& parent) const {
    if (!data) return false;
    // A palette is dropped between rows (a new place); everything else on a palette row.
    if (data->hasFormat(DragData::paletteType)) return row >= 1 && !parent.isValid();
    return parent.isValid() && DragData::accepts(*data);
}

bool PaletteListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                    const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) return false;
    if (data->hasFormat(DragData::paletteType)) {
        const auto moved = DragData::paletteDrag(*data);
        // Row 1 is the first palette under the history.
        return moved && actions_.run([&] { return User::shared()->movePalette(moved, static_cast<size_t>(row - 1)); });
    }
    const auto target = palette(parent.row());
    return target && DragData::drop(*data, target, 0, action == Qt::CopyAction, actions_);
}

// ---- colours ----

ColorListModel::ColorListModel(LibraryActions& actions, QObject* parent) : QAbstractListModel(parent), actions_(actions) {
    observers_.on({Notifications::userUpdated, Notifications::userCloudMerged, Notifications::userLoaded,
                   Notifications::settingsUpdated},
                  [this] { reload(); });
    observers_.on({Notifications::colorFormatUpdated}, [this] { formatsChanged(); });
}

void ColorListModel::setPalette(const std::string& uuid) {
    paletteUUID_ = uuid;
    reload();
}

void ColorListModel::setSearch(const std::string& text) {
    search_ = lowercased(text);
    if (!search_.empty() && search_[0] == '#') search_.erase(0, 1);
    reload();
}

PaletteRef ColorListModel::palette() const { return User::shared()->palette(paletteUUID_); }

bool ColorListModel::showsPaletteOrder() const { return search_.empty() && Settings::shared().colorSort() == PaletteColorSort::none; }

void ColorListModel::reload() {
    beginResetModel();
    rows_.clear();
    if (const auto record = palette()) {
        for (const auto& color : sortedColors(record->colors, Settings::shared().colorSort())) {
            if (search_.empty() || lowercased(color->name.value_or("")).find(search_) != std::string::npos ||
                lowercased(color->hex).find(search_) != std::string::npos) {
                rows_.push_back(color);
            }
        }
    }
    texts_.assign(rows_.size(), std::nullopt);
    endResetModel();
}

void ColorListModel::formatsChanged() {
    texts_.assign(rows_.size(), std::nullopt);
    if (!rows_.empty()) emit dataChanged(index(0), index(rowCount() - 1), {Qt::DisplayRole, Qt::AccessibleTextRole});
}

ColorRef ColorListModel::color(int row) const {
    return row >= 0 && static_cast<size_t>(row) < rows_.size() ? rows_[static_cast<size_t>(row)] : nullptr;
}

int ColorListModel::row(const std::string& uuid) const {
    for (size_t at = 0; at < rows_.size(); ++at) {
        if (rows_[at]->uuid == uuid) return static_cast<int>(at);
    }
    return -1;
}

size_t ColorListModel::paletteIndex(int row) const {
    const auto record = palette();
    if (!record) return 0;
    if (const auto before = color(row)) {
        for (size_t at = 0; at < record->colors.size(); ++at) {
            if (record->colors[at] == before) return at;
        }
    }
    return record->colors.size();
}

int ColorListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : static_cast<int>(rows_.size()); }

QVariant ColorListModel::data(const QModelIndex& index, int role) const {
    const auto record = color(index.row());
    if (!record) return {};
    auto text = [&]() -> const QString& {
        auto& cached = texts_[static_cast<size_t>(index.row())];
        if (!cached) cached = qText(ColorFormats::shared().menuString(record->colorValue()));
        return *cached;
    };
    switch (role) {
        case Qt::DisplayRole: return text();
        case Qt::EditRole:
        case NameRole: return qText(record->name.value_or(""));
        case Qt::ToolTipRole:
        case Qt::AccessibleTextRole: return qText(record->name.value_or("")) + ", " + text();
        case Qt::DecorationRole:
        case ColorRole: return displayColor(*record);
        case HexRole: return qText(record->hex);
        case UuidRole: return qText(record->uuid);
        default: return {};
    }
}

Qt::ItemFlags ColorListModel::flags(const QModelIndex& index) const {
    auto flags = QAbstractListModel::flags(index) | Qt::ItemIsDropEnabled;
    if (index.isValid()) flags |= Qt::ItemIsDragEnabled | Qt::ItemIsEditable;
    return flags;
}

bool ColorListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const auto record = color(index.row());
    const auto owner = palette();
    if (role != Qt::EditRole || !record || !owner) return false;
    const auto name = value.toString().trimmed().toStdString();
    return actions_.edit(*owner, [&] { return User::shared()->renameColor(owner, record, name); });
}

QStringList ColorListModel::mimeTypes() const {
    return {DragData::colorType, "text/uri-list", DragData::qtColorType, "text/plain"};
}

QMimeData* ColorListModel::mimeData(const QModelIndexList& indexes) const {
    const auto owner = palette();
    if (!owner || indexes.isEmpty()) return nullptr;
    // In the order they are shown, whatever order they were selected in.
    std::vector<int> rows;
    for (const auto& index : indexes) rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    std::vector<ColorRef> colors;
    for (int at : rows) {
        if (auto record = color(at)) colors.push_back(record);
    }
    return DragData::colors(*owner, colors).release();
}

bool ColorListModel::canDropMimeData(const QMimeData* data, Qt::DropAction, int, int, const QModelIndex&) const {
    return data && palette() && DragData::accepts(*data);
}

bool ColorListModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                                  const QModelIndex& parent) {
    if (!canDropMimeData(data, action, row, column, parent)) return false;
    // Dropped on a colour: before it. Between rows: at that row. Nowhere in particular: at the end.
    const int at = parent.isValid() ? parent.row() : (row < 0 ? rowCount() : row);
    const auto owner = palette();
    const auto drag = DragData::colorDrag(*data);
    if (drag && drag->palette == owner && !showsPaletteOrder()) {
        actions_.notice("Choose “Your Order” to arrange colors by hand.");
        return false;
    }
    return DragData::drop(*data, owner, paletteIndex(at), action == Qt::CopyAction, actions_);
}

}  // namespace kro
