#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

class Conversion;
class QWidget;

/**
 * Owns one engine run: starts it, pauses and resumes it on the same action,
 * stops it, and reports how it ended.
 */
class ConversionController : public QObject
{
    Q_OBJECT
public:
    explicit ConversionController(QWidget *window);

    Conversion *conversion() const;

    /**
     * Run pressed: starts a run with these engine switches, encodings, files and
     * output folder when none is in progress, else pauses or resumes it.
     */
    void runOrPause(const QStringList &optionPieces, const QString &sourceEncoding,
                    const QString &targetEncoding, const QStringList &files,
                    const QString &outputFolder);

Q_SIGNALS:
    void pauseMode(bool isRunning);
    void conversionMode();
    void changeConversionIndexes(int sourceIndex, int targetIndex);

public Q_SLOTS:
    void StopConversion();

private:
    QWidget *m_window;
};
