"""Servers on 127.0.0.1 for tests on a Wine PC: HTTP with scripted faults, and FTP (pyftpdlib).

Both keep what was asked of them, in order. Take them as context managers; they run in threads of their own. The tests
have a network of their own, so any port can be taken.
"""
import http.server
import logging
import pathlib
import threading
import time
from dataclasses import dataclass, field

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import DTPHandler, FTPHandler
from pyftpdlib.servers import FTPServer as PyFtpServer

logging.disable(logging.INFO)  # pyftpdlib tells every step


@dataclass
class Reply:
    """What one address answers. Faults: `cut` ends the connection after so many bytes of the body; `length` is what
    Content-Length says instead of the truth (None leaves the header out); `chunk` and `delay` (seconds) send slowly."""

    body: bytes = b""
    status: int = 200
    headers: dict = field(default_factory=dict)
    cut: int = -1
    length: int | None = -1
    chunk: int = 0
    delay: float = 0


class HttpServer:
    """replies: path (with query) -> bytes, Reply, or a function of the request handler that gives one; all other paths
    are answered with 404. requests: (method, path, body) as they came."""

    def __init__(self, replies=None, port=80):
        self.replies = dict(replies or {})
        self.requests = []
        outer = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def answer(self):
                body = self.rfile.read(int(self.headers.get("Content-Length") or 0))
                outer.requests.append((self.command, self.path, body))
                _send(self, outer.replies.get(self.path, Reply(b"not here", 404)))

            do_GET = do_POST = do_HEAD = answer

            def log_message(self, *_):
                pass

        class Server(http.server.ThreadingHTTPServer):
            daemon_threads = True

            def handle_error(self, *_):
                pass  # a client that went away

        self.server = Server(("127.0.0.1", port), Handler)

    def __enter__(self):
        threading.Thread(target=self.server.serve_forever, args=(0.05,), daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()


def _send(handler, reply):
    if callable(reply):
        reply = reply(handler)
    if isinstance(reply, bytes):
        reply = Reply(reply)
    handler.send_response(reply.status)
    for name, value in reply.headers.items():
        handler.send_header(name, value)
    if reply.length is not None:
        handler.send_header("Content-Length", str(reply.length if reply.length >= 0 else len(reply.body)))
    handler.end_headers()
    handler.close_connection = True
    if handler.command == "HEAD":
        return
    body = reply.body if reply.cut < 0 else reply.body[:reply.cut]
    step = reply.chunk or max(len(body), 1)
    for start in range(0, len(body), step):
        handler.wfile.write(body[start:start + step])
        handler.wfile.flush()
        time.sleep(reply.delay)


class FtpServer:
    """Serves a folder to one user. commands: "STOR /Brevanta/a.zip" and the like, as they came. Faults: `rights` of
    pyftpdlib ("elr": no changes), `cut` ends a data connection after so many bytes, `address` is what it says in answer
    to PASV instead of its own, `listing` what LIST gives instead of the folder's, `silent` hangs after the log-in."""

    def __init__(self, folder, user="tech", password="secret", port=21, rights="elradfmwMT", cut=0, address=None,
                 listing=None, silent=False):
        self.folder = pathlib.Path(folder)
        self.folder.mkdir(parents=True, exist_ok=True)
        self.commands = commands = []

        class Handler(FTPHandler):
            authorizer = DummyAuthorizer()
            auth_failed_timeout = 0
            banner = "ready"
            masquerade_address = address
            use_sendfile = False

            def pre_process_command(self, line, cmd, arg):
                commands.append(f"{cmd} {arg}".strip())
                if not (silent and self.authenticated):
                    super().pre_process_command(line, cmd, arg)

            def ftp_LIST(self, path):
                if listing is None:
                    return super().ftp_LIST(path)
                self.push_dtp_data(listing, isproducer=False, cmd="LIST")
                return path

        class CutData(DTPHandler):
            """Ends the connection instead of the transfer."""

            def handle_read(self):
                super().handle_read()
                self.end_at(self.tot_bytes_received)

            handle_read_event = handle_read

            def initiate_send(self):
                super().initiate_send()
                self.end_at(self.tot_bytes_sent)

            def end_at(self, count):
                if count > cut and not self._closed:
                    self.cmd_channel.respond("426 Connection closed; transfer aborted.")
                    self.close()

        if cut:
            Handler.dtp_handler = CutData
        Handler.authorizer.add_user(user, password, str(folder), perm=rights)
        self.server = PyFtpServer(("127.0.0.1", port), Handler)

    def __enter__(self):
        self.running = True
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()
        return self

    def _serve(self):
        while self.running:
            self.server.ioloop.loop(0.05, blocking=False)

    def __exit__(self, *_):
        self.running = False
        self.thread.join(5)
        self.server.close_all()
