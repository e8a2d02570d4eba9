title an excited oscillator has none

# As the damped one, with the sign of the damping turned round: A = [0, 1; -2, 1],
#
#   [x1  x2                               ]
#   [x2  x3                               ]
#   [            4 x2        -x1-x2+2 x3  ]  > 0
#   [        -x1-x2+2 x3     -2 x2-2 x3   ]
#
# The diagonal alone contradicts itself: x3 > 0 and x2 > 0, but x2 + x3 < 0.
strict 1
size 4

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
  0 0  4 -1
  0 0 -1 -2
matrix
  0 0  0  0
  0 1  0  0
  0 0  0  2
  0 0  2 -2
