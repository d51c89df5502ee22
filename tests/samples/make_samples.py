#!/usr/bin/env python3
"""Writes the sample messages (*.eml) and what a reader must make of each (*.json).

Every expectation is written down here by hand, beside the bytes it belongs to; nothing is taken
from the program under test. Run it in this folder after a change.
"""
import base64
import hashlib
import json
import pathlib
import quopri

HERE = pathlib.Path(__file__).parent
COUNT = 0


def jis(text):
    """ISO-2022-JP as Japanese mailers write it: machine-dependent rows and half-width kana too."""
    out, mode = b"", b"\x1b(B"

    def switch(new):
        nonlocal out, mode
        if new != mode:
            out += new
            mode = new

    for char in text:
        code = char.encode("cp932")
        if len(code) == 1 and code[0] < 0x80:
            switch(b"\x1b(B")
            out += code
        elif len(code) == 1:
            switch(b"\x1b(I")
            out += bytes([code[0] - 0x80])
        else:
            switch(b"\x1b$B")
            lead, trail = code
            row = (lead - (0x81 if lead < 0xE0 else 0xC1)) * 2 + 1
            if trail >= 0x9F:
                row, cell = row + 1, trail - 0x9E
            else:
                cell = trail - 0x3F - (1 if trail >= 0x80 else 0)
            out += bytes([row + 0x20, cell + 0x20])
    switch(b"\x1b(B")
    return out


def euc(text):
    out = b""
    for char in text:
        code = char.encode("cp932")
        if len(code) == 1:
            out += code if code[0] < 0x80 else b"\x8e" + code
        else:
            pair = jis(char)[3:5]
            out += bytes([pair[0] | 0x80, pair[1] | 0x80])
    return out


def sjis(text):
    return text.encode("cp932")


def word(data, charset, kind="B"):
    if kind == "B":
        body = base64.b64encode(data).decode()
    else:
        body = "".join(chr(b) if chr(b).isalnum() and b < 128 else "=%02X" % b for b in data)
    return ("=?%s?%s?%s?=" % (charset, kind, body)).encode()


def b64(data):
    return base64.encodebytes(data).replace(b"\n", b"\r\n")


def qp(data):
    return quopri.encodestring(data.replace(b"\r\n", b"\n")).replace(b"\n", b"\r\n")


def lines(*parts):
    return b"\r\n".join(p if isinstance(p, bytes) else p.encode() for p in parts)


def attachment(name, content_type, data):
    return {"name": name, "type": content_type, "size": len(data),
            "sha256": hashlib.sha256(data).hexdigest()}


def sample(name, source, subject, text, sender=("sato@example.jp", "佐藤 花子"), attachments=()):
    global COUNT
    COUNT += 1
    (HERE / (name + ".eml")).write_bytes(source)
    expected = {"subject": subject, "text": text, "files": list(attachments)}
    if sender:
        expected["from"] = {"address": sender[0], "name": sender[1]}
    (HERE / (name + ".json")).write_text(json.dumps(expected, ensure_ascii=False, indent=1) + "\n")


def head(subject, content_type=None, encoding=None, sender=None, extra=()):
    rows = [b"Return-Path: <sato@example.jp>",
            b"Received: from mail.example.jp (mail.example.jp [192.0.2.10])\r\n"
            b"\tby pop.example.org with ESMTP; Tue, 3 Nov 2026 09:00:00 +0900",
            b"From: " + (sender or word(jis("佐藤 花子"), "ISO-2022-JP") + b" <sato@example.jp>"),
            b"To: yamada@example.org",
            b"Date: Tue, 3 Nov 2026 09:00:00 +0900",
            b"Message-ID: <%03d.sample@example.jp>" % (COUNT + 1),
            b"Subject: " + subject]
    rows += list(extra)
    if content_type:
        rows += [b"MIME-Version: 1.0", b"Content-Type: " + content_type]
    if encoding:
        rows.append(b"Content-Transfer-Encoding: " + encoding)
    return b"\r\n".join(rows) + b"\r\n\r\n"


LETTER = "山田様\r\n\r\nいつもお世話になっております。佐藤です。\r\n明日の会議は10時からです。\r\n"
MACHINE = "①番目 ㈱山田商店 №５ Ⅲ ㍻ 髙橋・﨑 ～−∥\r\n"
MACHINE_READ = "①番目 ㈱山田商店 №５ Ⅲ ㍻ 髙橋・﨑 ～－∥\r\n"


