"""The columns, keys and options of one table, rewritten for PostgreSQL."""
import re

from . import query
from .query import ConversionError
from .stream import Stream, inline, number, split_commas
from .tokens import render

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
INTEGER_TYPES = ("smallint", "integer", "bigint")


class Table:
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
            comments = " ".join(inline(c) for c in s.comments)
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
            if parts[1] not in INTEGER_TYPES:
                parts[1] = _integer_for(parts[1])
                if parts[1] not in INTEGER_TYPES:
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
            args = [part for part in split_commas(group)]
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
            options = Stream(s.group())
            while options.peek() is not None:
                word = options.next().upper
                if word == "START":
                    options.accept("WITH")
                    start = number(options)
                elif word == "INCREMENT":
                    options.accept("BY")
                    step = number(options)
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
            if wanted in INTEGER_TYPES and line is not None and line.parts[1] != wanted and \
                    (line.parts[1] in INTEGER_TYPES or line.parts[1].startswith("numeric")):
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
        s = Stream(tokens)
        dropped = []
        while s.peek() is not None:
            token = s.next()
            word = token.upper
            if word == "AUTO_INCREMENT":
                s.accept("=")
                start = number(s)
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
