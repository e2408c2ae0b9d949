"""A day's work in the real window, driven with xdotool under Xvfb as a user drives it:
convert a folder of scripts and load what the engine wrote into PostgreSQL, make and
remove a folder, edit a script with a byte-order mark and CRLF line ends, copy it over
its converted twin, and quit."""
import os
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "engine"))
import pgserver  # noqa: E402

APP = os.environ.get("NAVARCH_APP", "")
SAMPLES = os.environ.get("NAVARCH_SAMPLES", "")
TIMEOUT = 120  # seconds; generous, for sanitizer builds on a busy machine
CONF = ("Quillon Systems Ltd.", "Morvane 6.0", "Qt Tools", "Morvane Navarch.conf")

ORDER_LINES = ("\ufeff-- Order lines, saved by a Windows editor\r\n"
               "CREATE TABLE dbo.[Order Lines] (\r\n"
               "    OrderID INT NOT NULL REFERENCES dbo.Orders (OrderID),\r\n"
               "    [LineNo] INT NOT NULL,\r\n"
               "    Sku NVARCHAR(20) NOT NULL,\r\n"
               "    Qty DECIMAL(9, 2) NOT NULL DEFAULT 1,\r\n"
               "    CONSTRAINT PK_OrderLines PRIMARY KEY (OrderID, [LineNo])\r\n"
               ")\r\nGO\r\n").encode("utf-8")
PROCEDURE = b"""CREATE PROCEDURE dbo.ArchiveOrders @Before DATETIME
AS
BEGIN
    SET NOCOUNT ON;
    DELETE FROM dbo.Orders WHERE OrderDate < @Before;
END
GO
CREATE VIEW dbo.BigOrders AS
SELECT OrderID, CustomerID, Amount FROM dbo.Orders WHERE Amount > 1000
GO
"""


def wait_for(condition, what, timeout=TIMEOUT):
    end = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError("timed out waiting for " + what)
        time.sleep(0.1)


def tool_missing():
    for program in ("Xvfb", "openbox", "xdotool"):
        if not shutil.which(program):
            return program
    return None


