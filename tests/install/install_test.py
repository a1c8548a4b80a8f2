"""The build tree as others get it: installed and moved elsewhere, as Debian packages, and with texts that fit the tool.

Everything comes by environment variables, as tests/install/CMakeLists.txt sets them.
"""

import gzip
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["QM_BUILD"])
SOURCE = pathlib.Path(os.environ["QM_SOURCE"])
LIBDIR = os.environ["QM_LIBDIR"]
VERSION = os.environ["QM_VERSION"]
HAS_TOOL = os.environ["QM_TOOL"] == "ON"
FLAGS = os.environ["QM_FLAGS"].split()  # sanitizers: a sanitized library wants hosts that are sanitized too
PRELOAD = os.environ["QM_PRELOAD"]  # their runtime, for the interpreter, which is not
DEJAVU = "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"
WQY = "/usr/share/fonts/truetype/wqy/wqy-zenhei.ttc"
FOUNDRY = "DejaVu Fonts"
EXAMPLE_PRINTS = f"""face 0
  PostScript name   DejaVuSans-Bold
  kind              OpenType - TT
  family            DejaVu Sans
  version           2.37
  foundry           {FOUNDRY}
  checksum          FD8FF11C, read back as 7FFFFFFF
  kerning checksum  00000000
the stored faces agree
"""

WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Werror"]


