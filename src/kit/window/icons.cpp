// The pictures are drawn, so that they are sharp at every scale and need no files.

#include "kit/window/icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <algorithm>
#include <iterator>

namespace vorn {
namespace {

constexpr int kSizes[] = {16, 24, 32, 48, 64};

const QColor kBlue(0x2F, 0x6F, 0xB5);
const QColor kGreen(0x3A, 0x8F, 0x4E);
const QColor kAmber(0xE0, 0xA0, 0x30);
const QColor kRed(0xC0, 0x39, 0x2B);
const QColor kGray(0x7A, 0x80, 0x88);
const QColor kPaper(0xFB, 0xFB, 0xF6);

// All shapes are drawn on a square of 16 by 16.
void DrawFolder(QPainter& painter, const QColor& color) {
  painter.setPen(QPen(color.darker(130), 1));
  painter.setBrush(color);
  QPainterPath path;
  path.moveTo(1.5, 4);
  path.lineTo(6, 4);
  path.lineTo(7.5, 5.5);
  path.lineTo(14.5, 5.5);
  path.lineTo(14.5, 13.5);
  path.lineTo(1.5, 13.5);
  path.closeSubpath();
  painter.drawPath(path);
}

void DrawArrow(QPainter& painter, const QColor& color, bool down) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  QPolygonF arrow{{8, 15}, {4, 10}, {6.7, 10}, {6.7, 6}, {9.3, 6}, {9.3, 10}, {12, 10}};
  if (!down) {
    for (QPointF& point : arrow) point.setY(21 - point.y());
  }
  painter.drawPolygon(arrow);
}

void DrawEnvelope(QPainter& painter) {
  painter.setPen(QPen(kGray.darker(120), 1));
  painter.setBrush(kPaper);
  painter.drawRect(QRectF(1.5, 3.5, 13, 9));
  painter.drawPolyline(QPolygonF{{1.5, 3.5}, {8, 9}, {14.5, 3.5}});
}

// Two chevrons; gray is seen on light and on dark.
void DrawMore(QPainter& painter) {
  painter.setPen(QPen(kGray, 2));
  for (const double x : {3.0, 8.0}) {
    painter.drawPolyline(QPolygonF{{x, 3}, {x + 4.5, 8}, {x, 13}});
  }
}

void DrawSheet(QPainter& painter, const QColor& color) {
  painter.setPen(QPen(color.darker(120), 1));
  painter.setBrush(kPaper);
  painter.drawRect(QRectF(3.5, 1.5, 9, 13));
  painter.setPen(QPen(color, 1));
  for (const double y : {5.0, 8.0, 11.0}) painter.drawLine(QPointF(5.5, y), QPointF(10.5, y));
}

void DrawPerson(QPainter& painter, const QColor& color) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawEllipse(QRectF(5, 1.5, 6, 6));
  QPainterPath shoulders;
  shoulders.moveTo(2, 14.5);
  shoulders.cubicTo(2, 6.5, 14, 6.5, 14, 14.5);
  shoulders.closeSubpath();
  painter.drawPath(shoulders);
}

void DrawDust(QPainter& painter) {
  painter.setPen(QPen(kGray.darker(120), 1));
  painter.setBrush(kGray.lighter(150));
  painter.drawPolygon(QPolygonF{{3, 5}, {13, 5}, {12, 14.5}, {4, 14.5}});
  painter.drawLine(QPointF(2, 3.5), QPointF(14, 3.5));
  painter.drawLine(QPointF(6.5, 2), QPointF(9.5, 2));
}

void DrawStar(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(kAmber);
  painter.drawPolygon(QPolygonF{{8, 1},
                                {10, 6},
                                {15, 6.3},
                                {11, 9.5},
                                {12.5, 14.8},
                                {8, 11.8},
                                {3.5, 14.8},
                                {5, 9.5},
                                {1, 6.3},
                                {6, 6}});
}

