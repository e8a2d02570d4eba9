"""Blocks of kind `console`: commands, what they print, and when two such texts are one.

What is printed is what is shown where all words are the same and all numbers are, as far
as they can be: times differ from run to run, and of numbers that are no whole ones the
last digits from machine to machine.
"""

import os
import re
import subprocess

_NUMBER = r"[-+]?(?:\d+\.\d+|\d+)(?:e[-+]?\d+)?"
_TIME = re.compile(r"\b\d+(?:\.\d+)? (?:us|ms|s|min|iterations?)\b")
_SECONDS = re.compile(rf'("(?:seconds|reading|structure|engine|checking|total)": ?){_NUMBER}')
_SPLIT = re.compile(rf"(?<![\w.])({_NUMBER})(?![\w])")


def steps(text):
    """The commands of a block, each with the text that is shown behind it."""
    found = []
    lines = text.splitlines(keepends=True)
    while lines:
        line = lines.pop(0)
        if line.startswith("$ "):
            command = line[2:]
            while command.endswith("\\\n"):
                command += lines.pop(0)
            found.append([command, ""])
        elif found:
            found[-1][1] += line
        else:
            raise ValueError("a console begins with a command, '$ ...'")
    return found


def run(commands, folder, environment):
    """Runs the commands in one shell, one after the other, as on a terminal: what
    they print on both streams, and how each ends."""
    script = "".join(f"{command.rstrip()}\nprintf '\\001%s\\002' $?\n" for command in commands)
    ended = subprocess.run(
        ["bash", "-c", script],
        cwd=folder,
        env={**os.environ, **environment},
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        timeout=60,
        check=False,
    )
    pieces = re.split("\001(\\d+)\002", ended.stdout.decode())
    answers = [(pieces[i], int(pieces[i + 1])) for i in range(0, len(pieces) - 1, 2)]
    if len(answers) != len(commands):
        raise AssertionError(f"the shell stopped after {len(answers)} commands:\n{pieces[-1]}")
    return answers


def _same_number(shown, printed):
    if re.fullmatch(r"[-+]?\d+", shown) and re.fullmatch(r"[-+]?\d+", printed):
        return int(shown) == int(printed)
    a, b = float(shown), float(printed)
    return abs(a - b) <= max(1e-5 * max(abs(a), abs(b)), 1e-6)


def _same_line(shown, printed):
    if shown == printed:
        return True
    parts = []
    for line in (shown, printed):
        line = _SECONDS.sub(r"\1TIME", _TIME.sub("TIME", line))
        parts.append(_SPLIT.split(" ".join(line.split())))
    a, b = parts
    return (
        len(a) == len(b)
        and a[::2] == b[::2]
        and all(_same_number(x, y) for x, y in zip(a[1::2], b[1::2]))
    )


def _same_lines(shown, printed):
    return len(shown) == len(printed) and all(map(_same_line, shown, printed))


def same(shown, printed):
    """Whether a document may show this for what was printed."""
    lines = printed.splitlines()
    chunks = [[]]
    for line in shown.splitlines():
        if line.strip() == "...":
            chunks.append([])
        else:
            chunks[-1].append(line)
    if len(chunks) == 1:
        return _same_lines(chunks[0], lines)
    first, *middle, last = chunks
    if not _same_lines(first, lines[: len(first)]):
        return False
    at = len(first)
    for chunk in middle:
        while not _same_lines(chunk, lines[at : at + len(chunk)]):
            at += 1
            if at + len(chunk) > len(lines):
                return False
        at += len(chunk)
    return at + len(last) <= len(lines) and _same_lines(last, lines[len(lines) - len(last) :])


def same_picture(shown, drawn):
    """Whether two drawings show the same, to a twentieth of a point."""
    a, b = _SPLIT.split(shown), _SPLIT.split(drawn)
    return (
        len(a) == len(b)
        and a[::2] == b[::2]
        and all(abs(float(x) - float(y)) <= 0.05 for x, y in zip(a[1::2], b[1::2]))
    )
