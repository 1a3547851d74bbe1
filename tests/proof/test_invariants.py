"""The judge of random machines sees what does not hold."""

import stat

import pytest

from tests.support.invariants import (
    Entry, changed, keychain_of_safari, preferences_of_chrome, registry_of_firefox, registry_of_safari, unknown_lines)

LIST, NAME = "Installed Extensions", "Archive File Name"


@pytest.mark.parametrize("level,text", [
    ("FAILURE", "missing Extensions.plist."), ("FAILURE", "missing Extensions.plis"), ("INFO", "missing Extensions.plist"),
    ("WARNING", "Clear CacheError: (null"), ("INFO", "Edge extension installed"), ("CRITICAL", "App not found")])
def test_a_line_of_another_text_or_level_is_unknown(level, text):
    assert unknown_lines([("WARNING", "App not found"), (level, text)]) == [(level, text)]


def test_every_difference_of_an_entry_counts():
    entry = Entry(stat.S_IFREG, 0o644, (501, 20), b"a")
    others = [entry._replace(kind=stat.S_IFLNK), entry._replace(mode=0o600), entry._replace(owner=(0, 0)),
              entry._replace(content=b"b")]
    for other in others:
        assert changed({"/a": entry, "/b": entry}, {"/a": other, "/b": entry}) == ["/a"]
    assert changed({"/a": entry}, {}) == changed({}, {"/a": entry}) == ["/a"]


def test_two_removals_take_two_buttons_and_two_of_any_kind():
    value = {LIST: [{NAME: name} for name in (
        "Keystrel.1", "Keystrel Button.2", "Keystrel Button.3", "Weather", "Keystrel.4", "Keystrel.5")]}
    assert registry_of_safari(value) == {LIST: [{NAME: "Keystrel.1"}, {NAME: "Weather"}]}
    ours = [{NAME: "Keystrel.safariextz"}] * 3
    assert keychain_of_safari({LIST: [{NAME: "Keystrel.x"}, *ours]}) == {LIST: [{NAME: "Keystrel.x"}, ours[0]]}


def test_chromes_preferences_are_edited_twice():
    text = '"exited_cleanly": true'
    assert preferences_of_chrome(text, False) == text + ', \n        "password_manager_enabled": true'
    assert preferences_of_chrome(text, True) == text + ', \n        "password_manager_enabled": false'
    assert preferences_of_chrome('"password_manager_enabled":true', True) == '"password_manager_enabled":true'


def test_comments_and_foreign_entries_of_a_profiles_registry_stay():
    head = ('<RDF:RDF xmlns:NS1="http://www.mozilla.org/2004/em-rdf#" '
            'xmlns:RDF="http://www.w3.org/1999/02/22-rdf-syntax-ns#">')
    kept = '<!-- kept --><RDF:Description RDF:about="urn:mozilla:item:weather@example.org"></RDF:Description>'
    ours = ('<RDF:Description RDF:about="x:ks@corvendale.com"><NS1:targetApplication RDF:resource="t"/></RDF:Description>'
            '<RDF:Description RDF:about="t"/>')
    end = "</RDF:RDF>"
    assert registry_of_firefox((head + ours + kept + end).encode()) == registry_of_firefox((head + kept + end).encode())
    assert "<!-- kept -->" in registry_of_firefox((head + kept + end).encode())
