"""Serves one folder by HTTP and by FTP, with the distribution's own servers, for one test.

usage: real_servers.py PORT FOLDER

Both servers listen on 127.0.0.1, at ports of the system's choice, which are told to the test that
listens at PORT as "HTTP FTP" and a line feed. They live as long as that connection: when the test
is gone, however it ended, so are they.
"""
import functools
import http.server
import logging
import os
import signal
import socket
import sys
import threading

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.handlers import FTPHandler
from pyftpdlib.servers import FTPServer

LIFETIME = 300  # seconds, for a test that hangs and is never ended


class QuietHttpHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *arguments):
        pass


def start_http(folder):
    handler = functools.partial(QuietHttpHandler, directory=folder)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.server_address[1]


def start_ftp(folder):
    """The user "ann" sees all of the folder, whoever has no name its "public" folder."""
    logging.disable()
    public = os.path.join(folder, "public")
    os.makedirs(public, exist_ok=True)
    users = DummyAuthorizer()
    users.add_user("ann", "sec", folder)
    users.add_anonymous(public)

    class Handler(FTPHandler):
        authorizer = users
        auth_failed_timeout = 0

    server = FTPServer(("127.0.0.1", 0), Handler)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server.address[1]


def main():
    signal.alarm(LIFETIME)
    test = socket.create_connection(("127.0.0.1", int(sys.argv[1])))
    test.sendall(b"%d %d\n" % (start_http(sys.argv[2]), start_ftp(sys.argv[2])))
    test.recv(1)
    os._exit(0)


main()
