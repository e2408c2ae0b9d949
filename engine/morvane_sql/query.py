"""Statements other than table DDL: converted through sqlglot's syntax tree.

For a PostgreSQL target the tree is touched up where the library leaves source
dialect functions or names that PostgreSQL does not know, and names are spelled
the way the table DDL spells them, so that views find the tables they read.
"""
import re

import sqlglot
import sqlglot.errors
from sqlglot import exp

from .names import pg_name
from .tokens import tokenize

POSTGRES_FAMILY = {"postgres"}


class ConversionError(Exception):
    """A statement that cannot be converted: the reason, the token and its line
    within the statement (from 1), when known."""

    def __init__(self, reason, token="", line=1):
        super().__init__(reason)
        self.reason = reason
        self.token = token
        self.line = line


_PARSED = {}


def _pg(sql):
    """A PostgreSQL snippet as a tree (parsed once, copied for each use)."""
    tree = _PARSED.get(sql)
    if tree is None:
        tree = _PARSED[sql] = sqlglot.parse_one(sql, read="postgres")
    return tree.copy()


# Source functions PostgreSQL spells otherwise (no arguments, or the same ones).
_NO_ARGUMENT = {
    "NEWID": "gen_random_uuid()",
    "SUSER_SNAME": "CURRENT_USER",
    "SUSER_NAME": "CURRENT_USER",
    "USER_NAME": "CURRENT_USER",
    "SYSDATETIME": "LOCALTIMESTAMP",
    "SYSUTCDATETIME": "(CURRENT_TIMESTAMP AT TIME ZONE 'UTC')",
    "GETUTCDATE": "(CURRENT_TIMESTAMP AT TIME ZONE 'UTC')",
    "UTC_TIMESTAMP": "(CURRENT_TIMESTAMP AT TIME ZONE 'UTC')",
    "NOW": "CURRENT_TIMESTAMP",
    "SYSDATE": "LOCALTIMESTAMP(0)",
    "CURDATE": "CURRENT_DATE",
    "UUID": "gen_random_uuid()",
}
_RENAMED = {"NVL": "COALESCE", "IFNULL": "COALESCE", "ISNULL": "COALESCE", "LEN": "LENGTH",
            "CHARINDEX": "STRPOS", "SUBSTR": "SUBSTRING"}
# Bare words that are functions in the source dialect.
_BARE = {"SYSDATE": "LOCALTIMESTAMP(0)", "SYSTIMESTAMP": "CURRENT_TIMESTAMP", "USER": "CURRENT_USER",
         "CURRENT_TIMESTAMP": "CURRENT_TIMESTAMP"}


def _function_name(node):
    if isinstance(node, exp.Anonymous):
        return str(node.this).upper()
    return ""


def _fix_node(node, read):
    """One node of the tree, made valid PostgreSQL; returns the replacement."""
    if type(node) not in _TOUCHED:
        return node
    name = _function_name(node)
    if name:
        args = node.expressions
        if name in _NO_ARGUMENT and not args:
            return _pg(_NO_ARGUMENT[name])
        if name in _RENAMED:
            return exp.Anonymous(this=_RENAMED[name], expressions=args)
        if name == "TRUNC" and len(args) == 1 and _bare_word(args[0]) == "SYSDATE":
            return _pg("CURRENT_DATE")
        if name == "DATEDIFF" and len(args) == 2:
            # MySQL: days from the second date to the first.
            return _pg("(CAST(%s AS DATE) - CAST(%s AS DATE))"
                       % (args[0].sql("postgres"), args[1].sql("postgres")))
        return node
    if isinstance(node, (exp.Year, exp.Month, exp.Day)):
        # YEAR(d) and its kin: PostgreSQL extracts the field (as a number).
        field = exp.Extract(this=exp.Var(this=type(node).__name__.upper()), expression=node.this)
        return exp.Cast(this=field, to=exp.DataType.build("int"))
    if isinstance(node, exp.IfNull):
        return exp.Coalesce(this=node.this, expressions=[node.expression])
    if isinstance(node, exp.Matches):
        # Oracle's DECODE: pairs of search and result, then an optional default.
        args = [node.this] + list(node.expressions)
        subject, rest = args[0].sql("postgres"), [a.sql("postgres") for a in args[1:]]
        whens = " ".join("WHEN %s IS NOT DISTINCT FROM %s THEN %s" % (subject, rest[i], rest[i + 1])
                         for i in range(0, len(rest) - 1, 2))
        default = " ELSE %s" % rest[-1] if len(rest) % 2 else ""
        return _pg("CASE %s%s END" % (whens, default))
    if isinstance(node, exp.DateDiff) and read == "tsql":
        unit = str(node.args.get("unit") or "day").strip("'\"").lower()
        if unit in ("day", "dd", "d"):
            return _pg("(CAST(%s AS DATE) - CAST(%s AS DATE))"
                       % (node.this.sql("postgres"), node.expression.sql("postgres")))
    if isinstance(node, exp.Column):
        word = _bare_word(node)
        if word in _BARE:
            return _pg(_BARE[word])
        if node.table and str(node.name).upper() in ("NEXTVAL", "CURRVAL") and read == "oracle":
            function = "nextval" if str(node.name).upper() == "NEXTVAL" else "currval"
            return _pg("%s('%s')" % (function, pg_name(node.table, False).replace("'", "''")))
    if isinstance(node, exp.Table) and read == "tsql" and str(node.args.get("db") or "").lower() == "dbo":
        node.set("db", None)
        node.set("catalog", None)
        return node
    return node


