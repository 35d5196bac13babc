#!/usr/bin/env python3
"""Looks for credentials in the bytes a traced program wrote.

Reads an strace log made with -y -xx (every write with its descriptor's path
and its data in hex), joins the data per file in order, so that a secret split
over two writes is still found, and searches every file and the program's own
output for the given secrets, as typed and percent-encoded. Socket writes are
skipped: the requests to the cameras carry credentials by design.
"""
import re
import sys
import urllib.parse
from collections import defaultdict

CALL = re.compile(r'^\d+\s+(?:write|pwrite64|writev|pwritev|pwritev2)\(\d+<([^>]*)>, (.*)\)\s+=\s+\d+')
DATA = re.compile(r'"((?:\\x[0-9a-f]{2})*)"')


def unescape(text):
    """strace -xx writes every byte, of paths too, as \\xHH."""
    return bytes.fromhex(text.replace('\\x', ''))


def is_file(path):
    return path.startswith('/') and not path.startswith(('/dev/null', '/proc/'))


def written_bytes(trace):
    per_path = defaultdict(bytearray)
    with open(trace, encoding='latin-1') as log:
        for line in log:
            call = CALL.match(line)
            if not call:
                continue
            path = unescape(call.group(1)).decode('utf-8', 'replace')
            if not (is_file(path) or path.startswith(('pipe:', '/dev/'))):
                continue  # sockets, eventfds
            for chunk in DATA.findall(call.group(2)):
                per_path[path] += unescape(chunk)
    return per_path


def needles(secrets):
    found = set()
    for secret in secrets:
        found.add(secret.encode())
        found.add(urllib.parse.quote(secret, safe='').encode())
        found.add(urllib.parse.quote_plus(secret, safe='').encode())
    return found


def main():
    trace, *secrets = sys.argv[1:]
    per_path = written_bytes(trace)
    leaks = [(path, needle) for path, data in per_path.items() for needle in needles(secrets)
             if needle in data]
    total = sum(len(data) for data in per_path.values())
    files = sum(1 for path in per_path if is_file(path))
    print(f'credential scan: {total} bytes written to {files} files and '
          f'{len(per_path) - files} pipes/terminals searched for {len(secrets)} secrets')
    for path, needle in leaks:
        print(f'credential scan: FOUND {needle!r} in bytes written to {path}')
    return 1 if leaks else 0


if __name__ == '__main__':
    sys.exit(main())
