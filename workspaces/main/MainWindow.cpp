#include "workspaces/main/MainWindow.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "library/Notifications.h"
#include "library/Settings.h"
#include "library/User.h"
#include "workspaces/common/ColorCellDelegate.h"
#include "workspaces/common/DragData.h"
#include "workspaces/common/NoticeBar.h"
#include "workspaces/main/Inspector.h"
#include "workspaces/main/PaletteRowDelegate.h"

namespace kro {

MainWindow::MainWindow(AppDelegate* delegate, QWidget* parent)
    : QMainWindow(parent),
      delegate_(delegate),
      actions_([this](const std::string& text) { showNotice(text); },
               [this](const std::string& text) { notice_->showFailure(QString::fromStdString(text)); }),
      paletteModel_(actions_),
      colorModel_(actions_) {
    setWindowTitle("Kro Library");
    setAccessibleName("Kro Library");
    setAcceptDrops(true);
    buildViews();
    buildMenus();

    // The models reset on every library change; the selection is put back by identity.
    connect(&paletteModel_, &QAbstractItemModel::modelReset, this, [this] { selectPalette(paletteUUID_); });
    connect(&colorModel_, &QAbstractItemModel::modelReset, this, [this] {
        restoring_ = true;
        const auto uuids = colorUUIDs_;
        for (const auto& uuid : uuids) {
            const int row = colorModel_.row(uuid);
            if (row >= 0) colors_->selectionModel()->select(colorModel_.index(row), QItemSelectionModel::Select);
        }
        if (!uuids.empty() && colorModel_.row(uuids.front()) >= 0) {
            colors_->selectionModel()->setCurrentIndex(colorModel_.index(colorModel_.row(uuids.front())),
                                                       QItemSelectionModel::NoUpdate);
        }
        restoring_ = false;
        colorSelectionChanged();
    });
    observers_.on({Notifications::userUpdated, Notifications::userCloudMerged}, [this] { refreshActions(); });
    observers_.on({Notifications::settingsUpdated}, [this] {
        sort_->setCurrentIndex(static_cast<int>(Settings::shared().colorSort()));
        setListView(Settings::shared().listView());
    });

    // Opens on the palette that picks go to.
    selectPalette(User::shared()->target()->uuid);
    setListView(Settings::shared().listView());
    restoreFrame();
}

void MainWindow::buildViews() {
    auto* splitter = new QSplitter(this);
    splitter->setChildrenCollapsible(false);

    sidebar_ = new QListView(splitter);
    sidebar_->setAccessibleName("Palettes");
    sidebar_->setModel(&paletteModel_);
    sidebar_->setItemDelegate(new PaletteRowDelegate(sidebar_));
    sidebar_->setSelectionMode(QAbstractItemView::SingleSelection);
    sidebar_->setDragDropMode(QAbstractItemView::DragDrop);
    sidebar_->setDefaultDropAction(Qt::MoveAction);
    sidebar_->setDropIndicatorShown(true);
    sidebar_->setEditTriggers(QAbstractItemView::EditKeyPressed);
    sidebar_->setContextMenuPolicy(Qt::CustomContextMenu);
    sidebar_->setMinimumWidth(180);
    // Names are elided to the sidebar's width; it never scrolls sideways.
    sidebar_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(sidebar_->selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& index) {
        if (restoring_ || !index.isValid()) return;
        paletteUUID_ = index.data(UuidRole).toString().toStdString();
        paletteChanged();
    });
    connect(sidebar_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { paletteContextMenu()->popup(sidebar_->viewport()->mapToGlobal(at)); });

