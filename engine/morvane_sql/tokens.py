"""A small tokenizer for the table DDL rewriter: names, literals, signs and
comments, each with the line it starts on (from 1 within the statement)."""
import re

from .names import is_reserved, pg_name

_TOKEN = re.compile(r"""
    (?P<ws>\s+)
  | (?P<comment>--[^\n]*|/\*.*?(?:\*/|\Z))
  | (?P<string>[NnXxBb]?'(?:[^'\\]|''|\\.)*'?)
  | (?P<quoted>"(?:[^"]|"")*"?|\[(?:[^\]]|\]\])*\]?|`(?:[^`]|``)*`?)
  | (?P<number>(?:\d+\.?\d*|\.\d+)(?:[eE][-+]?\d+)?)
  | (?P<word>[A-Za-z_@#$][A-Za-z_0-9@#$]*)
  | (?P<sign>::|<=|>=|<>|!=|\|\||:=|.)
""", re.VERBOSE | re.DOTALL)


class Token:
    __slots__ = ("kind", "text", "line")

    def __init__(self, kind, text, line):
        self.kind = kind
        self.text = text
        self.line = line

    @property
    def upper(self):
        return self.text.upper() if self.kind == "word" else None

    def name(self):
        """The name a word or quoted name stands for, without its quotes."""
        if self.kind == "quoted":
            inner = self.text[1:-1]
            close = self.text[-1]
            return inner.replace(close * 2, close)
        return self.text

    def pg(self):
        """The name as PostgreSQL should read it."""
        return pg_name(self.name())

    def __repr__(self):
        return "%s:%r@%d" % (self.kind, self.text, self.line)


def tokenize(text, hash_comments=False):
    """The tokens of text, blanks left out, comments kept."""
    tokens = []
    line = 1
    pos = 0
    n = len(text)
    while pos < n:
        if hash_comments and text[pos] == "#":
            end = text.find("\n", pos)
            end = n if end < 0 else end
            tokens.append(Token("comment", "--" + text[pos + 1:end], line))
            pos = end
            continue
        m = _TOKEN.match(text, pos)
        kind = m.lastgroup
        value = m.group(kind)
        if kind == "string" and value[0] in "Nn" and len(value) > 1:
            value = value[1:]
        if kind != "ws":
            tokens.append(Token(kind, value, line))
        line += m.group(0).count("\n")
        pos = m.end()
    return tokens


def render(tokens):
    """Tokens back into text, names in PostgreSQL form, with single blanks."""
    out = []
    previous = None
    for token in tokens:
        if token.kind == "quoted" or token.kind == "word" and not is_reserved(token.text):
            text = token.pg()
        else:
            text = token.text  # signs, literals, and keywords such as NULL or CURRENT_DATE
        if token.kind == "comment" and text.startswith("--"):
            text = "/*" + text[2:].replace("*/", "* /") + " */"
        if previous is not None and not (token.text in ",)." or previous.text in "(."
                                         or token.text == "(" and previous.kind in ("word", "quoted")):
            out.append(" ")
        out.append(text)
        previous = token
    return "".join(out)
