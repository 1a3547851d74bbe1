"""Manifests."""

import hashlib
import os

import pytest

from tests.support.mac import macroot


@pytest.fixture
def tree(tmp_path):
    """A small tree of its own making."""
    tree = tmp_path / "tree"
    (tree / "folder").mkdir(parents=True)
    (tree / "folder" / "file").write_bytes(b"content")
    (tree / "folder" / "file").chmod(0o4640)
    (tree / "folder").chmod(0o1750)
    (tree / "link").symlink_to("folder/file")
    return tree


def manifest(tree):
    done = macroot("manifest", tree)
    assert (done.returncode, done.stderr) == (0, "")
    return done.stdout.splitlines()


def owner(path):
    """As a manifest shows a file of this test's own user."""
    status = os.lstat(path)
    return f"{status.st_uid}:{status.st_gid}" if os.geteuid() == 0 else None


def test_one_line_an_entry(tree):
    mine = owner(tree / "link") or manifest(tree)[0].split("\t")[2]
    assert manifest(tree) == [
        f"d\t1750\t{mine}\t/folder",
        f"f\t4640\t{mine}\t/folder/file\t{hashlib.sha256(b'content').hexdigest()}",
        f"l\t0777\t{mine}\t/link\tfolder/file",
    ]


def test_lines_are_sorted_by_path(tree):
    for name in ("a", "a b", "a-b", "a/x", "B", "é", "~"):
        (tree / name).mkdir()
    paths = [line.split("\t")[3] for line in manifest(tree)]
    assert paths == sorted(paths)
    assert paths[:5] == ["/B", "/a", "/a b", "/a-b", "/a/x"]


@pytest.mark.parametrize("name, shown", [
    (b"tab\there", r"/tab\x09here"),
    (b"line\nbreak", r"/line\x0abreak"),
    (b"back\\slash", r"/back\x5cslash"),
    (b"\xff\xfe", r"/\xff\xfe"),
    (b"del\x7f", r"/del\x7f"),
    ("Zoë 東京 \U0001f511".encode(), "/Zoë 東京 \U0001f511"),
    ("line\u2028separator".encode(), r"/line\xe2\x80\xa8separator"),
])
def test_odd_bytes_are_escaped(tmp_path, name, shown):
    tree = tmp_path / "tree"
    tree.mkdir()
    os.mkdir(os.fsencode(tree) + b"/" + name)
    os.symlink(name, os.fsencode(tree) + b"/link")
    lines = {line.split("\t")[0]: line.split("\t")[3:] for line in manifest(tree)}
    assert lines == {"d": [shown], "l": ["/link", shown[1:]]}


def test_the_hosts_part_is_left_out(tree):
    for name in ("usr", "dev", "proc", "run", "private/etc", "private/tmp", "folder/usr"):
        (tree / name).mkdir(parents=True)
        (tree / name / "inside").touch()
    for name, target in {"bin": "usr/bin", "lib64": "usr/lib64", "etc": "private/etc",
                         "sbin": "/usr/sbin", "tmp": "private/tmp",
                         "folder/bin": "usr/bin"}.items():
        (tree / name).symlink_to(target)
    assert [line.split("\t")[3] for line in manifest(tree)] == [
        "/folder", "/folder/bin", "/folder/file", "/folder/usr", "/folder/usr/inside", "/link",
        "/private", "/private/tmp", "/private/tmp/inside", "/tmp"]


def test_other_kinds_of_entries_have_a_letter_of_their_own(tree):
    os.mkfifo(tree / "pipe")
    assert [line.split("\t")[0] for line in manifest(tree) if line.endswith("/pipe")] == ["p"]


def test_what_is_no_folder_has_no_manifest(tmp_path):
    done = macroot("manifest", tmp_path / "missing")
    assert done.returncode == 70 and "missing" in done.stderr
