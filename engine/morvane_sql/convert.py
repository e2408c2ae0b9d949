"""Converts the units of one script and counts what became of each object."""
import re

from . import query
from .ddl import MARK, DdlConverter
from .query import ConversionError
from .split import split

_OBJECT = re.compile(
    r"(?P<verb>CREATE|ALTER|DROP)\s+(?:OR\s+(?:REPLACE|ALTER)\s+)?"
    r"(?:(?:GLOBAL\s+|LOCAL\s+)?(?:TEMPORARY|TEMP)\s+|UNIQUE\s+|(?:NON)?CLUSTERED\s+|BITMAP\s+|"
    r"FULLTEXT\s+|SPATIAL\s+|(?:NO)?FORCE\s+|(?:NON)?EDITIONABLE\s+|ALGORITHM\s*=\s*\w+\s+|"
    r"DEFINER\s*=\s*\S+\s+|SQL\s+SECURITY\s+\w+\s+)*"
    r"(?P<kind>TABLE|VIEW|INDEX|SEQUENCE|PROCEDURE|PROC|FUNCTION|TRIGGER|PACKAGE\s+BODY|PACKAGE|"
    r"TYPE\s+BODY|TYPE|SCHEMA|DATABASE|SYNONYM|EVENT)\b\s*(?:IF\s+(?:NOT\s+)?EXISTS\s+)?"
    r"(?P<name>(?:[\w$#@]+|\[[^\]]*\]|`[^`]*`|\"[^\"]*\")(?:\s*\.\s*(?:[\w$#@]+|\[[^\]]*\]|`[^`]*`|\"[^\"]*\"))*)?",
    re.IGNORECASE)
_PROCEDURAL = {"procedure", "function", "trigger", "package", "package body", "type body", "event",
               "block"}
# Procedural code outside any object: PL/SQL blocks, T-SQL control flow.
_BLOCK = {
    "oracle": re.compile(r"(?:DECLARE|BEGIN)\b", re.IGNORECASE),
    "tsql": re.compile(r"(?:IF|WHILE|DECLARE|BEGIN(?!\s+(?:TRAN|TRANSACTION|DISTRIBUTED)\b))\b",
                       re.IGNORECASE),
}
_KIND_NAMES = {"proc": "procedure"}
# Client and session statements with no PostgreSQL meaning.
_SESSION = {
    "tsql": re.compile(r"(?:USE\s|SET\s+(?:ANSI_\w+|QUOTED_IDENTIFIER|NOCOUNT|XACT_ABORT|ARITHABORT|"
                       r"CONCAT_NULL_YIELDS_NULL|NUMERIC_ROUNDABORT|IDENTITY_INSERT|DATEFORMAT|"
                       r"LANGUAGE|DEADLOCK_PRIORITY|LOCK_TIMEOUT|ROWCOUNT|TEXTSIZE|STATISTICS)\b|"
                       r"PRINT\b|EXEC(?:UTE)?\s+sp_)", re.IGNORECASE),
    "mysql": re.compile(r"(?:USE\s|SET\s+(?:@@|@|FOREIGN_KEY_CHECKS|UNIQUE_CHECKS|SQL_MODE|"
                        r"TIME_ZONE|SQL_NOTES|AUTOCOMMIT|CHARACTER_SET\w*|COLLATION\w*|SESSION|"
                        r"GLOBAL)|LOCK\s+TABLES|UNLOCK\s+TABLES)", re.IGNORECASE),
    "oracle": re.compile(r"ALTER\s+SESSION\b", re.IGNORECASE),
}
_SET_NAMES = re.compile(r"SET\s+NAMES\s+'?(\w+)'?", re.IGNORECASE)


class Outcome:
    CONVERTED = "converted"
    COMMENTED = "kept as comments"
    FAILED = "failed"


class Tally:
    """Objects per kind and outcome, for the script's summary line."""

    def __init__(self):
        self.counts = {}

    def add(self, kind, outcome):
        key = (outcome, kind)
        self.counts[key] = self.counts.get(key, 0) + 1

    def total(self, outcome):
        return sum(n for (o, _), n in self.counts.items() if o == outcome)

    def summary(self):
        parts = []
        for outcome in (Outcome.CONVERTED, Outcome.COMMENTED, Outcome.FAILED):
            kinds = sorted((k, n) for (o, k), n in self.counts.items() if o == outcome)
            if kinds:
                listed = ", ".join("%d %s" % (n, _plural(k, n)) for k, n in kinds)
                parts.append("%s %s" % (listed, outcome))
        return "; ".join(parts) if parts else "nothing to convert"


