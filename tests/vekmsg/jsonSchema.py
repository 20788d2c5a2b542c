#!/usr/bin/env python3
"""Whether all JSON keeps to the JSON Schema that vekmsg schema --json prints, and what is no such JSON does not.

    jsonSchema.py VEKMSG LIBRARY EXAMPLES

Takes python3-jsonschema. What the tool and the inspection library (by its C functions) give for the sample messages,
damaged copies of them and logs is validated; each document is then spoiled in several ways, which must be noticed.
Objects made up from the catalogue alone are valid too, and messages that the library takes and finds no error in.
"""

import copy
import ctypes
import json
import pathlib
import random
import subprocess
import sys
import tempfile

import jsonschema

vekmsg, library, examples = sys.argv[1:]
chance = random.Random(41)
failures = []
counts = {}


def tool(*arguments, text=b""):
    done = subprocess.run([vekmsg, *arguments], input=text, capture_output=True)
    if done.returncode not in (0, 1):
        failures.append(f"vekmsg {' '.join(arguments)}: {done.stderr.decode()}")
    return done.stdout.decode().splitlines()


class Library:
    def __init__(self, path):
        self.calls = ctypes.CDLL(path)

    def call(self, name, *text):
        call = getattr(self.calls, name)
        given = [value for one in text for value in (one, ctypes.c_size_t(len(one)))]
        size = call(*given, None, ctypes.c_size_t(0))
        room = max(size + 1, 4096)
        buffer = ctypes.create_string_buffer(room)
        call(*given, buffer, ctypes.c_size_t(room))
        return size >= 0, buffer.value if size < 0 else buffer.raw[:size]


schema = json.loads("\n".join(tool("schema", "--json")))
jsonschema.Draft7Validator.check_schema(schema)
definitions = schema["definitions"]
validators = {}


def validator(name):
    if name not in validators:
        one = {"$schema": schema["$schema"], "$ref": f"#/definitions/{name}", "definitions": definitions}
        validators[name] = jsonschema.Draft7Validator(one)
    return validators[name]


def spoilt(document, kind):
    """Copies that each have one thing wrong, somewhere where the system knows all members."""
    for path in objects_of(document, kind):
        for way in ("added", "retyped"):
            copied = copy.deepcopy(document)
            place = copied
            for step in path:
                place = place[step]
            if way == "added":
                place["surprise"] = 1
            else:
                members = [name for name in place if path or name not in loose_in(document, kind)]
                if not members:
                    continue
                place[chance.choice(members)] = {"surprise": 1}
            yield way, path, copied


def loose_in(document, kind):
    """The body of a message with problems, where anything may stand."""
    return {document.get("name", "body")} if kind == "message" and "problems" in document else set()


def objects_of(document, kind):
    """The paths of some of its objects."""
    bodies = loose_in(document, kind)
    found = [()]
    for path in found:
        place = document
        for step in path:
            place = place[step]
        items = place.items() if isinstance(place, dict) else enumerate(place)
        for step, value in items:
            if isinstance(value, (dict, list)) and not (path == () and step in bodies):
                found.append((*path, step))
    found = [path for path in found if isinstance(at(document, path), dict)]
    return chance.sample(found, min(len(found), 3))


def at(document, path):
    for step in path:
        document = document[step]
    return document


def expect(kind, lines, spoils=1):
    for line in lines:
        document = json.loads(line)
        check = validator(kind)
        counts[kind] = counts.get(kind, 0) + 1
        if not check.is_valid(document):
            error = jsonschema.exceptions.best_match(check.iter_errors(document))
            failures.append(f"{kind}: {error.json_path}: {error.message[:300]}\n    {line[:600]}")
        elif chance.random() < spoils:
            for way, path, wrong in spoilt(document, kind):
                counts["spoilt"] = counts.get("spoilt", 0) + 1
                if check.is_valid(wrong):
                    failures.append(f"{kind} with a member {way} at {path} is valid: {json.dumps(wrong)[:600]}")


def damaged(text):
    """A copy with a few bytes changed, moved or taken out."""
    text = bytearray(text)
    for _ in range(chance.randint(1, 4)):
        start = chance.randrange(len(text))
        way = chance.randrange(4)
        if way == 0:
            text[start] = chance.choice(b'@!{}=;,"0a\x01\x80.- ')
        elif way == 1:
            del text[start : start + chance.randint(1, 8)]
        elif way == 2:
            text[start:start] = text[start : start + chance.randint(1, 20)]
        else:
            text[start:start] = bytes([chance.randrange(1, 256)])
    return bytes(text)


