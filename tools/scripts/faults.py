#!/usr/bin/env python3
"""Makes each deliberate fault of tools/faults.txt in a copy of the sources, builds the tests there and
names those that find it. Ends with 1 when a fault is found by nobody, or when its text no longer
stands in exactly one source.

    tools/scripts/faults.py                    all faults, all test programs
    tools/scripts/faults.py -k turn -k heal    those whose name has one of the words
    tools/scripts/faults.py --tests 'tst_(turnorder|effect)'
    tools/scripts/faults.py --check            only whether each text is where it was
"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]


def read_faults():
    faults = []
    for line in (ROOT / "tools/faults.txt").read_text().splitlines():
        if line.startswith("= "):
            faults.append({"name": line[2:], "text": [], "becomes": []})
        elif line.startswith("-"):
            faults[-1]["text"].append(line[1:])
        elif line.startswith("+"):
            faults[-1]["becomes"].append(line[1:])
    return faults


def place(fault, folder):
    """The one source that holds the fault's text; None where there is none, or more than one."""
    text = "\n".join(fault["text"])
    found = [path for path in sorted((folder / "src").iterdir())
             if path.suffix in (".cpp", ".h") and path.read_text().count(text) == 1]
    return found[0] if len(found) == 1 else None


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def finders(folder, tests):
    """Names of the tests that fail; the compiler, when it finds the fault itself."""
    build = run("cmake", "--build", folder / "build", "-j", str(os.cpu_count()))
    if build.returncode:
        return ["the compiler"] if "error:" in build.stdout else sys.exit(build.stdout[-2000:])
    report = run("ctest", "--test-dir", folder / "build", "-j", str(os.cpu_count()), "--timeout", "120",
                 "-R", tests)
    return re.findall(r"^\s+\d+ - (\w+) \(", report.stdout, re.M)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-k", action="append", default=[], metavar="WORD")
    parser.add_argument("--tests", default="tst_", metavar="REGEX")
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    faults = [fault for fault in read_faults()
              if not arguments.k or any(word in fault["name"] for word in arguments.k)]

    lost = [fault["name"] for fault in faults if not place(fault, ROOT)]
    if lost:
        sys.exit("not in exactly one source: " + ", ".join(lost))
    if arguments.check:
        return
    unfound = []
    with tempfile.TemporaryDirectory(prefix="faults") as temporary:
        folder = pathlib.Path(temporary)
        for name in subprocess.check_output(["git", "ls-files"], cwd=ROOT, text=True).splitlines():
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(ROOT / name, folder / name)
        # A fault may leave something unused: that is no find of the compiler's.
        subprocess.check_call(["cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build",
                               "-DCMAKE_BUILD_TYPE=Debug", "-DMORVANE_WERROR=OFF",
                               "-DMORVANE_BENCHMARKS=OFF"], stdout=subprocess.DEVNULL)
        sound = finders(folder, arguments.tests)
        if sound:
            sys.exit("without any fault these fail: " + ", ".join(sound))
        for fault in faults:
            path = place(fault, folder)
            source = path.read_text()
            path.write_text(source.replace("\n".join(fault["text"]), "\n".join(fault["becomes"])))
            found = finders(folder, arguments.tests)
            path.write_text(source)
            print(f"{fault['name']}: {', '.join(found) or 'found by nobody'}", flush=True)
            if not found:
                unfound.append(fault["name"])
    if unfound:
        sys.exit(f"{len(unfound)} of {len(faults)} found by nobody")


main()
