"""Table DDL rewritten for PostgreSQL: CREATE TABLE, CREATE INDEX, CREATE SEQUENCE,
ALTER TABLE ... ADD, and Oracle's sequence-filling triggers.

Works on tokens rather than on the SQL library's tree: the library does not read
much of the DDL real schemas hold (IDENTITY(1,1), AUTO_INCREMENT, ENUM,
CLUSTERED keys, table options), and every column needs the same care anyway.
"""
import re

from . import query
from .query import ConversionError
from .tokens import render, tokenize
from .names import pg_name

MARK = "[morvane]"

# Words that end a column's type and start its constraints.
_COLUMN_CLAUSES = frozenset("""
NOT NULL DEFAULT IDENTITY AUTO_INCREMENT PRIMARY UNIQUE REFERENCES CONSTRAINT CHECK GENERATED COLLATE
CHARACTER CHARSET ON COMMENT ROWGUIDCOL SPARSE ENABLE DISABLE INVISIBLE VISIBLE KEY FILESTREAM AS
""".split())
_TABLE_CONSTRAINTS = frozenset("CONSTRAINT PRIMARY UNIQUE FOREIGN CHECK KEY INDEX FULLTEXT SPATIAL".split())

_TSQL_TYPES = {
    "INT": "integer", "INTEGER": "integer", "BIGINT": "bigint", "SMALLINT": "smallint",
    "TINYINT": "smallint", "BIT": "smallint", "MONEY": "numeric(19,4)", "SMALLMONEY": "numeric(10,4)",
    "FLOAT": "double precision", "REAL": "real", "DATETIME": "timestamp(3)",
    "SMALLDATETIME": "timestamp(0)", "DATETIME2": "timestamp", "DATETIMEOFFSET": "timestamptz",
    "DATE": "date", "TIME": "time", "TEXT": "text", "NTEXT": "text", "IMAGE": "bytea",
    "VARBINARY": "bytea", "BINARY": "bytea", "UNIQUEIDENTIFIER": "uuid", "SYSNAME": "varchar(128)",
    "XML": "xml", "ROWVERSION": "bytea", "TIMESTAMP": "bytea", "HIERARCHYID": "varchar(4000)",
    "SQL_VARIANT": "text",
}
_MYSQL_TYPES = {
    "INT": "integer", "INTEGER": "integer", "MEDIUMINT": "integer", "BIGINT": "bigint",
    "SMALLINT": "smallint", "TINYINT": "smallint", "BOOL": "boolean", "BOOLEAN": "boolean",
    "DOUBLE": "double precision", "FLOAT": "real", "REAL": "double precision",
    "DATETIME": "timestamp", "TIMESTAMP": "timestamp", "DATE": "date", "TIME": "time",
    "YEAR": "smallint", "TINYTEXT": "text", "TEXT": "text", "MEDIUMTEXT": "text", "LONGTEXT": "text",
    "TINYBLOB": "bytea", "BLOB": "bytea", "MEDIUMBLOB": "bytea", "LONGBLOB": "bytea",
    "BINARY": "bytea", "VARBINARY": "bytea", "JSON": "jsonb", "BIT": "bit",
}
_ORACLE_TYPES = {
    "VARCHAR2": "varchar", "NVARCHAR2": "varchar", "CLOB": "text", "NCLOB": "text", "LONG": "text",
    "BLOB": "bytea", "RAW": "bytea", "BFILE": "bytea", "DATE": "timestamp(0)",
    "BINARY_FLOAT": "real", "BINARY_DOUBLE": "double precision", "FLOAT": "double precision",
    "INTEGER": "integer", "INT": "integer", "SMALLINT": "smallint", "XMLTYPE": "xml",
    "ROWID": "varchar(18)", "UROWID": "varchar(4000)",
}
# Types with a length that PostgreSQL spells the same.
_LENGTH_TYPES = {"CHAR": "char", "NCHAR": "char", "VARCHAR": "varchar", "NVARCHAR": "varchar",
                 "DECIMAL": "numeric", "NUMERIC": "numeric", "DEC": "numeric"}
_INTEGER_TYPES = ("smallint", "integer", "bigint")


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


