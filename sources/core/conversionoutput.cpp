#include "conversionoutput.h"

#include <QRegExp>
#include <QSet>

#include <algorithm>
#include <climits>
#include <cstring>

namespace {

const char ScriptLiteral[] = "Converting script (";
const int ScriptLiteralSize = sizeof(ScriptLiteral) - 1;
const char ErrorLiteral[] = "line ";
const int ErrorLiteralSize = sizeof(ErrorLiteral) - 1;
const char ErrorMiddle[] = " - unexpected token ";
const int ErrorMiddleSize = sizeof(ErrorMiddle) - 1;

enum class Prefix { Full, Partial, Mismatch };

// Compares @p literal with the text at @p pos; Partial when the text ends
// before the literal does but agrees so far. @p mismatchAt gets the index of
// the first differing byte.
Prefix comparePrefix(const QByteArray &text, int pos, const char *literal, int size,
                     int *mismatchAt = nullptr)
{
    const int n = text.size();
    const char *data = text.constData();
    for (int k = 0; k < size; ++k) {
        if (pos + k >= n)
            return Prefix::Partial;
        if (data[pos + k] != literal[k]) {
            if (mismatchAt)
                *mismatchAt = pos + k;
            return Prefix::Mismatch;
        }
    }
    return Prefix::Full;
}

QString decode(const QByteArray &text, int from, int to)
{
    return QString::fromUtf8(text.constData() + from, to - from);
}

} // namespace

void ConversionOutput::clear()
{
    *this = ConversionOutput();
    // Everything shown so far is gone.
    m_changedFrom = 0;
}

void ConversionOutput::appendOutput(const QByteArray &chunk)
{
    // A carriage return followed by "C" is the engine redrawing its progress
    // line: the previous last line goes, so progress lines do not pile up.
    if (chunk.contains("\rC"))
        truncate(std::max(0, m_buffer.lastIndexOf('\n')));
    m_buffer.append(chunk);
}

void ConversionOutput::appendText(const QByteArray &text)
{
    m_buffer.append(text);
}

int ConversionOutput::takeChangedFrom()
{
    const int changed = std::min(m_changedFrom, m_buffer.size());
    m_changedFrom = INT_MAX;
    return changed;
}

void ConversionOutput::truncate(int size)
{
    if (size >= m_buffer.size())
        return;
    m_buffer.truncate(size);
    m_changedFrom = std::min(m_changedFrom, size);

    // Script matches that reached into the removed text are gone; candidates
    // that were ruled out only by removed text may match again later.
    int scriptRestart = std::min(m_scriptResume, std::max(0, size - (ScriptLiteralSize - 1)));
    bool removedAny = false;
    while (!m_scripts.isEmpty() && m_scripts.last().end > size) {
        scriptRestart = std::min(scriptRestart, m_scripts.last().pos);
        m_scripts.removeLast();
        removedAny = true;
    }
    const int scriptKept = m_scripts.isEmpty() ? 0 : m_scripts.last().end;
    for (int i = m_deadScripts.size() - 1; i >= 0; --i) {
        const DeadCandidate &dead = m_deadScripts.at(i);
        if (dead.resolvedAt >= size) {
            if (dead.pos >= scriptKept)
                scriptRestart = std::min(scriptRestart, dead.pos);
            m_deadScripts.remove(i);
        }
    }
    m_scriptResume = std::max(scriptKept, scriptRestart);

    // An error candidate is settled by the end of its line at the latest, so
    // only the line that lost its end needs another look.
    int errorRestart = std::min(m_errorResume, m_buffer.lastIndexOf('\n', size - 1) + 1);
    while (!m_found.isEmpty() && m_found.last().end > size) {
        errorRestart = std::min(errorRestart, m_found.last().pos);
        m_found.removeLast();
        removedAny = true;
    }
    const int errorKept = m_found.isEmpty() ? 0 : m_found.last().end;
    m_errorResume = std::max(errorKept, errorRestart);

    if (removedAny)
        m_reportedStale = true;
    // What was checked of an open candidate may be gone.
    m_scriptPending.checkedTo = std::min(m_scriptPending.checkedTo, size);
    m_errorPending.checkedTo = std::min(m_errorPending.checkedTo, size);
}

