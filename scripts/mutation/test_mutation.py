"""Run with: python3 -m unittest discover -s scripts/mutation -t scripts"""

import tempfile
import unittest
from pathlib import Path

from mutation import changes, results


def in_function(body: str) -> str:
    return "int f(int a, int b) {\n" + body + "\n}\n"


def results_of(text: str, kind: str) -> set[str]:
    return {change.after for change in changes.changes_of("x.cpp", text) if change.kind == kind}


class Changes(unittest.TestCase):
    def test_a_comparison_moves_its_edge_or_turns_round(self):
        self.assertEqual(results_of(in_function("return a < b;"), "comparison"), {"return a <= b;"})
        self.assertEqual(results_of(in_function("return a == b;"), "comparison"), {"return a != b;"})

    def test_the_angle_of_a_template_is_no_comparison(self):
        self.assertEqual(results_of(in_function("std::vector<int> v(g<3>());"), "comparison"), set())

    def test_constants_go_up_by_one_and_texts_by_a_letter(self):
        text = in_function('g(1\'000, 0xFF, true, "abc", R"(a.c)", u\'\\n\', 0.5F);')
        self.assertEqual(len(results_of(text, "constant")), 7)
        self.assertIn("g(1001, 0xFF, true, \"abc\", R\"(a.c)\", u'\\n', 0.5F);", results_of(text, "constant"))

    def test_the_number_of_a_place_in_a_text_stays(self):
        self.assertEqual(results_of(in_function('g("%1");'), "constant"), {'g("%x");'})

    def test_conditions_are_negated_and_their_parts_joined_otherwise(self):
        self.assertEqual(
            results_of(in_function("if (a && !b)\n  g();"), "condition"),
            {"if (!(a && !b))", "if (a || !b)", "if (a && b)"},
        )

    def test_a_condition_that_declares_is_negated_behind_its_declaration(self):
        self.assertEqual(
            results_of(in_function("if (const auto* c = g(); c->d)\n  h();"), "condition"),
            {"if (const auto* c = g(); !(c->d))"},
        )
        self.assertEqual(
            results_of(in_function("if (const std::optional<int> c = g())\n  h();"), "condition"),
            {"if (const std::optional<int> c = g(); !(c))"},
        )

    def test_the_question_of_a_choice_is_negated(self):
        self.assertEqual(results_of(in_function("return a(b) ? 1 : 2;"), "condition"), {"return !(a(b)) ? 1 : 2;"})

    def test_statements_are_left_out_but_no_declaration_and_no_last_return(self):
        body = "const int c = 1;\nstd::list<int> d;\ng(a);\nif (b)\n  return 2;\nfor (int i = 0; i < a; ++i)\n  h(i);\nreturn c;"
        gone = [c.before for c in changes.changes_of("x.cpp", in_function(body)) if c.kind == "statement"]
        self.assertEqual(gone, ["g(a);", "return 2;", "h(i);"])

    def test_rows_of_a_table_are_left_out_but_not_their_cells(self):
        text = "const Row rows[] = {\n    {1, 2},\n    {3, 4},\n};\n"
        gone = [c.before for c in changes.changes_of("x.cpp", text) if c.kind == "row"]
        self.assertEqual(gone, ["{1, 2},", "{3, 4},"])

    def test_comments_includes_assertions_and_messages_stay(self):
        text = '#include "a1.h"\n// b < 1\n' + in_function(
            'static_assert(1 < 2, "c");\nQ_ASSERT(a == 1);\nqWarning("d %d", 1);\n/* e == 1; */'
        )
        self.assertEqual(changes.changes_of("x.cpp", text), [])

    def test_lines_keep_their_numbers(self):
        text = in_function("g(a,\n  b);\nh();")
        for change in changes.changes_of("x.cpp", text):
            self.assertEqual(change.apply(text).count("\n"), text.count("\n"))

    def test_the_same_seed_draws_the_same(self):
        found = changes.changes_of("x.cpp", in_function("if (a < b && b != 1)\n  g(a + 2);\nh(3);"))
        self.assertEqual(changes.drawn(found, "1 x"), changes.drawn(found, "1 x"))
        self.assertCountEqual(changes.drawn(found, "1 x"), found)
        self.assertTrue(any(changes.drawn(found, "1 x") != changes.drawn(found, f"{n} x") for n in range(5)))


class Results(unittest.TestCase):
    def test_what_cannot_be_noticed_is_known_by_its_lines(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "known.txt"
            path.write_text(
                "# It only saves\n# time.\nx.cpp\n@ void f() {\n- return;\n+ ;\n\n# Never seen.\ny.cpp\n- a\n+ b\n- c\n+\n"
            )
            known = results.Equivalents(path)
            self.assertEqual(known.reason("x.cpp", "void f() {", "return;", ";"), "It only saves time.")
            self.assertIsNone(known.reason("x.cpp", "void g() {", "return;", ";"))
            self.assertEqual(known.reason("y.cpp", "void g() {", "a", "b"), "Never seen.")
            self.assertEqual(known.reason("y.cpp", "", "c", ""), "Never seen.")
            self.assertIsNone(known.reason("x.cpp", "", "a", "b"))

    def test_a_change_knows_the_function_around_it(self):
        found = changes.changes_of("x.cpp", "void f() {\n  g();\n}\n\nvoid h() {\n  g();\n}\n")
        self.assertEqual([change.place for change in found], ["void f() {", "void h() {"])

    def test_a_line_cut_off_is_run_again(self):
        with tempfile.TemporaryDirectory() as folder:
            path = Path(folder) / "r.jsonl"
            path.write_text('{"name": "a", "outcome": "noticed"}\n{"name": "b", "outc')
            self.assertEqual(list(results.Results.read(path)), ["a"])


if __name__ == "__main__":
    unittest.main()
