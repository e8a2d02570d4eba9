title a damped oscillator has a quadratic Lyapunov function

# The oscillator x'' = -2 x - x' is y' = A y with A = [0, 1; -2, -1]. It is
# stable exactly when some P = [x1, x2; x2, x3] has P > 0 and A'P + P A < 0.
# With the two conditions as blocks of one matrix,
#
#   [x1  x2                               ]
#   [x2  x3                               ]
#   [            4 x2        -x1+x2+2 x3  ]  > 0
#   [        -x1+x2+2 x3     -2 x2+2 x3   ]
#
# x = (5, 1, 2) is a solution: P = [5, 1; 1, 2], -(A'P + P A) = [4, 0; 0, 2].
strict 1
size 4

# The constant term, then the coefficients of x1, x2 and x3.
matrix
  0 0  0 0
  0 0  0 0
  0 0  0 0
  0 0  0 0
matrix
  1 0  0  0
  0 0  0  0
  0 0  0 -1
  0 0 -1  0
matrix
  0 1  0  0
  1 0  0  0
  0 0  4  1
  0 0  1 -2
matrix
  0 0  0 0
  0 1  0 0
  0 0  0 2
  0 0  2 2
