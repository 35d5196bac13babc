#!/usr/bin/env python3
"""credentials_never_written.py USER PASSWORD -- COMMAND [ARGS...]

Runs COMMAND (a test driving the tool) under strace with every debug category on and fails when
USER or PASSWORD, as typed or percent-encoded, reaches a file, pipe or terminal; the bytes are
joined per file, so a secret split over two writes is still found. Sockets may carry them: the
requests to the cameras do. Else exits with COMMAND's status; 77 when strace cannot run here.
"""
import os, re, subprocess, sys, tempfile, urllib.parse
from collections import defaultdict

CALL = re.compile(r'^\d+\s+(?:write|pwrite64|writev|pwritev|pwritev2)\(\d+<([^>]*)>, (.*)\)\s+=\s+\d+')
DATA = re.compile(r'"((?:\\x[0-9a-f]{2})*)"')

def unescape(text):  # strace -xx writes every byte, of paths too, as \xHH
    return bytes.fromhex(text.replace('\\x', ''))

def main(user, password, _, *command):
    if subprocess.run(['strace', '-f', '-qq', '-e', 'trace=none', '-o', '/dev/null', 'true'],
                      stderr=subprocess.DEVNULL).returncode:
        print('SKIP: strace is missing or cannot trace here')
        return 77
    per_path = defaultdict(bytearray)
    with tempfile.TemporaryDirectory() as work:
        trace = os.path.join(work, 'trace')
        status = subprocess.run(['strace', '-f', '--seccomp-bpf', '-qq', '-y', '-xx', '-s', '67108864',
                                 '-e', 'signal=none', '-e', 'trace=write,pwrite64,writev,pwritev,pwritev2',
                                 '-o', trace, '--', *command],
                                env=dict(os.environ, QT_LOGGING_RULES='*.debug=true')).returncode
        with open(trace, encoding='latin-1') as log:
            for call in filter(None, map(CALL.match, log)):
                path = unescape(call.group(1)).decode('utf-8', 'replace')
                if not path.startswith(('/dev/null', '/proc/')) and path.startswith(('/', 'pipe:')):
                    per_path[path] += b''.join(map(unescape, DATA.findall(call.group(2))))
    needles = {form.encode() for s in (user, password)
               for form in (s, urllib.parse.quote(s, safe=''), urllib.parse.quote_plus(s, safe=''))}
    leaks = [(path, n) for path, data in per_path.items() for n in needles if n in data]
    print(f'credential scan: {sum(map(len, per_path.values()))} bytes written to {len(per_path)} '
          'files, pipes and terminals searched')
    for path, needle in leaks:
        print(f'credential scan: FOUND {needle!r} in bytes written to {path}')
    return 1 if leaks else status

if __name__ == '__main__':
    sys.exit(main(*sys.argv[1:]))
