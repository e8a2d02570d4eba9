"""The schemas of grasps and answers against what the command takes and gives.

usage: schema_test.py GRASP
"""
import json
import pathlib
import subprocess
import sys

import jsonschema

GRASP = sys.argv[1]
TOP = pathlib.Path(__file__).resolve().parents[2]
EXAMPLES = sorted((TOP / "examples" / "grasps").glob("*.json"))
QUESTIONS = [["exists"], ["friction"], ["all"], ["point", "-c", "1"],
             ["individual", "-c", "0", "-c", "1"]]
# What a schema cannot say: relations between numbers, names and keys that stand elsewhere.
BEYOND_A_SCHEMA = {
    "almost_duplicate_point", "bounds_reversed", "common_force_missing",
    "common_friction_missing", "duplicate_name", "duplicate_point", "tangent_against_normal",
    "tangent_along_normal", "third_almost_at_second", "force_too_small"}


def validator(name):
    schema = json.loads((TOP / "docs" / name).read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def answers(arguments, **options):
    ended = subprocess.run([GRASP, *arguments], capture_output=True, text=True, check=False,
                           **options)
    return [json.loads(text) for text in
            (ended.stdout.splitlines() if "--batch" in arguments else [ended.stdout])]


def main():
    grasps, replies = validator("grasp.schema.json"), validator("grasp-answer.schema.json")
    failures, verdicts = [], set()
    assert len(EXAMPLES) >= 8
    for file in EXAMPLES:
        if not grasps.is_valid(json.loads(file.read_text())):
            failures.append(f"{file.name} is no grasp for the schema")
    lines = [json.dumps(json.loads(file.read_text())) for file in EXAMPLES] + ["", "{}", "[1"]
    for question in QUESTIONS:
        found = answers(["--json", "--times", "--ask", *question, str(EXAMPLES[0])])
        found += answers(["--batch", "-", "-q", "--ask", *question], input="\n".join(lines))
        assert len(found) == len(lines) + 1
        for answer in found:
            verdicts.add(answer.get("verdict", "error"))
            for error in replies.iter_errors(answer):
                failures.append(f"{answer} does not fit: {error.message}")
    assert verdicts == {"FEASIBLE", "INFEASIBLE", "error"}, verdicts
    refused = 0
    for file in sorted((TOP / "tests/grasps/bad").glob("*.json")):
        try:
            grasp = json.loads(file.read_text())
        except ValueError:
            continue
        if grasps.is_valid(grasp) != (file.stem in BEYOND_A_SCHEMA):
            failures.append(f"{file.name}: the schema thinks otherwise than the command")
        refused += 1
    assert refused >= 20
    print("\n".join(failures))
    return 1 if failures else 0


sys.exit(main())
