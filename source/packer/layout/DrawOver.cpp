#include "DrawOver.h"

#include "NewImage.h"

#include <QPainter>

void drawOver(const QImage& image, QImage& target) {
    // The painter cuts what lies beyond coordinates of 15 bits, so larger images are drawn in parts.
    constexpr int step = 0x4000;
    for (int top = 0; top < target.height(); top += step) {
        for (int left = 0; left < target.width(); left += step) {
            const int width = qMin(step, target.width() - left);
            const int height = qMin(step, target.height() - top);
            const auto offset = static_cast<qptrdiff>(left) * static_cast<qptrdiff>(sizeof(QRgb));
            const QImage from(image.constScanLine(top) + offset, width, height, image.bytesPerLine(),
                              image.format());
            QImage to(target.scanLine(top) + offset, width, height, target.bytesPerLine(), target.format());
            QPainter painter;
            if (!painter.begin(&to))
                throwOutOfMemory();
            painter.drawImage(0, 0, from);
        }
    }
}
