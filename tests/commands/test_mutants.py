"""What scripts/mutants changes in a source, what it leaves alone, and which tests it runs."""

import contextlib
import io
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))

from mutation.mutants import mutants_of  # noqa: E402  (found by the line above)
from mutation.reasons import block_of, read_reasons  # noqa: E402
from mutation.scratch import copy_changed  # noqa: E402
from mutation.trials import Test, rounds_for, run_tests, tests_of  # noqa: E402


def changes(source, *kinds):
    """The source after each of its mutants of these kinds."""
    return [mutant.applied_to(source) for mutant in mutants_of("a.cpp", source)
            if mutant.kind in kinds]


class Mutants(unittest.TestCase):
    def test_a_comparison_moves_its_border_or_becomes_the_opposite(self):
        self.assertEqual(["x = a <= b;"], changes("x = a < b;", "comparison"))
        self.assertEqual(["x = a > b;"], changes("x = a >= b;", "comparison"))
        self.assertEqual(["x = a != b;"], changes("x = a == b;", "comparison"))

    def test_the_marks_of_a_type_are_no_operators(self):
        self.assertEqual([], changes("std::vector<int> f(T&& a, T* b, const T& c);",
                                     "comparison", "arithmetic", "logic"))

    def test_an_arithmetic_operator_becomes_its_inverse(self):
        self.assertEqual(["x = a - b;"], changes("x = a + b;", "arithmetic"))
        self.assertEqual(["x = a / b;"], changes("x = a * b;", "arithmetic"))
        self.assertEqual(["x -= a;"], changes("x += a;", "arithmetic"))
        self.assertEqual(["--x;"], changes("++x;", "arithmetic"))

    def test_a_sign_is_no_operator(self):
        self.assertEqual([], changes("x = -a;", "arithmetic"))

    def test_and_becomes_or_and_a_negation_is_lost(self):
        self.assertEqual(["x = a && b;", "x = !a || b;"], changes("x = !a && b;", "logic"))

    def test_a_number_becomes_one_more(self):
        self.assertEqual(["x = 10;"], changes("x = 9;", "number"))
        self.assertEqual(["x = (0x1F + 1);"], changes("x = 0x1F;", "number"))

    def test_a_boolean_becomes_the_other(self):
        self.assertEqual(["x = false;"], changes("x = true;", "boolean"))

    def test_literals_and_comments_stay(self):
        source = '#if 1 == 2\nx = "1 < 2" \'3\' R"(4 + 5)"; // 6 && 7\n/* true */'
        self.assertEqual([], changes(source, "comparison", "arithmetic", "logic", "number",
                                     "boolean"))

    def test_a_condition_becomes_its_opposite_and_never_holds(self):
        self.assertEqual(["if (!(a(b))) c;", "if (false && (a(b))) c;"],
                         changes("if (a(b)) c;", "condition"))
        self.assertEqual(["x = !(a == b) ? c : d;", "x = false && (a == b) ? c : d;"],
                         changes("x = a == b ? c : d;", "condition"))

    def test_a_condition_begins_after_its_initialisation(self):
        self.assertIn("if (const int a = b(); !(a)) c;",
                      changes("if (const int a = b(); a) c;", "condition"))

    def test_a_call_or_an_assignment_is_removed(self):
        self.assertEqual(["{ ; }"], changes("{ a.b(c); }", "removal"))
        self.assertEqual(["{ ; }"], changes("{ a = b; }", "removal"))
        self.assertEqual(["{ if (a) ; }"], changes("{ if (a) b(); }", "removal"))
        self.assertEqual(["{ ; }"], changes("{ emit a(); }", "removal"))

    def test_a_call_is_removed_with_the_function_in_it_and_what_that_calls_alone(self):
        self.assertEqual(["{ ; }", "{ a([] { ; }); }"], changes("{ a([] { b(); }); }", "removal"))

    def test_a_declaration_is_not_removed(self):
        for declaration in ("int a = b();", "A a(b);", "a::B c = d();", "const A a = b();",
                            "A<B> a = c();", "A& a = b();", "A* a = b();", "auto a = b();"):
            self.assertEqual([], changes("{ " + declaration + " }", "removal"), declaration)

    def test_a_function_is_not_removed(self):
        self.assertEqual(["} A::A(B b) : c(b) { ; }"],
                         changes("} A::A(B b) : c(b) { d(); }", "removal"))

    def test_two_calls_change_places(self):
        self.assertEqual(["{ b();\n  a(); }"], changes("{ a();\n  b(); }", "order"))

    def test_calls_with_something_between_stay_in_their_order(self):
        self.assertEqual([], changes("{ a(); int b = c(); d(); }", "order"))
        self.assertEqual([], changes("{ if (a) b(); c(); }", "order"))

    def test_a_returned_value_becomes_the_empty_one(self):
        self.assertEqual(["{ return {}; }"], changes("{ return a(b); }", "value"))
        self.assertEqual([], changes("{ return; return {}; return false; }", "value"))

    def test_a_mutant_tells_its_line_and_the_lines_that_change(self):
        (mutant,) = mutants_of("a.cpp", "{\n  b(a,\n    c);\n}")
        self.assertEqual(2, mutant.line)
        self.assertEqual(("a.cpp", "b(a, c);", ";"), mutant.key)

    def test_the_same_mutants_are_chosen_after_an_edit_elsewhere(self):
        (before,) = mutants_of("a.cpp", "{ a(); }")
        after = mutants_of("a.cpp", "{ b(); }\n\n{ a(); }")[1]
        self.assertEqual(before.rank(1), after.rank(1))
        self.assertNotEqual(before.rank(1), before.rank(2))


