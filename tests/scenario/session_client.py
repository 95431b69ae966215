"""session_client.py - runs the scenario through "oxaqry session", one JSON object a line."""
import base64
import json

from program import lines_of
from scenario import Value, bytes_of, line


def request_of(step, filled):
    """The object of a step; the answer tells kinds and values."""
    def value(given):
        if given.kind == "String":
            return filled(given.value)
        return None if given.kind == "Empty" else {given.kind: True if given.kind == "Null" else given.value}

    def argument(given):
        if given.is_left_out:
            return None
        if given.body is not None:
            return {"context": {"body": base64.b64encode(bytes_of(given.body)).decode()}}
        return {"ref": value(given.value)} if given.is_reference else value(given.value)

    if step.kind in ("new", "drop"):
        return {step.kind: step.name}
    body = {"call": {"call": step.name, "args": [argument(each) for each in step.arguments]},
            "get": {"get": [step.name]},
            "set": {"set": {step.name: step.value and value(step.value)}}}[step.kind]
    return {**body, "on": step.instance}


def values_of(step, answer):
    """The result and the outputs in an answer; none of a step without."""
    if step.kind == "get":
        typed = [answer["values"][step.name]]
    elif step.kind == "call":
        typed = [{"type": answer["type"], "value": answer["result"]}, *answer["refs"]]
    else:
        return []
    return [Value(each["type"], each["value"]) for each in typed]


def run_session(environment, options):
    """The lines of the transcript; with options.record, the values become those that the scenario expects."""
    requests = "".join(json.dumps(request_of(step, environment.filled)) + "\n" for step in environment.steps)
    answers = lines_of([options.program, "session"], requests)
    lines = []
    for step, answered in zip(environment.steps, answers):
        if not answered.startswith("{"):
            lines.append(answered)
            break
        answer = json.loads(answered)
        if "error" in answer:
            lines.append(f"{step.title()}: {answer['error']}")
            continue
        values = values_of(step, answer)
        lines.append(line(step, values) if values else step.title())
        if options.record and values:
            if "varies" not in step.json:
                step.json["result"] = values[0].to_json()
            if values[1:]:
                step.json["outputs"] = [value.to_json() for value in values[1:]]
    return lines + answers[len(environment.steps):]
