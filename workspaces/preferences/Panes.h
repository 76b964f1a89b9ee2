#pragma once
// The panes of the preferences window. Each is bound to its fields (see PaneBinder) and follows changes
// made elsewhere. Controls carry the name of the field they show as their object name.
#include <QWidget>

namespace kro {

class AppDelegate;

// Start at login, sounds, the history limit, the colour profile, automatic import and its patterns.
QWidget* makeGeneralPane(QWidget* parent);
// Theme, tray icon, colour vision, the loupe's size, zoom and overlays.
QWidget* makeAppearancePane(QWidget* parent);
// The colour dock: shown, on every workspace, its edge and screen, the palettes it leaves out.
QWidget* makeDockPane(QWidget* parent);
// The version, where things are kept, and the tour again.
QWidget* makeAboutPane(AppDelegate* delegate, QWidget* parent);

// A pane's frame: a title, then its content laid out in a form.
QWidget* paneWithTitle(const QString& title, QWidget* content, QWidget* parent);

}  // namespace kro
