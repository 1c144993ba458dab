"""Looks into columnar files, checks and converts them."""

import gzip
import os
import subprocess
import unittest

from program import PROGRAM, ProgramTest, open_terminal

ROWS = "".join(f"{i},{i / 4},{'' if i % 7 == 3 else 'name %d' % (i % 5)}\n" for i in range(12000))
TABLE = "id,price,name\n" + ROWS


class GelTest(ProgramTest):
    def make(self):
        self.write("t.csv", TABLE)
        self.kelvarin("gel", "import", "t.csv", "t.cgel_kelvarin", "--quiet", "--rows-in-block", "5000")

    def damage(self, name, offset):
        with open(self.path(name), "r+b") as file:
            file.seek(offset, os.SEEK_SET)
            byte = file.read(1)[0]
            file.seek(offset, os.SEEK_SET)
            file.write(bytes([byte ^ 1]))

    def test_a_table_survives_every_kind_of_file(self):
        self.make()
        for name in ("t.parquet", "t.arrow", "t.arrows", "again.csv", "t.tsv"):
            self.kelvarin("gel", "export", "t.cgel_kelvarin", name)
            self.kelvarin("gel", "import", name, "back.cgel_kelvarin")
            self.kelvarin("gel", "export", "back.cgel_kelvarin", "back.csv")
            self.assertEqual(self.read("back.csv").replace(".0,", ","), TABLE.replace(".0,", ","), name)

    def test_info_tells_columns_and_blocks(self):
        self.make()
        info = self.kelvarin_json("gel", "info", "t.cgel_kelvarin", "--blocks")
        self.assertEqual((info["complete"], info["rows"], info["nRowsInBlock"], info["sets"]), (True, 12000, 5000, 1))
        self.assertEqual([column["name"] for column in info["columns"]], ["id", "price", "name"])
        self.assertEqual(info["columns"][2], {"name": "name", "meta": "U", "storage": 0, "set": 0})
        self.assertEqual([(block["row"], block["rows"]) for block in info["blocks"]],
                         [(0, 5000), (5000, 5000), (10000, 2000)])
        identifier, price, name = info["blocks"][1]["columns"]
        self.assertEqual((identifier["min"], identifier["max"], identifier["hasNull"]), (5000, 9999, False))
        self.assertEqual((price["min"], price["max"]), (1250, 2499.75))
        self.assertEqual((name["min"], name["max"], name["hasNull"]), ("name 0", "name 4", True))
        self.assertEqual(sum(column["bytes"] for block in info["blocks"] for column in block["columns"]),
                         os.path.getsize(self.path("t.000.cs_kelvarin")))
        self.assertNotIn("blocks", self.kelvarin_json("gel", "info", "t.cgel_kelvarin"))
        self.assertIn("complete, 12000 rows", self.kelvarin("gel", "info", "t.cgel_kelvarin").stdout)

    def test_head_prints_the_first_rows(self):
        self.make()
        self.assertEqual(self.kelvarin("gel", "head", "t.cgel_kelvarin", "--rows", "4").stdout,
                         "id,price,name\n0,0,name 0\n1,0.25,name 1\n2,0.5,name 2\n3,0.75,\n")
        self.assertEqual(len(self.kelvarin("gel", "head", "t.cgel_kelvarin").stdout.splitlines()), 11)

    def test_statistics_are_readable(self):
        self.write("t.csv", "a,b\n1,\"\"\n-0.5,-\n,x\n")
        self.assertIn("info: 3 rows written to 't.cgel_kelvarin'.",
                      self.kelvarin("gel", "import", "t.csv", "t.cgel_kelvarin").stderr)
        shown = self.kelvarin("gel", "info", "t.cgel_kelvarin", "--blocks").stdout
        self.assertIn("complete, 3 rows, 1 block of up to 20000 rows, 1 column set\n", shown)
        self.assertRegex(shown, r"a +\d+ bytes  nulls, -0.5 to 1\n  b +\d+ bytes  \"\" to \"x\"\n")
        self.assertEqual(self.kelvarin("gel", "export", "t.cgel_kelvarin", "-").stdout, "a,b\n1,\"\"\n-0.5,-\n,x\n")

    def test_csv_is_imported_as_it_is_found(self):
        text = "Bericht\nid;Preis;größe\n1;1.234,5;NA\n# c\n2;7\n3;;-;zu viel\n"
        with open(self.path("a.csv"), "wb") as file:
            file.write(text.encode("cp1252"))
        options = ("--decimal", ",", "--thousands", ".", "--null", "NA", "--null", "-", "--skip-lines", "1",
                   "--comment", "#", "--short-rows", "null", "--long-rows", "ignore")
        shown = self.kelvarin("gel", "import", "a.csv", "t.cgel_kelvarin", *options).stderr
        self.assertIn("separator ';', quote '\"', encoding windows-1252, header.", shown)
        table = "id,Preis,größe\n1,1234.5,\n2,7,\n3,,\n"
        self.assertEqual(self.kelvarin("gel", "head", "t.cgel_kelvarin").stdout, table)
        # From standard input, compressed, to nothing but what is given.
        zipped = gzip.compress(text.encode("utf-16"))
        run = subprocess.run([PROGRAM, "gel", "import", "-", "u", "--from", "csv", "--separator", ";", "--encoding",
                              "UTF-16", *options], input=zipped, cwd=self.path(""), capture_output=True, check=False)
        self.assertEqual(run.returncode, 0, run.stderr.decode())
        self.assertEqual(self.kelvarin("gel", "head", "u.cgel_kelvarin").stdout, table)
        self.write("p1.tsv", "a\tb\n1\tx;y\n")
        self.write("p2.tsv", "b\ta\nz\t2\n")
        self.kelvarin("gel", "import", "p*.tsv", "p.cgel_kelvarin", "--file-column", "from")
        self.assertRegex(self.kelvarin("gel", "head", "p.cgel_kelvarin").stdout,
                         r"^a,b,from\n1,x;y,.*p1\.tsv\n2,z,.*p2\.tsv\n$")
        for arguments, text in ((("t.parquet", "--null", "NA"), "mean nothing for 't.parquet'"),
                                (("-",), "told by its extension"), (("a.csv", "--encoding", "x"), "encoding 'x'")):
            status = 1 if "--encoding" in arguments else 2
            self.assertIn(text, self.kelvarin("gel", "import", arguments[0], "n", *arguments[1:], status=status).stderr)

    def test_no_conversion_eats_its_own_input(self):
        self.make()
        os.symlink("t.csv", self.path("link.cgel_kelvarin"))
        for names in (("t.csv", "t.csv"), ("t.csv", "other.csv"), ("t.csv", "link.cgel_kelvarin")):
            self.assertIn("another", self.kelvarin("gel", "import", *names, status=2).stderr)
        self.assertEqual(self.read("t.csv"), TABLE)
        self.write("empty.csv", "a,b\n")
        self.assertIn("'empty.csv' has no rows, so nothing was written",
                      self.kelvarin("gel", "import", "empty.csv", "t.cgel_kelvarin").stderr)
        self.assertEqual(self.kelvarin_json("gel", "info", "t.cgel_kelvarin")["rows"], 12000)

    def test_verify_names_each_damage(self):
        self.make()
        self.assertIn("12000 rows in 3 blocks, 9 chunks read: no damage",
                      self.kelvarin("gel", "verify", "t.cgel_kelvarin").stdout)
        info = self.kelvarin_json("gel", "info", "t.cgel_kelvarin", "--blocks")
        offset = sum(column["bytes"] for column in info["blocks"][0]["columns"]) + 9
        self.damage("t.000.cs_kelvarin", offset)
        result = self.kelvarin("gel", "verify", "t.cgel_kelvarin", status=1)
        self.assertIn(f"t.000.cs_kelvarin, byte {offset - 9}: block 1 (rows 5000 to 9999), column '", result.stdout)
        refused = self.kelvarin("gel", "export", "t.cgel_kelvarin", "x.csv", status=1)
        self.assertIn("is corrupted in data-block starting at row 5000", refused.stderr)
        self.assertNotIn("x.csv", self.files())
        salvaged = self.kelvarin("gel", "export", "--salvage", "t.cgel_kelvarin", "x.csv")
        self.assertIn("is corrupted - skipping rows 5000 to 9999", salvaged.stderr)
        self.assertEqual(len(self.read("x.csv").splitlines()), 7001)
        os.remove(self.path("t.000.cs_kelvarin"))
        self.assertIn("cannot be opened", self.kelvarin("gel", "verify", "t.cgel_kelvarin", status=1).stdout)

    def test_a_side_file_of_another_table_is_noticed(self):
        for name, prefix in (("a", "1"), ("b", "2")):
            self.write(name + ".csv", "id,name\n" + "".join(f"{i},{prefix}{i}\n" for i in range(300)))
            self.kelvarin("gel", "import", name + ".csv", name + ".cgel_kelvarin", "--quiet")
        os.replace(self.path("b.000.cs_kelvarin"), self.path("a.000.cs_kelvarin"))
        shown = self.kelvarin("gel", "export", "a.cgel_kelvarin", "x.csv", status=1).stderr
        self.assertIn("the file of another table may have taken its place", shown)
        self.assertIn("the column-set file may belong to another table",
                      self.kelvarin("gel", "verify", "a.cgel_kelvarin", status=1).stdout)
        self.assertNotIn("x.csv", self.files())

    def test_files_with_holes_take_no_memory(self):
        self.make()
        os.truncate(self.path("t.000.cs_kelvarin"), 1 << 40)
        shown = self.kelvarin("gel", "verify", "t.cgel_kelvarin", status=1).stdout
        self.assertIn("would take far more memory than the file justifies", shown)
        shown = self.kelvarin("gel", "recover", "t.cgel_kelvarin", "x.csv").stderr
        self.assertIn("12000 rows in 3 blocks recovered", shown)

    def test_a_tail_of_zeros_is_one_damage(self):
        self.make()
        with open(self.path("t.cgel_kelvarin"), "r+b") as file:
            file.seek(-8, os.SEEK_END)
            file.write(bytes(2 << 20))
        for command in ("verify", "head", "info"):
            shown = self.kelvarin("gel", command, "t.cgel_kelvarin", *(["--rows", "99999"] if command == "head" else []),
                                 status=1)
            damages = [line for line in (shown.stderr + shown.stdout).splitlines() if "12000" in line and "byte" in line
                       or "is cut" in line]
            self.assertEqual(len(damages), 1, shown)

    def test_control_characters_do_not_reach_the_terminal(self):
        self.write("t.csv", "a\x1b]0;b,c\x9b\n\x1b[2J,\u202eevil\u0085\n")
        self.kelvarin("gel", "import", "t.csv", "t.cgel_kelvarin", "--quiet")
        shown = self.kelvarin("gel", "info", "t.cgel_kelvarin", "--blocks").stdout
        self.assertIn("a\\x1b]0;b", shown)
        self.assertIn("c\\x9b", shown)
        self.assertIn("\\u{202e}evil\\x85", shown)
        self.assertNotRegex(shown, "[\x00-\x09\x0b-\x1f\x7f-\x9f\u202a-\u202e]")
        master, terminal = open_terminal()
        subprocess.run([PROGRAM, "gel", "head", "t.cgel_kelvarin"], cwd=self.folder, stdout=terminal, timeout=60)
        os.close(terminal)
        self.assertRegex(os.read(master, 1000).decode(), r"\n\\x1b\[2J +\\u\{202e\}evil\\x85\r\n")
        self.assertIn("\x1b[2J", self.kelvarin("gel", "head", "t.cgel_kelvarin").stdout)

    def test_wrong_files_and_wrong_usage(self):
        self.write("text.cgel_kelvarin", "no columnar file")
        for command in ("info", "head", "verify"):
            self.assertIn("it is no columnar file",
                          self.kelvarin("gel", command, "text.cgel_kelvarin", status=1).stderr)
            self.assertIn("there is no such file", self.kelvarin("gel", command, "none", status=1).stderr)
            self.assertIn("Examples:\n  kelvarin gel " + command,
                          self.kelvarin("gel", command, "--help").stdout)
        os.mkfifo(self.path("pipe"))
        self.assertIn("it is a device or a pipe", self.kelvarin("gel", "info", "pipe", status=1).stderr)
        self.make()
        side = self.kelvarin("gel", "info", "t.000.cs_kelvarin", status=1)
        self.assertIn("Give the main file instead, which is 't.cgel_kelvarin'", side.stderr)
        self.kelvarin("gel", "head", "t.cgel_kelvarin", "--rows", "-1", status=2)
        self.assertIn("Did you mean info?\nRun 'kelvarin gel --help'", self.kelvarin("gel", "inof", status=2).stderr)
        with open("/dev/full", "w") as full:
            lost = subprocess.run([PROGRAM, "gel", "head", "t.cgel_kelvarin"], cwd=self.folder, stdout=full,
                                  stderr=subprocess.PIPE, text=True)
        self.assertEqual((lost.returncode, lost.stderr),
                         (1, "error: Standard output cannot be written: No space left on device.\n"))
        unknown = self.kelvarin("gel", "export", "text.cgel_kelvarin", "x.doc", status=2)
        self.assertIn("one of: csv, tsv, txt, parquet", unknown.stderr)


if __name__ == "__main__":
    unittest.main()
