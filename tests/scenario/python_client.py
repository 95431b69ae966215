#!/usr/bin/env python3
"""python_client.py - runs the scenario through the Python package, in a process of its own.

As a program it reads a JSON list from standard input, ["scenario file", {name: text}, [what the interface lacks]], and
writes the transcript; OXAQRYCLN_LIBRARY names the shared library."""
import json
import os
import sys
from datetime import datetime
from pathlib import Path

from program import lines_of
from scenario import ROOT, Value, bytes_of, line, read_scenario

PACKAGE = ROOT / "bindings/python/src"


def kind_of(value, raw):
    kinds = {type(None): "Empty", raw.Null: "Null", bool: "Boolean", raw.Byte: "Byte", raw.Integer: "Integer",
             int: "Long", str: "String", datetime: "Date"}
    return kinds[type(value)]


def shown(value, raw):
    kind = kind_of(value, raw)
    return Value(kind, value.isoformat() if kind == "Date" else value)


class Run:
    def __init__(self, texts, raw):
        self.texts, self.raw, self.instances = texts, raw, {"q": raw.Query()}

    def filled(self, text):
        for name, value in self.texts.items():
            text = text.replace("{" + name + "}", value)
        return text

    def python(self, value):
        make = {"Empty": lambda _: None, "Null": lambda _: self.raw.NULL, "Byte": self.raw.Byte,
                "Integer": self.raw.Integer, "String": self.filled, "Date": datetime.fromisoformat}
        return make.get(value.kind, lambda each: each)(value.value)

    def argument(self, argument):
        if argument.is_left_out:
            return self.raw.LEFT_OUT
        if argument.body is not None:
            return self.raw.Request(bytes_of(argument.body))
        return self.python(argument.value)

    def call(self, step, query):
        count = len(type(query).__dict__[step.name].method.parameters)
        given = [self.argument(each) for each in step.arguments] + [self.raw.LEFT_OUT] * (count - len(step.arguments))
        result = getattr(query, step.name)(*given)
        if not isinstance(result, tuple):
            result = (result,)
        outputs = iter(result[1:])
        values = list(result[:1])
        for argument, value in zip(step.arguments, given):
            after = next(outputs) if argument.kind in ("optional out", "in-out") else value
            values += [after] if argument.is_reference else []
        return values

    def step(self, step):
        """The values that the step shows."""
        if step.kind == "new":
            self.instances[step.name] = self.raw.Query()
            return []
        if step.kind == "drop":
            self.instances.pop(step.name).close()
            return []
        query = self.instances[step.instance]
        if step.kind == "set":
            setattr(query, step.name, self.python(step.value))
            return []
        return [getattr(query, step.name)] if step.kind == "get" else self.call(step, query)


def run_python(environment, options):
    given = json.dumps([str(options.scenario), environment.texts, list(environment.without)])
    settings = {"env": {**os.environ, "OXAQRYCLN_LIBRARY": str(Path(options.program).resolve())}}
    return lines_of([sys.executable, "-B", __file__], given, **settings)


def main():
    sys.path.insert(0, str(PACKAGE))
    from oxaqrycln import raw
    file, texts, without = json.load(sys.stdin)
    run = Run(texts, raw)
    for step in read_scenario(file).steps(without):
        values = run.step(step)
        print(line(step, [shown(value, raw) for value in values]) if values else step.title())


if __name__ == "__main__":
    main()
