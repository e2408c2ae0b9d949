"""Table DDL rewritten for PostgreSQL: CREATE TABLE, CREATE INDEX, CREATE SEQUENCE,
ALTER TABLE ... ADD, and Oracle's sequence-filling triggers.

Works on tokens rather than on the SQL library's tree: the library does not read
much of the DDL real schemas hold (IDENTITY(1,1), AUTO_INCREMENT, ENUM,
CLUSTERED keys, table options), and every column needs the same care anyway.
"""
import re

from . import query
from .names import pg_name
from .query import ConversionError
from .stream import Stream, inline, number, split_commas
from .table import Table
from .tokens import render, tokenize

MARK = "[morvane]"


class Result:
    """What a DDL statement became: PostgreSQL statements, marked notes written
    as comments beside them, and notes that are also reported."""

    def __init__(self):
        self.statements = []
        self.comments = []
        self.notes = []
        self.reported = []

    def note(self, text, report=False):
        self.notes.append(text)
        if report:
            self.reported.append(text)


# The statements this layer may handle; the others are not even tokenized.
_DDL_HEAD = re.compile(r"(?:CREATE\s[\w\s]*?\b(?:TABLE|INDEX|SEQUENCE|TRIGGER)\b|ALTER\s+TABLE\b)",
                       re.IGNORECASE)


