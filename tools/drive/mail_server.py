"""A real Dovecot, or the recording server for outgoing mail, on loopback, for the benches and the tour: as a with block.

The programs serve_mail and serve_smtp of tests/serve do the work and end with this one."""

import json
import subprocess
import sys


class Served:
    """facts: what the program said of itself at its start, such as ports and folders."""

    def __init__(self, command):
        self.process = subprocess.Popen([str(word) for word in command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)
        line = self.process.stdout.readline()
        if not line:
            sys.exit(f"{command[0]} did not start")
        self.facts = json.loads(line)

    def ask(self, word):
        self.process.stdin.write(word + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.process.stdin.close()
        self.process.wait()
