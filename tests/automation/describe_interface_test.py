#!/usr/bin/env python3
"""Reads small headers with automation/describe_interface.py: the data, or one error with its line."""
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "automation"))

import describe_interface  # noqa: E402
import interface_outputs  # noqa: E402
from interface_header import DescriptionError, Member, Parameter, read_header  # noqa: E402

VALID = """\
// How to write it.

// Of the class,
// in two lines:
// - an item
//   that goes on
// - another
class clsQuery {
 public:
  clsQuery();
  // Closes.
  ~clsQuery();
  clsQuery(const clsQuery&) = delete;
  clsQuery& operator=(const clsQuery&) = delete;

  // --- Calls ---
  // Of the group.

  // Asks.
  //
  // Returns "a\\b" or -1.
  Variant Ask(const Variant& strWhat, Variant& strPlace, const Variant& intMost = Missing,
              Variant* strStatus = nullptr);
  // Ends.
  void End();

  // Of what follows.

  // Write-only property: the hosts.
  void Hosts(const Variant& strHosts);
  // Says whether.
  bool Is();

  // --- Settings ---

  // A number.
  std::int32_t lngNumber = 0;
  // A text.
  std::string strText;
  // A date.
  DateTime datWhen;

 private:
  int state_ = 0;
};
"""
NUMBERS = "1 lngNumber\n2 strText\n3 datWhen\n4 Ask\n5 End\n6 Hosts\n7 Is\n"

# Name, a text of the valid header, its replacement, the error.
WRONG_HEADERS = [
    ("no class", "class clsQuery {", "class Query {", "1: the class is missing"),
    ("class without documentation", "// - another\n", "\n", "8: clsQuery has no documentation"),
    ("private first", " public:", " private:", '9: the public section does not come first; expected " public:"'),
    ("no private section", " private:\n", "", "44: the class has no private section"),
    ("public again", "  int state_", " public:\n  int state_", '44: a second public or protected section'),
    ("outside ASCII", "// A text.", "// Ein Schlüssel.", "38: a character outside ASCII"),
    ("comment without a declaration", "  // Closes.\n", "  // Closes.\n\n", "11: a comment without a declaration"),
    ("member outside of groups", "  // --- Calls ---\n  // Of the group.\n\n", "",
     "19: a member outside the groups"),
    ("unknown group line", "// --- Calls ---", "// --- Calls", "16: not a group line"),
    ("group twice", "--- Settings ---", "--- Calls ---", '34: the group "Calls" exists already'),
    ("empty group", "  // --- Settings ---\n", "  // --- Empty ---\n\n  // --- Settings ---\n",
     '34: the group "Empty" is empty'),
    ("empty last group", " private:", "  // --- Last ---\n\n private:", '43: the group "Last" is empty'),
    ("method without documentation", "  // Ends.\n", "", "24: End has no documentation"),
    ("variable without documentation", "  // A date.\n", "", "40: datWhen has no documentation"),
    ("documentation cut off by a blank line", "  // Ends.\n", "  // Ends.\n\n", "26: End has no documentation"),
    ("empty documentation", "  // Ends.", "  //", "24: the documentation of End is empty"),
    ("comment without a blank", "  // Ends.", "  //Ends.", "24: not a line of a comment"),
    ("comment indented too far", "  // Ends.", "   // Ends.", "24: not a comment or declaration"),
    ("indented line outside of a list", "  // Ends.", "  // Ends\n  //   all.",
     "25: an indented line outside an item"),
    ("comment after a declaration", "void End();", "void End();  // soon", "25: a comment after"),
    ("comment inside a declaration", "intMost = Missing,\n", "intMost = Missing,  // any\n", "22: a comment after"),
    ("declaration without an end", "void End();", "void End()", "25: the declaration has no end"),
    ("declaration cut off at the end of the section", "  DateTime datWhen;\n\n", "  DateTime datWhen\n",
     "41: the declaration has no end"),
    ("no member", "void End();", "friend class End;", "25: not a member declaration"),
    ("constant method", "void End();", "void End() const;", "25: not a member declaration"),
    ("unknown type of a variable", "DateTime datWhen", "double datWhen", "41: datWhen has the unknown type double"),
    ("unknown type of a result", "bool Is()", "int Is()", "32: Is has the unknown type int"),
    ("number without a start value", "lngNumber = 0;", "lngNumber;", "37: lngNumber has another start value"),
    ("text with a start value", "strText;", 'strText = "x";', "39: strText has another start value"),
    ("unknown type of a parameter", "const Variant& strHosts", "int hosts",
     '30: Hosts has the parameter "int hosts"'),
    ("output without a default", "strStatus = nullptr", "strStatus", '22: Ask has the parameter "Variant* strStatus"'),
    ("input with another default", "intMost = Missing", "intMost = 5", "22: Ask has the parameter"),
    ("required input after an optional one", "intMost = Missing,", "intMost = Missing, const Variant& strLast,",
     "22: Ask has a required parameter after an optional one"),
    ("in-out value after an optional one", "Variant* strStatus = nullptr", "Variant& strStatus",
     "22: Ask has a required parameter after an optional one"),
    ("parameter twice", "Variant& strPlace", "Variant& STRWHAT", "22: Ask has two parameters strWhat"),
    ("method twice", "bool Is()", "bool end()", "32: end is declared twice"),
    ("variable named as a method", "strText", "ask", "39: ask is declared twice"),
    ("property without an input", "const Variant& strHosts", "", "30: Hosts cannot be a property"),
    ("property with a result", "void Hosts", "bool Hosts", "30: Hosts cannot be a property"),
]

