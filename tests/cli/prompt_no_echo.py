#!/usr/bin/env python3
"""prompt_no_echo.py VELTOR_CLI, under tests/netns/with-cameras.sh: "sd status" on a pseudo-terminal
takes the password typed at the prompt, never shows it, and echoes again afterwards."""
import json, os, pty, select, sys, termios, time


def read_until(fd, wanted, seconds):
    seen, end = b"", time.monotonic() + seconds
    while wanted not in seen and time.monotonic() < end:
        if select.select([fd], [], [], 0.1)[0]:
            try:
                chunk = os.read(fd, 4096)
            except OSError:  # the other side closed
                chunk = b""
            if not chunk:
                break
            seen += chunk
    return seen


def check(ok, message, seen):
    if not ok:
        sys.exit(f"FAIL: {message}\nterminal showed: {seen.decode(errors='replace')}")


if not os.environ.get("VELTOR_CAMSIM_STATUS"):
    print("SKIP: not run under tests/netns/with-cameras.sh")
    sys.exit(77)
with open(os.environ["VELTOR_CAMSIM_STATUS"]) as f:
    camera = next(c for c in json.load(f)["cameras"] if c["family"] == "Haisi")
password = camera["password"].encode()
env = {k: v for k, v in os.environ.items() if k != "VELTOR_PASSWORD"}
pid, fd = pty.fork()
if pid == 0:
    os.execve(sys.argv[1], [sys.argv[1], "sd", "status", "--wait", "300", "--user",
                            camera["user"], camera["ip"]], env)
seen = read_until(fd, b"Password: ", 20)
check(b"Password: " in seen, "no prompt", seen)
check(not termios.tcgetattr(fd)[3] & termios.ECHO, "echo is on while the prompt waits", seen)
os.write(fd, password + b"\n")
seen += read_until(fd, b"\x00never", 60)  # to the end of the output
for _ in range(200):  # the command may take a moment to end after its output closes
    done, code = os.waitpid(pid, os.WNOHANG)
    if done:
        break
    time.sleep(0.05)
else:
    os.kill(pid, 9)
check(done, "the command still waits after the password was typed", seen)
check(password not in seen, "the password appeared on the terminal", seen)
check(os.waitstatus_to_exitcode(code) == 0 and b"Status: Ready" in seen,
      "the typed password was not used", seen)
check(termios.tcgetattr(fd)[3] & termios.ECHO, "echo stayed off after the command", seen)
print("PASS")
