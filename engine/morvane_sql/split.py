"""Cuts a script into the units its own client would send to the server.

Each dialect's client ends statements differently: T-SQL tools send batches
ended by a GO line, SQL*Plus runs PL/SQL units only at a line holding "/", the
MySQL client ends statements with whatever DELIMITER set. A procedure, function,
trigger or package is one unit whatever it holds. Comments stay in the text, so
the converter can keep them where they were.
"""
import re

# Words that head a PL/SQL unit; SQL*Plus ends those only at a "/" line.
_PLSQL_HEAD = re.compile(
    r"(?:CREATE\s+(?:OR\s+REPLACE\s+)?(?:(?:NON)?EDITIONABLE\s+)?"
    r"(?:PROCEDURE|FUNCTION|PACKAGE|TRIGGER|TYPE|LIBRARY)\b|DECLARE\b|BEGIN\b)",
    re.IGNORECASE)
# T-SQL objects that must be alone in their batch.
_TSQL_BATCH_HEAD = re.compile(
    r"(?:CREATE|ALTER|CREATE\s+OR\s+ALTER)\s+(?:PROC|PROCEDURE|FUNCTION|TRIGGER)\b", re.IGNORECASE)
# SQL*Plus commands: client settings that are never sent to the server.
_SQLPLUS_COMMAND = re.compile(
    r"(?:REM|REMARK|PROMPT|SET|SPOOL|WHENEVER|EXIT|QUIT|CONNECT|CONN|DEFINE|UNDEFINE|"
    r"COLUMN|COL|TTITLE|BTITLE|BREAK|COMPUTE|SHOW|PAUSE|ACCEPT|VARIABLE|VAR|EXEC|EXECUTE|@@?)"
    r"(?:\s|$)", re.IGNORECASE)
_SQLPLUS_SET_SQL = re.compile(r"SET\s+(?:TRANSACTION|ROLE|CONSTRAINTS?)\b", re.IGNORECASE)
_GO_LINE = re.compile(r"[ \t]*GO(?:[ \t]+\d+)?[ \t]*(?:--[^\n]*)?\r?$", re.IGNORECASE)
_DELIMITER_LINE = re.compile(r"[ \t]*DELIMITER[ \t]+(\S+)[ \t]*\r?$", re.IGNORECASE)
_WORD = re.compile(r"[A-Za-z_][A-Za-z_0-9]*")
_ORACLE_WORD = re.compile(r"[A-Za-z_][A-Za-z_0-9$#]*")
# Words after BEGIN that make it a transaction, not a block.
_NOT_A_BLOCK = {"TRAN", "TRANSACTION", "DISTRIBUTED", "WORK"}
# Words after END that close something other than BEGIN or CASE.
_END_OF_LOOP = {"IF", "LOOP", "WHILE", "REPEAT"}


class Unit:
    """One statement or block: its text (comments included) and where it starts."""

    __slots__ = ("line", "text", "lead")

    def __init__(self, line, text, lead=""):
        self.line = line      # line of its first token in the source, from 1
        self.text = text      # the statement, without its terminator
        self.lead = lead      # comments and blank lines before it, kept for the output

    def __repr__(self):
        return "Unit(%d, %r)" % (self.line, self.text)


class _Cursor:
    """Walks the text, skipping quoted names, strings and comments as a whole."""

    def __init__(self, text, dialect):
        self.text = text
        self.n = len(text)
        self.dialect = dialect
        self.quotes = {"'": "'", '"': '"'}
        if dialect == "tsql":
            self.quotes["["] = "]"
        if dialect == "mysql":
            self.quotes["`"] = "`"

    def skip(self, i):
        """The index after the string or comment starting at i, or i when none starts there."""
        text = self.text
        c = text[i]
        if c == "-" and text.startswith("--", i) or c == "#" and self.dialect == "mysql":
            end = text.find("\n", i)
            return self.n if end < 0 else end
        if c == "/" and text.startswith("/*", i):
            end = text.find("*/", i + 2)
            return self.n if end < 0 else end + 2
        close = self.quotes.get(c)
        if close:
            j = i + 1
            while True:
                j = text.find(close, j)
                if j < 0:
                    return self.n
                # A doubled closing mark stands for itself.
                if text.startswith(close, j + 1) and close != "]" or close == "]" and \
                        text.startswith("]]", j):
                    j += 2
                    continue
                if close in "'\"" and self.dialect == "mysql" and text[j - 1] == "\\":
                    # MySQL also escapes with a backslash; count them to know.
                    k = j - 1
                    while k > i and text[k] == "\\":
                        k -= 1
                    if (j - 1 - k) % 2:
                        j += 1
                        continue
                return j + 1
        if c == "$" and self.dialect == "postgres":
            m = re.compile(r"\$([A-Za-z_][A-Za-z_0-9]*)?\$").match(text, i)
            if m:
                end = text.find(m.group(0), m.end())
                return self.n if end < 0 else end + len(m.group(0))
        return i


def _line_at(text, i):
    """The full line of text that holds index i, without its line break."""
    start = text.rfind("\n", 0, i) + 1
    end = text.find("\n", i)
    return text[start:end if end >= 0 else len(text)]


