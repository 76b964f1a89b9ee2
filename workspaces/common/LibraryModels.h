#pragma once
// Qt item models over the library's records. They keep no copy of the library: the palette list reads
// `User` live, the colour list keeps only the display order of one palette's colours (sorted by
// `Settings.colorSort`, filtered by a search), and both refresh on the notifications that say the library,
// the formats or the settings changed: "UserUpdated" (every change, by any window, the command line or an
// undo), "UserCloudMerged" and "UserLoaded" (sync and launch), "ColorFormatUpdated", "SettingsUpdated".
// Edits dropped on them go through the library operations, via LibraryActions.
#include <QAbstractListModel>
#include <optional>
#include <string>
#include <vector>

#include "library/Palette.h"
#include "workspaces/common/Observers.h"

namespace kro {

class LibraryActions;

enum LibraryRole {
    UuidRole = Qt::UserRole + 1,
    CountRole,     // palettes: how many colours
    LockedRole,    // palettes: locked
    TargetRole,    // palettes: receives new colours
    HistoryRole,   // palettes: the history
    NameRole,      // colours: the name alone
    HexRole,       // colours: six hex digits
    ColorRole,     // colours: the display QColor
};

// The history, then every palette, in the library's order.
class PaletteListModel : public QAbstractListModel {
public:
    explicit PaletteListModel(LibraryActions& actions, QObject* parent = nullptr);

    PaletteRef palette(int row) const;
    // The row of the palette with this uuid; -1 when there is none.
    int row(const std::string& uuid) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction | Qt::CopyAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    LibraryActions& actions_;
    Observers observers_;
};

// The colours of one palette in display order.
class ColorListModel : public QAbstractListModel {
public:
    explicit ColorListModel(LibraryActions& actions, QObject* parent = nullptr);

    // Which palette to show; an unknown uuid shows nothing.
    void setPalette(const std::string& uuid);
    const std::string& paletteUUID() const { return paletteUUID_; }
    PaletteRef palette() const;
    // Keeps the colours whose name or hex holds `text` (case-blind; a leading "#" is ignored).
    void setSearch(const std::string& text);
    // Whether the rows stand in the palette's own order, so that a drop between two rows means a place.
    bool showsPaletteOrder() const;

    ColorRef color(int row) const;
    int row(const std::string& uuid) const;
    // The place in the palette's own list that a drop before `row` stands for.
    size_t paletteIndex(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::DropActions supportedDropActions() const override { return Qt::MoveAction | Qt::CopyAction; }
    Qt::DropActions supportedDragActions() const override { return Qt::MoveAction | Qt::CopyAction; }
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;

private:
    void reload();
    void formatsChanged();

    LibraryActions& actions_;
    Observers observers_;
    std::string paletteUUID_;
    std::string search_;
    std::vector<ColorRef> rows_;
    // The format text of each row, made when first shown: evaluating a template is the costly part.
    mutable std::vector<std::optional<QString>> texts_;
};

}  // namespace kro
