"""Which changes of a source are made, and which are left alone."""

import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))

from mutants import mutants_of, read_equivalents  # noqa: E402  (the folder is put on the path above)


def after(text):
    """What single lines become."""
    return [mutant.after for mutant in mutants_of("src/room/file.cpp", text + "\n")]


def test_a_comparison_moves_its_boundary_or_turns_round():
    assert after("return_if(a < b)") == ["return_if(a <= b)", "return_if(a >= b)"]
    assert after("x(a == b)") == ["x(a != b)"]


def test_template_brackets_stars_of_pointers_and_signs_are_no_operators():
    assert after("std::vector<int> f(const char* p, T&& q, U& r);") == []
    assert after("f(-x, *p, &q)") == []


def test_operators_become_their_counterparts():
    assert after("f(a + b)") == ["f(a - b)"]
    assert after("f(a * b)") == ["f(a / b)"]
    assert after("f(a && b)") == ["f(a || b)"]
    assert after("f(std::min(a, b))") == ["f(std::max(a, b))"]
    assert after("f(true)") == ["f(false)"]


def test_an_operator_at_the_end_of_a_line_is_one():
    assert after("g(a &&\n  b)") == ["g(a ||"]


def test_numbers_become_their_neighbours():
    assert after("int f(int a = 7)") == ["int f(int a = 6)", "int f(int a = 8)"]
    assert after("f(0x10)") == ["f(0x11)", "f(0xf)"]
    assert after("f(0.45)") == ["f(0.44)", "f(0.46)"]
    assert after("f(7.0f)") == ["f(6.9f)", "f(7.1f)"]
    assert after("f(a1, int16_t)") == []


def test_results_are_emptied():
    assert after("return a;") == ["return {};"]
    assert after("return {};") == []


def test_statements_with_an_effect_are_deleted():
    assert after("x = y;") == [";"]
    assert after("rows_[i].last = y;") == [";"]
    assert after("*out = y;") == [";"]
    assert after("++n;") == [";"]
    assert after("list.push_back(y);") == [";"]
    assert after("vantrel::f(x)[i](y);") == [";"]
    assert after("if (c) f(y);") == ["if (c) ;"]
    assert after("for (int i : v) g(i);") == ["for (int i : v) ;"]
    assert after("a = 1;") == [";", "a = 0;", "a = 2;"]


def test_declarations_and_jumps_are_not_deleted():
    for line in ("int x = y;", "const auto& x = y;", "Type* x = y;", "int f(int a);", "break;", "using a = b;",
                 "std::unique_ptr<T> x;", "explicit X(int y);", "T x{y};", "auto [a, b] = c;"):
        assert after(line) == [], line


def test_a_deleted_statement_of_several_lines_leaves_the_lines():
    (mutant,) = mutants_of("src/room/file.cpp", "{\n  f(a,\n    b);\n}\n")
    assert mutant.applied_to("{\n  f(a,\n    b);\n}\n") == "{\n  \n;\n}\n"
    assert (mutant.line, mutant.before, mutant.after) == (2, "f(a, b);", ";")


def test_comments_strings_and_the_preprocessor_are_left_alone():
    assert after("// a < b\n/* c + 1\n d */\n#define X (1 + 2)\n#if A && \\\n  B > 2\n#endif") == []
    assert after('f("a + 1", \'<\');') == [";"]


def test_the_room_is_the_first_folder_of_src():
    assert mutants_of("src/room/inner/file.h", "f(true)\n")[0].room == "room"


def test_equivalents_are_told_by_file_line_and_change():
    text = "# why not\n\nsrc/a/b.cpp\n- f(a < b);\n+ f(a <= b);\n= a is never b\n= as c shows\n"
    assert read_equivalents(text) == {("src/a/b.cpp", "f(a < b);", "f(a <= b);"): "a is never b as c shows"}
    (mutant,) = [mutant for mutant in mutants_of("src/a/b.cpp", "\n\n    f(a < b);\n") if mutant.change == "< to <="]
    assert mutant.key in read_equivalents(text)
