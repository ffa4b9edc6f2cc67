"""Firefox and Chromium without a window, told what to do through their own remote control.

For looking at a page that Quorrix has written: running script in it, typing into it, and taking
its picture. They have fresh profiles and no network.
"""

import base64
import json
import os
import select
import socket
import time

from support import processes
from support.waiting import wait_until

ANSWER_SECONDS = 60


class DrivenBrowser:
    """One browser with one page."""

    def __init__(self, folder):
        self.profile = os.path.join(folder, type(self).__name__)
        os.mkdir(self.profile, 0o700)
        self.process = None

    def run(self, command, **options):
        environment = {"PATH": "/usr/local/bin:/usr/bin:/bin", "HOME": self.profile,
                       "LANG": "C.UTF-8", "MOZ_CRASHREPORTER_DISABLE": "1"}
        with open(os.path.join(self.profile, "log"), "ab") as log:
            self.process = processes.start(command, environment, stdout=log, stderr=log, **options)

    def close(self):
        processes.end_family(self.process)


class DrivenChromium(DrivenBrowser):
    """Speaks the DevTools protocol over a pair of pipes: JSON texts that end with NUL."""

    def __init__(self, folder, is_dark=False, has_script=True):
        super().__init__(folder)
        commands, self._commands = os.pipe()
        self._answers, answers = os.pipe()
        # The browser has its ends as descriptors 3 and 4.
        script = f'exec "$@" 3<&{commands} 4>&{answers}'
        self.run(["bash", "-c", script, "bash", "chromium", "--headless", "--no-sandbox",
                  "--remote-debugging-pipe", "--hide-scrollbars", "--no-first-run",
                  f"--user-data-dir={self.profile}", "about:blank"], pass_fds=[commands, answers])
        os.close(commands)
        os.close(answers)
        self._rest = b""
        self._number = 0
        self._session = None
        target = wait_until(self._page, "the page of Chromium", 30)
        self._session = self._call("Target.attachToTarget", targetId=target,
                                   flatten=True)["sessionId"]
        self._call("Page.enable")
        # Of pages only; evaluate() works all the same.
        self._call("Emulation.setScriptExecutionDisabled", value=not has_script)
        scheme = "dark" if is_dark else "light"
        self._call("Emulation.setEmulatedMedia",
                   features=[{"name": "prefers-color-scheme", "value": scheme}])

    def open(self, url):
        self._call("Page.navigate", url=url)
        wait_until(lambda: self.evaluate("document.readyState === 'complete' && location.href")
                   == url, url, 30)

    def evaluate(self, expression):
        answer = self._call("Runtime.evaluate", expression=expression, returnByValue=True)
        if "exceptionDetails" in answer:
            raise AssertionError(answer["exceptionDetails"])
        return answer["result"].get("value")

    def type_text(self, text):
        """Types into the element that has the focus."""
        self._call("Input.insertText", text=text)

    def resize(self, width, height):
        self._call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                   deviceScaleFactor=1, mobile=False)

    def save_picture(self, path):
        data = self._call("Page.captureScreenshot", captureBeyondViewport=True)["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))

    def print(self):
        self._call("Page.printToPDF")

    def close(self):
        super().close()
        os.close(self._commands)
        os.close(self._answers)

    def _page(self):
        targets = self._call("Target.getTargets")["targetInfos"]
        return next((target["targetId"] for target in targets if target["type"] == "page"), None)

    def _call(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session:
            message["sessionId"] = self._session
        os.write(self._commands, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._next_message()
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise AssertionError(f"{method}: {answer['error']}")
                return answer["result"]

    def _next_message(self):
        deadline = time.monotonic() + ANSWER_SECONDS
        while b"\0" not in self._rest:
            if not select.select([self._answers], [], [], deadline - time.monotonic())[0]:
                raise AssertionError("Chromium does not answer")
            data = os.read(self._answers, 1 << 20)
            if not data:
                raise AssertionError("Chromium has ended")
            self._rest += data
        message, self._rest = self._rest.split(b"\0", 1)
        return json.loads(message)


class DrivenFirefox(DrivenBrowser):
    """Speaks Marionette over a socket: JSON texts after their length and a colon."""

    def __init__(self, folder, is_dark=False, preferences=()):
        super().__init__(folder)
        settings = {"marionette.port": "0", "ui.systemUsesDarkTheme": "1" if is_dark else "0",
                    "layout.css.prefers-color-scheme.content-override": "0" if is_dark else "1",
                    "datareporting.policy.dataSubmissionEnabled": "false",
                    "browser.shell.checkDefaultBrowser": "false",
                    "browser.aboutwelcome.enabled": "false", **dict(preferences)}
        with open(os.path.join(self.profile, "user.js"), "w", encoding="utf-8") as file:
            for name, value in settings.items():
                file.write(f'user_pref("{name}", {value});\n')
        self.run(["firefox-esr", "--headless", "--marionette", "--no-remote", "--profile",
                  self.profile, "about:blank"])
        port = wait_until(self._port, "Firefox to open its port", 60)
        self._socket = socket.create_connection(("127.0.0.1", port), timeout=ANSWER_SECONDS)
        self._stream = self._socket.makefile("rb")
        self._receive()  # the greeting
        self._number = 0
        self._call("WebDriver:NewSession")

    def open(self, url):
        self._call("WebDriver:Navigate", url=url)

    def evaluate(self, expression):
        return self._call("WebDriver:ExecuteScript", script=f"return ({expression});",
                          args=[])["value"]

    def type_text(self, text):
        element = self._call("WebDriver:GetActiveElement")["value"]
        self._call("WebDriver:ElementSendKeys", id=next(iter(element.values())), text=text)

    def resize(self, width, height):
        self._call("WebDriver:SetWindowRect", width=width, height=height)

    def save_picture(self, path):
        data = self._call("WebDriver:TakeScreenshot", full=True)["value"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))

    def print(self):
        self._call("WebDriver:Print")

    def close(self):
        self._stream.close()
        self._socket.close()
        super().close()

    def _port(self):
        try:
            with open(os.path.join(self.profile, "MarionetteActivePort"), encoding="ascii") as file:
                return int(file.read() or 0)
        except FileNotFoundError:
            return None

    def _call(self, name, **parameters):
        self._number += 1
        message = json.dumps([0, self._number, name, parameters]).encode()
        self._socket.sendall(str(len(message)).encode() + b":" + message)
        _kind, number, error, result = self._receive()
        if error or number != self._number:
            raise AssertionError(f"{name}: {error}")
        return result

    def _receive(self):
        length = b""
        while not length.endswith(b":"):
            byte = self._stream.read(1)
            if not byte:
                raise AssertionError("Firefox has ended")
            length += byte
        return json.loads(self._stream.read(int(length[:-1])))
