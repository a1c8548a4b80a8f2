"""How the tool is called: help, and what it says of a wrong command line."""

import os
import re
import subprocess

import tool_case
from tool_case import ToolCase, made_font, run

COMMANDS = "identify same compare why split read resources styles classify version help".split()


class UsageTest(ToolCase):
    def test_the_first_wrong_word_is_told_with_the_nearest_right_one(self):
        rows = [
            ([], "quillmark: no command given; see: quillmark help"),
            (["identfy", "--zzz"], "quillmark: no command identfy; did you mean identify?"),
            (["--verison", "identfy"], "quillmark: no option --verison; did you mean --version?"),
            (["xyz"], "quillmark: no command xyz; see: quillmark help"),
            (["help", "smae"], "quillmark help: no command smae; did you mean same?"),
            (["identify", "--fromat", "--zzz"], "quillmark identify: no option --fromat; did you mean --format?"),
            (["identify", "--zzz", "--fromat"], "quillmark identify: no option --zzz; see: quillmark help identify"),
            (["identify", "-format", "json"], "quillmark identify: no option -format; did you mean --format?"),
            (["identify", "-qx", "."], "quillmark identify: no option -qx; see: quillmark help identify"),
            (["identify", "--format", "jsn", "--zzz"], 'quillmark identify: --format: no form "jsn"; did you mean json? there are ...'),
            (["identify", "--format=odd", "."], 'quillmark identify: --format: no form "odd"; there are table, json, ...'),
            (["identify", "--fields=path,famly", "-j0"], 'quillmark identify: --fields: no field "famly"; did you mean family? ...'),
            (["identify", "--sort", "nme", "."], 'quillmark identify: --sort: no field "nme"; there are path, ...'),
            (["identify", "-qj0", "--zzz"], 'quillmark identify: -j: no number "0"; it takes 1 to 256'),
            (["why", "-j", "word", "."], 'quillmark why: -j: no number "word"; it takes 1 to 256'),
            (["split", "--max-bytes", "1Q", "a"], 'quillmark split: --max-bytes: no size "1Q"; it takes bytes, or as 500M or 2G'),
            (["same", "--without", "copy", "."], 'quillmark same: --without: no list "copy"; did you mean copies? there are ...'),
            (["--", "-h"], "quillmark: no command -h; see: quillmark help"),
            (["identify", "--jobs"], "quillmark identify: --jobs needs a value"),
            (["identify", "--format=", "json"], "quillmark identify: --format needs a value"),
            (["identify", "--quiet=1", "."], "quillmark identify: --quiet takes no value"),
            (["identify", "--format", "json", "--format=tsv"], "quillmark identify: --format is given twice"),
            (["identify"], "quillmark identify: PATH or --files-from is required"),
            (["version", "--", "--help"], "quillmark version: one word too many: --help"),
        ]  # fmt: skip
        for words, line in rows:
            with self.subTest(words):
                result = run(*words)
                self.assertEqual((result.returncode, result.stdout), (2, b""))
                told = result.stderr.decode()
                shown = told[: len(line) - 3] + "...\n" if line.endswith("...") else told
                self.assertEqual((shown, told.count("\n")), (line + "\n", 1))

    def test_help_tells_exit_statuses_and_examples_that_work(self):
        whole = run("help").stdout
        self.assertEqual(whole, run("--help").stdout)
        self.assertEqual(COMMANDS, re.findall(r"^  (\w+) ", whole.decode().partition("Subcommands:")[2], re.M))
        path = os.pathsep.join([os.path.dirname(tool_case.TOOL), os.environ["PATH"]])
        environment = dict(os.environ, PATH=path, HOME=str(self.folder))
        for command in COMMANDS:
            with self.subTest(command):
                told = run("help", command)
                self.assertEqual((told.returncode, told.stdout), (0, run(command, "--help").stdout))
                statuses, _, examples = told.stdout.decode().partition("Exit status:\n")[2].partition("\n\nExamples:\n")
                self.assertLessEqual({"0", "2"}, set(re.findall(r"^  (\d+)\b", statuses, re.M)))
                self.assertEqual(len(examples.splitlines()), 2)
                for example in examples.splitlines():
                    self.assertIn(f"quillmark {command}", example)
                    done = subprocess.run(example, shell=True, cwd=self.folder, env=environment, capture_output=True, timeout=100)
                    self.assertIn(done.returncode, (0, 1), done.stderr)

    def test_help_and_version_count_before_what_is_wrong_behind_them(self):
        self.assertEqual(run("-V").stdout, b"quillmark 1.4\n")
        for words in (["--version", "--zzz"], ["identify", "--help", "--zzz"], ["same", "-hq", "-j", "0"]):
            with self.subTest(words):
                self.assertEqual((run(*words).returncode, run(*words).stderr), (0, b""))

    def test_what_follows_two_dashes_is_a_path(self):
        for name in ("a.ttf", "-q", "--format", "help"):
            self.write(name + "/a.ttf", made_font("Made"))
        rows = [
            (["--", "-q", "--format"], ["-q/a.ttf", "--format/a.ttf"]),
            (["a.ttf", "--", "--format", "help"], ["a.ttf/a.ttf", "--format/a.ttf", "help/a.ttf"]),
            (["help", "-j", "2", "--", "-q"], ["help/a.ttf", "-q/a.ttf"]),
        ]
        for words, paths in rows:
            with self.subTest(words):
                result = run("identify", "--format", "tsv", "--fields", "path", *words, cwd=self.folder)
                self.assertEqual(result.stdout.decode().split()[1:], paths, result.stderr)
        self.assertEqual(run("--", "styles", "Minion-Bold", "-Italic").stdout, b"Bold\n")


if __name__ == "__main__":
    tool_case.main()
