# SPDX-License-Identifier: MIT
"""Too little memory."""

import json
import resource

from faults import ANSWER, Fault


class Memory(Fault):
    def check(self, step):
        """Runs the list with every limit from one that is just enough for the dynamic linker to one that is enough for all."""
        self.start_servers(300, ANSWER)
        outcomes = {}
        for limit in range(56 << 20, 88 << 20, step):
            run = self.portolanctl("list", "--json", limits={resource.RLIMIT_AS: (limit, limit)}, timeout=30)
            outcomes[run.returncode] = outcomes.get(run.returncode, 0) + 1
            with self.subTest(limit=limit):
                if run.returncode == 0:
                    self.assertEqual(run.stderr, b"")
                    json.loads(run.stdout)
                elif run.returncode == 127:
                    self.assertIn(b"shared librar", run.stderr)
                else:
                    self.assertEqual((run.returncode, run.stderr), (1, b"portolanctl: out of memory\n"))
        print(outcomes)
        self.assertGreater(outcomes.get(0, 0), 0)

    def test_the_list_ends_with_what_it_has_or_one_line(self):
        self.check(1 << 20)

    def slow_the_list_ends_whatever_the_limit(self):
        self.check(100 << 10)
