"""Installs the build tree, moves the installed tree elsewhere, and uses it from there as hosts do."""

import os
import re
import shlex
import shutil
import subprocess
import unittest

from installed import (BUILD, DEJAVU, FLAGS, FOUNDRY, HAS_TOOL, LIBDIR, SOURCE, VERSION, InstalledTree, environment,
                       run)  # fmt: skip

CONSUMER = SOURCE / "tests/install/consumer"
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]
COMPONENTS = {
    "library": r"{lib}/libquillmark\.so\.\d+(\.\d+\.\d+)?|share/quillmark/Resources/\w+\.plist",
    "development": r"include/quillmark/quillmark\.h|{lib}/libquillmark\.so|{lib}/pkgconfig/quillmark\.pc|"
    r"{lib}/cmake/quillmark/quillmark-(config|config-version|targets|targets-\w+)\.cmake|"
    r"share/doc/quillmark/(README|CHANGELOG|bindings/python/README|docs/[\w-]+)\.md|share/doc/quillmark/examples/\w+\.cc?",
    "tool": r"bin/quillmark|share/man/man1/quillmark\.1|share/bash-completion/completions/quillmark|"
    r"share/zsh/site-functions/_quillmark",
    "python": r"lib/python3/dist-packages/quillmark/(\w+\.py|py\.typed)",
    "license": r"share/doc/quillmark/LICENSE",
}


def install(prefix, *options):
    run("cmake", "--install", BUILD, "--prefix", prefix, *options)


class InstallTest(InstalledTree, unittest.TestCase):
    @classmethod
    def lay_out(cls):
        install(cls.folder / "first")
        return (cls.folder / "first").rename(cls.folder / "moved")

    def test_every_file_belongs_to_its_component(self):
        together = set()
        for component, pattern in COMPONENTS.items():
            prefix = self.folder / component
            install(prefix, "--component", component)
            found = self.files(prefix)
            pattern = pattern.format(lib=re.escape(LIBDIR))
            self.assertEqual([path for path in found if not re.fullmatch(pattern, path)], [], component)
            self.assertEqual(found == set(), component == "tool" and not HAS_TOOL, component)
            together |= found
            shutil.rmtree(prefix, ignore_errors=True)
        self.assertEqual(together, self.files())

    def test_nothing_knows_where_it_was_installed(self):
        for path in self.prefix.rglob("*"):
            if path.suffix in (".cmake", ".pc", ".py"):
                self.assertEqual([folder for folder in (self.folder / "first", BUILD, SOURCE) if str(folder) in path.read_text()], [], path)

    def test_consumer_by_cmake(self):
        def configure(build, version, ok=True):
            words = {"PREFIX_PATH": self.prefix, "C_COMPILER": os.environ["CC"], "C_FLAGS": " ".join(FLAGS)}
            words = [f"-DCMAKE_{name}={value}" for name, value in words.items()]
            return run("cmake", "-S", CONSUMER, "-B", build, f"-DWANTED_VERSION={version}", *words, ok=ok)

        build = self.folder / "by cmake"
        configure(build, "1.4")
        run("cmake", "--build", build)
        self.assertEqual(run(build / "consumer", DEJAVU, env=environment()).strip(), FOUNDRY)
        for version in ["0.9", "1.5", "2"]:
            self.assertIn("compatible with", configure(self.folder / f"refused {version}", version, ok=False))

    def test_consumer_by_pkg_config(self):
        env = environment(PKG_CONFIG_PATH=self.prefix / LIBDIR / "pkgconfig")
        self.assertEqual(run("pkg-config", "--modversion", "quillmark", env=env).strip(), VERSION)
        flags = shlex.split(run("pkg-config", "--cflags", "--libs", "quillmark", env=env))
        c, cc = os.environ["CC"], os.environ["CXX"]
        examples = self.prefix / "share/doc/quillmark/examples"
        env = environment(LD_LIBRARY_PATH=self.prefix / LIBDIR)
        for command, arguments in [([c, "-std=c99", CONSUMER / "consumer.c"], []),
                                   ([cc, "-x", "c++", CONSUMER / "consumer.c"], []),
                                   ([c, examples / "identify_store_compare.c"], [self.folder / "stored.xml"]),
                                   ([cc, examples / "identify_store_compare.cc"], [self.folder / "stored.plist"])]:  # fmt: skip
            program = self.folder / "by pkg-config"
            run(*command, *WARNINGS, *FLAGS, *flags, "-o", program)
            self.assertIn(FOUNDRY, run(program, DEJAVU, *arguments, env=env), command)
        # Its default is an older C++ than that of other compilers.
        run("clang++-14", examples / "identify_store_compare.cc", *WARNINGS, *flags, "-fsyntax-only", "-Qunused-arguments")

    def test_pip_leaves_nothing_in_the_folder(self):
        for python in [os.environ["QM_PYTHON"], "/usr/bin/python3"]:
            if subprocess.run([python, "-c", "import setuptools, wheel, pip"], capture_output=True).returncode == 0:
                break
        else:
            self.skipTest("no pip with setuptools and wheel")
        folder, target = self.folder / "python", self.folder / "by pip"
        shutil.copytree(SOURCE / "bindings/python", folder, ignore=shutil.ignore_patterns("__pycache__"))
        before = sorted(folder.rglob("*"))
        run(python, "-m", "pip", "install", "--no-build-isolation", "--no-index", "--target", target, folder)
        self.assertEqual(sorted(folder.rglob("*")), before)
        env = environment(PYTHONPATH=target)
        self.assertEqual(run(python, "-c", "import quillmark; print(quillmark.__version__)", env=env).strip(), VERSION)

    def test_links_between_pages_hold(self):
        pages = list((self.prefix / "share/doc/quillmark").rglob("*.md"))
        links = [(page, link) for page in pages for link in re.findall(r"\]\(([^):#]+)[#)]", page.read_text())]
        self.assertGreater(len(links), len(pages))
        self.assertEqual([(page.name, link) for page, link in links if not (page.parent / link).is_file()], [])

    def test_texts_tell_the_version(self):
        for path, line in [("bindings/python/quillmark/__init__.py", rf'__version__ = "{VERSION}"'),
                           ("CHANGELOG.md", rf"## \[{VERSION}\] - "),
                           ("cmake/debian/changelog", rf"quillmark \({VERSION}-")]:  # fmt: skip
            lines = (SOURCE / path).read_text().splitlines()
            first = next(text for text in lines if re.match(r"__version__|## |quillmark \(", text))
            self.assertRegex(first, line, path)


