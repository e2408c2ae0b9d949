#include "copyobjects.h"

#include "copydialog.h"

#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QMessageBox>
#include <QProgressDialog>
#include <QShortcut>

CopyObjects::CopyObjects(const QStringList &sources, const QString &targetFolder,
                         QObject *parent)
    : QObject(parent)
    , m_sources(sources)
    , m_targetFolder(targetFolder)
{
    m_prompt = [](QString &target) {
        CopyDialog dialog(target);
        if (dialog.exec() != QDialog::Accepted)
            return false;
        target = dialog.target();
        return true;
    };
    m_notify = [](const QString &message) {
        QMessageBox::information(nullptr, QStringLiteral("Morvane Navarch"), message);
    };
}

CopyObjects::~CopyObjects() = default;

QString CopyObjects::existsMessage(const QString &target)
{
    return QStringLiteral("File exist '") + QDir::toNativeSeparators(target)
        + QStringLiteral("'");
}

void CopyObjects::cancel()
{
    m_cancelled = true;
    if (m_copier)
        m_copier->cancel();
}

static QString cleanFolder(const QString &text)
{
    QString folder = QDir::fromNativeSeparators(text.trimmed());
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    return folder;
}

bool CopyObjects::execute()
{
    if (m_sources.isEmpty() || m_targetFolder.isEmpty())
        return false;
    m_cancelled = false;

    if (m_sources.size() > 1) {
        QString edited = QDir::toNativeSeparators(m_targetFolder);
        if (!m_prompt(edited))
            return false;
        const QString folder = cleanFolder(edited);
        QVector<FileCopier::Job> jobs;
        for (const QString &source : qAsConst(m_sources)) {
            const QString name = QFileInfo(source).fileName();
            jobs.append({source, folder == QLatin1String("/") ? folder + name
                                                              : folder + QLatin1Char('/') + name});
        }
        const QVector<FileCopier::Result> results = run(jobs);
        if (m_cancelled)
            return false;
        // Kept as users know it: the message follows every copy that worked,
        // a copy that failed is passed over, and the result is inverted.
        for (int i = 0; i < jobs.size(); ++i) {
            if (results.at(i) == FileCopier::Copied)
                m_notify(existsMessage(jobs.at(i).target));
        }
        return results.last() != FileCopier::Copied;
    }

    const QString source = m_sources.first();
    qDebug() << "CopyObjects::Execute" << source;
    const QString name = QFileInfo(source).fileName();
    QString edited = QDir::toNativeSeparators(m_targetFolder == QLatin1String("/")
                                                  ? m_targetFolder + name
                                                  : m_targetFolder + QLatin1Char('/') + name);
    if (!m_prompt(edited))
        return false;
    const QString target = cleanFolder(edited);
    const QVector<FileCopier::Result> results = run({{source, target}});
    if (results.first() != FileCopier::Copied && results.first() != FileCopier::Cancelled)
        m_notify(existsMessage(target));
    return true;
}

QVector<FileCopier::Result> CopyObjects::run(const QVector<FileCopier::Job> &jobs)
{
    FileCopier copier;
    copier.setJobs(jobs);
    m_copier = &copier;
    if (m_cancelled)
        copier.cancel();

    std::unique_ptr<QProgressDialog> dialog;
    if (m_showProgress) {
        dialog = std::make_unique<QProgressDialog>(QStringLiteral("Copying..."),
                                                   QStringLiteral("&Cancel"), 0, 1000);
        dialog->setWindowTitle(QStringLiteral("Copy"));
        dialog->setMinimumDuration(500);
        dialog->setAutoReset(false);
        dialog->setAutoClose(false);
        dialog->setValue(0);
        connect(dialog.get(), &QProgressDialog::canceled, this, &CopyObjects::cancel);
        auto *shortcut = new QShortcut(QKeySequence(QStringLiteral("Ctrl+K")), dialog.get());
        connect(shortcut, &QShortcut::activated, this, &CopyObjects::cancel);
    }
    // Progress arrives queued; a receiver local to this call drops whatever
    // is still queued when the call returns.
    QObject receiver;
    connect(&copier, &FileCopier::progress, &receiver, [this, &dialog](qint64 done, qint64 total) {
        if (dialog && total > 0)
            dialog->setValue(int(done * 1000 / total));
        Q_EMIT progress(done, total);
    });

    Q_EMIT turnWaitingMode(Qt::BusyCursor);
    QEventLoop loop;
    connect(&copier, &QThread::finished, &loop, &QEventLoop::quit);
    copier.start(QThread::LowPriority);
    // The window stays responsive (and Ctrl+K reachable) while the copy runs.
    loop.exec();
    copier.wait();
    m_copier = nullptr;
    Q_EMIT turnWaitingMode(Qt::ArrowCursor);
    return copier.results();
}
