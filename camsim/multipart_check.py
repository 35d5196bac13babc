#!/usr/bin/python3
"""Second opinion on an upload body: parses one multipart/form-data body with
python-multipart (Debian's python3-multipart), a parser the tool does not use,
and prints what it found as JSON:
{"ok": bool, "error": text, "parts": [{"headers": [[name, value], ...],
"size": n, "sha256": hex}]}.
Usage: multipart_check.py CONTENT-TYPE BODY-FILE"""

import hashlib
import json
import sys


def parse(content_type, body_path):
    from multipart.multipart import MultipartParser, parse_options_header

    _, params = parse_options_header(content_type)
    boundary = params.get(b"boundary")
    if not boundary:
        return {"ok": False, "error": "no boundary in the content type", "parts": []}
    parts = []
    state = {"ended": False, "field": b"", "value": b""}

    def part_begin():
        parts.append({"headers": [], "size": 0, "hash": hashlib.sha256()})

    def part_data(data, start, end):
        parts[-1]["size"] += end - start
        parts[-1]["hash"].update(data[start:end])

    def header_field(data, start, end):
        state["field"] += data[start:end]

    def header_value(data, start, end):
        state["value"] += data[start:end]

    def header_end():
        parts[-1]["headers"].append([state["field"].decode("utf-8", "replace"),
                                     state["value"].decode("utf-8", "replace")])
        state["field"] = state["value"] = b""

    def end():
        state["ended"] = True

    parser = MultipartParser(boundary, {
        "on_part_begin": part_begin, "on_part_data": part_data,
        "on_header_field": header_field, "on_header_value": header_value,
        "on_header_end": header_end, "on_end": end})
    with open(body_path, "rb") as body:
        for chunk in iter(lambda: body.read(1 << 20), b""):
            parser.write(chunk)
    parser.finalize()
    for part in parts:
        part["sha256"] = part.pop("hash").hexdigest()
    error = "" if state["ended"] else "the closing boundary never came"
    return {"ok": state["ended"], "error": error, "parts": parts}


def main():
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    try:
        result = parse(sys.argv[1], sys.argv[2])
    except ImportError as missing:
        result = {"ok": False, "unavailable": True, "error": str(missing), "parts": []}
    except Exception as failure:  # the parser's own complaint is the finding
        result = {"ok": False, "error": "%s: %s" % (type(failure).__name__, failure),
                  "parts": []}
    print(json.dumps(result))
    return 0


if __name__ == "__main__":
    sys.exit(main())
