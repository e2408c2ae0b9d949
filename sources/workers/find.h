#pragma once

#include "findhit.h"
#include "findlinescanner.h"

#include <QFuture>
#include <QMetaType>
#include <QObject>
#include <QRegExp>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class QThreadPool;

/**
 * The find-in-files search: walks a folder tree for the files whose names
 * match the masks and, when a text is given, reports their matching lines.
 *
 * The walk and the reading run on a thread pool (the walk on one thread, the
 * files spread over the others); the results still come in walk order. Each
 * hit is emitted through FindFile (on a pool thread) and collected into batches
 * that foundHits hands to the GUI thread; finished() follows on the thread the
 * object lives in. A stop ends the run within one block of reading, never by
 * killing a thread, and every row found until then is still reported.
 */
class Find : public QObject
{
    Q_OBJECT
public:
    /** Longest line text kept in a hit, in characters. */
    static constexpr int MaxHitTextLength = FindLineScanner::MaxHitTextLength;

    explicit Find(QObject *parent = nullptr);
    ~Find() override;

    void setPatternSyntax(QRegExp::PatternSyntax syntax) { m_patternSyntax = syntax; }
    void setCaseSensitive(bool caseSensitive) { m_caseSensitive = caseSensitive; }
    void setWholeWords(bool wholeWords) { m_wholeWords = wholeWords; }
    void setFolder(const QString &folder) { m_folder = folder; }
    void setMasks(const QString &masks) { m_masks = masks; }
    void setFindText(const QString &text) { m_findText = text; }

    QString folder() const { return m_folder; }
    QString masks() const { return m_masks; }
    QString findText() const { return m_findText; }

    /** Rows reported by the current or last run; -1 before the first run. */
    int reportedLines() const;
    /** Files looked at by the current or last run; -1 before the first run. */
    int scannedFiles() const;
    /** Files of the current or last run left unsearched because they hold binary data. */
    int binaryFiles() const;
    /** Files of the current or last run that could not be read. */
    int unreadableFiles() const;
    bool isStopRequested() const;
    /** The last run was stopped before it searched everything. */
    bool wasStopped() const;

    /** Starts a run with the values set; a running one is stopped first. */
    void start();
    bool isRunning() const;
    /** Blocks until the running search, if any, has ended. */
    void wait();
    /** Ends a running search: asks it to stop and waits for it (briefly: one block). */
    void stopFindThread();

    /** The masks of a mask text split at "," and ";", blanks trimmed, empty parts dropped. */
    static QStringList splitMasks(const QString &masks);
    /** The pattern actually searched for: with whole words, a space on each side. */
    static QString searchPattern(const QString &text, bool wholeWords);
    /**
     * One pattern that matches a line holding any of @p phrases, each read in
     * @p syntax. With more than one phrase the result is a regular expression
     * and @p syntax is changed to the regular-expression syntax it is written in.
     */
    static QString phrasesPattern(const QStringList &phrases, QRegExp::PatternSyntax &syntax);

Q_SIGNALS:
    void FindFile(const QString &path, const QString &line, const QString &text);
    void foundHits(const QVector<FindHit> &hits);
    /** The run has ended, by itself or by a stop. */
    void finished();

private:
    struct Run;
    void execute(const std::shared_ptr<Run> &run);
    void walk(Run &run, const QString &folder, const QString &parentCanonical);
    void scanFiles(Run &run);
    void complete(Run &run, int sequence, QVector<FindHit> hits);
    void flush(Run &run);

    QString m_masks;
    QString m_folder;
    QString m_findText;
    bool m_wholeWords = false;
    QRegExp::PatternSyntax m_patternSyntax = QRegExp::RegExp;
    bool m_caseSensitive = false;

    QThreadPool *m_pool = nullptr;
    std::shared_ptr<Run> m_run;
    QFuture<void> m_future;
    int m_runNumber = 0;
};
