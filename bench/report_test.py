#!/usr/bin/env python3
"""What the tables say of made-up measurements."""
import unittest

import report


def entry(name, time, **more):
    return {"run_name": name, "run_type": "iteration", "cpu_time": time, "real_time": time, "time_unit": "ns",
            "threads": 1} | more


def collect(*entries):
    return report.collect([{"benchmarks": entries}])


class ReportTest(unittest.TestCase):
    def test_names(self):
        self.assertEqual(report.parse("a case/ours/64/threads:2"), ("a case", "ours", 64))
        self.assertEqual(report.parse("a case/limit b/iterations:1"), ("a case", "limit b", None))

    def test_times(self):
        times, _, failed = collect(
            entry("slow/ours", 8), entry("slow/ours", 90), entry("slow/ours", 10),  # The least counts.
            entry("slow/a", 0.032, time_unit="us"), entry("slow/b", 16), entry("slow/limit copy", 2),
            entry("fast/ours/9", 2000), entry("fast/a/9", 8000),
            entry("threads/ours/threads:2", 1, real_time=10, threads=2),
            entry("threads/a/threads:2", 1, real_time=12.5, threads=2),
            entry("alone/ours/8", 1))
        self.assertEqual(list(report.times_table(times))[1:], [
            ["threads", "20 ns", "a", "25 ns", "0.80", "", "", ""],
            ["slow", "8 ns", "b", "16 ns", "0.50", "copy", "4.00", "a 0.25"],
            ["fast, 9", "2 us", "a", "8 us", "0.25", "", "", ""]])
        self.assertEqual(failed, [])

    def test_laws(self):
        sizes = (10, 100, 1000, 10000)
        self.assertEqual(report.fit({n: 7 for n in sizes}), ("constant", 0))
        for name, law in report.LAWS.items():
            nearly = {n: 3 * law(n) * (1.1 if n == 100 else 1) for n in sizes}
            self.assertEqual(report.fit(nearly)[0], name)
        times, _, _ = collect(*(entry(f"grow/ours/{n}", time) for n in sizes for time in (n, 2 * n, 90 * n)))
        self.assertEqual(list(report.laws_table(times))[1:], [["grow", "n", "0 %"]])

    def test_memory_and_failures(self):
        _, memory, failed = collect(
            entry("keys/ours/10", 1, amount=99.64), entry("keys/maps/10", 1, amount=80123.4),
            entry("keys/maps/10", 1, amount=0, run_type="aggregate", aggregate_name="stddev"),
            entry("bad/a", 1, error_occurred=True, error_message="differs"))
        self.assertEqual(list(report.memory_table(memory))[1:], [["keys", "99.6", "maps 80123"]])
        self.assertEqual(failed, ["bad/a: differs"])

    def test_page(self):
        page = "before " + report.MARKERS[0] + " old " + report.MARKERS[1] + " after"
        self.assertEqual(report.replace_between(report.replace_between(page, "x"), "new"),
                         "before " + report.MARKERS[0] + "\n\nnew\n\n" + report.MARKERS[1] + " after")


if __name__ == "__main__":
    unittest.main()
