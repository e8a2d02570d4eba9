"""cvxopt_cones.py FILE [MATRIX SOLVER]: solves a cone program with cvxopt and says how long that took.

FILE is what second_order_text() writes. Prints one line

    SECONDS OBJECTIVE MATRIX SOLVER

where SECONDS is the median over a few calls of the solver alone: reading and building the
matrices does not count. MATRIX (dense or sparse) and SOLVER (of the equations of each step)
are those asked for or, if none are, the pair that is the quickest on this program.
"""

import statistics
import sys
import time

from cvxopt import matrix, solvers, sparse, spmatrix

ROUNDS = 3
MATRICES = {"dense": matrix, "sparse": sparse}
SOLVERS = ("chol", "qr", "ldl", "ldl2")


def read(path):
    """Returns c, G, h, dims of: minimise c'x where h - G*x is in the cones."""
    with open(path, encoding="ascii") as file:
        words = file.read().split()
    unknowns, rows, cones = map(int, words[:3])
    costs = words[3:3 + unknowns]
    entries = words[3 + unknowns:]
    lines, places, values = (entries[i::3] for i in range(3))
    entries = list(zip(map(int, lines), map(int, places), map(float, values)))
    constants = [entry for entry in entries if entry[1] < 0]
    terms = [entry for entry in entries if entry[1] >= 0]
    h = matrix(0.0, (rows + 3 * cones, 1))
    for line, _, value in constants:
        h[line] = value
    lines, places, values = zip(*terms)
    g = spmatrix([-value for value in values], lines, places, (rows + 3 * cones, unknowns))
    return -matrix([float(cost) for cost in costs]), g, h, {"l": rows, "q": [3] * cones, "s": []}


def solve(c, g, h, dims, solver):
    """Returns seconds and the objective, or None where cvxopt does not get to an optimum."""
    begun = time.perf_counter()
    try:
        solution = solvers.conelp(c, g, h, dims, kktsolver=solver)
    except (ArithmeticError, ValueError, TypeError, NotImplementedError):
        return None
    seconds = time.perf_counter() - begun
    if solution["status"] != "optimal":
        return None
    return seconds, -solution["primal objective"]


def main():
    path, *asked = sys.argv[1:]
    solvers.options["show_progress"] = False
    c, g, h, dims = read(path)
    pairs = [tuple(asked)] if asked else [(kind, solver) for kind in MATRICES for solver in SOLVERS]
    best = None
    for kind, solver in pairs:
        made = MATRICES[kind](g)
        results = [solve(c, made, h, dims, solver) for _ in range(ROUNDS)]
        if None in results:
            continue
        seconds = statistics.median(seconds for seconds, _ in results)
        if best is None or seconds < best[0]:
            best = seconds, results[0][1], kind, solver
    if best is None:
        sys.exit("cvxopt finds no optimum")
    print(*best)


if __name__ == "__main__":
    main()
