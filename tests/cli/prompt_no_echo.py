#!/usr/bin/env python3
"""prompt_no_echo.py VELTOR_CLI, under tests/netns/with-cameras.sh: "sd status" on a pseudo-terminal
takes the password typed at the prompt, never shows it, and echoes again afterwards. A hang is
ended by ctest's timeout."""
import json, os, pty, sys, termios


def read_until(fd, wanted):
    seen = b""
    while wanted not in seen:
        try:
            chunk = os.read(fd, 4096)
        except OSError:  # the other side closed
            break
        if not chunk:
            break
        seen += chunk
    return seen


def check(ok, message):
    if not ok:
        sys.exit(f"FAIL: {message}\nterminal showed: {seen.decode(errors='replace')}")


if not os.environ.get("VELTOR_CAMSIM_STATUS"):
    print("SKIP: not run under tests/netns/with-cameras.sh")
    sys.exit(77)
with open(os.environ["VELTOR_CAMSIM_STATUS"]) as f:
    camera = next(c for c in json.load(f)["cameras"] if c["family"] == "Haisi")
password = camera["password"].encode()
pid, fd = pty.fork()
if pid == 0:
    env = {k: v for k, v in os.environ.items() if k != "VELTOR_PASSWORD"}
    os.execve(sys.argv[1], [sys.argv[1], "sd", "status", "--wait", "300", "--user", camera["user"],
                            camera["ip"]], env)
seen = read_until(fd, b"Password: ")
check(b"Password: " in seen, "no prompt")
check(not termios.tcgetattr(fd)[3] & termios.ECHO, "echo is on while the prompt waits")
os.write(fd, password + b"\n")
seen += read_until(fd, b"\x00never")  # to the end of the output
code = os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
check(password not in seen, "the password appeared on the terminal")
check(code == 0 and b"Status: Ready\r\nTotal:  15193.5MB (15558144 KB)" in seen,
      "the typed password was not used")
check(termios.tcgetattr(fd)[3] & termios.ECHO, "echo stayed off after the command")
print("PASS")
