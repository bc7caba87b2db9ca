"""Holds what rova prints in JSON against docs/output.schema.json, whichever test has it printed."""

import functools
import json
from pathlib import Path

import jsonschema

SCHEMA = Path(__file__).resolve().parents[2] / "docs/output.schema.json"
# The validator needs some 30 us a route and form; a long listing has the same routes over and over.
LONGEST_CHECKED = 200_000


@functools.cache
def validator():
    schema = json.loads(SCHEMA.read_text())
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def check_model(model):
    """Fails for a document, or a line of `watch`, that the schema does not allow."""
    error = jsonschema.exceptions.best_match(validator().iter_errors(model))
    if error:
        place = "/".join(map(str, error.absolute_path))
        raise AssertionError(f"{SCHEMA.name} does not allow what was printed: {place}: {error.message}")


def check_output(output):
    """The same for what a program printed, if that is JSON. What is not whole is left to others, and so is
    a snapshot, which has a schema of its own."""
    start = output[:20].lstrip()
    if start[:1] not in ("{", b"{") or "rovaSnapshot" in str(start) or len(output) > LONGEST_CHECKED:
        return
    try:
        model = json.loads(output)
    except ValueError:
        return
    check_model(model)