// An arrow over an envelope, to the left for an answer; twice for an answer to all.
void DrawAnswer(QPainter& painter, const QColor& color, bool left, bool twice) {
  DrawEnvelope(painter);
  painter.setPen(QPen(Qt::white, 0.5));
  painter.setBrush(color);
  for (const double shift : {0.0, 4.0}) {
    if (shift > 0 && !twice) break;
    QPolygonF arrow{{0.5, 11}, {5, 7}, {5, 9.5}, {9.5, 9.5}, {9.5, 12.5}, {5, 12.5}, {5, 15}};
    for (QPointF& point : arrow) {
      point.setX(left ? point.x() + shift : 16 - point.x() - shift);
    }
    painter.drawPolygon(arrow);
  }
}

// An envelope that bears the mark of what is unopened, with the way to it.
void DrawNextUnopened(QPainter& painter) {
  DrawEnvelope(painter);
  painter.setPen(Qt::NoPen);
  painter.setBrush(kBlue);
  painter.drawEllipse(QRectF(0, 1, 5, 5));
  painter.drawPolygon(
      QPolygonF{{15.8, 11}, {11, 7}, {11, 9.5}, {6.5, 9.5}, {6.5, 12.5}, {11, 12.5}, {11, 15}});
}

void DrawPrinter(QPainter& painter) {
  painter.setPen(QPen(kGray.darker(120), 1));
  painter.setBrush(kPaper);
  painter.drawRect(QRectF(4.5, 1.5, 7, 5));
  painter.setBrush(kGray.lighter(150));
  painter.drawRoundedRect(QRectF(1.5, 5.5, 13, 6), 1, 1);
  painter.setBrush(kPaper);
  painter.drawRect(QRectF(4.5, 9.5, 7, 5));
}

void DrawBadge(QPainter& painter, const QColor& color) {
  painter.setPen(QPen(Qt::white, 1));
  painter.setBrush(color);
  painter.drawEllipse(QRectF(8, 8, 7.5, 7.5));
}

// A page in small, with the area of a list.
void DrawPage(QPainter& painter) {
  painter.setPen(QPen(kGray, 1));
  painter.setBrush(kPaper);
  painter.drawRect(QRectF(1.5, 1.5, 13, 13));
}

void DrawRows(QPainter& painter, const QRectF& area) {
  painter.setPen(QPen(kGray, 1));
  for (double y = area.top(); y <= area.bottom(); y += 2.5) {
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));
  }
}

void DrawBlock(QPainter& painter, const QRectF& area) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(kBlue);
  painter.drawRect(area);
}

void DrawStandardLayout(QPainter& painter) {
  DrawPage(painter);
  DrawRows(painter, {3.5, 7, 8, 6});
  painter.drawLine(QPointF(3.5, 3.5), QPointF(7, 3.5));
}

void DrawTableLayout(QPainter& painter) {
  DrawPage(painter);
  DrawBlock(painter, {2, 2, 12, 3});
  DrawRows(painter, {2, 7.5, 12, 5});
  painter.drawLine(QPointF(6, 5), QPointF(6, 14));
  painter.drawLine(QPointF(11, 5), QPointF(11, 14));
}

void DrawCardsLayout(QPainter& painter) {
  DrawPage(painter);
  for (const QPointF corner :
       {QPointF(3, 3), QPointF(8.5, 3), QPointF(3, 8.5), QPointF(8.5, 8.5)}) {
    painter.setPen(QPen(kGray, 0.7));
    painter.setBrush(Qt::white);
    painter.drawRect(QRectF(corner, QSizeF(4.5, 4.5)));
    DrawBlock(painter, {corner.x(), corner.y(), 1, 4.5});
  }
}

struct Picture {
  QLatin1String key;
  void (*draw)(QPainter& painter);
};

