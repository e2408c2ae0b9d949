#!/usr/bin/python3
"""Morvane conversion engine: converts SQL scripts between database dialects.

Command line (as the application builds it):
  /F="a.sql| b.sql"  or  /FF="list.txt"    scripts (entries may hold wildcards)
  /DIR="output folder"
  /SOURCE=<platform> /TARGET=<platform>    display names or keys
  /Source_DB= /Source_API= /Target_DB= /Target_API=  (accepted, not needed here)
  /TBLDDL="file"  /PRJF="file"  /INI="file"  /SRCENC=<codec>  /TRGENC=<codec>
The last argument may hold several switches separated by blanks.

Output: "Converting script ("<path>") to <target>" per script, a progress line
starting with a carriage return and "C", and "line N - unexpected token '<t>'"
for each statement that cannot be parsed. The stop event (a POSIX named
semaphore) is polled between statements.
"""
import codecs
import ctypes
import ctypes.util
import glob
import locale
import os
import shlex
import sys

DIALECTS = {
    "mssql": "tsql", "microsoft sql server": "tsql",
    "oracle": "oracle",
    "postgresql": "postgres", "greenplum": "postgres", "vpostgres": "postgres",
    "enterprisedbppas": "postgres", "enterprisedbppss": "postgres",
    "enterprisedb postgres plus advanced server": "postgres",
    "enterprisedb postgres plus standart server": "postgres",
    "mysql": "mysql",
    "teradata": "teradata",
    "ansi": "", "ansi sql": "",
}

_progress_open = False


def out(text):
    sys.stdout.write(text)
    sys.stdout.flush()


def line(text):
    """A normal output line; closes an open progress line first."""
    global _progress_open
    if _progress_open:
        out("\n")
        _progress_open = False
    out(text + "\n")


def progress(text):
    # The application drops its last line when a chunk holds "\rC": the line
    # feed written first is what it drops, so the previous progress line is
    # replaced and nothing else is lost.
    global _progress_open
    out("\n\r" + text)
    _progress_open = True


class StopEvent:
    def __init__(self):
        self.sem = None
        name = os.environ.get("MORVANE_STOP_EVENT") or "/MorvaneStopEvent"
        try:
            libc = ctypes.CDLL(ctypes.util.find_library("c") or "libc.so.6", use_errno=True)
            libc.sem_open.restype = ctypes.c_void_p
            libc.sem_open.argtypes = [ctypes.c_char_p, ctypes.c_int, ctypes.c_uint, ctypes.c_uint]
            libc.sem_trywait.argtypes = [ctypes.c_void_p]
            sem = libc.sem_open(name.encode(), os.O_CREAT, 0o600, 0)
            if sem and sem != ctypes.c_void_p(-1).value:
                self.sem = sem
                self.libc = libc
        except OSError:
            self.sem = None

    def is_set(self):
        return self.sem is not None and self.libc.sem_trywait(self.sem) == 0


def unquote(value):
    value = value.strip()
    if len(value) >= 2 and value[0] == '"' and value[-1] == '"':
        return value[1:-1]
    return value


def parse_arguments(argv):
    options = {}
    pieces = []
    for arg in argv:
        for key in ("/FF=", "/F=", "/DIR=", "/SOURCE=", "/TARGET=", "/TBLDDL="):
            if arg.startswith(key):
                pieces.append(arg)
                break
        else:
            try:
                pieces.extend(shlex.split(arg, posix=True))
            except ValueError:
                pieces.extend(arg.split())
    for piece in pieces:
        if piece.startswith("/") and "=" in piece:
            key, value = piece.split("=", 1)
            options[key.upper()] = unquote(value)
        elif piece.startswith("/") and len(piece) > 2:
            options[piece[:2].upper()] = piece[2:]
    return options


def codec(name):
    """The Python codec for an encoding name as the application lists it, or None."""
    if not name or name == "System":
        return locale.getpreferredencoding(False) or "utf-8"
    # Qt spells some names with a blank ("IBM 850") that Python writes without.
    for candidate in (name, name.replace(" ", ""), name.replace(" ", "-")):
        try:
            return codecs.lookup(candidate).name
        except LookupError:
            pass
    return None


def script_list(options):
    if "/FF" in options:
        with open(options["/FF"], encoding="utf-8", errors="replace") as f:
            text = f.read()
    else:
        text = options.get("/F", "")
    files = []
    for entry in text.split("|"):
        entry = entry.strip()
        if not entry:
            continue
        if any(c in entry for c in "*?"):
            folder, mask = os.path.split(entry)
            # "*.*" means every file, as users of the tool expect.
            if mask == "*.*":
                mask = "*"
            files.extend(sorted(p for p in glob.glob(os.path.join(glob.escape(folder), mask))
                                if os.path.isfile(p)))
        else:
            files.append(entry)
    return files


