"""What ./run says when it cannot do its work: one sentence, and no half-built program started."""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
NEEDED = "bash cat cmake dirname dpkg-query env grep id kill mktemp mkdir ninja readlink rm sleep tail".split()
MISSING_NINJA = """#!/bin/bash
[ "${@: -1}" = ninja-build ] && exit 1
exec REAL "$@"
"""


class RunWithoutSomething(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        os.chmod(self.folder.name, 0o755)
        for tool in NEEDED:
            os.symlink(shutil.which(tool), os.path.join(self.folder.name, tool))

    def replace(self, tool, text):
        path = os.path.join(self.folder.name, tool)
        if os.path.lexists(path):
            os.unlink(path)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def pretend_ninja_is_missing(self):
        self.replace("dpkg-query", MISSING_NINJA.replace("REAL", shutil.which("dpkg-query")))

    def run_it(self):
        done = subprocess.run([str(ROOT / "run"), "--version"], env={"PATH": self.folder.name},
                              capture_output=True, text=True, timeout=60)
        self.assertEqual(done.returncode, 1, done.stderr)
        self.assertEqual(done.stdout, "")
        return done.stderr.splitlines()

    def test_without_a_compiler(self):
        self.assertEqual(self.run_it(), ["K sestavení chybí g++."])

    def test_without_apt(self):
        self.pretend_ninja_is_missing()
        self.assertEqual(
            self.run_it(),
            ["Chybí balíčky, a apt-get, který by je nainstaloval, tu není: ninja-build"])

    def test_without_a_network(self):
        self.pretend_ninja_is_missing()
        self.replace("apt-get", "#!/bin/bash\necho 'could not resolve the host' >&2\nexit 100\n")
        self.replace("sudo", '#!/bin/bash\nexec "$@"\n')
        self.assertEqual(
            self.run_it(),
            ["Doinstaluji balíčky: ninja-build",
             "Balíčky se nepodařilo nainstalovat, nejspíš chybí připojení k síti: ninja-build"])

    def test_without_the_rights_to_install(self):
        self.pretend_ninja_is_missing()
        self.replace("apt-get", "#!/bin/bash\nexit 100\n")
        self.replace("id", "#!/bin/bash\necho 1000\n")
        said = self.run_it()
        self.assertEqual(len(said), 1)
        self.assertIn("Jako root spusťte: apt-get install ninja-build", said[0])


if __name__ == "__main__":
    sys.exit(unittest.main())
