"""The scenario that docs/testing.md shows works as it stands there."""
import re
from pathlib import Path

ROOT = Path(__file__).parents[2]


def test_the_scenario_of_the_document(tmp_path):
    code, = re.findall(r"```python\n(.*?)```", (ROOT / "docs/testing.md").read_text(), re.DOTALL)
    names = {}
    exec(compile(code, "docs/testing.md", "exec"), names)
    scenario, = [names[name] for name in names if name.startswith("test_")]
    scenario(tmp_path)
