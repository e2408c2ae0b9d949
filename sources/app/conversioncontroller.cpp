#include "conversioncontroller.h"

#include "conversion.h"
#include "enginesuspender.h"
#include "filemaskdialog.h"
#include "navarch.h"
#include "recentfolderstorage.h"
#include "workingfolder.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QWidget>

ConversionController::ConversionController(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    Conversion *engine = conversion();
    connect(engine, &Conversion::showTerminateDialog, this, &ConversionController::askTerminate);
    connect(engine, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &ConversionController::finished);
    connect(engine, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            m_paused = false;
            Q_EMIT runFinished();
        }
    });
}

Conversion *ConversionController::conversion() const
{
    return dynamic_cast<Conversion *>(Navarch::instance().getCommand(CONVERSION));
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

void ConversionController::runOrPause(const QStringList &optionPieces,
                                      const QString &sourceEncoding,
                                      const QString &targetEncoding, const QStringList &files,
                                      const QString &outputFolder)
{
    Conversion *engine = conversion();
    if (engine->state() != QProcess::NotRunning) {
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

    // Some codec names hold a blank ("IBM 850"): quoted, they stay one switch.
    const auto encodingSwitch = [](const char *name, const QString &encoding) {
        return QStringLiteral(" %1%2").arg(QLatin1String(name),
                                           encoding.contains(QLatin1Char(' '))
                                               ? QLatin1Char('"') + encoding + QLatin1Char('"')
                                               : encoding);
    };
    QString extra = optionPieces.join(QString());
    extra += encodingSwitch("/SRCENC=", sourceEncoding);
    extra += encodingSwitch("/TRGENC=", targetEncoding);
    engine->setExtraOptions(extra);
    engine->setFile(selection);
    engine->setOutputDir(outputFolder);
    if (!outputFolder.isEmpty())
        RecentFolderStorage::instance().addFolder(outputFolder);

    m_paused = false;
    m_stopRequested = false;
    m_terminated = false;
    m_clock.start();
    const bool started = engine->start();
    const bool hasIni = std::any_of(optionPieces.cbegin(), optionPieces.cend(), [](const QString &piece) {
        return piece.trimmed().startsWith(QLatin1String("/INI="));
    });
    if (!hasIni)
        engine->appendLog(QStringLiteral("The engine settings file '%1' was not found; the engine "
                                         "runs with its own defaults.")
                              .arg(WorkingFolder::iniPath()));
    if (started && engine->state() != QProcess::NotRunning)
        Q_EMIT pauseMode(false);
    else
        Q_EMIT runFinished();
}

QByteArray ConversionController::engineExecutableName() const
{
#ifdef Q_OS_WIN
    return QByteArrayLiteral("Morvane.exe");
#else
    return QFileInfo(conversion()->startedProgram()).fileName().toLocal8Bit();
#endif
}

void ConversionController::pause()
{
    EngineSuspender::forEachEngineProcess(engineExecutableName().constData(), true);
    m_paused = true;
    Q_EMIT conversionMode();
}

void ConversionController::resume()
{
    EngineSuspender::forEachEngineProcess(engineExecutableName().constData(), false);
    m_paused = false;
    Q_EMIT pauseMode(true);
}

void ConversionController::StopConversion()
{
    Conversion *engine = conversion();
    if (engine->state() == QProcess::NotRunning)
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
    Conversion *engine = conversion();
    if (!terminate || engine->state() == QProcess::NotRunning)
        return;
    if (m_paused)
        resume();
    m_terminated = true;
    engine->terminate();
}

void ConversionController::finished(int exitCode, QProcess::ExitStatus exitStatus)
{
    Conversion *engine = conversion();
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
                      .arg(engine->startedProgram(), engine->errorString(), duration, errors);
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
    Q_EMIT runFinished();
}
