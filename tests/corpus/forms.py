"""Forms of messages: structure, messages within messages, encoded words, transfer encodings,
addresses and HTML, as they should be and as they come."""
import base64
import binascii

from message import (SENDER, SUBJECT, TEXT, Case, attachment, crlf, header, multipart, part, word,
                     word_of)

UTF8 = "text/plain; charset=utf-8"
ONE = "一つ目の文です。"
TWO = "二つ目の文です。"


def text_part(text: str, kind=UTF8, **more) -> bytes:
    return part(crlf(text.encode()), kind, "8bit", **more)


def structure():
    """Headers without an end, lines that end otherwise, boundaries that are off."""
    def case(name, source, text=TEXT, **more):
        return Case(name, source, more.pop("subject", SUBJECT), SENDER, text=text, **more)

    plain = header() + text_part(TEXT)
    yield case("lf", plain.replace(b"\r\n", b"\n"))
    yield case("cr", plain.replace(b"\r\n", b"\r"))
    yield case("crcrlf", plain.replace(b"\r\n", b"\r\r\n"))
    yield case("lf-header-crlf-body", header().replace(b"\r\n", b"\n") + text_part(TEXT))
    yield case("no-line-end", header() + text_part(TEXT.rstrip("\n")), TEXT.rstrip("\n"))
    head = header()
    yield case("blank-line-with-space", head + b" \r\n" + crlf(TEXT.encode()))
    yield case("no-blank-line", head + crlf(TEXT.encode()))
    yield Case("no-header", crlf(TEXT.encode()), text=TEXT)
    yield case("bom-before-header", b"\xef\xbb\xbf" + plain)
    yield case("bom-before-sender", b"\xef\xbb\xbf" + plain.partition(b"\r\n")[2])
    yield case("mbox-line", b"From a@b Mon Feb  2 10:00:00 2026\r\n" + plain)
    yield case("quoted-mbox-line", b">From a@b Mon Feb  2 10:00:00 2026\r\n" + plain)
    yield case("blank-before-colon", plain.replace(b"Subject:", b"Subject :"))
    yield case("lower-case-fields", plain.replace(b"Subject:", b"subject:").replace(b"From:", b"FROM:"))
    yield case("field-in-header-torn", plain.replace(b"Date:", b"torn line without colon\r\nDate:"))
    yield case("tab-folds", plain.replace(b"Subject: ", b"Subject:\r\n\t"))
    yield case("fold-of-blanks", plain.replace(b"Subject: ", b"Subject: \r\n \r\n "))
    yield case("eight-bit-blank-line", header() + part(b"", UTF8, "8bit") + b"\r\n" + crlf(
        TEXT.encode()), "\n" + TEXT)
    for name, kind in (("no-semicolon", "text/plain charset=utf-8"), ("semicolons", "text/plain;; "
                       "charset=utf-8;"), ("quotes", 'text/plain; charset="utf-8'),
                       ("single-quotes", "text/plain; charset='utf-8'"), ("comment",
                       "text/plain (a; b); charset=utf-8 (utf)"), ("spaces",
                       "text/plain ; charset = utf-8"), ("upper", "TEXT/PLAIN; CHARSET=UTF-8"),
                       ("no-subtype", "text; charset=utf-8"), ("twice",
                       "text/plain; charset=utf-8\r\nContent-Type: text/html"), ("utf8", "text/plain; "
                       "charset=utf8"), ("folded", "text/plain;\r\n\tcharset=utf-8;\r\n\tformat=fixed"),
                       ("extended", "text/plain; charset*=us-ascii'en'utf-8")):
        yield case(f"type-{name}", header() + text_part(TEXT, kind))
    yield case("encoding-unknown", header() + part(crlf(TEXT.encode()), UTF8, "x-none"))
    yield case("encoding-blank", header() + part(crlf(TEXT.encode()), UTF8, " 8BIT "))
    yield case("encoding-comment", (header() + part(TEXT.encode(), UTF8, "base64")).replace(
        b"Encoding: base64", b"Encoding: base64 (coded)"))

    both = ONE + "\n" + TWO
    parts = [text_part(ONE), text_part(TWO)]
    whole = header() + multipart(parts, boundary="b")
    yield case("multipart", whole, both)
    yield case("multipart-lf", whole.replace(b"\r\n", b"\n"), both)
    yield case("boundary-blanks", whole.replace(b"--b\r\n", b"--b  \t\r\n"), both)
    yield case("boundary-quoted-blanks", whole.replace(b'"b"', b'"b  "'), both)
    yield case("boundary-cut", header() + multipart(parts, boundary="long").replace(
        b'"long"', b'"lo"', 1), both)
    yield case("boundary-longer", header() + multipart(parts, boundary="long").replace(
        b'"long"', b'"longer"', 1), both)
    yield case("boundary-unquoted", whole.replace(b'"b"', b"b"), both)
    yield case("boundary-odd", header() + multipart(parts, boundary="=_'()+_,-./:=?b"), both)
    yield case("boundary-prefix", header() + multipart([multipart(parts, boundary="b1")],
               boundary="b"), both)
    yield case("boundary-same", header() + multipart([multipart(parts, boundary="b")],
               boundary="b"), both)
    yield case("never-closed", whole.removesuffix(b"--b--\r\n"), both)
    yield case("cut-in-part", whole[:whole.rindex(TWO.encode()) + 6], ONE + "\n" + TWO[:2])
    yield case("behind-the-end", whole + b"\r\n--b\r\n" + text_part("三つ目です。") + b"\r\n--b--\r\n",
               both + "\n三つ目です。")
    yield case("inner-never-closed", header() + multipart([multipart([text_part(ONE)],
               boundary="i").removesuffix(b"--i--\r\n"), text_part(TWO)], boundary="b"), both)
    yield case("inner-in-alternative", header() + multipart([multipart([text_part(ONE), text_part(
        "<p>" + ONE + "</p>", "text/html; charset=utf-8")], "alternative", "i"), text_part(TWO)],
        boundary="b"), both)
    yield case("no-boundary-used", header(more=[b'Content-Type: multipart/mixed; boundary="b"'])
               + b"\r\n" + crlf(TEXT.encode()))
    yield case("no-boundary-named", header(more=[b"Content-Type: multipart/mixed"]) + b"\r\n"
               + multipart(parts, boundary="b").split(b"\r\n\r\n", 1)[1], both)
    yield case("part-without-fields", header() + multipart([b"\r\n" + crlf(ONE.encode())]), ONE)
    yield case("part-without-blank-line", header() + multipart([b"Content-Type: text/plain; "
               b"charset=utf-8\r\n" + ONE.encode()]), ONE)
    yield case("empty-parts", header() + multipart([part(b""), text_part(ONE), part(b"")]), ONE)
    deep = text_part(ONE)
    for level in range(30):
        deep = multipart([deep], boundary=f"level{level}")
    yield case("deep", header() + deep, ONE)
    for kind in ("related", "signed", "report", "parallel", "x-own"):
        yield case(f"multipart-{kind}", header() + multipart(parts, kind), both)
    yield case("file-without-type", header() + multipart([text_part(ONE), part(
        b"x", None, None, [b'Content-Disposition: attachment; filename="a.bin"'])]), ONE,
        files=[("a.bin", b"x")])
    yield case("only-a-file", header() + part(b"%PDF-1.4", "application/pdf; name=a.pdf", "base64"),
               "", files=[("a.pdf", b"%PDF-1.4")])


