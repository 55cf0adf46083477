# Prints a SpriteFrames resource as JSON, after the engine's documentation of its text resources: a head, one [ext_resource]
# or [sub_resource] a resource, each declared before its use, then [resource]. Anything else is an error.
import json, re, sys

token = re.compile(r'''\s*(?:(&?"(?:[^"\\\n]|\\["\\bfnrt]|\\u[0-9a-fA-F]{4})*")|(-?\d+(?:\.\d+)?)|([A-Za-z_][\w/]*)|([][{}():,=]))''')
text = sys.stdin.read()
place = 0


def take(wanted=None):
    global place
    match = token.match(text, place)
    assert match, "unknown text at " + text[place:place + 40]
    place = match.end()
    assert wanted is None or match[0].strip() == wanted, f"{match[0]!r} instead of {wanted}"
    return match


def peek():
    match = token.match(text, place)
    return match and match[0].strip()


def sequence(end, element):
    elements = []
    while peek() != end:
        elements.append(element())
        if peek() != end:
            take(",")
    take(end)
    return elements


def pair():
    key = value()
    take(":")
    return key, value()


def value():
    string, number, word, sign = take().groups()
    if string:
        return json.loads(string.lstrip("&"))
    if number:
        return float(number) if "." in number else int(number)
    if word in ("true", "false"):
        return word == "true"
    if word:
        take("(")
        arguments = sequence(")", value)
        if word == "Rect2":
            assert len(arguments) == 4
            return arguments
        return resources[word, arguments[0]]
    return dict(sequence("}", pair)) if sign == "{" else sequence("]", value)


def tag():
    take("[")
    name = take()[3]
    fields = {}
    while peek() != "]":
        key = take()[3]
        take("=")
        fields[key] = value()
    take("]")
    return name, fields


def properties():
    result = {}
    while place < len(text.rstrip()) and peek() != "[":
        key = take()[3]
        take("=")
        assert key not in result
        result[key] = value()
    return result


resources = {}
kind, head = tag()
assert kind == "gd_resource" and head["type"] == "SpriteFrames" and head["format"] == 3
while True:
    kind, fields = tag()
    content = properties()
    if kind == "resource":
        break
    name = {"ext_resource": "ExtResource", "sub_resource": "SubResource"}[kind], fields.pop("id")
    assert name not in resources
    resources[name] = {**fields, **content}
assert place == len(text.rstrip()) and not fields and head["load_steps"] == len(resources) + 1
print(json.dumps(content))
