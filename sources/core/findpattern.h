#pragma once

#include <QByteArray>
#include <QRegExp>
#include <QRegularExpression>
#include <QString>

/**
 * A find-in-files pattern compiled once for every file of a search.
 *
 * The fixed, wildcard and regular-expression syntaxes are translated to one
 * QRegularExpression (PCRE2, compiled to machine code) where the translation
 * means the same; a pattern with constructs that read differently in the two
 * engines keeps QRegExp ("exact engine"). A line matches when the pattern
 * matches anywhere in it, the line end excluded.
 *
 * Besides the expression the pattern may carry a needle: UTF-8 bytes that every
 * matching line holds, so that lines without them are never decoded. For a
 * plain literal the needle is the whole pattern and finding it is the match.
 */
class FindPattern
{
public:
    enum class Engine { Regular, Exact };

    FindPattern(const QString &pattern, QRegExp::PatternSyntax syntax,
                Qt::CaseSensitivity caseSensitivity);

    bool isValid() const { return m_valid; }
    Engine engine() const { return m_engine; }
    QString pattern() const { return m_pattern; }
    QRegExp::PatternSyntax syntax() const { return m_syntax; }
    Qt::CaseSensitivity caseSensitivity() const { return m_caseSensitivity; }

    /** The translated expression (Regular engine only). */
    QString regularPattern() const { return m_regularPattern; }
    QRegularExpression::PatternOptions regularOptions() const { return m_regularOptions; }

    /** Bytes every matching line holds; empty when there are none worth looking for. */
    QByteArray needle() const { return m_needle; }
    /** A line holding the needle matches: no expression needs to run. */
    bool needleIsPattern() const { return m_needleIsPattern; }
    /** The needle is compared with ASCII letters folded to lower case. */
    bool needleFoldsCase() const { return m_foldCase; }
    /**
     * Folding ASCII case is exact only on ASCII text for this needle: it holds
     * a k or an s, which the Kelvin and long-s signs also match.
     */
    bool needleNeedsAsciiText() const { return m_needsAsciiText; }

    /**
     * The expression cannot match or look at a line end, so it can run over
     * many lines at once (with ^ and $ at line ends) and find the same lines.
     */
    bool spansLinesSafely() const { return m_spansLinesSafely; }

    /** Where the pattern first matches in @p line: false when it does not. */
    bool locate(const QString &line, int *start, int *length) const;

    /** A wildcard pattern written as the regular expression it stands for. */
    static QString wildcardToRegExp(const QString &wildcard);
    /**
     * The longest run of characters that every match of the regular expression
     * @p rx holds; empty when none can be found (alternatives, for example).
     */
    static QString requiredLiteral(const QString &rx);

private:
    QString translate(bool *spansLinesSafely) const;

    QString m_pattern;
    QRegExp::PatternSyntax m_syntax;
    Qt::CaseSensitivity m_caseSensitivity;
    Engine m_engine = Engine::Exact;
    bool m_valid = false;
    QString m_regularPattern;
    QRegularExpression::PatternOptions m_regularOptions;
    QByteArray m_needle;
    bool m_needleIsPattern = false;
    bool m_foldCase = false;
    bool m_needsAsciiText = false;
    bool m_spansLinesSafely = false;
};
