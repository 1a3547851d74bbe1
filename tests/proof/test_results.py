"""What scripts/prove keeps of what it tried."""

import pytest

from proof import results
from proof.results import Outcome, Trial


@pytest.fixture(autouse=True)
def kept(tmp_path, monkeypatch):
    monkeypatch.setattr(results, "KEPT", tmp_path / "kept")
    monkeypatch.setattr(results, "ROOT", tmp_path)
    results.subprocess.run(["git", "init", "-q", tmp_path], check=True)
    (tmp_path / "source").write_text("1")
    return tmp_path / "kept"


def tried(cases, failing=()):
    """What a new trial tries of these cases, and what it says of all of them."""
    attempts = []

    def attempt(case):
        attempts.append(case)
        return Outcome(f"{case} tried", case not in failing)

    found = Trial("chapter", ["source"], quick=False, seed=1, jobs=1).outcomes(cases, attempt)
    assert list(found) == cases
    assert all(outcome.text == f"{case} tried" for case, outcome in found.items())
    return sorted(attempts)


def test_what_held_is_not_tried_again():
    assert tried(["a", "b"]) == ["a", "b"]
    assert tried(["a", "b", "c"]) == ["c"]
    assert tried(["c", "a"]) == []


def test_what_failed_is_tried_again():
    assert tried(["a", "b"], failing="b") == ["a", "b"]
    assert tried(["a", "b"]) == ["b"]


def test_another_source_forgets_everything(tmp_path):
    tried(["a"])
    (tmp_path / "source").write_text("2")
    assert tried(["a"]) == ["a"]


def test_a_stopped_run_keeps_what_it_had(kept):
    tried(["a", "b"])
    (file,) = kept.iterdir()
    file.write_text(file.read_text()[:-3])  # the last line is torn
    (again,) = tried(["a", "b"])
    assert tried(["a", "b", "c"]) == ["c"] and again in "ab"