def plain_samples():
    j = b'text/plain; charset="ISO-2022-JP"'
    sample("jis-plain", head(word(jis("会議のご案内"), "ISO-2022-JP"), j, b"7bit") + jis(LETTER),
           "会議のご案内", LETTER)
    sample("jis-machine-dependent",
           head(word(jis("①㈱の件"), "ISO-2022-JP"), j, b"7bit") + jis(MACHINE_READ),
           "①㈱の件", MACHINE_READ)
    sample("jis-half-width-kana",
           head(word(jis("ﾃｽﾄです"), "ISO-2022-JP", "Q"), j, b"7bit") + jis("ﾊﾝｶｸ ｶﾅ です\r\n"),
           "ﾃｽﾄです", "ﾊﾝｶｸ ｶﾅ です\r\n")
    sample("jis-base64-body", head(word(jis("添付なし"), "iso-2022-jp"), j, b"base64") +
           b64(jis(LETTER)), "添付なし", LETTER)
    sample("jis-ms-label", head(word(jis("髙橋です"), "iso-2022-jp-ms"),
                                b"text/plain; charset=iso-2022-jp-ms", b"7bit") + jis("髙橋\r\n"),
           "髙橋です", "髙橋\r\n")
    sample("sjis-plain", head(word(sjis("見積書の件"), "Shift_JIS"),
                              b"text/plain; charset=Shift_JIS", b"8bit") + sjis(LETTER),
           "見積書の件", LETTER)
    sample("sjis-odd-label", head(word(sjis("表示ソ能"), "SHIFT-JIS"),
                                  b"text/plain; charset=SHIFT-JIS", b"quoted-printable") +
           qp(sjis("表示ソ能 申込\r\n")), "表示ソ能", "表示ソ能 申込\r\n")
    sample("sjis-machine-dependent", head(word(sjis("㈲①"), "Windows-31J"),
                                          b"text/plain; charset=Windows-31J", b"8bit") +
           sjis(MACHINE_READ), "㈲①", MACHINE_READ)
    sample("euc-plain", head(word(euc("お知らせ"), "EUC-JP"),
                             b"text/plain; charset=EUC-JP", b"8bit") + euc(LETTER),
           "お知らせ", LETTER)
    sample("euc-base64", head(word(euc("月例報告"), "euc-jp"),
                              b"text/plain; charset=euc-jp", b"base64") + b64(euc(LETTER)),
           "月例報告", LETTER)
    emoji = "🍣を食べよう👨‍👩‍👧 한국어 中文 Ünïcödé\r\n"
    sample("utf8-emoji", head(word("寿司🍣の日".encode(), "UTF-8"),
                              b"text/plain; charset=UTF-8", b"8bit") + emoji.encode(),
           "寿司🍣の日", emoji)
    sample("utf8-base64", head(word("東京オフィス移転".encode(), "utf-8"),
                               b"text/plain; charset=utf-8", b"base64") + b64(LETTER.encode()),
           "東京オフィス移転", LETTER)
    sample("utf8-quoted-printable", head(word("請求書".encode(), "UTF-8", "Q"),
                                         b"text/plain; charset=utf-8", b"quoted-printable") +
           qp(LETTER.encode()), "請求書", LETTER)
    sample("ascii-plain", head(b"Minutes of the meeting", b"text/plain; charset=us-ascii") +
           b"See you tomorrow.\r\n", "Minutes of the meeting", "See you tomorrow.\r\n")
    sample("no-mime-jis", head(b"Re: " + word(jis("昔のメール"), "ISO-2022-JP")) + jis(LETTER),
           "Re: 昔のメール", LETTER)


