#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QWidget>
#include <cmath>

/// What a widget paints on a screen of so many device pixels to a pixel.
inline QImage pictureOf(QWidget& widget, double pixelRatio = 1) {
  const auto pixels = [pixelRatio](int length) {
    return static_cast<int>(std::ceil(length * pixelRatio));
  };
  QImage picture(pixels(widget.width()), pixels(widget.height()), QImage::Format_RGB32);
  picture.setDevicePixelRatio(pixelRatio);
  picture.fill(Qt::magenta);
  widget.render(&picture);
  return picture;
}

/// Whether nothing was painted, so that comparing the picture would mean nothing.
inline bool isOfOneColour(const QImage& picture) {
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x)
      if (picture.pixel(x, y) != picture.pixel(0, 0))
        return false;
  return true;
}

/// Saves a pair of pictures if the environment names a folder for them.
inline QString keptPictures(const QImage& expected, const QImage& found) {
  const QString folder = qEnvironmentVariable("KELMORA_PICTURES");
  if (folder.isEmpty() || !QDir().mkpath(folder))
    return {};
  static int number = 0;
  const QString name =
      QStringLiteral("%1/%2-%3-").arg(folder).arg(QCoreApplication::applicationPid()).arg(++number);
  expected.save(name + QStringLiteral("expected.png"));
  found.save(name + QStringLiteral("found.png"));
  return QStringLiteral(", kept as ") + name + QStringLiteral("*.png");
}

/// How many pixels differ and where; empty where none does.
inline QString pictureDifference(const QImage& expected, const QImage& found) {
  if (expected == found)
    return {};
  if (expected.size() != found.size())
    return QStringLiteral("a picture of %1x%2 pixels, expected %3x%4")
        .arg(found.width())
        .arg(found.height())
        .arg(expected.width())
        .arg(expected.height());
  QRect where;
  int count = 0;
  QString first;
  for (int y = 0; y < found.height(); ++y) {
    for (int x = 0; x < found.width(); ++x) {
      if (found.pixel(x, y) == expected.pixel(x, y))
        continue;
      if (count++ == 0)
        first = QStringLiteral("the first %1, expected %2")
                    .arg(found.pixelColor(x, y).name(), expected.pixelColor(x, y).name());
      where |= QRect(x, y, 1, 1);
    }
  }
  return QStringLiteral("%1 pixels differ within %2x%3 at (%4, %5), ")
             .arg(count)
             .arg(where.width())
             .arg(where.height())
             .arg(where.x())
             .arg(where.y()) +
         first + keptPictures(expected, found);
}
