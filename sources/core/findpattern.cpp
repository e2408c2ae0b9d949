#include "findpattern.h"

namespace {

// Needles shorter than this pick too many lines to be worth looking for first,
// unless they are the whole pattern.
constexpr int ShortestUsefulNeedle = 2;

bool isAsciiPunctuation(QChar c)
{
    return c.unicode() < 128 && c.unicode() > ' ' && !c.isLetterOrNumber();
}

// The characters that have a meaning of their own in the pattern's syntax.
const char *specialCharacters(QRegExp::PatternSyntax syntax)
{
    switch (syntax) {
    case QRegExp::FixedString:
        return "";
    case QRegExp::Wildcard:
    case QRegExp::WildcardUnix:
        return "*?[]\\";
    default:
        return "\\^$.|?*+()[]{}";
    }
}

bool isPlainText(const QString &pattern, QRegExp::PatternSyntax syntax)
{
    const QByteArray special = specialCharacters(syntax);
    for (const QChar c : pattern) {
        if (c.unicode() < 128 && special.contains(c.toLatin1()))
            return false;
    }
    return true;
}

// The needle bytes of @p text, or empty when raw bytes cannot stand for it: a
// decoded line shows U+FFFD for bytes that are not UTF-8, and NUL or a line
// end never occur inside a searched line.
QByteArray needleBytes(const QString &text, Qt::CaseSensitivity cs, bool *folds)
{
    *folds = false;
    if (text.contains(QChar::ReplacementCharacter) || text.contains(QChar(0))
        || text.contains(QLatin1Char('\n')))
        return {};
    const QByteArray utf8 = text.toUtf8();
    if (QString::fromUtf8(utf8) != text)
        return {};
    if (cs == Qt::CaseSensitive)
        return utf8;
    for (const char c : utf8) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return {}; // folding non-ASCII case is left to the expression
    }
    *folds = true;
    return utf8.toLower();
}

} // namespace

FindPattern::FindPattern(const QString &pattern, QRegExp::PatternSyntax syntax,
                         Qt::CaseSensitivity caseSensitivity)
    : m_pattern(pattern)
    , m_syntax(syntax)
    , m_caseSensitivity(caseSensitivity)
{
    m_valid = QRegExp(pattern, caseSensitivity, syntax).isValid();
    if (!m_valid)
        return;

    m_regularPattern = translate(&m_spansLinesSafely);
    if (m_regularPattern.isNull()) {
        m_engine = Engine::Exact;
        m_spansLinesSafely = false;
        return;
    }
    m_engine = Engine::Regular;
    m_regularOptions = QRegularExpression::MultilineOption;
    if (caseSensitivity == Qt::CaseInsensitive)
        m_regularOptions |= QRegularExpression::CaseInsensitiveOption;
    // QRegExp's \w, \d, \s and \b know every script; PCRE2 needs to be told.
    static const QRegularExpression classEscape(QStringLiteral("\\\\[wWdDsSbB]"));
    if (m_regularPattern.contains(classEscape))
        m_regularOptions |= QRegularExpression::UseUnicodePropertiesOption;
    if (!QRegularExpression(m_regularPattern, m_regularOptions).isValid()) {
        m_engine = Engine::Exact;
        m_spansLinesSafely = false;
        return;
    }

    const bool plain = !pattern.isEmpty() && isPlainText(pattern, syntax);
    const QString literal = plain ? pattern : requiredLiteral(m_regularPattern);
    if (literal.isEmpty() || (!plain && literal.size() < ShortestUsefulNeedle))
        return;
    m_needle = needleBytes(literal, caseSensitivity, &m_foldCase);
    if (m_needle.isEmpty())
        return;
    m_needleIsPattern = plain;
    m_needsAsciiText = m_foldCase && (m_needle.contains('k') || m_needle.contains('s'));
}

bool FindPattern::locate(const QString &line, int *start, int *length) const
{
    if (!m_valid)
        return false;
    if (m_engine == Engine::Regular) {
        const QRegularExpressionMatch match =
            QRegularExpression(m_regularPattern, m_regularOptions).match(line);
        *start = match.capturedStart();
        *length = match.capturedLength();
        return match.hasMatch();
    }
    QRegExp rx(m_pattern, m_caseSensitivity, m_syntax);
    *start = rx.indexIn(line);
    *length = rx.matchedLength();
    return *start >= 0;
}

QString FindPattern::wildcardToRegExp(const QString &wildcard)
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

