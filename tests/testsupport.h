#pragma once

#include "settings.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

/** A fresh folder for one test, with helpers to fill it. */
class TestDir : public QTemporaryDir
{
public:
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

    /** Creates a file whose name is given as raw bytes, valid UTF-8 or not. */
    void createRawFile(const QByteArray &name, const QByteArray &bytes) const
    {
        const QByteArray full = QFile::encodeName(path()) + '/' + name;
        std::FILE *file = std::fopen(full.constData(), "wb");
        const size_t size = size_t(bytes.size());
        if (!file || std::fwrite(bytes.constData(), 1, size, file) != size)
            qFatal("cannot create %s", full.constData());
        std::fclose(file);
    }
};

/** The bytes of the file at @p path, or "<unreadable>". */
inline QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

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
#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <functional>

/**
 * Answers every message box while it lives: with @p button when the box has it,
 * else with the box's default button. Records the last box's text and buttons.
 */
class BoxAnswer : public QObject
{
public:
    explicit BoxAnswer(QMessageBox::StandardButton button)
        : m_button(button)
    {
        auto *timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box || box == m_last)
                return;
            m_last = box;
            ++count;
            text = box->text();
            buttons = box->standardButtons();
            QAbstractButton *button = box->button(m_button);
            button = button ? button : box->defaultButton();
            (button ? button : box->buttons().value(0))->click();
        });
        timer->start(10);
    }
    QString text;
    QMessageBox::StandardButtons buttons;
    int count = 0;

private:
    QMessageBox::StandardButton m_button;
    QPointer<QMessageBox> m_last;
};

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
