"""SMTP servers on 127.0.0.1: a real one (aiosmtpd) that keeps what it takes, and a scripted one that does wrong.

Take both as context managers.
"""
import socket
import ssl
import subprocess
import threading
import time

from aiosmtpd.controller import Controller
from aiosmtpd.smtp import AuthResult

USER, PASSWORD = b"ann", b"s\xc3\xa9cret"


def make_certificates(folder, host):
    """ca.crt in the folder, and an SSL context for a server with a certificate of this host by that CA."""
    def openssl(*arguments):
        subprocess.run(["openssl", *arguments], cwd=folder, check=True, capture_output=True)

    openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "ca.key", "-out", "ca.crt", "-subj",
            "/CN=Harbour Test CA", "-days", "3650")
    openssl("req", "-newkey", "rsa:2048", "-nodes", "-keyout", "host.key", "-out", "host.csr", "-subj", f"/CN={host}")
    (folder / "names").write_text(f"subjectAltName=DNS:{host}\n")
    openssl("x509", "-req", "-in", "host.csr", "-CA", "ca.crt", "-CAkey", "ca.key", "-CAcreateserial", "-days", "3650",
            "-extfile", "names", "-out", "host.crt")
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "host.crt", folder / "host.key")
    return context


class MailServer:
    """envelopes: the mails it took, oldest first. tls: an SSL context for STARTTLS, which it then insists on, or with
    implicit for TLS from the first byte. login: the one way of logging in, "PLAIN" or "LOGIN", then insisted on."""

    def __init__(self, port, tls=None, implicit=False, login=""):
        self.envelopes = []
        options = {"data_size_limit": 100_000_000}
        if tls:
            options |= {"ssl_context": tls} if implicit else {"tls_context": tls, "require_starttls": True}
        if login:
            options |= {"authenticator": self._check, "auth_required": True, "auth_require_tls": bool(tls) and not implicit,
                        "auth_exclude_mechanism": {"PLAIN", "LOGIN"} - {login}}
        self.controller = Controller(self, hostname="127.0.0.1", port=port, **options)

    def _check(self, server, session, envelope, mechanism, data):
        return AuthResult(success=(data.login, data.password) == (USER, PASSWORD), handled=False)

    async def handle_DATA(self, server, session, envelope):
        self.envelopes.append(envelope)
        return "250 taken"

    def __enter__(self):
        self.controller.start()
        return self

    def __exit__(self, *_):
        self.controller.stop()


class FaultyMailServer:
    """Answers each command with `replies[verb]` (EHLO, MAIL, RCPT, DATA, "." ..., "secret" behind AUTH) or 250. None as a reply says nothing
    any more, "" ends the connection. slow: every byte on its own. received: all that came, as text."""

    def __init__(self, port=0, replies=None, slow=False):
        self.replies = {"EHLO": "250-here\r\n250-STARTTLS\r\n250 AUTH PLAIN", "DATA": "354 go on", "QUIT": "221 bye",
                        "AUTH": "334 ", "secret": "235 in", "STARTTLS": "454 not now", **(replies or {})}
        self.slow = slow
        self.received = ""
        self.listener = socket.create_server(("127.0.0.1", port))
        self.port = self.listener.getsockname()[1]
        self.connections = []

    def _serve(self):
        while True:
            try:
                connection, _ = self.listener.accept()
            except OSError:
                return
            self.connections.append(connection)
            threading.Thread(target=self._talk, args=(connection,), daemon=True).start()

    def _talk(self, connection):
        verb = "greeting"
        try:
            with connection, connection.makefile("r", encoding="latin-1", newline="\r\n") as lines:
                while self._say(connection, self.replies.get(verb, "220 ready" if verb == "greeting" else "250 ok")):
                    line = lines.readline()
                    if verb == "DATA" and self.replies["DATA"].startswith("354"):
                        text = line
                        while line and line != ".\r\n":
                            line = lines.readline()
                            text += line
                        line = "."
                        self.received += text
                    elif not line:
                        return
                    else:
                        self.received += line
                    verb = "secret" if verb == "AUTH" else line.strip().split(" ")[0].upper()
                    if verb == "QUIT":
                        self._say(connection, self.replies["QUIT"])
                        return
        except OSError:
            pass

    def _say(self, connection, reply):
        if reply is None:
            while connection.recv(1000):
                pass
        if not reply:
            return False
        data = reply.encode() + b"\r\n"
        for part in [data[i:i + 1] for i in range(len(data))] if self.slow else [data]:
            connection.sendall(part)
            time.sleep(0.002 * self.slow)
        return True

    def verbs(self):
        """First words of the commands that came."""
        return [line.split(" ")[0] for line in self.received.splitlines()]

    def __enter__(self):
        threading.Thread(target=self._serve, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        for connection in self.connections:
            connection.close()