def inner():
    """Messages within messages, reports, digests."""
    message = header(subject=word("元の件名")) + text_part("元の文です。")
    note = text_part("転送します。")
    yield Case("forwarded", header() + multipart([note, part(message, "message/rfc822")]), SUBJECT,
               SENDER, text="転送します。", files=[("元の件名.eml", message)])
    yield Case("forwarded-named", header() + multipart([note, part(message, "message/rfc822", None, [
        b'Content-Disposition: attachment; filename="a.eml"'])]), text="転送します。",
        files=[("a.eml", message)])
    yield Case("forwarded-base64", header() + multipart([note, part(
        message, 'message/rfc822; name="a.eml"', "base64")]), text="転送します。",
        files=[("a.eml", message)])
    digest = multipart([b"\r\n" + message, b"\r\n" + message], "digest")
    yield Case("digest", header() + digest, text="元の文です。元の文です。")
    status = (b"Reporting-MTA: dns; mx.example.jp\r\n\r\nFinal-Recipient: rfc822; "
              b"nobody@example.jp\r\nAction: failed\r\nStatus: 5.1.1\r\nDiagnostic-Code: smtp; "
              b"550 5.1.1 User unknown\r\n")
    report = [text_part("配信できませんでした。"), part(status, "message/delivery-status"),
              part(message, "message/rfc822")]
    yield Case("bounce", header() + multipart(report, "report",
               more="; report-type=delivery-status"), SUBJECT, SENDER,
               text="配信できませんでした。\n\n宛先: nobody@example.jp\n結果: 配信できませんでした。\n"
               "理由: 宛先のメールアドレスがありません。\nサーバーの応答: 550 5.1.1 User unknown")
    yield Case("bounce-alone", header() + part(
        status + b"\r\nOriginal-Recipient: rfc822; b@example.jp\r\nAction: delayed\r\nStatus: 4.4.1\r\n",
        "message/delivery-status"), SUBJECT, SENDER,
        text="宛先: nobody@example.jp\n結果: 配信できませんでした。\n理由: 宛先のメールアドレスがありません。\n"
        "サーバーの応答: 550 5.1.1 User unknown\n\n宛先: b@example.jp\n結果: 配信が遅れています。"
        "サーバーが送り直します。\n理由: 受信者のサーバーが応答しません。\nサーバーの応答: 4.4.1")
    calendar = ("BEGIN:VCALENDAR\nVERSION:2.0\nMETHOD:REQUEST\nBEGIN:VEVENT\nUID:1@x\nSUMMARY:第三会議室での\n  打ち合わせ\n"
                "DTSTART:20260203T100000\nDTEND:20260203T113000\nLOCATION:第三会議室\n"
                "ORGANIZER;CN=田中 一郎:mailto:tanaka@example.jp\nDESCRIPTION:資料は\\n別送します。\n"
                "END:VEVENT\nEND:VCALENDAR\n")
    details = ("【予定への招待】\n件名: 第三会議室での 打ち合わせ\n日時: 2026/02/03 10:00～11:30\n"
               "場所: 第三会議室\n主催者: 田中 一郎 <tanaka@example.jp>")
    invitation = text_part(calendar, "text/calendar; charset=utf-8; method=REQUEST")
    yield Case("invitation", header() + multipart([text_part("会議のご案内です。"), invitation],
               "alternative"), SUBJECT, SENDER, text="会議のご案内です。\n\n" + details)
    yield Case("invitation-alone", header() + invitation, SUBJECT, SENDER,
               text=details + "\n\n資料は\n別送します。")
    yield Case("invitation-broken", header() + multipart([text_part("案内です。"), text_part(
        calendar[:150], "text/calendar; charset=utf-8")]),
               text="案内です。\n\n" + details[:details.index("\n主催者")])
    opened = (b"Reporting-UA: a\r\nFinal-Recipient: rfc822;suzuki@example.jp\r\nOriginal-Message-ID: "
              b"<1@x>\r\nDisposition: manual-action/MDN-sent-manually; displayed\r\n")
    yield Case("receipt", header() + multipart([text_part("開きました。"), part(
        opened, "message/disposition-notification")], "report",
        more="; report-type=disposition-notification"), SUBJECT, SENDER,
        text="開きました。\n\n受信者: suzuki@example.jp\n結果: 開封されました。")


