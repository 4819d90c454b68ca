#!/usr/bin/env python3
"""run_contract.py [FILTER]: the contract tests of the Windows layer on a Wine PC."""
import sys

from harness import BUILD, Pc

pc = Pc()
try:
    tests = pc.drive / "tests"
    tests.mkdir()
    (tests / "contract_tests.exe").write_bytes((BUILD / "contract_tests.exe").read_bytes())
    filter = f' "--gtest_filter=*{sys.argv[1]}*"' if len(sys.argv) > 1 else ""
    code, output = pc.run(rf"C:\tests\contract_tests.exe --gtest_color=no{filter}", limit=600)
    print(output)
    if code:
        print("\n".join(pc.trace()[-30:]))
    sys.exit(code)
finally:
    pc.close()
