"""A throw-away PostgreSQL server for the engine tests and benchmark.

initdb and pg_ctl into a temporary folder, listening on a Unix socket in that
folder only (no TCP). PostgreSQL refuses to run as root, so when the tests run
as root the server runs as an unprivileged account that owns the folder.
"""
import glob
import os
import pwd
import shutil
import subprocess
import tempfile


def _server_bin():
    """The folder of Debian's server programs (initdb and pg_ctl live there)."""
    found = sorted(glob.glob("/usr/lib/postgresql/*/bin/pg_ctl"))
    if found:
        return os.path.dirname(found[-1])
    pg_ctl = shutil.which("pg_ctl")
    return os.path.dirname(pg_ctl) if pg_ctl else None


def available():
    return _server_bin() is not None and shutil.which("psql") is not None


class PgServer:
    def __init__(self):
        self.bin = _server_bin()
        self.root = tempfile.mkdtemp(prefix="morvane-pg-")
        self.data = os.path.join(self.root, "data")
        self.socket_dir = self.root
        self.user = None
        self.prefix = []
        if os.geteuid() == 0:
            for name in ("postgres", "nobody"):
                try:
                    account = pwd.getpwnam(name)
                    break
                except KeyError:
                    continue
            else:
                raise RuntimeError("no unprivileged account to run PostgreSQL as")
            os.chown(self.root, account.pw_uid, account.pw_gid)
            self.prefix = ["setpriv", "--reuid=%d" % account.pw_uid, "--regid=%d" % account.pw_gid,
                           "--clear-groups", "--"]
            self.user = account.pw_name
        else:
            self.user = pwd.getpwuid(os.geteuid()).pw_name

    def _run(self, args):
        env = dict(os.environ, LC_ALL="C.UTF-8", LANG="C.UTF-8")
        env.pop("PGDATA", None)
        result = subprocess.run(self.prefix + args, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                                env=env, cwd=self.root, timeout=120)
        if result.returncode != 0:
            raise RuntimeError("%s failed:\n%s" % (args[0], result.stdout.decode(errors="replace")))

    def start(self):
        self._run([os.path.join(self.bin, "initdb"), "-D", self.data, "--auth=trust", "-E", "UTF8",
                   "--no-sync", "-U", self.user])
        # listen_addresses empty: no TCP at all; the socket lives in our own folder.
        options = "-c listen_addresses='' -k %s -c fsync=off -c full_page_writes=off" % self.socket_dir
        self._run([os.path.join(self.bin, "pg_ctl"), "-D", self.data, "-o", options, "-w", "-s",
                   "-l", os.path.join(self.root, "server.log"), "start"])
        return self

    def stop(self):
        try:
            if os.path.exists(os.path.join(self.data, "postmaster.pid")):
                self._run([os.path.join(self.bin, "pg_ctl"), "-D", self.data, "-m", "immediate",
                           "-w", "-s", "stop"])
        finally:
            shutil.rmtree(self.root, ignore_errors=True)

    def psql(self, database, sql=None, path=None, stop_on_error=False):
        """Runs SQL text or a file through psql; returns (exit code, output)."""
        args = ["psql", "-X", "-q", "-h", self.socket_dir, "-U", self.user, "-d", database,
                "-v", "ON_ERROR_STOP=%d" % int(stop_on_error)]
        args += ["-f", path] if path else ["-c", sql]
        result = subprocess.run(args, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120)
        return result.returncode, result.stdout.decode(errors="replace")

    def create_database(self, name):
        code, output = self.psql("postgres", 'CREATE DATABASE "%s"' % name)
        if code != 0:
            raise RuntimeError(output)

    def query(self, database, sql):
        """The rows of a query as a list of tuples of strings."""
        args = ["psql", "-X", "-A", "-t", "-F", "\t", "-h", self.socket_dir, "-U", self.user,
                "-d", database, "-c", sql]
        out = subprocess.run(args, stdout=subprocess.PIPE, check=True, timeout=60).stdout
        return [tuple(row.split("\t")) for row in out.decode().splitlines() if row]
