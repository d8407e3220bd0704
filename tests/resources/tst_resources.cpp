#include <QColor>
#include <QDir>
#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QRawFont>
#include <QtEndian>
#include <algorithm>

#include "support/ScratchMain.h"

namespace {

constexpr const char* kIcons[] = {"connect",      "disconnect", "savebuffer", "savesettings",
                                  "loadsettings", "configure",  "proxy",      "macros",
                                  "aliases",      "triggers",   "help",       "style"};

QString iconPath(const char* name, const char* suffix = "") {
  return QStringLiteral(":/icons/%1%2.png").arg(QLatin1String(name), QLatin1String(suffix));
}

QByteArray contents(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

double luminance(const QColor& colour) {
  return 0.2126 * colour.redF() + 0.7152 * colour.greenF() + 0.0722 * colour.blueF();
}

}  // namespace

class TestResources : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void pictureHasItsSize_data();
  void pictureHasItsSize();
  void iconStandsOutFromAToolbar_data();
  void iconStandsOutFromAToolbar();
  void iconsDiffer();
  void splashIsLightWhereTheVersionIsWritten();
  void everyCompiledPictureHasASource();
  void everySourceIsCompiledIn();
  void fontRegisters_data();
  void fontRegisters();
  void everyCompiledFontHasALicenceText();
  void beepIsAShortPlainWaveFile();
  void licensesCanBeShownWhole();
  void licensesNameEveryPart_data();
  void licensesNameEveryPart();
};

void TestResources::pictureHasItsSize_data() {
  QTest::addColumn<QString>("path");
  QTest::addColumn<QSize>("size");
  for (const char* icon : kIcons) {
    QTest::addRow("%s is 48 pixels square", icon) << iconPath(icon) << QSize(48, 48);
    QTest::addRow("%s for dense screens is 96 pixels square", icon)
        << iconPath(icon, "@2x") << QSize(96, 96);
  }
  QTest::newRow("the application icon is 256 pixels square")
      << iconPath("mainicon") << QSize(256, 256);
  QTest::newRow("the splash is 560 by 320") << iconPath("splash") << QSize(560, 320);
  QTest::newRow("the splash for dense screens is twice that")
      << iconPath("splash", "@2x") << QSize(1120, 640);
}

void TestResources::pictureHasItsSize() {
  QFETCH(QString, path);
  QFETCH(QSize, size);
  QVERIFY2(QFile::exists(path), qPrintable(path));
  const QImage image(path);
  QVERIFY2(!image.isNull(), "the picture cannot be read");
  QCOMPARE(image.size(), size);
}

void TestResources::iconStandsOutFromAToolbar_data() {
  QTest::addColumn<QString>("path");
  QTest::addColumn<QColor>("toolbar");
  for (const char* icon : kIcons) {
    QTest::addRow("%s on a light toolbar", icon) << iconPath(icon) << QColor(0xf0, 0xf0, 0xf0);
    QTest::addRow("%s on a dark toolbar", icon) << iconPath(icon) << QColor(0x2b, 0x2b, 0x2b);
  }
}

void TestResources::iconStandsOutFromAToolbar() {
  QFETCH(QString, path);
  QFETCH(QColor, toolbar);
  const QImage image = QImage(path).convertToFormat(QImage::Format_ARGB32);
  QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
  int distinct = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (pixel.alpha() == 255 && std::abs(luminance(pixel) - luminance(toolbar)) > 0.1)
        ++distinct;
    }
  // The tile covers about nine tenths of the square.
  QVERIFY2(distinct > 48 * 48 / 2, qPrintable(QString::number(distinct)));
}

void TestResources::iconsDiffer() {
  QStringList seen;
  for (const char* icon : kIcons) {
    const QString bytes = QString::fromLatin1(contents(iconPath(icon)).toHex());
    QVERIFY2(!bytes.isEmpty() && !seen.contains(bytes), icon);
    seen.append(bytes);
  }
}

void TestResources::splashIsLightWhereTheVersionIsWritten() {
  const QImage splash(iconPath("splash"));
  for (int y = 3; y < 40; ++y)
    for (int x = 3; x < 280; ++x)
      QVERIFY(luminance(splash.pixelColor(x, y)) > 0.8);
}

void TestResources::everyCompiledPictureHasASource() {
  const QStringList pictures = QDir(QStringLiteral(":/icons")).entryList({QStringLiteral("*.png")});
  QVERIFY(!pictures.isEmpty());
  for (QString name : pictures) {
    name.remove(QStringLiteral("@2x")).replace(QStringLiteral(".png"), QStringLiteral(".svg"));
    QVERIFY2(QFile::exists(QStringLiteral(KELMORA_ICON_SOURCES "/") + name), qPrintable(name));
  }
}

void TestResources::everySourceIsCompiledIn() {
  const QStringList sources =
      QDir(QStringLiteral(KELMORA_ICON_SOURCES)).entryList({QStringLiteral("*.svg")});
  QVERIFY(!sources.isEmpty());
  for (QString name : sources) {
    name.replace(QStringLiteral(".svg"), QStringLiteral(".png"));
    QVERIFY2(QFile::exists(QStringLiteral(":/icons/") + name), qPrintable(name));
  }
}