class DdlConverter:
    """Rewrites the table DDL of one script; remembers what earlier statements made
    (index names, columns filled by sequences) for the later ones."""

    def __init__(self, read):
        self.read = read
        self.relations = set()
        self.types = {}

    def qualified(self, stream):
        """A possibly qualified name: T-SQL's dbo schema and database prefixes dropped."""
        parts = [stream.next()]
        while stream.peek() is not None and stream.peek().text == ".":
            stream.next()
            parts.append(stream.next())
        for part in parts:
            if part.kind not in ("word", "quoted"):
                raise ConversionError("a name was expected here", part.text, part.line)
        names = [p.name() for p in parts]
        if self.read == "tsql":
            if len(names) == 3:
                names = names[1:]
            if len(names) == 2 and names[0].lower() == "dbo":
                names = names[1:]
        return ".".join(pg_name(n) for n in names), pg_name(names[-1])

    # --- statements -------------------------------------------------------------

    def convert(self, text):
        """A Result for a DDL statement this layer handles, or None for the others."""
        if not _DDL_HEAD.match(text):
            return None
        tokens = tokenize(text, hash_comments=self.read == "mysql")
        stream = Stream(tokens)
        head = [stream.word(k) or "" for k in range(4)]
        result = Result()
        if head[0] == "CREATE" and "TABLE" in head[1:4] and not _is_table_select(stream):
            self.create_table(stream, result)
        elif head[0] == "CREATE" and "INDEX" in head[1:4]:
            self.create_index(stream, result)
        elif head[0] == "CREATE" and head[1] == "SEQUENCE":
            self.create_sequence(stream, result)
        elif head[0] == "ALTER" and head[1] == "TABLE":
            if not self.alter_table(stream, result):
                return None
        elif self.read == "oracle" and head[0] == "CREATE" and "TRIGGER" in head[1:4]:
            if not self.sequence_trigger(text, result):
                return None
        else:
            return None
        result.comments = [inline(c) for c in stream.comments]
        return result

    def create_table(self, s, result):
        s.expect("CREATE")
        prefix = "CREATE"
        while s.word() != "TABLE":
            word = s.next().upper
            if word in ("TEMPORARY", "TEMP"):
                prefix += " TEMPORARY"
            elif word not in ("GLOBAL", "OR", "REPLACE"):
                s.i -= 1
                s.unexpected("this kind of table is not known")
        s.expect("TABLE")
        if s.word() == "IF":
            s.expect("IF"), s.expect("NOT"), s.expect("EXISTS")
            prefix += " TABLE IF NOT EXISTS"
        else:
            prefix += " TABLE"
        name, short = self.qualified(s)
        self.relations.add(short)
        table = Table(self, name, short, result)
        for element in split_commas(s.group_with_comments()):
            table.element(Stream(element))
        table.options(s.rest())
        result.statements.insert(0, "%s %s (\n    %s\n)" % (
            prefix, name, ",\n    ".join(line.text() for line in table.lines)))
        result.statements[1:1] = table.after

    def create_index(self, s, result):
        s.expect("CREATE")
        unique = ""
        while s.word() != "INDEX":
            word = s.next().upper
            if word == "UNIQUE":
                unique = "UNIQUE "
            elif word in ("FULLTEXT", "SPATIAL"):
                raise ConversionError("PostgreSQL has no %s index of this form; use a GIN or GiST "
                                      "index instead" % word.lower(), word, s.peek(-1).line)
            elif word == "BITMAP":
                result.note("a bitmap index becomes a plain index")
            elif word not in ("CLUSTERED", "NONCLUSTERED"):
                s.i -= 1
                s.unexpected("this kind of index is not known")
        s.expect("INDEX")
        index = s.next()
        if s.accept("USING"):
            s.next()
        s.expect("ON")
        table, short = self.qualified(s)
        columns = ", ".join(self.key_columns(s.group(), keep_order=True, result=result))
        include = ""
        where = ""
        while s.peek() is not None:
            word = s.word()
            if word == "INCLUDE":
                s.next()
                include = " INCLUDE (%s)" % ", ".join(t.pg() for t in s.group() if t.text != ",")
            elif word == "WHERE":
                s.next()
                where = " WHERE " + query.expression(render(s.until(lambda t: t.upper in ("WITH", "ON"))),
                                                     self.read)
            elif word in ("WITH", "TABLESPACE", "ON", "USING", "COMPUTE", "LOGGING", "NOLOGGING",
                          "PARALLEL", "NOPARALLEL", "ONLINE", "ALGORITHM", "LOCK", "COMPRESS",
                          "LOCAL", "REVERSE", "VISIBLE", "INVISIBLE", "PCTFREE", "STORAGE",
                          "NOCOMPRESS", "STATISTICS", "KEY_BLOCK_SIZE", "COMMENT"):
                s.next()
                if s.peek() is not None and s.peek().text == "(":
                    s.group()
            else:
                s.next()
        name = self.index_name(index, short, result)
        result.statements.append("CREATE %sINDEX %s ON %s (%s)%s%s"
                                 % (unique, name, table, columns, include, where))

    def index_name(self, token, table, result):
        """An index name that is free in PostgreSQL, where indexes share one namespace
        with tables (MySQL and T-SQL only keep them apart per table)."""
        name = token.pg()
        if name in self.relations:
            renamed = pg_name("%s_%s" % (table.strip('"'), token.name()))
            result.note("index %s renamed %s: the name is taken" % (name, renamed))
            name = renamed
        self.relations.add(name)
        return name

    def key_columns(self, tokens, keep_order=False, result=None):
        columns = []
        for part in split_commas(tokens):
            stream = Stream(part)
            first = stream.next()
            if first.text == "(" or stream.peek() is not None and stream.peek().text == "(" \
                    and first.kind == "word" and stream.peek(1) is not None \
                    and stream.peek(1).kind != "number":
                # An expression index: its expression in parentheses.
                columns.append("(%s)" % query.expression(render(part), self.read))
                continue
            text = first.pg()
            if stream.peek() is not None and stream.peek().text == "(":
                stream.group()  # MySQL's prefix length: PostgreSQL indexes whole values
                if result is not None:
                    result.note("the prefix length on %s is dropped: the whole value is indexed" % text)
            order = stream.accept("ASC", "DESC")
            if keep_order and order is not None and order.upper == "DESC":
                text += " DESC"
            columns.append(text)
        return columns

    def create_sequence(self, s, result):
        s.expect("CREATE")
        s.expect("SEQUENCE")
        name, short = self.qualified(s)
        self.relations.add(short)
        options = []
        while s.peek() is not None:
            word = s.next().upper
            if word in ("START", "INCREMENT"):
                s.accept("WITH", "BY")
                options.append("%s %s %s" % (word, "WITH" if word == "START" else "BY", number(s)))
            elif word in ("MINVALUE", "MAXVALUE"):
                value = number(s)
                if abs(int(value)) < 2 ** 63:
                    options.append("%s %s" % (word, value))
            elif word in ("NOMINVALUE", "NOMAXVALUE", "NOCYCLE"):
                options.append("NO " + word[2:])
            elif word == "CYCLE":
                options.append("CYCLE")
            elif word == "CACHE":
                options.append("CACHE %s" % number(s))
            elif word in ("NOCACHE", "ORDER", "NOORDER", "NOKEEP", "KEEP", "NOSCALE", "GLOBAL",
                          "SESSION", "AS"):
                if word == "AS":
                    s.next()
            else:
                raise ConversionError("this sequence option is not known", s.peek(-1).text,
                                      s.peek(-1).line)
        result.statements.append(" ".join(["CREATE SEQUENCE", name] + options))

    def alter_table(self, s, result):
        """ALTER TABLE ... ADD for defaults, keys and columns; False for other forms."""
        s.expect("ALTER")
        s.expect("TABLE")
        table, short = self.qualified(s)
        if s.word() == "WITH" and s.word(1) in ("CHECK", "NOCHECK"):
            s.next(), s.next()
        if s.word() == "CHECK" and s.word(1) == "CONSTRAINT":
            result.note("ALTER TABLE %s CHECK CONSTRAINT: PostgreSQL checks constraints as they are "
                        "made; nothing to do" % table)
            return True
        if s.word() != "ADD":
            return False
        s.next()
        if s.word() == "CONSTRAINT" and s.word(2) == "DEFAULT" or s.word() == "DEFAULT":
            if s.accept("CONSTRAINT"):
                s.next()
            s.expect("DEFAULT")
            value = s.until(lambda t: t.upper == "FOR")
            s.expect("FOR")
            column = s.next().pg()
            default = query.expression(render(value), self.read)
            result.statements.append("ALTER TABLE %s ALTER COLUMN %s SET DEFAULT %s"
                                     % (table, column, default))
            return True
        holder = Table(self, table, short, result)
        for element in split_commas(s.rest()):
            holder.element(Stream(element))
        for line in holder.lines:
            keyword = "ADD " if line.kind == "constraint" else "ADD COLUMN "
            result.statements.append("ALTER TABLE %s %s%s" % (table, keyword, line.text()))
        result.statements.extend(holder.after)
        return True

    _SEQUENCE_FILL = re.compile(
        r"BEFORE\s+INSERT\s+ON\s+(?P<table>[\w$#.\"]+)\s+(?:REFERENCING\s+.*?\s+)?FOR\s+EACH\s+ROW\s+"
        r"(?:WHEN\s*\(.*?\)\s*)?(?:DECLARE\s+.*?)?BEGIN\s+"
        r"(?:IF\s+:NEW\.(?P<c1>[\w$#\"]+)\s+IS\s+NULL\s+THEN\s+)?"
        r"(?:SELECT\s+(?P<s1>[\w$#.\"]+)\.NEXTVAL\s+INTO\s+:NEW\.(?P<c2>[\w$#\"]+)\s+FROM\s+DUAL"
        r"|:NEW\.(?P<c3>[\w$#\"]+)\s*:=\s*(?P<s2>[\w$#.\"]+)\.NEXTVAL)\s*;\s*"
        r"(?:END\s+IF\s*;\s*)?END\b", re.IGNORECASE | re.DOTALL)

    def sequence_trigger(self, text, result):
        """An Oracle trigger that only fills a key from a sequence becomes the column's
        default; any other trigger is left to the caller."""
        m = self._SEQUENCE_FILL.search(text)
        if not m:
            return False
        table = ".".join(pg_name(p.strip('"')) for p in m.group("table").split("."))
        column = pg_name((m.group("c2") or m.group("c3")).strip('"'))
        sequence = (m.group("s1") or m.group("s2")).strip('"')
        result.statements.append("ALTER TABLE %s ALTER COLUMN %s SET DEFAULT nextval('%s')"
                                 % (table, column, pg_name(sequence).replace("'", "''")))
        result.note("the trigger that filled %s.%s from %s is now the column's default"
                    % (table, column, pg_name(sequence)))
        return True


def _is_table_select(stream):
    return any(t.upper == "AS" and stream.tokens[i + 1:i + 2] and
               stream.tokens[i + 1].upper == "SELECT" for i, t in enumerate(stream.tokens))
