"""How the tool is called: help, and what it says of a wrong command line."""

import os
import re
import subprocess

from tool_case import TOOL, ToolCase, made_font

COMMANDS = "identify same find catalogue compare why split read resources styles classify version help".split()

WRONG = [
    ([], "quillmark: no command given; see: quillmark help"),
    ("identfy --zzz", "quillmark: no command identfy; did you mean identify?"),
    ("--verison identfy", "quillmark: no option --verison; did you mean --version?"),
    ("xyz", "quillmark: no command xyz; see: quillmark help"),
    (".", "quillmark: no command .; did you mean quillmark identify .?"),
    ("help smae", "quillmark help: no command smae; did you mean same?"),
    ("identify --fromat --zzz", "quillmark identify: no option --fromat; did you mean --format?"),
    ("identify --zzz --fromat", "quillmark identify: no option --zzz; see: quillmark help identify"),
    ("identify -format json", "quillmark identify: no option -format; did you mean --format?"),
    ("identify -qx .", "quillmark identify: no option -qx; see: quillmark help identify"),
    ("same --sort path .", "quillmark same: no option --sort; it belongs to identify"),
    ("--fromat json identify .", "quillmark: no option --fromat; did you mean --format?"),
    ("identify --format jsn --zzz", 'quillmark identify: --format: no form "jsn"; did you mean json? there are table, ...'),
    ("identify --format=odd .", 'quillmark identify: --format: no form "odd"; there are table, json, ...'),
    ("identify --fields=path,famly -j0", 'quillmark identify: --fields: no field "famly"; did you mean family? ...'),
    ("identify --sort nme .", 'quillmark identify: --sort: no field "nme"; there are path, ...'),
    ("identify -qj0 --zzz", 'quillmark identify: -j: no number "0"; it takes 1 to 256'),
    ("identify --jobs", "quillmark identify: --jobs needs a value"),
    ("identify --format= json", "quillmark identify: --format needs a value"),
    ("identify --quiet=1 .", "quillmark identify: --quiet takes no value"),
    ("identify --format json --format=tsv", "quillmark identify: --format is given twice"),
    ("identify", "quillmark identify: PATH or --files-from is required"),
    ("identify -0 .", "quillmark identify: --null requires --files-from"),
    ("identify --format xml --fields path .", "quillmark identify: --fields: the content of xml is fixed"),
    ("identify --format plist --fields path .", "quillmark identify: --fields: the content of plist is fixed"),
    ("identify - -", 'quillmark identify: "-" stands for standard input, which can be read only once'),
    ("identify - --files-from -", 'quillmark identify: "-" stands for standard input, ...'),
    ("identify . --name a.ttf", "quillmark identify: --name is for a font from standard input, ..."),
    ("identify - --name a/..", "quillmark identify: --name: no name for a file"),
    ("same --without near,copy .", 'quillmark same: --without: no list "copy"; did you mean copies? there are ...'),
    ("-- -h", "quillmark: no command -h; see: quillmark help"),
    ("compare one", "quillmark compare: B is required"),
    ("split", "quillmark split: COLLECTION is required"),
    ("split --max-bytes -5 a.ttc", 'quillmark split: --max-bytes: no size "-5"; it takes bytes, or as 500M or 2G'),
    ("split --max-bytes 5X a.ttc", 'quillmark split: --max-bytes: no size "5X"; it takes bytes, or as 500M or 2G'),
    ("catalogue", "quillmark catalogue: no command given; see: quillmark help catalogue"),
    ("catalog updat a.db", "quillmark catalogue: no command updat; did you mean update?"),
    ("catalogue list", "quillmark catalogue list: DB is required"),
    ("catalogue verify --sample 0 a.db", 'quillmark catalogue verify: --sample: no number "0"; it takes 1 and more'),
    ("catalogue merge a.db b.db", 'quillmark catalogue merge: no LABEL=OTHER "b.db"; a label holds neither / nor :'),
    ("catalogue merge a.db x=b.db x=c.db", "quillmark catalogue merge: the label x is given twice"),
    ("find a", "quillmark find: --catalogue or --in is required"),
    ("find --in .", "quillmark find: NAME or --names-from is required"),
    (["find", "--in", ".", "a", " "], "quillmark find: a NAME is empty"),
    (["find", "--in", ".", "--names-from", "/dev/null"], "/dev/null: the list holds no name"),
    (["find", "--in", "", "a"], 'quillmark find: --in: no path ""'),
    (["same", "--catalogue", ""], 'quillmark same: --catalogue: no catalogue ""'),
    (["catalogue", "info", ""], 'quillmark catalogue info: DB: no catalogue ""'),
    ("same --catalogue a.db .", "quillmark same: --catalogue stands in the place of paths"),
    ("version -- --help", "quillmark version: one word too many: --help"),
]


class UsageTest(ToolCase):
    def test_the_first_wrong_word_is_told_with_the_nearest_right_one(self):
        for words, line in WRONG:
            self.assertEqual(self.check(words, 2, err=line + "\n").stderr.count(b"\n"), 1)

    def test_help_tells_exit_statuses_and_examples_that_work(self):
        whole = self.check("help", 0, "...").stdout.decode()
        self.check("--help", 0, whole)
        self.assertEqual(COMMANDS, re.findall(r"^  (\w+) ", whole.partition("Subcommands:")[2], re.M))
        path = os.pathsep.join([os.path.dirname(TOOL), os.environ["PATH"]])
        environment = dict(os.environ, PATH=path, HOME=str(self.folder))
        parts = ["catalogue " + part for part in "update list changes info verify merge".split()]
        for command in COMMANDS + parts:
            told = self.check(f"help {command}", 0, "...").stdout.decode()
            self.check(f"{command} --help", 0, told)
            statuses, _, examples = told.partition("Exit status:\n")[2].partition("\n\nExamples:\n")
            self.assertLessEqual({"0", "2"}, set(re.findall(r"^  (\d+)\b", statuses, re.M)))
            self.assertEqual(len(examples.splitlines()), 2)
            for example in examples.splitlines():
                self.assertIn(f"quillmark {command}", example)
                done = subprocess.run(example, shell=True, cwd=self.folder, env=environment, capture_output=True, timeout=100)
                self.assertIn(done.returncode, (0, 1), done.stderr)

    def test_help_and_version_count_before_what_is_wrong_behind_them(self):
        self.check("-V", 0, "quillmark 1.4\n")
        for words in ("--version --zzz", "identify --help --zzz", "same -hq -j 0"):
            self.check(words, 0, "...")

    def test_what_follows_two_dashes_is_a_path(self):
        self.write_all({name + "/a.ttf": made_font("Made") for name in ("a.ttf", "-q", "--format", "help")})
        paths = "identify -q --format tsv --fields path"
        self.check(f"{paths} a.ttf -- --format help", 0, "path\na.ttf/a.ttf\n--format/a.ttf\nhelp/a.ttf\n")
        self.check(f"{paths} help -j 2 -- -q", 0, "path\nhelp/a.ttf\n-q/a.ttf\n")
        self.check("styles Minion-Bold -- -Italic", 0, "Bold\n")