    auto* centre = new QWidget(splitter);
    auto* centreLayout = new QVBoxLayout(centre);
    centreLayout->setContentsMargins(0, 0, 0, 0);
    centreLayout->setSpacing(4);
    auto* bar = new QHBoxLayout();
    bar->setContentsMargins(6, 6, 6, 0);
    search_ = new QLineEdit(centre);
    search_->setPlaceholderText("Search by name or hex");
    search_->setAccessibleName("Search colors");
    search_->setClearButtonEnabled(true);
    search_->setMinimumWidth(search_->fontMetrics().horizontalAdvance("Search by name") + 24);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) { colorModel_.setSearch(text.toStdString()); });
    bar->addWidget(search_, 1);
    sort_ = new QComboBox(centre);
    sort_->setAccessibleName("Sort colors");
    sort_->addItems({"Your Order", "Oldest First", "Newest First", "Name A–Z", "Name Z–A"});
    sort_->setCurrentIndex(static_cast<int>(Settings::shared().colorSort()));
    connect(sort_, &QComboBox::activated, this, [this](int index) { setSort(static_cast<PaletteColorSort>(index)); });
    bar->addWidget(sort_);
    auto* layoutButton = new QToolButton(centre);
    layoutButton->setText("List");
    layoutButton->setCheckable(true);
    layoutButton->setAccessibleName("Show colors as a list");
    connect(layoutButton, &QToolButton::toggled, this, [this](bool list) {
        if (list != Settings::shared().listView()) Settings::shared().setListView(list);
    });
    observers_.on({Notifications::settingsUpdated}, [layoutButton] {
        const QSignalBlocker block(layoutButton);
        layoutButton->setChecked(Settings::shared().listView());
    });
    layoutButton->setChecked(Settings::shared().listView());
    bar->addWidget(layoutButton);
    centreLayout->addLayout(bar);

    notice_ = new NoticeBar(centre);
    centreLayout->addWidget(notice_);

    colors_ = new QListView(centre);
    colors_->setAccessibleName("Colors");
    colors_->setModel(&colorModel_);
    cellDelegate_ = new ColorCellDelegate(colors_);
    colors_->setItemDelegate(cellDelegate_);
    colors_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    colors_->setDragDropMode(QAbstractItemView::DragDrop);
    colors_->setDefaultDropAction(Qt::MoveAction);
    colors_->setDropIndicatorShown(true);
    colors_->setEditTriggers(QAbstractItemView::EditKeyPressed);
    colors_->setUniformItemSizes(true);
    colors_->setResizeMode(QListView::Adjust);
    // Static: a drop inside the view is a library move, not a free placement of the item.
    colors_->setMovement(QListView::Static);
    colors_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(colors_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!restoring_) colorSelectionChanged();
    });
    connect(colors_, &QAbstractItemView::activated, this, [this](const QModelIndex& index) {
        if (auto color = colorModel_.color(index.row()); color && delegate_) {
            delegate_->copyColor(color, true, ColorDeliveryTarget::clipboard);
            showNotice("Color Copied");
        }
    });
    connect(colors_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { colorContextMenu()->popup(colors_->viewport()->mapToGlobal(at)); });
    centreLayout->addWidget(colors_, 1);

    inspector_ = new Inspector(delegate_, actions_, splitter);
    inspector_->setMinimumWidth(260);

    splitter->addWidget(sidebar_);
    splitter->addWidget(centre);
    splitter->addWidget(inspector_);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 0);
    splitter->setSizes({220, 560, 300});
    setCentralWidget(splitter);
    setTabOrder(sidebar_, search_);
    setTabOrder(search_, sort_);
    setTabOrder(sort_, layoutButton);
    setTabOrder(layoutButton, colors_);
}

PaletteRef MainWindow::currentPalette() const { return User::shared()->palette(paletteUUID_); }

std::vector<ColorRef> MainWindow::selectedColors() const {
    std::vector<int> rows;
    for (const auto& index : colors_->selectionModel()->selectedIndexes()) rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    std::vector<ColorRef> result;
    for (int row : rows) {
        if (auto color = colorModel_.color(row)) result.push_back(color);
    }
    return result;
}

void MainWindow::selectPalette(const std::string& uuid) {
    int row = paletteModel_.row(uuid);
    if (row < 0) row = paletteModel_.row(User::shared()->target()->uuid);
    if (row < 0) row = 0;
    paletteUUID_ = paletteModel_.palette(row)->uuid;
    restoring_ = true;
    sidebar_->selectionModel()->setCurrentIndex(paletteModel_.index(row), QItemSelectionModel::ClearAndSelect);
    restoring_ = false;
    if (colorModel_.paletteUUID() != paletteUUID_) {
        paletteChanged();
    } else {
        refreshActions();
    }
}

void MainWindow::selectColor(const std::string& uuid) {
    const int row = colorModel_.row(uuid);
    if (row < 0) return;
    colors_->selectionModel()->setCurrentIndex(colorModel_.index(row), QItemSelectionModel::ClearAndSelect);
    colors_->scrollTo(colorModel_.index(row));
}

