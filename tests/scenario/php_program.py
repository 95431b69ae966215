"""php_program.py - writes the scenario as a PHP program that calls the members of Oxaqrycln\\Raw\\Query."""
import json

from describe_interface import load
from scenario import ROOT, bytes_of

PARAMETERS = {member.name: member.parameters for member in load().members()}
HEAD = r"""<?php
require AUTOLOAD;
use Oxaqrycln\Raw\Kind;
use Oxaqrycln\Raw\Query;
use Oxaqrycln\Raw\Value;

function escaped(string $utf8): string
{
    $text = '';
    foreach (preg_split('//u', $utf8, -1, PREG_SPLIT_NO_EMPTY) as $character) {
        // iconv has no place for the control characters of the five undefined bytes.
        $byte = $character[0] === "\xC2" ? ord($character[1]) : ord(iconv('UTF-8', 'CP1252', $character));
        $isPlain = $byte >= 32 && $byte < 127 && !in_array($byte, [34, 92], true);
        $text .= $isPlain ? chr($byte) : sprintf('\x%02X', $byte);
    }
    return '"' . $text . '"';
}

function shown(mixed $value): string
{
    $native = $value instanceof Value ? $value->native() : $value;
    $kind = $value instanceof Value ? $value->kind() : (new Value($value))->kind();
    return match ($kind) {
        Kind::Text => 'String ' . escaped($native),
        Kind::Boolean => 'Boolean ' . ($native ? 'True' : 'False'),
        Kind::Date => 'Date ' . $native->format('Y-m-d\TH:i:s'),
        default => rtrim("$kind->name $native"),
    };
}

function show(string $title, mixed ...$values): void
{
    echo $title, ' = ', implode('; ', array_map('shown', $values)), "\n";
}

$q = new Query();
"""


def literal(content):
    """A string of these bytes."""
    return '"' + "".join(chr(byte) if 32 <= byte < 127 and byte not in b'"\\$' else f"\\x{byte:02X}"
                         for byte in content) + '"'


def expression(value, filled):
    return {"String": lambda: literal(filled(value.value).encode("utf-8")),
            "Boolean": lambda: json.dumps(value.value),
            "Date": lambda: f"new DateTimeImmutable('{value.value}')",
            "Long": lambda: str(value.value),
            "Empty": lambda: "new Value()",
            "Null": lambda: "Value::null()"}.get(value.kind, lambda: f"Value::{value.kind.lower()}({value.value})")()


def call(step, filled):
    parameters, text, arguments, shown = PARAMETERS[step.name], "", [], []
    for parameter, argument in zip(parameters, step.arguments):
        if argument.is_left_out:
            continue
        name = f"{parameter.name}: " if len(arguments) < parameters.index(parameter) else ""
        if argument.body is not None:
            arguments.append(f"{name}Value::request({literal(bytes_of(argument.body))})")
        elif argument.is_reference:
            start = expression(argument.value, filled)
            shown.append(f"$v{len(shown)}")
            text += f"{shown[-1]} = {start if 'Value' in start else f'new Value({start})'};\n"
            arguments.append(name + shown[-1])
        else:
            arguments.append(name + expression(argument.value, filled))
    text += f"${step.instance}->{step.name}({', '.join(arguments)});\n"
    return text + f"show('{step.title()}', {', '.join([f'${step.instance}->result()', *shown])});\n"


def statement(step, filled):
    if step.kind == "call":
        return call(step, filled)
    if step.kind == "get":
        return f"show('{step.title()}', ${step.instance}->{step.name});\n"
    done = {"set": lambda: f"${step.instance}->{step.name} = {expression(step.value, filled)}",
            "new": lambda: f"${step.name} = new Query()",
            "drop": lambda: f"${step.name} = null"}[step.kind]()
    return f"{done};\necho '{step.title()}', \"\\n\";\n"


def program(environment):
    head = HEAD.replace("AUTOLOAD", f"'{ROOT}/bindings/php/autoload.php'")
    return head + "".join(statement(step, environment.filled) for step in environment.steps)
