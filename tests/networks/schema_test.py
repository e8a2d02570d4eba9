"""docs/network.schema.json against the reader of network files: the schema accepts
every example and every good network, and refuses the bad ones as far as a schema can.
The example in docs/networks.md is one of the good networks.
"""

import json
import pathlib
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
NETWORKS = ROOT / "tests" / "networks"

# What takes the plug-ins to see, or to count: the schema accepts these. A file that
# is in this list and is refused fails as well, so that the list stays what it says.
ONLY_THE_HOST_SEES = {
    "fraction_for_integer",
    "infinity_misspelt",
    "integer_too_large",
    "matrices_of_other_height",
    "matrices_of_other_rows",
    "method_without_inputs",
    "nan_for_integer",
    "number_for_array",
    "number_for_text",
    "plugin_empty_name",
    "plugin_is_a_text",
    "plugin_not_there",
    "plugin_path_not_there",
    "port_in_two_inputs",
    "port_number_of_wire_out_of_range",
    "port_number_out_of_range",
    "port_number_with_zeros",
    "port_twice",
    "port_wired_and_given",
    "port_wired_twice",
    "ragged_rows",
    "text_for_array",
    "too_few_floats",
    "two_floats_for_one",
    "unknown_dialog_field",
    "unknown_icon",
    "unknown_instance",
    "unknown_instance_of_input",
    "unknown_method",
    "unknown_method_of_wire",
    "unknown_output",
    "unknown_port",
    "wire_of_other_types",
}


class NotJson(ValueError):
    """The text is no JSON, or has a key twice: no schema ever sees it."""


def no_constant(name):
    raise NotJson(name)


def no_duplicates(pairs):
    if len(dict(pairs)) < len(pairs):
        raise NotJson("a key stands twice")
    return dict(pairs)


def read(file):
    try:
        text = file.read_text(encoding="utf-8")
        return json.loads(text, parse_constant=no_constant, object_pairs_hook=no_duplicates)
    except ValueError as error:
        raise NotJson(f"{file.name}: {error}") from error


class SchemaTest(unittest.TestCase):
    def setUp(self):
        schema = read(ROOT / "docs" / "network.schema.json")
        jsonschema.Draft202012Validator.check_schema(schema)
        self.validator = jsonschema.Draft202012Validator(schema)

    def files(self, folder):
        files = sorted(folder.glob("*.json"))
        self.assertTrue(files, f"no networks in {folder}")
        return files

    def test_accepts_examples_and_good_networks(self):
        for file in self.files(ROOT / "examples") + self.files(NETWORKS / "good"):
            with self.subTest(file.name):
                self.validator.validate(read(file))

    def test_documentation_shows_a_network_that_is_tested(self):
        shown = (ROOT / "docs" / "networks.md").read_text(encoding="utf-8")
        example = (NETWORKS / "good" / "documented.json").read_text(encoding="utf-8")
        self.assertIn(f"```json\n{example}```\n", shown)

    def test_refuses_bad_networks(self):
        for file in self.files(NETWORKS / "bad"):
            with self.subTest(file.name):
                try:
                    network = read(file)
                except NotJson:
                    self.assertNotIn(file.stem, ONLY_THE_HOST_SEES)
                    continue
                self.assertEqual(self.validator.is_valid(network), file.stem in ONLY_THE_HOST_SEES)

    def test_knows_what_only_the_host_sees(self):
        stems = {file.stem for file in self.files(NETWORKS / "bad")}
        self.assertEqual(ONLY_THE_HOST_SEES - stems, set())


if __name__ == "__main__":
    unittest.main()