ConversionOutput::Outcome ConversionOutput::matchScript(int pos, ScriptMatch *match,
                                                        int *resolvedAt) const
{
    const int n = m_buffer.size();
    const char *data = m_buffer.constData();
    const int open = pos + ScriptLiteralSize;
    if (open >= n)
        return Outcome::Pending;
    // An opening quote is always taken: the name cannot start with one.
    const int nameStart = data[open] == '"' ? open + 1 : open;
    if (nameStart >= n)
        return Outcome::Pending;
    if (data[nameStart] == '"') {
        *resolvedAt = nameStart;
        return Outcome::Dead;
    }
    // The shortest match ends at the first ") to" or "\") to" after at least
    // one name character; the end of the line ends the attempt. A name in
    // quotes ends only at "\") to": quotes and ") to" inside it are part of
    // the name (a file may be called 'quote"d' or 'Export (v2) to archive').
    // Without them a quote anywhere else ends the attempt. A candidate still
    // open resumes where it was left.
    const bool quoted = nameStart > open;
    const int resume = pos == m_scriptPending.pos ? m_scriptPending.checkedTo : 0;
    for (int i = std::max(nameStart + 1, resume); i < n; ++i) {
        const char c = data[i];
        if (c == '\n') {
            *resolvedAt = i;
            return Outcome::Dead;
        }
        if (c == '"') {
            int mismatch = i;
            const Prefix p = comparePrefix(m_buffer, i, "\") to", 5, &mismatch);
            if (p == Prefix::Partial)
                return pending(&m_scriptPending, pos, i);
            if (p == Prefix::Mismatch) {
                if (quoted)
                    continue;
                *resolvedAt = mismatch;
                return Outcome::Dead;
            }
            *match = ScriptMatch{pos, i + 5, decode(m_buffer, nameStart, i)};
            return Outcome::Matched;
        }
        if (c == ')' && !quoted) {
            const Prefix p = comparePrefix(m_buffer, i, ") to", 4);
            if (p == Prefix::Partial)
                return pending(&m_scriptPending, pos, i);
            if (p == Prefix::Full) {
                *match = ScriptMatch{pos, i + 4, decode(m_buffer, nameStart, i)};
                return Outcome::Matched;
            }
        }
    }
    return pending(&m_scriptPending, pos, n);
}

ConversionOutput::Outcome ConversionOutput::pending(PendingCandidate *candidate, int pos,
                                                    int checkedTo) const
{
    candidate->pos = pos;
    candidate->checkedTo = checkedTo;
    return Outcome::Pending;
}

ConversionOutput::Outcome ConversionOutput::matchError(int pos, ErrorMatch *match) const
{
    const int n = m_buffer.size();
    const char *data = m_buffer.constData();
    int i = pos + ErrorLiteralSize;
    const int digits = i;
    while (i < n && data[i] >= '0' && data[i] <= '9')
        ++i;
    if (i >= n)
        return Outcome::Pending;
    if (i == digits)
        return Outcome::Dead;
    const int digitsEnd = i;
    const Prefix middle = comparePrefix(m_buffer, i, ErrorMiddle, ErrorMiddleSize);
    if (middle != Prefix::Full)
        return middle == Prefix::Partial ? Outcome::Pending : Outcome::Dead;
    i += ErrorMiddleSize;
    if (i >= n)
        return Outcome::Pending;
    const int tokenStart = data[i] == '\'' ? i + 1 : i;
    if (tokenStart >= n)
        return Outcome::Pending;
    if (data[tokenStart] == '\'' || data[tokenStart] == '\n')
        return Outcome::Dead;
    const int resume = pos == m_errorPending.pos ? m_errorPending.checkedTo : 0;
    for (int k = std::max(tokenStart + 1, resume); k < n; ++k) {
        const char c = data[k];
        int end = -1;
        if (c == '\'' || c == '\n') {
            end = k + 1;
        } else if (c == 'F') {
            const Prefix p = comparePrefix(m_buffer, k, "Failed", 6);
            if (p == Prefix::Partial)
                return pending(&m_errorPending, pos, k);
            if (p == Prefix::Full)
                end = k + 6;
        }
        if (end >= 0) {
            const int line = QByteArray::fromRawData(data + digits, digitsEnd - digits).toInt();
            *match = ErrorMatch{pos, end, line, decode(m_buffer, tokenStart, k)};
            return Outcome::Matched;
        }
    }
    return pending(&m_errorPending, pos, n);
}

void ConversionOutput::scanScripts()
{
    const int lastErrorPos = m_found.isEmpty() ? -1 : m_found.last().pos;
    int from = m_scriptResume;
    for (;;) {
        const int pos = m_buffer.indexOf(ScriptLiteral, from);
        if (pos < 0) {
            m_scriptResume = std::max(from, m_buffer.size() - (ScriptLiteralSize - 1));
            return;
        }
        ScriptMatch match;
        int resolvedAt = pos;
        switch (matchScript(pos, &match, &resolvedAt)) {
        case Outcome::Matched:
            // A script that turns out to open before errors already found
            // changes which script those belong to.
            if (match.pos < lastErrorPos)
                m_reportedStale = true;
            m_scripts.append(match);
            from = match.end;
            break;
        case Outcome::Dead:
            m_deadScripts.append(DeadCandidate{pos, resolvedAt});
            from = pos + 1;
            break;
        case Outcome::Pending:
            m_scriptResume = pos;
            return;
        }
    }
}

