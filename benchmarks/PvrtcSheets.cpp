#include "PvrtcSheets.h"

#include <QDirIterator>
#include <QPainter>
#include <QPainterPath>
#include <QStringList>

#include <algorithm>
#include <random>

namespace {

constexpr int sheetSide = 1024;

class Painting {
public:
    explicit Painting(unsigned seed) : m_random(seed) {}

    void portrait(QPainter& painter, const QRectF& frame);
    void canvasNoise(QImage& image, int strength);

private:
    double between(double low, double high) { return low + (high - low) * (m_random() % 65536) / 65535.0; }
    QColor tint(const QColor& color, int spread) {
        const auto moved = [&](int value) {
            return std::clamp(value + int(between(-spread, spread)), 0, 255);
        };
        return {moved(color.red()), moved(color.green()), moved(color.blue())};
    }
    void backdrop(QPainter& painter, const QRectF& frame);
    void face(QPainter& painter, const QRectF& head, const QColor& skin);
    void eye(QPainter& painter, QPointF centre, double size, const QColor& iris);
    void hair(QPainter& painter, const QRectF& head, const QColor& color);

    std::mt19937 m_random;
};

void Painting::backdrop(QPainter& painter, const QRectF& frame) {
    QLinearGradient ground(frame.topLeft(), frame.bottomRight());
    const QColor base = QColor::fromHsv(int(between(0, 359)), int(between(40, 150)), int(between(60, 160)));
    ground.setColorAt(0, base.lighter(150));
    ground.setColorAt(0.6, base);
    ground.setColorAt(1, base.darker(220));
    painter.fillRect(frame, ground);
    for (int stroke = 0; stroke < 120; ++stroke) {
        QColor color = tint(base, 40);
        color.setAlpha(50);
        painter.setPen(QPen(color, between(4, 22), Qt::SolidLine, Qt::RoundCap));
        const QPointF from(between(frame.left(), frame.right()), between(frame.top(), frame.bottom()));
        painter.drawLine(from, from + QPointF(between(-60, 60), between(-40, 40)));
    }
}

void Painting::eye(QPainter& painter, QPointF centre, double size, const QColor& iris) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(240, 236, 228));
    painter.drawEllipse(centre, size, size * 0.55);
    QRadialGradient shade(centre, size * 0.5);
    shade.setColorAt(0, iris.lighter(160));
    shade.setColorAt(1, iris.darker(180));
    painter.setBrush(shade);
    painter.drawEllipse(centre, size * 0.48, size * 0.48);
    painter.setBrush(Qt::black);
    painter.drawEllipse(centre, size * 0.2, size * 0.2);
    painter.setBrush(Qt::white);
    painter.drawEllipse(centre - QPointF(size * 0.15, size * 0.15), size * 0.09, size * 0.09);
    painter.setPen(QPen(QColor(50, 30, 25), size * 0.12));
    painter.drawArc(QRectF(centre.x() - size, centre.y() - size * 0.6, 2 * size, size), 20 * 16, 140 * 16);
}

void Painting::face(QPainter& painter, const QRectF& head, const QColor& skin) {
    QRadialGradient shade(head.center() - QPointF(head.width() * 0.15, head.height() * 0.2),
                          head.height() * 0.75);
    shade.setColorAt(0, skin.lighter(118));
    shade.setColorAt(0.5, skin);
    shade.setColorAt(1, skin.darker(210));
    painter.setPen(Qt::NoPen);
    painter.setBrush(shade);
    painter.drawEllipse(head);
    for (const double half : {-1.0, 1.0}) {
        const QPointF cheek = head.center() + QPointF(half * head.width() * 0.24, head.height() * 0.14);
        QRadialGradient blush(cheek, head.width() * 0.17);
        blush.setColorAt(0, QColor(205, 80, 70, 90));
        blush.setColorAt(1, QColor(205, 80, 70, 0));
        painter.setPen(Qt::NoPen);
        painter.setBrush(blush);
        painter.drawEllipse(cheek, head.width() * 0.17, head.width() * 0.17);
    }
    const QColor iris = QColor::fromHsv(int(between(0, 260)), 140, 150);
    eye(painter, head.center() + QPointF(-head.width() * 0.2, -head.height() * 0.05), head.width() * 0.1,
        iris);
    eye(painter, head.center() + QPointF(head.width() * 0.2, -head.height() * 0.05), head.width() * 0.1,
        iris);
    QPainterPath mouth(head.center() + QPointF(-head.width() * 0.16, head.height() * 0.27));
    mouth.quadTo(head.center() + QPointF(0, head.height() * 0.36),
                 head.center() + QPointF(head.width() * 0.16, head.height() * 0.27));
    mouth.quadTo(head.center() + QPointF(0, head.height() * 0.25),
                 head.center() + QPointF(-head.width() * 0.16, head.height() * 0.27));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(165, 50, 60));
    painter.drawPath(mouth);
}

