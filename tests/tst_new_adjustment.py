"""What `./dev new-adjustment` writes, in a copy of the tree. Arguments: the tree, a folder to work in, and the
compiler with its options."""
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

TREE, WORK, COMPILER = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3:]

LISTS = {"bench/BenchAdjustments.cpp", "catalog/AdjustmentCatalog.cpp", "docs/pixel-rules.md",
         "host/image/CMakeLists.txt", "operations/CMakeLists.txt", "operations/Catalog.cpp",
         "src/CMakeLists.txt", "tests/CMakeLists.txt", "tests/catalog/tst_AdjustmentCatalog.cpp",
         "tests/catalog/tst_AdjustmentContracts.cpp", "tests/catalog/tst_PanelForms.cpp"}
FILES = {"operations/SplitTone.cpp", "operations/SplitTone.h", "src/YDSplitToneWidget.cpp",
         "src/YDSplitToneWidget.h", "tests/src/tst_YDSplitToneWidget.cpp", "ui/SplitToneParamWidget.ui"}


def git(*arguments):
    done = subprocess.run(["git", "-c", "user.name=test", "-c", "user.email=test@localhost", "-c", "commit.gpgsign=false",
                           "-c", "core.hooksPath=/dev/null", *arguments],
                          cwd=WORK, check=True, capture_output=True, text=True)
    return done.stdout


def changed():
    return {line[3:] for line in git("status", "--porcelain", "-uall").splitlines()}


def new_adjustment(*arguments):
    return subprocess.run([WORK / "templates/new-adjustment", *arguments], capture_output=True, text=True)


class NewAdjustment(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)
        names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=TREE, check=True,
                               capture_output=True, text=True).stdout.rstrip("\0").split("\0")
        for name in names:
            if (TREE / name).is_file() and Path(name).suffix not in (".png", ".svg"):
                (WORK / name).parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(TREE / name, WORK / name)
        git("init", "-q")
        git("add", "-A")
        git("commit", "-qm", "copy")

    def setUp(self):
        git("reset", "-q", "--hard")
        git("clean", "-qfd")

    def check_what_is_written(self, arguments, files, lists):
        done = new_adjustment("split-tone", *arguments)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertEqual(changed(), files | lists)
        for line in git("diff", "--numstat").splitlines():
            added, removed, path = line.split("\t")
            self.assertGreater(int(added), 0, path)
            self.assertEqual(removed, "0", path)
        for path in files:
            self.assertNotRegex((WORK / path).read_text(), "@[A-Za-z]+@", path)
        sources = [path for path in files | lists if path.endswith((".h", ".cpp"))]
        subprocess.run(["clang-format", "--dry-run", "--Werror", *sources], cwd=WORK, check=True)

    def check_that_it_compiles(self, *sources):
        """As one unit, so that the library's headers are read once."""
        (WORK / "tests/src/tst_YDSplitToneWidget.moc").touch()
        subprocess.run(["uic", "ui/SplitToneParamWidget.ui", "-o", "ui_SplitToneParamWidget.h"], cwd=WORK,
                       check=True)
        includes = WORK / "include/image"
        includes.mkdir(parents=True)
        for header in (WORK / "host/image").rglob("*.h"):
            (includes / header.name).symlink_to(header)
        folders = ["-I" + folder
                   for folder in (".", "include", "host", "src", "operations/engine", "operations/records", "tests")]
        unit = "".join(f'#include "{source}"\n' for source in sources)
        subprocess.run([COMPILER[0], *folders, *COMPILER[1:], "-fsyntax-only", "-xc++", "-"], cwd=WORK,
                       input=unit, text=True, check=True)

    def test_a_table_rule(self):
        rule = {"host/image/rules/YDIterativeSplitToneTransformation.cpp",
                "host/image/rules/YDIterativeSplitToneTransformation.h"}
        test = {"tests/host/image/rules/tst_YDIterativeSplitToneTransformation.cpp"}
        self.check_what_is_written([], FILES | rule | test, LISTS)
        self.check_that_it_compiles("host/image/rules/YDIterativeSplitToneTransformation.cpp",
                                    "operations/SplitTone.cpp", "src/YDSplitToneWidget.cpp",
                                    "tests/src/tst_YDSplitToneWidget.cpp")

    def test_a_rule_with_a_kernel(self):
        kernel = {"host/image/rules/SplitToneRule.h", "host/simd/SplitToneRow.cpp"}
        lists = {"host/image/VectorKernels.h", "host/simd/CMakeLists.txt"}
        test = {"tests/host/image/rules/tst_SplitToneRule.cpp"}
        self.check_what_is_written(["--kernel"], FILES | kernel | test, LISTS | lists)
        self.check_that_it_compiles("host/simd/SplitToneRow.cpp", "operations/SplitTone.cpp")

    def test_names_that_cannot_be(self):
        for name, reason in (("SplitTone", "no name"), ("split_tone", "no name"), ("split-", "no name"),
                             ("../split", "no name"), ("gamma", "Gamma is the name"),
                             ("group", "Group is the name"), ("color-balance", "ColorBalance is the name")):
            done = new_adjustment(name)
            self.assertEqual(done.returncode, 1, name)
            self.assertIn(reason, done.stderr)
            self.assertEqual(changed(), set())

    def test_nothing_that_is_not_committed_is_touched(self):
        catalog = WORK / "operations/Catalog.cpp"
        edited = catalog.read_text() + "\n"
        catalog.write_text(edited)
        done = new_adjustment("split-tone")
        self.assertEqual(done.returncode, 1)
        self.assertIn("operations/Catalog.cpp", done.stderr)
        self.assertEqual(changed(), {"operations/Catalog.cpp"})
        self.assertEqual(catalog.read_text(), edited)

    def test_a_file_that_is_there_stays(self):
        form = WORK / "ui/SplitToneParamWidget.ui"
        form.write_text("mine")
        done = new_adjustment("split-tone")
        self.assertEqual(done.returncode, 1)
        self.assertIn("there is ui/SplitToneParamWidget.ui already", done.stderr)
        self.assertEqual(changed(), {"ui/SplitToneParamWidget.ui"})
        self.assertEqual(form.read_text(), "mine")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