def header_samples():
    full = jis("長い件名が途中で分割されている例です")
    utf = "分割された文字のある件名です".encode()
    sample("split-multibyte",
           head(word(utf[:10], "UTF-8") + b"\r\n " + word(utf[10:25], "UTF-8") + b"\r\n " +
                word(utf[25:], "UTF-8"), b"text/plain; charset=utf-8", b"8bit") + b"x\r\n",
           "分割された文字のある件名です", "x\r\n")
    sample("split-escape",
           head(word(full[:13], "ISO-2022-JP") + b"\r\n\t" + word(full[13:], "ISO-2022-JP"),
                b"text/plain; charset=us-ascii") + b"x\r\n",
           "長い件名が途中で分割されている例です", "x\r\n")
    sample("raw-sjis-subject", head(sjis("生のシフトJISの件名です")) + sjis(LETTER),
           "生のシフトJISの件名です", LETTER)
    sample("raw-euc-subject", head(euc("生のＥＵＣの件名がこれです")) + euc(LETTER),
           "生のＥＵＣの件名がこれです", LETTER)
    sample("raw-utf8-subject", head("生のUTF-8の件名😀".encode()) + LETTER.encode(),
           "生のUTF-8の件名😀", LETTER)
    sample("raw-jis-subject", head(jis("生のJISの件名")) + jis(LETTER), "生のJISの件名", LETTER)
    sample("missing-padding", head(word(jis("詰め物"), "ISO-2022-JP").replace(b"==?=", b"?=")
                                   .replace(b"=?=", b"?="), b"text/plain; charset=us-ascii") +
           b"x\r\n", "詰め物", "x\r\n")
    sample("utf8-labelled-ascii", head(word("嘘のラベル".encode(), "us-ascii"),
                                       b"text/plain; charset=us-ascii", b"8bit") +
           LETTER.encode(), "嘘のラベル", LETTER)
    sample("quoted-encoded-name",
           head(b"name", b"text/plain; charset=us-ascii",
                sender=b'"' + word("鈴木, 一郎".encode(), "UTF-8") + b'" <suzuki@example.jp>') +
           b"x\r\n", "name", "x\r\n", sender=("suzuki@example.jp", "鈴木, 一郎"))
    sample("bare-address", head(b"bare", sender=b"suzuki@example.jp") + b"x\r\n", "bare", "x\r\n",
           sender=("suzuki@example.jp", ""))
    sample("no-subject", head(b"", b"text/plain; charset=us-ascii") + b"x\r\n", "", "x\r\n")


def multipart(boundary, *parts, kind="mixed"):
    body = b"This is a multi-part message.\r\n"
    for part in parts:
        body += b"--" + boundary + b"\r\n" + part + b"\r\n"
    return (b"multipart/%s; boundary=\"%s\"" % (kind.encode(), boundary),
            body + b"--" + boundary + b"--\r\n")


def part(content_type, body, encoding=b"7bit", disposition=None):
    rows = [b"Content-Type: " + content_type, b"Content-Transfer-Encoding: " + encoding]
    if disposition:
        rows.append(b"Content-Disposition: " + disposition)
    return b"\r\n".join(rows) + b"\r\n\r\n" + body