@unittest.skipUnless(HAS_TOOL, "built without the tool")
class ToolTextsTest(unittest.TestCase):
    """Manual page and completions name every command and option that the tool has."""

    @classmethod
    def setUpClass(cls):
        tool = BUILD / "bin/quillmark"
        cls.commands = re.findall(r"^  (\w+) ", run(tool, "--help").partition("Subcommands:")[2], re.M)
        helps = {command: run(tool, command, "--help") for command in cls.commands}
        cls.options = {(command, option)
                       for command, text in helps.items() for option in re.findall(r"(?<![\w-])--[a-z][a-z-]*", text)}
        cls.forms = {command: set(forms.split(","))
                     for command, text in helps.items() for forms in re.findall(r"--format TEXT:\{([a-z,]+)\}", text)}
        fault = subprocess.run([tool, "identify", "--fields", "none", DEJAVU], capture_output=True, text=True).stderr
        cls.fields = set(fault.partition("there are ")[2].splitlines()[0].split(", "))

    def test_manual_page(self):
        page = SOURCE / "man/quillmark.1"
        self.assertEqual(run("sh", "-c", 'groff -ww -mandoc -z -Tutf8 "$1" 2>&1', "sh", page), "")
        text = page.read_text()
        words = [f"Cm {command}\n" for command in self.commands] + [rf".*Fl -{option[2:]}\b" for _, option in self.options]
        for word in words:
            self.assertRegex(text, r"\n\.It " + word)
        named = re.findall(r"^\.It Cm (.*)", text.partition(".Sh FIELDS")[2], re.M)
        self.assertEqual({name for line in named for name in line.split(" , ")}, self.fields)

    def test_bash_completion(self):
        def complete(*words):
            script = ('source "$1"; compopt() { :; }; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _quillmark; '
                      'printf "%s\\n" "${COMPREPLY[@]}"')
            return run("bash", "-euc", script, "bash", SOURCE / "completions/quillmark.bash", "quillmark", *words).split()

        self.assertLessEqual(set(self.commands), set(complete("")))
        for command, option in self.options:
            self.assertIn(option, complete(command, "--"), command)
        for command, forms in self.forms.items():
            self.assertEqual(set(complete(command, "--format", "=")), forms, command)
        self.assertEqual(set(complete("identify", "--fields", "")), self.fields)
        self.assertEqual(complete("identify", "--fields", "path,post"), ["path,postScriptName"])

    def test_zsh_completion(self):
        text = (SOURCE / "completions/_quillmark").read_text()
        self.assertEqual(set(re.search(r"\nfields=\(([\w\s]+)\)", text)[1].split()), self.fields)
        for word in [f"\n  '{command}:" for command in self.commands] + [rf"{option}\b" for _, option in self.options]:
            self.assertRegex(text, word)


if __name__ == "__main__":
    unittest.main()