def _plural(kind, n):
    if n == 1:
        return kind
    return kind + ("es" if kind.endswith(("x", "s")) else "s")


def describe(text, dialect=""):
    """(kind, name) of a statement: "table", "dbo.Orders"; ("statement", "") for the rest."""
    block = _BLOCK.get(dialect)
    if block is not None and block.match(text):
        return "block", ""
    m = _OBJECT.match(text)
    if not m:
        word = text.split(None, 1)[0].lower() if text.split() else ""
        return ("table change" if word == "alter" else "statement"), ""
    kind = re.sub(r"\s+", " ", m.group("kind").lower())
    kind = _KIND_NAMES.get(kind, kind)
    name = re.sub(r"\s+", "", m.group("name") or "")
    if m.group("verb").upper() == "ALTER" and kind == "table":
        kind = "table change"
    elif m.group("verb").upper() == "DROP":
        kind = "statement"
    return kind, name


def commented(text):
    return "".join("-- " + line + "\n" for line in text.splitlines())


class ScriptConverter:
    """Converts one script's text unit by unit. Each message goes to report(line, text)."""

    def __init__(self, read, write, report):
        self.read = read
        self.write = write
        self.report = report
        self.to_postgres = write in query.POSTGRES_FAMILY
        self.ddl = DdlConverter(read) if self.to_postgres else None
        self.tally = Tally()

    def units(self, text):
        return split(text, self.read)

    def convert(self, unit):
        """The output text for one unit (its leading comments included)."""
        out = [_lead(unit.lead, self.read)]
        if not unit.text:
            return "".join(out)
        kind, name = describe(unit.text, self.read)
        label = ("%s %s" % (kind, name)).strip()
        try:
            statements, notes, reported, outcome = self._convert(unit, kind)
        except ConversionError as e:
            line = unit.line + max(e.line, 1) - 1
            if e.token:
                self.report("line %d - unexpected token '%s': %s (in %s starting on line %d)"
                            % (line, e.token, e.reason, label, unit.line))
            else:
                self.report("line %d - not converted: %s: %s" % (unit.line, label, e.reason))
            self.tally.add(kind, Outcome.FAILED)
            out.append("-- %s not converted (line %d): %s\n" % (MARK, line, e.reason))
            out.append(commented(unit.text + self._terminator(kind)))
            return "".join(out)
        for note in reported:
            what = "not converted" if outcome == Outcome.COMMENTED and kind in _PROCEDURAL else "note"
            self.report("line %d - %s: %s: %s" % (unit.line, what, label, note))
        self.tally.add(kind, outcome)
        for note in notes:
            out.append("-- %s %s\n" % (MARK, note))
        if outcome == Outcome.COMMENTED:
            out.append(commented(unit.text + self._terminator(kind)))
        else:
            out.append("".join(s.rstrip().rstrip(";") + ";\n" for s in statements))
        return "".join(out)

    def _terminator(self, kind):
        return "\n/" if self.read == "oracle" and kind in _PROCEDURAL else ";"

    def _convert(self, unit, kind):
        """(statements, notes, reported notes, outcome) for one unit."""
        text = unit.text
        if self.to_postgres:
            session = _SESSION.get(self.read)
            names = _SET_NAMES.match(text)
            if names and self.read == "mysql":
                return ["SET client_encoding TO 'UTF8'"], [], [], Outcome.CONVERTED
            if session and session.match(text):
                why = "a client or session setting with no PostgreSQL counterpart"
                if text[:3].upper() == "USE":
                    why = "PostgreSQL has no USE: connect to that database instead"
                    return [], [why], [why], Outcome.COMMENTED
                return [], [why], [], Outcome.COMMENTED
            result = self.ddl.convert(text)
            if result is not None:
                notes = result.comments + result.notes
                return result.statements, notes, result.reported, Outcome.CONVERTED
            if kind in _PROCEDURAL:
                why = ("procedural code is not translated to PL/pgSQL; it is kept here as a comment "
                       "to be rewritten by hand")
                return [], ["not converted: " + why], [why], Outcome.COMMENTED
        return query.transpile(text, self.read, self.write), [], [], Outcome.CONVERTED


def _lead(lead, read):
    """Comments between statements, kept as they were (MySQL's # comments made standard)."""
    if not lead.strip():
        return "\n" if lead.count("\n") > 1 else ""
    text = lead.strip("\n") + "\n"
    if read == "mysql":
        text = re.sub(r"(?m)^(\s*)#", r"\1--", text)
    return ("\n" if lead.startswith("\n\n") else "") + text
