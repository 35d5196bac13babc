#!/usr/bin/env python3
"""prompt_no_echo.py VELTOR_CLI

Runs "veltor-cli sd status" on a pseudo-terminal with no other source of the
password, as a user at a terminal would, against a simulated camera (run it
under tests/netns/with-cameras.sh). Types the password once the prompt is
shown and checks that the terminal never showed it, that the command used it
(the card's status comes back) and that the terminal echoes again afterwards.
Exit status 0 passed, 1 failed, 77 skipped.
"""
import json
import os
import pty
import select
import signal
import sys
import termios
import time


def read_until(fd, wanted, seconds):
    seen = b""
    end = time.monotonic() + seconds
    while wanted not in seen and time.monotonic() < end:
        ready, _, _ = select.select([fd], [], [], 0.1)
        if ready:
            try:
                chunk = os.read(fd, 4096)
            except OSError:  # the other side closed
                break
            if not chunk:
                break
            seen += chunk
    return seen


def wait_briefly(pid, seconds):
    """The child's (pid, status), or (0, 0) when it has not ended in time."""
    end = time.monotonic() + seconds
    while True:
        done, code = os.waitpid(pid, os.WNOHANG)
        if done or time.monotonic() > end:
            return done, code
        time.sleep(0.05)


def fail(message, seen=b""):
    print("FAIL:", message)
    print("terminal showed:", seen.decode(errors="replace"))
    sys.exit(1)


def main():
    status = os.environ.get("VELTOR_CAMSIM_STATUS")
    if not status:
        print("SKIP: not run under tests/netns/with-cameras.sh")
        sys.exit(77)
    with open(status) as f:
        camera = next(c for c in json.load(f)["cameras"] if c["family"] == "Haisi")
    password = camera["password"].encode()
    env = dict(os.environ)
    env.pop("VELTOR_PASSWORD", None)
    arguments = [sys.argv[1], "sd", "status", "--wait", "300", "--user", camera["user"],
                 camera["ip"]]
    pid, fd = pty.fork()
    if pid == 0:
        os.execve(arguments[0], arguments, env)

    seen = read_until(fd, b"Password: ", 20)
    if b"Password: " not in seen:
        fail("no prompt", seen)
    if termios.tcgetattr(fd)[3] & termios.ECHO:
        fail("echo is on while the prompt waits", seen)
    os.write(fd, password + b"\n")
    seen += read_until(fd, b"\x00never", 60)  # to the end of the output
    done, code = wait_briefly(pid, 10)
    if not done:
        os.kill(pid, signal.SIGKILL)
        os.waitpid(pid, 0)
        fail("the command still waits after the password was typed", seen)
    if password in seen:
        fail("the password appeared on the terminal", seen)
    if os.waitstatus_to_exitcode(code) != 0 or b"Status: Ready" not in seen:
        fail("the typed password was not used", seen)
    if not termios.tcgetattr(fd)[3] & termios.ECHO:
        fail("echo stayed off after the command", seen)
    print("PASS")


main()
