"""The program on a pseudo-terminal."""

import fcntl
import os
import pty
import re
import select
import signal
import struct
import termios
import time

from support import ROOT, TIMEOUT_SECONDS, program

ESCAPE = re.compile(r"\x1b(\[[0-9;?]*[A-Za-z]|[()][0-9A-Za-z]|[=>])")
CTRL_C, CTRL_D, UP = "\x03", "\x04", "\x1b[A"


class Terminal:
    """Keys go in, and the screen is what came out so far, without escapes; `raw` has all of it."""

    def __init__(self, home, *words, size=(50, 200), stdin=None, stdout=None, stderr=None, **environment):
        self.screen = self.raw = ""
        self.process, self.master = pty.fork()
        if self.process == 0:
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", *size, 0, 0))
            for fd, other in enumerate((stdin, stdout, stderr)):
                if other is not None:
                    os.dup2(other.fileno(), fd)
            os.chdir(ROOT)
            for name in ("XDG_STATE_HOME", "NO_COLOR", "PAGER", "LESS"):
                os.environ.pop(name, None)
            os.environ.update({"HOME": str(home), "TERM": "xterm", "LC_ALL": "C.UTF-8", "ROVA_PAGER": "",
                               **environment})
            os.execv(program(), [program(), *map(str, words)])

    def keys(self, keys):
        os.write(self.master, keys.encode())

    def read(self, seconds):
        """Whether more came within that time; False also at the end."""
        if not select.select([self.master], [], [], seconds)[0]:
            return False
        try:
            more = os.read(self.master, 1 << 16)
        except OSError:
            return False
        more = more.decode("utf-8", "replace")
        self.raw += more
        self.screen += ESCAPE.sub("", more).replace("\r", "")
        return bool(more)

    def wait(self, pattern):
        """What came up to the pattern, which is taken off the screen."""
        end = time.monotonic() + TIMEOUT_SECONDS
        while not (found := re.search(pattern, self.screen)):
            if time.monotonic() > end or (not self.read(0.2) and self.ended()):
                raise AssertionError(f"no {pattern!r} in {self.screen[-2000:]!r}")
        text, self.screen = self.screen[:found.end()], self.screen[found.end():]
        return text

    def leave_pager(self, is_left):
        """Presses q, again where less drops it, as it may the key behind a Ctrl-C."""
        end = time.monotonic() + TIMEOUT_SECONDS
        while not is_left() and time.monotonic() < end:
            self.keys("q")
            self.read(0.5)

    def run(self, line, prompt):
        """Types a line at the prompt; what came up to the next prompt."""
        self.keys(line + "\r")
        return self.wait(re.escape(prompt))

    def local_flags(self):
        """Whether the terminal edits lines, shows keys and makes signals of some."""
        return termios.tcgetattr(self.master)[3] & (termios.ICANON | termios.ECHO | termios.ISIG)

    def ended(self):
        if self.process:
            process, status = os.waitpid(self.process, os.WNOHANG)
            if not process:
                return False
            self.process, self.status = 0, os.waitstatus_to_exitcode(status)
        return True

    def end(self):
        """The exit status; all that came is on the screen then."""
        end = time.monotonic() + TIMEOUT_SECONDS
        while not self.ended():
            self.read(0.05)
            if time.monotonic() > end:
                raise AssertionError("the program does not end")
        while self.read(0):
            pass
        return self.status

    def close(self):
        if self.process:
            os.kill(self.process, signal.SIGKILL)
            os.waitpid(self.process, 0)
        os.close(self.master)
