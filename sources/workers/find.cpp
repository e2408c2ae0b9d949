#include "find.h"

#include "findlinescanner.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

// A batch goes to the GUI thread when it holds this many hits or is this old.
constexpr int BatchHits = 500;
constexpr qint64 BatchMilliseconds = 100;

// A wildcard phrase written as the regular expression QRegExp reads it as.
QString wildcardToRegExp(const QString &wildcard)
{
    QString rx;
    const int length = wildcard.length();
    int i = 0;
    while (i < length) {
        const QChar c = wildcard.at(i++);
        switch (c.unicode()) {
        case '\\':
            rx += QLatin1String("\\\\");
            break;
        case '*':
            rx += QLatin1String(".*");
            break;
        case '?':
            rx += QLatin1Char('.');
            break;
        case '$': case '(': case ')': case '+': case '.': case '^': case '{': case '|': case '}':
            rx += QLatin1Char('\\');
            rx += c;
            break;
        case '[':
            rx += c;
            if (i < length && wildcard.at(i) == QLatin1Char('^'))
                rx += wildcard.at(i++);
            if (i < length && wildcard.at(i) == QLatin1Char(']'))
                rx += wildcard.at(i++);
            while (i < length && wildcard.at(i) != QLatin1Char(']')) {
                if (wildcard.at(i) == QLatin1Char('\\'))
                    rx += QLatin1Char('\\');
                rx += wildcard.at(i++);
            }
            break;
        default:
            rx += c;
        }
    }
    return rx;
}

} // namespace

Find::Find(QObject *parent)
    : QThread(parent)
{
    qRegisterMetaType<FindHit>();
    qRegisterMetaType<QVector<FindHit>>();
}

Find::~Find()
{
    stopFindThread();
}

QStringList Find::splitMasks(const QString &masks)
{
    QStringList result;
    const QStringList parts = masks.split(QRegularExpression(QStringLiteral("(,|;)")),
                                          Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString mask = part.trimmed();
        if (!mask.isEmpty())
            result << mask;
    }
    return result;
}

QString Find::searchPattern(const QString &text, bool wholeWords)
{
    return wholeWords ? QLatin1Char(' ') + text + QLatin1Char(' ') : text;
}

QString Find::phrasesPattern(const QStringList &phrases, QRegExp::PatternSyntax &syntax)
{
    QStringList kept;
    for (const QString &phrase : phrases) {
        const QString trimmed = phrase.trimmed();
        if (!trimmed.isEmpty())
            kept << trimmed;
    }
    if (kept.size() <= 1)
        return kept.value(0);

    QStringList alternatives;
    for (const QString &phrase : qAsConst(kept)) {
        switch (syntax) {
        case QRegExp::FixedString:
            alternatives << QRegExp::escape(phrase);
            break;
        case QRegExp::Wildcard:
        case QRegExp::WildcardUnix:
            alternatives << wildcardToRegExp(phrase);
            break;
        default:
            alternatives << phrase;
        }
    }
    if (syntax != QRegExp::RegExp2)
        syntax = QRegExp::RegExp;
    // The alternation is grouped as a whole, so that the spaces of whole words
    // surround every phrase rather than the first and the last one only.
    return QStringLiteral("(?:(?:") + alternatives.join(QStringLiteral(")|(?:"))
        + QStringLiteral("))");
}

void Find::stopFindThread()
{
    if (!isRunning())
        return;
    qDebug() << "Find::StopFindThread()";
    m_stop = true;
    if (!wait(10000)) {
        terminate();
        wait();
    }
    // A terminated run never reaches the end of run(), where the flag is cleared;
    // left set, it would end the next search before its first entry.
    m_stop = false;
}

void Find::run()
{
    m_reportedLines = 0;
    m_scannedFiles = 0;
    m_visitedFolders.clear();
    m_batch.clear();
    m_sinceFlush.start();

    const QStringList masks = splitMasks(m_masks);
    if (m_findText.isEmpty()) {
        walk(m_folder, masks, nullptr);
    } else {
        FindLineScanner scanner(searchPattern(m_findText, m_wholeWords), m_patternSyntax,
                                m_caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
        if (scanner.isValid())
            walk(m_folder, masks, &scanner);
        else
            qDebug() << "Find: invalid pattern" << m_findText;
    }
    flushHits();
    m_visitedFolders.clear();
    // Cleared here rather than at the start, so that a stop asked for between
    // start() and the first entry is not lost.
    m_stop = false;
}

void Find::walk(const QString &folder, const QStringList &masks, FindLineScanner *scanner)
{
    // A folder reached again through a symbolic link is searched once.
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (canonical.isEmpty() || m_visitedFolders.contains(canonical))
        return;
    m_visitedFolders.insert(canonical);

    const QFileInfoList entries = QDir(folder).entryInfoList(
        masks, QDir::Dirs | QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot, QDir::NoSort);
    for (const QFileInfo &entry : entries) {
        if (m_stop.load(std::memory_order_relaxed))
            return;
        if (entry.isDir())
            walk(entry.absoluteFilePath(), masks, scanner);
        else
            searchFile(entry.absoluteFilePath(), scanner);
    }
}

void Find::searchFile(const QString &path, FindLineScanner *scanner)
{
    ++m_scannedFiles;
    if (!scanner) {
        addHit(path, 0, QString());
    } else {
        // A file that cannot be read gives no rows.
        scanner->scanFile(path, m_stop, [this, &path](int lineNumber, const QString &line) {
            addHit(path, lineNumber, line);
        });
    }
    if (!m_batch.isEmpty() && m_sinceFlush.hasExpired(BatchMilliseconds))
        flushHits();
}

void Find::addHit(const QString &path, int lineNumber, const QString &line)
{
    ++m_reportedLines;
    const QString number = lineNumber > 0 ? QString::number(lineNumber) : QString();
    Q_EMIT FindFile(path, number, line);
    QString text = line.trimmed();
    if (text.size() > MaxHitTextLength) {
        text.truncate(MaxHitTextLength);
        text += QStringLiteral("...");
    }
    m_batch.append(FindHit{path, number, text});
    if (m_batch.size() >= BatchHits || m_sinceFlush.hasExpired(BatchMilliseconds))
        flushHits();
}

void Find::flushHits()
{
    m_sinceFlush.restart();
    if (m_batch.isEmpty())
        return;
    Q_EMIT foundHits(m_batch);
    m_batch.clear();
}