def split_statements(text):
    """Yields (first line, statement text) for each statement; ';' and GO lines end them."""
    statements = []
    current = []
    start_line = None
    line_no = 1
    i = 0
    n = len(text)
    in_quote = None

    def flush():
        nonlocal current, start_line
        body = "".join(current).strip()
        if body:
            statements.append((start_line, body))
        current = []
        start_line = None

    while i < n:
        c = text[i]
        if in_quote:
            current.append(c)
            if c == "\n":
                line_no += 1
            if c == in_quote:
                in_quote = None
            i += 1
            continue
        if c == "-" and text.startswith("--", i):
            end = text.find("\n", i)
            end = n if end < 0 else end
            i = end
            continue
        if c == "/" and text.startswith("/*", i):
            end = text.find("*/", i + 2)
            end = n if end < 0 else end + 2
            # Its line feeds stay, so that later lines of the statement keep their numbers.
            breaks = text.count("\n", i, end)
            line_no += breaks
            current.append("\n" * breaks)
            i = end
            continue
        if c in "'\"[":
            in_quote = "]" if c == "[" else c
        if c == "\n":
            line_no += 1
            # A line holding only GO ends a batch.
            rest_end = text.find("\n", i + 1)
            rest_end = n if rest_end < 0 else rest_end
            if text[i + 1:rest_end].strip().upper() == "GO":
                current.append(c)
                flush()
                i = rest_end
                continue
        if c == ";":
            flush()
            i += 1
            continue
        if start_line is None and not c.isspace():
            start_line = line_no
        current.append(c)
        i += 1
    flush()
    return statements


def convert_script(path, options, target_name, read, write, stop):
    try:
        with open(path, encoding=codec(options.get("/SRCENC")), errors="replace") as f:
            text = f.read()
    except OSError as e:
        line('Converting script ("%s") to %s' % (path, target_name))
        line("Cannot read %s: %s" % (path, e.strerror))
        return False, True
    line('Converting script ("%s") to %s' % (path, target_name))
    statements = split_statements(text)
    converted = []
    had_error = False
    for index, (first_line, statement) in enumerate(statements, 1):
        if stop.is_set():
            line("Conversion stopped on request.")
            return True, had_error
        try:
            converted.extend(sqlglot.transpile(statement, read=read or None, write=write or None))
        except sqlglot.errors.ParseError as e:
            had_error = True
            detail = e.errors[0] if e.errors else {}
            where = first_line + int(detail.get("line", 1) or 1) - 1
            token = detail.get("highlight") or statement.split()[0]
            line("line %d - unexpected token '%s'" % (where, token))
            converted.append("/* not converted:\n%s\n*/\n\n" % statement)
        except Exception as e:  # sqlglot raises a few other kinds on odd input
            had_error = True
            token = statement.split()[0] if statement.split() else "?"
            line("line %d - unexpected token '%s'" % (first_line, token))
            converted.append("/* not converted (%s):\n%s\n*/\n\n" % (type(e).__name__, statement))
        progress("Converted %d of %d statements" % (index, len(statements)))
    target = os.path.join(options["/DIR"], os.path.basename(path))
    # The same file may be reached through another spelling or a link.
    if os.path.abspath(target) == os.path.abspath(path) or (
            os.path.exists(target) and os.path.samefile(target, path)):
        line("Skipped %s: the output folder is the script's own folder." % path)
        return False, True
    try:
        with open(target, "w", encoding=codec(options.get("/TRGENC")), errors="replace") as f:
            f.write("".join(c if c.startswith("/*") else c + ";\n\n" for c in converted))
    except OSError as e:
        line("Cannot write %s: %s" % (target, e.strerror))
        return False, True
    line("Written %s" % target)
    return False, had_error


def main(argv):
    options = parse_arguments(argv)
    source = options.get("/SOURCE", "")
    target = options.get("/TARGET", "")
    read = DIALECTS.get(source.strip().lower())
    write = DIALECTS.get(target.strip().lower())
    if read is None or write is None:
        line("Conversion from '%s' to '%s' is not supported by this engine." % (source, target))
        return 2
    for switch in ("/SRCENC", "/TRGENC"):
        if codec(options.get(switch)) is None:
            line("The encoding '%s' (%s=) is not supported by this engine." % (options[switch], switch))
            return 2
    if not options.get("/DIR") or not os.path.isdir(options["/DIR"]):
        line("The output folder '%s' does not exist." % options.get("/DIR", ""))
        return 3
    try:
        files = script_list(options)
    except OSError as e:
        line("Cannot read the file list: %s" % e.strerror)
        return 3
    if not files:
        line("No scripts to convert.")
        return 1
    stop = StopEvent()
    failures = 0
    for path in files:
        stopped, had_error = convert_script(path, options, target, read, write, stop)
        if had_error:
            failures += 1
        if stopped:
            return 0
    line("%d script(s) converted, %d with errors." % (len(files), failures))
    return 0


if __name__ == "__main__":
    try:
        import sqlglot
        import sqlglot.errors
    except ImportError:
        line("The Python module sqlglot is missing (install python3-sqlglot).")
        sys.exit(4)
    sys.exit(main(sys.argv[1:]))