# Words that may need _fix_node: a statement without any of them is left as the library wrote it.
_NEEDS_FIXING = re.compile(r"\b(?:dbo|%s|TRUNC|DATEDIFF|DECODE|NEXTVAL|CURRVAL|YEAR|MONTH|DAY)\b" % "|".join(
    set(_NO_ARGUMENT) | set(_RENAMED) | set(_BARE)), re.IGNORECASE)
_TOUCHED = {exp.Anonymous, exp.IfNull, exp.Matches, exp.DateDiff, exp.Column, exp.Table, exp.Year,
            exp.Month, exp.Day}


def _bare_word(node):
    if isinstance(node, exp.Column) and not node.table and not node.this.quoted:
        return str(node.name).upper()
    return ""


def _fix_tree(tree, read):
    """The tree made valid PostgreSQL, changed in place where it can be (copying the
    whole tree for each statement would cost more than parsing it)."""
    for node, _, _ in list(tree.walk()):
        new = _fix_node(node, read)
        if new is node:
            continue
        if node is tree:
            tree = new
        else:
            node.replace(new)
    return tree


def _pre_rewrite(text, read):
    """Source spellings the library misreads, fixed in the text before parsing."""
    if read == "tsql":
        # TOP 100 PERCENT only lets a view hold ORDER BY; PostgreSQL needs nothing for it.
        text = re.sub(r"\bTOP\s*\(?\s*100\s*\)?\s+PERCENT\b", "", text, flags=re.IGNORECASE)
        text = re.sub(r"^(\s*)CREATE\s+OR\s+ALTER\s+VIEW\b", r"\1CREATE OR REPLACE VIEW", text,
                      flags=re.IGNORECASE)
    if read == "mysql":
        text = re.sub(r"^(\s*CREATE\s+(?:OR\s+REPLACE\s+)?)(?:ALGORITHM\s*=\s*\w+\s+)?"
                      r"(?:DEFINER\s*=\s*\S+\s+)?(?:SQL\s+SECURITY\s+\w+\s+)?VIEW\b", r"\1VIEW",
                      text, flags=re.IGNORECASE)
    if read == "oracle":
        text = re.sub(r"^(\s*CREATE\s+(?:OR\s+REPLACE\s+)?)(?:NO)?FORCE\s+(?:(?:NON)?EDITIONABLE\s+)?VIEW",
                      r"\1VIEW", text, flags=re.IGNORECASE)
        text = re.sub(r"\bWITH\s+READ\s+ONLY\s*$", "", text, flags=re.IGNORECASE)
    return text