def words():
    """Encoded words and file names as programs write them."""
    def case(name, subject, wanted=SUBJECT):
        return Case(name, header(subject=subject) + text_part(TEXT), wanted, SENDER, text=TEXT)

    long = "第三四半期の売上報告と来期の計画について（営業部）"
    for label, codec in (("utf-8", "utf-8"), ("shift_jis", "cp932"), ("euc-jp", "euc_jp")):
        raw = long.encode(codec)
        for cut in (3, 7, 10, 14):
            coded = base64.b64encode(raw)
            halves = [b"=?%s?B?%s?=" % (label.encode(), half) for half in (coded[:cut], coded[cut:])]
            yield case(f"base64-cut-{label}-{cut}", b"\r\n ".join(halves), long)
            halves = [word_of(raw[:cut], label), word_of(raw[cut:], label)]
            yield case(f"character-cut-{label}-{cut}", b"\r\n ".join(halves), long)
        for form in "BQ":
            yield case(f"lower-case-{label}-{form}", word_of(raw, label, form).replace(
                b"?%s?" % form.encode(), b"?%s?" % form.lower().encode()), long)
    jis = long.encode("iso2022_jp")
    yield case("jis-cut-without-escape", word_of(jis[:9], "iso-2022-jp") + b"\r\n " + word_of(
        jis[9:], "iso-2022-jp"), long)
    yield case("no-end", b"=?utf-8?B?" + base64.b64encode(SUBJECT.encode()))
    yield case("no-equals", b"=?utf-8?B?" + base64.b64encode(SUBJECT.encode()) + b"?")
    yield case("padding-missing", word("予定表").replace(b"==", b"").replace(b"=?=", b"?="), "予定表")
    yield case("padding-midway", b"=?utf-8?B?%s%s?=" % (base64.b64encode("表です".encode("utf-8") + b"a"),
               base64.b64encode("次".encode())), "表ですa次")
    yield case("blank-in-q", b"=?utf-8?Q?a b=E8=A1=A8?=", "a b表")
    yield case("joined", word("会議") + word("の件"))
    yield case("between-words", word("会議") + b" and " + word("件"), "会議 and 件")
    yield case("in-quotes", b'"' + word("会議") + b'"', '"会議"')
    yield case("glued", b"Re:" + word("会議の件"), "Re:会議の件")
    yield case("glued-behind", word("会議の件") + b"(2)", "会議の件(2)")
    yield case("language", b"=?utf-8*ja?B?" + base64.b64encode(SUBJECT.encode()) + b"?=")
    yield case("not-a-word", b"=?utf-8?X?abc?= =??= =?", "=?utf-8?X?abc?= =??= =?")
    yield case("codes-mixed", word("会議", "cp932", "shift_jis") + b" " + word("の件"))
    yield case("raw-and-word", "会議".encode() + b" " + word("の件"), "会議 の件")
    yield case("folded-in-word", b"=?utf-8?B?" + base64.b64encode(SUBJECT.encode())[:6] + b"\r\n "
               + base64.b64encode(SUBJECT.encode())[6:] + b"?=")
    yield case("empty-word", b"=?utf-8?B??= " + word(SUBJECT))
    yield case("emoji-split", word_of("🍣寿司".encode()[:2], "utf-8") + b" "
               + word_of("🍣寿司".encode()[2:], "utf-8"), "🍣寿司")
    yield case("very-long", b"\r\n ".join(word(long) for _ in range(40)), long * 40)

    def sender(name, raw, who):
        return Case(f"sender-{name}", header(sender=raw) + text_part(TEXT), SUBJECT, who, text=TEXT)

    address = SENDER[1].encode()
    yield sender("whole-in-word", word("田中 <tanaka@example.jp>"), ("田中", SENDER[1]))
    yield sender("comma", word("田中, 一郎") + b" <" + address + b">", ("田中, 一郎", SENDER[1]))
    yield sender("brackets", word("田中<営業>") + b" <" + address + b">", ("田中<営業>", SENDER[1]))
    yield sender("mixed-codes", word("田中", "cp932", "shift_jis") + b" " + word("一郎") + b" <"
                 + address + b">", ("田中一郎", SENDER[1]))
    yield sender("quoted-word", b'"' + word("田中") + b'" <' + address + b">", ("田中", SENDER[1]))
    yield sender("full-width-blank", word("田中　一郎") + b"<" + address + b">", ("田中　一郎", SENDER[1]))
    yield sender("comment", address + b" (" + word("田中") + b")", ("田中", SENDER[1]))
    yield sender("address-in-name", word("boss@corp.example") + b" <evil@example.com>",
                 ("boss@corp.example", "evil@example.com"))
    yield sender("stray-quote", b'"' + word("田中") + b" <" + address + b">", ("田中", SENDER[1]))

    def file(name, fields, wanted, kind=b"application/octet-stream"):
        source = part(b"x", None, "base64", [b"Content-Type: " + kind, *fields])
        return Case(f"file-{name}", header() + multipart([text_part(TEXT), source]), text=TEXT,
                    files=[(wanted, b"x")])

    name = "申込書（能登）表.pdf"
    disposition = b"Content-Disposition: attachment; "
    yield file("word", [disposition + b'filename="' + word(name) + b'"'], name)
    yield file("words", [disposition + b'filename="' + word("申込書") + b"\r\n "
               + word("（能登）表.pdf") + b'"'], name)
    yield file("word-unquoted", [disposition + b"filename=" + word(name)], name)
    yield file("name-only", [], name, b'application/pdf; name="' + word(name) + b'"')
    percent = "".join(f"%{c:02X}" for c in name.encode()).encode()
    yield file("extended", [disposition + b"filename*=UTF-8''" + percent], name)
    pieces = [percent[:30], percent[30:60], percent[60:]]
    yield file("continued", [disposition + b"filename*0*=UTF-8''" + pieces[0] + b";\r\n filename*1*="
               + pieces[1] + b";\r\n filename*2*=" + pieces[2]], name)
    yield file("out-of-order", [disposition + b"filename*1*=" + pieces[1] + b"; filename*2*="
               + pieces[2] + b"; filename*0*=UTF-8''" + pieces[0]], name)
    yield file("percent-wrong", [disposition + b"filename*=UTF-8''100%25%zz%E8%A1%A8.pdf"],
               "100%%zz表.pdf")
    yield file("percent-plain", [disposition + b"filename*=UTF-8''" + name.encode()], name)
    yield file("two-forms", [disposition + b'filename="__.pdf"; filename*=UTF-8\'\'' + percent], name)
    yield file("types-and-disposition", [disposition + b'filename="' + word(name) + b'"'], name,
               b'application/pdf; name="noname"')
    for label, codec in (("utf-8", "utf-8"), ("shift_jis", "cp932"), ("euc-jp", "euc_jp"),
                         ("iso-2022-jp", "iso2022_jp")):
        yield file(f"raw-{label}", [disposition + b'filename="' + name.encode(codec) + b'"'], name)
        yield file(f"extended-{label}", [disposition + b"filename*=" + label.encode() + b"''" + "".join(
            f"%{c:02X}" for c in name.encode(codec)).encode()], name)
    yield file("sjis-5c", [disposition + b'filename="' + "申込書表".encode("cp932") + b'"'], "申込書表")
    yield file("backslashes", [disposition + b'filename="a\\"b.txt"'], 'a"b.txt')


