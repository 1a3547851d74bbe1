"""A real Firefox profile outlives the clean-up."""


def test_only_what_early_versions_left_goes_and_the_page_opens_in_the_running_firefox(mac):
    mac.make_applications_real()
    assert mac.play("profile.cleaned", options=["--display"]) == {
        "files": True,
        "changed": ["compreg.dat", "extensiondev.rdf", "extensions.cache", "extensions.ini",
                    "extensions.rdf", "xpti.dat"],
        "registry mentions the product": False,
        "add-on is active": True,
        "same process": True,
    }
