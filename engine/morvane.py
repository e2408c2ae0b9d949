#!/usr/bin/python3
"""Morvane conversion engine: converts SQL scripts between database dialects.

Usage: morvane /F="a.sql| b.sql" /DIR="out" /SOURCE=<platform> /TARGET=<platform> [switches]
       morvane /FF="list" /DIR="out" /SOURCE=<platform> /TARGET=<platform> [switches]
       morvane --list-directions
       morvane --help

Scripts
  /F="<path>| <path>"   absolute paths joined by "| ". For names without "|", "*", "?",
                        line breaks or leading or trailing blanks.
  /FF="<list file>"     a file naming the scripts, for any name:
                          - one absolute path per line (LF or CRLF), the raw bytes of the
                            name (UTF-8 for names that are valid UTF-8); empty lines are skipped;
                          - or, when the file holds a NUL byte anywhere, one absolute path
                            after another, each ended by a NUL byte, taken byte for byte
                            (line breaks and blanks are part of the name). Use this form when
                            a name holds a line break.
                        A list holding a single line with "| " between absolute paths is
                        read as the older joined form.
  Each entry names one file. An entry whose last part holds "*" or "?", whose folder exists
  and which does not itself name an existing file is a folder mask ("/dir/*.sql", "/dir/*.*"):
  it stands for the matching files of that folder. Relative paths are refused.

Output
  /DIR="<folder>"       output folder. Each script is written under its path relative to the
                        deepest folder common to all scripts; a file written earlier in the same
                        run, or the script itself, is never overwritten.

Platforms
  /SOURCE= /TARGET=     display names or keys ("Microsoft SQL Server", "MSSQL", "Oracle",
                        "MySQL", "PostgreSQL", ...). Unsupported directions are refused before
                        any script is read (exit code 2); --list-directions prints the
                        supported ones, one "<source><TAB><target>" per line.

Other switches
  /SRCENC=<codec> /TRGENC=<codec>   encodings of the scripts and of the output ("System" is
                        the locale's). A UTF-8 byte-order mark is always removed.
  /P-                   the password is the first line of standard input (the engine reads
                        standard input only in this case). /P<password> is also accepted.
  /Source_DB= /Source_API= /Target_DB= /Target_API= /U /TBLDDL= /PRJF= /INI=  accepted.

Messages
  'Converting script ("<path>") to <target>' before each script, a progress line starting
  with a carriage return and "C" (at most five a second), "line N - unexpected token '<t>': ..."
  for a statement that cannot be read, "line N - not converted: ..." for one kept as a comment
  or failed for another reason, "line N - note: ..." for a change the user should know about,
  and a summary of the objects converted, kept as comments and failed for each script.

Stop
  The POSIX semaphore named by MORVANE_STOP_EVENT (else /MorvaneStopEvent) is polled between
  statements; when it is posted the engine stops cleanly and exits with 0.

Exit codes: 0 done (errors are reported in the output), 1 nothing to convert, 2 unsupported
direction or encoding, 3 bad file list or output folder, 4 the SQL library is missing.
"""
import codecs
import ctypes
import ctypes.util
import glob
import locale
import os
import shlex
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.realpath(__file__)))

# Platform names as the application shows them (and their keys), and the dialect read or written.
PLATFORMS = [
    ("Microsoft SQL Server", ("mssql", "microsoft sql server"), "tsql"),
    ("Oracle", ("oracle",), "oracle"),
    ("MySQL", ("mysql",), "mysql"),
    ("PostgreSQL", ("postgresql",), "postgres"),
    ("Greenplum", ("greenplum",), "postgres"),
    ("vPostgres", ("vpostgres",), "postgres"),
    ("EnterpriseDB Postgres Plus Advanced Server",
     ("enterprisedbppas", "enterprisedb postgres plus advanced server"), "postgres"),
    ("EnterpriseDB Postgres Plus Standart Server",
     ("enterprisedbppss", "enterprisedb postgres plus standart server"), "postgres"),
    ("Teradata", ("teradata",), "teradata"),
    ("ANSI SQL", ("ansi", "ansi sql"), ""),
]
DIALECTS = {key: dialect for _, keys, dialect in PLATFORMS for key in keys}
PROGRESS_INTERVAL = 0.2  # seconds: about five progress lines a second at most

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