class Reasons(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = Path(folder.name) / "reasons.txt"

    def test_a_reason_belongs_to_a_change_of_a_line(self):
        self.path.write_text("# Comment\n\na.cpp\n- b();\n+ ;\n  It is\n  so.\n", encoding="utf-8")
        self.assertEqual({("a.cpp", "b();", ";"): "It is so."}, read_reasons(self.path))

    def test_a_mutant_is_read_back_as_it_was_written(self):
        (mutant,) = mutants_of("a.cpp", "{ a(); }")
        self.path.write_text(block_of(mutant), encoding="utf-8")
        self.assertEqual({mutant.key: ""}, read_reasons(self.path))

    def test_the_same_mutant_twice_is_refused(self):
        self.path.write_text("a.cpp\n- b();\n+ ;\n\n" * 2, encoding="utf-8")
        with self.assertRaisesRegex(ValueError, "twice"):
            read_reasons(self.path)


class Rounds(unittest.TestCase):
    def test_the_nearest_tests_come_first_and_the_slow_ones_of_the_folder_last(self):
        own = Test("A.B", Path("search/site_search_test.cpp"), 0.1)
        beside = Test("C.D", Path("search/up_down_test.cpp"), 0.1)
        other = Test("E.F", Path("records/notes_file_test.cpp"), 0.1)
        slow_own = Test("A.S", Path("search/site_search_test.cpp"), 9)
        slow_other = Test("E.S", Path("records/notes_file_test.cpp"), 9)
        tests = [slow_other, other, beside, slow_own, own]
        self.assertEqual([[own], [beside]],
                         rounds_for("src/search/site_search.cpp", tests, False))
        self.assertEqual([[own], [beside], [other], [slow_own]],
                         rounds_for("src/search/site_search.cpp", tests, True))

    def test_a_source_without_a_test_of_its_own_has_those_of_the_others(self):
        other = Test("E.F", Path("records/notes_file_test.cpp"), 0.1)
        self.assertEqual([[other]], rounds_for("src/search/site_search.cpp", [other], True))

    def test_a_program_says_where_each_test_is_and_how_long_it_takes(self):
        report = {"testsuites": [{"name": "A", "testsuite": [
            {"name": "B", "file": "../source/tests/search/a_test.cpp", "time": "1.5s"}]}]}
        self.assertEqual([Test("A.B", Path("search/a_test.cpp"), 1.5)],
                         tests_of(report, Path("/m/source/tests"), Path("/m/build")))

    def test_a_test_that_fails_without_a_mutant_is_left_out_and_named(self):
        report = {"testsuites": [{"name": "A", "testsuite": [
            {"name": "B", "file": "a_test.cpp", "time": "1s", "failures": [{}]}]}]}
        with contextlib.redirect_stderr(io.StringIO()) as told:
            self.assertEqual([], tests_of(report, Path("/m/source/tests"), Path("/m/build")))
        self.assertIn(": A.B\n", told.getvalue())


class Running(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def program(self, *lines):
        path = self.folder / "program"
        path.write_text("\n".join(("#!/bin/sh", *lines)), encoding="ascii")
        path.chmod(0o755)
        return path

    def test_a_program_runs_in_an_empty_folder_and_its_exit_code_counts(self):
        program = self.program('[ -z "$(ls)" ] && exit 3')
        (self.folder / "tmp").mkdir()
        (self.folder / "tmp/left").touch()
        self.assertEqual(3, run_tests(program, self.folder / "tmp", 60))

    def test_the_flags_are_in_a_file(self):
        program = self.program('grep -qx -- "--gtest_filter=A.B" "${1#--gtest_flagfile=}"')
        self.assertEqual(0, run_tests(program, self.folder / "tmp", 60, "--gtest_filter=A.B"))
        self.assertEqual(1, run_tests(program, self.folder / "tmp", 60, "--gtest_filter=C.D"))

    def test_a_program_that_does_not_end_is_ended(self):
        program = self.program("while :; do :; done")
        with self.assertRaises(subprocess.TimeoutExpired):
            run_tests(program, self.folder / "tmp", 0.1)

    def test_only_what_differs_is_copied(self):
        original, copy = self.folder / "original", self.folder / "below/copy"
        original.write_text("1", encoding="utf-8")
        copy_changed(original, copy)
        self.assertEqual("1", copy.read_text(encoding="utf-8"))
        time = copy.stat().st_mtime_ns
        copy_changed(original, copy)
        self.assertEqual(time, copy.stat().st_mtime_ns)
        original.write_text("2", encoding="utf-8")
        copy_changed(original, copy)
        self.assertEqual("2", copy.read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
