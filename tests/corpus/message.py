"""How the messages of the corpus are put together."""
import base64
import dataclasses
import quopri

SUBJECT = "会議の件"
SENDER = ("田中 一郎", "tanaka@example.jp")
TEXT = "お世話になっております。\n資料を添付しますので、ご確認ください。\n"


@dataclasses.dataclass
class Case:
    """A message and what a reader must make of it; what is None is not looked at.

    `lost` is how many characters may be missing or wrong, all in one place. `files` are names and
    contents of the attachments, a content of None is not compared.
    """
    name: str
    source: bytes
    subject: str | None = None
    sender: tuple[str, str] | None = None
    recipients: list[str] | None = None
    text: str | None = None
    files: list[tuple[str, bytes | None]] | None = None
    lost: int = 0


def crlf(text: bytes) -> bytes:
    return text.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")


def word(text: str, code="utf-8", label=None, form="B") -> bytes:
    """One encoded word (RFC 2047)."""
    return word_of(text.encode(code), label or code, form)


def word_of(raw: bytes, label: str, form="B") -> bytes:
    if form == "B":
        coded = base64.b64encode(raw)
    else:
        coded = b"".join(b"_" if c == 0x20 else bytes([c]) if chr(c).isalnum() and c < 128
                         else b"=%02X" % c for c in raw)
    return b"=?%s?%s?%s?=" % (label.encode(), form.encode(), coded)


def header(subject: bytes | None = None, sender: bytes | None = None, to=b"suzuki@example.jp",
           more: list[bytes] = ()) -> bytes:
    """The header fields that every message has, without the empty line."""
    return b"\r\n".join([
        b"Received: from a.example.jp by b.example.jp; Mon, 2 Feb 2026 10:00:00 +0900",
        b"From: " + (sender if sender is not None
                     else word(SENDER[0]) + b" <" + SENDER[1].encode() + b">"),
        b"To: " + to,
        b"Subject: " + (subject if subject is not None else word(SUBJECT)),
        b"Date: Mon, 2 Feb 2026 10:00:00 +0900",
        b"Message-ID: <1@example.jp>",
        b"MIME-Version: 1.0", *more]) + b"\r\n"


def part(body: bytes, kind: str | None = "text/plain", encoding: str | None = None,
         more: list[bytes] = ()) -> bytes:
    """Fields and body of one part; with `header` before it, a message."""
    fields = [*more]
    if kind is not None:
        fields.append(b"Content-Type: " + kind.encode())
    if encoding is not None:
        fields.append(b"Content-Transfer-Encoding: " + encoding.encode())
    if encoding == "base64":
        body = crlf(base64.encodebytes(body))
    elif encoding == "quoted-printable":
        body = crlf(quopri.encodestring(body.replace(b"\r\n", b"\n")))
    return b"".join(field + b"\r\n" for field in fields) + b"\r\n" + body


def attachment(name: bytes, content: bytes, kind="application/octet-stream") -> bytes:
    """A part that is a file; `name` as it stands between the quotes."""
    return part(content, kind, "base64",
                [b'Content-Disposition: attachment; filename="' + name + b'"'])


def multipart(parts: list[bytes], kind="mixed", boundary="=_b1", more="") -> bytes:
    """A multipart of finished parts, with its own field before it."""
    mark = boundary.encode()
    return (b'Content-Type: multipart/%s; boundary="%s"%s\r\n\r\n' % (kind.encode(), mark, more.encode())
            + b"".join(b"--" + mark + b"\r\n" + one + b"\r\n" for one in parts)
            + b"--" + mark + b"--\r\n")
