#include "present/page_template.h"

#include <QStringList>
#include <iterator>
#include <utility>

#include "storage/ui.h"

namespace vorn {
namespace {

struct TemplateLine {
  int blanks;
  const char16_t* text;
};

constexpr TemplateLine kLines[] = {
    {0, u"<HTML lang = \"ja\">"},
    {0, u""},
    {4, u"<HEAD>"},
    {8, u"<META http-equiv = \"Content-Type\" content = \"text/html; charset = shift-jis\">"},
    {8, u"<TITLE><+FOLDER><NAME></TITLE>"},
    {8, u"<STYLE TYPE = \"text/css\">"},
    {12, u"A:active    { color: darkblue; }"},
    {12, u"A:link      { color: darkblue; }"},
    {12, u"A:visited   { color: darkblue; }"},
    {12, u"BODY        { BACKGROUND-COLOR: beige; }"},
    {12, u"#size       { FONT-SIZE: 10pt; }"},
    {12, u"</STYLE>"},
    {8, u"<TITLE>.VORN</TITLE>"},
    {8, u"</HEAD>"},
    {0, u""},
    {4, u"<BODY>"},
    {0, u""},
    {8, u"<TABLE>"},
    {12, u"<TBODY align = \"left\" valign = \"middle\">"},
    {16, u"<TR>"},
    {20, u"<TD></TD>"},
    {20, u"<TD></TD>"},
    {20, u"<TD></TD>"},
    {20, u"<TD id = \"size\">件名</TD>"},
    {20, u"<TD id = \"size\">日時</TD>"},
    {20, u"<TD id = \"size\">送信者</TD>"},
    {20, u"</TR>"},
    {16, u"<TR>"},
    {20, u"<TD colspan = \"6\"><HR size = \"1\"></TD>"},
    {20, u"</TR>"},
    {16, u"<+MAIL>"},
    {16, u"<TR>"},
    {20, u"<TD id = \"size\"><NOBR><+FLAG><NEW></NOBR></TD>"},
    {20, u"<TD id = \"size\"><NOBR><+FLAG><CLIP></NOBR></TD>"},
    {20, u"<TD id = \"size\"><NOBR><+FLAG><PRIORITY></NOBR></TD>"},
    {20,
     u"<TD id = \"size\"><NOBR><+DIALOG><+SUBJECT><+DIALOG> <+DIALOG><REPLAY>返信<+DIALOG> "
     u"<+DIALOG><FORWARD>転送<+DIALOG></NOBR></TD>"},
    {20, u"<TD id = \"size\"><NOBR><+TIMESTAMP></NOBR></TD>"},
    {20, u"<TD id = \"size\"><NOBR><+MAILADDRESS><FROM></NOBR></TD>"},
    {20, u"</TR>"},
    {20, u"<+MAIL>"},
    {16, u"</TBODY>"},
    {12, u"</TABLE>"},
    {0, u""},
    {8, u"</BODY>"},
    {0, u""},
    {4, u"</HTML>"},
};

// Those that say colours.
constexpr int kFirstColor = 6;
constexpr int kColors = 4;

constexpr char kDarkColors[] =
    "\r\n@media screen and (prefers-color-scheme: dark) { :root { color-scheme: dark; }"
    " BODY { BACKGROUND-COLOR: #1b1d21; COLOR: #e6e8eb; }"
    " A:active, A:link, A:visited { COLOR: #8ab4f8; } }";

QString TemplateLines(int first, int count) {
  QStringList lines;
  for (int i = first; i < first + count; ++i) {
    lines.append(QString(kLines[i].blanks, u' ') + QString::fromUtf16(kLines[i].text));
  }
  return lines.join(QStringLiteral("\r\n"));
}

}  // namespace

QByteArray WithDarkColors(QByteArray page) {
  const QByteArray documented = TemplateLines(kFirstColor, kColors).toLatin1();
  const qsizetype at = page.indexOf(documented);
  return at < 0 ? page : page.insert(at + documented.size(), kDarkColors);
}

QString DefaultPageTemplate() {
  QString page = TemplateLines(0, static_cast<int>(std::size(kLines)));
  const std::pair<QStringView, QString> words[] = {{u">件名<", Ui::tr("件名", "heading")},
                                                   {u">日時<", Ui::tr("日時", "heading")},
                                                   {u">送信者<", Ui::tr("送信者")},
                                                   {u">返信<", Ui::tr("返信")},
                                                   {u">転送<", Ui::tr("転送")}};
  for (const auto& [word, shown] : words) {
    page.replace(word.toString(), u'>' + shown + u'<');
  }
  return page;
}

}  // namespace vorn
