"""The blocks of a document: what stands between two fences, and what is said about it.

How documents are written, so that what they show can be run:

- A block of kind `console` holds commands behind "$ " and what they print. A line "..."
  stands for any lines that are left out.
- A block of kind `sh` holds commands whose output is not shown.
- A block whose paragraph ends with a file name and a colon is that file: "Put this into
  `pinch.json`:".
- Everything else says in a comment that no reader sees why it is not run:
  <!-- not run: takes a cluster -->. A comment <!-- ends with status 1 --> says how the
  last command of a block ends, if not well.
"""

import dataclasses
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]

# What the definitions in these say is compared by documents_test, which also refuses
# any other block there.
DEFINITIONS = {"docs/language.md", "docs/verdicts.md"}


def pieces_of_the_test():
    """What scripts/test knows, as it says itself when it is asked for something else."""
    ended = subprocess.run([ROOT / "scripts" / "test", "no-such-piece"], capture_output=True, text=True)
    return re.search(r"usage: scripts/test \[([\w|-]+)\]", ended.stderr).group(1).split("|")


def documents():
    found = [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")]
    return sorted(str(path.relative_to(ROOT)) for path in found)


@dataclasses.dataclass
class Block:
    line: int  # of the opening fence, from 1
    kind: str
    text: str
    paragraph: str  # what stands above it, in one line
    marks: list  # the comments between that and the fence

    def file(self):
        """The name of the file that it is, or None."""
        name = re.search(r"`([\w.-]+\.\w+)`:$", self.paragraph)
        return name.group(1) if name and self.kind not in ("console", "sh") else None

    def reason_not_to_run(self):
        return next((mark[9:] for mark in self.marks if mark.startswith("not run: ")), None)

    def status(self):
        """How its last command ends."""
        told = [mark.split()[-1] for mark in self.marks if mark.startswith("ends with status ")]
        return int(told[0]) if told else 0


class Unreadable(Exception):
    pass


def _above(lines):
    """The paragraph and the comments that a block follows."""
    lines = list(lines)
    marks = []
    while lines:
        line = lines[-1].strip()
        mark = re.fullmatch(r"<!-- (.*) -->", line)
        if mark:
            marks.insert(0, mark.group(1))
        elif line:
            break
        lines.pop()
    paragraph = []
    while lines and lines[-1].strip() and not lines[-1].lstrip().startswith("```"):
        paragraph.insert(0, lines.pop().strip())
    return " ".join(paragraph), marks


def blocks(text):
    """The blocks of a text, in order. @throws Unreadable for a fence that is not closed,
    and for a block that is only indented: it says nothing about its kind."""
    found = []
    lines = text.split("\n")
    number = 0
    while number < len(lines):
        fence = re.fullmatch(r"( *)```(\w*)", lines[number])
        if not fence:
            if lines[number].startswith("    ") and not lines[number - 1].strip():
                raise Unreadable(f"{number + 1}: a block without fences")
            number += 1
            continue
        indent, kind = fence.groups()
        ends = [i for i in range(number + 1, len(lines)) if lines[i] == indent + "```"]
        if not ends:
            raise Unreadable(f"{number + 1}: the fence is not closed")
        body = [line.removeprefix(indent) + "\n" for line in lines[number + 1 : ends[0]]]
        found.append(Block(number + 1, kind, "".join(body), *_above(lines[:number])))
        number = ends[0] + 1
    return found


def inline_code(text):
    """What stands in `...` outside of blocks."""
    outside = re.sub(r"(?ms)^( *)```.*?^\1```$", "", text)
    return [" ".join(code.split()) for code in re.findall(r"`([^`]+)`", outside)]
