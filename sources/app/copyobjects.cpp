#include "copyobjects.h"

#include "copydialog.h"
#include "filenamecodec.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDir>
#include <QLocale>
#include <QMessageBox>
#include <QProgressDialog>
#include <QShortcut>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int ProgressDelayMs = 400;
constexpr int ListedErrors = 20;

QString shownPath(const QString &path)
{
    return FileNameCodec::displayName(QDir::toNativeSeparators(path));
}

QString describe(const QFileInfo &info)
{
    if (info.isSymLink())
        return CopyObjects::tr("a link");
    if (info.isDir())
        return CopyObjects::tr("a folder");
    return CopyObjects::tr("%1, modified %2")
        .arg(QLocale().formattedDataSize(info.size()),
             QLocale().toString(info.lastModified(), QLocale::ShortFormat));
}

// Taken literally: blanks at either end can be part of a name.
QString typedPath(const QString &text, const QString &base)
{
    QString path = QDir::fromNativeSeparators(text);
    if (QDir::isRelativePath(path))
        path = base + QLatin1Char('/') + path;
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    return path;
}

QString join(const QString &folder, const QString &name)
{
    return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

} // namespace

CopyObjects::CopyObjects(const QStringList &sources, const QString &targetFolder,
                         QWidget *dialogParent, QObject *parent)
    : QObject(parent)
    , m_sources(sources)
    , m_targetFolder(targetFolder)
    , m_dialogParent(dialogParent)
{
    m_prompt = [this](QString &target) {
        CopyDialog dialog(target, m_dialogParent);
        if (dialog.exec() != QDialog::Accepted)
            return false;
        target = dialog.target();
        return true;
    };
    m_notify = [this](const QString &message) {
        auto *box = new QMessageBox(QMessageBox::Information, QStringLiteral("Copy"), message,
                                    QMessageBox::Ok, m_dialogParent);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->open();
    };
    m_conflictPrompt = [this](const QString &source, const QString &target) {
        askConflict(source, target);
    };
}

CopyObjects::~CopyObjects()
{
    if (m_copier)
        m_copier->stop();
    m_thread.quit();
    m_thread.wait();
    if (m_copier)
        m_copier->joined();
}

void CopyObjects::cancel()
{
    if (m_copier)
        m_copier->stop();
}

void CopyObjects::answerConflict(FileCopier::Choice choice, bool forAll)
{
    if (m_copier)
        m_copier->answer(choice, forAll);
}

bool CopyObjects::execute()
{
    if (m_sources.isEmpty() || m_targetFolder.isEmpty() || m_copier)
        return false;

    QVector<FileCopier::Job> jobs;
    if (m_sources.size() > 1) {
        QString edited = QDir::toNativeSeparators(m_targetFolder);
        if (!m_prompt(edited) || edited.isEmpty())
            return false;
        const QString folder = typedPath(edited, m_targetFolder);
        for (const QString &source : qAsConst(m_sources))
            jobs.append({source, join(folder, QFileInfo(source).fileName())});
    } else {
        const QString source = m_sources.first();
        const QString name = QFileInfo(source).fileName();
        const QString proposed = QDir::toNativeSeparators(join(m_targetFolder, name));
        QString edited = proposed;
        if (!m_prompt(edited) || edited.isEmpty())
            return false;
        QString target = typedPath(edited, m_targetFolder);
        // A folder typed in place of the proposal receives the copy under its own name.
        const QFileInfo typed(target);
        const bool folderTyped = edited.endsWith(QLatin1Char('/'))
            || edited.endsWith(QDir::separator())
            || (edited != proposed && typed.isDir()
                && typed.canonicalFilePath() != QFileInfo(source).canonicalFilePath());
        if (folderTyped)
            target = join(target, name);
        jobs.append({source, target});
    }
    start(jobs);
    return true;
}

void CopyObjects::start(const QVector<FileCopier::Job> &jobs)
{
    m_copier = std::make_unique<FileCopier>(jobs);
    m_copier->moveToThread(&m_thread);
    connect(m_copier.get(), &FileCopier::progress, this, &CopyObjects::showProgress);
    connect(m_copier.get(), &FileCopier::conflict, this,
            [this](const QString &source, const QString &target) {
                m_conflictPrompt(source, target);
            });
    connect(m_copier.get(), &FileCopier::finished, this, &CopyObjects::copyFinished);
    connect(&m_thread, &QThread::started, m_copier.get(), &FileCopier::run);

    if (m_showProgress) {
        m_progress = new QProgressDialog(m_dialogParent);
        m_progress->setWindowTitle(QStringLiteral("Copy"));
        m_progress->setLabelText(tr("Looking at what to copy..."));
        m_progress->setCancelButtonText(tr("&Cancel"));
        m_progress->setRange(0, 1000);
        m_progress->setAutoReset(false);
        m_progress->setAutoClose(false);
        // Not modal: a modal progress window runs events from inside setValue().
        m_progress->setWindowModality(Qt::NonModal);
        m_progress->setMinimumDuration(ProgressDelayMs);
        connect(m_progress, &QProgressDialog::canceled, this, &CopyObjects::cancel);
        // The progress window has the focus: the main window's Ctrl+K does not reach it.
        auto *cancelKey = new QShortcut(QKeySequence(QStringLiteral("Ctrl+K")), m_progress);
        connect(cancelKey, &QShortcut::activated, m_progress, &QProgressDialog::canceled);
        scheduleProgress();
    }
    Q_EMIT turnWaitingMode(Qt::BusyCursor);
    m_thread.start(QThread::LowPriority);
}

