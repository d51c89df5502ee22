"""An SMTP server on a free port of 127.0.0.1 that keeps messages as files in a folder.

smtp_sink.py FOLDER [--tls starttls|tls --cert FILE --key FILE] [--auth] [--size BYTES]
             [--delay SECONDS]

Prints its port. Any user may log in with the password "secret". A recipient that begins with
"refused" is refused. The answer to a message that was kept comes after up to the given delay.
"""
import argparse
import asyncio
import pathlib
import random
import ssl

from aiosmtpd.smtp import SMTP, AuthResult


class Keeper:
    def __init__(self, folder, delay):
        self.folder = folder
        self.delay = delay
        self.count = 0

    async def handle_RCPT(self, server, session, envelope, address, options):
        if address.startswith("refused"):
            return "550 no such user here"
        envelope.rcpt_tos.append(address)
        return "250 OK"

    async def handle_DATA(self, server, session, envelope):
        self.count += 1
        head = " ".join([envelope.mail_from or "", *envelope.rcpt_tos,
                         "tls" if server.transport.get_extra_info("ssl_object") else "clear",
                         "auth" if session.authenticated else "anonymous"])
        target = self.folder / f"{self.count:05d}.msg"
        target.write_bytes(head.encode() + b"\r\n" + envelope.original_content)
        await asyncio.sleep(random.uniform(0, self.delay))
        return "250 kept"


def check(server, session, envelope, mechanism, data):
    return AuthResult(success=data.password == b"secret", handled=False)


async def serve(options):
    context = None
    if options.tls:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(options.cert, options.key)
    handler = Keeper(pathlib.Path(options.folder), options.delay)

    def make():
        return SMTP(handler, hostname="sink.example", data_size_limit=options.size,
                    tls_context=context if options.tls == "starttls" else None,
                    authenticator=check if options.auth else None,
                    auth_require_tls=bool(options.tls == "starttls"),
                    auth_required=options.auth, require_starttls=False)

    server = await asyncio.get_running_loop().create_server(
        make, "127.0.0.1", 0, ssl=context if options.tls == "tls" else None)
    print(server.sockets[0].getsockname()[1], flush=True)
    await server.serve_forever()


parser = argparse.ArgumentParser()
parser.add_argument("folder")
parser.add_argument("--tls", choices=["starttls", "tls"])
parser.add_argument("--cert")
parser.add_argument("--key")
parser.add_argument("--auth", action="store_true")
parser.add_argument("--delay", type=float, default=0)
parser.add_argument("--size", type=int, default=10_000_000)
asyncio.run(serve(parser.parse_args()))
