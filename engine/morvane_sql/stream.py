"""Walking the tokens of one DDL statement."""
from .query import ConversionError


class Stream:
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


def split_commas(tokens):
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


def number(stream):
    token = stream.next()
    sign = ""
    if token.text == "-":
        sign, token = "-", stream.next()
    if token.kind != "number":
        raise ConversionError("a number was expected here", token.text, token.line)
    return sign + token.text


def inline(comment):
    """A comment that can stand inside a line."""
    if comment.text.startswith("--"):
        return "/*%s */" % comment.text[2:].replace("*/", "* /")
    return comment.text
