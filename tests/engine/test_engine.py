"""Runs the default engine as a child process on realistic scripts and loads what it
writes into a throw-away PostgreSQL server."""
import ctypes
import ctypes.util
import os
import re
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pgserver  # noqa: E402

ENGINE = os.environ.get("MORVANE_ENGINE", "")
SCHEMAS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "schemas")
SERVER = None


def setUpModule():
    global SERVER
    if not os.access(ENGINE, os.X_OK):
        raise unittest.SkipTest("the engine is not built (MORVANE_ENGINE=%r)" % ENGINE)
    if pgserver.available():
        SERVER = pgserver.PgServer().start()


def tearDownModule():
    if SERVER is not None:
        SERVER.stop()


# A stop event of this test run's own: the default name is shared with every other run.
PRIVATE_ENVIRONMENT = dict(os.environ, MORVANE_STOP_EVENT="/MorvaneStopEvent-enginetest-%d" % os.getpid())


def run_engine(*args, stdin=b"", env=None, timeout=300):
    """(exit code, output with progress lines removed, progress line count)."""
    env = env or PRIVATE_ENVIRONMENT
    result = subprocess.run([ENGINE] + list(args), input=stdin, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, timeout=timeout, env=env)
    text = result.stdout.decode("utf-8", "replace")
    progress = text.count("\rC")
    lines = [l for l in text.split("\n") if l and not l.startswith("\rC")]
    return result.returncode, "\n".join(lines), progress