def yenc(data: bytes, name: bytes) -> bytes:
    coded = b"".join(b"=" + bytes([(c + 106) % 256]) if (c + 42) % 256 in (0, 10, 13, 61)
                     else bytes([(c + 42) % 256]) for c in data)
    return (b"=ybegin line=128 size=%d name=%s\r\n" % (len(data), name) + b"\r\n".join(
        coded[at:at + 128] for at in range(0, len(coded), 128))
        + b"\r\n=yend size=%d crc32=%08x\r\n" % (len(data), binascii.crc32(data)))


def encodings():
    """Transfer encodings, as they should be and as they come."""
    def case(name, body, encoding, wanted=TEXT, files=None):
        fields = header(more=[b"Content-Type: text/plain; charset=utf-8",
                              b"Content-Transfer-Encoding: " + encoding])
        return Case(name, fields + b"\r\n" + body, SUBJECT, SENDER, text=wanted, files=files)

    quoted = part(TEXT.encode(), None, "quoted-printable").split(b"\r\n\r\n", 1)[1]
    qp = b"quoted-printable"
    yield case("qp-blanks-behind-soft-break", quoted.replace(b"=\r\n", b"=  \r\n"), qp)
    yield case("qp-lower-case", quoted.lower(), qp)
    yield case("qp-raw-eight-bit", crlf(TEXT.encode()), qp)
    yield case("qp-wrong", b"100=% =zz =E8=A1=A8=\r\n", qp, "100=% =zz 表")
    yield case("qp-blanks-at-ends", b"a  \r\nb=20\r\n", qp, "a  \nb \n")
    yield case("qp-cut", quoted.rstrip(b"\r\n") + b"=E", qp, TEXT.rstrip("\n") + "=E")
    yield case("qp-lf", quoted.replace(b"\r\n", b"\n"), qp)
    b64 = base64.b64encode(crlf(TEXT.encode()))
    lines = b"\r\n".join(b64[at:at + 60] for at in range(0, len(b64), 60)) + b"\r\n"
    yield case("base64-one-line", b64, b"base64")
    yield case("base64-no-padding", lines.replace(b"=", b""), b"base64")
    yield case("base64-blanks", lines.replace(b"\r\n", b" \r\n\t"), b"base64")
    yield case("base64-foreign-bytes", lines[:30] + b"!#" + lines[30:], b"base64")
    yield case("base64-pieces", base64.b64encode(ONE.encode() + b"a") + b"\r\n" + base64.b64encode(
        TWO.encode()) + b"\r\n", b"base64", ONE + "a" + TWO)
    yield case("base64-upper-case", lines, b"BASE64")
    yield case("base64-with-footer", lines + b"\r\n--\r\nlist footer!\r\n", b"base64",
               TEXT + "--\nlist footer!")
    yield case("base64-is-plain", crlf(TEXT.encode()), b"base64")
    data = bytes(range(256)) * 2
    uu = [b"begin 644 a.bin\r\n"] + [binascii.b2a_uu(data[at:at + 45]).replace(b"\n", b"\r\n")
                                    for at in range(0, len(data), 45)]
    block = b"".join(uu)
    for name, text in (("", block + b"`\r\nend\r\n"), ("-mode-0644", block.replace(b"644", b"0644", 1)
                       + b"`\r\nend\r\n"), ("-blank-before-end", block + b"`\r\n\r\nend\r\n"),
                       ("-no-end", block), ("-blank-for-grave", block + b" \r\nend\r\n"),
                       ("-no-zero-line", block + b"end\r\n")):
        yield case(f"uu{name}", crlf(ONE.encode()) + b"\r\n" + text, b"8bit", ONE + "\n",
                   [("a.bin", data)])
    yield case("uu-none", b"begin 644 chairs\r\nand tables\r\n", b"7bit",
               "begin 644 chairs\nand tables\n")
    yield case("yenc", crlf(ONE.encode()) + b"\r\n" + yenc(data, b"a.bin"), b"8bit", ONE + "\n",
               [("a.bin", data)])
    flowed = "text/plain; charset=utf-8; format=flowed"
    yield Case("flowed", header() + text_part("one \ntwo\n-- \nname\n", flowed), text="one two\n-- \nname\n")
    yield Case("flowed-delsp", header() + text_part("一つ \n目\n", flowed + "; delsp=yes"), text="一つ目\n")


