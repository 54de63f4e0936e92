"""Whether sources with mutants inside are what they should be."""

import sys
import unittest

sys.dont_write_bytecode = True

import mutants
import switching

SOURCE = '''#pragma once
// { no code
namespace n {
struct S : Base<int> {
  public:
    S(int a) : Base(a), b_(a), c_{a} { run("}"); }
    S(int a, int b) : Base(sum(a, b), b) { walk(); }
    int f() const noexcept { return b_ + 1; }
    bool operator==(const S& other) const { return b_ == other.b_; }

  private:
    int b_ = 4;
    static constexpr int table[] = {1, 2};
};
enum class E { One, Two };
template <class T>
void g(T t, int x = 3) {
    if (t) {
        h();
    }
}
}  // namespace n
'''


def switched(*changes):
    """The source with changes, each a pair of texts, numbered from one."""
    mutants.content_of = lambda file: SOURCE
    numbered = []
    for number, (old, new) in enumerate(changes, 1):
        mutant = mutants.Mutant(f"m{number}", "source.h")
        mutant.old, mutant.new = old.split("\n"), new.split("\n")
        numbered.append((number, mutant))
    return switching.Switched(SOURCE, numbered)


class SwitchingTest(unittest.TestCase):
    def test_bodies_are_those_of_functions(self):
        found = [SOURCE[start:end].split()[0] for start, end in switching.bodies(SOURCE)]
        self.assertEqual(found, ['run("}");', "walk();", "return", "return", "if"])

    def test_body_stands_there_once_for_each_mutant(self):
        source = switched(("return b_ + 1", "return b_"), ("b_ + 1", "b_ - 1"))
        self.assertEqual(source.left_over, [])
        for text in ["if (MUTANT(1)) { return b_; \n}", "if (MUTANT(2)) { return b_ - 1; \n}",
                     "else { return b_ + 1; \n}"]:
            self.assertIn(text, source.text)
        self.assertLess(source.text.index("#pragma once"), source.text.index("mutant_switch.h"))

    def test_only_what_differs_has_to_lie_in_a_body(self):
        source = switched(("int f() const noexcept { return b_ + 1;",
                           "int f() const noexcept { return b_ + 2;"))
        self.assertEqual(source.left_over, [])
        self.assertIn("if (MUTANT(1)) { return b_ + 2; \n}", source.text)

    def test_initialisers_become_choices(self):
        source = switched(("b_(a)", "b_(7)"), ("int b_ = 4", "int b_ = 5"), ("b_(a)", "b_()"))
        self.assertEqual(source.left_over, [])
        for text in ["MUTANT(1) ? (7)", "MUTANT(2) ? (5) : (4)", "MUTANT(3) ? (decltype(b_)())"]:
            self.assertIn(text.replace("(decltype(b_)())", "decltype(b_)()"), source.text)

    def test_one_argument_of_several_becomes_a_choice(self):
        source = switched(("sum(a, b), b)", "sum(a, a), b)"), ("b), b)", "b), a)"))
        self.assertEqual(source.left_over, [])
        self.assertIn("MUTANT(1) ? (sum(a, a)) : (sum(a, b))", source.text)
        self.assertIn("MUTANT(2) ? (a) : (b)", source.text)
        self.assertEqual(switched(("b), b)", "b))")).text, SOURCE)

    def test_declarations_are_left_over(self):
        source = switched(("int b_ = 4", "long b_ = 4"), ("One, Two", "Two, One"))
        self.assertEqual(len(source.left_over), 2)
        self.assertEqual(source.text, SOURCE)

    def test_line_tells_its_mutant(self):
        source = switched(("h();", "h(2);"), ("h();", "h(3);"))
        lines = source.text.split("\n")
        self.assertEqual(source.number_at(next(i for i, l in enumerate(lines, 1) if "h(2)" in l)), 1)
        self.assertEqual(source.number_at(next(i for i, l in enumerate(lines, 1) if "h(3)" in l)), 2)
        self.assertIsNone(source.number_at(1))


if __name__ == "__main__":
    unittest.main()