def split(text, dialect):
    """The units of a script as a list of Unit, with line numbers from 1.

    dialect is "tsql", "oracle", "mysql", "postgres" or "" (plain ';' ending)."""
    return _Splitter(text, dialect).run()


class _Splitter:
    def __init__(self, text, dialect):
        self.text = text
        self.dialect = dialect
        self.cursor = _Cursor(text, dialect)
        self.units = []
        self.delimiter = ";"
        self.word = _ORACLE_WORD if dialect == "oracle" else _WORD

    def run(self):
        text = self.text
        n = len(text)
        i = 0
        line = 1
        # Start of the pending unit's text, of its first token, and its line.
        start = 0
        first = -1
        first_line = 0
        depth = 0
        plsql = False
        batch = False
        while i < n:
            c = text[i]
            at_line_start = i == 0 or text[i - 1] == "\n"
            if at_line_start:
                cut = self._line_command(i, first < 0)
                if cut is not None:
                    kind, end = cut
                    if kind == "end" and first >= 0:
                        self._emit(start, first, first_line, i)
                    elif kind == "command" and first < 0:
                        # A client command alone on its line: kept as a comment-like lead.
                        self._emit(start, i, line, end, command=True)
                    if kind in ("end", "command", "delimiter"):
                        line += text.count("\n", i, end)
                        i = end
                        start = i
                        first = -1
                        depth = 0
                        plsql = batch = False
                        continue
            skipped = self.cursor.skip(i)
            if skipped != i:
                if first < 0 and c not in "-/#":
                    first, first_line = i, line
                line += text.count("\n", i, skipped)
                i = skipped
                continue
            if c == "\n":
                line += 1
                i += 1
                continue
            if c.isspace():
                i += 1
                continue
            if first < 0:
                first, first_line = i, line
                plsql = self.dialect == "oracle" and bool(_PLSQL_HEAD.match(text, i))
                batch = self.dialect == "tsql" and bool(_TSQL_BATCH_HEAD.match(text, i))
            if not plsql and not batch and text.startswith(self.delimiter, i) and (
                    depth <= 0 or self.delimiter != ";"):
                self._emit(start, first, first_line, i)
                i += len(self.delimiter)
                start = i
                first = -1
                depth = 0
                continue
            if c.isalpha() or c == "_":
                m = self.word.match(text, i)
                word = m.group(0).upper()
                if word in ("BEGIN", "CASE") and self.dialect in ("tsql", "mysql", ""):
                    if word == "CASE" or self._next_word(m.end()) not in _NOT_A_BLOCK \
                            and not self._next_is(m.end(), ";"):
                        depth += 1
                elif word == "END":
                    closed = re.compile(r"\s*([A-Za-z_]+)").match(text, m.end())
                    closes = closed.group(1).upper() if closed else ""
                    if closes not in _END_OF_LOOP and depth > 0:
                        depth -= 1
                    if closes in _END_OF_LOOP or closes == "CASE":
                        # END IF, END CASE...: the word after END opens nothing.
                        i = closed.end()
                        continue
                i = m.end()
                continue
            i += 1
        if first >= 0:
            self._emit(start, first, first_line, n)
        elif text[start:].strip():
            self.units.append(Unit(line, "", text[start:]))
        return self.units

    def _line_command(self, i, idle):
        """What the line starting at i means to the client: ("end", next index) for a
        line that ends the pending unit (GO, "/"), ("command", next) for a client
        command, ("delimiter", next) for DELIMITER, or None for SQL text."""
        text = self.text
        end = text.find("\n", i)
        end = len(text) if end < 0 else end + 1
        line = text[i:end]
        stripped = line.strip()
        if self.dialect == "tsql" and _GO_LINE.match(line.rstrip("\n")):
            return "end", end
        if self.dialect == "oracle":
            if stripped in ("/", "."):
                return "end", end
            if idle and _SQLPLUS_COMMAND.match(stripped) and not _SQLPLUS_SET_SQL.match(stripped):
                # A command runs to the end of its line; "-" at the end continues it.
                while line.rstrip().endswith("-") and end < len(text):
                    nxt = text.find("\n", end)
                    nxt = len(text) if nxt < 0 else nxt + 1
                    line = text[end:nxt]
                    end = nxt
                return "command", end
        if self.dialect == "mysql" and idle:
            m = _DELIMITER_LINE.match(line.rstrip("\n"))
            if m:
                self.delimiter = m.group(1)
                return "delimiter", end
        return None

    def _next_word(self, i):
        m = re.compile(r"\s*([A-Za-z_]+)").match(self.text, i)
        return m.group(1).upper() if m else ""

    def _next_is(self, i, mark):
        return self.text[i:].lstrip().startswith(mark)

    def _emit(self, start, first, first_line, end, command=False):
        lead = self.text[start:first]
        body = self.text[first:end].rstrip()
        if command:
            commented = "".join("-- " + part + "\n" for part in body.strip().splitlines())
            self.units.append(Unit(first_line, "", lead + commented))
            return
        if body:
            self.units.append(Unit(first_line, body, lead))
