"""What the documents say about the house holds: who may include whom and what is linked
(ARCHITECTURE.md), the files that are named, where links lead, the pieces of scripts/test
(CONTRIBUTING.md), and the texts of the unit (docs/unit.md).
"""

import collections
import itertools
import pathlib
import re
import sys
import unittest

sys.dont_write_bytecode = True  # tests leave nothing in the tree
import blocks

ROOT = blocks.ROOT
FOLDERS = sorted(
    entry.name
    for entry in ROOT.iterdir()
    if entry.is_dir() and entry.name != "build" and (entry.name[0] != "." or entry.name == ".ci")
)

# What is included from a package, by the name that the table has for it.
PACKAGES = {
    "CLI/": "CLI11",
    "Eigen/": "Eigen",
    "nlohmann/": "nlohmann-json",
    "csdp/": "CSDP",
    "dlfcn.h": "dl",
}


def text_of(name):
    return (ROOT / name).read_text(encoding="utf-8")


def table(text, *titles):
    """The rows of the table that has these titles, as cells."""
    lines = iter(text.splitlines())
    for line in lines:
        if line.startswith("|") and tuple(c.strip() for c in line.strip("|").split("|")) == titles:
            rows = itertools.takewhile(lambda row: row.startswith("|"), itertools.islice(lines, 1, None))
            return [[cell.strip() for cell in row.strip("|").split("|")] for row in rows]
    raise AssertionError(f"no table with the titles {titles}")


def sources(folder):
    return sorted(p for p in (ROOT / folder).rglob("*") if p.suffix in (".c", ".cpp", ".h"))


def includes(source):
    return re.findall(r'^\s*#\s*include\s*["<]([^">]+)[">]', source.read_text(encoding="utf-8"), re.M)


def is_of_tests(source):
    return source.stem.endswith("_test") or source.name.startswith("test_")


def without_tests(folder):
    """What is no test, and the headers that such sources reach."""
    reached = set()
    todo = [s for s in sources(folder) if s.suffix != ".h" and not is_of_tests(s)]
    while todo:
        source = todo.pop()
        if source not in reached:
            reached.add(source)
            todo += [ROOT / n for n in includes(source) if n.startswith(folder + "/")]
    return reached


class HouseTest(unittest.TestCase):
    def setUp(self):
        rows = table(text_of("ARCHITECTURE.md"), "folder", "what lives there", "may include", "links")
        self.may_include = {}
        self.links = {}
        for folders, _, may, links in rows:
            for folder in re.findall(r"`([\w.]+)/`", folders):
                self.may_include[folder] = may
                self.links[folder] = links

    def test_every_folder_is_in_the_table(self):
        self.assertEqual(sorted(self.may_include), FOLDERS)

    def test_modules_include_what_they_may(self):
        for folder in FOLDERS:
            may = self.may_include[folder]
            if may == "anything":
                continue
            allowed = {folder, *re.findall(r"`(\w+)/`", may)}
            for source in sources(folder):
                for name in includes(source):
                    other = name.split("/")[0]
                    if other not in FOLDERS or other == "tests" and is_of_tests(source):
                        continue
                    self.assertIn(other, allowed, f"{source.relative_to(ROOT)} includes {name}")

    def test_folders_of_the_solver_include_those_before_them(self):
        rows = table(text_of("ARCHITECTURE.md"), "folder", "from", "to")
        order = [re.fullmatch(r"`solver/(\w+)/`", row[0]).group(1) for row in rows]
        self.assertEqual(sorted(order), sorted(p.name for p in (ROOT / "solver").iterdir() if p.is_dir()))
        for source in sources("solver"):
            own = order.index(source.relative_to(ROOT / "solver").parts[0])
            for name in includes(source):
                if name.startswith("solver/"):
                    other = order.index(name.split("/")[1])
                    self.assertLessEqual(other, own, f"{source.relative_to(ROOT)} includes {name}")

    def test_commands_are_included_by_nobody(self):
        for folder in FOLDERS:
            for source in sources(folder):
                for name in includes(source):
                    if re.match(r"\w+/command/", name) and folder != "tests":
                        self.assertEqual(
                            str(pathlib.Path(name).parent), str(source.relative_to(ROOT).parent)
                        )

    def test_packages_are_those_of_the_table(self):
        used = collections.defaultdict(set)
        for folder in ("zel", "unit", "solver", "host", "grasp"):
            for source in without_tests(folder):
                for name in includes(source):
                    used[folder] |= {p for begin, p in PACKAGES.items() if name.startswith(begin)}
        for folder, packages in used.items():
            named = {p for p in PACKAGES.values() if re.search(rf"\b{p}\b", self.links[folder])}
            self.assertEqual(packages, named, folder)
        self.assertEqual(used["unit"] | used["zel"], set())