class _Stream:
    def __init__(self, tokens):
        self.all = tokens
        self.comments = [t for t in tokens if t.kind == "comment"]
        self.tokens = [t for t in tokens if t.kind != "comment"]
        self.where = [i for i, t in enumerate(tokens) if t.kind != "comment"]
        self.i = 0

    def peek(self, ahead=0):
        j = self.i + ahead
        return self.tokens[j] if j < len(self.tokens) else None

    def word(self, ahead=0):
        token = self.peek(ahead)
        return token.upper if token is not None else None

    def next(self):
        token = self.peek()
        if token is None:
            raise ConversionError("the statement ends too early", self.tokens[-1].text if self.tokens
                                  else "", self.tokens[-1].line if self.tokens else 1)
        self.i += 1
        return token

    def accept(self, *words):
        token = self.peek()
        if token is not None and (token.upper in words or token.kind == "sign" and token.text in words):
            return self.next()
        return None

    def expect(self, word):
        token = self.next()
        if token.upper != word and token.text != word:
            raise ConversionError("'%s' was expected here" % word, token.text, token.line)
        return token

    def group(self):
        """The tokens inside the parenthesis that starts here, the parentheses left out."""
        self.expect("(")
        depth = 1
        start = self.i
        while True:
            token = self.next()
            if token.text == "(":
                depth += 1
            elif token.text == ")":
                depth -= 1
                if depth == 0:
                    return self.tokens[start:self.i - 1]

    def group_with_comments(self):
        """As group(), comments inside included (and no longer counted as the stream's)."""
        opening = self.i
        self.group()
        inside = self.all[self.where[opening] + 1:self.where[self.i - 1]]
        self.comments = [c for c in self.comments if all(c is not t for t in inside)]
        return inside

    def until(self, stop):
        """Tokens up to (not including) the first depth-0 token for which stop holds."""
        start = self.i
        depth = 0
        while self.peek() is not None:
            token = self.peek()
            if depth == 0 and stop(token):
                break
            if token.text == "(":
                depth += 1
            elif token.text == ")":
                depth -= 1
            self.i += 1
        return self.tokens[start:self.i]

    def rest(self):
        tokens = self.tokens[self.i:]
        self.i = len(self.tokens)
        return tokens

    def unexpected(self, why):
        token = self.peek() or (self.tokens[-1] if self.tokens else None)
        raise ConversionError(why, token.text if token else "", token.line if token else 1)


def _split_commas(tokens):
    parts, current, depth = [], [], 0
    comma_line = -1
    for token in tokens:
        if token.kind == "comment" and not current and parts and token.line == comma_line:
            parts[-1].append(token)  # "col int, -- what it holds" belongs to col
            continue
        if token.text == "(":
            depth += 1
        elif token.text == ")":
            depth -= 1
        if token.text == "," and depth == 0:
            parts.append(current)
            current = []
            comma_line = token.line
        else:
            current.append(token)
    if current:
        parts.append(current)
    return parts


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
        stream = _Stream(tokens)
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
        result.comments = [_inline(c) for c in stream.comments]
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
        table = _Table(self, name, short, result)
        for element in _split_commas(s.group_with_comments()):
            table.element(_Stream(element))
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
        for part in _split_commas(tokens):
            stream = _Stream(part)
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
                options.append("%s %s %s" % (word, "WITH" if word == "START" else "BY", _number(s)))
            elif word in ("MINVALUE", "MAXVALUE"):
                value = _number(s)
                if abs(int(value)) < 2 ** 63:
                    options.append("%s %s" % (word, value))
            elif word in ("NOMINVALUE", "NOMAXVALUE", "NOCYCLE"):
                options.append("NO " + word[2:])
            elif word == "CYCLE":
                options.append("CYCLE")
            elif word == "CACHE":
                options.append("CACHE %s" % _number(s))
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
        holder = _Table(self, table, short, result)
        for element in _split_commas(s.rest()):
            holder.element(_Stream(element))
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


def _number(stream):
    token = stream.next()
    sign = ""
    if token.text == "-":
        sign, token = "-", stream.next()
    if token.kind != "number":
        raise ConversionError("a number was expected here", token.text, token.line)
    return sign + token.text


