"""vbscript.py - writes the scenario as a VBScript for cscript, which calls the component through late binding.

Uses only functions that the script host of Wine has.
"""
from scenario import bytes_of

SENTINEL = "end of the scenario"
PROGRAM_ID = "OXAQryCln.clsQuery"

HEAD = r"""Option Explicit

Function TwoDigits(ByVal number)
  TwoDigits = Right("0" & number, 2)
End Function

Function Escaped(ByVal text)
  Dim result, position, code
  result = ""
  For position = 1 To Len(text)
    code = Asc(Mid(text, position, 1))
    If code < 0 Then code = code + 256
    If code < 32 Or code > 126 Or code = 34 Or code = 92 Then
      result = result & "\x" & TwoDigits(Hex(code))
    Else
      result = result & Chr(code)
    End If
  Next
  Escaped = Chr(34) & result & Chr(34)
End Function

Function Shown(ByVal value)
  Select Case VarType(value)
    Case 0
      Shown = "Empty"
    Case 1
      Shown = "Null"
    Case 2
      Shown = "Integer " & value
    Case 3
      Shown = "Long " & value
    Case 7
      Shown = "Date " & Year(value) & "-" & TwoDigits(Month(value)) & "-" & TwoDigits(Day(value)) & "T" & _
              TwoDigits(Hour(value)) & ":" & TwoDigits(Minute(value)) & ":" & TwoDigits(Second(value))
    Case 8
      Shown = "String " & Escaped(value)
    Case 11
      If value Then
        Shown = "Boolean True"
      Else
        Shown = "Boolean False"
      End If
    Case 17
      Shown = "Byte " & value
    Case Else
      Shown = "VarType " & VarType(value)
  End Select
End Function

Sub Show(ByVal title, ByVal values)
  Dim text, position
  text = title & " = " & Shown(values(0))
  For position = 1 To UBound(values)
    text = text & "; " & Shown(values(position))
  Next
  WScript.Echo text
End Sub

"""


def literal(text):
    pieces, plain = [], ""
    for byte in bytes_of(text):
        if 32 <= byte < 127:
            plain += '""' if byte == ord('"') else chr(byte)
            continue
        pieces += ([f'"{plain}"'] if plain else []) + [f"Chr({byte})"]
        plain = ""
    return " & ".join(pieces + ([f'"{plain}"'] if plain or not pieces else []))


def expression(value, filled):
    if value.kind in ("Empty", "Null"):
        return value.kind
    if value.kind == "String":
        return literal(filled(value.value))
    if value.kind == "Boolean":
        return str(value.value)
    if value.kind == "Date":
        return f'CDate("{value.value.replace("T", " ")}")'
    return {"Byte": "CByte", "Integer": "CInt", "Long": "CLng"}[value.kind] + f"({value.value})"


def call(step, filled):
    arguments, text, shown = [], "", ["result"]
    for argument in step.arguments:
        if argument.is_left_out:
            arguments.append("")
        elif argument.is_reference:
            name = f"v{len(shown)}"
            text += f"  {name} = {expression(argument.value, filled)}\n"
            shown.append(name)
            arguments.append(name)
        else:
            arguments.append(expression(argument.value, filled))
    given = ", ".join(arguments)
    if step.type:
        text += f"  result = {step.instance}.{step.name}({given})\n"
    else:
        text += f"  {step.instance}.{step.name} {given}\n  result = Empty\n"
    return text + f'  Show "{step.title()}", Array({", ".join(shown)})\n'


def statement(step, filled):
    if step.kind == "call":
        return call(step, filled)
    if step.kind == "get":
        return f'  Show "{step.title()}", Array({step.instance}.{step.name})\n'
    done = {"set": lambda: f"{step.instance}.{step.name} = {expression(step.value, filled)}",
            "new": lambda: f'Set {step.name} = CreateObject("{PROGRAM_ID}")',
            "drop": lambda: f"Set {step.name} = Nothing"}[step.kind]()
    return f'  {done}\n  WScript.Echo "{step.title()}"\n'


def script(environment):
    groups = environment.scenario.groups
    text = HEAD + f'Dim {", ".join(environment.scenario.instances())}\nSet q = CreateObject("{PROGRAM_ID}")\n'
    for number, group in enumerate(groups, 1):
        if group.needs in environment.without:
            continue
        count = max(len(step.references()) for step in group.steps)
        names = ", ".join(["result", *(f"v{number}" for number in range(1, count + 1))])
        text += f"\n' {group.name}\nSub Group{number}()\n  Dim {names}\n"
        text += "".join(statement(step, environment.filled) for step in group.steps) + f"End Sub\nGroup{number}\n"
    return (text + f'\nWScript.Echo "{SENTINEL}"\n').replace("\n", "\r\n")
