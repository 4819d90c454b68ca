#!/usr/bin/env python3
"""run_journeys.py COUNTS SHARE OF [FILTER]: runs the journeys whose name holds FILTER, and of these each OFth from number
SHARE on; writes "passed failed" to the file."""
import pathlib
import sys
import time
import unittest


def flat(suite):
    for test in suite:
        yield from flat(test) if isinstance(test, unittest.TestSuite) else [test]


class Timed(unittest.TextTestResult):
    """Says how long each took."""

    def startTest(self, test):
        self.begin = time.monotonic()
        super().startTest(test)

    def addSuccess(self, test):
        unittest.TestResult.addSuccess(self, test)
        self.stream.writeln(f"ok, {time.monotonic() - self.begin:.1f} s")


counts, share, of, *names = sys.argv[1:]
loader = unittest.TestLoader()
loader.testNamePatterns = [f"*{name}*" for name in names] or None
here = pathlib.Path(__file__).parent
sys.path.insert(0, str(here.parent / "servers"))
tests = unittest.TestSuite(list(flat(loader.discover(here, "journeys_*.py", here)))[int(share)::int(of)])
result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, resultclass=Timed).run(tests)
failed = len({test.id() for test, _ in result.failures + result.errors})
pathlib.Path(counts).write_text(f"{max(result.testsRun - failed, 0)} {failed}\n")