def made_up(record):
    """An object of a record as the catalogue describes it, and the schema has it; counts are those of their lists."""
    sizes = {key["count"]: chance.randint(1, min(3, key.get("room", 3))) for key in record["keys"] if "count" in key}
    made = {}
    for key in record["keys"]:
        if key["key"] in sizes:
            made[key["key"]] = sizes[key["key"]]
        elif "count" in key:
            made[key["key"]] = [scalar(key) for _ in range(sizes[key["count"]])]
        elif chance.random() < 0.8:
            made[key["key"]] = [element(key)] * chance.randint(1, key.get("room", 3)) if key["list"] else scalar(key)
    return made


def element(key):
    """An empty one is refused: a host would write the list without it."""
    return scalar(key) or element(key) if "record" in key else scalar(key)


def scalar(key):
    if "of" in key:
        return made_up(key["of"])
    if "record" in key:
        return made_up(records[key["record"]])
    if "enumeration" in key:
        return chance.choice(enumerations[key["enumeration"]])
    return {
        "long integer": lambda: chance.choice([-(2**31), 2**31 - 1, chance.randint(-99, 99)]),
        "short integer": lambda: chance.randint(-(2**15), 2**15 - 1),
        "boolean": lambda: chance.random() < 0.5,
        "string": lambda: chance.choice(["Nord", "a b", "Grün", "3.5", "a;b=c"]),
        "16-bit character string": lambda: chance.choice(["Spring", "Grün", "x"]),
        "pixels": lambda: chance.randint(-1000, 1000),
    }.get(key["kind"], lambda: round(chance.uniform(-1000, 1000), 3))()


inspect = Library(library)
samples = [path.read_bytes() for path in sorted(pathlib.Path(examples, "messages").glob("*.txt"))]
texts = samples + [damaged(chance.choice(samples)) for _ in range(120)]
catalogue_json = inspect.call("vekInspectCatalogue")[1]
catalogue = json.loads(catalogue_json)
records = {record["name"]: record for record in catalogue["records"]}
enumerations = {one["name"]: [value["name"] for value in one["values"]] for one in catalogue["enumerations"]}

expect("catalogue", ["\n".join(tool("list", "--json")), catalogue_json.decode()])
for text in texts:
    expect("message", [inspect.call("vekInspectToJson", text)[1].decode()], spoils=0.3)

with tempfile.TemporaryDirectory() as folder:
    log = pathlib.Path(folder, "all.log")
    log.write_bytes(b"".join(b"2026-03-01 08:00:00.%03d device > host " % i + text + b"\n" for i, text in enumerate(texts)))
    subprocess.run([vekmsg, "example", "--messages=300", "--devices=2", f"{folder}/fleet"], check=True, capture_output=True)
    for file in [log, pathlib.Path(examples, "device.log"), *sorted(pathlib.Path(folder, "fleet").rglob("*.log"))]:
        spoils = 0.2
        expect("message", tool("json", str(file))[:150], spoils)
        expect("message", tool("last", "--json", str(file)), spoils)
        expect("checkFinding", tool("check", "--json", str(file))[:150], spoils)
        expect("stats", tool("stats", "@length", "--json", "--by", "kind", str(file)), spoils)
        rows = tool("json", "--rows", str(file))[:400]
        for row in rows:
            expect(f"row_{json.loads(row)['table']}", [row], spoils)
        expect("row", rows[:20], spoils=0)
        for table in sorted({json.loads(row)["table"] for row in rows})[:6]:
            expect(f"row_{table}", tool("json", "--table", table, str(file))[:20], spoils)

root = jsonschema.Draft7Validator(schema)
for one in (catalogue, json.loads(tool("json", str(pathlib.Path(examples, "device.log")))[0])):
    assert root.is_valid(one)
assert not root.is_valid({"version": 1}) and not root.is_valid([])
assert catalogue["version"] == definitions["version"]["const"]

for message in catalogue["messages"]:
    if "record" not in message:
        continue
    for _ in range(8):
        given = {"id": message["id"], "echo": 7, "seq": 41, message["record"]: made_up(records[message["record"]])}
        document = json.dumps(given)
        expect("givenMessage", [document], spoils=0.2)
        is_taken, text = inspect.call("vekInspectFromJson", document.encode())
        if not is_taken:
            failures.append(f"not taken: {text.decode()}\n    {document}")
            continue
        again = json.loads(inspect.call("vekInspectToJson", text)[1])
        wrong = [one for one in again.get("problems", []) if one["severity"] == "error"]
        if wrong:
            failures.append(f"taken, and then {wrong[0]['message']}\n    {document}\n    {text.decode()}")

for failure in failures[:20]:
    print(failure)
print(", ".join(f"{count} {kind}" for kind, count in sorted(counts.items()) if not kind.startswith("row_")))
print(sum(count for kind, count in counts.items() if kind.startswith("row_")), "rows,", len(failures), "failures")
sys.exit(1 if failures else 0)
