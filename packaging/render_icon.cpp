// Draws the program's icon as a square picture: render_icon SVG SIZE PNG
#include <cstdio>
#include <cstdlib>

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: render_icon SVG SIZE PNG\n", stderr);
    return 2;
  }
  QSvgRenderer renderer(QString::fromLocal8Bit(argv[1]));
  const int size = std::atoi(argv[2]);
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  if (!renderer.isValid() || image.isNull()) {
    std::fprintf(stderr, "render_icon: %s cannot be drawn in %s pixels.\n", argv[1], argv[2]);
    return 1;
  }
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  return image.save(QString::fromLocal8Bit(argv[3]), "PNG") ? 0 : 1;
}
