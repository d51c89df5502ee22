// What acts in files whose kind is harmless otherwise, and what only looks so.

#include "mail/inspection/carried_commands.h"

#include <gtest/gtest.h>

#include <QList>
#include <QtEndian>
#include <array>
#include <atomic>

#include "mail/file_kind.h"
#include "mail/inspection/office_parts.h"
#include "mail/inspection/pdf_actions.h"

namespace vorn {
namespace {

bool IsHarmless(const char16_t* name, const QByteArray& bytes) {
  return KindOfFile(QString::fromUtf16(name), bytes).IsHarmless();
}

template <typename Integer>
QByteArray Number(Integer value) {
  QByteArray bytes(sizeof(value), '\0');
  qToLittleEndian(value, bytes.data());
  return bytes;
}

quint32 Crc(const QByteArray& bytes) {
  static const auto table = [] {
    std::array<quint32, 256> sums{};
    for (quint32 i = 0; i < sums.size(); ++i) {
      sums[i] = i;
      for (int bit = 0; bit < 8; ++bit) sums[i] = (sums[i] >> 1) ^ (sums[i] & 1 ? 0xEDB88320u : 0u);
    }
    return sums;
  }();
  quint32 crc = ~0u;
  for (const char c : bytes) {
    crc = (crc >> 8) ^ table[(crc ^ static_cast<unsigned char>(c)) & 0xFF];
  }
  return ~crc;
}

struct Part {
  QByteArray name;
  QByteArray content;
  quint32 mode = 0;
};

QByteArray Zip(const QList<Part>& parts) {
  QByteArray files;
  QByteArray directory;
  for (const Part& part : parts) {
    const QByteArray packed = part.content.isEmpty()
                                  ? QByteArray("\3\0", 2)  // which qCompress leaves out
                                  : qCompress(part.content).sliced(6).chopped(4);
    const QByteArray head = Number(quint16(20)) + Number(quint16(0)) + Number(quint16(8)) +
                            Number(quint32(0)) + Number(Crc(part.content)) +
                            Number(quint32(packed.size())) + Number(quint32(part.content.size())) +
                            Number(quint16(part.name.size())) + Number(quint16(0));
    directory += "PK\1\2" + Number(quint16(0x314)) + head + QByteArray(6, '\0') +
                 Number(part.mode << 16) + Number(quint32(files.size())) + part.name;
    files += "PK\3\4" + head + part.name + packed;
  }
  const auto count = quint16(parts.size());
  return files + directory + "PK\5\6" + Number(quint32(0)) + Number(count) + Number(count) +
         Number(quint32(directory.size())) + Number(quint32(files.size())) + Number(quint16(0));
}

TEST(CarriedCommandsTest, ATableMayNameItsDelimiter) {
  for (const char* table : {"sep=^\r\n1^=cmd|' /C calc'!A0", "\xEF\xBB\xBFSEP=x\n1x@WEBSERVICE(1)",
                            "\"sep=^\"\n1^+cmd|' /C calc'!A0", "sep= \n1 =cmd|x"}) {
    EXPECT_FALSE(IsHarmless(u"a.csv", table)) << table;
  }
  EXPECT_TRUE(IsHarmless(u"a.csv", "sep=;\r\n1;a^=b\r\nx=1;x =1\r\n"));
  for (const char* table :
       {"1,\"=\n1+cmd|' /C calc'!A0\"", "a,-1+cmd|' /C calc'!A0", "=HYPERLINK(\"http://h\")",
        "\"='\\\\h\\s\\[b.xls]T'!A1\"", "a\n='file:///h/b.ods'#$T.A1", "@WEBSERVICE(1)",
        "+A1*cmd|x", "=IF(1;WEBSERVICE(\"http://h\");2)", "a;=IF(1,image (\"http://h\"))"}) {
    EXPECT_FALSE(IsHarmless(u"a.csv", table)) << table;
  }
  // Which code the program takes it for, nobody here knows.
  EXPECT_FALSE(IsHarmless(u"a.csv", "\x81\x81\x82\x83\x62x\x81\x62y,\x93\xFA\x96\x7B\r\n"));
  EXPECT_FALSE(IsHarmless(u"a.csv",
                          "\xA1\xE1"
                          "cmd\xA1\xC3x\n\xC6\xFC\r\n"));                    // EUC
  EXPECT_FALSE(IsHarmless(u"a.csv", "\x1B$B!a\x1B(Bcmd\x1B$B!C\x1B(Bx\n"));  // JIS
  const QByteArray nul(200, 'x');
  EXPECT_FALSE(IsHarmless(u"a.csv", nul + QByteArray("\n=cmd|' /C calc'!A0\0", 21)));
  // What offices send: leading zeros kept, accounts, amounts, telephone numbers.
  for (const char* table :
       {"a,1^=b\r\n", "=\"0123\",=\"03-1\"\r\n", "1,@taro,(x)\n", "-5kg,+1h,=\n(y)",
        "=SUM(D2:D9),=ROUND(A1*1.1,0)\n", "- Zoom会議(10時から)\n+A社(東京)\n@taro（東京）\n",
        "-,- x,+1 (555) 010\n", "=10,-1200,(-5)\n"}) {
    EXPECT_TRUE(IsHarmless(u"a.csv", table)) << table;
  }
}

TEST(CarriedCommandsTest, AnAppointmentMayStartPrograms) {
  const auto event = [](const QByteArray& lines) {
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nBEGIN:VEVENT\r\n" + lines +
           "\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n";
  };
  for (const char* lines :
       {"BEGIN:VALARM\r\nACTION:PROCEDURE", "action;x=\"a:b\": procedure",
        "ACT\r\n ION:PROC\r\n\tEDURE", "ATTACH:file:///C:/windows/system32/calc.exe",
        "Attach;FMTTYPE=a/b:FI\n LE:///bin/sh", "ATTACH:\\\\server\\share\\x.exe",
        "PALARM:20260101T000000Z;;;calc.exe", "IMAGE;VALUE=URI:http://h/a.png",
        "X-ALT-DESC;FMTTYPE=text/html:<img src=\"http://h/\\n a.png\">",
        "begin:valarm\r\nACTION:AUDIO\r\nATTACH:http://x/a.wav\r\nEND:VALARM",
        "BEGIN:VALARM\r\nAction:email\r\nATTENDEE:mailto:a@h\r\nEND:VALARM",
        "STYLED-DESCRIPTION;VALUE=URI:http://h/a.html",
        "STYLED-DESCRIPTION;VALUE=\"URI\":file:\\\\h\\a", "MALARM:20260101T000000Z;;;a@h;x",
        "AALARM:20260101T000000Z;;;http://h/a.wav", "ATTACH:\\/h/a", "ATTACH:smb://h/a",
        "BEGIN: VALARM\r\nATTACH:\\/h/a.wav", "BEGIN;X=1:VALARM\r\nATTACH:http:/\\h/a.wav"}) {
    EXPECT_FALSE(IsHarmless(u"a.ics", event(lines))) << lines;
  }
  for (const char* html :
       {"<img src=//h/a>", "<img src='\\\\h\\a'>", "<img src='&#47;/h/a'>",
        "<table background=http://h/a>", "<p style='background:url(http://h/a)'>",
        "<style>@import 'http://h/a'</style>", "<link rel=stylesheet href=http://h/a>",
        "<meta http-equiv=refresh content='0\\;url=http://h'>", "<iframe src=http://h/>"}) {
    EXPECT_FALSE(IsHarmless(u"a.ics", event(QByteArray("X-ALT-DESC;FMTTYPE=text/html:") + html)))
        << html;
  }
  EXPECT_TRUE(IsHarmless(
      u"a.ics", event("X-ALT-DESC;FMTTYPE=text/html:<meta name=Generator content=\"src\">\\n<a "
                      "href=\"http://h/src\">src</a><img src=\"cid:a\"><link href=\"cid:b\">")));
  EXPECT_TRUE(IsHarmless(
      u"a.ics", event("SUMMARY:ACTION:PROCEDURE\r\nATTACH:https://x.example/file:a\r\n"
                      "DESCRIPTION:a\r\n ATTACH:file:b\r\nBEGIN:VALARM\r\nACTION:DISPLAY\r\n"
                      "END:VALARM")));
}

TEST(CarriedCommandsTest, ACardMayFetchItsPicture) {
  const auto card = [](const QByteArray& line) {
    return "BEGIN:VCARD\r\nVERSION:3.0\r\nFN:a\r\n" + line + "\r\nEND:VCARD\r\n";
  };
  for (const char* line : {"PHOTO;VALUE=uri:http://h/a.png", "item1.logo:ht\r\n tp://h/a.png",
                           "SOUND:file:///a.wav", "Photo;TYPE=PNG:\\\\h\\a.png"}) {
    EXPECT_FALSE(IsHarmless(u"a.vcf", card(line))) << line;
  }
  EXPECT_TRUE(IsHarmless(u"a.vcf", card("URL:http://h/\r\nPHOTO;ENCODING=b;TYPE=JPEG:/9j/4AAQ\r\n "
                                        "//Zz\r\nNOTE:PHOTO:http://h/a.png")));
}

// Documents that programs of offices opened for decades, and what they lock with a password.
TEST(CarriedCommandsTest, WhatNobodyCanSeeIntoIsNotCalledAProgram) {
  using Danger = FileKind::Danger;
  const auto compound = [](const char* stream) {
    QByteArray name;
    for (const char* c = stream; *c != '\0'; ++c) name.append(*c).append('\0');
    return QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + QByteArray(504, '\0') + name +
           QByteArray(512, '\0');
  };
  const auto danger = [](const char16_t* name, const QByteArray& bytes) {
    return KindOfFile(QString::fromUtf16(name), bytes).danger;
  };
  for (const char16_t* name : {u"a.doc", u"a.xls", u"a.ppt"}) {
    EXPECT_EQ(danger(name, compound("WordDocument")), Danger::Unknown);
    EXPECT_EQ(danger(name, compound("_VBA_PROJECT")), Danger::MayAct);
    EXPECT_EQ(danger(name, compound("\1Ole10Native")), Danger::MayAct);
    EXPECT_EQ(danger(name, "MZ\x90"), Danger::MayAct);
  }
  EXPECT_EQ(danger(u"a.xlsx", compound("EncryptedPackage")), Danger::Unknown);
  EXPECT_EQ(danger(u"a.xlsx", compound("_VBA_PROJECT_CUR")), Danger::MayAct);
  EXPECT_EQ(danger(u"a.pdf", compound("WordDocument")), Danger::MayAct);
  EXPECT_EQ(danger(u"a.rtf", "{\\rtf1\\ansi a}"), Danger::Unknown);
  EXPECT_EQ(danger(u"a.rtf", "{\\rtf1{\\object\\objdata 00}}"), Danger::MayAct);
}

QByteArray PackedObjects(const QByteArray& head, const QByteArray& content) {
  return "9 0 obj\n<</Type/ObjStm/N 1" + head + ">>\nstream\r\n" + content +
         "\nendstream\nendobj\n";
}

QByteArray Flate(const QByteArray& bytes) {
  return qCompress(bytes).sliced(4);
}

const QByteArray kPage =
    "%PDF-1.7\n%\xE2\xE3\n3 0 obj<</Type/Page/Annots[4 0 R]>>endobj\n"
    "4 0 obj<</Subtype/Link/A<</S/URI/URI(http://x.example)>>>>endobj\n";

TEST(CarriedCommandsTest, APdfMayAct) {
  const QByteArrayList scripts = {
      "<</S/J#61vaScript/JS(x)>>",
      "<</#4a#53 (x)>>",
      "<</JS%c\n 7 0 R>>",
      "<</JS<6161>>>",
      "<</AA<</O<</S/Launch/F(x)>>>>>>",
      "<</AcroForm<</XFA[(a) 1 0 R]>>>>",
      PackedObjects("/First 4/Filter/FlateDecode", Flate("5 0 <</S/JavaScript/JS(x)>>"))};
  const QByteArrayList contacts = {
      "<</OpenAction<</S/URI/URI(http://x.example)>>>>",
      "1 0 obj<</Open#41ction 5 0 R>>endobj 5 0 obj<</S/GoTo/D[3 0 R/Fit]/Next 6 0 R>>endobj "
      "6 0 obj[<</S/GoToR/F(\\\\\\\\x\\\\y)>>]endobj",
      "1 0 obj<</OpenAction 5  0\nR>>endobj 5\n0 obj<</S/GoTo>>endobj 5 0 obj<</S/Submit#46orm>>",
      "1 0 obj<</AA<</O 5 0 R>>>>endobj 5 0 obj<</S/ImportData/F(x)>>endobj",
      "1 0 obj<</OpenAction 5 0 R>>endobj 5 0 obj<</S 6 0 R>>endobj 6 0 obj/URI endobj",
      PackedObjects("/First 4/Filter[/Fl#61teDecode]", Flate("5 0 <</S/URI>>")) +
          "<</OpenAction 5 0 R>>",
      PackedObjects("/First 4", "5 0 <</S/URI>>") + "<</OpenAction 5 0 R>>"};
  const QByteArrayList unreadable = {
      "1 0 obj<</OpenAction 5 0 R>>endobj 5 0 %\nobj<</S/URI>>endobj",
      "1 0 obj<</OpenAction 5 0 R>>endobj 5 %1 2\n0 obj<</S/URI>>endobj",
      "<</OpenAction" + QByteArray(5000, ' ') + "9 0 R>>",
      PackedObjects("/First 4/Filter/LZWDecode", "x"),
      PackedObjects("/First 4/DecodeParms 8 0 R/Filter/FlateDecode", Flate("5 0 <<>>")),
      "9 0 obj<<" + QByteArray(5000, ' ') + "/First 4/Filter/LZWDecode>>stream\nx endstream",
      PackedObjects("/First 4/Filter/FlateDecode", "encrypted"),
      PackedObjects("/First 4/Filter[/FlateDecode/FlateDecode]", Flate(Flate("5 0 <<>>"))),
      PackedObjects("/First 4/Filter/FlateDecode", Flate("5 0 " + QByteArray(33 << 20, ' '))),
      "9 0 obj<<" + QByteArray(5000, ' ') + "/Type/ObjStm/Filter/LZWDecode>>stream\nx endstream"};
  for (const auto& [list, acts] : {std::pair(scripts, PdfActs::Script),
                                   {contacts, PdfActs::Contact},
                                   {unreadable, PdfActs::Unreadable}}) {
    EXPECT_FALSE(IsHarmless(u"a.pdf", kPage + list.first()));
    for (const QByteArray& objects : list) {
      EXPECT_EQ(ActsOfPdf(kPage + objects), acts) << objects.left(200).toStdString();
    }
  }
  const QByteArrayList ordinary = {
      "",
      "1 0 obj<</OpenAction[3 0 R/FitH null]/JSx 1/AAPL:Keywords[]>>endobj",
      "1 0 obj<</OpenAction 5 0 R>>endobj 5 0 obj<</S/GoTo/D[3 0 R/XYZ 0 0 0]>>endobj",
      "1 0 obj<</OpenAction 5 0 R>>endobj 5 0 obj[3 0 R/Fit]endobj",
      "1 0 obj<</OpenAction<</S/Named/N/Print>>/URI<</Base(x)>>>>endobj",
      PackedObjects("/First 4/Filter/FlateDecode", Flate("4 0 <</A<</S/URI/URI(x)>>>>")),
      PackedObjects("/First 4", "5 0 <</Title(object 1 0 obj)>>"),
      "stream\n\x01/JS\x02/AA\x03/JS/ endstream"};
  for (const QByteArray& objects : ordinary) {
    EXPECT_TRUE(IsHarmless(u"a.pdf", kPage + objects)) << objects.toStdString();
  }
}

// An element in the namespaces that documents use.
QByteArray Xml(const QByteArray& inner) {
  return "<?xml version=\"1.0\"?><r xmlns:w='urn:w' xmlns:x='http://www.w3.org/1999/xlink' "
         "xmlns:o='urn:oasis:names:tc:opendocument:xmlns:office:1.0' "
         "xmlns:s='urn:oasis:names:tc:opendocument:xmlns:script:1.0' "
         "xmlns:v='urn:schemas-microsoft-com:vml' "
         "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships'>" +
         inner + "</r>";
}

QByteArray Field(const QByteArray& code) {
  return "<w:fldChar w:fldCharType='begin'/>" + code + "<w:fldChar w:fldCharType='end'/>";
}

QByteArray Relation(const QByteArray& type, bool isExternal,
                    const QByteArray& target = "http://x.example/") {
  return "<Relationship Type='http://x/relationships/" + type + "' Target='" + target + "'" +
         (isExternal ? " TargetMode='External'/>" : "/>");
}

TEST(CarriedCommandsTest, ADocumentMayAct) {
  const QByteArray code = "<w:instrText> ";
  const QByteArray end = "</w:instrText>";
  QByteArrayList commands = {Field(code + "DDEAUTO c:\\\\x" + end),
                             Field(code + "dd" + end + "<w:t/><w:instrText>e x" + end),
                             "<w:fldSimple w:instr=' INCLUDEPICTURE &quot;http://x&quot;'/>",
                             Field(Field(code + "QUOTE 68 68 69" + end) + code + " x" + end),
                             Field(code + "DD" + Field(code + "QUOTE 69" + end) + end)
                                 .replace("DD<", "DD</w:instrText><")
                                 .replace("/></w:instrText>", "/>"),
                             "<ddeLink/>",
                             "<Override ContentType='application/vnd.ms-office.vbaProject'/>",
                             "<f>cmd|'/c calc'!A0</f>",
                             "<f>cmd|x!A0</f>",
                             "<f>\"a\"&amp;cmd| '/c'!A0</f>",
                             "<f>_xlfn.WEBSERVICE (\"http://x\")</f>",
                             "<formula>WEBSERVICE(\"http://x\")</formula>",
                             "<formula1>WEBSERVICE(\"http://x\")</formula1>",
                             "<c formula=\"of:=['http://x/a.ods'#$T.A1]\"/>",
                             "<f>'\\\\h\\s\\[b.xls]T'!A1</f>",
                             "<queryTable refreshOnLoad='true'/>",
                             "<connection interval='5'/>",
                             "<a action='ppaction://program'/>",
                             "<connection refreshOnLoad='1'/>",
                             "<o:dde-connection-decl/>",
                             "<o:event-listeners><s:event-listener/></o:event-listeners>",
                             "<o:script/>"};
  for (const char* formula :
       {"BYROW(A1,_xleta.WEBSERVICE)", "LET(w,WEBSERVICE,w(A1))", "_xleta.RTD"}) {
    commands.append(QByteArray("<f>") + formula + "</f>");
  }
  for (const char* place :
       {"<calculatedColumnFormula>%</calculatedColumnFormula>", "<cfvo type='formula' val='%'/>",
        "<w:c w:condition='%'/>", "<w:c w:expression='%'/>"}) {
    commands.append(QByteArray(place).replace("%", "WEBSERVICE(A1)"));
  }
  QByteArrayList contacts = {"<webImageSrd/>",
                             "<pivotCacheDefinition refreshOnLoad=' 1 '/><cacheSource "
                             "type='external'/>",
                             "<o:i x:href='/\\h/y.png'/>",
                             "<o:i x:href='\\/h/y.png'/>",
                             "<i xmlns='http://www.w3.org/2002/xforms' src='http://x/'/>",
                             "<v:imagedata w:href='http://x/y.png'/>",
                             "<v:fill w:href='\\\\h\\x'/>",
                             "<v:imagedata src='http://x/y.png'/>",
                             "<v:imagedata src='ht&#9;tp://x/'/>",
                             "<o:i x:href='http://x/y.png'/>",
                             "<o:i x:href='//x/y.png'/>",
                             "<o:i x:href='../y.odt'/>",
                             "<database-source-sql/>"};
  for (const char* type :
       {"attachedTemplate", "frame", "subDocument", "image", "externalLinkPath"}) {
    contacts.append(Relation(type, true));
  }
  for (const char* target : {R"(\\x.example\a.dotm)", "//x/a", "file://x/a", "file://///x/a",
                             " ftp://x/a", "mhtml:x", R"(\/x/a)", R"(/\x/a)"}) {
    contacts.append(Relation("attachedTemplate", true, target));
  }
  for (const char* type : {"vbaProject", "control", "oleObject", "aFChunk"}) {
    commands.append(Relation(type, false));
  }
  for (const auto& [list, holds] :
       {std::pair(commands, OfficeHolds::Commands), {contacts, OfficeHolds::Contact}}) {
    for (const QByteArray& inner : list) {
      const QByteArray file = Zip({{"a.png", "\x89PNG"}, {"x.xml", Xml(inner)}});
      EXPECT_FALSE(IsHarmless(u"a.docx", file) || IsHarmless(u"a.odt", file));
      EXPECT_EQ(PartsOfOffice(file, LookBound(nullptr)), holds) << inner.toStdString();
    }
  }
  const QByteArray ordinary =
      Xml(Relation("image", false) + Relation("hyperlink", true) + Relation("package", false) +
          Relation("attachedTemplate", true, R"(file:///C:\Users\a\Company.dotx)") +
          Relation("externalLinkPath", true, "Book2.xlsx") +
          Relation("externalLinkPath", true, R"(D:\2026\Book3.xlsx)") + Field(code + "PAGE" + end) +
          Field(code + "IF " + Field(code + "MERGEFIELD x" + end))
              .replace("IF <", "IF </w:instrText><") +
          "<f>SUM(A1:A2)&amp;\"|\"</f><f>\"|'\"&amp;CALLS(1)+_IMAGE(2)+'a|b'!A1</f>"
          "<f>'C:\\t\\[b.xlsx]T'!A1+'file:///home/a/b.ods'#$T.A1</f><connection interval='0'/>"
          "<queryTable refreshOnLoad='0'/><cacheSource type='worksheet'/>"
          "<pivotCacheDefinition/><cacheSource type='external'/>"
          "<o:a x:href='http://x'/><o:i x:href='Pictures/a.png'/>"
          "<blip w:embed='r1'/><formula>A1&gt;0</formula>"
          "<o:i x:href='..'/><o:i x:href='data:image/png;base64,'/><o:scripts/>"
          "<Default ContentType='application/xml'/><w:fldSimple w:instr='LINKED'/>");
  // What calls itself a hyperlink is none where an element takes it for its own contents.
  const auto linked = [](const QByteArray& element, const QByteArray& target) {
    return Zip({{"ppt/slides/_rels/slide1.xml.rels",
                 Xml(Relation("hyperlink", true, target).replace("Type", "Id='r7' Type"))},
                {"ppt/slides/slide1.xml", Xml(element)},
                {"ppt/slides/slide2.xml", Xml("<v:fill r:id='r7'/>")}});
  };
  const QByteArray far = "http://x.example/";
  for (const char* element : {"<hlinkMouseOver r:id='r7'/>", "<hlinkHover r:id='r7'/>",
                              "<videoFile r:link='r7'/>", "<blip r:embed='r1' r:link='r7'/>",
                              "<v:imagedata o:relid='r7'/>", "<attachedTemplate r:id='r7'/>"}) {
    EXPECT_EQ(PartsOfOffice(linked(element, far), LookBound(nullptr)), OfficeHolds::Contact)
        << element;
    for (const char* near : {"C:\\a.png", "file:///home/a.png", "cid:a@b"}) {
      EXPECT_TRUE(IsHarmless(u"a.pptx", linked(element, near))) << element << near;
    }
  }
  for (const char* element : {"<hlinkClick r:id='r7'/>", "<w:hyperlink r:id='r7'/>"}) {
    EXPECT_TRUE(IsHarmless(u"a.pptx", linked(element, far))) << element;
  }
  const QByteArray movie(
      "\0\0\0\x18"
      "ftypmp42",
      12);
  for (const char16_t* name : {u"a.docx", u"a.xlsx", u"a.pptx", u"a.odt", u"a.ods"}) {
    EXPECT_TRUE(IsHarmless(name, Zip({{"x.xml", ordinary},
                                      {"m.mp4", movie},
                                      {"e.xml", ""},
                                      {"f/", "", 0040755},
                                      {"ppt/embeddings/Sheet1.xlsx", "PK"},
                                      {"xl/externalLinks/externalLink1.xml", "<a/>"},
                                      {"Object 1/content.xml", "<a/>"},
                                      {"xl/drawings/vmlDrawing1.vml", "<a><br></a>"}})));
  }
}

TEST(CarriedCommandsTest, WhatCannotBeLookedIntoIsAskedAbout) {
  const QByteArray whole = Zip({{"x.xml", Xml("")}});
  EXPECT_TRUE(IsHarmless(u"a.docx", whole));
  EXPECT_FALSE(IsHarmless(u"a.docx", whole.first(40)));
  QByteArray damaged = whole;
  damaged[40] = char(damaged[40] ^ 0x55);
  const QByteArray utf16("\xFF\xFE<\0a\0/\0>\0", 10);
  EXPECT_TRUE(IsHarmless(u"a.docx", Zip({{"x.xml", utf16}})));
  QList<Part> many;
  for (int i = 0; i < 2001; ++i) many.append({QByteArray::number(i), "x"});
  for (const QByteArray& file :
       {damaged, QByteArray("PK\3\4\24\0\0\0", 8), Zip({{"x.xml", "encrypted"}}),
        Zip({{"x.xml", "<open>"}}), Zip({{"a", "x"}, {"x.xml", Xml(""), 0040755}}),
        Zip({{"a", "x"}, {"x.xml", Xml(""), 0120777}}),
        Zip({{"x.xml", "<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;</a>"}}), Zip(many),
        Zip({{"x.dat", QByteArray(99, ' ') + Xml("<ddeLink/>")}})}) {
    EXPECT_EQ(PartsOfOffice(file, LookBound(nullptr)), OfficeHolds::Unreadable) << file.size();
  }
  // However large it is.
  const QByteArray far = Zip({{"x.xml", "<a>" + QByteArray(33 << 20, ' ') + "<ddeLink/></a>"}});
  EXPECT_EQ(PartsOfOffice(far, LookBound(nullptr)), OfficeHolds::Commands);
  const std::atomic<bool> stop = true;
  EXPECT_EQ(PartsOfOffice(whole, LookBound(&stop)), OfficeHolds::Unreadable);
  // Two archives in one file, of which another program may read the other.
  EXPECT_FALSE(IsHarmless(u"a.docx", Zip({{"x.xml", Xml("<ddeLink/>")}}) + whole));
  QByteArray inComment = Zip({{"x.xml", Xml("<ddeLink/>")}});
  qToLittleEndian(quint16(whole.size()), inComment.data() + inComment.size() - 2);
  EXPECT_FALSE(IsHarmless(u"a.docx", inComment + whole));
  // A drawing that cannot be read is only let pass when nothing in it could matter.
  for (const QByteArray& drawing :
       {QByteArray("<?xml version='1.0' encoding='windows-1252'?><a><br></a>"),
        QByteArray("<a><v:imagedata src='\\\\h\\x'><br></a>"), QByteArray("<a><br>ftp://h/</a>"),
        QByteArray("<a><br><w:instrText>x</a>"), QByteArray("<a\0><br>", 8)}) {
    EXPECT_FALSE(IsHarmless(u"a.xlsx", Zip({{"xl/a.vml", drawing}}))) << drawing.toStdString();
  }
  for (const char* name :
       {"Basic/Standard/Module1.xml", "XL/VBAPROJECT.BIN", "word/embeddings/oleObject1.bin"}) {
    EXPECT_FALSE(IsHarmless(u"a.xlsx", Zip({{"x.xml", Xml("")}, {name, "<a/>"}}))) << name;
  }
}

}  // namespace
}  // namespace vorn
