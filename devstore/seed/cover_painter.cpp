#include "cover_painter.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QPainter>

namespace devstore {

namespace {

void drawText(QPainter *painter, const QRect &box, const QString &text, int pixelSize, bool bold) {
  QFont font(QStringLiteral("DejaVu Serif"));
  font.setPixelSize(pixelSize);
  font.setBold(bold);
  painter->setFont(font);
  painter->drawText(box, Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace

std::string CoverPainter::paint(const std::string &title, const std::string &author, int width, int height, int hue) {
  QImage image(width, height, QImage::Format_RGB32);
  image.fill(QColor::fromHsv(hue % 360, 90, 215));
  {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    const int margin = width / 12;
    painter.setPen(QPen(QColor(40, 40, 40), std::max(2, width / 100)));
    painter.drawRect(margin / 2, margin / 2, width - margin, height - margin);
    drawText(&painter, QRect(margin, height / 8, width - 2 * margin, height / 2), QString::fromStdString(title),
             width / 11, true);
    drawText(&painter, QRect(margin, height * 5 / 8, width - 2 * margin, height / 4), QString::fromStdString(author),
             width / 18, false);
  }
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "JPG", 85)) return {};
  return bytes.toStdString();
}

}  // namespace devstore
