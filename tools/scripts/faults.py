#!/usr/bin/env python3
"""Makes each deliberate fault of tools/faults.txt in a copy of the sources, builds the tests there and
names those that find it. Ends with 1 when a fault is found by nobody, when its text no longer stands
exactly once in all sources, or when what it becomes doesn't compile. The sources themselves are only
read, so there is nothing to restore.

    tools/scripts/faults.py                    all faults, all test programs
    tools/scripts/faults.py -k turn -k heal    those whose name has one of the words
    tools/scripts/faults.py --tests 'tst_(turnorder|effect)'
    tools/scripts/faults.py --check            only whether each text is where it was
    tools/scripts/faults.py -j 2               with two jobs, on a machine that others use
"""
import argparse
import os
import pathlib
import re
import shutil
import signal
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
        elif line and not line.startswith("#"):
            sys.exit(f"tools/faults.txt: what is this line? {line}")
    idle = [fault["name"] for fault in faults if fault["text"] in ([], fault["becomes"])]
    return sys.exit("these change nothing: " + ", ".join(idle)) if idle else faults


def place(fault, folder):
    """The source that holds the fault's text; None unless the text stands once in all of them."""
    text = "\n".join(fault["text"])
    found = [path for path in sorted((folder / "src").iterdir()) if path.suffix in (".cpp", ".h")
             for _ in range(path.read_text().count(text))]
    return found[0] if len(found) == 1 else None


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, check=False, **options)


def finders(folder, tests, jobs):
    """Names of the tests that fail, with how unless by a check; the compiler, when one of the static
    assertions finds the fault. Any other error of the compiler's is a mistake in the list."""
    listed = run("ctest", "--test-dir", folder / "build", "-N", "-R", tests).stdout
    programs = re.findall(r"^ +Test +#\d+: (\S+)", listed, re.M)
    build = run("cmake", "--build", folder / "build", "-j", jobs, "--target", *programs or ["all"])
    if "static assertion failed" in build.stdout:
        return ["the compiler"]
    if build.returncode:
        raise ValueError("\n".join(re.findall(r"^.*error:.*", build.stdout, re.M)) or build.stdout[-2000:])
    report = run("ctest", "--test-dir", folder / "build", "-j", jobs, "--no-tests=error", "-R", tests)
    failed = re.findall(r"^\s+\d+ - (\S+) \((.+)\)", report.stdout, re.M)
    if report.returncode and not failed:
        sys.exit(report.stdout + report.stderr)
    return [name if how == "Failed" else f"{name} ({how})" for name, how in failed]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-k", action="append", default=[], metavar="WORD")
    parser.add_argument("--tests", default="tst_", metavar="REGEX")
    parser.add_argument("--check", action="store_true")
    parser.add_argument("-j", default=str(os.cpu_count()), metavar="JOBS")
    arguments = parser.parse_args()
    faults = [fault for fault in read_faults()
              if not arguments.k or any(word in fault["name"] for word in arguments.k)]
    if not faults:
        sys.exit("no fault has such a name")
    lost = [fault["name"] for fault in faults if not place(fault, ROOT)]
    if lost:
        sys.exit("not exactly once in the sources: " + ", ".join(lost))
    if arguments.check:
        return
    unfound = []
    # Let the copy be removed then too.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("stopped"))
    with tempfile.TemporaryDirectory(prefix="faults", ignore_cleanup_errors=True) as temporary:
        folder = pathlib.Path(temporary)
        for name in subprocess.check_output(["git", "ls-files"], cwd=ROOT, text=True).splitlines():
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(ROOT / name, folder / name)
        # A fault may leave something unused: that is no find of the compiler's.
        subprocess.check_call(["cmake", "-G", "Ninja", "-S", folder, "-B", folder / "build",
                               "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=",
                               "-DMORVANE_WERROR=OFF", "-DMORVANE_BENCHMARKS=OFF"], stdout=subprocess.DEVNULL)
        sound = finders(folder, arguments.tests, arguments.j)
        if sound:
            sys.exit("without any fault these fail: " + ", ".join(sound))
        for fault in faults:
            path = place(fault, folder)
            source = path.read_text()
            path.write_text(source.replace("\n".join(fault["text"]), "\n".join(fault["becomes"])))
            try:
                found = finders(folder, arguments.tests, arguments.j)
                print(f"{fault['name']}: {', '.join(found) or 'found by nobody'}", flush=True)
            except ValueError as error:
                found = []
                print(f"{fault['name']}: doesn't compile\n{error}", flush=True)
            path.write_text(source)
            if not found:
                unfound.append(fault["name"])
    if unfound:
        sys.exit(f"{len(unfound)} of {len(faults)} not found")


main()
