#!/usr/bin/env python3
"""Lints sources, and remembers which were clean.

A clean verdict is kept in the user's cache folder, for all clones, under the hash of everything
that it hangs on: the linter's version, its configuration, the compiler's flags without the clone's
path, and the bytes of every file that was read, the system's headers included. A header that would
now be found in the place of another has the same name as that, so that the paths of all own headers
of such names are a part of the key, too. Verdicts that found something are never kept.

usage: run_tidy.py <clang-tidy> <clone> <build folder> <source>...
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile
import time

KEPT_DAYS = 60
VERDICTS_KEPT = 8  # of one source: branches that are worked on in turn

linter, clone, build = sys.argv[1], pathlib.Path(sys.argv[2]).resolve(), pathlib.Path(sys.argv[3])
cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "velto-tidy"
hashes = {}


def digest(*parts):
    return hashlib.sha256("\0".join(parts).encode()).hexdigest()


def bytes_of(name):
    """The hash of a file's bytes; its name counts from the clone, or is absolute."""
    if name not in hashes:
        try:
            hashes[name] = hashlib.sha256((clone / name).read_bytes()).hexdigest()
        except OSError:
            hashes[name] = "none"
    return hashes[name]


def portable(path):
    path = os.path.realpath(path)
    return os.path.relpath(path, clone) if path.startswith(f"{clone}/") else path


def own_headers():
    found = {}
    for root in (clone / "src", clone / "tests", clone / "demo", pathlib.Path("/usr/local/include")):
        for header in root.rglob("*"):
            if header.suffix in (".h", ".hpp", ""):
                found.setdefault(header.name, []).append(portable(header))
    return found


def commands():
    """Flags by source, as the compiler gets them, without what only this clone has."""
    flags = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        command = entry.get("command") or shlex.join(entry["arguments"])
        plain = re.sub(r" -o \S+", "", command).replace(str(build.resolve()), "B").replace(str(clone), ".")
        flags.setdefault(portable(os.path.join(entry["directory"], entry["file"])), plain)
    return flags


def verdict_key(files, headers):
    rivals = sorted({path for name in files for path in headers.get(os.path.basename(name), [])})
    return digest(*[f"{name} {bytes_of(name)}" for name in files], *rivals)


def remember(kept, verdicts):
    cache.mkdir(parents=True, exist_ok=True)
    with tempfile.NamedTemporaryFile("w", dir=cache, delete=False) as new:
        json.dump(verdicts[:VERDICTS_KEPT], new)
    os.replace(new.name, kept)


def read_verdicts(kept):
    try:
        return [(list(files), str(key)) for files, key in json.loads(kept.read_text())]
    except (OSError, ValueError, TypeError):
        return []


def lint(source, base, headers):
    """What the linter found, or nothing; and whether it was asked."""
    if base is None:
        return f"{source}: the build has no flags for it\n", False
    kept = cache / digest(base, source)
    verdicts = read_verdicts(kept)
    if any(verdict_key(files, headers) == key for files, key in verdicts):
        os.utime(kept)
        return "", False
    begun = time.time()
    run = subprocess.run([linter, "--quiet", "-p", build, "--extra-arg=-H", clone / source],
                         capture_output=True, text=True, errors="replace")
    # Behind -H each header that is read is told on standard error, with a dot for each level.
    read = {portable(m[1]) for m in re.finditer(r"^\.+ (.*)$", run.stderr, re.M)}
    if run.returncode == 0 and not run.stdout.strip():
        files = sorted(read | {source})
        # What changed meanwhile may have been read as it was before.
        if all((clone / name).stat().st_mtime < begun for name in files):
            remember(kept, [(files, verdict_key(files, headers)), *verdicts])
        return "", True
    told = [line for line in run.stderr.splitlines() if not re.match(r"^(\.+ |\d+ warnings? |Suppressed )", line)]
    return run.stdout + "\n".join(told), True


def sweep():
    old = time.time() - KEPT_DAYS * 24 * 3600
    for kept in cache.iterdir() if cache.is_dir() else ():
        if kept.stat().st_mtime < old:
            kept.unlink(missing_ok=True)


def main():
    sweep()
    version = subprocess.run([linter, "--version"], capture_output=True, text=True, check=True).stdout
    config = (clone / ".clang-tidy").read_text()
    flags, headers = commands(), own_headers()
    sources = [portable(source) for source in sys.argv[4:]]
    asked = found = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        jobs = [pool.submit(lint, source, digest(version, config, flags[source]) if source in flags else None,
                            headers) for source in sources]
        for job in jobs:
            told, new = job.result()
            asked += new
            found += bool(told)
            print(told, end="", flush=True)
    print(f"{len(sources)} sources, {asked} read anew, {found} with findings")
    return 1 if found or not sources else 0


if __name__ == "__main__":
    sys.exit(main())
