"""Codes and their labels: ordinary, damaged, wrong, beyond the common rows, and none at all."""
from message import SENDER, SUBJECT, TEXT, Case, attachment, crlf, header, multipart, part, word_of

TEXTS = [
    "お世話になっております。田中です。明日の会議は午後三時からに変更となりました。",
    "ソフトウェアの更新についてお知らせします。サーバーは土曜日に停止します。",
    "東京都千代田区丸の内一丁目へ移転しました。電話番号は変わりません。",
    "添付資料をご確認のほど、よろしくお願い申し上げます。",
]
JAPANESE = {"iso-2022-jp": "iso2022_jp", "euc-jp": "euc_jp", "shift_jis": "cp932", "utf-8": "utf-8"}


def body(raw: bytes, label: str | None, encoding="8bit", **more) -> bytes:
    kind = "text/plain" if label is None else f"text/plain; charset={label}"
    return header(**more) + part(crlf(raw), kind, encoding)


def ordinary():
    """Mail as it should be, in every code and transfer encoding, with the neighbours it has."""
    for label, codec in JAPANESE.items():
        raw = TEXT.encode(codec)
        for encoding in ("8bit", "base64", "quoted-printable"):
            yield Case(f"{label}-{encoding}", body(raw, label, encoding, subject=word_of(
                SUBJECT.encode(codec), label)), SUBJECT, SENDER, text=TEXT)
        yield Case(f"{label}-raw-header", body(raw, label, subject=SUBJECT.encode(codec),
                   sender=SENDER[0].encode(codec) + b" <tanaka@example.jp>"), SUBJECT, SENDER,
                   text=TEXT)
        name = "見積書（最終）.txt"
        for other, other_codec in JAPANESE.items():
            footer = part(crlf("-- \n配布先：営業部\n".encode(other_codec)),
                          f"text/plain; charset={other}", "8bit")
            yield Case(f"{label}-then-{other}", header() + multipart([part(crlf(raw),
                       f"text/plain; charset={label}", "8bit"), footer]), SUBJECT, SENDER,
                       text=TEXT + "-- \n配布先：営業部\n")
            yield Case(f"{label}-subject-raw-{other}", body(raw, label, subject=SUBJECT.encode(
                other_codec)), SUBJECT, SENDER, text=TEXT)
        files = [attachment(word_of(name.encode(codec), label), b"x")]
        yield Case(f"{label}-file", header() + multipart([part(crlf(raw),
                   f"text/plain; charset={label}", "8bit"), *files]), SUBJECT, SENDER, text=TEXT,
                   files=[(name, b"x")])


def damaged():
    """One byte lost, changed, brought in or cut off: a few characters at most are wrong."""
    for label, codec in JAPANESE.items():
        for number, text in enumerate(TEXTS):
            raw = text.encode(codec)
            # Behind the first and before the last escape, so that the code can be known at all.
            at = 3 + (7 + 9 * number) % (len(raw) - 8)
            for kind, bad in {
                    "lost": raw[:at] + raw[at + 1:],
                    "changed": raw[:at] + bytes([raw[at] ^ 0x15]) + raw[at + 1:],
                    "inserted": raw[:at] + b"\xc5" + raw[at:],
                    "cut": raw[:-4] if codec == "iso2022_jp" else raw[:-1]}.items():
                yield Case(f"{label}-{kind}-{number}", body(bad, label, subject=word_of(bad, label)),
                           text, SENDER, text=text, lost=3)
                for other in (None, "iso-8859-1"):
                    yield Case(f"{label}-as-{other}-{kind}-{number}", body(bad, other), text=text,
                               lost=3)


