#pragma once

#include <QElapsedTimer>
#include <QMetaType>
#include <QRegExp>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThread>
#include <QVector>

#include <atomic>

class FindLineScanner;

/** One result of a search: a matching line, or a listed file when no text is given. */
struct FindHit
{
    QString path;
    QString line; // the line number as text; empty for a listed file
    QString text; // the line, trimmed (and cut when very long)
};
Q_DECLARE_METATYPE(FindHit)
Q_DECLARE_METATYPE(QVector<FindHit>)

/**
 * The find-in-files worker: walks a folder tree for the files whose names
 * match the masks and, when a text is given, reports their matching lines.
 *
 * Each hit is emitted through FindFile (for receivers on the worker thread)
 * and collected into batches that foundHits hands to the GUI thread.
 */
class Find : public QThread
{
    Q_OBJECT
public:
    /** Longest line text kept in a hit, in characters. */
    static constexpr int MaxHitTextLength = 4096;

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
    int reportedLines() const { return m_reportedLines.load(); }
    /** Files looked at by the current or last run; -1 before the first run. */
    int scannedFiles() const { return m_scannedFiles.load(); }
    bool isStopRequested() const { return m_stop.load(); }

    /** Ends a running search: asks, waits up to 10 s, then terminates. */
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

protected:
    void run() override;

private:
    void walk(const QString &folder, const QStringList &masks, FindLineScanner *scanner);
    void searchFile(const QString &path, FindLineScanner *scanner);
    void addHit(const QString &path, int lineNumber, const QString &line);
    void flushHits();

    QString m_masks;
    QString m_folder;
    QString m_findText;
    bool m_wholeWords = false;
    QRegExp::PatternSyntax m_patternSyntax = QRegExp::RegExp;
    bool m_caseSensitive = false;
    std::atomic<int> m_reportedLines{-1};
    std::atomic<int> m_scannedFiles{-1};
    std::atomic<bool> m_stop{false};

    // Worker-thread state of a run.
    QSet<QString> m_visitedFolders;
    QVector<FindHit> m_batch;
    QElapsedTimer m_sinceFlush;
};
