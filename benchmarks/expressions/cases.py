"""The ten expressions in every language. c_expressions.h has them in C, under the same names."""

import dataclasses

import polars
from polars import col


@dataclasses.dataclass(frozen=True)
class Case:
    name: str
    text: str                    # as this system and its expression library write it
    sql: str
    numexpr: str
    polars: polars.Expr
    calls_library: bool = False  # needs functions that no instruction computes
    branches: bool = False       # on random data


a, b, c = col("a"), col("b"), col("c")

TERMS = ("a*1.01+b*1.02-c*1.03+a*b-b*c*0.5+a*c+a*2.01-b*2.02+c*2.03-a*b*1.5+b*c+a*c*0.25+a*3.01+b*3.02-c*3.03"
         "+a*a-b*b+c*c+a*4.01-b*4.02+c*4.03-a*a*0.125+b*b*2.5-c*c*0.75+a*5.01+b*5.02-c*5.03+a*b*c-6.5+a*a*b")
POLYNOMIAL = "((((0.5*a+1.5)*a-2.25)*a+0.75)*a-1.25)*a+3"


def same(name, text, expression, **more):
    """An expression that reads the same everywhere."""
    return Case(name, text, text, text, expression, **more)


CASES = (
    same("sum", "a+b*2", a + b * 2),
    same("polynomial", POLYNOMIAL, ((((0.5 * a + 1.5) * a - 2.25) * a + 0.75) * a - 1.25) * a + 3),
    same("hypotenuse", "sqrt(a*a+b*b)", (a * a + b * b).sqrt()),
    same("waves", "sin(a)*cos(b)+exp(-(a*a))", a.sin() * b.cos() + (-(a * a)).exp(), calls_library=True),
    Case("sign", "a>0 ? b : -b", "CASE WHEN a>0 THEN b ELSE -b END", "where(a>0, b, -b)",
         polars.when(a > 0).then(b).otherwise(-b), branches=True),
    Case("conditions", "a>0 ? (b>0 ? a*b : (c>1 ? b-c : b+c)) : c*2",
         "CASE WHEN a>0 THEN CASE WHEN b>0 THEN a*b ELSE CASE WHEN c>1 THEN b-c ELSE b+c END END ELSE c*2 END",
         "where(a>0, where(b>0, a*b, where(c>1, b-c, b+c)), c*2)",
         polars.when(a > 0).then(polars.when(b > 0).then(a * b).otherwise(
             polars.when(c > 1).then(b - c).otherwise(b + c))).otherwise(c * 2), branches=True),
    Case("square", "(a/b)^2", "pow(a/b, 2)", "(a/b)**2", (a / b).pow(2)),
    Case("powers", "log(a+2)*(b+1.5)^c+(a+2)^0.7", "ln(a+2)*pow(b+1.5, c)+pow(a+2, 0.7)",
         "log(a+2)*(b+1.5)**c+(a+2)**0.7", (a + 2).log() * (b + 1.5).pow(c) + (a + 2).pow(0.7), calls_library=True),
    Case("logic", "(a>0.5 && b<0.3) || c==1", "CAST((a>0.5 AND b<0.3) OR c=1 AS DOUBLE)",
         "where(((a>0.5) & (b<0.3)) | (c==1), 1.0, 0.0)",
         (((a > 0.5) & (b < 0.3)) | (c == 1)).cast(polars.Float64), branches=True),
    same("terms", TERMS, eval(TERMS)),  # pylint: disable=eval-used
)
