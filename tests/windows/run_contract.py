#!/usr/bin/env python3
"""run_contract.py [FILTER]: the contract tests of the Windows layer on a Wine PC, with real servers on 127.0.0.1."""
import pathlib
import sys

from harness import BUILD, Pc, ROOT

sys.path.insert(0, str(ROOT / "tests/servers"))
from loopback import LoopbackServers  # noqa: E402

pc = Pc()
try:
    tests = pc.drive / "tests"
    tests.mkdir()
    (tests / "contract_tests.exe").write_bytes((BUILD / "contract_tests.exe").read_bytes())
    with LoopbackServers(pathlib.Path(pc.session, "served")):
        filter = f' "--gtest_filter=*{sys.argv[1]}*"' if len(sys.argv) > 1 else ""
        code, output = pc.run(rf"C:\tests\contract_tests.exe --gtest_color=no{filter}", limit=600)
    print(output)
    if code:
        print("\n".join(pc.trace()[-30:]))
    sys.exit(code)
finally:
    pc.close()
