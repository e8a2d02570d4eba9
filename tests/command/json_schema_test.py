"""docs/result.schema.json against the command: what `sdpsol --json` writes keeps to it,
whatever the verdict, the schema refuses what the command would never write, and
docs/json.md shows and names what is written.

The command is the one argument.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOOD = ROOT / "tests" / "definitions" / "good"
COMMAND = ""

FEASIBLE = "variable x, P(2,2) symmetric;\nP > 0; x + P(1,1) == 1; x <= 3;\n"
DEFINITIONS = {
    "without an objective": FEASIBLE,
    "maximised": FEASIBLE + "maximize o = x;\n",
    "minimised": FEASIBLE + "minimize o = trace(P);\nRELTOL = 1e-3; MAXITER = 50;\n",
    "limited only by BIGM": "variable x, y;\nx > y;\nmaximize o = x + y;\n",
    "contradictory": "variable x, y;\n[x, y; y, 1] > 0; x < -1;\n",
    "false constants": "variable x;\nx > 1; 1 > 2;\n",
    "contradictory equalities": "variable x;\nx == 1; x == 2;\n",
    "outside the box": "variable x;\nx > 20000;\n",
    "borderline": "variable x, y;\n[x, 1; 1, y] > 0; x + y < 2.000000001;\n",
    "MAXITER = 1": "variable x, P(3,3) symmetric;\nP > eye(3); trace(P) < x; maximize o = -x;\nMAXITER = 1;\n",
    "constants alone": "2 > 1;\n",
}


def no_constant(name):
    raise ValueError(f"{name} is no JSON")


def no_duplicates(pairs):
    if len(dict(pairs)) < len(pairs):
        raise ValueError("a key stands twice")
    return dict(pairs)


def parsed(text):
    return json.loads(text, parse_constant=no_constant, object_pairs_hook=no_duplicates)


def solve(*arguments, text=None, folder=None):
    return subprocess.run([COMMAND, "-q", "--json", "-", *arguments], input=text, cwd=folder,
                          check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout


class JsonSchemaTest(unittest.TestCase):
    def setUp(self):
        schema = parsed((ROOT / "docs" / "result.schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        self.validator = jsonschema.Draft202012Validator(schema)

    def test_accepts_the_results_of_all_good_definitions(self):
        files = sorted(GOOD.glob("*.def"))
        self.assertTrue(files)
        for file in files:
            with self.subTest(file.name):
                result = parsed(solve(str(file)))
                self.validator.validate(result)
                self.assertEqual(result["definition"], str(file))

    def test_accepts_results_of_every_kind(self):
        verdicts = set()
        for name, text in DEFINITIONS.items():
            with self.subTest(name):
                result = parsed(solve("-", text=text))
                self.validator.validate(result)
                self.assertEqual(result["definition"], "<standard input>")
                verdicts.add(result["verdict"])
        self.assertEqual(len(verdicts), 3)

    def test_refuses_what_is_never_written(self):
        result = parsed(solve("-", text=DEFINITIONS["maximised"]))
        self.validator.validate(result)
        false = parsed(solve("-", text=DEFINITIONS["false constants"]))
        self.validator.validate(false)
        changes = [
            {**result, "verdict": "MAYBE"},
            {**result, "verdict": "INFEASIBLE", "reason": "none", "lines": []},
            {**result, "reason": "none"},
            {**result, "iterations": -1},
            {**result, "more": 1},
            {**result, "objective": {**result["objective"], "value": None}},
            {**result, "objective": {**result["objective"], "gap": -1}},
            {**result, "variables": [{**result["variables"][0], "value": "1"}]},
            {**result, "variables": [{**result["variables"][0], "last_iterate": 1}]},
            {**result, "conditions": [{**result["conditions"][0], "relation": "< 0"}]},
            {**result, "times": {**result["times"], "engine": -1}},
            {**false, "verdict": "FEASIBLE"},
            {**false, "certificate": [{"line": 1, "condition": 1, "block": 1, "weight": 1}]},
        ]
        changes += [{k: v for k, v in result.items() if k != key} for key in result if key != "objective"]
        for i, changed in enumerate(changes):
            with self.subTest(i):
                self.assertFalse(self.validator.is_valid(changed))

    def test_has_times_that_add_up(self):
        times = parsed(solve("-", text=DEFINITIONS["maximised"]))["times"]
        parts = sum(seconds for part, seconds in times.items() if part != "total")
        self.assertGreater(times["engine"], 0)
        self.assertLessEqual(parts, times["total"] * 1.000001)

    def test_has_every_point_in_its_variables(self):
        result = parsed(solve("-", text=DEFINITIONS["maximised"]))
        values = {variable["name"]: variable for variable in result["variables"]}
        self.assertEqual(result["objective"]["value"], values["x"]["value"])
        for point in ("value", "proof"):
            rows = values["P"][point]
            self.assertEqual(rows[0][1], rows[1][0])
            self.assertGreater(rows[0][0] * rows[1][1], rows[0][1] ** 2)


class DocumentationTest(unittest.TestCase):
    def setUp(self):
        self.text = (ROOT / "docs" / "json.md").read_text(encoding="utf-8")

    def blocks(self, language):
        return re.findall(rf"^```{language}\n(.*?)^```$", self.text, re.MULTILINE | re.DOTALL)

    def assert_alike(self, shown, written, path):
        """Of what was calculated only values and the objective are the same everywhere,
        and of a flat optimum the values only to half of the digits."""
        self.assertEqual(type(shown), type(written), path)
        if isinstance(shown, dict):
            self.assertEqual(list(shown), list(written), path)
            for key, value in shown.items():
                self.assert_alike(value, written[key], f"{path}.{key}")
        elif isinstance(shown, list):
            self.assertEqual(len(shown), len(written), path)
            for i, value in enumerate(shown):
                self.assert_alike(value, written[i], f"{path}[{i}]")
        elif isinstance(shown, float):
            if re.search(r"\.(value|bound)\b|^\.parameters", path):
                self.assertAlmostEqual(shown, written, 5, path)
        elif path != ".iterations":
            self.assertEqual(shown, written, path)

    def test_shows_what_is_written(self):
        definition, = self.blocks("")
        shown, = self.blocks("json")
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "load.def").write_text(definition, encoding="utf-8")
            written = solve("load.def", folder=folder)
        self.assert_alike(parsed(shown), parsed(written), "")

    def test_names_every_member(self):
        schema = parsed((ROOT / "docs" / "result.schema.json").read_text(encoding="utf-8"))
        members = set(schema["properties"]) | set(schema["properties"]["objective"]["properties"])
        for part in ("sizes", "times"):
            members |= set(schema["properties"][part]["properties"])
        for part in ("variable", "condition", "multiplier"):
            members |= set(schema["$defs"][part]["properties"])
        missing = sorted(member for member in members if f"`{member}`" not in self.text)
        self.assertEqual(missing, [])


if __name__ == "__main__":
    COMMAND = str(pathlib.Path(sys.argv.pop(1)).resolve())
    unittest.main()
