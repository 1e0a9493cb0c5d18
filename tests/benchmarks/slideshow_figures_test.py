"""The slideshow benchmark's figures: parsing the frame lines, percentiles, and the memory swing."""
import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "benchmarks"))

from slideshow_figures import frame_intervals, interval_summary, percentile, rss_swing, verdict  # noqa: E402


class FrameLines(unittest.TestCase):
    def test_lines_by_kind(self):
        rows = [
            ("nothing", "Qt warning\n", {}),
            ("one kind", "sorvane.frames: Frame after 16.7 ms: empty\nFrame after 33.0 ms: empty\n",
             {"empty": [16.7, 33.0]}),
            ("transitions keep their style, drift its own",
             "Frame after 17.1 ms: transition kenBurns\nFrame after 40.2 ms: drift\n"
             "Frame after 16.0 ms: transition crossFade\nFrame after 20.0 ms: transition kenBurns\n",
             {"transition kenBurns": [17.1, 20.0], "drift": [40.2], "transition crossFade": [16.0]}),
            ("other lines between", "First photo on screen after 300 ms\nFrame after 5 ms: drift\n",
             {"drift": [5.0]}),
        ]
        for name, text, expected in rows:
            with self.subTest(name):
                self.assertEqual(frame_intervals(text), expected)


class Figures(unittest.TestCase):
    def test_percentile_is_nearest_rank(self):
        values = list(range(1, 101))  # 1..100
        for share, expected in [(0.5, 50), (0.99, 99), (1.0, 100), (0.001, 1)]:
            with self.subTest(share=share):
                self.assertEqual(percentile(values, share), expected)
        self.assertEqual(percentile([7, 3, 5], 0.99), 7, "unsorted input")

    def test_summary_of_a_run_with_one_long_frame(self):
        summary = interval_summary([16.0] * 199 + [90.0])
        self.assertEqual((summary["frames"], summary["median"], summary["p99"], summary["longest"]),
                         (200, 16.0, 16.0, 90.0))

    def test_rss_swing_against_the_first_sample(self):
        rows = [
            ("flat", [(100, 200), (200, 200), (300, 200)], (0.0, 0.0)),
            ("rises then falls", [(100, 200), (200, 230), (300, 180)], (15.0, -10.0)),
            ("only falls", [(100, 200), (200, 190)], (-5.0, -5.0)),
            ("one sample", [(100, 200)], (0.0, 0.0)),
        ]
        for name, curve, expected in rows:
            with self.subTest(name):
                self.assertEqual(rss_swing(curve), expected)

    def test_verdict_at_the_goal_is_met(self):
        self.assertEqual([verdict(v, 2) for v in (1.9, 2.0, 2.01)], ["met", "met", "NOT met"])


if __name__ == "__main__":
    unittest.main()
