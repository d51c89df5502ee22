"""Mails that want to be noticed when they are opened: each names a host of its own in every way that
makes a browser, or a mail program, look for it."""
import base64
import json
import pathlib

# What an ordinary consent to remote images loads; everything else stays unasked for.
CONTROL = '<p>control</p><img src="http://{host}/seen.gif">'

# {host} is the name that nobody may look up, {url} an address there.
HTML = [
    # Pictures and what is like them
    '<img src="{url}">', "<img src='{url}'>", '<img src={url}>', '<IMG SRC="{url}">',
    '<img src="//{host}/x">', '<img src="\\\\{host}\\x">', '<img src="https:{host}/x">',
    '<img srcset="{url} 1x, {url}2 2x">', '<img src="cid:x" srcset="{url} 2x">',
    '<img lowsrc="{url}" dynsrc="{url}" longdesc="{url}" usemap="{url}">',
    '<img src="ftp://{host}/x">', '<img src="ws://{host}/x">', '<img src="file://{host}/share/x">',
    '<img src="&#104;ttp://{host}/x">', '<img src="ht\ntp://{host}/x">', '<img src=" {url}">',
    '<picture><source srcset="{url}"><img src="{url}"></picture>',
    '<image src="{url}"/>', '<input type="image" src="{url}">',
    '<svg><image href="{url}"/></svg>', '<svg><image xlink:href="{url}"/></svg>',
    '<svg><use href="{url}#a"/></svg>', '<svg><feImage href="{url}"/></svg>',
    '<svg><style>@import "{url}";</style></svg>', '<svg><a xlink:href="{url}"><text>x</text></a></svg>',
    '<math href="{url}"><mi>x</mi></math>', '<math><maction actiontype="statusline#{url}">x</maction></math>',
    '<video src="{url}" autoplay></video>', '<video poster="{url}"></video>',
    '<audio src="{url}" autoplay preload="auto"></audio>', '<track src="{url}">',
    '<video><source src="{url}"><track default src="{url}"></video>',
    # Old attributes
    '<body background="{url}">x</body>', '<table background="{url}"><tr><td background="{url}">x</table>',
    '<bgsound src="{url}">', '<layer src="{url}"></layer>', '<ilayer src="{url}"></ilayer>',
    '<xml src="{url}"></xml>', '<isindex action="{url}">', '<applet code="x" codebase="{url}"></applet>',
    '<embed src="{url}">', '<object data="{url}"></object>', '<param name="movie" value="{url}">',
    '<object classid="clsid:x" codebase="{url}"></object>', '<div profile="{url}" cite="{url}">x</div>',
    '<blockquote cite="{url}">x</blockquote>', '<q cite="{url}">x</q>', '<ins cite="{url}">x</ins>',
    # Frames
    '<iframe src="{url}"></iframe>', '<frameset><frame src="{url}"></frameset>',
    '<iframe srcdoc="&lt;img src=&quot;{url}&quot;&gt;"></iframe>',
    '<iframe srcdoc="&lt;meta http-equiv=x-dns-prefetch-control content=on&gt;&lt;link rel='
    'dns-prefetch href=//{host}&gt;"></iframe>',
    '<iframe src="data:text/html,<img src={url}>"></iframe>',
    '<object type="text/html" data="{url}"></object>', '<portal src="{url}"></portal>',
    '<fencedframe src="{url}"></fencedframe>', '<iframe src="javascript:location=\'{url}\'"></iframe>',
    # Out of a style sheet
    '<style>p{{border</*x*//style><iframe srcdoc="<meta http-equiv=x-dns-prefetch-control content=on>'
    '<a href=http&#58//{host}/>"></iframe><style>:red}}</style>',
    '<style>p{{border<<!--/style><img src=http&#58//{host}/x><style>:red}}</style>',
    # Heads
    '<link rel="stylesheet" href="{url}">', '<link rel="dns-prefetch" href="//{host}">',
    '<link rel="preconnect" href="{url}">', '<link rel="prefetch" href="{url}">',
    '<link rel="preload" as="image" href="{url}">', '<link rel="modulepreload" href="{url}">',
    '<link rel="prerender" href="{url}">', '<link rel="icon" href="{url}">',
    '<link rel="manifest" href="{url}">', '<link rel="import" href="{url}">',
    '<link rel="subresource" href="{url}">', '<link rel="pingback" href="{url}">',
    '<base href="{url}"><img src="x.gif">', '<base href="//{host}"><a href="x">x</a>',
    '<meta http-equiv="refresh" content="0; url={url}">',
    '<meta http-equiv="refresh" content="0;{url}">',
    '<meta http-equiv="x-dns-prefetch-control" content="on"><a href="{url}">x</a>',
    '<meta http-equiv="Content-Security-Policy" content="default-src *; report-uri {url}">'
    '<img src="{url}">',
    '<meta http-equiv="Set-Cookie" content="a=b; domain={host}">',
    '<meta http-equiv="Link" content="<{url}>; rel=stylesheet">',
    '<meta name="msapplication-TileImage" content="{url}">',
    '<html manifest="{url}"><body>x</body></html>', '<!DOCTYPE html SYSTEM "{url}"><p>x',
    '<?xml-stylesheet href="{url}"?><p>x', '<!ENTITY x SYSTEM "{url}">&x;',
    '<script type="speculationrules">{{"prefetch":[{{"source":"list","urls":["{url}"]}}]}}</script>',
    # Scripts
    '<script src="{url}"></script>', '<script>new Image().src="{url}"</script>',
    '<script type="module">import "{url}"</script>', '<img src=x onerror="this.src=\'{url}\'">',
    '<body onload="fetch(\'{url}\')">x</body>', '<svg onload="fetch(\'{url}\')"></svg>',
    '<details open ontoggle="fetch(\'{url}\')">x</details>',
    '<input autofocus onfocus="fetch(\'{url}\')">', '<a href="javascript:fetch(\'{url}\')">x</a>',
    '<noscript><img src="{url}"></noscript>', '<noscript><p title="</noscript><img src={url}>">',
    '<style><!--</style><img src="{url}">--></style>', '<title><img src="{url}"></title>',
    '<textarea><img src="{url}"></textarea><img src="{url}">', '<template><img src="{url}"></template>',
    '<xmp><img src="{url}"></xmp><img src="{url}">', '<plaintext><img src="{url}">',
    '<!--><img src="{url}">-->', '<!--[if mso]><img src="{url}"><![endif]-->',
    '<![CDATA[<img src="{url}">]]>', '<svg><![CDATA[><img src="{url}">]]></svg>',
    '<p title="<img src={url}>">x</p>', '<img alt="x" <img src="{url}">',
    '<math><mtext><table><mglyph><style><img src="{url}"></style></mglyph></table></mtext></math>',
    '<svg></p><style><a title="</style><img src={url}>">',
    '<form><math><mtext></form><form><mglyph><style></math><img src="{url}">',
    # Styles
    '<style>@import "{url}";</style>', '<style>@import url({url});</style>',
    '<style>body{{background:url({url})}}</style>', '<style>@font-face{{font-family:x;src:url({url})}}'
    'p{{font-family:x}}</style><p>x</p>', '<p style="background:url({url})">x</p>',
    '<p style="background-image:url(&quot;{url}&quot;)">x</p>', '<p style="list-style:url({url})">x</p>',
    '<li style="list-style-image:url({url})">x</li>', '<p style="cursor:url({url}),auto">x</p>',
    '<p style="content:url({url})">x</p>', '<p style="border-image:url({url}) 1">x</p>',
    '<p style="mask:url({url})">x</p>', '<p style="filter:url({url}#f)">x</p>',
    '<p style="clip-path:url({url}#f)">x</p>', '<p style="shape-outside:url({url})">x</p>',
    '<p style="background:image-set(&quot;{url}&quot; 1x)">x</p>',
    '<p style="background:-webkit-image-set(url({url}) 1x)">x</p>',
    '<p style="background:cross-fade(url({url}),url({url}),50%)">x</p>',
    '<p style="--x:url({url});background:var(--x)">x</p>', '<p style="background:u\\72l({url})">x</p>',
    '<p style="background:url(\\68ttp://{host}/x)">x</p>', '<p style="behavior:url({url})">x</p>',
    '<p style="-moz-binding:url({url})">x</p>', '<p style="offset-path:url({url})">x</p>',
    '<style>p::before{{content:url({url})}}</style><p>x</p>', '<style>@namespace url({url});</style>',
    '<style>@charset "x";@import \'{url}\' screen;</style>', '<style>/*</style><img src="{url}">*/</style>',
    '<style>@media all{{p{{background:url({url})}}}}</style><p>x</p>',
    '<style>@supports (a:b) or (color:red){{p{{background:url({url})}}}}</style><p>x</p>',
    '<style>@page{{background:url({url})}}</style>', '<style>a:visited{{background:url({url})}}</style>',
    # Links, forms, pings
    '<a href="{url}" ping="{url}">x</a>', '<a href="{url}" target="_blank">x</a>',
    '<area href="{url}" ping="{url}">', '<map name="m"><area href="{url}"></map><img usemap="#m">',
    '<form action="{url}"><input autofocus><button>x</button></form>',
    '<form id="f" action="{url}"></form><button form="f" formaction="{url}">x</button>',
    '<a href="http://{host}:81/">x</a> http://{host}/ mailto:a@{host}', '<a attributionsrc="{url}">x</a>',
    '<img attributionsrc="{url}" src="cid:none">', '<keygen name="x" challenge="{url}">',
    '<menuitem icon="{url}" label="x">', '<command icon="{url}">', '<div itemscope itemid="{url}">x</div>',
    '<div data-src="{url}" class="lazyload">x</div>', '<amp-img src="{url}"></amp-img>',
    '<v:rect><v:fill src="{url}"/></v:rect>', '<o:p><v:imagedata src="{url}"/></o:p>',
    '<div style="width:1px" background="{url}"></div>', '<marquee src="{url}">x</marquee>',
    '<link rel="next" href="{url}"><link rel="alternate" type="application/rss+xml" href="{url}">',
    '<img src="data:image/svg+xml,%3Csvg xmlns=%22http://www.w3.org/2000/svg%22%3E%3Cimage href=%22'
    '{url}%22/%3E%3C/svg%3E">',
]