def run(*command, ok=True, **options):
    """Standard output of a command that succeeds, or else its standard error, with `ok=False`."""
    done = subprocess.run([str(part) for part in command], capture_output=True, text=True, **options)
    if (done.returncode == 0) != ok:
        raise AssertionError(f"{command} gave {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout if ok else done.stderr


def environment(**values):
    """This environment without what would lead to another library or other tables."""
    kept = {name: value for name, value in os.environ.items()
            if not name.startswith("QUILLMARK_") and name not in ("LD_LIBRARY_PATH", "PYTHONPATH")}
    return {**kept, "ASAN_OPTIONS": "detect_leaks=0", **{name: str(value) for name, value in values.items()}}


class InstalledTree:
    """Part of test classes. Lays a tree out once, in a temporary folder, and asks it for the maker of a font."""

    @classmethod
    def setUpClass(cls):
        holder = tempfile.TemporaryDirectory(prefix="quillmark install ")  # a blank, as paths may have
        cls.addClassCleanup(holder.cleanup)
        cls.folder = pathlib.Path(holder.name)
        cls.prefix = cls.lay_out()

    def test_library(self):
        library = self.prefix / LIBDIR / f"libquillmark.so.{VERSION}"
        declared = re.findall(r"^QM_EXPORT .*\b(QM_\w+)\(", (SOURCE / "include/quillmark/quillmark.h").read_text(), re.M)
        listed = re.findall(r"^ *(QM_\w+);$", (SOURCE / "cmake/quillmark.map").read_text(), re.M)
        symbols = run(os.environ["QM_NM"], "-D", "--defined-only", library).splitlines()
        self.assertEqual(len(declared), 28)
        self.assertEqual([sorted(listed), sorted(line.split()[-1] for line in symbols)], [sorted(declared)] * 2)
        self.assertIn("Library soname: [libquillmark.so.1]", run("readelf", "-dW", library))

    @unittest.skipUnless(HAS_TOOL, "built without the tool")
    def test_tool_finds_its_tables(self):
        link = self.folder / "another name"
        link.symlink_to(self.prefix / "bin/quillmark")
        for tool in [self.prefix / "bin/quillmark", link]:
            self.assertIn(FOUNDRY, run(tool, "identify", DEJAVU, env=environment(), cwd="/"))

    def test_python_module_finds_its_library(self):
        code = f"import quillmark; print(quillmark.identify({DEJAVU!r})[0].foundry, quillmark.__file__)"
        module = self.prefix / "lib/python3/dist-packages"
        env = environment(PYTHONPATH=module, LD_PRELOAD=PRELOAD, PYTHONDONTWRITEBYTECODE=1)
        self.assertEqual(run(os.environ["QM_PYTHON"], "-c", code, env=env).strip(),
                         f"{FOUNDRY} {module}/quillmark/__init__.py")


class InstallTest(InstalledTree, unittest.TestCase):
    @classmethod
    def lay_out(cls):
        run("cmake", "--install", BUILD, "--prefix", cls.folder / "first")
        return (cls.folder / "first").rename(cls.folder / "moved")

    def example(self, suffix):
        return self.prefix / ("share/doc/quillmark/examples/identify_store_compare" + suffix)

    def test_consumer_by_cmake(self):
        def configure(build, version, ok=True):
            words = {"CMAKE_PREFIX_PATH": self.prefix, "CMAKE_C_COMPILER": os.environ["CC"], "CMAKE_C_FLAGS": " ".join(FLAGS),
                     "EXAMPLE": self.example(".c"), "WANTED_VERSION": version}  # fmt: skip
            words = [f"-D{name}={value}" for name, value in words.items()]
            return run("cmake", "-S", SOURCE / "tests/install/consumer", "-B", build, *words, ok=ok)

        build = self.folder / "by cmake"
        configure(build, "1.4")
        run("cmake", "--build", build)
        self.assertEqual(run(build / "consumer", DEJAVU, build / "store", env=environment()), EXAMPLE_PRINTS)
        for version in ["0.9", "1.5", "2"]:
            self.assertIn("compatible with", configure(self.folder / f"refused {version}", version, ok=False))

    def compile(self, *command):
        env = environment(PKG_CONFIG_PATH=self.prefix / LIBDIR / "pkgconfig")
        self.assertEqual(run("pkg-config", "--modversion", "quillmark", env=env).strip(), VERSION)
        run(*command, *WARNINGS, *shlex.split(run("pkg-config", "--cflags", "--libs", "quillmark", env=env)))

    def test_examples_tell_whether_the_stored_faces_agree(self):
        def ask(font, store):
            env = environment(LD_LIBRARY_PATH=self.prefix / LIBDIR, ASAN_OPTIONS="detect_leaks=1")
            done = subprocess.run([self.folder / "example", font, store], capture_output=True, text=True, env=env)
            return done.returncode, done.stdout

        for compiler, suffix in [([os.environ["CC"], "-std=c99"], ".c"), ([os.environ["CXX"]], ".cc")]:
            self.compile(*compiler, self.example(suffix), *FLAGS, "-o", self.folder / "example")
            store, collection = (self.folder / (name + suffix) for name in ("store", "collection"))
            for _ in ("new", "known"):
                self.assertEqual(ask(DEJAVU, store), (0, EXAMPLE_PRINTS))
                self.assertEqual(ask(WQY, collection)[1].count("  kerning checksum  44764C75\n"), 3)
            for other in (DEJAVU.replace("-Bold", ""), WQY):  # with as many faces, which are compared, and with more
                self.assertEqual(ask(other, store)[0], 1)
                self.assertRegex(ask(other, store)[1], r"(?ms)^! .*\nthe stored faces differ\n")
            store.write_text("no stored face")
            self.assertEqual([ask(font, store)[0] for font in (DEJAVU, "/none")], [2, 2])
        # Its default is an older C++ than that of other compilers.
        self.compile("clang++-14", self.example(".cc"), "-fsyntax-only", "-Qunused-arguments")

    def test_pip_leaves_nothing_in_the_folder(self):
        wanted = "import setuptools, wheel, pip"
        pythons = [python for python in (os.environ["QM_PYTHON"], "/usr/bin/python3")
                   if subprocess.run([python, "-c", wanted], capture_output=True).returncode == 0]  # fmt: skip
        if not pythons:
            self.skipTest("no pip with setuptools and wheel")
        folder, target = self.folder / "python", self.folder / "by pip"
        shutil.copytree(SOURCE / "bindings/python", folder, ignore=shutil.ignore_patterns("__pycache__"))
        before = sorted(folder.rglob("*"))
        run(pythons[0], "-m", "pip", "install", "--no-build-isolation", "--no-index", "--target", target, folder)
        self.assertEqual(sorted(folder.rglob("*")), before)
        self.assertTrue((target / "quillmark/__init__.py").is_file())

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


@unittest.skipUnless(shutil.which("dpkg-deb"), "no dpkg-deb")
class PackagesTest(InstalledTree, unittest.TestCase):
    @classmethod
    def lay_out(cls):
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder / "packages")
        cls.packages = {path.name.partition("_")[0]: path for path in (cls.folder / "packages").glob("*.deb")}
        for path in cls.packages.values():
            run("dpkg-deb", "-x", path, cls.folder / "root")
        return cls.folder / "root/usr"

    def test_what_they_depend_on(self):
        depends = {package: run("dpkg-deb", "-f", path, "Depends") for package, path in self.packages.items()}
        wanted = {"libquillmark1": ["libc6 (>= ", "libstdc++6 (>= ", "zlib1g (>= "],
                  "libquillmark-dev": [f"libquillmark1 (= {VERSION}-1)"],
                  "python3-quillmark": [f"libquillmark1 (>= {VERSION})"],
                  "quillmark": [f"libquillmark1 (= {VERSION}-1)", "libc6 (>= "]}  # fmt: skip
        self.assertEqual(set(depends), set(wanted if HAS_TOOL else wanted.keys() - {"quillmark"}))
        for package, others in depends.items():
            self.assertEqual([other for other in wanted[package] if other not in others], [], package)

    def test_library_tells_the_linker_and_other_packages(self):
        control = self.folder / "control"
        run("dpkg-deb", "-e", self.packages["libquillmark1"], control)
        self.assertIn("activate-noawait ldconfig", (control / "triggers").read_text())
        self.assertEqual((control / "shlibs").read_text().strip(), f"libquillmark 1 libquillmark1 (>= {VERSION}-1)")

    def test_contents(self):
        wanted = {
            "libquillmark1": [f"{LIBDIR}/libquillmark.so.1", "share/quillmark/Resources/KeywordTable.plist"],
            "libquillmark-dev": ["include/quillmark/quillmark.h", f"{LIBDIR}/pkgconfig/quillmark.pc", f"{LIBDIR}/libquillmark.so"],
            "python3-quillmark": ["lib/python3/dist-packages/quillmark/py.typed"],
            "quillmark": ["bin/quillmark", "share/man/man1/quillmark.1.gz", "share/zsh/vendor-completions/_quillmark",
                          "share/bash-completion/completions/quillmark"],
        }  # fmt: skip
        for package, path in self.packages.items():
            doc = self.prefix / "share/doc" / package
            self.assertIn("Quillmark authors", (doc / "copyright").read_text())
            self.assertIn(f"quillmark ({VERSION}-1)", gzip.decompress((doc / "changelog.Debian.gz").read_bytes()).decode())
            listed = run("dpkg-deb", "-c", path)
            for line in listed.splitlines():
                self.assertRegex(line, r"^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x|lrwxrwxrwx) root/root ", package)
            for owner, names in wanted.items():
                found = [name for name in names if re.search(rf" \./usr/{re.escape(name)}\s", listed)]
                self.assertEqual(found, names if owner == package else [])