class EngineTest(unittest.TestCase):
    database_count = 0

    def setUp(self):
        self.dir = tempfile.TemporaryDirectory(prefix="morvane-test-")
        self.root = self.dir.name
        self.out = self.path("out")
        os.mkdir(self.out)

    def tearDown(self):
        self.dir.cleanup()

    def path(self, *parts):
        return os.path.join(self.root, *parts)

    def write(self, name, data):
        path = self.path(name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as f:
            f.write(data if isinstance(data, bytes) else data.encode())
        return path

    def convert(self, files, source, extra=(), target="PostgreSQL", env=None):
        """Converts a list of files, or those named in a list file given by its path."""
        named = '/FF="%s"' % files if isinstance(files, str) else '/F="%s"' % "| ".join(files)
        return run_engine(named, '/DIR="%s"' % self.out, "/SOURCE=" + source, "/TARGET=" + target,
                          *extra, env=env)

    def clear_out(self):
        for folder, _, names in os.walk(self.out):
            for name in names:
                os.remove(os.path.join(folder, name))

    def written(self):
        found = []
        for folder, _, names in os.walk(self.out):
            found += [os.path.relpath(os.path.join(folder, n), self.out) for n in names]
        return sorted(found)

    def load(self, path):
        """Loads a converted script into a new database, stopping at the first error."""
        if SERVER is None:
            self.skipTest("PostgreSQL is not installed")
        EngineTest.database_count += 1
        database = "t%d" % EngineTest.database_count
        SERVER.create_database(database)
        code, output = SERVER.psql(database, path=path, stop_on_error=True)
        self.assertEqual(code, 0, output)
        return database


class SchemasTest(EngineTest):
    """The same harbour schema written for three servers loads whole into PostgreSQL."""

    CASES = [
        ("harbour_tsql.sql", "Microsoft SQL Server",
         [(239, "procedure dbo.usp_CloseVoyage"), (261, "procedure dbo.usp_RecordPayment"),
          (275, "function dbo.fn_InvoiceBalance"), (288, "trigger dbo.trg_Payments_Audit")]),
        ("harbour_mysql.sql", "MySQL",
         [(218, "procedure close_voyage"), (230, "procedure record_payment"),
          (243, "trigger trg_payments_audit")]),
        ("harbour_oracle.sql", "Oracle",
         [(235, "procedure close_voyage"), (253, "function invoice_balance"),
          (267, "trigger payments_audit")]),
    ]
    INDEXES = {"ux_ports_unlocode", "ix_berths_port", "ux_vessels_imo", "ix_vessels_owner",
               "ix_voyages_vessel_departed", "ix_invoices_owner_due"}

    def test_schema_loads(self):
        for name, source, procedural in self.CASES:
            with self.subTest(source=source):
                script = os.path.join(SCHEMAS, name)
                code, log, _ = self.convert([script], source)
                self.assertEqual(code, 0, log)
                self.assertNotIn("unexpected token", log)
                db = self.load(os.path.join(self.out, name))
                count = lambda sql: int(SERVER.query(db, sql)[0][0])  # noqa: E731
                self.assertEqual(count("SELECT count(*) FROM information_schema.tables WHERE "
                                       "table_schema='public' AND table_type='BASE TABLE'"), 16)
                self.assertEqual(count("SELECT count(*) FROM information_schema.views WHERE "
                                       "table_schema='public'"), 5)
                self.assertEqual(count("SELECT count(*) FROM pg_constraint WHERE contype='p' AND "
                                       "connamespace='public'::regnamespace"), 16)
                with open(script, encoding="utf-8") as f:
                    references = f.read().upper().count("REFERENCES")
                self.assertEqual(count("SELECT count(*) FROM pg_constraint WHERE contype='f' AND "
                                       "connamespace='public'::regnamespace"),
                                 references)
                indexes = {row[0] for row in SERVER.query(db, "SELECT indexname FROM pg_indexes")}
                self.assertLessEqual(self.INDEXES, indexes)
                # Keys fill themselves (identity or sequence default), NOT NULL columns take
                # their defaults (T-SQL's comes from ALTER TABLE ... ADD DEFAULT ... FOR).
                for sql in ("INSERT INTO owners (name, country) VALUES ('Ostra', 'NO')",
                            "INSERT INTO regions (name) VALUES ('Arctic')"):
                    code, output = SERVER.psql(db, sql, stop_on_error=True)
                    self.assertEqual(code, 0, output)
                self.assertEqual(count("SELECT count(*) FROM regions"), 4 if source != "Oracle"
                                 else 3)
                self.assertIn("Summary for %s: " % name, log)
                self.assertRegex(log, r"16 tables[, ]")
                self.assertRegex(log, r"5 views[, ]")
                for line, what in procedural:
                    self.assertIn("line %d - not converted: %s:" % (line, what), log)
                if source == "MySQL":
                    self.check_mysql_rules(db)

    def check_mysql_rules(self, db):
        """MySQL's ENUM and SET columns keep their values out of PostgreSQL's."""
        for sql, accepted in [
            ("INSERT INTO owners (name, country, segment) VALUES ('A', 'NO', 'large')", True),
            ("INSERT INTO owners (name, country, segment) VALUES ('B', 'NO', 'huge')", False),
            ("INSERT INTO vessel_types (description) VALUES ('Reefer')", True),
            ("INSERT INTO vessels (imo_number, name, vessel_type_id, owner_id, flags) "
             "VALUES ('9000001', 'Skarv', 1, 1, 'ice,reefer')", True),
            ("INSERT INTO vessels (imo_number, name, vessel_type_id, owner_id, flags) "
             "VALUES ('9000002', 'Terne', 1, 1, 'ice,sails')", False),
        ]:
            code, output = SERVER.psql(db, sql, stop_on_error=True)
            self.assertEqual(code == 0, accepted, sql + "\n" + output)


class ScriptFormsTest(EngineTest):
    """Batches, delimiters, byte-order marks, line ends and comments in awkward places."""

    CASES = [
        # name, source platform, script bytes, summary, messages expected in the log
        ("T-SQL batches with BOM and CRLF", "MSSQL",
         b"\xef\xbb\xbf/* setup */\r\nCREATE TABLE [Odd Name] ([Key] INT IDENTITY(1,1) PRIMARY KEY,"
         b" [Value] NVARCHAR(20) NULL) -- trailing\r\nGO\r\n"
         b"INSERT INTO [Odd Name] ([Value]) VALUES (N'one')\r\nGO 2\r\n"
         b"SELECT [Key]/*c*/FROM [Odd Name] WHERE [Value] = 'one'\r\nGO\r\n"
         b"CREATE PROCEDURE dbo.p AS\r\nBEGIN\r\n  IF 1 = 1\r\n  BEGIN\r\n    SELECT 1;\r\n"
         b"    RETURN;\r\n  END;\r\n  COMMIT TRANSACTION;\r\nEND\r\nGO\r\n",
         "2 statements, 1 table converted; 1 procedure kept as comments",
         ["line 8 - not converted: procedure dbo.p:"]),
        ("SQL*Plus slash lines and commands", "Oracle",
         b"SET ECHO OFF\nPROMPT tables\nCREATE TABLE t1 (id NUMBER(9) NOT NULL, note VARCHAR2(10))\n/\n"
         b"INSERT INTO t1 VALUES (1, 'a')\n/\nDECLARE\n  n NUMBER;\nBEGIN\n  n := 1;\n"
         b"  COMMIT;\nEND;\n/\nCREATE OR REPLACE PACKAGE BODY pk AS\n  PROCEDURE a IS BEGIN NULL; END;\n"
         b"END pk;\n/\nSELECT id FROM t1;\n",
         "2 statements, 1 table converted; 1 block, 1 package body kept as comments",
         ["line 7 - not converted: block:", "line 14 - not converted: package body pk:"]),
        ("MySQL DELIMITER blocks", "MySQL",
         b"# settings\nSET NAMES utf8mb4;\nCREATE TABLE `a b` (`id` int NOT NULL AUTO_INCREMENT, "
         b"PRIMARY KEY (`id`)) ENGINE=InnoDB AUTO_INCREMENT=5;\nDELIMITER //\n"
         b"CREATE PROCEDURE p()\nbody: BEGIN\n  IF 1 THEN\n    LEAVE body;\n  END IF;\n"
         b"  COMMIT;\nEND //\nDELIMITER ;\nINSERT INTO `a b` () VALUES ();\n",
         "2 statements, 1 table converted; 1 procedure kept as comments",
         ["line 5 - not converted: procedure p:"]),
        ("MySQL routine without DELIMITER", "MySQL",
         b"CREATE FUNCTION f(a INT) RETURNS INT DETERMINISTIC\nBEGIN\n  DECLARE b INT;\n"
         b"  CASE WHEN a > 1 THEN SET b = 1; ELSE SET b = 0; END CASE;\n  RETURN b;\nEND;\n"
         b"SELECT 1 + 1 AS two;\n",
         "1 statement converted; 1 function kept as comments", ["line 1 - not converted: function f:"]),
    ]

    def test_forms(self):
        for name, source, data, summary, messages in self.CASES:
            with self.subTest(name):
                self.clear_out()
                script = self.write("s.sql", data)
                code, log, _ = self.convert([script], source)
                self.assertEqual(code, 0, log)
                self.assertIn("Summary for s.sql: %s." % summary, log)
                for message in messages:
                    self.assertIn(message, log)
                self.assertNotIn("unexpected token", log)
                with open(os.path.join(self.out, "s.sql"), "rb") as f:
                    output = f.read()
                self.assertNotIn(b"\xef\xbb\xbf", output)
                self.assertEqual(b"\r\n" in output, b"\r\n" in data)
                self.load(os.path.join(self.out, "s.sql"))

    def test_comments_stay_in_place(self):
        script = self.write("c.sql", "CREATE TABLE t (\n  a INT, -- the key\n  /* why */ b INT\n)\nGO\n"
                                     "SELECT a/*c*/FROM t -- end\nGO\n")
        self.convert([script], "MSSQL")
        with open(os.path.join(self.out, "c.sql")) as f:
            output = f.read()
        self.assertRegex(output, r"a integer /\* the key \*/,")
        self.assertRegex(output, r"b integer /\* why \*/")
        self.assertRegex(output, r"SELECT\s+a /\* c \*/\s+FROM t /\* end \*/;")
        self.load(os.path.join(self.out, "c.sql"))

    def test_errors_name_the_real_token_and_line(self):
        cases = [
            ("after a BOM and a block comment", b"\xef\xbb\xbf/* a\n b */\nSELECT 1;\n\nSELECT a\nFROM t\n"
             b"WHERE a > = 1;\n", "MySQL", "line 7 - unexpected token '='"),
            ("a missing close at the end", b"SELECT (a\nFROM t;\n", "MySQL", "line 2 - unexpected token"),
            ("an unknown column type", b"CREATE TABLE t (\n  a INT,\n  b GEOGRAPHY\n)\nGO\n", "MSSQL",
             "line 3 - unexpected token 'GEOGRAPHY': the data type GEOGRAPHY"),
        ]
        for name, data, source, message in cases:
            with self.subTest(name):
                code, log, _ = self.convert([self.write("e.sql", data)], source)
                self.assertEqual(code, 0)
                self.assertIn(message, log)
                self.assertNotIn("token ''", log)


class FileListTest(EngineTest):
    """The engine converts exactly the files it is given, whatever their names."""

    NAMES = ["b| c.sql", "star*.sql", " blank .sql", "line\nbreak.sql", "dup1/x.sql", "dup2/x.sql",
             "caf\xe9 \xe4.sql"]

    def setUp(self):
        super().setUp()
        for name in self.NAMES + ["b", "c.sql", "starfish.sql", "other/y.sql"]:
            self.write(os.path.join("in", name), "SELECT 1;\n")
        self.files = [self.path("in", n) for n in self.NAMES]

    def test_lists(self):
        nul_list = b"".join(os.fsencode(p) + b"\0" for p in self.files)
        line_list = b"".join(os.fsencode(p) + b"\r\n" for p in self.files if "\n" not in p)
        mask = self.path("in", "other", "*.*")
        cases = [
            ("NUL-separated list", nul_list, self.NAMES),
            ("one path a line", line_list, [n for n in self.NAMES if "\n" not in n]),
            ("folder mask", os.fsencode(mask) + b"\n", ["y.sql"]),
        ]
        for name, data, expected in cases:
            with self.subTest(name):
                self.clear_out()
                code, log, _ = self.convert(self.write("list.txt", data), "MSSQL")
                self.assertEqual(code, 0, log)
                self.assertEqual(self.written(), sorted(expected), log)

    def test_relative_paths_are_refused(self):
        code, log, _ = self.convert(self.write("list.txt", "in/c.sql\n"), "MSSQL")
        self.assertEqual(code, 3)
        self.assertIn("'in/c.sql' is not absolute", log)
        self.assertEqual(self.written(), [])

    def test_encodings(self):
        script = self.write("latin.sql", "SELECT 'caf\xe9' AS x;\n".encode("cp1252"))
        code, log, _ = self.convert([script], "MSSQL", [" /SRCENC=windows-1252 /TRGENC=UTF-8"])
        self.assertEqual(code, 0, log)
        with open(os.path.join(self.out, "latin.sql"), encoding="utf-8") as f:
            self.assertIn("'caf\xe9'", f.read())


class CommandLineTest(EngineTest):
    def test_directions(self):
        code, listed, _ = run_engine("--list-directions")
        self.assertEqual(code, 0)
        for pair in ("Microsoft SQL Server\tPostgreSQL", "Oracle\tPostgreSQL", "MySQL\tPostgreSQL"):
            self.assertIn(pair, listed.splitlines())
        # Refused before the list is read: the missing list file is not what it says.
        code, log, _ = self.convert(self.path("missing.txt"), "IBM DB2")
        self.assertEqual(code, 2)
        self.assertIn("Conversion from 'IBM DB2' to 'PostgreSQL' is not supported", log)

    def test_password_on_standard_input_only_when_asked(self):
        script = self.write("p.sql", "SELECT 1;\n")
        code, log, _ = self.convert([script], "MSSQL", [" /Uadmin /P- /SRCENC=System"])
        self.assertEqual(code, 0, log)
        # Without /P- the engine must not wait for standard input, which stays open here.
        process = subprocess.Popen([ENGINE, '/F="%s"' % script, '/DIR="%s"' % self.out, "/SOURCE=MSSQL",
                                    "/TARGET=PostgreSQL"], stdin=subprocess.PIPE,
                                   stdout=subprocess.DEVNULL)
        try:
            self.assertEqual(process.wait(timeout=120), 0)
        finally:
            process.stdin.close()
            if process.poll() is None:
                process.kill()
                process.wait()

    def test_stop_event_and_progress(self):
        statements = "".join("INSERT INTO t (a, b) VALUES (%d, 'row %d');\n" % (i, i)
                             for i in range(6000))
        script = self.write("big.sql", statements)
        started = time.monotonic()
        code, log, progress = self.convert([script], "MySQL")
        elapsed = time.monotonic() - started
        self.assertEqual(code, 0, log)
        self.assertIn("Summary for big.sql: 6000 statements converted.", log)
        self.assertLessEqual(progress, elapsed * 5 + 2)

        libc = ctypes.CDLL(ctypes.util.find_library("c"), use_errno=True)
        libc.sem_open.restype = ctypes.c_void_p
        libc.sem_open.argtypes = [ctypes.c_char_p, ctypes.c_int, ctypes.c_uint, ctypes.c_uint]
        libc.sem_post.argtypes = [ctypes.c_void_p]
        name = "/MorvaneStopEvent-enginetest-stop-%d" % os.getpid()
        sem = libc.sem_open(name.encode(), os.O_CREAT, 0o600, 0)
        try:
            libc.sem_post(sem)
            os.remove(os.path.join(self.out, "big.sql"))
            code, log, _ = self.convert([script], "MySQL", env=dict(os.environ, MORVANE_STOP_EVENT=name))
            self.assertEqual(code, 0)
            self.assertIn("Conversion stopped on request.", log)
            self.assertEqual(self.written(), [])
        finally:
            libc.sem_unlink(name.encode())


if __name__ == "__main__":
    unittest.main()
