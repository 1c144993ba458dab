"""What an installation brings beside the commands that compute: completion, the manual, its own check."""

import json
import os
import re
import shutil
import subprocess
import time
import unittest

from program import PROGRAM, ProgramTest, calculator, graph

GRAPH = graph("<ReadCSV name='in' file='in.csv'/>" + calculator("of it: all", ["a"], [("name='b'", "a+1")]) +
              "<WriteCSV name='out' file='${to}'/>", ["in 'of it: all'"], [("to", "out.csv"), ("top", "3")])


class CompletionTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.write("g.kelvarin", GRAPH)
        self.write("in.csv", "price,net price,\"a;b\"\n1,2,3\n")

    def complete(self, *words):
        """Which files fit, and the words that do."""
        files, *lines = self.kelvarin("complete", "--", *words).stdout.splitlines()
        return files, [line.split("\t")[0] for line in lines]

    def test_commands_and_options_are_those_of_the_help(self):
        files, commands = self.complete("")
        self.assertEqual(files, "none")
        page = self.kelvarin("--help").stdout.split("\nRun:\n")[1].split("\nExamples:")[0]
        self.assertEqual(sorted(commands), sorted(re.findall(r"^  ([a-z]\S*)", page, re.MULTILINE)))
        self.assertEqual(self.complete("gel", "inf"), ("none", ["info"]))
        self.assertEqual(self.complete("run", "--thr"), ("none", ["--threads"]))
        self.assertEqual(self.complete("run", "--", "--thr"), ("graphs", []))
        self.assertEqual(self.complete("completion", "z"), ("none", ["zsh"]))

    def test_files_of_the_kind_that_fits(self):
        self.assertEqual(self.complete("run", ""), ("graphs", []))
        self.assertEqual(self.complete("gel", "info", ""), ("all", []))
        self.assertEqual(self.complete("run", "--plugin", ""), ("all", []))
        self.assertEqual(self.complete("run", "--threads", ""), ("none", []))

    def test_names_of_the_graph_on_the_line(self):
        self.assertEqual(self.complete("run", "g.kelvarin", "--to", "o")[1], ["of it: all", "out"])
        self.assertEqual(self.complete("run", "g.kelvarin", "--to=i")[1], ["in"])
        self.assertEqual(self.complete("run", "g.kelvarin", "--set", "to")[1], ["to=", "top="])
        self.assertEqual(self.complete("run", "--quiet", "--set", "to=1", "g.kelvarin", "--to", "in")[1], ["in"])
        self.write("broken.kelvarin", "<KelvarinGraph><Actions><ReadCSV name='first'/><oops")
        self.assertEqual(self.complete("run", "broken.kelvarin", "--to", "")[1], ["first"])
        self.assertEqual(self.complete("run", "in.csv", "--to", "")[1], [])

    def test_functions_and_actions(self):
        self.assertIn("dateAdd", self.complete("functions", "dateA")[1])
        self.assertEqual(self.complete("actions", "ReadP")[1], ["ReadParquet"])
        self.assertEqual(self.complete("eval", "'1 + strl")[1], ["1 + strlen("])

    def test_an_answer_comes_at_once(self):
        def seconds():
            begin = time.perf_counter()
            self.complete("run", "g.kelvarin", "--to", "")
            return time.perf_counter() - begin

        self.assertLess(min(seconds() for _ in range(5)), 0.05)


class ShellsTest(ProgramTest):
    def setUp(self):
        super().setUp()
        os.makedirs(self.path("bin"))
        os.symlink(PROGRAM, self.path("bin/kelvarin"))
        os.makedirs(self.path("folder"))
        self.write("g.kelvarin", GRAPH)
        self.write("in.csv", "a\n1\n")

    def shell(self, name, script, *options):
        if shutil.which(name) is None:
            self.skipTest(f"{name} is not installed")
        environment = {**os.environ, "PATH": self.path("bin") + ":" + os.environ["PATH"], "LC_ALL": "C.UTF-8"}
        result = subprocess.run([name, *options, "-c", script], cwd=self.folder, env=environment, capture_output=True,
                                text=True, timeout=30, check=False)
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        return result.stdout.splitlines()

    def bash(self, *words):
        """What bash offers for words that it has cut as it does."""
        quoted = " ".join("'" + word.replace("'", "'\\''") + "'" for word in words)
        return self.shell("bash", f'source <(kelvarin completion bash); COMP_WORDS=({quoted}); '
                          f'COMP_CWORD={len(words) - 1}; _kelvarin 2>/dev/null; printf "%s\\n" "${{COMPREPLY[@]}}"', "--norc")

    def test_bash(self):
        self.assertEqual(self.bash("kelvarin", "ev"), ["eval"])
        self.assertEqual(self.bash("kelvarin", "run", "--qu"), ["--quiet"])
        self.assertEqual(sorted(self.bash("kelvarin", "run", "")), ["bin", "folder", "g.kelvarin"])
        self.assertEqual(self.bash("kelvarin", "gel", "info", "in"), ["in.csv"])
        self.assertEqual(self.bash("kelvarin", "run", "g.kelvarin", "--to", "of"), ["of\\ it:\\ all"])
        self.assertEqual(self.bash("kelvarin", "run", "g.kelvarin", "--to", "'of"), ["of it: all"])
        self.assertEqual(self.bash("kelvarin", "run", "g.kelvarin", "--to", "=", "ou"), ["out"])
        self.assertEqual(self.bash("kelvarin", "run", "g.kelvarin", "--set", "top"), ["top="])
        self.assertEqual(self.bash("kelvarin", "run", "'g.kelvarin'", "--set", "top"), ["top="])
        self.assertEqual(self.bash("kelvarin", "eval", "'1+strl"), ["1+strlen("])

    def test_fish(self):
        def offered(line):
            return [answer.split("\t")[0] for answer in
                    self.shell("fish", f"kelvarin completion fish | source; complete -C '{line}'", "--no-config")]

        self.assertEqual(offered("kelvarin ev"), ["eval"])
        self.assertEqual(offered("kelvarin run g.kelvarin --to of"), ["of it: all"])
        self.assertEqual(offered("kelvarin run g.kelvarin --to=ou"), ["--to=out"])
        self.assertIn("g.kelvarin", offered("kelvarin run g"))

    def test_zsh(self):
        # On a terminal of its own, as only a line editor completes.
        script = self.write("zsh_terminal", """
zmodload zsh/zpty
zpty -b z 'PS1= PS2= zsh -f -i'
zpty -w z 'unsetopt zle_bracketed_paste 2>/dev/null; autoload -U compinit; compinit -u -D; PS1=READY;'
zpty -w z 'kelvarin completion zsh > _kelvarin; fpath=($PWD $fpath); autoload -Uz _kelvarin; compdef _kelvarin kelvarin'
zpty -w z 'print BE""GIN'
zpty -r -m z REST '*BEGIN*'
zpty -w -n z "kelvarin run g.kelvarin --to o"$'\\t'"=DONE"
zpty -r -m z SHOWN '*DONE*'
print -r -- $SHOWN
zpty -d z
""")
        shown = "\n".join(self.shell("zsh", f"source {script}", "-f"))
        self.assertIn("of it: all", shown)
        self.assertIn("out", shown)


