// Draws an SVG file as a PNG picture, during the build: render_picture IN.svg OUT.png SCALE.
#include <cstdio>

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: render_picture IN.svg OUT.png SCALE\n", stderr);
    return 2;
  }
  QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
  const int scale = QByteArray(argv[3]).toInt();
  if (!renderer.isValid() || scale < 1) {
    std::fprintf(stderr, "render_picture: %s is no picture, or %s no scale\n", argv[1], argv[3]);
    return 1;
  }
  QImage image(renderer.defaultSize() * scale, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  if (!image.save(QString::fromLocal8Bit(argv[2]), "PNG")) {
    std::fprintf(stderr, "render_picture: %s cannot be written\n", argv[2]);
    return 1;
  }
  return 0;
}
