"""How names are written for PostgreSQL.

Every name is written in lower case, whatever quoting the source used ([Name],
`name`, "NAME"), as sqlglot writes the names of the other statements: a view then
finds the table and columns it reads. A plain name (letters, digits, underscores)
goes without quotes; names PostgreSQL reserves, and names holding blanks or other
signs, keep double quotes.
"""
import re

_SIMPLE = re.compile(r"[A-Za-z_][A-Za-z_0-9]*\Z")
# Words PostgreSQL reserves (they cannot be column or table names unquoted).
RESERVED = frozenset("""
all analyse analyze and any array as asc asymmetric authorization binary both case cast check
collate collation column concurrently constraint create cross current_catalog current_date
current_role current_schema current_time current_timestamp current_user default deferrable desc
distinct do else end except false fetch for foreign freeze from full grant group having ilike in
initially inner intersect into is isnull join lateral leading left like limit localtime
localtimestamp natural not notnull null offset on only or order outer overlaps placing primary
references returning right select session_user similar some symmetric system_user table tablesample
then to trailing true union unique user using variadic verbose when where window with
""".split())


def is_simple(name):
    return bool(_SIMPLE.match(name))


def is_reserved(name):
    return name.lower() in RESERVED


def pg_name(name, quoted_in_source=True):
    """One name part as PostgreSQL should read it."""
    if is_simple(name):
        return '"%s"' % name.lower() if is_reserved(name) else name.lower()
    return '"%s"' % name.lower().replace('"', '""')
