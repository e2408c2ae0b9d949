#include "fileremover.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr qint64 ProgressMs = 200;

} // namespace

FileRemover::FileRemover(const QStringList &paths, QObject *parent)
    : QObject(parent)
    , m_paths(paths)
{
}

void FileRemover::run()
{
    m_sinceProgress.start();
    for (const QString &path : qAsConst(m_paths)) {
        if (m_stop)
            break;
        remove(path);
    }
    Q_EMIT finished(m_removed, m_stop);
    m_ran.store(true, std::memory_order_release);
}

bool FileRemover::remove(const QString &path)
{
    if (m_stop)
        return false;
    if (m_sinceProgress.elapsed() >= ProgressMs) {
        m_sinceProgress.restart();
        Q_EMIT progress(m_removed, path);
    }
    const QFileInfo info(path);
    bool removed = true;
    if (info.isSymLink() || info.isJunction() || !info.isDir()) {
        removed = QFile::remove(path);
    } else {
        const QFileInfoList entries = QDir(path).entryInfoList(
            QDir::Files | QDir::Dirs | QDir::System | QDir::NoDotAndDotDot, QDir::NoSort);
        for (const QFileInfo &entry : entries)
            removed = remove(entry.absoluteFilePath()) && removed;
        removed = !m_stop && QDir().rmdir(path) && removed;
    }
    if (removed)
        ++m_removed;
    return removed;
}