def headings(text):
    """As links name them."""
    titles = re.findall(r"(?m)^#+ (.*)$", text)
    return [re.sub(r"[^\w -]", "", title.lower()).replace(" ", "-") for title in titles]


class NamesTest(unittest.TestCase):
    def test_files_that_are_named_are_there(self):
        begins = "|".join(re.escape(folder) for folder in FOLDERS)
        for document in blocks.documents():
            for code in blocks.inline_code(text_of(document)):
                for name in re.findall(rf"(?<![\w./-])(?:{begins})/[\w./*-]*", code):
                    with self.subTest(document=document, name=name):
                        name = name.rstrip(".")
                        # A module is named without its suffix.
                        found = [*ROOT.glob(name), *ROOT.glob(f"{name}.*")]
                        self.assertNotEqual(found, [])

    def test_modules_of_the_walks_are_there(self):
        """ARCHITECTURE.md walks through the modules of a folder by their names alone."""
        stems = {s.stem for f in FOLDERS for s in (ROOT / f).rglob("*")}
        no_files = {"system", "zelrun", "decide_with_fallback"}
        text = text_of("ARCHITECTURE.md")
        for code in blocks.inline_code(text[text.index("## Inside the host") :]):
            if re.fullmatch(r"[a-z][a-z_]*", code) and code not in no_files:
                with self.subTest(name=code):
                    self.assertTrue(code in stems, "no file has this name")

    def test_links_lead_somewhere(self):
        for document in blocks.documents():
            for target in re.findall(r"\]\(([^)]+)\)", text_of(document)):
                if re.match(r"\w+://", target):
                    continue
                with self.subTest(document=document, target=target):
                    name, _, heading = target.partition("#")
                    file = (ROOT / document).parent / name if name else ROOT / document
                    self.assertTrue(file.exists())
                    if heading:
                        self.assertIn(heading, headings(file.read_text(encoding="utf-8")))


def literals(source):
    """The texts in a source, those that stand behind each other as one."""
    text = re.sub(r'"\s*\n\s*"', "", source.read_text(encoding="utf-8"))
    return re.findall(r'(?<!include )"((?:[^"\\\n]|\\.)*)"', text)


class UnitTest(unittest.TestCase):
    def setUp(self):
        self.document = text_of("docs/unit.md")
        self.texts = [
            text.replace("\\n", "")
            for source in sources("unit")
            if source.name.startswith(("sdpsol_", "zel_", "kem_")) and not is_of_tests(source)
            for text in literals(source)
        ]

    def test_every_warning_is_described(self):
        warnings = [t for t in self.texts if re.search(r"arning|unknow|NOT successful", t)]
        self.assertGreater(len(warnings), 12)
        for warning in warnings:
            # The prefixes of a warning stand in the document with what follows them.
            self.assertTrue(warning.strip("_") in self.document, warning)

    def test_what_is_described_is_printed(self):
        shown = table(self.document, "text", "which input") + table(self.document, "text", "code")
        for row in shown:
            for text in re.findall(r"`([^`]+)`", row[0]):
                self.assertTrue(any(text in printed for printed in self.texts), text)

    def test_methods_that_are_named_are_there(self):
        listed = next(b for b in blocks.blocks(self.document) if "zelrun list" in b.text).text
        for name in re.findall(r"`(?:General|IntForce):(\w+)`", self.document):
            self.assertTrue(re.search(rf"(?m)^    {name}$", listed), name)
        names = re.findall(r"(?m)^    ([A-Z]\w+)$", listed)
        self.assertEqual(len(names), 10)
        for name in [f":{name}" for name in names] + ["Is_Feasible: "]:
            self.assertTrue(name in self.document, name)


class PiecesTest(unittest.TestCase):
    def test_every_piece_of_the_test_is_described(self):
        rows = table(text_of("CONTRIBUTING.md"), "piece", "what it shows", "takes")
        described = [re.fullmatch(r"`scripts/test ([\w-]+)`", row[0]).group(1) for row in rows]
        self.assertEqual(sorted(described), sorted(blocks.pieces_of_the_test()))


if __name__ == "__main__":
    unittest.main()