class Workflow(unittest.TestCase):
    def setUp(self):
        if not os.access(APP, os.X_OK):
            self.skipTest("the application is not built (NAVARCH_APP=%r)" % APP)
        missing = tool_missing()
        if missing:
            self.skipTest(missing + " is not installed (scripts/setup.sh installs it)")
        self.dir = tempfile.TemporaryDirectory(prefix="navarch-workflow-")
        self.addCleanup(self.dir.cleanup)
        root = self.dir.name
        self.src = os.path.join(root, "src")
        self.out = os.path.join(root, "output")
        shutil.copytree(SAMPLES, self.src)
        with open(os.path.join(self.src, "-Order lines (v2).sql"), "wb") as f:
            f.write(ORDER_LINES)
        with open(os.path.join(self.src, "proc's archive.sql"), "wb") as f:
            f.write(PROCEDURE)
        os.mkdir(self.out)
        self.env = dict(os.environ, HOME=root, XDG_CONFIG_HOME=os.path.join(root, "config"),
                        XDG_RUNTIME_DIR=root)
        self.conf = os.path.join(root, "config", *CONF)
        os.makedirs(os.path.dirname(self.conf))
        with open(self.conf, "w") as f:
            f.write("[Main%%20Window]\nsize=@Size(1200 760)\npos=@Point(0 0)\n"
                    "source=Microsoft SQL Server\ntarget=PostgreSQL\n"
                    "leftPanel\\Path=%s\nrightPanel\\Path=%s\n" % (self.src, self.out))
        self.start_display()

    def start(self, args, output=subprocess.DEVNULL, **kwargs):
        process = subprocess.Popen(args, stdout=output, stderr=output, env=self.env, **kwargs)
        self.addCleanup(self.stop, process)
        return process

    @staticmethod
    def stop(process):
        if process.poll() is None:
            process.kill()
            process.wait()

    def start_display(self):
        read, write = os.pipe()
        self.start(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24",
                    "-nolisten", "tcp"], pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as f:
            self.env["DISPLAY"] = ":" + f.readline().strip()
        # A window manager, for focus to follow the active window as on a desktop.
        ready = os.path.join(self.dir.name, "wm-ready")
        self.start(["openbox", "--sm-disable", "--startup", "touch '%s'" % ready])
        wait_for(lambda: os.path.exists(ready), "the window manager")

    def xdo(self, *args):
        result = subprocess.run(["xdotool"] + list(args), env=self.env, capture_output=True,
                                text=True)
        return result.stdout.strip() if result.returncode == 0 else None

    def keys(self, *keys):
        self.xdo("key", "--delay", "60", *keys)

    def type(self, text):
        self.xdo("type", "--delay", "40", "--", text)

    def wait_window(self, title, other_than=None):
        """Waits until a window of this title (and not @p other_than) is active; its id."""
        def active():
            window = self.xdo("getactivewindow")
            if window and window != other_than and self.xdo("getwindowname", window) == title:
                return window
            return None
        return wait_for(active, "the window %r" % title)

    def engine_running(self):
        """Whether the application has a child process (the engine) right now."""
        tasks = "/proc/%d/task" % self.app.pid
        return any(self.read(tasks, t, "children").strip() for t in os.listdir(tasks))

    def read(self, *parts):
        with open(os.path.join(*parts), "rb") as f:
            return f.read()

    def test_day_of_work(self):
        scripts = sorted(n for n in os.listdir(self.src) if n.endswith(".sql"))
        log = open(os.path.join(self.dir.name, "application.log"), "wb")
        self.addCleanup(log.close)
        self.app = self.start([APP], output=log)
        try:
            self.work(scripts)
        except AssertionError as e:
            # The application's own words (a sanitizer's report among them) go with the failure.
            with open(log.name, errors="replace") as f:
                said = f.read()[-20000:]
            ended = "" if self.app.poll() is None else " (it ended with %d)" % self.app.returncode
            raise AssertionError("%s\n--- the application said%s ---\n%s" % (e, ended, said)) from None

    def work(self, scripts):
        self.wait_window("Morvane Navarch")

        # Convert every script of the left panel: the keys go to its list from the start.
        self.keys("ctrl+a", "F5")
        wait_for(lambda: sorted(os.listdir(self.out)) == scripts, "the converted scripts")
        wait_for(lambda: not self.engine_running(), "the end of the run")
        self.load_into_postgresql()

        # A new folder; its removal asks first, and Return keeps it.
        self.keys("F7")
        self.wait_window("Make Directory")
        self.type("archive 1")
        self.keys("Return")
        folder = os.path.join(self.src, "archive 1")
        wait_for(lambda: os.path.isdir(folder), "the new folder")
        self.wait_window("Morvane Navarch")
        self.keys("F8")
        self.wait_window("Removing object(s)")
        self.keys("Return")
        self.wait_window("Morvane Navarch")
        self.assertTrue(os.path.isdir(folder))
        self.keys("F8")
        self.wait_window("Removing object(s)")
        self.keys("alt+y")
        wait_for(lambda: not os.path.exists(folder), "the folder to go")
        self.wait_window("Morvane Navarch")

        # Edit the script a Windows editor saved: its mark and line ends stay as they were.
        source = os.path.join(self.src, "-Order lines (v2).sql")
        self.keys("Home", "Down", "F4", "ctrl+Home")
        self.type("-- reviewed")
        self.keys("Return", "ctrl+s")
        expected = ORDER_LINES.replace(b"\xef\xbb\xbf", b"\xef\xbb\xbf-- reviewed\r\n", 1)
        wait_for(lambda: self.read(source) == expected, "the edit on disk")

        # Back in the list, F6 copies it over its converted twin after asking.
        self.keys("Escape", "F6")
        target = self.wait_window("Copy")
        self.keys("Return")
        question = self.wait_window("Copy", other_than=target)
        self.keys("alt+o")
        wait_for(lambda: self.read(self.out, os.path.basename(source)) == expected,
                 "the copy over the converted script")
        self.wait_window("Copy", other_than=question)  # the outcome
        self.keys("Return")
        self.wait_window("Morvane Navarch")

        # Quit: the session's folders are kept for the next start.
        self.keys("ctrl+q")
        self.assertEqual(self.app.wait(TIMEOUT), 0)
        with open(self.conf, encoding="utf-8") as f:
            settings = f.read()
        self.assertIn("leftPanel\\Path=%s\n" % self.src, settings)
        self.assertIn("rightPanel\\Path=%s\n" % self.out, settings)


    def load_into_postgresql(self):
        """Every script the engine wrote loads into PostgreSQL, tables before their users."""
        if not pgserver.available():
            return
        server = pgserver.PgServer().start()
        self.addCleanup(server.stop)
        server.create_database("workflow")
        order = ["customers.sql", "orders.sql", "-Order lines (v2).sql"]
        rest = sorted(set(os.listdir(self.out)) - set(order))
        for name in order + rest:
            code, output = server.psql("workflow", path=os.path.join(self.out, name),
                                       stop_on_error=True)
            self.assertEqual(code, 0, "%s does not load:\n%s" % (name, output))
        tables = {row[0] for row in server.query(
            "workflow", "SELECT table_name FROM information_schema.tables "
                        "WHERE table_schema = 'public'")}
        self.assertLessEqual({"customers", "orders", "order lines", "bigorders"}, tables)
        foreign = server.query("workflow", "SELECT count(*) FROM information_schema."
                                           "table_constraints WHERE constraint_type = 'FOREIGN KEY'")
        self.assertEqual(foreign, [("1",)])


if __name__ == "__main__":
    unittest.main()
