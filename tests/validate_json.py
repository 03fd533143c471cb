"""validate_json.py SCHEMA: reads objects, a line each, and prints what is wrong with them."""

import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
problems = 0
for number, line in enumerate(sys.stdin.buffer, 1):
    for error in validator.iter_errors(json.loads(line)):
        print(f"line {number}: {error.message}")
        problems += 1
sys.exit(problems > 0)
