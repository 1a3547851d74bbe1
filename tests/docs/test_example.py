"""The examples of the documents work as they stand there."""
import plistlib
import re
from pathlib import Path

ROOT = Path(__file__).parents[2]


def test_the_scenario_of_the_document(tmp_path):
    code, = re.findall(r"```python\n(.*?)```", (ROOT / "docs/testing.md").read_text(), re.DOTALL)
    names = {}
    exec(compile(code, "docs/testing.md", "exec"), names)
    scenario, = [names[name] for name in names if name.startswith("test_")]
    scenario(tmp_path)


def test_the_daily_job_is_a_property_list_that_writes_a_report():
    text, = re.findall(r"```xml\n(.*?)```", (ROOT / "docs/administrators.md").read_text(), re.DOTALL)
    job = plistlib.loads(text.encode())
    assert job["ProgramArguments"][2].startswith("/usr/local/bin/KSStatus --json")
    assert job["StartCalendarInterval"] == {"Hour": 12, "Minute": 0}