void CopyObjects::showProgress(int filesDone, int filesTotal, qint64 bytesDone,
                               qint64 bytesTotal, const QString &current)
{
    Q_EMIT progress(filesDone, filesTotal, bytesDone, bytesTotal);
    if (!m_progress)
        return;
    const QLocale locale;
    QString text = tr("%1 of %2 files, %3 of %4")
                       .arg(filesDone)
                       .arg(filesTotal)
                       .arg(locale.formattedDataSize(bytesDone),
                            locale.formattedDataSize(bytesTotal));
    if (!current.isEmpty())
        text = tr("Copying %1").arg(shownPath(current)) + QLatin1Char('\n') + text;
    m_progress->setLabelText(text);
    const qint64 value = bytesTotal > 0 ? bytesDone * 1000 / bytesTotal
                                        : (filesTotal > 0 ? qint64(filesDone) * 1000 / filesTotal : 0);
    m_progress->setValue(int(value));
}

void CopyObjects::scheduleProgress()
{
    QTimer::singleShot(ProgressDelayMs, m_progress, [this] {
        if (isRunning() && !m_conflictBox)
            m_progress->show();
    });
}

void CopyObjects::askConflict(const QString &source, const QString &target)
{
    // The question must not sit under the progress window: it goes away
    // (its own show timer too) until the user has answered.
    if (m_progress) {
        m_progress->reset();
        m_progress->hide();
    }
    const QFileInfo existing(target);
    const QString text = tr("\"%1\" already exists in %2.\n\nExisting: %3\nCopied: %4")
                             .arg(shownPath(existing.fileName()), shownPath(existing.path()),
                                  describe(existing), describe(QFileInfo(source)));
    auto *box = new QMessageBox(QMessageBox::Question, QStringLiteral("Copy"), text,
                                QMessageBox::NoButton, m_dialogParent);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton *overwrite = box->addButton(tr("&Overwrite"), QMessageBox::DestructiveRole);
    QPushButton *skip = box->addButton(tr("&Skip"), QMessageBox::RejectRole);
    QPushButton *rename = box->addButton(tr("&Rename"), QMessageBox::ActionRole);
    QPushButton *stop = box->addButton(QMessageBox::Cancel);
    box->setDefaultButton(skip);
    box->setEscapeButton(stop);
    box->setCheckBox(new QCheckBox(tr("Apply to &all"), box));
    connect(box, &QDialog::finished, this, [=] {
        const QAbstractButton *clicked = box->clickedButton();
        FileCopier::Choice choice = FileCopier::Cancel;
        if (clicked == overwrite)
            choice = FileCopier::Overwrite;
        else if (clicked == skip)
            choice = FileCopier::Skip;
        else if (clicked == rename)
            choice = FileCopier::Rename;
        answerConflict(choice, box->checkBox()->isChecked());
        // Not at once: the next name may be asked about right away.
        if (m_progress)
            scheduleProgress();
    });
    m_conflictBox = box;
    box->open();
}

void CopyObjects::copyFinished(const FileCopier::Summary &summary)
{
    m_thread.quit();
    m_thread.wait();
    m_copier->joined();
    m_copier.reset();
    if (m_progress)
        m_progress->deleteLater();
    if (m_conflictBox)
        m_conflictBox->close();
    Q_EMIT turnWaitingMode(Qt::ArrowCursor);
    if (m_notify)
        m_notify(summaryText(summary));
    Q_EMIT finished(summary);
}

QString CopyObjects::summaryText(const FileCopier::Summary &summary)
{
    QString text = (summary.cancelled ? tr("Copy cancelled: %1 copied, %2 skipped, %3 failed.")
                                      : tr("Copy finished: %1 copied, %2 skipped, %3 failed."))
                       .arg(summary.copied)
                       .arg(summary.skipped)
                       .arg(summary.errors.size());
    for (int i = 0; i < summary.errors.size() && i < ListedErrors; ++i) {
        const FileCopier::Failure &failure = summary.errors.at(i);
        text += QLatin1Char('\n') + shownPath(failure.path) + QStringLiteral(": ") + failure.reason;
    }
    if (summary.errors.size() > ListedErrors)
        text += QLatin1Char('\n') + tr("... and %1 more").arg(summary.errors.size() - ListedErrors);
    return text;
}