class ManualTest(ProgramTest):
    def test_every_command_has_a_page_without_faults(self):
        self.kelvarin("man-pages", "manual")
        pages = sorted(os.listdir(self.path("manual")))
        self.assertIn("kelvarin.1", pages)
        self.assertIn("kelvarin-gel-recover.1", pages)
        self.assertNotIn("kelvarin-man-pages.1", pages)
        run = self.read("manual/kelvarin-run.1")
        self.assertTrue(run.startswith('.TH KELVARIN\\-RUN 1 "" "kelvarin '), run[:40])
        for part in (".SH SYNOPSIS\n\\fBkelvarin run\\fR [\\fIOPTIONS\\fR] \\fIGRAPH\\fR\n", "\\fB\\-\\-set\\fR \\fINAME=VALUE\\fR\n",
                     "\\-\\-to \\(aqlate?\\(aq"):
            self.assertIn(part, run)
        if shutil.which("groff") is None:
            self.skipTest("groff, which sets the pages, is not installed")
        for page in pages:
            result = subprocess.run(["groff", "-man", "-Tutf8", "-ww", self.path("manual/" + page)], capture_output=True,
                                    text=True, check=False)
            self.assertEqual((result.returncode, result.stderr), (0, ""), page)

    def test_a_folder_that_cannot_be_made(self):
        self.write("file", "")
        self.assertIn("cannot be written to 'file/x'", self.kelvarin("man-pages", "file/x", status=1).stderr)


class DoctorTest(ProgramTest):
    def test_the_version_comes_first(self):
        lines = self.kelvarin("--version").stdout.splitlines()
        self.assertRegex(lines[0], r"^kelvarin \d+\.\d+\.\d+$")
        self.assertRegex(lines[1], r"^libraries  Qt 6\.\S+, muParser 2\.\S+, .* RE2 \d+\S*, .*Arrow \d+\.\S+$")
        self.assertTrue(lines[3].endswith("/plugins/libKelvarinMathParser.so"), lines[3])

    def checks(self, status, **environment):
        result = self.kelvarin("doctor", "--json", status=status, env={**os.environ, "LC_ALL": "C.UTF-8", **environment})
        found = {check["check"]: check for check in json.loads(result.stdout)}
        self.assertEqual(all(check["ok"] for check in found.values()), status == 0)
        return found

    def test_a_sound_installation(self):
        found = self.checks(0)
        self.assertRegex(found["plug-in"]["found"], r"libKelvarinMathParser\.so, version 4\.11, 5 actions$")
        self.assertTrue(self.kelvarin("doctor", env={**os.environ, "LC_ALL": "C.UTF-8"}).stdout.startswith("ok       program"))

    def test_each_problem_has_its_advice(self):
        found = self.checks(1, KELVARIN_PLUGIN=self.path("none.so"), TMPDIR="/proc", LC_ALL="C")
        self.assertEqual({name for name, check in found.items() if not check["ok"]}, {"plug-in", "temporary folder", "locale"})
        self.assertIn("none.so", found["plug-in"]["found"])
        self.assertIn("TMPDIR", found["temporary folder"]["advice"])
        self.assertIn("none.so", found["environment"]["found"])
        shown = self.run_program("doctor", env={**os.environ, "LC_ALL": "C"}).stdout
        self.assertRegex(shown, r"(?m)^problem  locale: \S+\n +\S.*C\.UTF-8")


if __name__ == "__main__":
    unittest.main()