def multipart_samples():
    text = part(b"text/plain; charset=ISO-2022-JP", jis("資料を送ります。"))
    pdf = b"%PDF-1.4\n" + bytes(range(256)) * 8
    png = b"\x89PNG\r\n\x1a\n" + bytes(255 - i for i in range(256)) * 4

    def with_file(name, content_type, disposition, data, file_name, plain_type="application/pdf",
                  subject="資料"):
        kind, body = multipart(b"==_b_%s" % name.encode(), text,
                               part(content_type, b64(data), b"base64", disposition))
        sample(name, head(word(jis(subject), "ISO-2022-JP"), kind) + body, subject,
               "資料を送ります。", attachments=[attachment(file_name, plain_type, data)])

    with_file("file-rfc2231", b"application/pdf",
              b"attachment;\r\n filename*=utf-8''%E8%A6%8B%E7%A9%8D%E6%9B%B8.pdf", pdf, "見積書.pdf")
    with_file("file-rfc2231-continued", b"application/pdf",
              b"attachment;\r\n filename*0*=iso-2022-jp''%1B%24B8%2B;\r\n"
              b" filename*1*=%40Q%3Dq%1B%28B;\r\n filename*2=.pdf", pdf, "見積書.pdf")
    with_file("file-encoded-word", b"application/pdf; name=\"" +
              word(jis("見積書.pdf"), "ISO-2022-JP") + b"\"",
              b"attachment; filename=\"" + word(jis("見積書.pdf"), "ISO-2022-JP") + b"\"",
              pdf, "見積書.pdf")
    with_file("file-raw-sjis", b"image/png", b"attachment; filename=\"" + sjis("写真表.png") + b"\"",
              png, "写真表.png", "image/png")
    with_file("file-plain-name", b"image/png; name=photo.png", b"attachment; filename=photo.png",
              png, "photo.png", "image/png")
    with_file("file-unnamed", b"application/octet-stream", None, pdf, "添付ファイル[1].dat",
              "application/octet-stream")

    kind, body = multipart(
        b"alt", part(b"text/plain; charset=utf-8", "本文です。".encode(), b"8bit"),
        part(b"text/html; charset=utf-8", "<p>本文です。</p>".encode(), b"8bit"),
        kind="alternative")
    sample("alternative", head(word("案内".encode(), "UTF-8"), kind) + body, "案内", "本文です。",
           attachments=[])

    inner_kind, inner = multipart(b"inner", text, part(b"image/png; name=a.png", b64(png), b"base64"),
                                  kind="related")
    kind, body = multipart(b"outer", b"Content-Type: " + inner_kind + b"\r\n\r\n" + inner,
                           part(b"application/pdf; name=b.pdf", b64(pdf), b"base64"))
    sample("nested", head(b"nested", kind) + body, "nested", "資料を送ります。",
           attachments=[attachment("a.png", "image/png", png),
                        attachment("b.pdf", "application/pdf", pdf)])

    forwarded = (b"From: tanaka@example.jp\r\nSubject: inner\r\n\r\ninner text\r\n")
    kind, body = multipart(b"fwd", text, part(b"message/rfc822", forwarded))
    sample("forwarded", head(word(jis("転送"), "ISO-2022-JP"), kind) + body, "転送",
           "資料を送ります。",
           attachments=[attachment("inner.eml", "message/rfc822", forwarded)])


def broken_samples():
    kind, body = multipart(b"cut", part(b"text/plain; charset=utf-8", "途中まで".encode(), b"8bit"),
                           part(b"application/pdf; name=a.pdf", b"JVBERi0xLjQK", b"base64"))
    cut = body[:body.rindex(b"\r\n--cut--")]
    sample("broken-unclosed-multipart", head(b"cut", kind) + cut, "cut", "途中まで",
           attachments=[attachment("a.pdf", "application/pdf", b"%PDF-1.4\n")])
    sample("broken-missing-boundary",
           head(b"lost boundary", b"multipart/mixed") + b"still readable\r\n",
           "lost boundary", "still readable\r\n")
    sample("broken-boundary-never-used",
           head(b"never", b"multipart/mixed; boundary=nowhere") + b"still readable\r\n",
           "never", "still readable\r\n")
    sample("broken-bare-lf",
           (head(word(jis("改行"), "ISO-2022-JP"), b"text/plain; charset=iso-2022-jp") +
            jis("改行が\r\nLFだけ\r\n")).replace(b"\r\n", b"\n"),
           "改行", "改行が\r\nLFだけ\r\n")
    sample("broken-no-header-end", head(b"no end").rstrip(b"\r\n") + b"\r\n", "no end", "")
    sample("broken-base64-body", head(b"noise", b"text/plain; charset=utf-8", b"base64") +
           b"44G+\r\n@@@44Gg\r\n6Kqt44KB44KL", "noise", "まだ読める")
    sample("broken-unknown-charset", head(b"unknown", b"text/plain; charset=x-no-such", b"8bit") +
           sjis(LETTER), "unknown", LETTER)
    sample("broken-body-dots", head(b"dots", b"text/plain; charset=us-ascii") +
           b".\r\n..\r\n.hidden\r\nend\r\n", "dots", ".\r\n..\r\n.hidden\r\nend\r\n")
    sample("quoted-in-subject", head(b"it's \"quoted\" <b>*NOW*</b> & more") + b"x\r\n",
           "it's \"quoted\" <b>*NOW*</b> & more", "x\r\n")


if __name__ == "__main__":
    for old in list(HERE.glob("*.eml")) + list(HERE.glob("*.json")):
        old.unlink()
    plain_samples()
    header_samples()
    multipart_samples()
    broken_samples()
    print(COUNT, "samples")
