#!/usr/bin/python3
"""Benchmark of the default engine on a generated T-SQL script.

Converts a script of N statements (50 000 by default) to PostgreSQL with the engine
as a child process, then calls sqlglot directly on the same statements in this
process, and prints statements per second for both and their ratio of CPU time (the
engine's goal: at most 1.5 times the library's time).

    bench/engine_bench.py [--engine build/bin/morvane] [--statements 50000]
"""
import argparse
import os
import random
import resource
import subprocess
import tempfile
import time

import sqlglot


def statements(count):
    """Realistic T-SQL: tables with identity keys, inserts, updates, queries, views."""
    rng = random.Random(7)
    tables = []
    out = []
    for i in range(count):
        kind = i % 20
        if kind == 0 or not tables:
            name = "dbo.Ledger%d" % len(tables)
            tables.append(name)
            out.append("CREATE TABLE %s (\n    EntryID INT IDENTITY(1,1) NOT NULL PRIMARY KEY,\n"
                       "    Account NVARCHAR(40) NOT NULL,\n    Amount DECIMAL(12,2) NOT NULL "
                       "DEFAULT 0,\n    BookedAt DATETIME NOT NULL DEFAULT GETDATE()\n)" % name)
        elif kind == 1:
            out.append("CREATE VIEW %sTotals AS SELECT Account, SUM(Amount) AS Total FROM %s "
                       "GROUP BY Account" % (tables[-1], tables[-1]))
        elif kind < 12:
            out.append("INSERT INTO %s (Account, Amount) VALUES (N'acct-%d', %d.%02d)"
                       % (rng.choice(tables), rng.randrange(1000), rng.randrange(10000),
                          rng.randrange(100)))
        elif kind < 16:
            out.append("UPDATE %s SET Amount = Amount * 1.05 WHERE Account = 'acct-%d' AND "
                       "BookedAt < GETDATE()" % (rng.choice(tables), rng.randrange(1000)))
        else:
            out.append("SELECT TOP 10 Account, ISNULL(SUM(Amount), 0) AS Total FROM %s WHERE "
                       "LEN(Account) > 3 GROUP BY Account ORDER BY Total DESC"
                       % rng.choice(tables))
    return out


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    parser = argparse.ArgumentParser()
    parser.add_argument("--engine", default=os.path.join(here, "..", "build", "bin", "morvane"))
    parser.add_argument("--statements", type=int, default=50000)
    args = parser.parse_args()

    sql = statements(args.statements)
    with tempfile.TemporaryDirectory(prefix="morvane-bench-") as folder:
        script = os.path.join(folder, "ledger.sql")
        with open(script, "w") as f:
            f.write("".join(s + "\nGO\n" for s in sql))
        os.mkdir(os.path.join(folder, "out"))
        env = dict(os.environ, MORVANE_STOP_EVENT="/MorvaneStopEvent-bench-%d" % os.getpid())
        started = time.perf_counter()
        children = resource.getrusage(resource.RUSAGE_CHILDREN)
        result = subprocess.run([args.engine, '/F="%s"' % script,
                                 '/DIR="%s"' % os.path.join(folder, "out"),
                                 "/SOURCE=Microsoft SQL Server", "/TARGET=PostgreSQL"],
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=env)
        engine_wall = time.perf_counter() - started
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
        engine_time = after.ru_utime + after.ru_stime - children.ru_utime - children.ru_stime
        summary = [line for line in result.stdout.decode().splitlines() if "Summary" in line]
        if result.returncode != 0 or not summary:
            raise SystemExit("the engine failed:\n" + result.stdout.decode()[-2000:])

    started = time.perf_counter()
    cpu = time.process_time()
    failed = 0
    for statement in sql:
        try:
            sqlglot.transpile(statement, read="tsql", write="postgres")
        except Exception:
            failed += 1
    library_wall = time.perf_counter() - started
    library_time = time.process_time() - cpu

    count = len(sql)
    print("statements:           %d" % count)
    # CPU time decides: the machine is shared, so wall time says more about the neighbours.
    print("engine (process):     %8.2f s CPU  %8.0f statements/s  (%.2f s wall)  %s" % (
        engine_time, count / engine_time, engine_wall, summary[0].split(": ", 1)[1]))
    print("sqlglot alone:        %8.2f s CPU  %8.0f statements/s  (%.2f s wall)  %d it cannot read"
          % (library_time, count / library_time, library_wall, failed))
    print("engine / library:     %8.2f   (goal: at most 1.50)" % (engine_time / library_time))


if __name__ == "__main__":
    main()