# Names of attachments that want to be somebody else's words, another file or a command.
NAMES = json.loads((pathlib.Path(__file__).parent / "names.json").read_text())


def mail(number: int, host: str, pieces: list[str], marker: str) -> bytes:
    """One message that shows `pieces` as HTML; its own text and its picture hold the marker."""
    url = f"http://{host}/beacon"
    shown = [piece.format(host=host, url=url) for piece in pieces]
    name = NAMES[number % len(NAMES)].replace("{host}", host).replace("{url}", url)
    coded = base64.b64encode(name.encode()).decode()
    page = f"<html><body><p>{marker}</p>" + "\n".join(shown) + "</body></html>"
    subject = base64.b64encode(f"<img src={url}> {marker} {number}".encode()).decode()
    fields = [f"From: =?utf-8?B?{base64.b64encode(shown[0][:60].encode()).decode()}?= <a@{host}>",
              f"To: <b@{host}>", f"Subject: =?utf-8?B?{subject}?=", f"Message-ID: <{number}@{host}>",
              "Date: Mon, 2 Feb 2026 10:00:00 +0900", f"List-Unsubscribe: <{url}>", f"X-Face: {url}",
              f"Face: {url}", f"X-Image-URL: {url}", f"Archived-At: <{url}>", "MIME-Version: 1.0",
              f'Content-Type: multipart/related; boundary="b"; start="<{url}>"',
              f"Content-Base: {url}", f"Content-Location: {url}"]
    part = ["--b", "Content-Type: text/html; charset=utf-8", f"Content-Location: {url}",
            "Content-Transfer-Encoding: base64", "",
            base64.encodebytes(page.encode()).decode(),
            "--b", 'Content-Type: message/external-body; access-type=URL; URL="' + url + '"', "",
            "Content-Type: image/gif", "", "",
            "--b", "Content-Type: application/octet-stream", "Content-Transfer-Encoding: base64",
            f'Content-Disposition: attachment; filename="=?utf-8?B?{coded}?="', "",
            base64.encodebytes(marker.encode()).decode(), "--b--", ""]
    return "\r\n".join(fields + [""] + part).encode()


def control(host: str) -> bytes:
    return ("From: a@example.jp\r\nTo: b@example.jp\r\nSubject: control\r\nMessage-ID: <c@example.jp>\r\n"
            "Date: Mon, 2 Feb 2026 09:00:00 +0900\r\nContent-Type: text/html; charset=utf-8\r\n\r\n"
            + CONTROL.format(host=host)).encode()
