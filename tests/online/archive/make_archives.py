"""Packs one tree with each of the usual tools, in each of the ways in which their archives differ.

usage: make_archives.py FOLDER   The archives go there; what is in them already is replaced.
"""

import os
import shutil
import subprocess
import sys
import tempfile
import zipfile

# Debian 12 calls it 7zz, later releases 7z.
SEVEN_ZIP = shutil.which("7zz") or "7z"

# What the tests expect to find again; the sizes are theirs, too.
PLAIN = {
    "page.htm": b"<p>a page</p>\n" * 300,
    "images/dot.gif": bytes(range(256)) * 20,
    "deep/er/back ground.txt": b"x",
    "empty.txt": b"",
    ".hidden": b"dot",
    "__MACOSX/._page.htm": b"fork",
}
ACCENTED = {"caf\u00e9.htm": b"accent", "\u00fcber/\u00e4.htm": b"umlaut"}


def make_tree(folder, files):
    for name, data in files.items():
        path = os.path.join(folder, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data)
        os.utime(path, (1_000_000_000, 1_000_000_000))


def run(folder, *command, **more):
    subprocess.run(command, cwd=folder, check=True, stdout=subprocess.DEVNULL, **more)


def piped(folder, path, *command):
    """The tool writes into a pipe, where it cannot go back."""
    packed = subprocess.run(command, cwd=folder, check=True, stdout=subprocess.PIPE).stdout
    with open(path, "wb") as file:
        file.write(packed)


class Streamed:
    """A file that cannot go back, so sizes stand behind the data."""

    def __init__(self, file):
        self._file = file

    def write(self, data):
        return self._file.write(data)

    def flush(self):
        self._file.flush()


def python_zip(path, files, method=zipfile.ZIP_DEFLATED, streamed=False, long=False, mode="w",
               comment=b""):
    with open(path, "r+b" if mode == "a" else "wb") as file:
        target = Streamed(file) if streamed else file
        with zipfile.ZipFile(target, mode, method) as archive:
            archive.comment = comment
            archive.writestr(zipfile.ZipInfo("void/", (2000, 1, 1, 12, 0, 0)), b"")
            for name, data in files.items():
                info = zipfile.ZipInfo(name, (2000, 1, 1, 12, 0, 0))
                info.compress_type = method
                with archive.open(info, "w", force_zip64=long) as entry:
                    entry.write(data)


def make_all(out, plain, accented):
    def to(name):
        return os.path.join(out, name + ".zip")

    everything = sorted(os.listdir(plain))
    run(plain, "zip", "-q", "-r", to("zip"), ".")
    run(plain, "zip", "-q", "-r", "-0", to("zip-stored"), ".")
    run(plain, "zip", "-q", "-r", "-fz", to("zip-long"), ".")
    run(plain, "zip", "-q", "-r", "-z", to("zip-comment"), ".", input=b"About this template.\n.\n")
    piped(plain, to("zip-streamed"), "zip", "-q", "-r", "-", ".")
    with open(to("zip-program"), "wb") as file:
        file.write(b"MZ" + b"a program " * 100)
        with open(to("zip"), "rb") as archive:
            file.write(archive.read())
    run(plain, "zip", "-q", "-A", to("zip-program"))
    run(plain, SEVEN_ZIP, "a", "-tzip", to("7z"), *everything)
    run(plain, SEVEN_ZIP, "a", "-tzip", "-mx=0", to("7z-stored"), *everything)
    run(plain, "bsdtar", "--format", "zip", "-cf", to("bsdtar"), ".")
    run(plain, "bsdtar", "--format", "zip", "--options", "zip:compression=store", "-cf",
        to("bsdtar-stored"), *everything)
    run(plain, "bsdtar", "--format", "zip", "--options", "zip:zip64", "-cf", to("bsdtar-long"),
        *everything)
    run(plain, "fastjar", "cf", to("jar"), *everything)
    run(plain, "fastjar", "c0fM", to("jar-stored"), *everything)
    python_zip(to("python"), PLAIN)
    python_zip(to("python-stored"), PLAIN, zipfile.ZIP_STORED)
    python_zip(to("python-comment"), PLAIN, comment=b"x" * 65535)
    python_zip(to("python-long"), PLAIN, long=True)
    python_zip(to("python-streamed"), PLAIN, streamed=True)
    python_zip(to("python-streamed-long"), PLAIN, streamed=True, long=True)
    with open(to("python-program"), "wb") as file:
        file.write(b"MZ" + b"a program " * 100)
    python_zip(to("python-program"), PLAIN, mode="a")

    # zip leaves out in which encoding its names are, unless the system has a locale for it.
    names = sorted(os.listdir(accented))
    run(accented, SEVEN_ZIP, "a", "-tzip", to("accents-7z"), *names)
    run(accented, "bsdtar", "--format", "zip", "-cf", to("accents-bsdtar"), *names)
    python_zip(to("accents-python"), ACCENTED)
    python_zip(to("accents-python-streamed"), ACCENTED, streamed=True)


def main():
    out = os.path.abspath(sys.argv[1])
    shutil.rmtree(out, ignore_errors=True)
    os.makedirs(out)
    os.environ.update(LC_ALL="C.UTF-8", TZ="UTC")
    with tempfile.TemporaryDirectory() as plain, tempfile.TemporaryDirectory() as accented:
        make_tree(plain, PLAIN)
        os.makedirs(os.path.join(plain, "void"))
        make_tree(accented, ACCENTED)
        make_all(out, plain, accented)


main()