def mislabelled():
    """ISO-2022-JP under another label, and other codes under a label that cannot be meant."""
    for label in ("utf-8", "shift_jis", "euc-jp", "iso-8859-1", "us-ascii", "x-unknown", "gb2312"):
        for number, text in enumerate(TEXTS[:2]):
            raw = text.encode("iso2022_jp")
            yield Case(f"jis-as-{label}-{number}", body(raw, label, subject=word_of(raw, label)),
                       text, SENDER, text=text)
    for label, codec in (("utf-8", "cp932"), ("utf-8", "euc_jp"), ("euc-jp", "cp932"),
                         ("shift_jis", "euc_jp"), ("shift_jis", "utf-8"), ("euc-jp", "utf-8"),
                         ("iso-2022-jp", "utf-8"), ("iso-2022-jp", "cp932"),
                         ("iso-2022-jp", "euc_jp"), ("us-ascii", "utf-8"), ("us-ascii", "cp932"),
                         ("x-unknown", "utf-8"), ("x-unknown", "euc_jp"), ("iso-8859-1", "cp932"),
                         ("iso-8859-1", "utf-8"), ("iso-8859-1", "euc_jp")):
        for number, text in enumerate(TEXTS[:2]):
            yield Case(f"{codec}-as-{label}-{number}", body(text.encode(codec), label), SUBJECT,
                       SENDER, text=text)


def rare():
    """Codes by their own names, with the characters that only they have."""
    both = [
        ("windows-31j", "cp932"), ("cp932", "cp932"), ("x-sjis", "cp932"), ("ms_kanji", "cp932"),
        ("csWindows31J", "cp932"), ("sjis", "cp932"), ("ms932", "cp932"), ("shift-jis", "cp932"),
    ]
    text = "髙橋①㈱纊︙Ⅲ".replace("︙", "")
    for label, codec in both:
        raw = text.encode(codec)
        yield Case(f"{label}", body(raw, label, subject=word_of(raw, label)), text, text=text)
    # Characters of the rows that vendors added, by the bytes that their codes give them.
    vendor = {"eucJP-ms": (b"\x8f\xf4\xfb\xb6\xb6", "髙橋"), "cp51932": (b"\xfc\xe2\xb6\xb6", "髙橋"),
              "x-eucjp": (b"\xb9\xe2\xb6\xb6", "高橋"), "iso-2022-jp-ms": (b"\x1b$B|b66\x1b(B", "髙橋"),
              "cp50220": (b"\x1b$B|b66-!\x1b(B", "髙橋①"), "cp50221": (b"\x1b(I6E\x1b$B-!\x1b(B", "ｶﾅ①")}
    for label, (raw, text) in vendor.items():
        yield Case(f"{label}", body(raw, label, subject=word_of(raw, label)), text, text=text)
    text = "鷗外と𠮟る、俱に剝ぐ"
    for label, codec in (("iso-2022-jp-2004", "iso2022_jp_2004"), ("iso-2022-jp-3", "iso2022_jp_3"),
                         ("shift_jis-2004", "shift_jis_2004"), ("euc-jis-2004", "euc_jis_2004"),
                         ("shift_jisx0213", "shift_jisx0213"), ("euc-jisx0213", "euc_jisx0213")):
        for number, words in enumerate((text, "鷗外の話です", "カ゚行の㍿は〜♥")):
            try:
                raw = words.encode(codec)
            except UnicodeEncodeError:
                continue
            yield Case(f"{label}-{number}", body(raw, label, subject=word_of(raw, label)), words,
                       text=words)
    foreign = [
        ("euc-kr", "euc_kr", "안녕하세요. 회의 자료입니다."), ("uhc", "cp949", "똠방각하 펲시콜라"),
        ("ks_c_5601-1987", "cp949", "똠방각하 펲시콜라"), ("iso-2022-kr", "iso2022_kr", "안녕하세요."),
        ("gb2312", "gb2312", "您好，附件是会议资料。"), ("gbk", "gbk", "您好，鎔基會議資料。"),
        ("gb18030", "gb18030", "您好𠮷，会议资料。"), ("hz-gb-2312", "hz", "您好，会议。"),
        ("big5", "big5", "您好，附件是會議資料。"), ("big5-hkscs", "big5hkscs", "您好，嘅會議。"),
        ("koi8-r", "koi8_r", "Добрый день, коллеги!"), ("koi8-u", "koi8_u", "Добрий день, їжак!"),
        ("windows-1251", "cp1251", "Добрый день, коллеги!"), ("iso-8859-5", "iso8859_5", "Добрый день"),
        ("iso-8859-2", "iso8859_2", "Zażółć gęślą jaźń"), ("windows-1250", "cp1250", "Žluťoučký kůň"),
        ("windows-1252", "cp1252", "Grüße – „Straße“ 5 €"), ("iso-8859-1", "cp1252", "“Grüße” € 5"),
        ("iso-8859-15", "iso8859_15", "Grüße 5 €"), ("windows-1253", "cp1253", "Καλημέρα σας"),
        ("iso-8859-7", "iso8859_7", "Καλημέρα σας"), ("windows-1255", "cp1255", "שלום רב"),
        ("windows-1256", "cp1256", "مرحبا بكم"), ("tis-620", "tis_620", "สวัสดีครับ"),
        ("windows-874", "cp874", "สวัสดีครับ"), ("windows-1258", "cp1258", "Chào anh"),
        ("iso-2022-jp-2", "iso2022_jp_2", "啊あ안Ελλ"), ("iso-2022-jp-1", "iso2022_jp_1", "丂あ"),
        ("utf-7", "utf-7", "会議です"), ("utf-16", "utf-16", "会議です"),
        ("utf-16le", "utf-16-le", "会議です"), ("utf-16be", "utf-16-be", "会議です"),
    ]
    for label, codec, text in foreign:
        raw = text.encode(codec)
        encoding = "base64" if "16" in codec else "8bit"
        yield Case(f"{label}", header(subject=word_of(raw, label)) + part(
            raw, f"text/plain; charset={label}", encoding), text, text=text)


