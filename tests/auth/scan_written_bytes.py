#!/usr/bin/env python3
"""Looks for credentials in the bytes a traced program wrote.

Reads an strace log made with -y -xx (every write with its descriptor's path
and its data in hex), joins the data per file in order, so that a secret split
over two writes is still found, and searches every file and the program's own
output for the secrets, as typed and percent-encoded. Socket writes are
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


def main():
    trace, *secrets = sys.argv[1:]
    per_path = defaultdict(bytearray)
    with open(trace, encoding='latin-1') as log:
        for call in filter(None, map(CALL.match, log)):
            path = unescape(call.group(1)).decode('utf-8', 'replace')
            if path.startswith(('/dev/null', '/proc/')) or not path.startswith(('/', 'pipe:')):
                continue  # sockets, eventfds
            for chunk in DATA.findall(call.group(2)):
                per_path[path] += unescape(chunk)
    needles = {form.encode() for s in secrets
               for form in (s, urllib.parse.quote(s, safe=''), urllib.parse.quote_plus(s, safe=''))}
    leaks = [(path, n) for path, data in per_path.items() for n in needles if n in data]
    print(f'credential scan: {sum(map(len, per_path.values()))} bytes written to '
          f'{len(per_path)} files, pipes and terminals searched for {len(secrets)} secrets')
    for path, needle in leaks:
        print(f'credential scan: FOUND {needle!r} in bytes written to {path}')
    return 1 if leaks else 0


if __name__ == '__main__':
    sys.exit(main())
