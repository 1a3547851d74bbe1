"""The tree configured as on a Mac, with stand-ins for Apple's tools: what the build file would have a Mac do."""
import re
import shutil
import subprocess
from pathlib import Path

import pytest

# One worker configures for all of these.
pytestmark = pytest.mark.xdist_group("configuration")

ROOT = Path(__file__).resolve().parents[2]
FRAMEWORKS = ["Foundation", "AppKit", "CoreServices", "CoreFoundation", "Security", "ServiceManagement", "IOKit"]


GOOGLE_TEST = """add_library(GTest::gtest INTERFACE IMPORTED)
add_library(GTest::gtest_main INTERFACE IMPORTED)
"""
NO_GOOGLE_TEST = "-DCMAKE_DISABLE_FIND_PACKAGE_GTest=TRUE"
MISSING = "No tests are built: GoogleTest is missing (brew install googletest)"


def configure(folder, *options, **environment):
    """The text of the build file that a Mac would have in `folder`/build, and what the configuration said."""
    tools = folder / "tools"
    tools.mkdir()
    for name in ["ibtool", "install_name_tool", "otool"]:
        (tools / name).symlink_to(shutil.which("true"))
    done = subprocess.run(
        ["cmake", "-S", ROOT, "-B", folder / "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
         "-DCMAKE_SYSTEM_NAME=Darwin", "-DCMAKE_CXX_COMPILER=clang++", "-DCMAKE_OSX_SYSROOT=/",
         # Nothing can be linked here; what the compilers are is asked all the same.
         "-DCMAKE_CXX_COMPILER_WORKS=1", "-DCMAKE_OBJCXX_COMPILER_WORKS=1",
         f"-DCMAKE_PROGRAM_PATH={tools}", f"-DCMAKE_INSTALL_NAME_TOOL={tools}/install_name_tool", *options],
        env={"PATH": f"{tools}:/usr/bin:/bin", **environment}, capture_output=True, text=True)
    assert done.returncode == 0, done.stderr
    return (folder / "build/build.ninja").read_text(), done.stdout


@pytest.fixture(scope="module")
def folder(tmp_path_factory):
    return tmp_path_factory.mktemp("mac")


@pytest.fixture(scope="module")
def configured(folder):
    return configure(folder, NO_GOOGLE_TEST)


@pytest.fixture(scope="module")
def build(configured):
    return configured[0]


@pytest.fixture(scope="module")
def said(configured):
    return configured[1]


@pytest.fixture(scope="module")
def build_with_tests(tmp_path_factory):
    folder = tmp_path_factory.mktemp("mac-with-tests")
    (folder / "GTestConfig.cmake").write_text(GOOGLE_TEST)
    build, said = configure(folder, f"-DGTest_DIR={folder}")
    assert MISSING not in said
    return build


def variables(build, name):
    return re.findall(rf"^  {name} = (.*)$", build, re.MULTILINE)


def test_every_file_is_compiled_for_the_least_system_and_both_processors(build):
    flags = variables(build, "FLAGS")
    assert len(flags) > 60
    for line in flags:
        assert "-mmacosx-version-min=10.9" in line
        assert "-arch x86_64 -arch arm64" in line


def test_the_environment_may_name_another_least_system(tmp_path):
    build, _ = configure(tmp_path, NO_GOOGLE_TEST, MACOSX_DEPLOYMENT_TARGET="10.13")
    for line in variables(build, "FLAGS"):
        assert "-mmacosx-version-min=10.13" in line
    assert "--minimum-deployment-target 10.13 --compile" in build
    assert "<string>10.13</string>" in (tmp_path / "build/installer/Info.plist").read_text()


def test_other_systems_and_processors_can_be_asked_for(tmp_path):
    build, _ = configure(tmp_path, NO_GOOGLE_TEST,
                         "-DCMAKE_OSX_DEPLOYMENT_TARGET=10.13", "-DCMAKE_OSX_ARCHITECTURES=arm64")
    for line in variables(build, "FLAGS"):
        assert "-mmacosx-version-min=10.13" in line and "-arch arm64" in line and "x86_64" not in line
    assert "--minimum-deployment-target 10.13 --compile" in build
    assert "<string>10.13</string>" in (tmp_path / "build/installer/Info.plist").read_text()


def test_manual_retain_and_release_and_no_warning_of_what_the_least_system_has(build):
    compiled = re.findall(r"^build \S+\.(mm|cpp)\.o: .*\n(?:  .*\n)*?  FLAGS = (.*)$", build, re.MULTILINE)
    assert {kind for kind, _ in compiled} == {"mm", "cpp"}
    for kind, flags in compiled:
        assert "-Wno-deprecated-declarations" in flags
        assert ("-fno-objc-arc" in flags) == (kind == "mm")