def unlabelled():
    """Eight-bit text without a label, in body and header."""
    for codec in JAPANESE.values():
        for number, text in enumerate(TEXTS):
            raw = text.encode(codec)
            yield Case(f"{codec}-{number}", body(raw, None, subject=raw), text, SENDER, text=text)
    for number, text in enumerate(("Müller & Söhne, Straße 5", "Café à la crème, s'il vous plaît",
                                   "Señor Muñoz, mañana a las 5", "Grüße aus Köln",
                                   "Jürgen schickt die Übersicht über Länder", "São Paulo, amanhã",
                                   "Kære alle, vi mødes på søndag", "ações da empresa", "café",
                                   "¿Qué pasó ayer?", "Går det bra på lördag?")):
        yield Case(f"latin1-{number}", body(text.encode("latin-1"), None, subject=text.encode(
            "latin-1")), text, SENDER, text=text)
    for number, text in enumerate(("It’s “fine” – really", "Price: 50 € – don’t wait")):
        yield Case(f"windows-1252-{number}", body(text.encode("cp1252"), None), text=text)
    for number, text in enumerate(("ﾔﾏﾀﾞﾀﾛｳﾔﾏﾀﾞ", "ｼｽﾃﾑ ｴﾗｰ ﾉ ｵｼﾗｾ", "ﾒﾝﾃﾅﾝｽ ﾚﾎﾟｰﾄ")):
        yield Case(f"half-width-{number}", body(text.encode("cp932"), None, subject=text.encode(
            "cp932")), text, SENDER, text=text)
    for number, text in enumerate(("御中", "議事録", "了解です", "東京", "至急")):
        raw = text.encode("euc_jp")
        yield Case(f"short-euc-{number}", body(raw, None, subject=raw), text, SENDER, text=text)
    for label, codec, text in (("gb2312", "gb2312", "您好，附件是会议资料。"),
                               ("euc-kr", "euc_kr", "안녕하세요. 자료입니다."),
                               ("big5", "big5", "您好，附件是會議資料。"),
                               ("windows-1251", "cp1251", "Добрый день, коллеги!"),
                               ("shift_jis", "cp932", TEXTS[0]), ("euc-jp", "euc_jp", TEXTS[1])):
        for number, meta in enumerate((f'<meta http-equiv="Content-Type" content="text/html; '
                                       f'charset={label}">', f"<meta charset={label}>")):
            page = f"<html><head>{meta}</head><body>{text}</body></html>"
            yield Case(f"html-meta-{label}-{number}", header() + part(page.encode(codec), "text/html",
                       "8bit"), SUBJECT, SENDER, text=text)


CLASSES = {"ordinary": ordinary, "damaged": damaged, "mislabelled": mislabelled, "rare": rare,
           "unlabelled": unlabelled}