# Name, the numbers, the error.
WRONG_NUMBERS = [
    ("nothing is recorded", "", "component/clsQuery.h:37: lngNumber has no number"),
    ("a member is not recorded", NUMBERS.replace("7 Is\n", ""), "component/clsQuery.h:32: Is has no number"),
    ("a member was removed", NUMBERS + "8 Was\n",
     "automation/interface_numbers.txt:8: component/clsQuery.h declares no Was"),
    ("a number was changed", NUMBERS.replace("4 ", "9 "), "automation/interface_numbers.txt:4: Ask has the number 9"),
    ("a number is assigned twice", NUMBERS.replace("4 ", "3 "),
     "automation/interface_numbers.txt:4: Ask has the number 3"),
    ("a line was removed", NUMBERS.replace("2 strText\n", ""), "automation/interface_numbers.txt:2: datWhen has the"),
    ("a name is recorded twice", NUMBERS + "8 ASK\n", "automation/interface_numbers.txt:8: ASK is recorded twice"),
    ("not a record", NUMBERS.replace("5 End", "End"), "automation/interface_numbers.txt:5: not a record"),
]


def error_of(action):
    try:
        action()
    except DescriptionError as error:
        return str(error)
    return "no error"


class HeaderTest(unittest.TestCase):
    def test_a_valid_header_gives_its_members(self):
        interface = describe_interface.load(VALID, NUMBERS)
        self.assertEqual(interface.documentation,
                         ["Of the class, in two lines:", "- an item that goes on", "- another"])
        calls, settings = interface.groups
        self.assertEqual((calls.name, settings.name), ("Calls", "Settings"))
        ask = Member("Ask", "method", "Variant",
                     [Parameter("strWhat", "in"), Parameter("strPlace", "in-out"), Parameter("intMost", "optional in"),
                      Parameter("strStatus", "optional out")],
                     ["Asks.", 'Returns "a\\b" or -1.'], line=22, number=4)
        self.assertEqual(calls.entries, [
            ["Of the group."],
            ask,
            Member("End", "method", "", [], ["Ends."], line=25, number=5),
            ["Of what follows."],
            Member("Hosts", "write-only property", "", [Parameter("strHosts", "in")],
                   ["Write-only property: the hosts."], line=30, number=6),
            Member("Is", "method", "Boolean", [], ["Says whether."], line=32, number=7),
        ])
        self.assertEqual(settings.entries, [
            Member("lngNumber", "variable", "Long", [], ["A number."], line=37, number=1),
            Member("strText", "variable", "String", [], ["A text."], line=39, number=2),
            Member("datWhen", "variable", "Date", [], ["A date."], line=41, number=3),
        ])

    def test_each_wrong_header_is_an_error_with_its_line(self):
        for name, old, new, expected in WRONG_HEADERS:
            with self.subTest(name):
                self.assertEqual(VALID.count(old), 1)
                error = error_of(lambda: read_header(VALID.replace(old, new)))
                self.assertTrue(error.startswith("component/clsQuery.h:" + expected), error)


class NumbersTest(unittest.TestCase):
    def test_each_wrong_record_is_an_error_with_its_line(self):
        for name, numbers, expected in WRONG_NUMBERS:
            with self.subTest(name):
                error = error_of(lambda: describe_interface.load(VALID, numbers))
                self.assertTrue(error.startswith(expected), error)

    def test_the_error_of_a_member_without_a_number_names_the_command(self):
        error = error_of(lambda: describe_interface.load(VALID, ""))
        self.assertIn('"automation/describe_interface.py --record"', error)

    def test_the_first_recording_numbers_variables_before_methods(self):
        self.assertEqual(describe_interface.with_records(VALID, ""), NUMBERS)

    def test_a_later_recording_adds_new_members_at_the_end(self):
        header = VALID.replace("  // Ends.", "  // Starts.\n  void Start();\n  // Ends.")
        self.assertEqual(describe_interface.with_records(header, NUMBERS), NUMBERS + "8 Start\n")

    def test_a_recording_does_not_hide_a_removed_member(self):
        self.assertIn("declares no Was", error_of(lambda: describe_interface.with_records(VALID, NUMBERS + "8 Was\n")))