def addresses():
    """Senders and recipients in the forms that there are."""
    def sender(name, raw, who):
        return Case(f"from-{name}", header(sender=raw) + text_part(TEXT), SUBJECT, who)

    def to(name, raw, wanted):
        return Case(f"to-{name}", header(to=raw) + text_part(TEXT), SUBJECT, SENDER, wanted)

    for name, raw, who in (
            ("bare", b"a@example.jp", ("", "a@example.jp")),
            ("brackets", b"<a@example.jp>", ("", "a@example.jp")),
            ("name", b"Taro Yamada <a@example.jp>", ("Taro Yamada", "a@example.jp")),
            ("no-blank", b"Taro<a@example.jp>", ("Taro", "a@example.jp")),
            ("quoted", b'"Yamada, Taro" <a@example.jp>', ("Yamada, Taro", "a@example.jp")),
            ("escaped", b'"Taro \\"T\\" Y" <a@example.jp>', ('Taro "T" Y', "a@example.jp")),
            ("dots", b"T. Y. Yamada <a@example.jp>", ("T. Y. Yamada", "a@example.jp")),
            ("comment", b"a@example.jp (Taro)", ("Taro", "a@example.jp")),
            ("two-brackets", b'"Someone" <valid@a.example>:<other@b.example>',
             ("Someone : <other@b.example>", "valid@a.example")),
            ("behind", b"<a@example.jp> Taro", ("Taro", "a@example.jp")),
            ("address-as-name", b'"boss@corp.example" <evil@example.com>',
             ("boss@corp.example", "evil@example.com")),
            ("quoted-local", b'"taro yamada"@example.jp', ("", '"taro yamada"@example.jp')),
            ("quoted-local-brackets", b'Taro <"taro yamada"@example.jp>',
             ("Taro", '"taro yamada"@example.jp')),
            ("dots-in-local", b"a..b.@docomo.example", ("", "a..b.@docomo.example")),
            ("route", b"Taro <@relay.example,@b.example:a@example.jp>", ("Taro", "a@example.jp")),
            ("folded", b"Taro\r\n Yamada\r\n\t<a@example.jp>", ("Taro Yamada", "a@example.jp")),
            ("blank-in-brackets", b"Taro < a@example.jp >", ("Taro", "a@example.jp")),
            ("plus", b"a+b=c@example.jp", ("", "a+b=c@example.jp")),
            ("literal", b"a@[192.0.2.1]", ("", "a@[192.0.2.1]")),
            ("japanese", "田中 <t@example.jp>".encode(), ("田中", "t@example.jp")),
            ("idn", "田中 <田中@例え.jp>".encode(), ("田中", "田中@例え.jp"))):
        yield sender(name, raw, who)
    for name, raw, wanted in (
            ("list", b"a@x.jp, B <b@x.jp>,\r\n c@x.jp", ["a@x.jp", "b@x.jp", "c@x.jp"]),
            ("group", b"Team: a@x.jp, B <b@x.jp>;", ["a@x.jp", "b@x.jp"]),
            ("groups", b"T: a@x.jp;, c@x.jp, U: b@x.jp;", ["a@x.jp", "c@x.jp", "b@x.jp"]),
            ("undisclosed", b"undisclosed-recipients:;", []),
            ("comma-in-quotes", b'"A, B" <a@x.jp>, "C, D" <c@x.jp>', ["a@x.jp", "c@x.jp"]),
            ("semicolons", b"a@x.jp; b@x.jp; c@x.jp", ["a@x.jp", "b@x.jp", "c@x.jp"]),
            ("comments", b"a@x.jp (A, the first), (note) b@x.jp", ["a@x.jp", "b@x.jp"]),
            ("word-with-comma", word("山田, 太郎") + b" <a@x.jp>, b@x.jp", ["a@x.jp", "b@x.jp"]),
            ("words-with-list", word("山田 <a@x.jp>, 鈴木 <b@x.jp>"), ["a@x.jp", "b@x.jp"]),
            ("raw-shift-jis", "表, 太郎 <a@x.jp>".encode("cp932").replace(b",", b""), ["a@x.jp"]),
            ("raw-jis", "山田 <a@x.jp>, 鈴木 <b@x.jp>".encode("iso2022_jp"), ["a@x.jp", "b@x.jp"])):
        yield to(name, raw, wanted)