void ConversionOutput::scanErrors()
{
    int from = m_errorResume;
    for (;;) {
        const int pos = m_buffer.indexOf(ErrorLiteral, from);
        if (pos < 0) {
            m_errorResume = std::max(from, m_buffer.size() - (ErrorLiteralSize - 1));
            return;
        }
        ErrorMatch match;
        switch (matchError(pos, &match)) {
        case Outcome::Matched:
            m_found.append(match);
            from = match.end;
            break;
        case Outcome::Dead:
            from = pos + 1;
            break;
        case Outcome::Pending:
            m_errorResume = pos;
            return;
        }
    }
}

int ConversionOutput::firstErrorAfterFirstScript() const
{
    if (m_scripts.isEmpty())
        return m_found.size();
    const int firstScript = m_scripts.first().pos;
    const auto it = std::upper_bound(
        m_found.cbegin(), m_found.cend(), firstScript,
        [](int pos, const ErrorMatch &error) { return pos < error.pos; });
    return int(it - m_found.cbegin());
}

ConversionError ConversionOutput::errorFor(const ErrorMatch &match) const
{
    const auto it = std::upper_bound(
        m_scripts.cbegin(), m_scripts.cend(), match.pos,
        [](int pos, const ScriptMatch &script) { return pos < script.pos; });
    ConversionError error;
    if (it != m_scripts.cbegin())
        error.file = (it - 1)->name;
    error.line = match.line;
    error.message = QStringLiteral("Unexpected token '%1'").arg(match.token);
    error.position = match.pos;
    return error;
}

bool ConversionOutput::scan()
{
    scanScripts();
    scanErrors();

    // An error after the last script line: this read changes nothing.
    if (!m_found.isEmpty()
        && (m_scripts.isEmpty() || m_found.last().pos > m_scripts.last().pos))
        return false;

    const int first = firstErrorAfterFirstScript();
    const int count = m_found.size() - first;
    if (count == m_reported.size())
        return false;

    if (!m_reportedStale && first == m_reportedFirst && count > m_reported.size()) {
        for (int i = first + m_reported.size(); i < first + count; ++i)
            m_reported.append(errorFor(m_found.at(i)));
    } else {
        m_reported.clear();
        m_reported.reserve(count);
        for (int i = first; i < first + count; ++i)
            m_reported.append(errorFor(m_found.at(i)));
    }
    m_reportedFirst = first;
    m_reportedStale = false;
    return true;
}

QVector<ConversionError> ConversionOutput::allErrors() const
{
    QVector<ConversionError> errors;
    for (int i = firstErrorAfterFirstScript(); i < m_found.size(); ++i)
        errors.append(errorFor(m_found.at(i)));
    return errors;
}

int ConversionOutput::errorCount() const
{
    return m_found.size() - firstErrorAfterFirstScript();
}

ConversionError ConversionOutput::errorAt(int index) const
{
    return errorFor(m_found.at(firstErrorAfterFirstScript() + index));
}

int ConversionOutput::scriptsWithErrors() const
{
    QSet<QString> files;
    for (const ConversionError &error : allErrors())
        files.insert(error.file);
    return files.size();
}

QString ConversionOutput::scriptBefore(int offset) const
{
    const auto it = std::lower_bound(
        m_scripts.cbegin(), m_scripts.cend(), offset,
        [](const ScriptMatch &script, int pos) { return script.pos < pos; });
    return it == m_scripts.cbegin() ? QString() : (it - 1)->name;
}

ConversionOutput::ReferenceResult ConversionOutput::referenceScan(const QString &text,
                                                                  int storedCount)
{
    QRegExp scriptPattern(
        QStringLiteral("Converting script \\((?:\"([^\"\n][^\n]*)\"|([^\"\n]+)\"?)\\) to"),
        Qt::CaseSensitive);
    scriptPattern.setMinimal(true);
    QVector<int> positions;
    QStringList names;
    for (int pos = 0; (pos = scriptPattern.indexIn(text, pos)) != -1;
         pos += scriptPattern.matchedLength()) {
        positions << pos;
        names << scriptPattern.cap(1) + scriptPattern.cap(2);
    }

    QRegExp errorPattern(QStringLiteral("line (\\d+) - unexpected token '?([^'\\n]+)(Failed|'|\\n)"),
                         Qt::CaseSensitive);
    errorPattern.setMinimal(true);
    ReferenceResult result;
    QVector<ConversionError> errors;
    for (int pos = 0; (pos = errorPattern.indexIn(text, pos)) != -1;
         pos += errorPattern.matchedLength()) {
        const auto next = std::upper_bound(positions.cbegin(), positions.cend(), pos);
        if (next == positions.cend())
            return result;
        if (next == positions.cbegin())
            continue;
        ConversionError error;
        error.file = names.at(int(next - positions.cbegin()) - 1);
        error.line = errorPattern.cap(1).toInt();
        error.message = QStringLiteral("Unexpected token '%1'").arg(errorPattern.cap(2));
        errors.append(error);
    }
    if (errors.size() != storedCount) {
        result.updated = true;
        result.errors = errors;
    }
    return result;
}