const Picture kPictures[] = {
    {QLatin1String("folder"), [](QPainter& p) { DrawFolder(p, kAmber); }},
    {QLatin1String("static"), [](QPainter& p) { DrawFolder(p, kAmber); }},
    {QLatin1String("active"), [](QPainter& p) { DrawFolder(p, kBlue.lighter(140)); }},
    {QLatin1String("activedown"),
     [](QPainter& p) {
       DrawFolder(p, kAmber);
       DrawArrow(p, kBlue, true);
     }},
    {QLatin1String("activeup"),
     [](QPainter& p) {
       DrawFolder(p, kAmber);
       DrawArrow(p, kGreen, false);
     }},
    {QLatin1String("activewait"),
     [](QPainter& p) {
       DrawFolder(p, kAmber);
       DrawSheet(p, kGray);
     }},
    {QLatin1String("dust"), [](QPainter& p) { DrawDust(p); }},
    {QLatin1String("account"), [](QPainter& p) { DrawPerson(p, kBlue); }},
    {QLatin1String("profile"), [](QPainter& p) { DrawPerson(p, kGreen); }},
    {QLatin1String("book"),
     [](QPainter& p) {
       DrawSheet(p, kGreen);
       DrawPerson(p, kGreen);
     }},
    {QLatin1String("bookmark"), [](QPainter& p) { DrawStar(p); }},
    {QLatin1String("maildown"),
     [](QPainter& p) {
       DrawEnvelope(p);
       DrawArrow(p, kBlue, true);
     }},
    {QLatin1String("mailup"),
     [](QPainter& p) {
       DrawEnvelope(p);
       DrawArrow(p, kGreen, false);
     }},
    {QLatin1String("replay"), [](QPainter& p) { DrawAnswer(p, kGreen, true, false); }},
    {QLatin1String("replayall"), [](QPainter& p) { DrawAnswer(p, kGreen, true, true); }},
    {QLatin1String("forward"), [](QPainter& p) { DrawAnswer(p, kBlue, false, false); }},
    {QLatin1String("file"),
     [](QPainter& p) {
       DrawFolder(p, kAmber);
       DrawArrow(p, kBlue, true);
     }},
    {QLatin1String("mail"), [](QPainter& p) { DrawEnvelope(p); }},
    {QLatin1String("nextunopened"), [](QPainter& p) { DrawNextUnopened(p); }},
    {QLatin1String("print"), [](QPainter& p) { DrawPrinter(p); }},
    {QLatin1String("event"), [](QPainter& p) { DrawSheet(p, kGray); }},
    {QLatin1String("layoutstandard"), [](QPainter& p) { DrawStandardLayout(p); }},
    {QLatin1String("more"), [](QPainter& p) { DrawMore(p); }},
    {QLatin1String("layouttable"), [](QPainter& p) { DrawTableLayout(p); }},
    {QLatin1String("layoutcards"), [](QPainter& p) { DrawCardsLayout(p); }},
    {QLatin1String("panenone"),
     [](QPainter& p) {
       DrawPage(p);
       DrawRows(p, {3.5, 4, 9, 8.5});
     }},
    {QLatin1String("paneunder"),
     [](QPainter& p) {
       DrawPage(p);
       DrawRows(p, {3.5, 4, 9, 3});
       DrawBlock(p, {2, 9, 12, 5});
     }},
    {QLatin1String("paneright"),
     [](QPainter& p) {
       DrawPage(p);
       DrawRows(p, {3, 4, 4, 8.5});
       DrawBlock(p, {8.5, 2, 5.5, 12});
     }},
};

void DrawCategory(QPainter& painter, const QString& key) {
  const auto* picture = std::ranges::find(kPictures, key, &Picture::key);
  if (picture != std::end(kPictures)) return picture->draw(painter);
  if (!key.isEmpty()) qWarning("There is no picture \"%s\".", qPrintable(key));
  DrawSheet(painter, kGray);
}

void Draw(QPainter& painter, const QString& key) {
  if (key.endsWith(u"error")) {
    DrawCategory(painter, key.chopped(5));
    DrawBadge(painter, kRed);
  } else if (key.endsWith(u"infomation")) {
    DrawCategory(painter, key.chopped(10));
    DrawBadge(painter, kGreen);
  } else {
    DrawCategory(painter, key);
  }
}

}  // namespace

QIcon Icon(const QString& key) {
  QIcon icon;
  for (const int size : kSizes) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 16.0, size / 16.0);
    Draw(painter, key);
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace vorn
