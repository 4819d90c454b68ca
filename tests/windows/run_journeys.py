#!/usr/bin/env python3
"""run_journeys.py COUNTS [FILTER]: runs the journeys whose name holds FILTER; writes "passed failed" to the file."""
import pathlib
import sys
import unittest

suite = unittest.TestLoader()
if len(sys.argv) > 2:
    suite.testNamePatterns = [f"*{sys.argv[2]}*"]
here = pathlib.Path(__file__).parent
sys.path.insert(0, str(here.parent / "servers"))
tests = suite.discover(here, "journeys_*.py", here)
result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2, buffer=False).run(tests)
failed = len({test.id() for test, _ in result.failures + result.errors})
pathlib.Path(sys.argv[1]).write_text(f"{result.testsRun - failed} {failed}\n")
