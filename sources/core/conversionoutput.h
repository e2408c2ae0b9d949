#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <climits>

/** One syntax error the engine reported: the script, its line and the message. */
struct ConversionError
{
    QString file;
    int line = 0;
    QString message;
    /** Where the error's line starts in the output buffer. */
    int position = -1;

    bool operator==(const ConversionError &other) const
    {
        return line == other.line && file == other.file && message == other.message;
    }
};

/**
 * What the engine printed during one run, and the syntax errors found in it.
 *
 * The engine rewrites its progress line in place ("\rC..."), which removes the
 * buffer's last line before the chunk is appended. Errors are found by two
 * patterns: "Converting script (...) to" opens a script (its name ends at the
 * end of its line at the latest), "line N - unexpected
 * token '...'" reports an error in the script opened last. The result is the
 * same as scanning the whole buffer after every chunk, but only the text not
 * yet settled is looked at again, so a run of any length costs linear time.
 */
class ConversionOutput
{
public:
    void clear();

    /** Appends a chunk the engine printed, rewriting the progress line first. */
    void appendOutput(const QByteArray &chunk);
    /** Appends text of our own (command line, messages): no rewrite. */
    void appendText(const QByteArray &text);

    /**
     * Scans what was added since the last scan. Returns true when the number of
     * errors differs from the stored list, which is then replaced. An error that
     * follows the last script line leaves the stored list as it is: the errors
     * are reported once a later script has started.
     */
    bool scan();

    const QByteArray &buffer() const { return m_buffer; }
    /** The stored error list, as of the last scan that changed it. */
    const QVector<ConversionError> &errors() const { return m_reported; }
    /** Every error that has a script before it, including those of the last script. */
    QVector<ConversionError> allErrors() const;
    /** The number of different scripts among allErrors(). */
    int scriptsWithErrors() const;
    /** How many errors allErrors() holds, without building it. */
    int errorCount() const;
    /** Error @p index of allErrors(). */
    ConversionError errorAt(int index) const;
    /** How many "Converting script" lines were seen. */
    int scriptCount() const { return m_scripts.size(); }
    /** The script whose "Converting script" line is the last one starting before @p offset. */
    QString scriptBefore(int offset) const;
    /** The lowest buffer offset removed or rewritten since the last call. */
    int takeChangedFrom();

    struct ReferenceResult
    {
        bool updated = false;
        QVector<ConversionError> errors;
    };
    /**
     * The plain whole-text scan with QRegExp; returns whether a stored list of
     * @p storedCount errors would be replaced, and by what.
     */
    static ReferenceResult referenceScan(const QString &text, int storedCount);

private:
    struct ScriptMatch
    {
        int pos;
        int end;
        QString name;
    };
    struct ErrorMatch
    {
        int pos;
        int end;
        int line;
        QString token;
    };
    struct DeadCandidate
    {
        int pos;
        int resolvedAt;
    };
    enum class Outcome { Matched, Dead, Pending };
    // A candidate that needs more text: where it starts and how far it was
    // read, so that the next scan goes on from there instead of reading the
    // whole (possibly very long) line again.
    struct PendingCandidate
    {
        int pos = -1;
        int checkedTo = 0;
    };

    void truncate(int size);
    void scanScripts();
    void scanErrors();
    Outcome matchScript(int pos, ScriptMatch *match, int *resolvedAt) const;
    Outcome matchError(int pos, ErrorMatch *match) const;
    Outcome pending(PendingCandidate *candidate, int pos, int checkedTo) const;
    ConversionError errorFor(const ErrorMatch &match) const;
    int firstErrorAfterFirstScript() const;

    QByteArray m_buffer;
    QVector<ScriptMatch> m_scripts;
    QVector<ErrorMatch> m_found;
    QVector<DeadCandidate> m_deadScripts;
    int m_scriptResume = 0;
    int m_errorResume = 0;
    mutable PendingCandidate m_scriptPending;
    mutable PendingCandidate m_errorPending;

    QVector<ConversionError> m_reported;
    int m_reportedFirst = 0;
    bool m_reportedStale = false;
    int m_changedFrom = INT_MAX;
};