// Reads a QRegExp-syntax expression token by token and keeps it when every token
// means the same to PCRE2; a null string otherwise. Tokens that can match a line
// end (\s, \W, \D, \S, negated sets, lookahead) clear *spansLinesSafely.
QString FindPattern::translate(bool *spansLinesSafely) const
{
    *spansLinesSafely = true;
    if (m_syntax == QRegExp::FixedString)
        return QRegularExpression::escape(m_pattern);
    const QString rx = (m_syntax == QRegExp::Wildcard || m_syntax == QRegExp::WildcardUnix)
        ? wildcardToRegExp(m_pattern) : m_pattern;

    const int n = rx.size();
    bool inSet = false;
    int setStart = 0;
    for (int i = 0; i < n; ++i) {
        const QChar c = rx.at(i);
        const QChar next = i + 1 < n ? rx.at(i + 1) : QChar();
        if (c == QLatin1Char('\\')) {
            ++i;
            if (isAsciiPunctuation(next))
                continue;
            switch (next.unicode()) {
            case 'd': case 'w': case 't': case 'r': case 'f':
                break;
            case 's': case 'S': case 'W': case 'D': case 'n':
                *spansLinesSafely = false;
                break;
            case 'b': case 'B':
            case '1': case '2': case '3': case '4': case '5': case '6': case '7': case '8': case '9':
                if (inSet)
                    return {};
                break;
            default:
                return {}; // \x, \0, \v, \Q, \p... read differently or not at all
            }
            continue;
        }
        if (inSet) {
            if (c == QLatin1Char('[') && (next == QLatin1Char(':') || next == QLatin1Char('=')
                                          || next == QLatin1Char('.')))
                return {}; // POSIX classes exist in PCRE2 only
            if (c == QLatin1Char(']') && i > setStart)
                inSet = false;
            continue;
        }
        switch (c.unicode()) {
        case '[':
            inSet = true;
            if (next == QLatin1Char('^')) {
                *spansLinesSafely = false;
                ++i;
            }
            setStart = i + 1;
            break;
        case '(':
            if (next == QLatin1Char('?')) {
                const QChar kind = i + 2 < n ? rx.at(i + 2) : QChar();
                if (kind == QLatin1Char('=') || kind == QLatin1Char('!'))
                    *spansLinesSafely = false;
                else if (kind != QLatin1Char(':'))
                    return {};
                i += 2;
            }
            break;
        case '*': case '+': case '?': case '}':
            if (next == QLatin1Char('+'))
                return {}; // possessive in PCRE2
            break;
        case '^':
            if (i > 0 && rx.at(i - 1) != QLatin1Char('(') && rx.at(i - 1) != QLatin1Char('|'))
                return {};
            break;
        case '$':
            if (i + 1 < n && next != QLatin1Char(')') && next != QLatin1Char('|'))
                return {};
            break;
        default:
            break;
        }
    }
    return inSet ? QString() : rx;
}

QString FindPattern::requiredLiteral(const QString &rx)
{
    QString best;
    QString run;
    auto endRun = [&] {
        if (run.size() > best.size())
            best = run;
        run.clear();
    };
    const int n = rx.size();
    int depth = 0;
    for (int i = 0; i < n; ++i) {
        const QChar c = rx.at(i);
        const QChar next = i + 1 < n ? rx.at(i + 1) : QChar();
        if (c == QLatin1Char('\\')) {
            ++i;
            if (depth == 0 && isAsciiPunctuation(next))
                run += next;
            else
                endRun();
            continue;
        }
        if (c == QLatin1Char('[')) {
            // Skip the set; a ']' right after '[' or '[^' is one of its members.
            ++i;
            if (i < n && rx.at(i) == QLatin1Char('^'))
                ++i;
            if (i < n && rx.at(i) == QLatin1Char(']'))
                ++i;
            while (i < n && rx.at(i) != QLatin1Char(']'))
                i += rx.at(i) == QLatin1Char('\\') ? 2 : 1;
            endRun();
            continue;
        }
        switch (c.unicode()) {
        case '|':
            return {};
        case '(':
            ++depth;
            endRun();
            break;
        case ')':
            --depth;
            endRun();
            break;
        case '*': case '?': case '{':
            // The atom before may be absent (or repeated): it leaves the run.
            if (!run.isEmpty())
                run.chop(1);
            endRun();
            if (c == QLatin1Char('{')) {
                while (i < n && rx.at(i) != QLatin1Char('}'))
                    ++i;
            }
            break;
        case '+': case '^': case '$': case '.':
            endRun();
            break;
        default:
            if (depth == 0)
                run += c;
        }
    }
    endRun();
    return best;
}