class _Table:
    """The columns and constraints of one CREATE TABLE (or ALTER TABLE ADD)."""

    def __init__(self, converter, name, short, result):
        self.c = converter
        self.read = converter.read
        self.name = name
        self.short = short
        self.result = result
        self.lines = []
        self.columns = {}
        self.after = []
        self.identity = None

    def add(self, parts, kind):
        line = _Line(kind, parts)
        self.lines.append(line)
        return line

    def element(self, s):
        count = len(self.lines)
        if s.word() in _TABLE_CONSTRAINTS:
            self.constraint(s)
        else:
            self.column(s)
        if s.comments:
            # Comments stay beside the column or key they were written in.
            comments = " ".join(_inline(c) for c in s.comments)
            if len(self.lines) > count:
                self.lines[-1].parts.append(comments)
            else:
                self.result.comments.append(comments)

    # --- columns ---------------------------------------------------------------

    def column(self, s):
        if s.accept("COLUMN"):
            pass
        name_token = s.next()
        if name_token.kind not in ("word", "quoted"):
            raise ConversionError("a column name was expected here", name_token.text, name_token.line)
        column = name_token.pg()
        if s.word() == "AS" and self.read == "tsql":
            raise ConversionError("computed columns are not converted", "AS", s.peek().line)
        column_type, enum_values, unsigned = self.data_type(s)
        parts = [column, column_type]
        identity = None
        checks = []
        while s.peek() is not None:
            token = s.next()
            word = token.upper
            if word == "NOT" and s.word() == "NULL":
                s.next()
                parts.append("NOT NULL")
            elif word == "NULL":
                parts.append("NULL")
            elif word == "CONSTRAINT":
                s.next()  # PostgreSQL names no column default; other named forms follow
            elif word == "DEFAULT":
                parts.append("DEFAULT " + self.default(s, column_type))
            elif word == "IDENTITY":
                start, step = "1", "1"
                if s.peek() is not None and s.peek().text == "(":
                    values = [t.text for t in s.group() if t.text != ","]
                    if len(values) == 2:
                        start, step = values
                identity = (start, step)
            elif word == "AUTO_INCREMENT":
                identity = ("1", "1")
            elif word == "GENERATED":
                identity = self.generated(s)
            elif word == "PRIMARY":
                s.expect("KEY")
                s.accept("CLUSTERED", "NONCLUSTERED")
                s.accept("ASC", "DESC")
                parts.append("PRIMARY KEY")
            elif word == "UNIQUE":
                s.accept("KEY")
                s.accept("CLUSTERED", "NONCLUSTERED")
                parts.append("UNIQUE")
            elif word == "REFERENCES":
                parts.append(self.references(s, [column]))
            elif word == "CHECK":
                checks.append("CHECK (%s)" % query.expression(render(s.group()), self.read))
            elif word == "ON" and s.word() == "UPDATE":
                s.next()
                s.until(lambda t: t.upper in _COLUMN_CLAUSES and t.upper != "ON")
                self.result.note("%s.%s: ON UPDATE CURRENT_TIMESTAMP has no column form in "
                                 "PostgreSQL; add an update trigger if it is needed"
                                 % (self.name, column), report=True)
            elif word == "COMMENT":
                text = s.next().text
                self.after.append("COMMENT ON COLUMN %s.%s IS %s" % (self.name, column, text))
            elif word in ("COLLATE",):
                s.next()
            elif word in ("CHARACTER", "CHARSET"):
                s.accept("SET")
                s.next()
            elif word in ("ROWGUIDCOL", "SPARSE", "ENABLE", "DISABLE", "VISIBLE", "INVISIBLE",
                          "FILESTREAM"):
                pass
            elif word == "NOT" and s.word() == "FOR":
                s.next(), s.expect("REPLICATION")
            else:
                raise ConversionError("this column clause is not known", token.text, token.line)
        if identity is not None:
            if parts[1] not in _INTEGER_TYPES:
                parts[1] = _integer_for(parts[1])
                if parts[1] not in _INTEGER_TYPES:
                    parts[1] = "bigint"
            parts.insert(2, "GENERATED BY DEFAULT AS IDENTITY%s" % _identity_options(*identity))
            self.identity = parts[0]
        if enum_values is not None:
            checks.append(self.enum_check(column, enum_values))
        if unsigned and parts[1] in ("numeric", "real", "double precision") or \
                unsigned and parts[1].startswith("numeric("):
            checks.append("CHECK (%s >= 0)" % column)
        self.columns[column] = self.add(parts + checks, "column")
        self.c.types[(self.short, column)] = parts[1]

    def data_type(self, s):
        """The PostgreSQL type, the ENUM or SET values (or None), and whether it was unsigned."""
        token = s.next()
        if token.kind not in ("word", "quoted"):
            raise ConversionError("a data type was expected here", token.text, token.line)
        base = token.name().upper()
        words = [base]
        # Types of several words.
        while s.word() in ("PRECISION", "VARYING", "WITH", "WITHOUT", "LOCAL", "TIME", "ZONE",
                           "RAW", "UNSIGNED", "SIGNED", "ZEROFILL") and not (
                s.word() == "WITH" and s.word(1) not in ("TIME", "LOCAL")):
            words.append(s.next().upper)
        args = []
        if s.peek() is not None and s.peek().text == "(":
            group = s.group()
            args = [part for part in _split_commas(group)]
            while s.word() in ("WITH", "WITHOUT", "LOCAL", "TIME", "ZONE", "UNSIGNED", "SIGNED",
                               "ZEROFILL") and not (s.word() == "WITH" and s.word(1) not in
                                                    ("TIME", "LOCAL")):
                words.append(s.next().upper)
        unsigned = "UNSIGNED" in words
        words = [w for w in words if w not in ("UNSIGNED", "SIGNED", "ZEROFILL")]
        values = [" ".join(t.text for t in a) for a in args]
        if base in ("ENUM", "SET") and self.read == "mysql":
            strings = [a[0].text for a in args if a and a[0].kind == "string"]
            longest = max((len(v) - 2 for v in strings), default=1)
            if base == "SET":
                longest = sum(len(v) - 1 for v in strings)
            return "varchar(%d)" % max(longest, 1), (base, strings), False
        return self.map_type(base, words, values, unsigned, token), None, unsigned

    def map_type(self, base, words, args, unsigned, token):
        phrase = " ".join(words)
        length = "(%s)" % ",".join(a.split()[0] for a in args) if args else ""
        if base in ("VARCHAR", "NVARCHAR", "VARBINARY", "VARCHAR2", "NVARCHAR2") and args \
                and args[0].upper() == "MAX":
            return "bytea" if base == "VARBINARY" else "text"
        if self.read == "oracle" and base == "NUMBER":
            if not args:
                return "numeric"
            precision = int(args[0]) if args[0].isdigit() else 38
            scale = int(args[1]) if len(args) > 1 and args[1].lstrip("-").isdigit() else 0
            if scale:
                return "numeric(%d,%d)" % (precision, scale)
            return _integer_for("numeric(%d)" % precision)
        if self.read == "oracle" and base in ("VARCHAR2", "NVARCHAR2", "CHAR", "NCHAR") and args:
            return "%s(%s)" % ("varchar" if "VAR" in base else "char", args[0].split()[0])
        if base == "TIMESTAMP" and self.read == "oracle":
            zone = "WITH TIME ZONE" in phrase or "LOCAL" in phrase
            return ("timestamptz" if zone else "timestamp") + length
        if base in ("DATETIME2", "TIME") and self.read == "tsql" and args:
            return ("timestamp" if base == "DATETIME2" else "time") + length
        if base in ("DOUBLE", "FLOAT") and self.read == "mysql":
            return "double precision" if base == "DOUBLE" or args and int(args[0]) > 24 else "real"
        table = {"tsql": _TSQL_TYPES, "mysql": _MYSQL_TYPES, "oracle": _ORACLE_TYPES}.get(self.read, {})
        mapped = table.get(base)
        if mapped is None and base in _LENGTH_TYPES:
            mapped = _LENGTH_TYPES[base] + length
        elif mapped is None and self.read == "mysql" and base in ("VARCHAR", "CHAR"):
            mapped = base.lower() + length
        if mapped is None:
            if self.read == "" or base.lower() in ("text", "boolean", "date", "real", "uuid", "json",
                                                    "jsonb", "xml", "bytea"):
                return phrase.lower() + length
            raise ConversionError("the data type %s has no PostgreSQL counterpart here" % base,
                                  token.text, token.line)
        if mapped == "varchar" or mapped == "char":
            mapped += length
        if self.read == "mysql" and base in ("BIT",):
            mapped += length
        if unsigned:
            # PostgreSQL has no unsigned integers: the next wider type holds every value.
            mapped = {"smallint": "integer", "integer": "bigint"}.get(
                mapped, mapped)
        if self.read == "mysql" and base == "TINYINT" and args == ["1"]:
            mapped = "smallint"
        return mapped

    def default(self, s, column_type):
        value = s.until(lambda t: t.upper in ("NOT", "NULL", "CONSTRAINT", "PRIMARY", "UNIQUE",
                                              "REFERENCES", "CHECK", "ON", "COMMENT", "COLLATE",
                                              "AUTO_INCREMENT", "IDENTITY", "GENERATED",
                                              "ROWGUIDCOL", "ENABLE"))
        if not value and s.word() == "NULL":
            s.next()
            return "NULL"
        if not value:
            s.unexpected("DEFAULT has no value")
        text = render(value)
        if text.upper() in ("CURRENT_TIMESTAMP", "(CURRENT_TIMESTAMP)") or \
                re.match(r"CURRENT_TIMESTAMP\s*\(\s*\d*\s*\)\Z", text, re.IGNORECASE):
            return "CURRENT_TIMESTAMP"
        return query.expression(text, self.read)

    def generated(self, s):
        """Oracle's GENERATED ... AS IDENTITY [(options)]: (start, step)."""
        s.accept("ALWAYS")
        if s.accept("BY"):
            s.expect("DEFAULT")
            if s.accept("ON"):
                s.expect("NULL")
        s.expect("AS")
        s.expect("IDENTITY")
        start, step = "1", "1"
        if s.peek() is not None and s.peek().text == "(":
            options = _Stream(s.group())
            while options.peek() is not None:
                word = options.next().upper
                if word == "START":
                    options.accept("WITH")
                    start = _number(options)
                elif word == "INCREMENT":
                    options.accept("BY")
                    step = _number(options)
        return start, step

    def references(self, s, local):
        table, short = self.c.qualified(s)
        columns = ""
        if s.peek() is not None and s.peek().text == "(":
            referenced = self.c.key_columns(s.group())
            columns = " (%s)" % ", ".join(referenced)
            self.align_types(local, short, referenced)
        actions = []
        while s.word() == "ON" and s.word(1) in ("DELETE", "UPDATE"):
            s.next()
            event = s.next().upper
            action = s.next().upper
            if action in ("SET", "NO"):
                action += " " + s.next().upper
            actions.append("ON %s %s" % (event, action))
        if s.word() == "NOT" and s.word(1) == "FOR":
            s.next(), s.next(), s.expect("REPLICATION")
        return "REFERENCES %s%s%s" % (table, columns, "".join(" " + a for a in actions))

    def align_types(self, local, table, referenced):
        """A key column takes the integer type of the column it references: PostgreSQL
        cannot compare numeric with bigint in a foreign key (Oracle's NUMBER keys)."""
        for mine, theirs in zip(local, referenced):
            wanted = self.c.types.get((table, theirs))
            line = self.columns.get(mine)
            if wanted in _INTEGER_TYPES and line is not None and line.parts[1] != wanted and \
                    (line.parts[1] in _INTEGER_TYPES or line.parts[1].startswith("numeric")):
                line.parts[1] = wanted
                self.c.types[(self.short, mine)] = wanted

    def enum_check(self, column, enum):
        kind, values = enum
        listed = ", ".join(values)
        if kind == "ENUM":
            return "CHECK (%s IN (%s))" % (column, listed)
        self.result.note("%s.%s: the SET column becomes text of comma-separated values, checked "
                         "against its list" % (self.name, column))
        return "CHECK (%s = '' OR string_to_array(%s, ',') <@ ARRAY[%s]::text[])" % (
            column, column, listed)

    # --- table constraints and keys --------------------------------------------

    def constraint(self, s):
        name = ""
        if s.accept("CONSTRAINT"):
            name = "CONSTRAINT %s " % s.next().pg()
        word = s.next().upper
        if word == "PRIMARY":
            s.expect("KEY")
            s.accept("CLUSTERED", "NONCLUSTERED")
            self.add(["%sPRIMARY KEY (%s)" % (name, ", ".join(self.c.key_columns(s.group())))],
                     "constraint")
        elif word == "UNIQUE":
            s.accept("KEY", "INDEX")
            if s.peek() is not None and s.peek().text != "(" and s.word() not in ("CLUSTERED",
                                                                                 "NONCLUSTERED"):
                index = s.next()
                name = name or "CONSTRAINT %s " % self.c.index_name(index, self.short, self.result)
            s.accept("CLUSTERED", "NONCLUSTERED")
            self.add(["%sUNIQUE (%s)" % (name, ", ".join(self.c.key_columns(s.group())))], "constraint")
        elif word == "FOREIGN":
            s.expect("KEY")
            if s.peek() is not None and s.peek().text != "(":
                s.next()  # MySQL's index name for the key
            columns = self.c.key_columns(s.group())
            s.expect("REFERENCES")
            self.add(["%sFOREIGN KEY (%s) %s" % (name, ", ".join(columns), self.references(s, columns))],
                     "constraint")
        elif word == "CHECK":
            self.add(["%sCHECK (%s)" % (name, query.expression(render(s.group()), self.read))],
                     "constraint")
        elif word in ("KEY", "INDEX"):
            index = s.next()
            s.accept("USING") and s.next()
            columns = self.c.key_columns(s.group(), keep_order=True, result=self.result)
            self.after.append("CREATE INDEX %s ON %s (%s)" % (
                self.c.index_name(index, self.short, self.result), self.name, ", ".join(columns)))
            return
        elif word in ("FULLTEXT", "SPATIAL"):
            self.result.note("%s: the %s index is left out; PostgreSQL uses GIN or GiST indexes for "
                             "this" % (self.name, word.lower()), report=True)
            return
        else:
            s.i -= 1
            s.unexpected("this table constraint is not known")
        while s.peek() is not None:
            # Storage and enforcement clauses after a key: nothing of them carries over.
            token = s.next()
            if token.text == "(":
                s.i -= 1
                s.group()

    def options(self, tokens):
        """Table options after the column list: an AUTO_INCREMENT start and a comment carry
        over; storage options have no meaning in PostgreSQL."""
        s = _Stream(tokens)
        dropped = []
        while s.peek() is not None:
            token = s.next()
            word = token.upper
            if word == "AUTO_INCREMENT":
                s.accept("=")
                start = _number(s)
                if self.identity is not None:
                    self._restart_identity(start)
            elif word == "COMMENT":
                s.accept("=")
                self.after.append("COMMENT ON TABLE %s IS %s" % (self.name, s.next().text))
            elif token.text == "(":
                s.i -= 1
                s.group()
            elif token.text not in ("=", ","):
                dropped.append(token.text)
        if dropped:
            self.result.note("table options without a PostgreSQL meaning were left out: %s"
                             % " ".join(dropped))

    def _restart_identity(self, start):
        parts = self.columns[self.identity].parts
        for i, part in enumerate(parts):
            if part.startswith("GENERATED"):
                parts[i] = "GENERATED BY DEFAULT AS IDENTITY (START WITH %s)" % start


class _Line:
    """A column or constraint of a table: its words, changed by later clauses."""

    def __init__(self, kind, parts):
        self.kind = kind
        self.parts = parts

    def text(self):
        return " ".join(self.parts)


def _inline(comment):
    """A comment that can stand inside a line."""
    if comment.text.startswith("--"):
        return "/*%s */" % comment.text[2:].replace("*/", "* /")
    return comment.text


def _identity_options(start, step):
    if start == "1" and step == "1":
        return ""
    if step == "1":
        return " (START WITH %s)" % start
    return " (START WITH %s INCREMENT BY %s)" % (start, step)


def _integer_for(pg_type):
    """The integer type for an exact number without a scale, by its precision."""
    m = re.match(r"numeric\((\d+)\)", pg_type)
    if not m:
        return pg_type
    precision = int(m.group(1))
    if precision <= 4:
        return "smallint"
    if precision <= 9:
        return "integer"
    if precision <= 18:
        return "bigint"
    return pg_type