@pytest.mark.parametrize("layout", ["QWSyleAlert", "QWBrowsersAlert"])
def test_interface_files_are_compiled_beside_the_executable(build, layout):
    line, = [line for line in variables(build, "COMMAND") if f"{layout}.xib" in line]
    words = line.split("&& ", 1)[1].split()
    folder = words[6].rsplit("/", 1)[0]
    assert words[0].endswith("/tools/ibtool")
    assert words[1:] == ["--errors", "--warnings", "--minimum-deployment-target", "10.9", "--compile",
                         f"{folder}/{layout}.nib", f"{ROOT}/ui/{layout}.xib"]
    assert re.search(r"^build bin/KSExtensionInstaller: ", build, re.MULTILINE)
    assert folder.endswith("/bin")


def linked(build, program):
    """The LINK variables of the statement that links a program."""
    statement = re.search(rf"^build bin/{program}: .*\n((?:  .*\n)+)", build, re.MULTILINE)[1]
    return dict(re.findall(r"^  (\w+) = (.*)$", statement, re.MULTILINE))


def test_the_installer_is_linked_with_apples_frameworks_and_its_info_dictionary(build):
    link = linked(build, "KSExtensionInstaller")
    assert link["LINK_LIBRARIES"].split() == [word for name in FRAMEWORKS for word in ("-framework", name)]
    info = re.search(r"-sectcreate -Xlinker __TEXT -Xlinker __info_plist -Xlinker (\S+)", link["LINK_FLAGS"])[1]
    text = Path(info).read_text()
    assert "<key>CFBundleIdentifier</key>" in text and "<string>10.9</string>" in text
    assert "Version</key>\n    <string>2" not in text and "KSVersion" not in text


def test_nothing_of_debian_is_left(build, build_with_tests):
    for word in ["gnustep", "GNUSTEP", "ORIGIN", "idirafter", "/linux/", "standins", "--no-as-needed"]:
        assert word not in build, word
        assert word not in build_with_tests, word


def programs(build):
    return set(re.findall(r"^build bin/(\w+): CXX_EXECUTABLE_LINKER", build, re.MULTILINE))


def test_without_googletest_no_tests_are_built_and_it_is_said(build, said):
    assert f"-- {MISSING}" in said.splitlines()
    assert programs(build) == {"KSExtensionInstaller", "KSLogReader", "KSStatus"}
    assert "/tests/" not in build


def test_with_googletest_the_facts_and_the_plain_tests_are_built(build_with_tests):
    facts = re.findall(r"^platform_facts\((\w+)", (ROOT / "tests/platform_facts/CMakeLists.txt").read_text(), re.MULTILINE)
    plain = [name for room in ["crypto", "platform"]
             for name in re.findall(r"^plain_test\((\w+)", (ROOT / f"tests/{room}/CMakeLists.txt").read_text(), re.MULTILINE)]
    assert len(facts) >= 5 and len(plain) >= 5
    assert programs(build_with_tests) == {"KSExtensionInstaller", "KSLogReader", "KSStatus", "crypto_lines",
                                          "facts_application", *facts, *plain}


def test_tests_are_built_for_the_mac_that_builds_them_and_the_product_for_every_one(build_with_tests):
    compiled = re.findall(r"^build (\S+)\.(?:mm|cpp)\.o: .*\n(?:  .*\n)*?  FLAGS = (.*)$", build_with_tests, re.MULTILINE)
    assert {path.startswith("tests/") for path, _ in compiled} == {True, False}
    for path, flags in compiled:
        assert ("-mmacosx-version-min=10.9" in flags) != path.startswith("tests/"), path
        assert ("-arch x86_64 -arch arm64" in flags) != path.startswith("tests/"), path


def test_what_is_installed(build, folder):
    scripts = "".join(path.read_text() for path in (folder / "build").rglob("cmake_install.cmake"))
    installs = re.findall(r'DESTINATION "\$\{CMAKE_INSTALL_PREFIX\}/([^"]+)" TYPE \w+(?: RENAME "[^"]+")? FILES((?:\s*"[^"]+")+)', scripts)
    installed = {f"{place}/{file.rsplit('/', 1)[1]}" for place, files in installs for file in re.findall(r'"([^"]+)"', files)}
    assert installed == {"bin/KSLogReader", "bin/KSStatus", "libexec/keystrel/KSExtensionInstaller",
                         "libexec/keystrel/QWBrowsersAlert.nib", "libexec/keystrel/QWSyleAlert.nib",
                         "share/bash-completion/completions/KSLogReader.bash", "share/zsh/site-functions/_KSLogReader",
                         "share/bash-completion/completions/KSStatus.bash", "share/zsh/site-functions/_KSStatus",
                         "share/man/man1/KSExtensionInstaller.1", "share/man/man1/KSLogReader.1",
                         "share/man/man1/KSStatus.1"}
