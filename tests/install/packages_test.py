"""Makes the Debian packages of the build tree and looks at what they say, hold, and do when they are unpacked."""

import gzip
import re
import shutil
import unittest

from installed import BUILD, HAS_TOOL, LIBDIR, VERSION, InstalledTree, run

PACKAGES = ["libquillmark1", "libquillmark-dev", "python3-quillmark"] + ["quillmark"] * HAS_TOOL


@unittest.skipUnless(shutil.which("dpkg-deb"), "no dpkg-deb")
class PackagesTest(InstalledTree, unittest.TestCase):
    @classmethod
    def lay_out(cls):
        run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.folder / "packages")
        cls.packages = {path.name.partition("_")[0]: path for path in (cls.folder / "packages").glob("*.deb")}
        for path in cls.packages.values():
            run("dpkg-deb", "-x", path, cls.folder / "root")
        return cls.folder / "root/usr"

    def test_names_and_what_they_depend_on(self):
        self.assertEqual(set(self.packages), set(PACKAGES))
        fields = {package: run("dpkg-deb", "-f", path) for package, path in self.packages.items()}
        depends = {package: re.search(r"^Depends: (.*)", text, re.M)[1] for package, text in fields.items()}
        wanted = {package: ["libquillmark1 (= {}-1)"] for package in PACKAGES}
        wanted["libquillmark1"] = [f"{library} (>= " for library in ["libc6", "libstdc++6", "zlib1g"]]
        wanted["python3-quillmark"] = ["libquillmark1 (>= {})"]
        wanted["quillmark"] = ["libquillmark1 (= {}-1)", "libc6 (>= "]
        for package, text in fields.items():
            for other in wanted[package]:
                self.assertIn(other.format(VERSION), depends[package])
            self.assertIn("\nMaintainer: Quillmark developers\n", text)
            self.assertRegex(text, r"\nDescription: [a-z][^\n]{10,70}\n [A-Z][^\n]{,78}\n")

    def test_library_tells_the_linker_and_other_packages(self):
        control = self.folder / "control"
        run("dpkg-deb", "-e", self.packages["libquillmark1"], control)
        self.assertIn("activate-noawait ldconfig", (control / "triggers").read_text())
        self.assertEqual((control / "shlibs").read_text().strip(), f"libquillmark 1 libquillmark1 (>= {VERSION}-1)")

    def test_contents(self):
        found = self.files()
        tool = ["share/man/man1/quillmark.1.gz", "share/zsh/vendor-completions/_quillmark",
                "share/bash-completion/completions/quillmark"] * HAS_TOOL  # fmt: skip
        for path in ["include/quillmark/quillmark.h", f"{LIBDIR}/pkgconfig/quillmark.pc", f"{LIBDIR}/libquillmark.so.1", *tool]:
            self.assertIn(path, found)
        self.assertEqual(len([path for path in found if path.startswith("share/quillmark/Resources/")]), 3)
        for package in PACKAGES:
            doc = self.prefix / "share/doc" / package
            self.assertIn("Quillmark authors", (doc / "copyright").read_text())
            self.assertIn(f"quillmark ({VERSION}-1)", gzip.decompress((doc / "changelog.Debian.gz").read_bytes()).decode())
        for path in self.packages.values():
            for line in run("dpkg-deb", "-c", path).splitlines():
                self.assertRegex(line, r"^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x|lrwxrwxrwx) root/root ", path.name)


if __name__ == "__main__":
    unittest.main()