class Progress:
    """A progress line starting with "\\r" and "C", written at most every PROGRESS_INTERVAL."""

    def __init__(self):
        self.last = 0.0

    def show(self, text, force=False):
        global _progress_open
        now = time.monotonic()
        if not force and now - self.last < PROGRESS_INTERVAL:
            return
        self.last = now
        # The application drops its last line when a chunk holds "\rC": the line feed
        # written first is what it drops, so the previous progress line is replaced.
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


def dialect_of(platform):
    return DIALECTS.get(platform.strip().lower())


def list_directions():
    names = [name for name, _, _ in PLATFORMS]
    for source in names:
        for target in names:
            out("%s\t%s\n" % (source, target))


class ListError(Exception):
    pass


def list_entries(options):
    """The entries of /FF or /F as they were given (paths as str, undecodable bytes escaped)."""
    if "/FF" in options:
        with open(options["/FF"], "rb") as f:
            data = f.read()
        if b"\0" in data:
            raw = [entry for entry in data.split(b"\0") if entry]
        else:
            raw = [entry.rstrip(b"\r") for entry in data.split(b"\n")]
            raw = [entry for entry in raw if entry]
            if len(raw) == 1 and b"| /" in raw[0] and not os.path.exists(raw[0]):
                raw = [entry.strip() for entry in raw[0].split(b"|") if entry.strip()]
        if raw[:1] and raw[0].startswith(b"\xef\xbb\xbf"):
            raw[0] = raw[0][3:]
        return [os.fsdecode(entry) for entry in raw]
    text = options.get("/F", "")
    return [entry.strip() for entry in text.split("|") if entry.strip()]


def script_list(options):
    """The scripts to convert, each once, in the order given; folder masks expanded."""
    files = []
    for entry in list_entries(options):
        if not os.path.isabs(entry):
            raise ListError("The script path '%s' is not absolute; the engine takes absolute paths "
                            "only." % display(entry))
        folder, mask = os.path.split(entry)
        if any(c in mask for c in "*?") and os.path.isdir(folder) and not os.path.lexists(entry):
            # "*.*" means every file, as users of the tool expect.
            if mask == "*.*":
                mask = "*"
            files.extend(sorted(p for p in glob.glob(os.path.join(glob.escape(folder), mask))
                                if os.path.isfile(p)))
        else:
            files.append(entry)
    seen = set()
    unique = []
    for path in files:
        key = os.path.normpath(path)
        if key not in seen:
            seen.add(key)
            unique.append(path)
    return unique


def display(path):
    """A path fit for the log: undecodable bytes shown as U+FFFD."""
    return path.encode("utf-8", "surrogateescape").decode("utf-8", "replace")


def common_folder(paths):
    folders = [os.path.dirname(os.path.normpath(p)) for p in paths]
    return os.path.commonpath(folders) if folders else ""


def read_script(path, encoding):
    with open(path, "rb") as f:
        data = f.read()
    if data.startswith(codecs.BOM_UTF8):
        data, encoding = data[3:], "utf-8"
    elif data.startswith((codecs.BOM_UTF16_LE, codecs.BOM_UTF16_BE)):
        encoding = "utf-16"
    text = data.decode(encoding, errors="replace")
    # Line breaks are read as LF (line numbers stay); the output keeps the script's own.
    newline = "\r\n" if "\r\n" in text[:65536] else "\n"
    return text.replace("\r\n", "\n"), newline


