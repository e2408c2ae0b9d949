#include "conversioncontroller.h"

#include "conversion.h"
#include "filemaskdialog.h"
#include "recentfolderstorage.h"
#include "workingfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QWidget>

ConversionController::ConversionController(QWidget *window)
    : QObject(window)
    , m_window(window)
    , m_conversion(new Conversion(this))
{
    connect(m_conversion, &Conversion::showTerminateDialog, this,
            &ConversionController::askTerminate);
    connect(m_conversion->process(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished),
            this, &ConversionController::finished);
    connect(m_conversion->process(), &QProcess::errorOccurred, this,
            [this](QProcess::ProcessError error) {
                if (error == QProcess::FailedToStart)
                    startFailed();
            });
}

bool ConversionController::isRunning() const
{
    return m_conversion->isRunning();
}

QStringList ConversionController::applyMask(const QStringList &paths, const QString &mask)
{
    QStringList masks = mask.split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (QString &each : masks)
        each = each.trimmed();
    masks.removeAll(QString());
    if (masks.isEmpty())
        masks << QStringLiteral("*.*");
    QStringList result;
    for (const QString &path : paths) {
        if (QFileInfo(path).isDir()) {
            for (const QString &each : qAsConst(masks))
                result << QDir(path).filePath(each);
        } else {
            result << path;
        }
    }
    return result;
}

QString ConversionController::formatDuration(qint64 milliseconds)
{
    if (milliseconds < 60000)
        return QStringLiteral("%1 s").arg(milliseconds / 1000.0, 0, 'f', 1);
    const qint64 seconds = milliseconds / 1000;
    return QStringLiteral("%1 min %2 s").arg(seconds / 60).arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

void ConversionController::runOrPause(const QMap<QString, QString> &options,
                                      const QString &sourceEncoding,
                                      const QString &targetEncoding, const QStringList &files,
                                      const QString &outputFolder)
{
    Conversion *engine = m_conversion;
    if (engine->isRunning()) {
        // Run pressed during a run pauses or resumes it; never a second run.
        if (m_paused)
            resume();
        else
            pause();
        return;
    }

    QStringList selection = files;
    selection.removeAll(QString());
    const bool hasFolder = std::any_of(selection.cbegin(), selection.cend(),
                                       [](const QString &path) { return QFileInfo(path).isDir(); });
    if (hasFolder) {
        QString mask;
        bool accepted = false;
        if (m_maskQuestion) {
            accepted = m_maskQuestion(&mask);
        } else {
            FileMaskDialog dialog(m_window);
            accepted = dialog.exec() == QDialog::Accepted;
            mask = dialog.mask();
        }
        if (!accepted)
            return;
        selection = applyMask(selection, mask);
    }

    const QString userIni = options.value(QStringLiteral("/INI="));
    QString defaultIni;
    if (userIni.isEmpty()) {
        WorkingFolder::ensureIni();
        if (WorkingFolder::iniExists())
            defaultIni = WorkingFolder::iniPath();
    }
    engine->setEngineOptions(options);
    engine->setDefaultIni(defaultIni);
    engine->setEncodings(sourceEncoding, targetEncoding);
    engine->setFile(selection);
    engine->setOutputDir(outputFolder);
    if (!outputFolder.isEmpty())
        RecentFolderStorage::instance().addFolder(outputFolder);

    m_paused = false;
    m_stopRequested = false;
    m_terminated = false;
    m_clock.start();
    if (!userIni.isEmpty() && !QFileInfo(userIni).isFile()) {
        engine->outputParser().clear();
        engine->appendLog(QStringLiteral("The engine settings file '%1' given in the migration "
                                         "options does not exist; nothing was converted.")
                              .arg(QDir::toNativeSeparators(userIni)));
        startFailed();
        return;
    }
    if (!engine->start()) {
        startFailed();
        return;
    }
    if (userIni.isEmpty() && defaultIni.isEmpty())
        engine->appendLog(QStringLiteral("The engine settings file '%1' was not found; the engine "
                                         "runs with its own defaults.")
                              .arg(QDir::toNativeSeparators(WorkingFolder::iniPath())));
    Q_EMIT runStarted(scriptCount(selection));
    Q_EMIT pauseMode(false);
}

int ConversionController::scriptCount(const QStringList &selection)
{
    int count = 0;
    for (const QString &entry : selection) {
        const QFileInfo info(entry);
        if (info.isFile()) {
            ++count;
            continue;
        }
        // "*.*" stands for every file, as the engine reads it.
        const QString mask = info.fileName() == QLatin1String("*.*") ? QStringLiteral("*")
                                                                     : info.fileName();
        count += info.dir().entryList({mask}, QDir::Files).size();
    }
    return count;
}

void ConversionController::startFailed()
{
    m_paused = false;
    Q_EMIT logRequested();
    Q_EMIT runFinished(true);
}

void ConversionController::terminateNow()
{
    if (!m_conversion->isRunning())
        return;
    m_terminated = true;
    m_conversion->terminate();
    m_conversion->process()->waitForFinished(3000);
}

void ConversionController::pause()
{
    m_conversion->suspend(true);
    m_paused = true;
    Q_EMIT conversionMode();
}

void ConversionController::resume()
{
    m_conversion->suspend(false);
    m_paused = false;
    Q_EMIT pauseMode(true);
}

void ConversionController::StopConversion()
{
    Conversion *engine = m_conversion;
    if (!engine->isRunning())
        return;
    // A suspended engine cannot see the request.
    if (m_paused)
        resume();
    m_stopRequested = true;
    engine->stop();
}

void ConversionController::askTerminate()
{
    bool terminate = false;
    if (m_terminateQuestion) {
        terminate = m_terminateQuestion();
    } else {
        QMessageBox box(QMessageBox::Question, QStringLiteral("Morvane Navarch"),
                        QStringLiteral("The conversion engine has not stopped. Terminate it?"),
                        QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        terminate = box.exec() == QMessageBox::Yes;
    }
    Conversion *engine = m_conversion;
    if (!terminate || !engine->isRunning())
        return;
    if (m_paused)
        resume();
    m_terminated = true;
    engine->terminate();
}

void ConversionController::finished(int exitCode, QProcess::ExitStatus exitStatus)
{
    Conversion *engine = m_conversion;
    // Whatever the engine printed last belongs before the summary.
    engine->readStandardOutput();
    m_paused = false;
    const QString duration = formatDuration(m_clock.isValid() ? m_clock.elapsed() : 0);
    const int withErrors = engine->outputParser().scriptsWithErrors();
    const QString errors = QStringLiteral("%1 script(s) with errors").arg(withErrors);
    QString summary;
    if (m_terminated) {
        summary = QStringLiteral("The conversion engine was terminated after %1; %2.")
                      .arg(duration, errors);
    } else if (exitStatus == QProcess::CrashExit) {
        summary = QStringLiteral("The conversion engine '%1' crashed (%2) after %3; %4.")
                      .arg(engine->startedProgram(), engine->process()->errorString(), duration, errors);
    } else if (m_stopRequested) {
        summary = QStringLiteral("Conversion stopped on request: exit code %1, duration %2, %3.")
                      .arg(exitCode)
                      .arg(duration, errors);
    } else {
        summary = QStringLiteral("Conversion finished: exit code %1, duration %2, %3.")
                      .arg(exitCode)
                      .arg(duration, errors);
    }
    engine->appendLog(summary);
    Q_EMIT runFinished(!m_terminated && !m_stopRequested && exitStatus == QProcess::NormalExit);
}