void MainWindow::paletteChanged() {
    colorUUIDs_.clear();
    colorModel_.setPalette(paletteUUID_);
    inspector_->showColor(paletteUUID_, "");
    // The first colour is chosen, so the inspector has something to show.
    if (colorModel_.rowCount() > 0) {
        colors_->selectionModel()->setCurrentIndex(colorModel_.index(0), QItemSelectionModel::ClearAndSelect);
    }
    // Choosing a palette makes it the one picks and colour commands go to. Run after this turn: the change
    // resets the models, which must not happen inside their own selection signal.
    QTimer::singleShot(0, this, [this] {
        const auto palette = currentPalette();
        if (palette && User::shared()->target() != palette) actions_.run([&] {
            User::shared()->selectTarget(palette);
            return true;
        });
    });
    refreshActions();
}

void MainWindow::colorSelectionChanged() {
    colorUUIDs_.clear();
    for (const auto& color : selectedColors()) colorUUIDs_.push_back(color->uuid);
    const auto current = colorModel_.color(colors_->currentIndex().row());
    if (current && std::find(colorUUIDs_.begin(), colorUUIDs_.end(), current->uuid) != colorUUIDs_.end()) {
        inspector_->showColor(paletteUUID_, current->uuid);
    } else if (!colorUUIDs_.empty()) {
        inspector_->showColor(paletteUUID_, colorUUIDs_.front());
    } else if (!inspector_->picked()) {
        inspector_->clear();
    }
    refreshActions();
}

void MainWindow::inspect(const ColorValue& color) { inspector_->showPicked(color, paletteUUID_); }

void MainWindow::showNotice(const std::string& text) { notice_->showNotice(QString::fromStdString(text)); }

QString MainWindow::noticeText() const { return notice_->text(); }

void MainWindow::setListView(bool list) {
    if (list != Settings::shared().listView()) return Settings::shared().setListView(list);
    cellDelegate_->setGrid(!list);
    colors_->setViewMode(list ? QListView::ListMode : QListView::IconMode);
    colors_->setMovement(QListView::Static);
    colors_->setFlow(list ? QListView::TopToBottom : QListView::LeftToRight);
    colors_->setWrapping(!list);
    colors_->setSpacing(list ? 0 : 4);
    colors_->setGridSize(list ? QSize() : ColorCellDelegate::gridCell(colors_->fontMetrics()) + QSize(8, 8));
    colors_->setDragDropMode(QAbstractItemView::DragDrop);
    colors_->doItemsLayout();
}

void MainWindow::setSort(PaletteColorSort sort) {
    if (sort != Settings::shared().colorSort()) Settings::shared().setColorSort(sort);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    // Files dropped anywhere on the window are imported; colours go to the views that take them.
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const auto palette = currentPalette();
    if (palette && DragData::drop(*event->mimeData(), palette, 0, false, actions_)) event->acceptProposedAction();
}

void MainWindow::saveFrame() {
    if (isMaximized() || isFullScreen()) return;
    const auto frame = geometry();
    SettingsFrame saved{{double(frame.x()), double(frame.y()), double(frame.width()), double(frame.height())}, "remembered"};
    if (Settings::shared().mainFrame() != saved) Settings::shared().setMainFrame(saved);
}

void MainWindow::restoreFrame() {
    const auto& saved = Settings::shared().mainFrame();
    const QScreen* screen = QGuiApplication::primaryScreen();
    const QRect available = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
    if (saved && saved->frame.width >= 400 && saved->frame.height >= 300) {
        const QRect frame(int(saved->frame.x), int(saved->frame.y), int(saved->frame.width), int(saved->frame.height));
        // A frame left on a screen that is gone comes back to the middle of this one.
        if (available.intersects(frame)) return setGeometry(frame);
        resize(frame.size().boundedTo(available.size()));
    } else {
        resize(QSize(1080, 680).boundedTo(available.size()));
    }
    move(available.center() - rect().center());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    saveFrame();
    QMainWindow::closeEvent(event);
}

void MainWindow::hideEvent(QHideEvent* event) {
    saveFrame();
    QMainWindow::hideEvent(event);
}

// ---- controller ----

MainWindow& MainWindowController::window() {
    if (!window_) window_ = std::make_unique<MainWindow>(delegate_);
    return *window_;
}

void MainWindowController::show() {
    auto& shown = window();
    shown.show();
    shown.raise();
    shown.activateWindow();
}

void MainWindowController::hide() {
    if (window_) window_->hide();
}

void MainWindowController::close() {
    if (window_) window_->close();
}

bool MainWindowController::isVisible() const { return window_ && window_->isVisible(); }

void MainWindowController::inspect(const ColorValue& color) {
    // A colour picked for the inspector brings the window up to show it.
    show();
    window_->inspect(color);
}

void MainWindowController::showNotice(const std::string& text) {
    if (window_ && window_->isVisible()) window_->showNotice(text);
}

}  // namespace kro
