// The ten expressions as a C programmer writes them.
//
// Included where C_EXPRESSION(name, body) is defined, twice by each of its users, so it has no
// guard. A body sees the doubles a, b and c. cases.py has the same expressions in the other
// languages, under the same names.

// clang-format off
C_EXPRESSION(sum, a + b * 2)
C_EXPRESSION(polynomial, ((((0.5 * a + 1.5) * a - 2.25) * a + 0.75) * a - 1.25) * a + 3)
C_EXPRESSION(hypotenuse, sqrt(a * a + b * b))
C_EXPRESSION(waves, sin(a) * cos(b) + exp(-(a * a)))
C_EXPRESSION(sign, a > 0 ? b : -b)
C_EXPRESSION(conditions, a > 0 ? (b > 0 ? a * b : (c > 1 ? b - c : b + c)) : c * 2)
C_EXPRESSION(square, (a / b) * (a / b))
C_EXPRESSION(powers, log(a + 2) * pow(b + 1.5, c) + pow(a + 2, 0.7))
C_EXPRESSION(logic, (a > 0.5 && b < 0.3) || c == 1)
C_EXPRESSION(terms, a * 1.01 + b * 1.02 - c * 1.03 + a * b - b * c * 0.5 + a * c + a * 2.01 -
                        b * 2.02 + c * 2.03 - a * b * 1.5 + b * c + a * c * 0.25 + a * 3.01 +
                        b * 3.02 - c * 3.03 + a * a - b * b + c * c + a * 4.01 - b * 4.02 +
                        c * 4.03 - a * a * 0.125 + b * b * 2.5 - c * c * 0.75 + a * 5.01 +
                        b * 5.02 - c * 5.03 + a * b * c - 6.5 + a * a * b)
// clang-format on
