"""A conversation with `quillonctl drive`: requests and replies, a line of JSON each."""
import json
import os
import subprocess


class Driver:
    def __init__(self, program, words):
        os.environ["LC_ALL"] = "C"  # the days of the week in English
        self.process = subprocess.Popen([program, "drive", *words], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.first = self.reply()

    def reply(self):
        told = []
        while True:
            line = self.process.stdout.readline()
            if not line:
                raise EOFError(f"the program ended with status {self.process.wait()}")
            reply = json.loads(line)
            if "progress" not in reply:
                return {**reply, "progress": told}
            told.append(reply["progress"])

    def send(self, request):
        self.process.stdin.write(request.encode() + b"\n")
        self.process.stdin.flush()
        return self.reply()

    def kill(self):
        self.process.kill()
        self.process.communicate()

    def end(self):
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass
        rest = self.process.stdout.read()
        return self.process.wait(), rest
