#pragma once

#include "settings.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

/** A fresh folder for one test, with helpers to fill it. */
class TestDir : public QTemporaryDir
{
public:
    QString filePath(const QString &name) const { return QTemporaryDir::filePath(name); }

    QString createFile(const QString &name, const QByteArray &bytes = QByteArray()) const
    {
        const QString full = filePath(name);
        QDir().mkpath(QFileInfo(full).absolutePath());
        QFile file(full);
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot create %s", qPrintable(full));
        file.write(bytes);
        return full;
    }

    QString createDir(const QString &name) const
    {
        const QString full = filePath(name);
        QDir().mkpath(full);
        return full;
    }
};

/**
 * Keeps every test away from the user's real settings and folders, and starts
 * each test program from an empty store so reruns do not inherit old values.
 */
inline void useTestSettings()
{
    QStandardPaths::setTestModeEnabled(true);
    Settings().clear();
}

#ifdef QT_WIDGETS_LIB
#include <QApplication>
#include <functional>

/**
 * Runs @p action on the next modal widget other than @p notThis, polled so
 * that it also reaches a box opened from inside a dialog.
 */
inline void onModal(std::function<void(QWidget *)> action, QWidget *notThis = nullptr)
{
    auto *timer = new QTimer;
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, [timer, action, notThis] {
        QWidget *widget = QApplication::activeModalWidget();
        if (widget && widget != notThis) {
            timer->stop();
            timer->deleteLater();
            action(widget);
        }
    });
    timer->start();
}
#endif
