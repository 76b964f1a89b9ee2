// The about pane: what Kro is, its version, where it keeps its files, and the tour again.
#include <QDesktopServices>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "app/AppDelegate.h"
#include "platform/Environment.h"
#include "workspaces/preferences/Panes.h"

namespace kro {

QWidget* makeAboutPane(AppDelegate* delegate, QWidget* parent) {
    auto* pane = new QWidget(parent);
    auto* layout = new QVBoxLayout(pane);
    auto* title = new QLabel("Kro " KRO_VERSION, pane);
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.5);
    big.setBold(true);
    title->setFont(big);
    title->setAccessibleName("Kro version " KRO_VERSION);
    layout->addWidget(title);
    auto* blurb = new QLabel("A color picker and palette manager for the Linux desktop: pick from the screen, keep "
                             "palettes, and carry them to and from other design programs.",
                             pane);
    blurb->setWordWrap(true);
    layout->addWidget(blurb);

    auto* form = new QFormLayout();
    const auto& paths = env().paths;
    auto folderRow = [&](const QString& label, const std::string& path) {
        // A link (drawn in the theme's link colour, reached by Tab) that opens the folder.
        const QString folder = QString::fromStdString(path);
        auto* open = new QLabel("<a href=\"" + QUrl::fromLocalFile(folder).toString().toHtmlEscaped() + "\">" +
                                    folder.toHtmlEscaped() + "</a>",
                                pane);
        open->setTextInteractionFlags(Qt::TextBrowserInteraction);
        open->setAccessibleName("Open the folder " + label.toLower());
        QObject::connect(open, &QLabel::linkActivated, pane, [](const QString& url) { QDesktopServices::openUrl(QUrl(url)); });
        form->addRow(label + ":", open);
    };
    folderRow("Library", paths.dataHome + "/kroapp.Kro");
    folderRow("Settings", paths.configHome + "/kroapp.Kro");
    folderRow("Log", paths.cacheHome);
    layout->addLayout(form);

    auto* tour = new QPushButton("Show the Welcome Tour", pane);
    tour->setAccessibleName("Show the welcome tour again");
    QObject::connect(tour, &QPushButton::clicked, pane, [delegate] {
        if (delegate && delegate->onboardingWindowController) delegate->onboardingWindowController->show();
    });
    layout->addWidget(tour, 0, Qt::AlignLeft);
    layout->addStretch(1);
    return pane;
}

}  // namespace kro