class OutputsTest(unittest.TestCase):
    def make(self, output):
        return describe_interface.OUTPUTS[output](describe_interface.load(VALID, NUMBERS))

    def test_the_method_table_has_each_member_with_its_kinds(self):
        text = " ".join(self.make("cpp").split())
        self.assertIn('Method<&clsQuery::Ask, ResultKind::Variant, ParameterKind::In, ParameterKind::InOut, '
                      'ParameterKind::OptionalIn, ParameterKind::OptionalOut>( {.number = 4, .name = "Ask", .group = '
                      '"Calls", .documentation = "Asks.\\n\\nReturns \\"a\\\\b\\" or -1.", .signature = "Ask(strWhat, '
                      'inout strPlace, [intMost], [out strStatus]) -> Variant"}, "strWhat", "strPlace", "intMost", '
                      '"strStatus")', text)
        self.assertIn('.signature = "Hosts = strHosts", .isProperty = true}, "strHosts")', text)
        self.assertIn('Variable<&clsQuery::datWhen>( {.number = 3, .name = "datWhen", .group = "Settings", '
                      '.documentation = "A date."})', text)

    def test_the_type_library_has_each_member_under_its_number(self):
        text = " ".join(self.make("idl").split())
        properties, _, methods = text.partition(" methods: ")
        self.assertIn('[id(1)] long lngNumber; [id(2)] BSTR strText; [id(3)] DATE datWhen;', properties)
        self.assertIn('[id(4), helpstring("Asks.")] VARIANT Ask([in] VARIANT strWhat, [in, out] VARIANT* strPlace, '
                      '[in, optional] VARIANT intMost, [in, out, optional] VARIANT* strStatus); '
                      '[id(5), helpstring("Ends.")] void End();', methods)
        self.assertIn('[id(6), propput, helpstring("Write-only property: the hosts.")] '
                      'void Hosts([in] VARIANT strHosts);', methods)
        self.assertIn('VARIANT_BOOL Is();', methods)

    def test_the_class_for_php_names_arguments_by_their_positions(self):
        text = " ".join(self.make("php").replace("     * ", "").split())
        self.assertIn("public function Ask(mixed $strWhat, mixed &$strPlace, mixed $intMost = Argument::LeftOut, mixed "
                      "&$strStatus = Argument::LeftOut): mixed { return $this->invoke(4, [0 => $strWhat, 2 => $intMost], "
                      "[1 => &$strPlace, 3 => &$strStatus]); }", text)
        self.assertIn("public function End(): void { $this->invoke(5, [], []); }", text)
        self.assertIn("@property \\DateTimeImmutable $datWhen A date.", text)
        self.assertIn("'Hosts' => 6,", text)
        self.assertNotIn("function Hosts", text)

    def test_the_pages_escape_the_markup_of_their_languages(self):
        header = VALID.replace("// Ends.", "// .End of strText: a*b_c ^d^ `e` <f> | g-h.")
        interface = describe_interface.load(header.replace("// A text.", "// One | two."), NUMBERS)
        markdown = interface_outputs.markdown_page(interface)
        self.assertIn("\n.End of `strText`: a\\*b\\_c ^d^ \\`e\\` \\<f> | g-h.\n", markdown)
        self.assertIn("| `strText` | String | One \\| two. |\n", markdown)
        self.assertIn("\n\\&.End of \\fIstrText\\fP: a*b_c \\(had\\(ha \\(gae\\(ga <f> | g\\-h.\n",
                      interface_outputs.man_page(interface))

    def test_the_pages_show_texts_in_the_order_of_the_header(self):
        for output in ("markdown", "man"):
            with self.subTest(output):
                page = self.make(output)
                shown = ["Of the class, in two lines:", "an item that goes on", "Of the group.", "Asks.",
                         "Of what follows.", "Says whether.", "A number."]
                places = [page.find(text) for text in shown]
                self.assertEqual(places, sorted(places))
                self.assertNotIn(-1, places)


class CheckedInPagesTest(unittest.TestCase):
    def test_the_pages_are_current(self):
        interface = describe_interface.load()
        for output, page in [("markdown", "docs/methods.md"), ("man", "docs/oxaqrycln.3"),
                             ("php", "bindings/php/src/Raw/Query.php"), ("ffi", "bindings/php/oxaqrycln.ffi"),
                             ("python", "bindings/python/src/oxaqrycln/raw.pyi")]:
            with self.subTest(page):
                is_current = (ROOT / page).read_text(encoding="utf-8") == describe_interface.OUTPUTS[output](interface)
                self.assertTrue(is_current, f"regenerate it: automation/describe_interface.py --{output} {page}")

    @unittest.skipUnless(shutil.which("groff"), "groff is not installed")
    def test_the_manual_page_gives_no_warning(self):
        run = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-z", ROOT / "docs/oxaqrycln.3"], check=True, text=True,
                             stderr=subprocess.PIPE)
        self.assertEqual(run.stderr, "")


if __name__ == "__main__":
    unittest.main()