# The library's names of binary operators, as they are written.
_OPERATORS = {"GT": "'>'", "GTE": "'>='", "LT": "'<'", "LTE": "'<='", "EQ": "'='", "NEQ": "'<>'",
              "ADD": "'+'", "SUB": "'-'", "MUL": "'*'", "DIV": "'/'", "MOD": "'%'", "AND": "AND",
              "OR": "OR", "LIKE": "LIKE", "ILIKE": "ILIKE", "IS": "IS", "DPIPE": "'||'"}


def _plain_reason(reason):
    """The library's reason in words a user can act on."""
    m = re.match(r"Required keyword: '(\w+)' missing for <class 'sqlglot\.expressions\.(\w+)'>", reason)
    if m:
        kind = m.group(2).upper()
        if kind in _OPERATORS:
            return "the operator %s misses its %s operand" % (
                _OPERATORS[kind], "right" if m.group(1) == "expression" else "left")
        return "a part of this %s is missing (%s)" % (kind, m.group(1))
    if reason.startswith("Invalid expression / Unexpected token"):
        return "the statement cannot be read from here on"
    return reason


# MySQL's row of defaults: INSERT INTO t () VALUES ().
_DEFAULT_ROW = re.compile(r"INSERT\s+(?:INTO\s+)?([^()]+?)\s*\(\s*\)\s*VALUES?\s*\(\s*\)\s*\Z",
                          re.IGNORECASE)
_TRAILING_COMMENTS = re.compile(r"(?:\s*(?:--[^\n]*|/\*(?:(?!\*/).)*\*/))+\s*\Z", re.DOTALL)


def transpile(text, read, write):
    """The statement in the target dialect, as a list of statements.

    Raises ConversionError with the library's own reason and token."""
    # Comments after the last token go after the statement: the library would copy
    # them onto several of its nodes.
    trailing = _TRAILING_COMMENTS.search(text)
    if trailing and trailing.start() > 0:
        converted = transpile(text[:trailing.start()], read, write)
        comments = [c.strip() for c in re.findall(r"--[^\n]*|/\*.*?\*/", trailing.group(0), re.DOTALL)]
        if converted:
            converted[-1] += " " + " ".join(c if c.startswith("/*") else "/*%s */" % c[2:]
                                            for c in comments)
        return converted
    to_postgres = write in POSTGRES_FAMILY
    defaults = _DEFAULT_ROW.match(text)
    if defaults and to_postgres:
        table = ".".join(t.pg() for t in tokenize(defaults.group(1)) if t.text != ".")
        return ["INSERT INTO %s DEFAULT VALUES" % table]
    if to_postgres:
        text = _pre_rewrite(text, read)
    try:
        trees = sqlglot.parse(text, read=read or None)
    except sqlglot.errors.ParseError as e:
        detail = e.errors[0] if e.errors else {}
        token = (detail.get("highlight") or "").strip()
        reason = _plain_reason(str(detail.get("description") or e).split(". Line")[0])
        raise ConversionError(reason, token, int(detail.get("line") or 1)) from None
    except sqlglot.errors.TokenError as e:
        raise ConversionError("the text cannot be split into tokens (%s)" % e) from None
    except Exception as e:  # the library fails on some input with its own bugs
        raise ConversionError("the SQL library failed on this statement (%s: %s)"
                              % (type(e).__name__, e)) from None
    results = []
    for tree in trees:
        if tree is None:
            continue
        try:
            if to_postgres and _NEEDS_FIXING.search(text):
                tree = _fix_tree(tree, read)
            # Statements written over several lines stay readable. Names are written in
            # lower case, as PostgreSQL folds them and as the table DDL writes them.
            results.append(tree.sql(dialect=write or None, pretty="\n" in text.strip(),
                                    normalize=to_postgres))
        except sqlglot.errors.UnsupportedError as e:
            raise ConversionError("the target has no form for it (%s)" % e) from None
        except Exception as e:
            raise ConversionError("the SQL library failed on this statement (%s: %s)"
                                  % (type(e).__name__, e)) from None
    return results


def expression(text, read):
    """A default or check expression in PostgreSQL form."""
    converted = transpile("SELECT " + text, read, "postgres")
    if len(converted) != 1 or not converted[0].upper().startswith("SELECT "):
        raise ConversionError("not a single expression", text.split()[0] if text.split() else "")
    return converted[0][len("SELECT "):]
