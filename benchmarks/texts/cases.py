"""The twelve expressions in every language, and the rows that they read.

string_loops.cpp has them as C++, under the same names. Positions count from 0 here and in Polars, from 1 in SQL.
"""

import dataclasses
import datetime

import numpy
import polars

# What an action has to know about dates.
DATE_OPTIONS = {"dateFormat": "yyyy-MM-dd", "referenceTime": "20000101 00:00:00", "elapsedTimeUnit": "3"}
REFERENCE = datetime.date(2000, 1, 1)
DAYS = 10_958  # thirty years

# Texts first, in the order of TextTable. Types are those of SQL.
TEXTS = ("s", "t", "p", "d")
NUMBERS = ("a", "e")
SQL_TYPES = {"s": "VARCHAR", "t": "VARCHAR", "p": "VARCHAR", "d": "VARCHAR", "a": "DOUBLE", "e": "INTEGER"}
POLARS_TYPES = {"VARCHAR": polars.String, "DOUBLE": polars.Float64, "INTEGER": polars.Int32}

CITIES = ("Sankt", "Villanueva", "Newark", "Ürgüp", "Gent", "Buenos Aires")


@dataclasses.dataclass(frozen=True)
class Case:
    name: str
    text: str  # as this system writes it
    sql: str
    polars: polars.Expr
    yields_text: bool = True


s, t, p, d, a, e = map(polars.col, (*TEXTS, *NUMBERS))
DATE, PATTERN = "%Y-%m-%d", "([0-9]+)-([0-9]+)"

# Peers get the form that is fastest for them.
CASES = (
    Case("upper", "toupper(s)", "upper(s)", s.str.to_uppercase()),
    Case("part", "substr(s,2,5)", "substring(s,3,5)", s.str.slice(2, 5)),
    Case("replace", 'replace(s,"a","xy")', "replace(s,'a','xy')", s.str.replace_all("a", "xy", literal=True)),
    Case("contains", 'contains(s,"rk")', "contains(s,'rk')", s.str.contains("rk", literal=True), False),
    Case("concatenate", 's//"-"//t', "concat(s,'-',t)", polars.format("{}-{}", "s", "t")),
    Case("equality", '(s=="Sankt 1" ? a : a*2)', "CASE WHEN s='Sankt 1' THEN a ELSE a*2 END",
         polars.when(s == "Sankt 1").then(a).otherwise(a * 2), False),
    Case("trim and compare", 'trim(p)>"M"', "trim(p)>'M'", p.str.strip_chars(" ") > "M", False),
    Case("length", "strlen(s)*2+a", "length(s)*2+a", s.str.len_chars() * 2 + a, False),
    Case("date to elapsed", "toET(d)", f"d::DATE - DATE '{REFERENCE}'",
         (d.str.to_date(DATE) - REFERENCE).dt.total_days(), False),
    Case("elapsed to date", "toDate(e)", f"(DATE '{REFERENCE}' + e)::VARCHAR",
         (polars.lit(REFERENCE) + polars.duration(days=e)).dt.to_string(DATE)),
    Case("date reformatted", 'datePrint(d,"dd/MM/yyyy")', "strftime(d::DATE,'%d/%m/%Y')",
         d.str.to_date(DATE).dt.to_string("%d/%m/%Y")),
    Case("regex extract", f'regexExtract(t,"{PATTERN}",2)', f"regexp_extract(t,'{PATTERN}',2)", t.str.extract(PATTERN, 2)),
)


def rows_of(count):
    """One text in six is beyond ASCII; all letters have one capital letter."""
    random = numpy.random.default_rng(seed=12)
    columns = {"city": polars.Series(CITIES).gather(random.integers(0, len(CITIES), count)),
               "number": random.integers(0, 300, count), "before": blanks(random, count), "behind": blanks(random, count),
               "day": random.integers(0, DAYS, count), "a": random.integers(0, 20, count).astype(float)}
    city = polars.format("{} {}", "city", "number")
    day = polars.lit(REFERENCE) + polars.duration(days="day")
    return polars.DataFrame(columns).select(
        s=city, t=polars.format("2024-{}", "number"), p=polars.concat_str("before", city, "behind"),
        d=day.dt.to_string(DATE), a="a", e=polars.col("day").reverse().cast(polars.Int32))


def blanks(random, count):
    return polars.Series(("", " ", "  ")).gather(random.integers(0, 3, count))
