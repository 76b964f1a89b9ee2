// A program of its own that drags data out, as a file manager or an editor does. The end-to-end tests press
// the mouse in its window and move the pointer with xdotool to Kro's, so the drop arrives over XDND from
// another process, exactly as from any other desktop program.
//
// usage: kro_drag_source [--type MIME VALUE]... [FILE]...
// When the drag ends it prints "drag ended: copied" or "drag ended: refused", then stays a while: the
// target fetches the dropped data from the source after the drop, and QDrag::exec returns at the drop
// itself, before the target has said it is done.
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <cstdio>

namespace {

// The files go as text/uri-list; each --type MIME VALUE adds data of that type.
QMimeData* dragData(const QStringList& arguments) {
    auto* data = new QMimeData;
    QList<QUrl> files;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == "--type" && i + 2 < arguments.size()) {
            data->setData(arguments[i + 1], arguments[i + 2].toUtf8());
            i += 2;
        } else {
            files.append(QUrl::fromLocalFile(arguments[i]));
        }
    }
    if (!files.isEmpty()) data->setUrls(files);
    return data;
}

class DragSource : public QWidget {
public:
    DragSource() {
        setWindowTitle("kro-drag-source");
        setFixedSize(120, 120);
    }

protected:
    // The drag starts at the press: the test's pointer has no hand to move past a start distance.
    void mousePressEvent(QMouseEvent*) override {
        auto* drag = new QDrag(this);
        drag->setMimeData(dragData(QApplication::arguments()));
        const Qt::DropAction result = drag->exec(Qt::CopyAction);
        std::printf("drag ended: %s\n", result == Qt::IgnoreAction ? "refused" : "copied");
        std::fflush(stdout);
        QTimer::singleShot(30'000, qApp, &QApplication::quit);
    }
};

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    DragSource window;
    window.show();
    return QApplication::exec();
}
