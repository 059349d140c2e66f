"""A mail server that takes mail only after a log-on, for the tests of sending.

    mail_server.py starttls|tls|plain CERTIFICATE KEY

Writes its port, and then the sender and the recipients of each mail that it takes. Ends with its input. The
plain one speaks no TLS, and takes what it gets.
"""

import asyncio
import ssl
import sys

from aiosmtpd.smtp import SMTP, AuthResult


class Taker:
    async def handle_DATA(self, server, session, envelope):
        print(envelope.mail_from, *envelope.rcpt_tos, flush=True)
        return "250 taken"


def judge(server, session, envelope, mechanism, data):
    known = (data.login, data.password) == (b"desk", b"a-good-password")
    return AuthResult(success=known, handled=False)


async def serve(kind, certificate, key):
    loop = asyncio.get_running_loop()
    context = ssl.create_default_context(ssl.Purpose.CLIENT_AUTH)
    context.load_cert_chain(certificate, key)

    def session():
        return SMTP(
            Taker(),
            loop=loop,
            tls_context=context if kind == "starttls" else None,
            require_starttls=kind == "starttls",
            authenticator=judge,
            auth_required=kind != "plain",
            auth_require_tls=kind == "starttls",
        )

    server = await loop.create_server(session, "127.0.0.1", 0, ssl=context if kind == "tls" else None)
    print(server.sockets[0].getsockname()[1], flush=True)
    await loop.run_in_executor(None, sys.stdin.read)


asyncio.run(serve(*sys.argv[1:]))