void Painting::hair(QPainter& painter, const QRectF& head, const QColor& color) {
    painter.setBrush(Qt::NoBrush);
    for (int strand = 0; strand < 900; ++strand) {
        const double from = between(-1, 1);
        const QPointF root =
            head.center() + QPointF(from * head.width() * 0.42, -head.height() * between(0.38, 0.55));
        const double out = from < 0 ? -1 : 1;
        QPainterPath path(root);
        path.cubicTo(root + QPointF(out * between(10, 60), between(0, 40)),
                     root + QPointF(out * between(30, 80), between(60, 150)),
                     head.center() + QPointF(out * head.width() * between(0.42, 0.66),
                                             head.height() * between(0.1, 0.6)));
        QColor shade = tint(color, 35);
        shade.setAlpha(int(between(90, 230)));
        painter.setPen(QPen(shade, between(0.6, 2.6)));
        painter.drawPath(path);
    }
}

void Painting::portrait(QPainter& painter, const QRectF& frame) {
    static const QColor skins[] = {QColor(236, 190, 160), QColor(198, 140, 100), QColor(140, 90, 62),
                                   QColor(250, 215, 190)};
    static const QColor hairs[] = {QColor(60, 38, 24), QColor(150, 100, 45), QColor(28, 26, 32),
                                   QColor(160, 60, 30)};
    painter.save();
    painter.setClipRect(frame);
    backdrop(painter, frame);
    const double width = frame.width() * between(0.4, 0.5);
    const QRectF head(frame.center().x() - width / 2 + between(-20, 20), frame.top() + frame.height() * 0.2,
                      width, width * 1.35);
    QLinearGradient coat(head.bottomLeft(), head.bottomRight());
    const QColor cloth = QColor::fromHsv(int(between(0, 359)), 160, 130);
    coat.setColorAt(0, cloth.lighter(140));
    coat.setColorAt(1, cloth.darker(200));
    painter.setPen(Qt::NoPen);
    painter.setBrush(coat);
    painter.drawEllipse(
        QRectF(frame.left() + 30, head.bottom() - 20, frame.width() - 60, frame.height() * 0.6));
    face(painter, head, skins[m_random() % 4]);
    hair(painter, head, hairs[m_random() % 4]);
    painter.restore();
}

void Painting::canvasNoise(QImage& image, int strength) {
    for (int y = 0; y < image.height(); ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < image.width() * 4; ++x)
            if (x % 4 != 3)
                line[x] =
                    static_cast<uchar>(std::clamp(line[x] + int(between(-strength, strength + 1)), 0, 255));
    }
}

} // namespace

QImage sheetOfFolder(const QString& folder, int skip) {
    QStringList files;
    QDirIterator iterator(folder, {QStringLiteral("*.png")}, QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        files.append(iterator.next());
    files.sort();
    QImage sheet(sheetSide, sheetSide, QImage::Format_RGBA8888);
    sheet.fill(Qt::transparent);
    int x = 0;
    int y = 0;
    int rowHeight = 0;
    for (int number = 0; y < sheetSide && !files.isEmpty(); number = (number + skip + 1) % files.size()) {
        const QImage image = QImage(files[number]).convertToFormat(QImage::Format_RGBA8888);
        if (x + image.width() > sheetSide) {
            x = 0;
            y += rowHeight + 2;
            rowHeight = 0;
        }
        for (int line = 0; line < image.height() && y + line < sheetSide; ++line)
            std::copy_n(image.constScanLine(line), std::min(image.width(), sheetSide - x) * 4,
                        sheet.scanLine(y + line) + x * 4);
        x += image.width() + 2;
        rowHeight = std::max(rowHeight, image.height());
    }
    return sheet;
}

QImage paintedSheet(unsigned seed) {
    QImage sheet(sheetSide, sheetSide, QImage::Format_RGBA8888);
    sheet.fill(Qt::black);
    Painting painting(seed);
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QRectF& frame : {QRectF(0, 0, 512, 512), QRectF(512, 0, 512, 512), QRectF(0, 512, 512, 512),
                                QRectF(512, 512, 512, 512)})
        painting.portrait(painter, frame);
    painter.end();
    painting.canvasNoise(sheet, 4);
    return sheet;
}
