"""Expressions on the command line."""

import os
import unittest

from program import ProgramTest

ZONES = ("UTC", "Europe/Brussels", "Europe/London", "Europe/Moscow", "Africa/Cairo", "America/New_York",
         "America/St_Johns", "America/Sao_Paulo", "Asia/Kolkata", "Australia/Lord_Howe", "Pacific/Apia",
         "Pacific/Marquesas")
LOCALES = ("C.UTF-8", "en_US.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8", "tr_TR.UTF-8", "ar_EG.UTF-8")

class EvalTest(ProgramTest):
    def test_plain_results(self):
        for arguments, shown in ((["1 + 2"], "3"), (["x / 3", "--var", "x=1"], "0.3333333333333333"),
                                 (['s // "!"', "--text", "s=héé"], "héé!"), (["x", "--null", "x"], "null"),
                                 (["--var", "x=2", "--", "-x"], "-2")):
            self.assertEqual(self.kelvarin("eval", *arguments).stdout, shown + "\n")

    def test_json_of_every_type(self):
        def value(*arguments):
            return self.kelvarin_json("eval", *arguments)

        self.assertEqual(value("2 * 3", "--backend", "fast"), {"value": 6, "type": "number", "backend": "Fast Parser"})
        self.assertEqual(value("k + 1", "--var", "k=4", "--meta", "K")["type"], "key")
        self.assertEqual(value("s", "--text", "s=")["value"], "")
        self.assertEqual(value("s", "--text", "s=", "--null", "s")["value"], None)
        self.assertEqual(value("s", "--text", "s=", "--null", "s")["type"], "text")
        for word in ("nan", "inf", "-inf"):
            self.assertEqual((value("x", "--var", "x=" + word)["value"], value("x", "--var", "x=" + word)["special"]),
                             (word, True))
        self.assertEqual(value("x + 1", "--var", "x=1", "--meta", "U")["value"], "2")

    def test_rows_count(self):
        self.assertEqual(self.kelvarin("eval", "_n * 2", "--rows", "3").stdout, "0\n2\n4\n")
        rows = self.kelvarin_json("eval", "_n == 1 ? _infinity : _n", "--rows", "3")
        self.assertEqual((rows["values"], rows["special"]), ([0, "inf", 2], [1]))

    def test_failures_have_text_token_and_position(self):
        error = self.kelvarin_json("eval", "1 + nope", status=1)
        self.assertEqual((error["token"], error["position"]), ("nope", 4))
        self.assertIn("\n  Error Token:nope\n  Error at position:4", error["error"])
        # A back-end that is asked for is not replaced by another.
        self.kelvarin_json("eval", '"a"', "--backend", "fast", status=1)
        self.assertEqual(self.kelvarin_json("eval", "1", "--backend", "string")["backend"], "String Parser")

    def test_options_reach_the_expression(self):
        key = ["eval", "x", "--var", "x=-1", "--meta", "K"]
        self.assertIn("Out of range: variable", self.kelvarin_json(*key, status=1)["error"])
        self.assertEqual(self.kelvarin_json(*key, "--opt", "castToKey1=1")["value"], None)
        self.assertEqual(self.kelvarin_json(*key, "--opt", "castToKey1=0")["value"], 0)

    def test_positions_count_characters_of_the_users_text(self):
        for expression, position, token in (('"é€" // nope', 8, "nope"), ('"\U0001f600" // nope', 8, "nope"),
                                            ("1 +\n\tnope", 5, "nope"), ('1{k} + "a" // nope', 14, "nope"),
                                            ("true and (false or nope)", 19, "nope")):
            error = self.kelvarin_json("eval", expression, "--backend", "string", status=1)
            self.assertEqual((error["position"], error["token"]), (position, token), expression)
        error = self.kelvarin_json("eval", "sin(nope(1))", "--backend", "fastest", status=1)
        self.assertEqual((error["position"], error["token"]), (4, "nope"))
        error = self.kelvarin_json("eval", "(int)x ^ nope << 1", "--var", "x=1", "--backend", "fast", status=1)
        self.assertEqual((error["position"], error["token"]), (9, "nope"))

    def test_a_column_wins_over_a_cast(self):
        for backend in ("fast", "string"):
            result = self.kelvarin("eval", "(int)+(float)2.5", "--var", "int=5", "--backend", backend)
            self.assertEqual(result.stdout, "7.5\n")

    def test_names_of_the_place_and_the_clock(self):
        self.write("note.txt", "héllo")
        self.assertEqual(self.kelvarin("eval", 'load("note.txt")').stdout, "héllo\n")
        os.mkfifo(self.path("pipe"))
        with open(self.path("large"), "wb") as large:
            large.truncate((64 << 20) + 1)
        for name in ("pipe", "large", ".", "/dev/zero", "/dev/ptmx", "/dev/stdin"):
            self.assertEqual(self.kelvarin("eval", f'load("{name}")').stdout, "null\n", name)
        self.assertEqual(os.path.realpath(self.kelvarin("eval", "_currentDir").stdout.strip()),
                         os.path.realpath(self.folder))
        self.assertEqual(self.kelvarin_json("eval", "_currentFile"),
                         {"value": None, "type": "text", "backend": "String Parser"})
        now = self.kelvarin_json("eval", "_now", "--opt", "elapsedTimeUnit=0", "--opt", "referenceTime=20000101 00:00:00")
        self.assertGreater(now["value"], 7e8)
        text = self.kelvarin_json("eval", "_nowS", "--opt", "dateFormat=yyyy")
        self.assertRegex(text["value"], "^2[0-9]{3}$")
        self.assertIn("Date format is unknown", self.kelvarin_json("eval", "_nowS", status=1)["error"])
        # A variable of that name is no clock, and an option says no.
        self.assertEqual(self.kelvarin_json("eval", "_now", "--var", "_now=5")["value"], 5)
        self.kelvarin_json("eval", "_now", "--opt", "addNow=0", status=1)

    def test_a_seeded_run_repeats(self):
        def draws(seed):
            return self.kelvarin("eval", "rand1()", "--rows", "5", "--opt", f"seed={seed}").stdout

        self.assertEqual(draws(1).splitlines()[0], "0.4170219984371215")
        self.assertEqual(draws(1), draws(1))
        self.assertNotEqual(draws(1), draws(2))

    def test_zones_and_locales_change_nothing(self):
        # One text of all that could depend on them: numbers, cases, orders and dates in UTC.
        expression = (
            'ftoa(1234567.5) // "|" // itoa(1234567) // "|" // ftoa(atof("1,5")) // "|" // toupper("ıiß") // "|" //'
            ' tolower("IİÉ") // "|" // toDate(toET("2021-03-28 02:30:00")) // "|" //'
            ' dateAdd("2024-01-31 23:30:00",0,1,0) // "|" // dateEOM("2024-10-27 01:30:00",0) // "|" //'
            ' itoa(dateWeekNumber("2021-01-03 00:00:00")) // "|" // datePrint("2024-12-31 12:00:00","yyyy/M/d H:mm")')
        options = ["--opt", "dateFormat=yyyy-MM-dd hh:mm:ss", "--opt", "referenceTime=20000101 00:00:00", "--opt",
                   "elapsedTimeUnit=0"]
        results = set()
        for zone in ZONES:
            for locale in LOCALES:
                environment = {**os.environ, "TZ": zone, "LC_ALL": locale, "LANG": locale}
                results.add(self.kelvarin("eval", expression, *options, env=environment).stdout)
        self.assertEqual(len(results), 1, results)
        self.assertTrue(results.pop().startswith("1.23457e+06|1234567|1.5|IISS|"))

    def test_printed_dates_read_back(self):
        # By row: does the text of a date of the year, in every form of the locale, mean the same date again?
        def reads_back(environment, kind, is_utc):
            return self.kelvarin(
                "eval", "toDate(toET(toDate(_n * 97 * 60))) == toDate(_n * 97 * 60)", "--rows", "90", "--opt",
                "referenceTime=19240101 00:00:00", "--opt", "elapsedTimeUnit=1", "--opt", f"dateFormatType={kind}",
                "--opt", f"isUTC={is_utc}", env=environment).stdout

        for zone in ("UTC", "Europe/London", "America/New_York", "America/Sao_Paulo", "Asia/Kolkata", "Asia/Tokyo"):
            for locale in LOCALES + ("ja_JP.UTF-8", "zh_CN.UTF-8"):
                environment = {**os.environ, "TZ": zone, "LC_ALL": locale, "LANG": locale}
                for kind in (1, 2, 5, 6):
                    self.assertEqual(reads_back(environment, kind, 0), "1\n" * 90, (zone, locale, kind))
            self.assertEqual(reads_back(environment, 6, 1), "1\n" * 90, (zone, locale))

    def test_a_stated_zone_counts(self):
        tokyo = {**os.environ, "TZ": "Asia/Tokyo", "LC_ALL": "en_US.UTF-8"}
        long = ["--opt", "dateFormatType=6", "--opt", "referenceTime=20240101 00:00:00", "--opt", "isUTC=0"]
        for expression, result in (
                ("toET(toDate(5000))", "5000"), ("toDate(5000)", "Saturday, July 27, 2024 8:00:00 AM JST"),
                ('toET("Saturday, July 27, 2024 2:00:00 AM UTC+03:00")', "5000"),
                ("dateEOM(toDate(5000), 0)", "Wednesday, July 31, 2024 12:00:00 AM JST"),
                ("dateEOQ(toDate(5000), 1)", "Tuesday, December 31, 2024 12:00:00 AM JST")):
            self.assertEqual(self.kelvarin("eval", expression, *long, env=tokyo).stdout, result + "\n")
        utc = [*long[:-1], "isUTC=1"]
        self.assertEqual(self.kelvarin("eval", 'dateAdd("Saturday, July 27, 2024 8:00:00 AM JST", 0, 0, 0)', *utc,
                                       env=tokyo).stdout, "Friday, July 26, 2024 11:00:00 PM UTC\n")

    def test_a_foreign_date_format_gets_advice(self):
        result = self.kelvarin("eval", 'toET("2024-01-31")', "--opt", "dateFormat=%Y-%m-%d", "--opt",
                               "referenceTime=20240101 00:00:00")
        self.assertEqual(result.stdout, "null\n")
        self.assertIn("warning: Date format '%Y-%m-%d': did you mean 'yyyy-MM-dd'?", result.stderr)

    def test_wrong_usage(self):
        for arguments in (["x", "--var", "x=one"], ["1", "--opt", "colour=red"], ["1", "--opt", "addN=2"],
                          ["1", "--meta", "Z"], ["x", "--var", "x=1", "--text", "x=1"], ["_n", "--var", "_n=1"]):
            self.assertIn("error: ", self.kelvarin("eval", *arguments, status=2).stderr)

    def test_hostile_expressions_end(self):
        for expression in ("(" * 10000 + "1" + ")" * 10000, "1+" * 20000 + "1", "eye(2147483648)", '"\\', "1,2"):
            self.assertTrue(self.kelvarin_json("eval", expression, status=1)["error"])


if __name__ == "__main__":
    unittest.main()