@unittest.skipUnless(HAS_TOOL, "built without the tool")
class ToolTextsTest(unittest.TestCase):
    """Manual page and completions name every command and option that the tool has."""

    @classmethod
    def setUpClass(cls):
        tool = BUILD / "bin/quillmark"
        def commands(*of):
            listed = run(tool, *of, "--help").partition("Subcommands:\n")[2].partition("\n\n")[0]
            return re.findall(r"^  (\w+) ", listed, re.M)

        cls.commands = commands() + ["catalogue " + part for part in commands("catalogue")]
        helps = {command: run(tool, *command.split(), "--help") for command in cls.commands}
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

        self.assertLessEqual(set(" ".join(self.commands).split()), set(complete("") + complete("catalogue", "")))
        for command, option in self.options:
            self.assertIn(option, complete(*command.split(), "--"), command)
        for command, forms in self.forms.items():
            self.assertEqual(set(complete(*command.split(), "--format", "=")), forms, command)
        self.assertEqual(set(complete("identify", "--fields", "")), self.fields)
        self.assertEqual(complete("identify", "--fields", "path,post"), ["path,postScriptName"])

    def test_zsh_completion(self):
        text = (SOURCE / "completions/_quillmark").read_text()
        self.assertEqual(set(re.search(r"\nfields=\(([\w\s]+)\)", text)[1].split()), self.fields)
        for word in [f"\n  '{command.split()[-1]}:" for command in self.commands] + [rf"{option}\b" for _, option in self.options]:
            self.assertRegex(text, word)
