"""All of this happens with the browsers' own sandboxes on."""

ADEQUATE = "You are adequately sandboxed."


def test_chromium_is_in_its_sandbox(mac):
    said = mac.play("sandbox.of_chromium")
    assert {ADEQUATE, "Layer 1 Sandbox\tNamespace", "Seccomp-BPF sandbox\tYes"} <= set(said)


def test_chromium_says_when_it_is_not(mac):
    assert ADEQUATE not in mac.play("sandbox.of_chromium", "--no-sandbox")


def test_firefox_is_in_its_sandbox(mac):
    filters = mac.play("sandbox.of_firefox")
    assert filters and set(filters) == {"2"}