def html():
    """Messages of HTML alone, as text."""
    def case(name, page, wanted, codec="utf-8", label="utf-8"):
        return Case(name, header() + part(page.encode(codec, "xmlcharrefreplace"),
                    f"text/html; charset={label}", "base64"), SUBJECT, SENDER, text=wanted)

    yield case("paragraphs", f"<p>{ONE}</p><p>{TWO}</p>", f"{ONE}\n\n{TWO}")
    yield case("breaks", f"{ONE}<br>{TWO}<br/>x", f"{ONE}\n{TWO}\nx")
    yield case("blanks", f"<p>a\n  b&nbsp;c\t d</p>", "a b c d")
    yield case("entities", "&lt;&amp;&gt; &copy; &eacute; &yen; &hellip; &#12354; &#x3042; &larr;",
               "<&> © é ¥ … あ あ ←")
    yield case("entities-odd", "AT&T &amp &unknown; &#1114112; R&D", "AT&T & &unknown; � R&D")
    yield case("script-style", "<style>p{}</style><script>if(a<b)x()</script><!-- c --><title>t</title>x",
               "x")
    yield case("list", "<ul><li>一</li><li>二</li></ul>", "・一\n・二")
    yield case("table", "<table><tr><td>品名</td><td>数</td></tr><tr><td>鉛筆</td><td>3</td></tr></table>",
               "品名 数\n鉛筆 3")
    yield case("link", 'これは<a href="https://example.jp/a">案内</a>です',
               "これは案内[1]です\n\n[1] https://example.jp/a")
    yield case("link-same", '<a href="https://example.jp/">https://example.jp/</a>', "https://example.jp/")
    yield case("quote", f"<p>{ONE}</p><blockquote>{TWO}<br>x</blockquote>", f"{ONE}\n\n> {TWO}\n> x")
    yield case("pre", "<pre>a\n  b</pre>", "a\n  b")
    yield case("heading", f"<h1>題</h1>{ONE}", f"題\n\n{ONE}")
    yield case("image", '<img src="cid:a" alt="地図">', "地図")
    yield case("unclosed", f"<p><b>{ONE}<p>{TWO}", f"{ONE}\n\n{TWO}")
    yield case("cut-in-tag", f"<p>{ONE}</p><a hre", ONE)
    yield case("hidden", f'<div style="display:none">preview</div>{ONE}', ONE)
    yield case("hidden-attribute", f'<p hidden>preview</p>{ONE}', ONE)
    yield case("invisible", f'<div style="visibility:hidden">preview</div>{ONE}', ONE)
    yield case("no-height", f'<div style="max-height:0px; overflow:hidden">preview</div>{ONE}', ONE)
    yield case("no-size", f'<div style="font-size:0px">x<b style="font-size:9pt">{ONE}</b></div>', ONE)
    yield case("small", f'<p>{TWO}</p><p style="font-size:0.9em">{ONE}</p>', f"{TWO}\n\n{ONE}")
    yield case("paragraphs-in-cells", "<table><tr><td><p>品名</p></td><td><p>数</p></td></tr><tr><td>"
               "<p>鉛筆</p></td><td><p>3</p></td></tr></table>", "品名 数\n鉛筆 3")
    yield case("long-cells", f"<table><tr><td><p>{ONE}</p><p>{TWO}</p></td><td>x</td></tr><tr><td>y"
               "</td></tr></table>", f"{ONE}\n\n{TWO}\n\nx\ny")
    yield case("tables-in-cells", f"<table><tr><td><table><tr><td>{ONE}</td></tr><tr><td>{TWO}</td>"
               "</tr></table></td></tr></table>", f"{ONE}\n{TWO}")
    yield case("sjis", f"<p>{ONE}</p>", ONE, "cp932", "shift_jis")
    yield case("jis", f"<p>{ONE}</p>", ONE, "iso2022_jp", "iso-2022-jp")
    yield case("euc", f"<p>{ONE}</p>", ONE, "euc_jp", "euc-jp")
    yield Case("alternative", header() + multipart([text_part(ONE), text_part(
        f"<p>{TWO}</p>", "text/html; charset=utf-8")], "alternative"), text=ONE, files=[])
    yield Case("alternative-blank-text", header() + multipart([text_part(" "), text_part(
        f"<p>{TWO}</p>", "text/html; charset=utf-8")], "alternative"), text=TWO, files=[])
    yield Case("related", header() + multipart([text_part(
        f'<p>{TWO}</p><img src="cid:a@b">', "text/html; charset=utf-8"), part(
        b"GIF89a", "image/gif; name=a.gif", "base64", [b"Content-ID: <a@b>"])], "related"), text=TWO)


CLASSES = {"structure": structure, "inner": inner, "words": words, "encodings": encodings,
           "addresses": addresses, "html": html}
