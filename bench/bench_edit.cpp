// The window's longest stall while the editor opens large files and the caret
// moves through them: a 1 ms timer on the GUI thread records the longest gap
// between its ticks (goal: under 200 ms).
//
// bench_edit

#include "edit.h"
#include "largefileview.h"

#include <Qsci/qsciscintilla.h>

#include <QApplication>
#include <QBoxLayout>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QEventLoop>
#include <QKeyEvent>
#include <QTimer>

#include <cstdio>

namespace {

void wait(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

void press(QWidget *target, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QKeyEvent down(QEvent::KeyPress, key, modifiers);
    QCoreApplication::sendEvent(target, &down);
    QKeyEvent up(QEvent::KeyRelease, key, modifiers);
    QCoreApplication::sendEvent(target, &up);
    QCoreApplication::processEvents();
}

struct Stall
{
    QTimer ticker;
    QElapsedTimer sinceTick;
    qint64 longest = 0;

    Stall()
    {
        ticker.setInterval(1);
        QObject::connect(&ticker, &QTimer::timeout, [this] {
            longest = qMax(longest, sinceTick.restart());
        });
    }
    void start()
    {
        longest = 0;
        sinceTick.start();
        ticker.start();
    }
    qint64 stop()
    {
        wait(50);
        ticker.stop();
        return longest;
    }
};

void measure(const char *what, const QString &path, QVBoxLayout *layout)
{
    Stall stall;
    QElapsedTimer timer;
    stall.start();
    timer.start();
    Edit edit;
    edit.setHostLayout(layout);
    edit.setCodec("UTF-8");
    edit.setFile(path);
    // Opened from the event loop, as a key press would.
    QTimer::singleShot(5, &edit, &Edit::execute);
    wait(20);
    const double openSeconds = timer.elapsed() / 1000.0;
    const qint64 openStall = stall.stop();

    stall.start();
    QWidget *target = edit.editorWidget() ? static_cast<QWidget *>(edit.editorWidget())
                                          : edit.largeFileView();
    for (auto key : {Qt::Key_End, Qt::Key_Down, Qt::Key_Home, Qt::Key_PageDown, Qt::Key_End}) {
        press(target, key, Qt::ControlModifier);
        press(target, key);
    }
    const qint64 moveStall = stall.stop();
    std::printf("%-34s %-7s open %6.3f s  longest stall opening %5lld ms, moving the caret %5lld ms"
                "  (goal < 200 ms)\n",
                what, edit.largeFileView() ? "viewer" : "editor", openSeconds, openStall,
                moveStall);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false");
    QApplication app(argc, argv);
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    host.resize(1000, 700);
    host.show();

    QTemporaryDir dir;
    const QByteArray line("insert into orders values (1, 'abcdefghijklmnopqrstuvwxyz', 42);\n");
    const auto write = [&dir](const char *name, const QByteArray &content) {
        QFile file(dir.filePath(QLatin1String(name)));
        file.open(QIODevice::WriteOnly);
        file.write(content);
        return file.fileName();
    };
    measure("50 MB script", write("big.sql", line.repeated(int((50 << 20) / line.size()))),
            layout);
    measure("10 MB single line", write("line.sql", QByteArray(10 << 20, 'x')), layout);
    measure("largest the editor takes (MB)",
            write("edge.sql", line.repeated(int(Edit::maximumFileSize() / line.size()))), layout);
    measure("largest highlighted (SQL)",
            write("lexed.sql", line.repeated(int(Edit::plainTextSize() / line.size()) - 1)), layout);
    measure("longest line the editor takes",
            write("edgeline.sql", QByteArray(Edit::maximumLineLength(), 'y') + '\n'), layout);
    return 0;
}
