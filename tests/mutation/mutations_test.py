import random
import unittest

from mutations import mutations

SOURCE = '''#include "app/seven.h"
// 7 == 7 is true;
std::vector<int> seven(int&& given) {
    const int most = 7;
    if (given < most && !closed()) return {};
    log("Seven: ", given);
    return {given};
}
'''


class Mutations(unittest.TestCase):
    found = mutations("seven.cpp", SOURCE, random.Random(1))

    def of(self, kind):
        return sorted((mutation.old, mutation.new) for mutation in self.found if mutation.kind == kind)

    def test_turn_comparisons_and_no_angle_brackets(self):
        self.assertEqual(self.of("comparison"), [("<", "<=")])

    def test_swap_connectives_and_no_references(self):
        self.assertEqual(self.of("connective"), [("&&", "||")])

    def test_change_constants_outside_of_comments(self):
        self.assertEqual(self.of("constant"), [("7", "8")])

    def test_negate_conditions(self):
        whole = "given < most && !closed()"
        self.assertEqual(self.of("condition"), [("!", ""), (whole, f"!({whole})")])

    def test_drop_statements_and_no_declarations(self):
        self.assertEqual(self.of("statement"), [('log("Seven: ", given);', ";"), ("return {};", ";")])

    def test_change_one_letter_of_a_text_and_no_include(self):
        self.assertEqual(len(self.of("text")), 1)

    def test_say_where(self):
        for mutation in self.found:
            self.assertTrue(SOURCE.startswith(mutation.old, mutation.offset))


if __name__ == "__main__":
    unittest.main()
