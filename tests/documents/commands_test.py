"""The documents cannot lie: every command in them is run, each document in a folder of
its own that looks like the top of this project, and prints what stands there.

What cannot be run says so (see blocks.py), and is held to the options that there are.

UPDATE_GOLDEN=1 rewrites what the documents show, apart from where lines are left out;
such a run fails, so that it is never taken for a passing one.

commands_test.py FOLDER: of the commands sdpsol, zelrun and grasp.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True  # tests leave nothing in the tree
import blocks
import console

BIN = pathlib.Path()
PROGRAMS = ("sdpsol", "grasp", "zelrun list", "zelrun run", "zelrun check", "zelrun")


def like_the_project(folder):
    """Links to what a user sees at the top; build/release/bin is that of this build."""
    for entry in blocks.ROOT.iterdir():
        if entry.name not in ("build", ".git"):
            (folder / entry.name).symlink_to(entry)
    release = folder / "build" / "release"
    release.mkdir(parents=True)
    (release / "bin").symlink_to(BIN)
    (release / "lib").symlink_to(BIN.parent / "lib")
    return {"PATH": f"{release / 'bin'}:{os.environ['PATH']}", "LC_ALL": "C.UTF-8"}


def pieces_of_the_test():
    return set(blocks.pieces_of_the_test())


def options_in(text):
    return set(re.findall(r"(?<![\w-])--?[A-Za-z][\w-]*", text))


class Options:
    def __init__(self):
        self._known = {}

    def unknown(self, code):
        """The options and pieces in a piece of code that there are not."""
        wrong = []
        for words in re.split(r"[|;&\n]", re.sub(r"\\\n", " ", code)):
            words = re.sub(r"(^|\s)#.*", "", words)
            for program in PROGRAMS:
                command = re.search(rf"(?:^|[ /'(]){program}( .*|$)", words)
                if command:
                    given = options_in(command.group(1))
                    wrong += [f"{program} {o}" for o in sorted(given - self._of(program))]
                    break
            for piece in re.findall(r"scripts/test ([a-z][\w-]*)", words):
                if piece not in pieces_of_the_test():
                    wrong.append(f"scripts/test {piece}")
        return wrong

    def _of(self, program):
        if program not in self._known:
            name, *rest = program.split()
            ended = subprocess.run(
                [str(BIN / name), *rest, "--help"], capture_output=True, text=True, check=True
            )
            self._known[program] = options_in(ended.stdout)
        return self._known[program]


class CommandsTest(unittest.TestCase):
    options = Options()

    def run_document(self, name):
        path = blocks.ROOT / name
        text = path.read_text(encoding="utf-8")
        rewritten = text
        with tempfile.TemporaryDirectory() as scratch:
            folder = pathlib.Path(scratch)
            environment = like_the_project(folder)
            for block in blocks.blocks(text):
                with self.subTest(document=f"{name}:{block.line}"):
                    shown = self.run_block(name, block, folder, environment)
                    rewritten = rewritten.replace(block.text, shown, 1)
            for picture in re.findall(r"!\[[^]]*\]\(([^)]+)\)", text):
                with self.subTest(document=name, picture=picture):
                    self.check_picture(path.parent / picture, folder)
        for code in blocks.inline_code(text):
            with self.subTest(document=name, code=code):
                self.assertEqual(self.options.unknown(code), [])
        if rewritten != text and os.environ.get("UPDATE_GOLDEN"):
            path.write_text(rewritten, encoding="utf-8")
            self.fail(f"rewritten: {path}")

    def check_picture(self, shown, folder):
        """A picture of a document is one that its commands have drawn."""
        drawn = (folder / shown.name).read_text(encoding="utf-8")
        if console.same_picture(shown.read_text(encoding="utf-8"), drawn):
            return
        if os.environ.get("UPDATE_GOLDEN"):
            shown.write_text(drawn, encoding="utf-8")
        self.fail(f"{shown} is not what is drawn today")

    def run_block(self, name, block, folder, environment):
        """Returns the block as it should stand there."""
        if name in blocks.DEFINITIONS:
            return block.text
        if block.file():
            (folder / block.file()).write_text(block.text, encoding="utf-8")
        elif block.reason_not_to_run():
            self.assertEqual(self.options.unknown(block.text), [])
        elif block.kind == "sh":
            ((output, status),) = console.run([block.text], folder, environment)
            self.assertEqual(status, block.status(), output)
        elif block.kind == "console":
            return self.run_console(block, folder, environment)
        else:
            self.fail("neither a file nor commands, and it does not say why it is not run")
        return block.text

    def run_console(self, block, folder, environment):
        steps = console.steps(block.text)
        answers = console.run([command for command, _ in steps], folder, environment)
        self.assertEqual(answers[-1][1], block.status(), answers[-1][0])
        should_be = ""
        for (command, shown), (printed, _) in zip(steps, answers):
            is_same = console.same(shown, printed)
            should_be += "$ " + command + (shown if is_same else printed)
            if not is_same and not os.environ.get("UPDATE_GOLDEN"):
                self.assertEqual(shown, printed, command)
        return should_be


def add_documents():
    """A test for each document, so that the one that fails has a name."""
    for name in blocks.documents():
        test = lambda self, name=name: self.run_document(name)
        setattr(CommandsTest, "test_" + re.sub(r"\W", "_", name), test)


class ConsoleTest(unittest.TestCase):
    """What the comparison passes over, and what it does not."""

    def test_times_and_last_digits_differ(self):
        self.assertTrue(console.same("solved in 3.4 ms\n", "solved in  11 ms\n"))
        self.assertTrue(console.same("x = 1.4142131\n", "x = 1.4142135\n"))
        self.assertTrue(console.same("force within 0 N\n", "force within 5.3e-15 N\n"))

    def test_words_and_numbers_do_not(self):
        self.assertFalse(console.same("FEASIBLE\n", "INFEASIBLE\n"))
        self.assertFalse(console.same("x = 1.4142\n", "x = 1.4143\n"))
        self.assertFalse(console.same("line 26\n", "line 27\n"))
        self.assertFalse(console.same("x0\n", "x1\n"))
        self.assertFalse(console.same("a\n", "a\nb\n"))
        self.assertFalse(console.same("", "a\n"))
        self.assertFalse(console.same("3 N\n", "3.1 N\n"))

    def test_lines_are_left_out_only_where_that_is_shown(self):
        self.assertTrue(console.same("a\n...\nd\n", "a\nb\nc\nd\n"))
        self.assertTrue(console.same("a\n...\nc\n...\n", "a\nb\nc\nd\n"))
        self.assertFalse(console.same("a\n...\nx\n...\n", "a\nb\nc\nd\n"))
        self.assertFalse(console.same("a\n...\nb\n", "b\n"))
        self.assertFalse(console.same("...\nb\n", "b\nc\n"))

    def test_of_pictures_the_last_digits_differ(self):
        self.assertTrue(console.same_picture('<a x="1.23"/>', '<a x="1.24"/>'))
        self.assertFalse(console.same_picture('<a x="1.23"/>', '<a x="1.33"/>'))
        self.assertFalse(console.same_picture('<a x="1.23"/>', '<b x="1.23"/>'))

    def test_commands_go_on_behind_a_backslash(self):
        self.assertEqual(
            console.steps("$ a \\\n  b\nc\n$ d\n"), [["a \\\n  b\n", "c\n"], ["d\n", ""]]
        )


class BlocksTest(unittest.TestCase):
    def test_a_name_and_a_colon_make_a_file(self):
        (block,) = blocks.blocks("Put this\ninto `a.json`:\n\n```json\n{}\n```\n")
        self.assertEqual((block.file(), block.text, block.line), ("a.json", "{}\n", 4))
        (block,) = blocks.blocks("As in `a.json`.\n\n```json\n{}\n```\n")
        self.assertEqual(block.file(), None)

    def test_comments_say_why_and_how(self):
        (block,) = blocks.blocks("a\n\n<!-- not run: b c -->\n```sh\nd\n```\n")
        self.assertEqual(block.reason_not_to_run(), "b c")
        (block,) = blocks.blocks("a\n<!-- ends with status 3 -->\n```sh\nd\n```\n")
        self.assertEqual((block.status(), block.reason_not_to_run()), (3, None))

    def test_what_cannot_be_read_is_refused(self):
        for text in ("a\n\n    b\n", "```sh\na\n"):
            with self.assertRaises(blocks.Unreadable):
                blocks.blocks(text)

    def test_a_block_of_no_kind_is_refused(self):
        test = CommandsTest()
        (block,) = blocks.blocks("a\n\n```\nb\n```\n")
        with self.assertRaises(AssertionError):
            test.run_block("a.md", block, None, {})


class OptionsTest(unittest.TestCase):
    def test_options_that_there_are_not_are_found(self):
        unknown = Options().unknown
        self.assertEqual(unknown("grasp --ask all a.json | sort --no-such"), [])
        self.assertEqual(unknown("x=1 grasp --nsk all \\\n --batch a"), ["grasp --nsk"])
        self.assertEqual(unknown("zelrun run -x a.json"), ["zelrun run -x"])
        self.assertEqual(unknown("parallel 'grasp $(({#}+1)) --nsk -' ::: a"), ["grasp --nsk"])
        self.assertEqual(unknown("scripts/test layout && scripts/test out"), ["scripts/test out"])


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    add_documents()
    unittest.main()
