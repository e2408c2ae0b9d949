#!/usr/bin/python3
"""Compares the two SQL libraries the default engine could stand on, on our own test
schemas: Debian's sqlglot and the npm package @polyglot-sql/sdk (run by Node).

For each schema (T-SQL, MySQL, Oracle) it cuts the script with the engine's own
splitter, hands every unit to each library alone (no rewriting of ours), and prints
how many units each parses, how many of its PostgreSQL statements a throw-away
PostgreSQL accepts (loaded in order into one database per library), the CPU time per
statement once warmed up, and each library's start-up cost.

    npm install --prefix /tmp/poly @polyglot-sql/sdk
    bench/engine_libraries.py --polyglot /tmp/poly/node_modules/@polyglot-sql/sdk
"""
import argparse
import json
import os
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path[:0] = [os.path.join(HERE, "..", "engine"), os.path.join(HERE, "..", "tests", "engine")]
import pgserver  # noqa: E402
from morvane_sql.split import split  # noqa: E402

CASES = [("harbour_tsql.sql", "tsql", "tsql"), ("harbour_mysql.sql", "mysql", "mysql"),
         ("harbour_oracle.sql", "oracle", "oracle")]

NODE_RUNNER = """
import { init, transpile } from '%s';
import fs from 'fs';
await init();
const job = JSON.parse(fs.readFileSync(0, 'utf8'));
const run = () => job.statements.map(s => {
  try { const r = transpile(s, job.read, 'postgresql');
        return r.success ? {ok: true, sql: r.sql} : {ok: false}; } catch (e) { return {ok: false}; }
});
run();  // warm-up
const cpu = process.cpuUsage();
const results = run();
const used = process.cpuUsage(cpu);
process.stdout.write(JSON.stringify({cpu: (used.user + used.system) / 1e6, results}));
"""


def with_sqlglot(statements, read):
    import sqlglot

    def run():
        out = []
        for s in statements:
            try:
                out.append({"ok": True, "sql": sqlglot.transpile(s, read=read, write="postgres")})
            except Exception:
                out.append({"ok": False})
        return out
    run()
    cpu = time.process_time()
    results = run()
    return time.process_time() - cpu, results


def with_polyglot(statements, read, package, runner):
    entry = os.path.join(package, "dist", "index.node.js")
    with open(runner, "w") as f:
        f.write(NODE_RUNNER % entry)
    out = subprocess.run(["node", runner], input=json.dumps({"read": read, "statements": statements})
                         .encode(), stdout=subprocess.PIPE, check=True).stdout
    job = json.loads(out)
    return job["cpu"], job["results"]


def start_up(command):
    """CPU seconds and peak memory (MB) of one run of command, measured by GNU time."""
    out = subprocess.run(["/usr/bin/time", "-f", "%U %S %M"] + command, stdout=subprocess.DEVNULL,
                         stderr=subprocess.PIPE, check=True).stderr.decode().split()
    return float(out[-3]) + float(out[-2]), int(out[-1]) // 1024


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--polyglot", help="folder of the installed @polyglot-sql/sdk package")
    args = parser.parse_args()
    schemas = os.path.join(HERE, "..", "tests", "engine", "schemas")
    server = pgserver.PgServer().start()
    folder = tempfile.mkdtemp(prefix="morvane-libraries-")
    runner = os.path.join(folder, "runner.mjs")
    try:
        for name, dialect, read in CASES:
            with open(os.path.join(schemas, name), encoding="utf-8-sig") as f:
                units = [u.text for u in split(f.read(), dialect) if u.text]
            libraries = [("sqlglot", lambda: with_sqlglot(units, read))]
            if args.polyglot:
                libraries.append(("polyglot", lambda: with_polyglot(units, read, args.polyglot,
                                                                    runner)))
            for library, convert in libraries:
                cpu, results = convert()
                database = "%s_%s" % (library, dialect)
                server.create_database(database)
                server.psql(database, "CREATE SCHEMA dbo")
                loaded = sum(1 for r in results if r["ok"] and server.psql(
                    database, ";\n".join(r["sql"]) + ";", stop_on_error=True)[0] == 0)
                print("%-20s %-9s units %3d  parsed %3d  accepted by PostgreSQL %3d  %6.2f ms/unit"
                      % (name, library, len(units), sum(r["ok"] for r in results), loaded,
                         cpu * 1000 / len(units)))
        cpu, rss = start_up(["/usr/bin/python3", "-c", "import sqlglot; sqlglot.transpile('SELECT 1')"])
        print("start-up  sqlglot:  %.2f s CPU, %d MB peak" % (cpu, rss))
        if args.polyglot:
            with open(runner, "w") as f:
                f.write("import { init, transpile } from '%s'; await init(); transpile('SELECT 1', "
                        "'tsql', 'postgresql');" % os.path.join(args.polyglot, "dist", "index.node.js"))
            cpu, rss = start_up(["node", runner])
            print("start-up  polyglot: %.2f s CPU, %d MB peak" % (cpu, rss))
    finally:
        server.stop()
        subprocess.run(["rm", "-rf", folder])


if __name__ == "__main__":
    main()