class Run:
    def __init__(self, options, read, write, target_name):
        self.options = options
        self.read = read
        self.write = write
        self.target_name = target_name
        self.stop = StopEvent()
        self.progress = Progress()
        self.written = set()
        self.failures = 0

    def convert_all(self, files):
        base = common_folder(files)
        for path in files:
            if self.convert_script(path, os.path.relpath(os.path.normpath(path), base)):
                return True
        return False

    def convert_script(self, path, relative):
        """Converts one script; True when a stop was asked for."""
        from morvane_sql.convert import ScriptConverter

        line('Converting script ("%s") to %s' % (display(path), self.target_name))
        target = os.path.join(self.options["/DIR"], relative)
        if os.path.normpath(os.path.abspath(target)) in self.written:
            line("Skipped %s: its output %s was written earlier in this run."
                 % (display(path), display(target)))
            self.failures += 1
            return False
        try:
            text, newline = read_script(path, codec(self.options.get("/SRCENC")))
        except OSError as e:
            line("Cannot read %s: %s" % (display(path), e.strerror))
            self.failures += 1
            return False
        converter = ScriptConverter(self.read, self.write, line)
        units = converter.units(text)
        pieces = []
        for index, unit in enumerate(units, 1):
            if self.stop.is_set():
                line("Conversion stopped on request.")
                return True
            pieces.append(converter.convert(unit))
            self.progress.show("Converted %d of %d statements" % (index, len(units)),
                               force=index == len(units))
        tally = converter.tally
        line("Summary for %s: %s." % (display(relative), tally.summary()))
        if tally.total("failed"):
            self.failures += 1
        self.save(path, target, "".join(pieces).replace("\n", newline))
        return False

    def save(self, path, target, text):
        # The same file may be reached through another spelling or a link.
        if os.path.abspath(target) == os.path.abspath(path) or (
                os.path.exists(target) and os.path.samefile(target, path)):
            line("Skipped %s: the output would replace the script itself." % display(path))
            self.failures += 1
            return
        try:
            os.makedirs(os.path.dirname(target), exist_ok=True)
            with open(target, "w", encoding=codec(self.options.get("/TRGENC")), errors="replace",
                      newline="") as f:
                f.write(text)
        except OSError as e:
            line("Cannot write %s: %s" % (display(target), e.strerror))
            self.failures += 1
            return
        self.written.add(os.path.normpath(os.path.abspath(target)))
        line("Written %s" % display(target))


def main(argv):
    if not argv or argv[:1] in (["--help"], ["-h"], ["/?"]):
        out(__doc__)
        return 0
    if argv[:1] == ["--list-directions"]:
        list_directions()
        return 0
    options = parse_arguments(argv)
    if options.get("/P") == "-":
        # The password comes first on standard input; the engine needs no database.
        sys.stdin.buffer.readline()
    source = options.get("/SOURCE", "")
    target = options.get("/TARGET", "")
    read = dialect_of(source)
    write = dialect_of(target)
    if read is None or write is None:
        line("Conversion from '%s' to '%s' is not supported by this engine; "
             "'morvane --list-directions' lists the directions it supports." % (source, target))
        return 2
    for switch in ("/SRCENC", "/TRGENC"):
        if codec(options.get(switch)) is None:
            line("The encoding '%s' (%s=) is not supported by this engine." % (options[switch], switch))
            return 2
    if not options.get("/DIR") or not os.path.isdir(options["/DIR"]):
        line("The output folder '%s' does not exist." % display(options.get("/DIR", "")))
        return 3
    try:
        files = script_list(options)
    except OSError as e:
        line("Cannot read the file list: %s" % e.strerror)
        return 3
    except ListError as e:
        line(str(e))
        return 3
    if not files:
        line("No scripts to convert.")
        return 1
    try:
        import sqlglot  # noqa: F401  (checked here so that the message is plain)
    except ImportError:
        line("The Python module sqlglot is missing (install python3-sqlglot).")
        return 4
    run = Run(options, read, write, target)
    if run.convert_all(files):
        return 0
    line("%d script(s) converted, %d with errors." % (len(files), run.failures))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