void TestResources::fontRegisters_data() {
  QTest::addColumn<QString>("file");
  QTest::addColumn<QString>("family");
  QTest::addColumn<QString>("style");
  QTest::addColumn<bool>("fixedPitch");
  struct Family {
    const char* files;
    const char* name;
    const char* faces[4];
    bool fixedPitch;
  };
  constexpr const char* kStyles[] = {"Regular", "Bold", "Italic", "Bold Italic"};
  constexpr Family kFamilies[] = {
      {"UbuntuMono", "Ubuntu Mono", {"R", "B", "RI", "BI"}, true},
      {"Ubuntu", "Ubuntu", {"R", "B", "RI", "BI"}, false},
      {"CourierPrime", "Courier Prime", {"Regular", "Bold", "Italic", "BoldItalic"}, true}};
  for (const Family& family : kFamilies)
    for (std::size_t face = 0; face < 4; ++face)
      QTest::addRow("%s-%s is %s %s", family.files, family.faces[face], family.name, kStyles[face])
          << QStringLiteral(":/fonts/%1-%2.ttf")
                 .arg(QLatin1String(family.files), QLatin1String(family.faces[face]))
          << QString::fromLatin1(family.name) << QString::fromLatin1(kStyles[face])
          << family.fixedPitch;
}

void TestResources::fontRegisters() {
  QFETCH(QString, file);
  QFETCH(QString, family);
  QFETCH(QString, style);
  QFETCH(bool, fixedPitch);
  const int id = QFontDatabase::addApplicationFont(file);
  QVERIFY2(id >= 0, qPrintable(file));
  QCOMPARE(QFontDatabase::applicationFontFamilies(id), QStringList(family));
  QVERIFY(QFontDatabase::styles(family).contains(style));
  QCOMPARE(QFontInfo(QFontDatabase::font(family, style, 12)).family(), family);
  QCOMPARE(QFontDatabase::isFixedPitch(family, style), fixedPitch);
  QVERIFY(QFontDatabase::removeApplicationFont(id));

  // The file itself, in case the system has fonts of the same family.
  const QRawFont face(file, 12);
  QVERIFY(face.isValid());
  QCOMPARE(face.familyName(), family);
  QCOMPARE(face.styleName(), style);
}

void TestResources::everyCompiledFontHasALicenceText() {
  const QByteArray licenses = contents(QStringLiteral(KELMORA_LICENSES));
  const QStringList fonts = QDir(QStringLiteral(":/fonts")).entryList();
  QCOMPARE(fonts.size(), 12);
  for (const QString& font : fonts)
    QVERIFY2(licenses.contains(font.startsWith(QStringLiteral("Ubuntu"))
                                   ? "UBUNTU FONT LICENCE Version 1.0"
                                   : "SIL OPEN FONT LICENSE Version 1.1"),
             qPrintable(font));
}

void TestResources::beepIsAShortPlainWaveFile() {
  const QByteArray wave = contents(QStringLiteral(":/sounds/beep.wav"));
  QVERIFY(wave.size() > 44);
  const auto u16 = [&wave](int at) { return qFromLittleEndian<quint16>(wave.constData() + at); };
  const auto u32 = [&wave](int at) { return qFromLittleEndian<quint32>(wave.constData() + at); };
  QCOMPARE(wave.left(4), QByteArray("RIFF"));
  QCOMPARE(u32(4), static_cast<quint32>(wave.size() - 8));
  QCOMPARE(wave.mid(8, 8), QByteArray("WAVEfmt "));
  QCOMPARE(u16(20), quint16{1});  // PCM
  QCOMPARE(u16(22), quint16{1});  // mono
  QCOMPARE(u32(24), 44100U);
  QCOMPARE(u16(34), quint16{16});
  QCOMPARE(wave.mid(36, 4), QByteArray("data"));
  const quint32 bytes = u32(40);
  QCOMPARE(bytes, static_cast<quint32>(wave.size() - 44));
  QVERIFY(bytes < u32(28));  // under a second

  int loudest = 0;
  for (qsizetype at = 44; at + 1 < wave.size(); at += 2)
    loudest = std::max(loudest, std::abs(int{qFromLittleEndian<qint16>(wave.constData() + at)}));
  QVERIFY2(loudest > 32767 / 10, "the beep cannot be heard");
  QVERIFY2(loudest < 32767 / 2, "the beep is not soft");
}

void TestResources::licensesCanBeShownWhole() {
  const QByteArray licenses = contents(QStringLiteral(KELMORA_LICENSES));
  QVERIFY(!licenses.isEmpty());
  // The help window stops reading at a byte 255 and takes each byte as one character.
  for (const char c : licenses)
    QVERIFY(c == '\n' || (c >= ' ' && c <= '~'));
}

void TestResources::licensesNameEveryPart_data() {
  QTest::addColumn<QByteArray>("words");
  QTest::newRow("the client's own licence") << QByteArray("MIT License");
  QTest::newRow("the licence of the toolkit") << QByteArray("GNU LESSER GENERAL PUBLIC LICENSE\n");
  QTest::newRow("the licence that one builds upon") << QByteArray("END OF TERMS AND CONDITIONS");
  QTest::newRow("who made the Ubuntu fonts") << QByteArray("Copyright 2011 Canonical Ltd.");
  QTest::newRow("who made Courier Prime")
      << QByteArray("Copyright 2015 The Courier Prime Project Authors");
}

void TestResources::licensesNameEveryPart() {
  QFETCH(QByteArray, words);
  QVERIFY(contents(QStringLiteral(KELMORA_LICENSES)).contains(words));
}

KELMORA_VALUE_TEST_MAIN(TestResources)
#include "tst_resources.moc"
